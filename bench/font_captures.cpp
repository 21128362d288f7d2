// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Draws the program's texts in a real window and saves each line for an OCR engine: enlarged four times with
// a smooth filter, then black on white. bench/font runs it and counts the errors.
//
// The screens are drawn by the program's own code over their own panels: all questions with their answers, a
// list of names full of m and n, the editor and the view.
//
// usage: font_captures OUTPUT_FOLDER FONT_PICTURE SETS SIZE ...      (in the folder of the baked pictures)
//
// SETS are those of questions, answers, lists and panels that are wanted, such as "lists,panels".
//
// writes OUTPUT_FOLDER/SIZE-NUMBER.pgm, and into OUTPUT_FOLDER/lines.tsv a line for each: the file, the
// window's size, the set, the text.
#include <GL/freeglut.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "app/state.h"
#include "app/textures.h"
#include "calendar/editor.h"
#include "calendar/events.h"
#include "calendar/list.h"
#include "engine/MotionBlur.h"
#include "engine/canvas.h"
#include "engine/window_metrics.h"
#include "quiz/dialog.h"
#include "quiz/questions.h"

namespace {

constexpr double kAdvance = 1.025;  ///< from one character to the next, in units of the text's size
constexpr int kEnlarged = 4;
constexpr int kMargin = 24;      ///< white around a line, pixels of the enlarged picture
constexpr double kAround = 3;    ///< how much of the panel is cut out on both sides of a line, canvas units
constexpr int kBoxColumns = 43;  ///< of a box's lines; its first has one more

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "font_captures: " << message << '\n';
    std::exit(2);
}

/// A line of text on the canvas.
struct Line {
    std::string set;
    double x = 0, y = 0;  ///< bottom left corner, canvas units
    double size = 0;
    std::string text;
};

// ---- What stands on the screens ----

/// Returns a text as it is drawn: every byte beyond ASCII is a blank.
std::string Drawn(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, ' ');
    return text;
}

Line Centered(const std::string& set, double x, double y, double size, const std::string& text) {
    return {set, x - size * kAdvance * static_cast<double>(text.size()) / 2, y, size, Drawn(text)};
}

/// Appends the lines of a box, as the program breaks them.
void AppendBox(std::vector<Line>& lines, const std::string& set, double y, const std::string& text) {
    constexpr double kX = 28;
    constexpr double kSize = 10;
    std::size_t columns = kBoxColumns + 1;
    for (std::size_t at = 0; at < text.size();
         at += columns, columns = kBoxColumns, y -= 2 * kSize * kAdvance) {
        if (at > 0) columns = kBoxColumns;
        lines.push_back({set, kX, y, kSize, Drawn(text.substr(at, columns))});
    }
}

/// A screen: how it is prepared, and the lines that then stand on it.
struct Scene {
    int id = 0;
    std::function<void()> prepare;
    void (*draw)() = nullptr;
    std::vector<Line> lines;
};

Scene QuizScene(std::size_t number) {
    constexpr std::array<double, 4> kX = {138, 374, 138, 374};
    constexpr std::array<double, 4> kY = {101, 101, 43, 43};
    Scene screen = {
        kQuizScreen, [number] { question_id = static_cast<std::int32_t>(number); }, QuizDialog, {}};
    const Question& question = questions[number];
    AppendBox(screen.lines, "questions", 420, question.question);
    for (std::size_t i = 0; i < 4; ++i) {
        screen.lines.push_back(Centered("answers", kX.at(i), kY.at(i), 8, question.answers[i]));
    }
    return screen;
}

const std::vector<std::string> kNames = {
    "Commemorazione",   "Mammografia",    "Immunologia",    "Rinnovo nomina",
    "Compleanno mamma", "Ammanco minimo", "Menu in mensa",  "Nonna in montagna",
    "Comunione Emma",   "Manutenzione",   "Cinema immenso", "Numeri uno e nove",
};

Event Appointment(const std::string& name, int day, int hour, int minute) {
    Event event;
    event.kind = kAppointment;
    event.date = {day, 3, 2031};
    event.time = {hour, minute};
    std::copy_n(name.begin(), std::min<std::size_t>(name.size(), kNameBytes - 1), event.name);
    return event;
}

Scene ListScene() {
    Scene screen = {kListScreen, nullptr, EventList, {}};
    screen.prepare = [] {
        events.clear();
        for (std::size_t i = 0; i < kNames.size(); ++i) {
            const int number = static_cast<int>(i);
            events.emplace_back(Appointment(kNames[i], 13 + number, 8 + number, 5 * number));
        }
    };
    screen.lines.push_back(Centered("lists", 372, 436.5, 10, "aggiungi"));
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        const int number = static_cast<int>(i);
        const double y = 390 - 32 * number - 9;
        screen.lines.push_back({"lists", 18, y, 10, kNames[i]});
        screen.lines.push_back(Centered("lists", 283.5, y, 10, std::to_string(13 + number) + "/3/2031"));
        screen.lines.push_back(
            Centered("lists", 390, y, 10, std::to_string(8 + number) + ":" + std::to_string(5 * number)));
    }
    return screen;
}

constexpr char kDescription[] =
    "Commissione mensile: rinnovo della nomina, un minimo di numeri, i nomi in ordine. Non mancare! Mamma "
    "viene domani mattina con Emma, Anna e Mimmo; cinema in centro alle 21, prenotare (numero 06 1234578).";

void DrawEditor() {
    EventEditor();
}

Scene EditorScene(int id) {
    Scene screen = {id, nullptr, DrawEditor, {}};
    screen.prepare = [] {
        events.clear();
        edit_event = &events.emplace_back(Appointment("Commemorazione", 12, 15, 45));
        std::copy(std::begin(kDescription), std::end(kDescription), edit_event->description);
    };
    const bool editable = id == kEditorScreen;
    for (const auto& [x, text] : std::vector<std::pair<double, std::string>>{
             {80, "appuntamento"}, {243.5, "settimanale"}, {391.5, "promemoria"}}) {
        screen.lines.push_back(Centered("panels", x, 477, 10, text));
    }
    if (editable) screen.lines.push_back(Centered("panels", 402, 436.5, 10, "conferma"));
    screen.lines.push_back({"panels", 17, 350.0 + (editable ? 25 : -20), 10, "Data:  12 / 3 / 2031"});
    screen.lines.push_back({"panels", 20, 280, 10, "Ora:   15 : 45 (pm)"});
    screen.lines.push_back({"panels", 28, 210, 10, "Commemorazione"});
    AppendBox(screen.lines, "panels", 170, kDescription);
    return screen;
}

std::vector<Scene> Scenes() {
    std::vector<Scene> screens;
    for (std::size_t i = 0; i < questions.size(); ++i) screens.push_back(QuizScene(i));
    screens.push_back(ListScene());
    screens.push_back(EditorScene(kEditorScreen));
    screens.push_back(EditorScene(kViewScreen));
    return screens;
}

// ---- Drawing ----

/// What the window shows: luminance, 0 .. 255, top row first.
struct Picture {
    int width = 0, height = 0;
    std::vector<double> values;

    double At(int x, int y) const {
        const auto column = static_cast<std::size_t>(std::clamp(x, 0, width - 1));
        const auto row = static_cast<std::size_t>(std::clamp(y, 0, height - 1));
        return values[row * static_cast<std::size_t>(width) + column];
    }
};

Picture ReadWindow(int size) {
    const auto edge = static_cast<std::size_t>(size);
    std::vector<std::uint8_t> rgb(edge * edge * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size, size, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    Picture picture = {size, size, std::vector<double>(edge * edge)};
    for (std::size_t y = 0; y < edge; ++y) {
        for (std::size_t x = 0; x < edge; ++x) {
            const std::uint8_t* pixel = &rgb[((edge - 1 - y) * edge + x) * 3];
            picture.values[y * edge + x] = 0.299 * pixel[0] + 0.587 * pixel[1] + 0.114 * pixel[2];
        }
    }
    return picture;
}

Picture Draw(const Scene& screen, int size) {
    menu_case_id = screen.id;
    if (screen.prepare) screen.prepare();
    glViewport(0, 0, size, size);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    EnterCanvas();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, GUI[screen.id]);
    RenderOnViewport();
    screen.draw();
    LeaveCanvas();
    glFinish();
    return ReadWindow(size);
}

// ---- Cutting out ----

/// The weight of a sample at that distance, in samples, by Catmull and Rom's cubic.
double Cubic(double distance) {
    const double d = std::abs(distance);
    if (d < 1) return (1.5 * d - 2.5) * d * d + 1;
    if (d < 2) return ((-0.5 * d + 2.5) * d - 4) * d + 2;
    return 0;
}

double SampleAt(const Picture& picture, double x, double y) {
    const int left = static_cast<int>(std::floor(x));
    const int top = static_cast<int>(std::floor(y));
    double sum = 0;
    for (int row = top - 1; row <= top + 2; ++row) {
        for (int column = left - 1; column <= left + 2; ++column) {
            sum += Cubic(x - column) * Cubic(y - row) * picture.At(column, row);
        }
    }
    return std::clamp(sum, 0.0, 255.0);
}

/// Cuts a line out of the window, enlarged.
Picture CutOut(const Picture& window, const Line& line) {
    const double unit = window.width / static_cast<double>(kCanvasEdge);
    const double right = line.x + line.size * kAdvance * static_cast<double>(line.text.size());
    const int x = static_cast<int>(std::floor((line.x - kAround) * unit));
    const int y = static_cast<int>(std::floor((kCanvasEdge - line.y - 2 * line.size) * unit));
    const int width = static_cast<int>(std::ceil((right + kAround) * unit)) - x;
    const int height = static_cast<int>(std::ceil((kCanvasEdge - line.y) * unit)) - y;
    Picture cut = {width * kEnlarged, height * kEnlarged, {}};
    for (int row = 0; row < cut.height; ++row) {
        for (int column = 0; column < cut.width; ++column) {
            cut.values.push_back(
                SampleAt(window, x + (column + 0.5) / kEnlarged - 0.5, y + (row + 0.5) / kEnlarged - 0.5));
        }
    }
    return cut;
}

/// Returns the luminance that best parts a picture in two, by Otsu's method.
double ThresholdOf(const Picture& picture) {
    std::array<double, 256> count = {};
    for (const double value : picture.values) count.at(static_cast<std::size_t>(value)) += 1;
    const auto total = static_cast<double>(picture.values.size());
    double sum = 0;
    for (std::size_t i = 0; i < count.size(); ++i) sum += static_cast<double>(i) * count.at(i);
    double below = 0;
    double sum_below = 0;
    double best = -1;
    double threshold = 0;
    for (std::size_t i = 0; i < count.size(); ++i) {
        below += count.at(i);
        sum_below += static_cast<double>(i) * count.at(i);
        if (below == 0 || below == total) continue;
        const double apart = sum_below / below - (sum - sum_below) / (total - below);
        const double variance = below * (total - below) * apart * apart;
        if (variance <= best) continue;
        best = variance;
        threshold = static_cast<double>(i);
    }
    return threshold;
}

/// Writes bright text as black on white, a margin around it.
void Save(const Picture& cut, const std::string& path) {
    const double threshold = ThresholdOf(cut);
    const int width = cut.width + 2 * kMargin;
    const int height = cut.height + 2 * kMargin;
    std::string bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), '\xFF');
    for (int y = 0; y < cut.height; ++y) {
        for (int x = 0; x < cut.width; ++x) {
            if (cut.At(x, y) <= threshold) continue;
            bytes[static_cast<std::size_t>(y + kMargin) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x + kMargin)] = '\0';
        }
    }
    std::ofstream out(path, std::ios::binary);
    out << "P5\n" << width << ' ' << height << "\n255\n" << bytes;
    if (!out.flush()) Fail("cannot write " + path);
}

// ---- The run ----

/// Replaces the font's texture by a picture.
void LoadFont(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::array<std::uint32_t, 2> size = {};
    in.read(reinterpret_cast<char*>(size.data()), sizeof size);
    std::vector<char> pixels(std::size_t{size[0]} * size[1] * 4);
    if (!in.read(pixels.data(), static_cast<std::streamsize>(pixels.size()))) Fail("cannot read " + path);
    glBindTexture(GL_TEXTURE_2D, font);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, static_cast<GLsizei>(size[0]), static_cast<GLsizei>(size[1]), 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
}

void Resize(int size) {
    glutReshapeWindow(size, size);
    for (int tries = 0; glutGet(GLUT_WINDOW_WIDTH) != size || glutGet(GLUT_WINDOW_HEIGHT) != size; ++tries) {
        if (tries > 100000) Fail("the window does not take its size");
        glutMainLoopEvent();
    }
    glutMainLoopEvent();
    ForgetWindowMetrics();
}

/// Takes the lines of the sets named in `sets`.
void CaptureAll(const std::string& folder, const std::string& sets, const std::vector<int>& sizes) {
    const auto is_wanted = [&](const Line& line) { return sets.find(line.set) != std::string::npos; };
    std::ofstream index(folder + "/lines.tsv");
    for (const int size : sizes) {
        Resize(size);
        int number = 0;
        for (const Scene& screen : Scenes()) {
            if (std::none_of(screen.lines.begin(), screen.lines.end(), is_wanted)) continue;
            const Picture window = Draw(screen, size);
            for (const Line& line : screen.lines) {
                if (!is_wanted(line)) continue;
                std::string file = std::to_string(size);
                file.append("-").append(std::to_string(number++)).append(".pgm");
                Save(CutOut(window, line), std::string(folder).append("/").append(file));
                index << file << '\t' << size << '\t' << line.set << '\t' << line.text << '\n';
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    glutInitWindowSize(1024, 1024);
    glutInitWindowPosition(0, 0);
    glutInit(&argc, argv);
    if (argc < 5) Fail("usage: font_captures OUTPUT_FOLDER FONT_PICTURE SETS SIZE ...");
    std::vector<int> sizes;
    for (int i = 4; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));

    glutInitDisplayMode(GLUT_DOUBLE);
    glutCreateWindow("font captures");
    glutDisplayFunc([] {});
    LoadTextures();
    LoadFont(argv[2]);
    GenQuestions();
    frame_time = {};
    frame_time.tm_mday = 1;
    CaptureAll(argv[1], argv[3], sizes);
    return 0;
}
