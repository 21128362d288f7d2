// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: Desktop, Program.
#include "tests/desktop/desktop.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/desktop/sanitized.h"

namespace desktop {

// ---- Desktop ----

namespace {

std::string TitleOf(Display* connection, Window window) {
    char* name = nullptr;
    if (XFetchName(connection, window, &name) == 0 || name == nullptr) return {};
    std::string title = name;
    XFree(name);
    return title;
}

/// A window's place in the tree of windows.
struct Family {
    Window parent = None;
    std::vector<Window> children;  ///< topmost first
};

Family FamilyOf(Display* connection, Window window) {
    Family family;
    Window root = None;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(connection, window, &root, &family.parent, &children, &count) == 0) return {};
    family.children.assign(children, children + count);
    if (children != nullptr) XFree(children);
    std::reverse(family.children.begin(), family.children.end());
    return family;
}

Window FindBelow(Display* connection, Window window, const std::string& title) {
    if (TitleOf(connection, window) == title) return window;
    for (const Window child : FamilyOf(connection, window).children) {
        const Window found = FindBelow(connection, child, title);
        if (found != None) return found;
    }
    return None;
}

}  // namespace

Desktop::Desktop(WindowManager manager)
    : session_(manager), manager_(manager), connection_(session_.Connection()) {
    MovePointer({kWidth - 1, kHeight - 1});
}

void Desktop::MovePointer(ScreenPoint point) {
    XTestFakeMotionEvent(connection_, DefaultScreen(connection_), point.x, point.y, CurrentTime);
    XSync(connection_, False);
}

void Desktop::TouchWindow(const ScreenRect& place) {
    for (const int step : {0, 1}) {
        MovePointer({place.x + place.width / 2 + step, place.y + place.height / 2});
        SleepSeconds(0.05);
    }
    MovePointer({kWidth - 1, kHeight - 1});
}

void Desktop::AwaitWindowManager() {
    if (manager_ == WindowManager::kNone) return;
    const Window root = DefaultRootWindow(connection_);
    const Atom answer = XInternAtom(connection_, "_NET_FRAME_EXTENTS", False);
    if (question_ == None) question_ = XCreateSimpleWindow(connection_, root, 0, 0, 1, 1, 0, 0, 0);
    XDeleteProperty(connection_, question_, answer);
    AskRoot(question_, "_NET_REQUEST_FRAME_EXTENTS");
    const auto answered = [&] {
        int count = 0;
        Atom* atoms = XListProperties(connection_, question_, &count);
        const bool there = std::find(atoms, atoms + count, answer) != atoms + count;
        if (atoms != nullptr) XFree(atoms);
        return there;
    };
    if (!WaitUntil(answered, 20)) Fail("the window manager does not answer");
}

void Desktop::AskRoot(Window window, const char* message, long first, long second) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(connection_, message, False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = first;
    event.xclient.data.l[1] = second;
    XSendEvent(connection_, DefaultRootWindow(connection_), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XSync(connection_, False);
}

std::vector<unsigned long> Desktop::Property(Window window, const char* name) const {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    XGetWindowProperty(connection_, window, XInternAtom(connection_, name, False), 0, 4096, False,
                       AnyPropertyType, &type, &format, &count, &left, &bytes);
    const auto* numbers = reinterpret_cast<const unsigned long*>(bytes);
    std::vector<unsigned long> values(numbers, numbers + (format == 32 ? count : 0));
    if (bytes != nullptr) XFree(bytes);
    return values;
}

bool Desktop::HasSeveralDesktops() const {
    const auto count = Property(DefaultRootWindow(connection_), "_NET_NUMBER_OF_DESKTOPS");
    return !count.empty() && count[0] > 1;
}

void Desktop::Button(unsigned int button, bool down) {
    XTestFakeButtonEvent(connection_, button, down ? True : False, CurrentTime);
    XSync(connection_, False);
    if (down) AwaitWindowManager();
}

void Desktop::Key(KeySym key, bool down) {
    XTestFakeKeyEvent(connection_, XKeysymToKeycode(connection_, key), down ? True : False, CurrentTime);
    XSync(connection_, False);
}

namespace {

/// A key and whether Shift goes with it.
struct KeyStroke {
    KeyCode key = 0;
    bool shift = false;
};

/// Returns how to type a character; key 0 where the keyboard has none for it.
KeyStroke FindStroke(Display* connection, KeySym character) {
    const KeyCode key = XKeysymToKeycode(connection, character);
    if (key == 0) return {};
    return {key, XkbKeycodeToKeysym(connection, key, 0, 0) != character};
}

}  // namespace

/// Gives a key that types nothing this symbol, with and without Shift.
KeyCode Desktop::SpareKey(KeySym key) {
    int first = 0;
    int last = 0;
    XDisplayKeycodes(connection_, &first, &last);
    for (int code = last; code >= first; --code) {
        if (XkbKeycodeToKeysym(connection_, static_cast<KeyCode>(code), 0, 0) != NoSymbol) continue;
        KeySym symbols[] = {key, key};
        XChangeKeyboardMapping(connection_, code, 2, symbols, 1);
        XSync(connection_, False);
        // Our own connection hears of it by an event too.
        XEvent event{};
        while (XCheckTypedEvent(connection_, MappingNotify, &event) != 0) {
            XRefreshKeyboardMapping(&event.xmapping);
        }
        return static_cast<KeyCode>(code);
    }
    Fail("the keyboard has no spare key");
}

void Desktop::TypeText(const std::string& text) {
    std::vector<KeySym> keys;
    for (const char character : text) {
        keys.push_back(static_cast<unsigned char>(character));  // Latin-1 symbols are their codes
    }
    TypeKeys(keys);
}

void Desktop::TypeKeys(const std::vector<KeySym>& keys) {
    std::vector<KeyStroke> strokes;
    for (const KeySym symbol : keys) {
        KeyStroke stroke = FindStroke(connection_, symbol);
        if (stroke.key == 0) stroke.key = SpareKey(symbol);
        strokes.push_back(stroke);
    }
    const KeyCode shift = XKeysymToKeycode(connection_, XK_Shift_L);
    for (const KeyStroke& stroke : strokes) {
        if (stroke.shift) XTestFakeKeyEvent(connection_, shift, True, CurrentTime);
        XTestFakeKeyEvent(connection_, stroke.key, True, CurrentTime);
        XTestFakeKeyEvent(connection_, stroke.key, False, CurrentTime);
        if (stroke.shift) XTestFakeKeyEvent(connection_, shift, False, CurrentTime);
    }
    XSync(connection_, False);
}

Window Desktop::FindWindow(const std::string& title) const {
    return FindBelow(connection_, DefaultRootWindow(connection_), title);
}

void Desktop::Cover(const ScreenRect& part) {
    Uncover();
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;  // the window manager neither moves nor decorates it
    attributes.background_pixel = WhitePixel(connection_, DefaultScreen(connection_));
    cover_ =
        XCreateWindow(connection_, DefaultRootWindow(connection_), part.x, part.y,
                      static_cast<unsigned int>(part.width), static_cast<unsigned int>(part.height), 0,
                      CopyFromParent, InputOutput, nullptr, CWOverrideRedirect | CWBackPixel, &attributes);
    XMapRaised(connection_, cover_);
    XSync(connection_, False);
}

void Desktop::CoverByMaximisedWindow() {
    Uncover();
    cover_ = XCreateSimpleWindow(connection_, DefaultRootWindow(connection_), 0, 0, kWidth, kHeight, 0, 0,
                                 WhitePixel(connection_, DefaultScreen(connection_)));
    Atom maximised[] = {XInternAtom(connection_, "_NET_WM_STATE_MAXIMIZED_VERT", False),
                        XInternAtom(connection_, "_NET_WM_STATE_MAXIMIZED_HORZ", False)};
    XChangeProperty(connection_, cover_, XInternAtom(connection_, "_NET_WM_STATE", False), XA_ATOM, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(maximised), 2);
    XStoreName(connection_, cover_, "Cover");
    XMapRaised(connection_, cover_);
    XSync(connection_, False);
    const auto viewable = [this] {
        XWindowAttributes attributes{};
        return XGetWindowAttributes(connection_, cover_, &attributes) != 0 &&
               attributes.map_state == IsViewable && attributes.width >= kWidth - 20;
    };
    if (!WaitUntil(viewable, 10)) Fail("no window covers the screen");
    AskRoot(cover_, "_NET_ACTIVE_WINDOW", 2);
}

void Desktop::Uncover() {
    if (cover_ == None) return;
    XDestroyWindow(connection_, cover_);
    XSync(connection_, False);
    cover_ = None;
}

// ---- Program ----

namespace {

/// How many frames a button or a key stays down once the program knows: the press and the release must not
/// meet between the same two frames.
constexpr std::uint64_t kHeldFrames = 2;

std::string Joined(const std::vector<std::string>& words, char separator) {
    std::string joined;
    for (const std::string& word : words) joined += (joined.empty() ? "" : std::string(1, separator)) + word;
    return joined;
}

/// Returns the libraries loaded ahead of the program's own: that of the address sanitizer, which must come
/// first where the program wants it; ours, so that the clock is in its hand whatever the others do; then
/// those of the start.
std::string PreloadOf(const Start& start) {
    std::vector<std::string> libraries;
    if (IsSanitized(start.program)) libraries.emplace_back(ULMARO_ASAN_LIBRARY);
    libraries.emplace_back(ULMARO_PROBE_LIBRARY);
    libraries.insert(libraries.end(), start.preload.begin(), start.preload.end());
    return Joined(libraries, ':');
}

}  // namespace

std::string ProgramUnderTest() {
    const char* program = std::getenv("ULMARO_DESKTOP_PROGRAM");
    return program != nullptr ? program : ULMARO_PROGRAM;
}

Program::Program(Desktop& desktop, const Start& start) : desktop_(desktop), start_(start) {
    if (start.all_files) files_.LinkAll(ULMARO_DATA);
    for (const auto& [file, bytes] : start.spoilt) files_.Write(file, bytes);
    for (const std::string& file : start.missing) files_.Remove(file);
    for (const std::string& file : start.pipes) files_.MakePipe(file);
    OpenProbe();
    SetClock(start.clock);
    StartProcess();
}

Program::~Program() {
    process_.reset();
    if (probe_ != nullptr) munmap(probe_, sizeof(Probe));
}

void Program::StartProcess() {
    Command command;
    command.words = {start_.program};
    command.words.insert(command.words.end(), start_.options.begin(), start_.options.end());
    command.folder = files_.Path();
    command.error_file = output_.Path("said");
    command.environment = {
        {"ALSOFT_DRIVERS", "null"},          // no sound card in a test
        {"ASAN_OPTIONS", "detect_leaks=0"},  // those of the GL driver
        {"LD_PRELOAD", PreloadOf(start_)},
        {kProbeVariable, output_.Path("probe")},
    };
    if (start_.clock == Clock::kInHand) {
        command.environment["vblank_mode"] = "0";     // a step a frame: the more frames, the shorter the test
        command.environment["LP_NUM_THREADS"] = "0";  // the processors are for the tests beside this one
    }
    command.environment.merge(std::map(desktop_.ClientEnvironment()));
    for (const auto& [name, value] : start_.environment) command.environment[name] = value;
    process_.emplace(command);
    if (!start_.wait_for_window) return;

    const auto ready = [&] {
        window_ = desktop_.FindWindow(kTitle);
        return window_ != None && (start_.wait_for_sight ? Shown() : Frames() > 0);
    };
    const auto ready_or_gone = [&] { return ready() || !process_->Running(); };
    if (!WaitUntil(ready_or_gone, start_.patience * 30) || !process_->Running()) {
        Fail("the program shows no window; it said: " + Said());
    }
    WaitForFrames(3, 60);
}

void Program::OpenProbe() {
    output_.Write("probe", std::string(sizeof(Probe), '\0'));
    const int file = open(output_.Path("probe").c_str(), O_RDWR | O_CLOEXEC);
    void* record =
        file < 0 ? MAP_FAILED : mmap(nullptr, sizeof(Probe), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (file >= 0) close(file);
    if (record == MAP_FAILED) Fail("cannot map the probe's file");
    probe_ = static_cast<Probe*>(record);
    probe_->longest_step = start_.longest_step;
    probe_->on_demand = start_.pixels_on_demand;
    probe_->breath = static_cast<std::int64_t>(start_.breath * 1e9);
}

bool Program::Shown() const {
    XWindowAttributes attributes{};
    XSync(desktop_.Connection(), False);
    return XGetWindowAttributes(desktop_.Connection(), window_, &attributes) != 0 &&
           attributes.map_state == IsViewable && !IsMinimised();
}

bool Program::IsMinimised() const {
    const std::vector<unsigned long> state = desktop_.Property(window_, "WM_STATE");
    const std::vector<unsigned long> states = desktop_.Property(window_, "_NET_WM_STATE");
    const Atom hidden = XInternAtom(desktop_.Connection(), "_NET_WM_STATE_HIDDEN", False);
    return (!state.empty() && state[0] == IconicState) ||
           std::find(states.begin(), states.end(), hidden) != states.end();
}

std::string Program::Said() const {
    constexpr std::string_view kOfMesa =
        "ATTENTION: default value of option vblank_mode overridden by environment.\n";
    std::string said = output_.Read("said");
    for (std::size_t at = said.find(kOfMesa); at != std::string::npos; at = said.find(kOfMesa)) {
        said.erase(at, kOfMesa.size());
    }
    return said;
}

ScreenRect Program::Place() const {
    Display* connection = desktop_.Connection();
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(connection, window_, &attributes) == 0) Fail("the program's window is gone");
    ScreenRect place{0, 0, attributes.width, attributes.height};
    Window child = None;
    XTranslateCoordinates(connection, window_, attributes.root, 0, 0, &place.x, &place.y, &child);
    return place;
}

/// Has a whole frame drawn that begins now, where frames have pixels on demand.
void Program::AwaitPixels() const {
    if (!probe_->on_demand || !probe_->clock_in_hand) return;
    const std::uint64_t goal = probe_->drawn + 2;  // one may be on its way
    ++probe_->looking;
    ++probe_->waiting;
    const bool came = WaitUntil([&] { return probe_->drawn >= goal; }, 20);
    --probe_->waiting;
    --probe_->looking;
    if (!came) Fail("the program draws no pixels");
}

Image Program::Look() const {
    AwaitPixels();
    const ScreenRect place = Place();
    XImage* pixels = XGetImage(desktop_.Connection(), window_, 0, 0, static_cast<unsigned int>(place.width),
                               static_cast<unsigned int>(place.height), AllPlanes, ZPixmap);
    if (pixels == nullptr) Fail("the window cannot be looked at: it is hidden or leaves the screen");
    Image image(place.width, place.height);
    for (int y = 0; y < place.height; ++y) {
        for (int x = 0; x < place.width; ++x) {
            const unsigned long pixel = XGetPixel(pixels, x, y);  // 24 bits: red, green, blue
            image.At(x, y) = {static_cast<std::uint8_t>(pixel >> 16), static_cast<std::uint8_t>(pixel >> 8),
                              static_cast<std::uint8_t>(pixel)};
        }
    }
    XDestroyImage(pixels);
    return image;
}

bool Program::WaitInHaste(const std::function<bool()>& condition, double seconds) {
    ++probe_->waiting;
    const bool came = WaitUntil(condition, seconds);
    --probe_->waiting;
    return came;
}

void Program::WaitForFrames(std::uint64_t count, double seconds) {
    const std::uint64_t goal = Frames() + count;
    const auto there = [&] { return Frames() >= goal || !process_->Running(); };
    if (!WaitInHaste(there, start_.patience * seconds)) Fail("the program draws no frames");
    if (!process_->Running()) Fail("the program has ended; it said: " + Said());
}

double Program::RoundTripsPerFrame(std::uint64_t count) {
    const std::uint64_t frames = Frames();
    const std::uint64_t round_trips = RoundTrips();
    WaitForFrames(count, static_cast<double>(count));
    return static_cast<double>(RoundTrips() - round_trips) / static_cast<double>(Frames() - frames);
}

double Program::FramesPerSecond(double seconds) const {
    const double start = Now();
    const std::uint64_t before = Frames();
    SleepSeconds(seconds);
    return static_cast<double>(Frames() - before) / (Now() - start);
}

void Program::LetTimePass(double seconds) {
    BeginToPass(seconds);
    const auto passed = [this] { return probe_->to_pass == 0 || !process_->Running(); };
    if (!WaitInHaste(passed, start_.patience * (60 + seconds))) Fail("the program's time does not pass");
    WaitForFrames(2);
}

void Program::LoadDice(int number) {
    probe_->dice = number;
    probe_->dice_in_hand = true;
}

void Program::ReleaseDice() {
    probe_->dice_in_hand = false;
}

double Program::StalledSeconds() const {
    return static_cast<double>(probe_->stalled) / 1e9;
}

void Program::AwaitEvents() {
    Display* connection = desktop_.Connection();
    const long mark = ++marks_;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window_;
    event.xclient.message_type = XInternAtom(connection, "ULMARO_TEST_MARK", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = kMarkWord;
    event.xclient.data.l[1] = mark;
    XSendEvent(connection, window_, False, NoEventMask, &event);
    XSync(connection, False);
    const auto read = [&] {
        return probe_->mark == static_cast<std::uint64_t>(mark) || !process_->Running();
    };
    if (!WaitInHaste(read, start_.patience * 20)) Fail("the program reads no events");
}

void Program::MovePointer(CanvasPoint point) {
    const ScreenRect place = Place();
    desktop_.MovePointer({place.x + static_cast<int>(point.x * place.width / kCanvas),
                          place.y + static_cast<int>((kCanvas - point.y) * place.height / kCanvas)});
    AwaitEvents();
    WaitForFrames(2);
}

void Program::Click(CanvasPoint point, unsigned int button) {
    // In hand, the clock jumps so far that the program takes it for a stall.
    constexpr double kDeliberateSeconds = 0.35;
    if (probe_->clock_in_hand) {
        probe_->clock += static_cast<std::int64_t>(kDeliberateSeconds * 1e9);
    } else {
        SleepSeconds(std::max(0.0, last_click_ + kDeliberateSeconds - Now()));
    }
    ClickAtOnce(point, button);
    last_click_ = Now();
}

void Program::ClickAtOnce(CanvasPoint point, unsigned int button) {
    MovePointer(point);
    desktop_.Button(button, true);
    AwaitEvents();
    WaitForFrames(kHeldFrames);
    desktop_.Button(button, false);
    AwaitEvents();
    WaitForFrames(kHeldFrames);
}

void Program::Type(KeySym key) {
    desktop_.Key(key, true);
    AwaitEvents();
    WaitForFrames(kHeldFrames);
    desktop_.Key(key, false);
    AwaitEvents();
    WaitForFrames(kHeldFrames);
}

/// The most characters that one key types: "EUR".
constexpr std::size_t kMostPerKey = 3;

void Program::TypeText(const std::string& text) {
    desktop_.TypeText(text);
    AwaitEvents();
    WaitForFrames(kMostPerKey * text.size() + kHeldFrames);
}

void Program::TypeKeys(const std::vector<KeySym>& keys) {
    desktop_.TypeKeys(keys);
    AwaitEvents();
    WaitForFrames(kMostPerKey * keys.size() + kHeldFrames);
}

void Program::Resize(const ScreenRect& place) {
    XMoveResizeWindow(desktop_.Connection(), window_, place.x, place.y,
                      static_cast<unsigned int>(place.width), static_cast<unsigned int>(place.height));
    const auto resized = [&] {
        const ScreenRect now = Place();
        return now.width == place.width && now.height == place.height;
    };
    if (!WaitUntil(resized, 10)) Fail("the window does not take the new size");
    WaitForFrames(3);
}

void Program::Minimise() {
    XIconifyWindow(desktop_.Connection(), window_, DefaultScreen(desktop_.Connection()));
    if (!WaitUntil([this] { return !Shown(); }, 10)) Fail("the window cannot be minimised");
}

void Program::Restore() {
    XMapRaised(desktop_.Connection(), window_);
    Activate();
    if (!WaitUntil([this] { return Shown(); }, 10)) Fail("the window cannot be shown again");
    // Some window managers let it fly in from below the screen.
    const auto landed = [this] {
        const ScreenRect place = Place();
        return place.y + place.height <= Desktop::kHeight;
    };
    WaitUntil(landed, 1);
}

void Program::Activate() {
    desktop_.AskRoot(window_, "_NET_ACTIVE_WINDOW", 2);  // 2: the user has asked for it
}

void Program::MoveToDesktop(unsigned int number) {
    desktop_.AskRoot(window_, "_NET_WM_DESKTOP", number, 2);
    const auto there = [&] {
        return desktop_.Property(window_, "_NET_WM_DESKTOP") == std::vector{number + 0UL};
    };
    if (!WaitUntil(there, 10)) Fail("the window does not go to another desktop");
}

void Program::Close() {
    desktop_.AskRoot(window_, "_NET_CLOSE_WINDOW");
}

void Program::Kill() {
    kill(process_->Id(), SIGKILL);
    if (!process_->WaitForEnd(10)) Fail("the program cannot be killed");
}

void Program::StartAgain() {
    if (process_->Running()) Fail("the program still runs");
    const auto gone = [this] { return desktop_.FindWindow(kTitle) == None; };
    if (!WaitUntil(gone, 10)) Fail("the program's window has stayed behind");
    window_ = None;
    StartProcess();
}

}  // namespace desktop
