// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Brings the window of the owl that runs in a folder up. The launcher calls it on a second start.
//
// usage: raise_window FOLDER
//
// Ends with status 0 once the window is shown on the current desktop, with 1 where there is no such window or
// it does not come up within about two seconds each.
//
// A program of its own, because none of Debian's tools does it: wmctrl and xdotool take a window by its title
// or class, which the owls of two folders share, and do nothing where there is no window manager. A signal to
// the running owl would end an older one that does not know it, and there the window manager would take the
// owl for a program that steals the focus; this helper asks on the user's behalf, as a taskbar does.
//
// The window is found by its class and by its process, whose working directory is the folder. What is asked
// of the window manager follows the Extended Window Manager Hints of freedesktop.org; without one, or where
// it does not listen, the window is mapped and raised by plain requests.
#include <sys/stat.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr char kInstance[] = "ulmaro-assistant";  // the first part of the window's class
constexpr auto kPause = std::chrono::milliseconds(50);
constexpr int kLongestSearch = 40;  // pauses: an owl that has just been started has no window yet
constexpr int kLongestWait = 40;    // pauses until the window has come up
constexpr int kPatience = 8;        // pauses before asking again, in plainer ways too
constexpr int kDeepestWindow = 4;   // frames of window managers are two deep, or three
constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;
constexpr std::uint32_t kFromPager = 2;  // whose request stands for the user's own
constexpr std::uint32_t kIconic = 3;     // the value of WM_STATE for a minimised window

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Answer<Reply> Owned(Reply* reply) {
    return {reply, &std::free};
}

/// The connection to the screen that the window is on.
struct Screen {
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = 0;
};

xcb_atom_t Atom(const Screen& screen, const char* name) {
    const auto answer = Owned(xcb_intern_atom_reply(
        screen.connection,
        xcb_intern_atom(screen.connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// Returns the 32-bit numbers of a property; none where the window has no such property.
std::vector<std::uint32_t> Numbers(const Screen& screen, xcb_window_t window, const char* name) {
    constexpr std::uint32_t kMost = 1024;
    const auto answer =
        Owned(xcb_get_property_reply(screen.connection,
                                     xcb_get_property(screen.connection, 0, window, Atom(screen, name),
                                                      XCB_GET_PROPERTY_TYPE_ANY, 0, kMost),
                                     nullptr));
    if (!answer || answer->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
    return {first, first + answer->value_len};
}

std::uint32_t Number(const Screen& screen, xcb_window_t window, const char* name, std::uint32_t otherwise) {
    const auto numbers = Numbers(screen, window, name);
    return numbers.empty() ? otherwise : numbers.front();
}

// ---- Finding ----

bool HasOurClass(const Screen& screen, xcb_window_t window) {
    const auto answer =
        Owned(xcb_get_property_reply(screen.connection,
                                     xcb_get_property(screen.connection, 0, window, XCB_ATOM_WM_CLASS,
                                                      XCB_ATOM_STRING, 0, sizeof kInstance / 4 + 1),
                                     nullptr));
    return answer && xcb_get_property_value_length(answer.get()) >= static_cast<int>(sizeof kInstance) &&
           std::memcmp(xcb_get_property_value(answer.get()), kInstance, sizeof kInstance) == 0;
}

/// Returns whether the window's process works in the folder. A window that does not tell its process may be
/// anybody's, so it counts as one that does.
bool WorksIn(const Screen& screen, xcb_window_t window, const struct stat& folder) {
    const std::uint32_t process = Number(screen, window, "_NET_WM_PID", 0);
    if (process == 0) return true;
    struct stat working {};
    const std::string link = "/proc/" + std::to_string(process) + "/cwd";
    return stat(link.c_str(), &working) == 0 && working.st_dev == folder.st_dev &&
           working.st_ino == folder.st_ino;
}

/// Returns the owl's window among this one and those inside it; 0 where there is none.
xcb_window_t FindWindow(const Screen& screen, xcb_window_t window, const struct stat& folder, int depth = 0) {
    if (HasOurClass(screen, window) && WorksIn(screen, window, folder)) return window;
    if (depth == kDeepestWindow) return 0;
    const auto tree =
        Owned(xcb_query_tree_reply(screen.connection, xcb_query_tree(screen.connection, window), nullptr));
    if (!tree) return 0;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (const xcb_window_t found = FindWindow(screen, children[i], folder, depth + 1)) return found;
    }
    return 0;
}

// ---- Raising ----

bool IsMapped(const Screen& screen, xcb_window_t window) {
    const auto attributes = Owned(xcb_get_window_attributes_reply(
        screen.connection, xcb_get_window_attributes(screen.connection, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           Number(screen, window, "WM_STATE", 0) != kIconic;
}

bool IsOnCurrentDesktop(const Screen& screen, xcb_window_t window) {
    const std::uint32_t current = Number(screen, screen.root, "_NET_CURRENT_DESKTOP", kAllDesktops);
    const std::uint32_t its = Number(screen, window, "_NET_WM_DESKTOP", kAllDesktops);
    return current == kAllDesktops || its == kAllDesktops || its == current;
}

/// Returns the server's time, which a request for the focus has to bear; 0 where the server does not tell.
xcb_timestamp_t ServerTime(const Screen& screen) {
    const xcb_window_t window = xcb_generate_id(screen.connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(screen.connection, 0, window, screen.root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(screen.connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        0, "");
    xcb_flush(screen.connection);
    while (const auto event = Owned(xcb_wait_for_event(screen.connection))) {
        if ((event->response_type & 0x7FU) != XCB_PROPERTY_NOTIFY) continue;
        return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    }
    return 0;
}

/// Sends the window manager a request about a window.
void Ask(const Screen& screen, xcb_window_t window, const char* request,
         const std::array<std::uint32_t, 3>& numbers) {
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = Atom(screen, request);
    for (std::size_t i = 0; i < numbers.size(); ++i) message.data.data32[i] = numbers[i];
    xcb_send_event(screen.connection, 0, screen.root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(screen.connection);
}

void AskToActivate(const Screen& screen, xcb_window_t window) {
    Ask(screen, window, "_NET_ACTIVE_WINDOW", {kFromPager, ServerTime(screen), 0});
}

/// Maps and raises the window by the plain requests, which a window manager carries out in its own way.
void RaisePlainly(const Screen& screen, xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_map_window(screen.connection, window);
    xcb_configure_window(screen.connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(screen.connection);
}

/// Returns whether a window manager says that it knows how to activate a window.
bool ManagerActivates(const Screen& screen) {
    const xcb_atom_t wanted = Atom(screen, "_NET_ACTIVE_WINDOW");
    const auto supported = Numbers(screen, screen.root, "_NET_SUPPORTED");
    return std::find(supported.begin(), supported.end(), wanted) != supported.end();
}

/// Asks again for what a first request did not bring. It may have come too early, while the window manager
/// was still busy giving another window the focus, whose time is the later one then.
void AskAgain(const Screen& screen, xcb_window_t window, bool mapped, bool here, bool activates) {
    if (!mapped) RaisePlainly(screen, window);
    if (!here) {
        // The window manager leaves the user where they are: take them to the owl.
        const std::uint32_t its = Number(screen, window, "_NET_WM_DESKTOP", 0);
        Ask(screen, screen.root, "_NET_CURRENT_DESKTOP", {its, ServerTime(screen), 0});
    }
    if (activates) AskToActivate(screen, window);
}

/// Brings the window up. Returns whether it is then shown on the current desktop.
bool Raise(const Screen& screen, xcb_window_t window) {
    const bool activates = ManagerActivates(screen);
    if (activates)
        AskToActivate(screen, window);
    else
        RaisePlainly(screen, window);
    for (int pauses = 1;; ++pauses) {
        std::this_thread::sleep_for(kPause);
        const bool mapped = IsMapped(screen, window);
        const bool here = IsOnCurrentDesktop(screen, window);
        const bool active = !activates || Number(screen, screen.root, "_NET_ACTIVE_WINDOW", 0) == window;
        if (mapped && here && active) return true;
        if (pauses == kLongestWait) return mapped && here;
        if (pauses % kPatience == 0) AskAgain(screen, window, mapped, here, activates);
    }
}

}  // namespace

int main(int argc, char** argv) {
    struct stat folder {};
    if (argc != 2 || stat(argv[1], &folder) != 0) {
        std::fprintf(stderr, "usage: raise_window FOLDER\n");
        return EXIT_FAILURE;
    }
    int number = 0;
    Screen screen;
    screen.connection = xcb_connect(nullptr, &number);
    if (xcb_connection_has_error(screen.connection) != 0) return EXIT_FAILURE;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(screen.connection));
    for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
    screen.root = screens.data->root;
    for (int pauses = 0; pauses < kLongestSearch; ++pauses) {
        if (const xcb_window_t window = FindWindow(screen, screen.root, folder))
            return Raise(screen, window) ? EXIT_SUCCESS : EXIT_FAILURE;
        std::this_thread::sleep_for(kPause);
    }
    return EXIT_FAILURE;
}
