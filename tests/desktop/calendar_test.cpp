// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The calendar's story with a real pointer and a real keyboard: appointments, lessons and reminders from the
// first click to the last notice.
//
// What was saved is read from the store's file, what is shown from the window. The clock on the wall stands
// still until a test sets it, and the owl's own clock is in the test's hand, so the owl holds still.
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"
#include "tests/desktop/reading.h"

namespace desktop {

/// Prints an event where a test fails.
void PrintTo(const Record& r, std::ostream* out) {
    *out << "\"" << r.name << "\", \"" << r.description << "\", " << r.day << "/" << r.month << "/" << r.year
         << " " << r.hour << ":" << r.minute << ", wday " << r.wday << ", kind " << r.kind << ", repeat "
         << r.repeat << ", elapsed " << r.elapsed << ", flags " << int{r.warned_60} << int{r.warned_30}
         << int{r.done};
}

namespace {

constexpr char kWednesday[] = "2031-03-12 08:17:00";

/// Returns what the add button makes on that Wednesday at a quarter past eight.
Record Fresh() {
    Record r;
    r.day = 12;
    r.month = 3;
    r.year = 2031;
    r.hour = 8;
    r.wday = 3;
    return r;
}

Record Appointment(const std::string& name, int day, int hour, int minute = 0) {
    Record r = Fresh();
    r.name = name;
    r.day = day;
    r.hour = hour;
    r.minute = minute;
    return r;
}

Record Weekly(const std::string& name, int wday, int hour) {
    Record r = Appointment(name, 12, hour);
    r.kind = kWeekly;
    r.wday = wday;
    return r;
}

Record Reminder(const std::string& name, int repeat) {
    Record r = Appointment(name, 12, 8);
    r.kind = kReminder;
    r.repeat = repeat;
    return r;
}

/// Returns an event with its notices given or not, and acknowledged or not.
Record Flagged(Record r, int warned_60, int warned_30, int done) {
    r.warned_60 = static_cast<std::uint8_t>(warned_60);
    r.warned_30 = static_cast<std::uint8_t>(warned_30);
    r.done = static_cast<std::uint8_t>(done);
    return r;
}

/// Where the date's line stands, canvas units from the bottom.
constexpr double kInEditor = 375, kInView = 330;

class TheCalendar : public OnDesktop {
  protected:
    /// Of the program, beside the usual; set before Begin().
    std::map<std::string, std::string> environment_;

    /// Starts the program with these events at a local time, in a window large enough to read.
    void Begin(const std::vector<Record>& records, const std::string& time = kWednesday) {
        Start start;
        start.clock = Clock::kInHand;
        start.environment = environment_;
        if (!records.empty()) start.spoilt[kStoreFile] = StoreBytes(records);
        clock_.Set(time);
        clock_.Rule(start);
        program_ = &Run(start);
        Enlarge();
    }

    /// Starts the program again where it was.
    void BeginAgain() {
        program_->StartAgain();
        Enlarge();
    }

    /// Closes the window and waits for the program's end.
    void End() {
        program_->Close();
        EXPECT_EQ(program_->Child().WaitForEnd(20), 0);
    }

    void SetTime(const std::string& time) {
        clock_.Set(time);
        program_->WaitForFrames(3);
    }

    Program& program() { return *program_; }

    // ---- Hands ----

    /// Clicks; a spot that was clicked last not before 0.4 seconds have passed, so that it is no double
    /// click.
    void Click(CanvasPoint point, int times = 1) {
        for (int i = 0; i < times; ++i) {
            if (point.x == clicked_.x && point.y == clicked_.y) program_->LetTimePass(0.4);
            program_->Click(point);
            clicked_ = point;
        }
    }

    /// Clicks twice, the second time as soon as a frame has seen the first release.
    void DoubleClick(CanvasPoint point) {
        Click(point);
        program_->LetTimePass(0.15);
        program_->ClickAtOnce(point);
    }

    /// Gives a text field the focus and types into it.
    void TypeInto(CanvasPoint field, const std::string& text) {
        Click(field);
        program_->TypeText(text);
    }

    /// Strikes a key, too briefly for it to repeat.
    void Tap(KeySym key) {
        desk.Key(key, true);
        desk.Key(key, false);
        program_->AwaitEvents();
        program_->WaitForFrames(2);
    }

    /// Opens the list from the owl's menu, a fresh event from there, or the event in a row.
    void OpenList() { Click(kMenuPlan); }
    void OpenFresh() {
        OpenList();
        Click(kAdd);
    }
    void OpenRow(int row) {
        OpenList();
        Click(Row(row));
    }

    // ---- Eyes ----

    Image Look() {
        program_->MovePointer(kNowhere);
        return program_->Look();
    }

    bool ShowsOwl() { return Misfit(Look(), Picture("ic8"), {4.5, 215, 84.5, 295}) < 20; }
    bool ShowsList() { return ReadCentred(Look(), {372, 436.5}, 8) == "aggiungi"; }
    bool ShowsEditor() { return ReadCentred(Look(), {402, 436.5}, 8) == "conferma"; }

    /// Returns the number on the bell's badge; empty without a bell in a thought bubble.
    std::string Badge() {
        const Image image = Look();
        // The badge covers a corner of the bell.
        const bool bell = Misfit(image, Picture("ic7"), {395, 400, 475, 480}) < 45;
        const bool bubble = Misfit(image, Picture("circle"), {330, 415, 360, 445}) < 20;
        EXPECT_EQ(bell, bubble);
        if (!bell) return "";
        const std::string two = ReadCentred(image, kBadgeNumber, 2);
        return std::isdigit(two[0]) != 0 ? two : ReadCentred(image, kBadgeNumber, 1);
    }

    std::string DateLine(double y = kInEditor) { return ReadText(Look(), {17, y}, 22); }
    std::string TimeLine() { return ReadText(Look(), {20, 280}, 22); }
    std::string RepeatLine() { return ReadText(Look(), {17, 330}, 22); }
    std::string NameLine() { return ReadText(Look(), {28, 210}, 17); }

    /// Returns a line of the description, 0 or 1; its first one holds a character more.
    std::string DescriptionLine(int line) {
        return line == 0 ? ReadText(Look(), {28, 170}, 44) : ReadText(Look(), {28, 149.5}, 43);
    }

    /// Returns what a row of the list says; of date and time, which are centred, the length must be known.
    std::string RowName(int row) { return ReadText(Look(), {18, Row(row).y - 9}, 17); }
    std::string RowDate(int row, std::size_t length) {
        return ReadCentred(Look(), {283.5, Row(row).y - 9}, length);
    }
    std::string RowTime(int row, std::size_t length) {
        return ReadCentred(Look(), {390, Row(row).y - 9}, length);
    }

    // ---- The file ----

    /// Returns whether the file has just these events, byte for byte.
    testing::AssertionResult Stores(const std::vector<Record>& records) {
        const std::string bytes = StoredBytes();
        if (bytes == StoreBytes(records)) return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << "the file's " << bytes.size() << " bytes are " << testing::PrintToString(ReadStore(bytes))
               << " and not " << testing::PrintToString(records);
    }

    std::string StoredBytes() { return program_->Files().Read(kStoreFile); }

  private:
    void Enlarge() { program_->Resize({300, 200, 600, 600}); }

    WallClock clock_{kWednesday};
    Program* program_ = nullptr;
    CanvasPoint clicked_ = {};  ///< where the last click was
};

// ---- Appointments ----

TEST_F(TheCalendar, FindsAgainAfterARestartWhatWasTypedAndConfirmed) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "Dentista");
    TypeInto(kDescriptionField, "Visita dal dentista: lunedi', perche' no? \xE8 ora");
    Click(kHourUp, 2);
    ASSERT_EQ(StoredBytes(), "") << "nothing is saved before it is confirmed";

    Click(kConfirm);

    Record typed = Appointment("Dentista", 12, 10);
    typed.description = "Visita dal dentista: lunedi', perche' no? e' ora";
    EXPECT_TRUE(Stores({typed}));
    struct stat status {};
    ASSERT_EQ(stat(program().Files().Path(kStoreFile).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U) << "for its owner's eyes alone";

    End();
    BeginAgain();
    OpenList();
    EXPECT_EQ(RowName(0), "Dentista");
    EXPECT_EQ(RowDate(0, 4), "Oggi");
    EXPECT_EQ(RowTime(0, 4), "10:0");
    EXPECT_EQ(RowName(1), "");
    Click(Row(0));
    EXPECT_EQ(DateLine(), "Data:  12 / 3 / 2031");
    EXPECT_EQ(TimeLine(), "Ora:   10 : 0 (am)");
    EXPECT_EQ(NameLine(), "Dentista");
    EXPECT_EQ(DescriptionLine(0) + DescriptionLine(1), typed.description);
    Click(kConfirm);
    EXPECT_TRUE(Stores({typed}));
    End();
    EXPECT_EQ(program().Said(), "");
}

TEST_F(TheCalendar, SetsADateWithTheArrows) {
    Begin({});
    OpenFresh();

    Click(kDayDown, 3);
    Click(kMonthUp, 2);
    Click(kYearUp);
    Click(kHourDown);
    Click(kMinuteDown, 2);
    EXPECT_EQ(DateLine(), "Data:  9 / 5 / 2032");
    EXPECT_EQ(TimeLine(), "Ora:   7 : 58 (am)");
    Click(kConfirm);

    Record set = Appointment("", 9, 7, 58);
    set.month = 5;
    set.year = 2032;
    EXPECT_TRUE(Stores({set}));
    EXPECT_EQ(RowName(0), "evento senza nome");
    EXPECT_EQ(RowDate(0, 8), "9/5/2032");
    EXPECT_EQ(RowTime(0, 4), "7:58");
}

TEST_F(TheCalendar, GivesNoticeAnHourAndHalfAnHourBeforeAnAppointmentAndAtItsTime) {
    const Record dentist = Appointment("Dentista", 12, 10);
    Begin({dentist}, "2031-03-12 08:59:59");
    EXPECT_EQ(Badge(), "");

    SetTime("2031-03-12 09:00:00");
    EXPECT_EQ(Badge(), "1");
    OpenList();
    EXPECT_TRUE(ShowsOwl()) << "the menu rests while something is due";
    Click(kBell);
    EXPECT_EQ(NameLine(), "Dentista");
    EXPECT_EQ(DateLine(kInView), "Data:  Oggi");
    EXPECT_EQ(TimeLine(), "Ora:  tra 60 minuti");
    EXPECT_TRUE(Stores({dentist})) << "not acknowledged before the view is closed";
    Click(kCorner);
    EXPECT_TRUE(ShowsOwl());
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({Flagged(dentist, 1, 0, 0)}));

    SetTime("2031-03-12 09:29:59");
    EXPECT_EQ(Badge(), "");
    SetTime("2031-03-12 09:30:00");
    EXPECT_EQ(Badge(), "1");
    Click(kBell);
    EXPECT_EQ(TimeLine(), "Ora:  tra 30 minuti");
    Click(kCorner);
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({Flagged(dentist, 1, 1, 0)}));

    SetTime("2031-03-12 09:59:59");
    EXPECT_EQ(Badge(), "");
    SetTime("2031-03-12 10:00:00");
    EXPECT_EQ(Badge(), "1");
    Click(kBell);
    EXPECT_EQ(TimeLine(), "Ora:   10 : 0 (am)");
    Click(kCorner);
    EXPECT_TRUE(ShowsOwl());
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({})) << "its time has come: it is gone";
}

TEST_F(TheCalendar, CountsTheMinutesDownInAViewThatStaysOpen) {
    const Record dentist = Appointment("Dentista", 12, 10);
    Begin({dentist}, "2031-03-12 09:10:00");
    Click(kBell);
    EXPECT_EQ(TimeLine(), "Ora:  tra 50 minuti");

    SetTime("2031-03-12 09:11:00");
    EXPECT_EQ(TimeLine(), "Ora:  tra 49 minuti");
    SetTime("2031-03-12 10:01:00");
    EXPECT_EQ(TimeLine(), "Ora:   10 : 0 (am)");
    Click(kCorner);

    EXPECT_TRUE(Stores({}));
}

TEST_F(TheCalendar, GivesNoticeAtStartOfAnAppointmentMissedWhileItDidNotRun) {
    const Record tomorrow = Appointment("Domani", 13, 10);
    Begin({Appointment("Ieri", 11, 23), tomorrow});
    EXPECT_EQ(Badge(), "1");

    Click(kBell);
    EXPECT_EQ(NameLine(), "Ieri");
    EXPECT_EQ(DateLine(kInView), "Data:  11 / 3 / 2031");
    EXPECT_EQ(TimeLine(), "Ora:   23 : 0 (pm)");
    Click(kCorner);

    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({tomorrow}));
}

TEST_F(TheCalendar, CountsTwelveNoticesAndOpensTheEarliestFirst) {
    std::vector<Record> due;
    for (int i = 1; i <= 12; ++i) due.push_back(Appointment("Telefonata " + std::to_string(i), 12, 8, i));
    Begin(due);
    EXPECT_EQ(Badge(), "12");

    Click(kBell);
    EXPECT_EQ(NameLine(), "Telefonata 1");
    Click(kCorner);

    EXPECT_EQ(Badge(), "11");
    due.erase(due.begin());
    EXPECT_TRUE(Stores(due));
}

// ---- Lessons ----

TEST_F(TheCalendar, GivesNoticeOfAWeeklyLessonOnItsDayAndArmsItAgainTheDayAfter) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "Lezione");
    Click(kKindTabs[kWeekly]);
    EXPECT_EQ(DateLine(), "Data: ogni merc");
    Click(kWeekdayUp, 5);
    EXPECT_EQ(DateLine(), "Data: ogni lun");
    Click(kWeekdayDown, 4);
    EXPECT_EQ(DateLine(), "Data: ogni giov");
    Click(kHourUp);
    Click(kConfirm);
    const Record lesson = Weekly("Lezione", 4, 9);
    EXPECT_TRUE(Stores({lesson}));
    EXPECT_EQ(RowDate(0, 9), "ogni giov");
    Click(kCorner);

    SetTime("2031-03-12 09:05:00");
    EXPECT_EQ(Badge(), "") << "it is not its day";
    SetTime("2031-03-13 09:05:00");
    EXPECT_EQ(Badge(), "1");
    Click(kBell);
    EXPECT_EQ(NameLine(), "Lezione");
    EXPECT_EQ(DateLine(kInView), "Data: ogni giov");
    EXPECT_EQ(TimeLine(), "Ora:   9 : 0 (am)");
    Click(kCorner);
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({Flagged(lesson, 1, 1, 1)})) << "a lesson stays";
    SetTime("2031-03-13 23:59:59");
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({Flagged(lesson, 1, 1, 1)}));

    SetTime("2031-03-14 00:00:00");
    EXPECT_EQ(Badge(), "");
    EXPECT_TRUE(Stores({Flagged(lesson, 1, 1, 0)})) << "armed again, and saved without a click";
    SetTime("2031-03-20 09:00:00");
    EXPECT_EQ(Badge(), "1") << "a week later";
}

// ---- Reminders ----

TEST_F(TheCalendar, RemindsAtStartAndIsConfirmedInTheEditor) {
    Record water = Reminder("Bere acqua", 0);
    water.elapsed = 1234;
    Begin({water});
    EXPECT_EQ(Badge(), "1") << "every reminder is due at start";

    Click(kBell);
    EXPECT_TRUE(ShowsEditor());
    EXPECT_EQ(NameLine(), "Bere acqua");
    EXPECT_EQ(RepeatLine(), "Ricordamelo ogni ora");
    EXPECT_TRUE(Stores({water}));
    Click(kConfirm);
    EXPECT_TRUE(ShowsOwl()) << "back to where the bell was";
    EXPECT_EQ(Badge(), "");
    water.elapsed = 0;
    EXPECT_TRUE(Stores({water}));

    program().LetTimePass(3);
    EXPECT_EQ(Badge(), "") << "an hour has not passed";
    OpenRow(0);
    Click(kConfirm);
    EXPECT_TRUE(ShowsList()) << "where it was opened from this time";
    EXPECT_TRUE(Stores({water})) << "it waits anew";
}

TEST_F(TheCalendar, ChoosesHowOftenToRemindWithTheArrows) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "Pausa");
    Click(kKindTabs[kReminder]);
    EXPECT_EQ(RepeatLine(), "Ricordamelo ogni ora");
    Click(kRepeatUp);
    EXPECT_EQ(RepeatLine(), "Ricordamelo ogni 2 ore");
    Click(kRepeatDown, 2);
    EXPECT_EQ(RepeatLine(), "Ricordamelo ogni 3 ore");
    Click(kConfirm);

    EXPECT_TRUE(Stores({Reminder("Pausa", 2)}));
    EXPECT_EQ(RowDate(0, 10), "promemoria");
    EXPECT_EQ(RowTime(0, 1), "/");
    Click(kCorner);
    EXPECT_EQ(Badge(), "") << "a fresh one waits";
    End();
    BeginAgain();
    EXPECT_EQ(Badge(), "1");
}

// ---- Typing ----

TEST_F(TheCalendar, KeepsFortyCharactersTypedAtOnceInTheirOrder) {
    const std::string text = "zyx aabbcc 99887766 ZYXwvu,.;:-_!?(mM)++";
    ASSERT_EQ(text.size(), 40U);
    Begin({});
    OpenFresh();

    TypeInto(kDescriptionField, text);
    EXPECT_EQ(DescriptionLine(0), text);
    Click(kConfirm);

    Record typed = Fresh();
    typed.description = text;
    EXPECT_TRUE(Stores({typed}));
}

TEST_F(TheCalendar, SavesAllThatWasTypedAtOnceBeforeTheClickOnConfirm) {
    const std::string text(300, 'a');
    Begin({});
    OpenFresh();
    Click(kDescriptionField);

    desk.TypeText(text);
    Click(kConfirm);
    program().WaitForFrames(text.size());

    Record typed = Fresh();
    typed.description = text;
    EXPECT_TRUE(Stores({typed}));
}

TEST_F(TheCalendar, WritesItalianLettersAsLetterAndApostrophe) {
    Begin({});
    OpenFresh();

    TypeInto(kDescriptionField, "\xE0\xE8\xE9\xEC\xF2\xF9 \xC8");
    Click(kConfirm);

    Record typed = Fresh();
    typed.description = "a'e'e'i'o'u' E'";
    EXPECT_TRUE(Stores({typed}));
}

TEST_F(TheCalendar, WritesOtherLettersWithoutTheirMarks) {
    Begin({});
    OpenFresh();

    TypeInto(kDescriptionField,
             "M\xFCller, Stra\xDF"
             "e 9, Fran\xE7ois e Mu\xF1oz, 20\xB0");
    Click(kConfirm);

    Record typed = Fresh();
    typed.description = "Muller, Strasse 9, Francois e Munoz, 20o";
    EXPECT_TRUE(Stores({typed}));
}

/// Keys that GLUT does not report one by one, in a locale.
class ComposedCharacters : public TheCalendar, public testing::WithParamInterface<const char*> {};

TEST_P(ComposedCharacters, AreTypedAsTheyAreElsewhere) {
    environment_ = {{"LC_ALL", GetParam()}};
    Begin({});
    OpenFresh();

    Click(kDescriptionField);
    program().TypeKeys({XK_dead_grave,
                        XK_o,
                        XK_space,  // an accent and its letter
                        XK_dead_acute,
                        XK_E,
                        XK_space,  //
                        XK_dead_diaeresis,
                        XK_u,
                        XK_space,  //
                        XK_dead_tilde,
                        XK_n,
                        XK_space,  //
                        XK_dead_circumflex,
                        XK_space,
                        XK_space,  // an accent by itself
                        XK_dead_grave,
                        XK_x,
                        XK_space,  // no letter that takes this accent
                        XK_EuroSign,
                        XK_space,  // beyond Latin-1
                        XK_Multi_key,
                        XK_e,
                        XK_equal,
                        XK_space,  // the euro sign, composed
                        XK_Multi_key,
                        XK_s,
                        XK_s,
                        XK_space,  //
                        XK_a});
    Click(kConfirm);

    Record typed = Fresh();
    typed.description = "o' E' u n ^ x EUR EUR ss a";
    EXPECT_TRUE(Stores({typed}));
}

INSTANTIATE_TEST_SUITE_P(Locales, ComposedCharacters, testing::Values("it_IT.UTF-8", "C", "xx_XX.nonsense"),
                         [](const auto& test) { return std::string(test.param).substr(0, 2); });

TEST_F(TheCalendar, TakesAClickInTurnAmongComposedCharacters) {
    Begin({});
    OpenFresh();
    Click(kNameField);

    program().TypeKeys({XK_dead_grave, XK_a});
    Click(kDescriptionField);
    program().TypeKeys({XK_dead_grave, XK_e, XK_EuroSign});
    Click(kConfirm);

    Record typed = Fresh();
    typed.name = "a'";
    typed.description = "e'EUR";
    EXPECT_TRUE(Stores({typed}));
}

TEST_F(TheCalendar, TypesNoHalfOfAnAccentedLetterAtTheNamesEnd) {
    Begin({});
    OpenFresh();

    TypeInto(kNameField, "abcdefghijklmnop\xE8");
    Click(kConfirm);

    EXPECT_TRUE(Stores({Appointment("abcdefghijklmnop", 12, 8)}));
}

TEST_F(TheCalendar, TypesNothingForKeysThatAreNoCharacters) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "abc");

    for (const KeySym key :
         {XK_Shift_L, XK_Shift_R, XK_Control_L, XK_Control_R, XK_Alt_L, XK_Left,   XK_Right, XK_Up,
          XK_Down,    XK_Home,    XK_End,       XK_Prior,     XK_Next,  XK_Insert, XK_F1,    XK_F2,
          XK_F3,      XK_F4,      XK_F5,        XK_F6,        XK_F7,    XK_F8,     XK_F9,    XK_F10,
          XK_F11,     XK_F12,     XK_Return,    XK_KP_Enter,  XK_Tab,   XK_Escape}) {
        program().Type(key);
    }
    EXPECT_EQ(NameLine(), "abc");
    program().TypeText("d");
    Click(kConfirm);

    EXPECT_TRUE(Stores({Appointment("abcd", 12, 8)}));
}

TEST_F(TheCalendar, ErasesWithBackspaceAndDelete) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "abcd");

    Tap(XK_BackSpace);
    EXPECT_EQ(NameLine(), "abc");
    Tap(XK_Delete);
    EXPECT_EQ(NameLine(), "ab");
    for (int i = 0; i < 3; ++i) Tap(XK_BackSpace);  // once more than there are letters
    EXPECT_EQ(NameLine(), "");
    program().TypeText("e");
    Click(kConfirm);

    EXPECT_TRUE(Stores({Appointment("e", 12, 8)}));
}

TEST_F(TheCalendar, KeepsTheFirstSeventeenLettersOfAName) {
    Begin({});
    OpenFresh();

    TypeInto(kNameField, "abcdefghijklmnopqrst");
    Click(kConfirm);

    EXPECT_TRUE(Stores({Appointment("abcdefghijklmnopq", 12, 8)}));
}

TEST_F(TheCalendar, BlinksACaretInTheFieldThatHasTheFocus) {
    Begin({});
    OpenFresh();
    TypeInto(kNameField, "a");
    EXPECT_EQ(NameLine(), "a");

    program().LetTimePass(0.6);
    EXPECT_EQ(NameLine(), "a|");
    EXPECT_EQ(DescriptionLine(0), "nessuna descrizione");
    program().LetTimePass(0.6);
    EXPECT_EQ(NameLine(), "a");

    Click(kDescriptionField);
    program().LetTimePass(0.6);
    EXPECT_EQ(NameLine(), "a");
    EXPECT_EQ(DescriptionLine(0), "|");
}

TEST_F(TheCalendar, DropsWhatIsTypedWhileNoFieldHasTheFocus) {
    // Far more than the frames before the next click could take one by one.
    const std::string lost(300, 'x');
    Begin({});
    desk.TypeText(lost);
    OpenList();
    desk.TypeText(lost);
    Click(kAdd);
    desk.TypeText(lost);
    TypeInto(kNameField, "a");
    Click(kNowhere);
    desk.TypeText(lost);
    TypeInto(kDescriptionField, "b");
    Click(kConfirm);
    desk.TypeText(lost);
    Click(Row(0));
    Click(kConfirm);

    Record typed = Appointment("a", 12, 8);
    typed.description = "b";
    EXPECT_TRUE(Stores({typed}));
}

TEST_F(TheCalendar, ChangesNothingInTheViewWhateverIsTypedAndClicked) {
    Record lesson = Weekly("Lezione", 3, 8);
    lesson.description = "Portare il libro";
    Begin({lesson});
    Click(kBell);

    TypeInto(kNameField, "x");
    TypeInto(kDescriptionField, "y");
    Tap(XK_BackSpace);
    for (const CanvasPoint& place : {kKindTabs[kAppointment], kKindTabs[kReminder], kConfirm, kHourUp,
                                     kHourDown, kWeekdayUp, kWeekdayDown, kRepeatUp, kRepeatDown}) {
        Click(place);
    }
    EXPECT_EQ(NameLine(), "Lezione");
    EXPECT_EQ(DescriptionLine(0), "Portare il libro");
    Click(kCorner);

    EXPECT_TRUE(ShowsOwl());
    EXPECT_TRUE(Stores({Flagged(lesson, 1, 1, 1)})) << "it was seen after its time, nothing else";
}

// ---- The list ----

TEST_F(TheCalendar, RemovesAnEventWithTheTrash) {
    const Record first = Appointment("Primo", 13, 9);
    const Record third = Appointment("Terzo", 15, 9);
    Begin({first, Appointment("Secondo", 14, 9), third});
    OpenRow(1);
    ASSERT_EQ(NameLine(), "Secondo");

    Click(kCorner);

    EXPECT_TRUE(ShowsList()) << "the same click does not close the list too";
    EXPECT_EQ(RowName(0), "Primo");
    EXPECT_EQ(RowName(1), "Terzo");
    EXPECT_EQ(RowName(2), "");
    EXPECT_TRUE(Stores({first, third}));
}

TEST_F(TheCalendar, ScrollsThroughTwentyEvents) {
    std::vector<Record> many;
    for (int i = 1; i <= 20; ++i) many.push_back(Appointment("Evento " + std::to_string(i), 11 + i, 20));
    Begin(many);
    OpenList();
    EXPECT_EQ(RowName(0), "Evento 1");
    EXPECT_EQ(RowName(kRows - 1), "Evento 12");

    Click(kScrollDown, 10);
    EXPECT_EQ(RowName(0), "Evento 9") << "two clicks too many";
    EXPECT_EQ(RowName(kRows - 1), "Evento 20");
    EXPECT_EQ(RowDate(kRows - 1, 9), "31/3/2031");
    Click(kScrollUp, 3);
    EXPECT_EQ(RowName(0), "Evento 6");
    Click(Row(2));
    EXPECT_EQ(NameLine(), "Evento 8") << "the event that was seen in the row";
    Click(kConfirm);

    EXPECT_TRUE(Stores(many));
}

// ---- The file ----

TEST_F(TheCalendar, KeepsWhatWasConfirmedWhenItIsKilled) {
    const Record there = Appointment("Prima", 20, 9);
    Begin({there});
    OpenFresh();
    TypeInto(kNameField, "Salvato");
    Click(kConfirm);
    Click(kAdd);
    TypeInto(kNameField, "Mai confermato");

    program().Kill();
    EXPECT_TRUE(Stores({Appointment("Salvato", 12, 8), there}));
    BeginAgain();

    EXPECT_EQ(Badge(), "1") << "eight o'clock has passed";
    Click(kBell);
    EXPECT_EQ(NameLine(), "Salvato");
    Click(kCorner);
    OpenList();
    EXPECT_EQ(RowName(0), "Prima");
    EXPECT_EQ(RowName(1), "");
    EXPECT_EQ(program().Said(), "");
}

TEST_F(TheCalendar, KeepsWhatWasConfirmedWhenItIsClosedOrKilledWhileAnEventIsChanged) {
    const Record there = Appointment("Prima", 20, 9);
    Begin({there});
    for (const bool by_force : {false, true}) {
        OpenList();
        Click(Row(0));
        TypeInto(kNameField, " mai confermato");
        Click(kDayUp);

        if (by_force)
            program().Kill();
        else
            End();
        EXPECT_TRUE(Stores({there})) << (by_force ? "killed" : "closed");
        BeginAgain();
        OpenList();
        EXPECT_EQ(RowName(0), "Prima");
        Click(kCorner);
    }
}

TEST_F(TheCalendar, ShowsByItsTitleWhatIsUnsavedAndSavesItByItself) {
    Begin({});
    const std::string store = program().Files().Path(kStoreFile);
    std::filesystem::remove(store);
    std::filesystem::create_directory(store);  // nothing can be saved in its place
    OpenFresh();
    Click(kConfirm);
    EXPECT_TRUE(WaitUntil([&] { return desk.FindWindow("*Ulmaro Assistant") != None; }, 5));

    std::filesystem::remove(store);
    program().LetTimePass(1.5);

    EXPECT_TRUE(WaitUntil([&] { return desk.FindWindow(Program::kTitle) != None; }, 5));
    EXPECT_TRUE(Stores({Fresh()}));
    EXPECT_EQ(program().Said(),
              "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": al suo posto c'e' una "
              "cartella.\n");
}

// ---- Double clicks ----

TEST_F(TheCalendar, OpensTheEventOfARowByADoubleClickAndChangesNothingOfIt) {
    std::vector<Record> records;
    for (int i = 0; i < kRows; ++i) records.push_back(Appointment("Visita " + std::to_string(i), 20, 8, i));
    Begin(records);
    OpenList();
    for (int row = 0; row < kRows; ++row) {
        const std::string name = RowName(row);

        DoubleClick({150, Row(row).y});  // where the editor has arrows

        EXPECT_TRUE(ShowsEditor()) << row;
        EXPECT_EQ(NameLine(), name) << row;
        EXPECT_EQ(DateLine(), "Data:  20 / 3 / 2031") << row;
        Click(kConfirm);
        EXPECT_TRUE(ShowsList()) << row;
        EXPECT_TRUE(Stores(records)) << row;
    }
}

TEST_F(TheCalendar, OpensAReminderByADoubleClickOnTheBellAndConfirmsNothing) {
    Record water = Reminder("Bere acqua", 0);
    water.elapsed = 1234;
    Begin({water});
    program().LetTimePass(0.5);

    DoubleClick({465, 440});  // where the editor has its confirm button

    EXPECT_TRUE(ShowsEditor());
    EXPECT_EQ(NameLine(), "Bere acqua");
    EXPECT_TRUE(Stores({water}));
}

TEST_F(TheCalendar, AddsAnEventByADoubleClickAndSavesNothingYet) {
    Begin({});
    OpenList();

    DoubleClick({462, 436.5});  // where the editor has its confirm button

    EXPECT_TRUE(ShowsEditor());
    EXPECT_EQ(StoredBytes(), "");
}

TEST_F(TheCalendar, ConfirmsOnceByADoubleClick) {
    Begin({});
    OpenFresh();

    DoubleClick({462, 436.5});  // where the list has its add button

    EXPECT_TRUE(ShowsList());
    EXPECT_TRUE(Stores({Fresh()}));
}

TEST_F(TheCalendar, DeletesOneEventByADoubleClickOnTheTrashAndStaysInTheList) {
    const Record left = Appointment("Resta", 21, 9);
    Begin({Appointment("Via", 20, 9), left});
    OpenRow(0);

    DoubleClick(kCorner);

    EXPECT_TRUE(ShowsList()) << "the second press does not close it";
    EXPECT_TRUE(Stores({left}));
}

TEST_F(TheCalendar, ClosesOneScreenByADoubleClickOnTheCorner) {
    constexpr CanvasPoint kOverTheBell = {472, 475};  // where the owl's screen has the bell
    const Record second = Appointment("Secondo", 11, 10);
    Begin({Appointment("Primo", 11, 9), second});
    Click(kBell);

    DoubleClick(kOverTheBell);

    EXPECT_TRUE(ShowsOwl()) << "the second press does not open the next event";
    EXPECT_TRUE(Stores({second}));
}

TEST_F(TheCalendar, ClosesTheListByADoubleClick) {
    Begin({});
    OpenList();

    DoubleClick(kCorner);

    EXPECT_TRUE(ShowsOwl());
    EXPECT_EQ(StoredBytes(), "");
}

TEST_F(TheCalendar, ActsTwiceByTwoClicksHalfASecondApart) {
    Begin({});
    OpenList();

    program().Click({462, 436.5});
    program().LetTimePass(0.5);
    program().Click({462, 436.5});

    EXPECT_TRUE(ShowsList());
    EXPECT_TRUE(Stores({Fresh()})) << "added and confirmed";
}

TEST_F(TheCalendar, TakesClicksOnArrowsAndTabsAsFastAsTheyCome) {
    Begin({});
    OpenFresh();

    for (int i = 0; i < 4; ++i) program().Click(kDayUp);
    EXPECT_EQ(DateLine(), "Data:  16 / 3 / 2031");
    DoubleClick(kKindTabs[kWeekly]);
    Click(kConfirm);

    ASSERT_EQ(ReadStore(StoredBytes()).size(), 1U);
    EXPECT_EQ(ReadStore(StoredBytes()).at(0).kind, kWeekly);
}

}  // namespace
}  // namespace desktop
