// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Films the real program for the README's moving picture: the eyes follow the pointer, the owl dozes off and
// wakes, puts on its hat, asks, and laughs at a wrong answer.
//
// usage: take_animation FOLDER      writes FOLDER/0001.ppm ... and FOLDER/frames.list
//
// A line of the list has the milliseconds that a frame shows, and its name.
//
// Nothing is drawn that the program does not draw, but for two things: the desktop behind the window is
// painted, and the pointer, which a picture of the screen lacks, is put in. The program's clock and dice are
// in hand, so a film is soon taken and comes out alike each time. It leaves out time only where the owl
// breathes or shakes alike before and after, and its last frame leads to its first.
#include <X11/Xutil.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/desktop/desktop.h"
#include "tests/desktop/scene.h"

namespace desktop {
namespace {

constexpr double kPi = 3.14159265358979;

// ---- The set (pixels of the screen) ----

constexpr int kWindowEdge = 340;
constexpr ScreenRect kSet = {320, 214, 440, 422};  ///< what is filmed
constexpr ScreenPoint kWindowCorner = {370, 260};  ///< of the client area
constexpr ScreenPoint kAtRest = {732, 606};        ///< where the pointer is when the film begins and ends

/// Where the pointer goes around the window while the eyes follow it.
constexpr ScreenPoint kTour[] = {{736, 330}, {560, 222}, {340, 262}, {336, 480}, {420, 617}, kAtRest};

// ---- The script ----

constexpr double kBreathSeconds = kPi;  ///< the owl breathes once
constexpr double kUsualStep = 0.08;     ///< from frame to frame, seconds
constexpr double kCalmStep = 0.1;       ///< while the pointer rests

/// A random number that makes the owl doze off whenever it changes its pose, after standing for 37.1 seconds;
/// blink every 4 seconds; and look straight ahead for 3.2 seconds after each 15 seconds.
constexpr int kCalmDice = 1859207;
constexpr double kStandingSeconds = 37.1;
constexpr int kQuestion = 0;      ///< of the bank
constexpr int kWrongAnswer = 0;   ///< to it
constexpr int kLaughingDice = 0;  ///< makes the owl laugh at a wrong answer

/// How the laugh is cut: after so many seconds a part is left out, and the shaking goes on in phase.
constexpr double kLaughBeforeCut = 3.9;
constexpr double kLaughLeftOut = 9.52;
constexpr double kLaughSeconds = 15.5;

// ---- Pictures ----

/// Returns what a part of the screen shows.
Image Photograph(Display* connection, const ScreenRect& part) {
    XImage* pixels = XGetImage(connection, DefaultRootWindow(connection), part.x, part.y,
                               static_cast<unsigned int>(part.width), static_cast<unsigned int>(part.height),
                               AllPlanes, ZPixmap);
    if (pixels == nullptr) Fail("the screen cannot be looked at");
    Image image(part.width, part.height);
    for (int y = 0; y < part.height; ++y) {
        for (int x = 0; x < part.width; ++x) {
            const unsigned long pixel = XGetPixel(pixels, x, y);  // 24 bits: red, green, blue
            image.At(x, y) = {static_cast<std::uint8_t>(pixel >> 16), static_cast<std::uint8_t>(pixel >> 8),
                              static_cast<std::uint8_t>(pixel)};
        }
    }
    XDestroyImage(pixels);
    return image;
}

/// Paints the desktop behind the window: dusk, from top to bottom.
void PaintDesktop(Display* connection) {
    constexpr Colour kTop = {0x2A, 0x3A, 0x52}, kBottom = {0x8A, 0x66, 0x66};
    const Window root = DefaultRootWindow(connection);
    const Pixmap sky = XCreatePixmap(connection, root, Desktop::kWidth, Desktop::kHeight,
                                     static_cast<unsigned int>(DefaultDepth(connection, 0)));
    GC pen = XCreateGC(connection, sky, 0, nullptr);
    for (int y = 0; y < Desktop::kHeight; ++y) {
        const double part = std::clamp(static_cast<double>(y - kSet.y) / kSet.height, 0.0, 1.0);
        const auto mix = [part](int a, int b) {
            return static_cast<unsigned long>(std::lround(a + (b - a) * part));
        };
        XSetForeground(connection, pen,
                       mix(kTop.r, kBottom.r) << 16 | mix(kTop.g, kBottom.g) << 8 | mix(kTop.b, kBottom.b));
        XDrawLine(connection, sky, pen, 0, y, Desktop::kWidth, y);
    }
    XSetWindowBackgroundPixmap(connection, root, sky);
    XClearWindow(connection, root);
    XFreeGC(connection, pen);
    XFreePixmap(connection, sky);
    XSync(connection, False);
}

struct Point {
    double x, y;
};

/// The pointer's outline, pixels from its tip.
constexpr std::array<Point, 7> kArrow = {
    {{0, 0}, {0, 20}, {4.7, 15.6}, {7.8, 22.8}, {11, 21.4}, {7.9, 14.4}, {14.2, 14.4}}};

/// Returns how far a point is from a polygon's edge, pixels; negative inside.
double DistanceTo(const std::array<Point, 7>& polygon, Point p) {
    double nearest = 1e9;
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point a = polygon.at(i);
        const Point b = polygon.at(j);
        const Point ab = {b.x - a.x, b.y - a.y};
        const double along = ((p.x - a.x) * ab.x + (p.y - a.y) * ab.y) / (ab.x * ab.x + ab.y * ab.y);
        const double t = std::clamp(along, 0.0, 1.0);
        nearest = std::min(nearest, std::hypot(p.x - a.x - t * ab.x, p.y - a.y - t * ab.y));
        if ((a.y > p.y) != (b.y > p.y) && p.x < ab.x * (p.y - a.y) / ab.y + a.x) inside = !inside;
    }
    return inside ? -nearest : nearest;
}

void Blend(Colour& pixel, int grey, double opacity) {
    const auto mix = [&](int below) {
        return static_cast<std::uint8_t>(std::lround(below + (grey - below) * opacity));
    };
    pixel = {mix(pixel.r), mix(pixel.g), mix(pixel.b)};
}

/// Draws a pointer, black with a white edge, its tip at a pixel.
void DrawPointer(Image& image, int tip_x, int tip_y) {
    constexpr int kReach = 28;
    constexpr double kEdge = 1.6;
    for (int y = std::max(0, tip_y - 3); y < std::min(image.Height(), tip_y + kReach); ++y) {
        for (int x = std::max(0, tip_x - 3); x < std::min(image.Width(), tip_x + kReach); ++x) {
            const double distance = DistanceTo(kArrow, {x + 0.5 - tip_x, y + 0.5 - tip_y});
            Blend(image.At(x, y), 255, std::clamp(kEdge + 0.5 - distance, 0.0, 1.0));
            Blend(image.At(x, y), 20, std::clamp(0.5 - distance, 0.0, 1.0));
        }
    }
}

// ---- The film ----

class Film {
  public:
    Film(Desktop& desktop, Program& program, const WallClock& wall, std::string folder)
        : desktop_(desktop),
          program_(program),
          wall_(wall),
          folder_(std::move(folder)),
          list_(folder_ + "/frames.list") {
        Put(kAtRest);
    }

    /// Returns how much of the program's time has passed, seconds. This is the owl's animation clock, until a
    /// laugh or a question starts that one again.
    double Seconds() const { return seconds_; }

    /// Lets time pass that is not filmed.
    void Skip(double seconds) {
        program_.LetTimePass(seconds);
        seconds_ += seconds;
    }

    /// Films some seconds, rounded to whole frames, the pointer where it is.
    void Shoot(double seconds) { Shoot({}, seconds, calm_step_); }

    /// Films the pointer's way through some points, softly begun and ended.
    void Glide(const std::vector<ScreenPoint>& way, double seconds) { Shoot(way, seconds, step_); }

    /// Clicks where the pointer is.
    void Click() {
        const ScreenRect place = program_.Place();
        program_.Click({(pointer_.x - place.x + 0.5) * kCanvas / place.width,
                        kCanvas - (pointer_.y - place.y + 0.5) * kCanvas / place.height});
    }

    /// From now on films a frame each so many seconds, while the pointer glides and while it rests.
    void SetSteps(double gliding, double calm) {
        step_ = gliding;
        calm_step_ = calm;
    }

  private:
    void Shoot(std::vector<ScreenPoint> way, double seconds, double step) {
        way.insert(way.begin(), pointer_);
        const auto frames = static_cast<int>(std::lround(seconds / step));
        for (int i = 1; i <= frames; ++i) {
            if (way.size() > 1) Put(On(way, static_cast<double>(i) / frames));
            Skip(step);
            Take(step);
        }
    }

    void Put(ScreenPoint point) {
        pointer_ = point;
        desktop_.MovePointer(point);
        program_.AwaitEvents();
    }

    /// Returns the point at a part of a way, through its corners in a curve (Catmull-Rom).
    static ScreenPoint On(const std::vector<ScreenPoint>& way, double part) {
        const double soft = part * part * (3 - 2 * part);
        const double place = soft * static_cast<double>(way.size() - 1);
        const int leg = std::min(static_cast<int>(place), static_cast<int>(way.size()) - 2);
        const double t = place - leg;
        const auto corner = [&](int i) {
            return way[static_cast<std::size_t>(std::clamp(i, 0, static_cast<int>(way.size()) - 1))];
        };
        const auto curve = [t](double a, double b, double c, double d) {
            return static_cast<int>(std::lround(
                b + 0.5 * t * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a)))));
        };
        const ScreenPoint a = corner(leg - 1), b = corner(leg), c = corner(leg + 1), d = corner(leg + 2);
        return {curve(a.x, b.x, c.x, d.x), curve(a.y, b.y, c.y, d.y)};
    }

    /// Takes a frame. The clock on the wall goes on with the film, whatever is left out.
    void Take(double seconds) {
        Image image = Photograph(desktop_.Connection(), kSet);
        DrawPointer(image, pointer_.x - kSet.x, pointer_.y - kSet.y);
        char name[16];
        std::snprintf(name, sizeof name, "%04d.ppm", ++frames_);
        image.SavePpm(folder_ + "/" + name);
        list_ << std::lround(seconds * 1000) << ' ' << name << '\n';
        filmed_ += seconds;
        char time[32];
        std::snprintf(time, sizeof time, "2031-03-12 17:42:%02d", static_cast<int>(filmed_) + 10);
        wall_.Set(time);
    }

    Desktop& desktop_;
    Program& program_;
    const WallClock& wall_;
    std::string folder_;
    std::ofstream list_;
    ScreenPoint pointer_;
    double step_ = kUsualStep;
    double calm_step_ = kCalmStep;
    double seconds_ = 0;
    double filmed_ = 0;
    int frames_ = 0;
};

/// Returns where a canvas point is on the screen.
ScreenPoint OnScreen(const Program& program, CanvasPoint point) {
    const ScreenRect place = program.Place();
    return {place.x + static_cast<int>(point.x * place.width / kCanvas),
            place.y + static_cast<int>((kCanvas - point.y) * place.height / kCanvas)};
}

/// Returns whether the owl looks straight ahead.
bool LooksAhead(const Program& program) {
    const auto gaze = GazeIn(program.Look());
    return gaze && std::abs(gaze->left.x) < 2 && std::abs(gaze->right.x) < 2;
}

/// Returns whether the owl looks to the right, where the pointer rests.
bool Follows(const Program& program) {
    const auto gaze = GazeIn(program.Look());
    return gaze && gaze->left.x > 2 && gaze->right.x > 2;
}

/// Lets time pass until the owl has woken by itself and has just looked away from straight ahead: for 15
/// seconds it will follow the pointer. Returns when it will doze off.
double Prepare(Film& film, Program& program) {
    constexpr double kStep = 0.1;
    constexpr double kPatience = 400;
    Scene scene;
    const auto await = [&](const auto& condition) {
        while (!condition()) {
            if (film.Seconds() > kPatience) Fail("the owl does not do what the film needs");
            film.Skip(kStep);
        }
    };
    const auto sleeps = [&] { return scene.BodyIn(program.Look()) == "sleep_close_eyes"; };
    program.LoadDice(kCalmDice);
    await(sleeps);
    film.Skip(5);  // it nods before it sleeps: its eyes close and open
    await([&] { return !sleeps(); });
    const double woken = film.Seconds();
    await([&] { return LooksAhead(program); });
    await([&] { return Follows(program); });
    return woken + kStandingSeconds;
}

/// Films what the eyes do, up to where the owl is about to doze off. Returns where in its breath it began.
double ShootEyes(Film& film, Program& program) {
    constexpr double kTourSeconds = 5.4;
    constexpr double kBeforeDozing = 0.6;
    const double dozes = Prepare(film, program);
    // So that whole breaths are left to leave out.
    const double spare = dozes - film.Seconds() - kTourSeconds - kBeforeDozing;
    if (spare < 0) Fail("the owl dozes off too early");
    film.Skip(std::fmod(spare, kBreathSeconds));
    const double begin = film.Seconds();
    film.Glide({std::begin(kTour), std::end(kTour)}, kTourSeconds);
    film.Skip(spare - std::fmod(spare, kBreathSeconds));
    film.Shoot(kBeforeDozing);
    return std::fmod(begin, kBreathSeconds);
}

void ShootSleep(Film& film, Program& program) {
    film.Shoot(2.1);
    program.ReleaseDice();  // the letters that rise from it are not all to be alike
    film.Shoot(3.6);
    program.LoadDice(kCalmDice);
    film.Glide({OnScreen(program, {330, 200})}, 0.9);
    film.Shoot(0.7);
}

void ShootOffer(Film& film, Program& program) {
    film.Glide({OnScreen(program, {140, 300}), OnScreen(program, kMenuAsk)}, 1.1);
    film.Shoot(0.5);
    film.Click();
    program.ReleaseDice();
    film.Shoot(0.8);
    film.Glide({OnScreen(program, {300, 400}), OnScreen(program, kBell)}, 1.6);
    film.Shoot(0.3);
}

void ShootQuestion(Film& film, Program& program) {
    program.LoadDice(kQuestion);
    film.Click();
    film.Shoot(1.2);
    film.Glide({OnScreen(program, kAnswers.at(kWrongAnswer))}, 0.8);
    film.Shoot(0.2);
    film.Click();
    film.Shoot(1.3);
    film.Glide({OnScreen(program, kCorner)}, 0.8);
    program.LoadDice(kLaughingDice);
    film.Click();
}

/// Films the laugh, and the owl after it until it is as far in its breath as when the film began. The laugh
/// starts the animation clock again.
void ShootLaugh(Film& film, Program& program, double begin) {
    program.LoadDice(kCalmDice);
    const double laugh = film.Seconds();
    film.SetSteps(0.05, 0.05);
    film.Shoot(0.7);
    film.Glide({kAtRest}, 1.2);
    film.Shoot(laugh + kLaughBeforeCut - film.Seconds());
    film.Skip(kLaughLeftOut);
    film.Shoot(laugh + kLaughSeconds - film.Seconds() + 0.1);
    film.SetSteps(kUsualStep, kCalmStep);
    const double left = begin - std::fmod(film.Seconds() - laugh, kBreathSeconds);
    film.Shoot(left < 0.4 ? left + kBreathSeconds : left);
}

void ShootAll(Film& film, Program& program) {
    const double begin = ShootEyes(film, program);
    ShootSleep(film, program);
    ShootOffer(film, program);
    ShootQuestion(film, program);
    ShootLaugh(film, program, begin);
}

void TakeFilm(const std::string& folder) {
    std::filesystem::create_directories(folder);
    Desktop desktop;
    PaintDesktop(desktop.Connection());
    const WallClock wall("2031-03-12 17:42:10");
    Start start;
    start.clock = Clock::kInHand;
    start.spoilt[kStoreFile] = StoreBytes({});
    wall.Rule(start);
    Program program(desktop, start);
    program.Resize({0, 0, kWindowEdge, kWindowEdge});
    const ScreenRect place = program.Place();
    program.Resize({kWindowCorner.x - place.x, kWindowCorner.y - place.y, kWindowEdge, kWindowEdge});
    Film film(desktop, program, wall, folder);
    ShootAll(film, program);
}

}  // namespace
}  // namespace desktop

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: take_animation FOLDER\n");
        return 2;
    }
    try {
        desktop::TakeFilm(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "take_animation: %s\n", error.what());
        return 1;
    }
    return 0;
}
