// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/session.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace desktop {

namespace {

/// How a window manager on an X server is started; a compositor follows it where it has one of its own.
struct ManagerStart {
    WindowManager manager;
    const char* name;  ///< in names of tests
    std::vector<std::string> words;
    std::vector<std::string> compositor;
    bool composites = false;
};

const ManagerStart kStarts[] = {
    {WindowManager::kOpenbox, "Openbox", {"openbox", "--sm-disable"}, {}, false},
    {WindowManager::kOpenboxPicom,
     "OpenboxPicom",
     {"openbox", "--sm-disable"},
     {"picom", "--backend", "xrender", "--config", "/dev/null"},
     true},
    {WindowManager::kXfwm4, "Xfwm4", {"xfwm4", "--compositor=on"}, {}, true},
    {WindowManager::kMutter, "Mutter", {"mutter", "--x11"}, {}, true},
    {WindowManager::kMutterWayland, "MutterWayland", {}, {}, false},
    {WindowManager::kKwin, "Kwin", {"kwin_x11"}, {}, true},
    {WindowManager::kNone, "None", {}, {}, false},
};

const ManagerStart& StartOf(WindowManager manager) {
    return *std::find_if(std::begin(kStarts), std::end(kStarts),
                         [=](const ManagerStart& start) { return start.manager == manager; });
}

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

/// Returns whether a window manager takes a new window into its care: gives it a frame and shows it.
bool ManagesNewWindows(Display* connection) {
    const Window root = DefaultRootWindow(connection);
    const Window window = XCreateSimpleWindow(connection, root, 0, 0, 50, 50, 0, 0, 0);
    XMapWindow(connection, window);
    const auto managed = [&] {
        Window tree_root = None;
        Window parent = root;
        Window* children = nullptr;
        unsigned int count = 0;
        XWindowAttributes attributes{};
        XSync(connection, False);
        if (XQueryTree(connection, window, &tree_root, &parent, &children, &count) == 0) return false;
        if (children != nullptr) XFree(children);
        return parent != root && XGetWindowAttributes(connection, window, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    };
    const bool result = WaitUntil(managed, 0.5);
    XDestroyWindow(connection, window);
    XSync(connection, False);
    return result;
}

/// Returns whether somebody listens at the socket of that name.
bool AcceptsConnections(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool accepts = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(client);
    return accepts;
}

}  // namespace

std::string NameOf(WindowManager manager) {
    return StartOf(manager).name;
}

std::ostream& operator<<(std::ostream& out, WindowManager manager) {
    return out << NameOf(manager);
}

Session::Session(WindowManager manager) {
    const ManagerStart& start = StartOf(manager);
    chmod(folder_.Path().c_str(), S_IRWXU);
    environment_ = {{"HOME", folder_.Path()},
                    {"XDG_CONFIG_HOME", folder_.Path()},
                    {"XDG_CACHE_HOME", folder_.Path()},
                    {"XDG_DATA_HOME", folder_.Path()},
                    {"XDG_RUNTIME_DIR", folder_.Path()},
                    {"GSETTINGS_BACKEND", "memory"},
                    {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder_.Path("bus")}};
    client_environment_["DBUS_SESSION_BUS_ADDRESS"] = environment_["DBUS_SESSION_BUS_ADDRESS"];
    folder_.Write("kwinrc", "[Desktops]\nNumber=4\nRows=1\n");
    XSetErrorHandler(IgnoreError);
    if (manager == WindowManager::kMutterWayland) {
        StartBus();
        StartWaylandSession();
    } else {
        StartServer();
        if (manager != WindowManager::kOpenbox && manager != WindowManager::kNone) StartBus();
    }
    Connect();
    if (manager == WindowManager::kNone) return;
    if (!start.words.empty()) StartManager(start.words);
    if (!start.compositor.empty()) StartManager(start.compositor);
    AwaitManager(start.composites);
}

Session::~Session() {
    if (connection_ != nullptr) XCloseDisplay(connection_);
    while (!managers_.empty()) managers_.pop_back();
    bus_.reset();
}

void Session::StartServer() {
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
    const std::string number = ReadLine(ready[0]);
    close(ready[0]);
    if (number.empty()) Fail("no X server: " + folder_.Read("server"));
    client_environment_["DISPLAY"] = ":" + number;
}

void Session::StartBus() {
    if (bus_) return;
    folder_.Write("bus.conf", "<busconfig><type>session</type><listen>" +
                                  environment_["DBUS_SESSION_BUS_ADDRESS"] +
                                  "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                                  "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                  "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    Command command;
    command.words = {"dbus-daemon", "--config-file=" + folder_.Path("bus.conf"), "--nofork", "--nopidfile"};
    command.environment = environment_;
    command.error_file = folder_.Path("bus_said");
    bus_.emplace(command);
    if (!WaitUntil([this] { return AcceptsConnections(folder_.Path("bus")); }, 10))
        Fail("no message bus: " + folder_.Read("bus_said"));
}

void Session::StartManager(const std::vector<std::string>& words) {
    Command command;
    command.words = words;
    command.environment = environment_;
    command.environment.merge(std::map(client_environment_));
    command.error_file = folder_.Path("manager");
    managers_.push_back(std::make_unique<Process>(command));
}

/// The session runs a command of ours, which tells where XWayland is and ends with it.
void Session::StartWaylandSession() {
    StartManager({"mutter", "--wayland", "--headless", "--virtual-monitor", "1280x1024@60", "--", "sh", "-c",
                  "echo \"$DISPLAY $XAUTHORITY\" >\"$HOME/new\"; mv \"$HOME/new\" \"$HOME/client\";"
                  "exec tail --pid=$PPID -f /dev/null"});
    const auto told = [this] { return !folder_.Read("client").empty(); };
    if (!WaitUntil(told, 30)) Fail("no Wayland session: " + folder_.Read("manager"));
    std::istringstream words(folder_.Read("client"));
    words >> client_environment_["DISPLAY"] >> client_environment_["XAUTHORITY"];
}

void Session::Connect() {
    // The library takes the authority file from nowhere but the environment.
    const auto authority = client_environment_.find("XAUTHORITY");
    if (authority != client_environment_.end()) setenv("XAUTHORITY", authority->second.c_str(), 1);
    connection_ = XOpenDisplay(client_environment_["DISPLAY"].c_str());
    if (authority != client_environment_.end()) unsetenv("XAUTHORITY");
    if (connection_ == nullptr) Fail("cannot connect to the X server " + client_environment_["DISPLAY"]);
}

/// Waits until the window manager is ready. It announces itself before, and forgets windows that are mapped
/// in between.
void Session::AwaitManager(bool composites) {
    const Atom compositor = XInternAtom(connection_, "_NET_WM_CM_S0", False);
    const auto ready = [&] {
        return ManagesNewWindows(connection_) &&
               (!composites || XGetSelectionOwner(connection_, compositor) != None);
    };
    if (!WaitUntil(ready, 30)) Fail("no window manager: " + folder_.Read("manager"));
}

}  // namespace desktop
