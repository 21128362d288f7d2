// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Takes pictures of the screens in the real program, for the guide and for looking at.
//
// usage: take_pictures [FOLDER]      writes FOLDER/SCREEN-SIZE.png, the window being SIZE pixels wide and
// high
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/scene.h"

namespace desktop {
namespace {

constexpr int kSizes[] = {300, 600, 1024};
constexpr int kSleepingPose = 2;
constexpr char kMorning[] = "2031-03-12 08:17:00";  // a Wednesday

Record Appointment(const std::string& name, int day, int hour, int minute,
                   const std::string& description = "") {
    Record r;
    r.name = name;
    r.description = description;
    r.day = day;
    r.month = 3;
    r.year = 2031;
    r.hour = hour;
    r.minute = minute;
    r.wday = 3;
    return r;
}

Record Weekly(const std::string& name, int wday, int hour, int minute, const std::string& description = "") {
    Record r = Appointment(name, 12, hour, minute, description);
    r.wday = wday;
    r.kind = kWeekly;
    return r;
}

Record Reminder(const std::string& name, int repeat, const std::string& description = "") {
    Record r = Appointment(name, 12, 8, 0, description);
    r.kind = kReminder;
    r.repeat = repeat;
    return r;
}

const Record kDentist =
    Appointment("Dentista", 12, 10, 15, "Visita di controllo. Portare la tessera sanitaria.");
const Record kLesson = Weekly("Lezione di piano", 4, 17, 30, "Ripassare le scale e lo studio numero 5.");
const Record kWater = Reminder("Bere acqua", 1, "Un bicchiere d'acqua, e due passi per la stanza.");

std::vector<Record> FiveEvents() {
    return {kWater, kDentist, Appointment("Cena da Giulia", 12, 20, 0), kLesson,
            Appointment("Revisione auto", 21, 9, 30)};
}

/// Returns as many events as fill the list more than once.
std::vector<Record> TwentyEvents() {
    std::vector<Record> records = FiveEvents();
    for (int i = 1; i <= 15; ++i) {
        records.push_back(Appointment("Turno numero " + std::to_string(i), 12 + i, 7 + i % 12, i % 4 * 15));
    }
    return records;
}

std::vector<Record> TwelveDueEvents() {
    std::vector<Record> records;
    for (int i = 1; i <= 12; ++i) {
        records.push_back(Appointment("Telefonata " + std::to_string(i), 12, 8, i));
    }
    return records;
}

class Photographer {
  public:
    explicit Photographer(std::string folder) : folder_(std::move(folder)) {}

    /// Takes what the window shows in all sizes, the pointer where nothing lights up.
    void Take(Program& program, const std::string& screen) const {
        for (const int size : kSizes) {
            Resize(program, size);
            program.MovePointer(kNowhere);
            Save(program.Look(), screen + "-" + std::to_string(size));
        }
        Resize(program, kSizes[0]);
    }

    /// Takes what the window shows in all sizes, the pointer where it is: over the window it wakes the owl.
    void TakeUndisturbed(Program& program, const std::string& screen) const {
        for (const int size : kSizes) {
            Resize(program, size);
            Save(program.Look(), screen + "-" + std::to_string(size));
        }
        Resize(program, kSizes[0]);
    }

  private:
    /// Gives the window that size and puts it in the screen's corner, its title bar outside, so that the
    /// largest fits.
    static void Resize(Program& program, int size) {
        program.Resize({0, 0, size, size});
        const ScreenRect place = program.Place();
        program.Resize({-place.x, -place.y, size, size});
        program.WaitForFrames(4);
    }

    void Save(const Image& image, const std::string& name) const {
        const std::string path = folder_ + "/" + name;
        image.SavePpm(path + ".ppm");
        Command command;
        command.words = {"convert", path + ".ppm", path + ".png"};
        if (Process(command).WaitForEnd(60) != 0) Fail("cannot convert " + path + ".ppm");
        std::filesystem::remove(path + ".ppm");
        std::printf("%s.png\n", path.c_str());
    }

    std::string folder_;
};

/// The program with these events at that time, its owl holding still.
class Stage {
  public:
    Stage(Desktop& desktop, const std::vector<Record>& records, const std::string& time)
        : clock(time), program(desktop, StartWith(records)) {}

    WallClock clock;
    Program program;

  private:
    Start StartWith(const std::vector<Record>& records) const {
        Start start;
        start.clock = Clock::kInHand;
        start.spoilt[kStoreFile] = StoreBytes(records);
        clock.Rule(start);
        return start;
    }
};

/// Opens the list. Reminders, which are due at start, are confirmed first: while events are due, the menu
/// does not lead there.
void OpenList(Program& program, const std::vector<Record>& records) {
    for (const Record& record : records) {
        if (record.kind != kReminder) continue;
        program.Click(kBell);
        program.Click(kConfirm);
    }
    program.Click(kMenuPlan);
}

void TakeLists(Desktop& desktop, const Photographer& photographer) {
    for (const auto& records : {std::vector<Record>{}, FiveEvents(), TwentyEvents()}) {
        Stage stage(desktop, records, kMorning);
        OpenList(stage.program, records);
        photographer.Take(stage.program, "list-" + std::to_string(records.size()));
    }
}

void TakeEditors(Desktop& desktop, const Photographer& photographer) {
    constexpr const char* kNames[] = {"appointment", "weekly", "reminder"};
    for (const Record& record : {kDentist, kLesson, kWater}) {
        Stage stage(desktop, {record}, kMorning);
        OpenList(stage.program, {record});
        stage.program.Click(Row(0));
        photographer.Take(stage.program, std::string("editor-") + kNames[record.kind]);
    }
}

void TakeViews(Desktop& desktop, const Photographer& photographer) {
    Stage stage(desktop, {kDentist}, "2031-03-12 09:33:00");
    stage.program.Click(kBell);
    photographer.Take(stage.program, "view-within-the-hour");
    stage.clock.Set(kMorning);  // as if somebody had put the clock back: the view only opens within the hour
    photographer.Take(stage.program, "view-before");
    stage.clock.Set("2031-03-12 10:20:00");
    photographer.Take(stage.program, "view-after");
}

void TakeNotices(Desktop& desktop, const Photographer& photographer) {
    Stage one(desktop, {kDentist}, "2031-03-12 09:33:00");
    photographer.Take(one.program, "owl-1-notice");
    one.program.Close();
    if (!one.program.Child().WaitForEnd(10)) Fail("the program does not close");
    Stage twelve(desktop, TwelveDueEvents(), kMorning);
    photographer.Take(twelve.program, "owl-12-notices");
}

/// Takes the dialog with a question, by its number in the bank from 0, before any answer and after one.
void TakeQuiz(Desktop& desktop, const Photographer& photographer, int question, int answer,
              const std::string& name) {
    Stage stage(desktop, {}, kMorning);
    stage.program.Click(kMenuAsk);
    stage.program.LoadDice(question);
    stage.program.Click(kBell);
    stage.program.ReleaseDice();
    photographer.Take(stage.program, name);
    stage.program.Click(kAnswers.at(static_cast<std::size_t>(answer)));
    photographer.Take(stage.program, name + "-answer-" + std::to_string(answer));
}

/// Takes the longest question, the longest answers and the first question, with right and wrong answers.
void TakeQuizzes(Desktop& desktop, const Photographer& photographer) {
    constexpr int kLongest = 66;
    constexpr int kLongAnswers = 32;
    TakeQuiz(desktop, photographer, 0, 0, "quiz-wrong");
    TakeQuiz(desktop, photographer, kLongest, 0, "quiz-long");
    TakeQuiz(desktop, photographer, kLongAnswers, 2, "quiz-long-answers");
}

/// Takes the owl asleep, and an offer, at some moments.
void TakeEffects(Desktop& desktop, const Photographer& photographer) {
    constexpr ScreenPoint kCorner = {1270, 1020};  // outside the window at any of its sizes
    Stage stage(desktop, {}, kMorning);
    Program& program = stage.program;
    Scene scene;
    desktop.MovePointer(kCorner);
    program.LoadDice(kSleepingPose);
    while (scene.BodyIn(program.Look()) != "sleep_close_eyes") program.LetTimePass(1);
    program.ReleaseDice();
    for (const int moment : {1, 2, 3}) {
        program.LetTimePass(3);
        photographer.TakeUndisturbed(program, "owl-asleep-" + std::to_string(moment));
    }
    program.Click(kMenuAsk);
    for (const int moment : {1, 2, 3}) {
        program.LetTimePass(2.3);
        photographer.Take(program, "owl-offer-" + std::to_string(moment));
    }
}

void TakeAll(const std::string& folder) {
    std::filesystem::create_directories(folder);
    const Photographer photographer(folder);
    Desktop desktop;
    TakeLists(desktop, photographer);
    TakeEditors(desktop, photographer);
    TakeViews(desktop, photographer);
    TakeNotices(desktop, photographer);
    TakeQuizzes(desktop, photographer);
    TakeEffects(desktop, photographer);
}

}  // namespace
}  // namespace desktop

int main(int argc, char** argv) {
    try {
        const auto usual = std::filesystem::temp_directory_path() / "shots4";
        desktop::TakeAll(argc > 1 ? argv[1] : usual.string());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "take_pictures: %s\n", error.what());
        return 1;
    }
    return 0;
}
