// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: Folder, Desktop, Program.
#include "tests/desktop/desktop.h"

#include <X11/XKBlib.h>
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

namespace desktop {

namespace files = std::filesystem;

// ---- Folder ----

Folder::Folder() : path_((files::temp_directory_path() / "ulmaro-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) Fail("cannot make " + path_);
}

Folder::~Folder() {
    std::error_code ignored;
    files::remove_all(path_, ignored);
}

void Folder::LinkAll(const std::string& other) const {
    for (const files::directory_entry& file : files::directory_iterator(other)) {
        files::create_symlink(files::absolute(file.path()), Path(file.path().filename().string()));
    }
}

void Folder::Remove(const std::string& file) const {
    files::remove(Path(file));
}

void Folder::MakePipe(const std::string& file) const {
    Remove(file);
    if (mkfifo(Path(file).c_str(), S_IRUSR | S_IWUSR) != 0) Fail("no pipe " + file);
}

void Folder::Write(const std::string& file, const std::string& bytes) const {
    Remove(file);  // else the bytes would go where the link points
    std::ofstream(Path(file), std::ios::binary) << bytes;
}

std::string Folder::Read(const std::string& file) const {
    std::ifstream in(Path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// ---- Desktop ----

namespace {

/// Windows may vanish while they are looked at; that is no error of the test.
int IgnoreError(Display* /*display*/, XErrorEvent* /*error*/) {
    return 0;
}

/// Reads the display number that the server writes when it is ready; empty where none comes within 30
/// seconds.
std::string ReadLine(int pipe) {
    std::string line;
    pollfd ready{pipe, POLLIN, 0};
    for (char c = 0; poll(&ready, 1, 30'000) == 1 && read(pipe, &c, 1) == 1 && c != '\n';) line += c;
    return line;
}

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

/// Returns whether a window manager takes a new window into its care: gives it a frame and shows it.
bool ManagesNewWindows(Display* connection) {
    const Window root = DefaultRootWindow(connection);
    const Window window = XCreateSimpleWindow(connection, root, 0, 0, 50, 50, 0, 0, 0);
    XMapWindow(connection, window);
    const auto managed = [&] {
        XWindowAttributes attributes{};
        XSync(connection, False);
        return FamilyOf(connection, window).parent != root &&
               XGetWindowAttributes(connection, window, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    };
    const bool result = WaitUntil(managed, 0.5);
    XDestroyWindow(connection, window);
    XSync(connection, False);
    return result;
}

}  // namespace

Desktop::Desktop() {
    StartServer();
    StartWindowManager();
    MovePointer({kWidth - 1, kHeight - 1});
}

Desktop::~Desktop() {
    if (connection_ != nullptr) XCloseDisplay(connection_);
}

void Desktop::StartServer() {
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) Fail("cannot make a pipe");
    Command command;
    command.words = {"Xvfb",      "-displayfd", std::to_string(ready[1]),
                     "-screen",   "0",          "1280x1024x24",
                     "-nolisten", "tcp",        "-noreset"};
    command.inherited_pipe = ready[1];
    command.error_file = folder_.Path("server");
    server_.emplace(command);
    close(ready[1]);
    name_ = ":";
    name_ += ReadLine(ready[0]);
    close(ready[0]);
    if (name_ == ":") Fail("no X server: " + folder_.Read("server"));

    XSetErrorHandler(IgnoreError);
    connection_ = XOpenDisplay(name_.c_str());
    if (connection_ == nullptr) Fail("cannot connect to the X server " + name_);
}

void Desktop::StartWindowManager() {
    Command command;
    command.words = {"openbox", "--sm-disable"};
    command.environment = {{"DISPLAY", name_},
                           {"HOME", folder_.Path()},
                           {"XDG_CONFIG_HOME", folder_.Path()},
                           {"XDG_CACHE_HOME", folder_.Path()},
                           {"XDG_DATA_HOME", folder_.Path()}};
    command.error_file = folder_.Path("manager");
    manager_.emplace(command);
    // It announces itself before it is ready, and forgets windows that are mapped in between.
    if (!WaitUntil([this] { return ManagesNewWindows(connection_); }, 30)) {
        Fail("no window manager: " + folder_.Read("manager"));
    }
}

void Desktop::MovePointer(ScreenPoint point) {
    XTestFakeMotionEvent(connection_, DefaultScreen(connection_), point.x, point.y, CurrentTime);
    XSync(connection_, False);
}

/// Asks the window manager for the frame's width around a window and waits for the answer, which comes after
/// all that it had to do before.
void Desktop::AwaitWindowManager() {
    const Window root = DefaultRootWindow(connection_);
    const Atom answer = XInternAtom(connection_, "_NET_FRAME_EXTENTS", False);
    if (question_ == None) question_ = XCreateSimpleWindow(connection_, root, 0, 0, 1, 1, 0, 0, 0);
    XDeleteProperty(connection_, question_, answer);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = question_;
    event.xclient.message_type = XInternAtom(connection_, "_NET_REQUEST_FRAME_EXTENTS", False);
    event.xclient.format = 32;
    XSendEvent(connection_, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
    const auto answered = [&] {
        int count = 0;
        Atom* atoms = XListProperties(connection_, question_, &count);
        const bool there = std::find(atoms, atoms + count, answer) != atoms + count;
        if (atoms != nullptr) XFree(atoms);
        return there;
    };
    if (!WaitUntil(answered, 20)) Fail("the window manager does not answer");
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
    std::vector<KeyStroke> strokes;
    for (const char character : text) {
        const KeySym symbol = static_cast<unsigned char>(character);  // Latin-1 symbols are their codes
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

/// Returns the libraries loaded ahead of the program's own: ours, so that the clock is in its hand whatever
/// the others do, then those of the start.
std::string PreloadOf(const Start& start) {
    std::vector<std::string> libraries = {ULMARO_PROBE_LIBRARY};
    libraries.insert(libraries.end(), start.preload.begin(), start.preload.end());
    return Joined(libraries, ':');
}

}  // namespace

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
    command.folder = files_.Path();
    command.error_file = output_.Path("said");
    command.environment = {
        {"DISPLAY", desktop_.Name()},
        {"ALSOFT_DRIVERS", "null"},  // no sound card in a test
        {"LD_PRELOAD", PreloadOf(start_)},
        {kProbeVariable, output_.Path("probe")},
    };
    for (const auto& [name, value] : start_.environment) command.environment[name] = value;
    process_.emplace(command);
    if (!start_.wait_for_window) return;

    const auto shown = [&] { return (window_ = desktop_.FindWindow(kTitle)) != None && Shown(); };
    if (!WaitUntil([&] { return shown() || !process_->Running(); }, 30) || !process_->Running()) {
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
}

bool Program::Shown() const {
    XWindowAttributes attributes{};
    XSync(desktop_.Connection(), False);
    return XGetWindowAttributes(desktop_.Connection(), window_, &attributes) != 0 &&
           attributes.map_state == IsViewable;
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

Image Program::Look() const {
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

void Program::WaitForFrames(std::uint64_t count, double seconds) {
    const std::uint64_t goal = Frames() + count;
    const auto there = [&] { return Frames() >= goal || !process_->Running(); };
    if (!WaitUntil(there, seconds)) Fail("the program draws no frames");
    if (!process_->Running()) Fail("the program has ended; it said: " + Said());
}

double Program::RoundTripsPerFrame(std::uint64_t count) {
    const std::uint64_t frames = Frames();
    const std::uint64_t round_trips = RoundTrips();
    WaitForFrames(count);
    return static_cast<double>(RoundTrips() - round_trips) / static_cast<double>(Frames() - frames);
}

double Program::FramesPerSecond(double seconds) const {
    const double start = Now();
    const std::uint64_t before = Frames();
    SleepSeconds(seconds);
    return static_cast<double>(Frames() - before) / (Now() - start);
}

void Program::LetTimePass(double seconds) {
    probe_->to_pass += static_cast<std::int64_t>(seconds * 1e9);
    const auto passed = [this] { return probe_->to_pass == 0 || !process_->Running(); };
    if (!WaitUntil(passed, 60 + seconds)) Fail("the program's time does not pass");
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
    if (!WaitUntil(read, 20)) Fail("the program reads no events");
}

void Program::MovePointer(CanvasPoint point) {
    const ScreenRect place = Place();
    desktop_.MovePointer({place.x + static_cast<int>(point.x * place.width / kCanvas),
                          place.y + static_cast<int>((kCanvas - point.y) * place.height / kCanvas)});
    AwaitEvents();
    WaitForFrames(2);
}

void Program::Click(CanvasPoint point, unsigned int button) {
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

void Program::TypeText(const std::string& text) {
    desktop_.TypeText(text);
    AwaitEvents();
    WaitForFrames(2 * text.size() + kHeldFrames);  // an accented letter is two characters
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
    if (!WaitUntil([this] { return Shown(); }, 10)) Fail("the window cannot be shown again");
}

void Program::Close() {
    Display* connection = desktop_.Connection();
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window_;
    event.xclient.message_type = XInternAtom(connection, "_NET_CLOSE_WINDOW", False);
    event.xclient.format = 32;
    XSendEvent(connection, DefaultRootWindow(connection), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XSync(connection, False);
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
