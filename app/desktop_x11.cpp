// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The part of the seam to the desktop that X11 fills in: pointer, window class and icon, attention, swap
// control, composed characters. No other source includes Xlib.
#include <GL/glx.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <dlfcn.h>
#include <poll.h>
#include <xcb/present.h>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "app/desktop.h"

namespace {

/// Returns the connection that the window was made on, so that the program keeps to one; null before there is
/// a window.
Display* WindowConnection() {
    return glXGetCurrentDisplay();
}

/// Returns whether the GLX of the window's screen names an extension.
bool HasGlxExtension(Display* display, const char* name) {
    const char* names = glXQueryExtensionsString(display, DefaultScreen(display));
    if (names == nullptr) return false;
    const std::string all = " " + std::string(names) + " ";
    return all.find(" " + std::string(name) + " ") != std::string::npos;
}

template <typename Function>
Function GlxFunction(const char* name) {
    return reinterpret_cast<Function>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

/// Returns an icon as the window manager reads it: width, height, then a number for each pixel, alpha in its
/// highest byte, then red, green and blue; rows from the top. Xlib takes 32-bit numbers as longs.
std::vector<unsigned long> IconCardinals(const WindowIcon& icon) {
    std::vector<unsigned long> cardinals = {static_cast<unsigned long>(icon.width),
                                            static_cast<unsigned long>(icon.height)};
    for (int y = icon.height - 1; y >= 0; --y) {
        for (int x = 0; x < icon.width; ++x) {
            const unsigned char* pixel = icon.pixels + (std::ptrdiff_t{y} * icon.width + x) * 4;
            cardinals.push_back(std::uint32_t{pixel[3]} << 24U | std::uint32_t{pixel[0]} << 16U |
                                std::uint32_t{pixel[1]} << 8U | pixel[2]);
        }
    }
    return cardinals;
}

/// Returns a clock that runs with real time, nanoseconds. Waits are measured by it.
std::uint64_t RealNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_RAW, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

/// Sends the window manager a message about a window, as the Extended Window Manager Hints have them.
void TellWindowManager(Display* display, Window window, const char* message, long first, long second,
                       long third = 0, long fourth = 0) {
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, message, False);
    event.xclient.format = 32;
    const long data[] = {first, second, third, fourth};
    std::copy(std::begin(data), std::end(data), event.xclient.data.l);
    XSendEvent(display, DefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask,
               &event);
}

/// Sets or clears the hint of the older kind, which window managers without the newer one know.
void SetUrgencyHint(Display* display, bool urgent) {
    const std::unique_ptr<XWMHints, decltype(&XFree)> hints(XGetWMHints(display, glXGetCurrentDrawable()),
                                                            &XFree);
    XWMHints changed = hints ? *hints : XWMHints();
    changed.flags = urgent ? changed.flags | XUrgencyHint : changed.flags & ~XUrgencyHint;
    XSetWMHints(display, glXGetCurrentDrawable(), &changed);
}

/// Waits until an event of GLUT's window has come, at most so many nanoseconds.
void AwaitWindowEvent(std::uint64_t nanoseconds) {
    Display* display = WindowConnection();
    if (display == nullptr || XPending(display) > 0) return;
    pollfd connection = {ConnectionNumber(display), POLLIN, 0};
    const timespec wait = {static_cast<std::time_t>(nanoseconds / 1'000'000'000U),
                           static_cast<long>(nanoseconds % 1'000'000'000U)};
    ppoll(&connection, 1, &wait, nullptr);
}

}  // namespace

ScreenPoint GlobalPointer() {
    ScreenPoint point;
    Display* display = WindowConnection();
    if (display == nullptr) return point;
    Window root = 0;
    Window child = 0;
    int window_x = 0;
    int window_y = 0;
    unsigned int buttons = 0;
    XQueryPointer(display, DefaultRootWindow(display), &root, &child, &point.x, &point.y, &window_x,
                  &window_y, &buttons);
    return point;
}

void SetWindowIdentity(const char* program, const WindowIcon& icon) {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    const Window window = glXGetCurrentDrawable();
    std::string name = program;
    std::string class_name = name;
    class_name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    XClassHint hint = {name.data(), class_name.data()};
    XSetClassHint(display, window, &hint);
    if (icon.width == 0) return;
    const std::vector<unsigned long> cardinals = IconCardinals(icon);
    XChangeProperty(display, window, XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(cardinals.data()),
                    static_cast<int>(cardinals.size()));
}

void ResetMouse() {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, 400, 300);
    XFlush(display);
}

void MinimiseWindow() {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    XIconifyWindow(display, glXGetCurrentDrawable(), DefaultScreen(display));
    XFlush(display);
}

void DemandAttention(bool wanted) {
    constexpr long kRemove = 0;
    constexpr long kAdd = 1;
    constexpr long kFromProgram = 1;
    Display* display = WindowConnection();
    if (display == nullptr) return;
    SetUrgencyHint(display, wanted);
    const Atom state = XInternAtom(display, "_NET_WM_STATE_DEMANDS_ATTENTION", False);
    TellWindowManager(display, glXGetCurrentDrawable(), "_NET_WM_STATE", wanted ? kAdd : kRemove,
                      static_cast<long>(state), 0, kFromProgram);
    XFlush(display);
}

bool IsGeometry(const char* text) {
    int x = 0;
    int y = 0;
    unsigned int width = 0;
    unsigned int height = 0;
    const int given = XParseGeometry(text, &x, &y, &width, &height);
    constexpr int kSize = WidthValue | HeightValue;
    constexpr int kPlace = XValue | YValue;
    const bool has_size = (given & kSize) == kSize && width > 0 && height > 0;
    return has_size && ((given & kPlace) == kPlace || (given & kPlace) == 0);
}

void SetSwapInterval(int refreshes) {
    Display* display = WindowConnection();
    if (display == nullptr) return;
    if (HasGlxExtension(display, "GLX_EXT_swap_control")) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALEXTPROC>("glXSwapIntervalEXT");
        set(display, glXGetCurrentDrawable(), refreshes);
    } else if (HasGlxExtension(display, "GLX_MESA_swap_control")) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALMESAPROC>("glXSwapIntervalMESA");
        set(static_cast<unsigned int>(refreshes));
    } else if (HasGlxExtension(display, "GLX_SGI_swap_control") && refreshes > 0) {
        const auto set = GlxFunction<PFNGLXSWAPINTERVALSGIPROC>("glXSwapIntervalSGI");
        set(refreshes);
    }
}

// ---- Who sees the window ----
//
// A second connection, so that these events do not mix with GLUT's. Protocol:
//
//   connect          selects: our window's properties, structure and visibility; the root window's properties
//   and
//                    the structure of its children; the screen saver; the Present extension's completions
//   an event         that may change who sees the window is only noted; one of the focus is taken at its word
//   IsWindowSeen     if one was noted, and the last look was a tenth of a second ago, looks again: it sends
//   all
//                    questions at once and then reads the answers, so a look is two waits, however many
//                    windows there are
//
// What is asked follows the Extended Window Manager Hints
// (https://en.wikipedia.org/wiki/Extended_Window_Manager_Hints) and the X Present extension
// (https://cgit.freedesktop.org/xorg/proto/presentproto/tree/presentproto.txt).

namespace {

constexpr std::uint64_t kBetweenLooksNanoseconds = 100'000'000;
/// A refresh that has not come for so long is asked for again: a server may lose the request when the screen
/// is turned off. Longer than screens take to come back, so that few requests pile up in the server.
constexpr std::uint64_t kAskAgainNanoseconds = 10'000'000'000;

/// A frame is to be drawn this share of a refresh's period before the refresh.
constexpr std::uint64_t kDrawingMarginShare = 8;
constexpr std::size_t kMostHigherWindows = 64;  ///< so many windows above ours are looked at
constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;
constexpr std::uint32_t kIconic = 3;  ///< the value of WM_STATE for a minimised window

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Answer<Reply> Owned(Reply* reply) {
    return {reply, &std::free};
}

/// A rectangle of the screen, pixels.
struct Rectangle {
    long x = 0, y = 0, width = 0, height = 0;

    bool Contains(const Rectangle& other) const {
        return x <= other.x && y <= other.y && x + width >= other.x + other.width &&
               y + height >= other.y + other.height;
    }
};

/// The properties that are read, and at the end the one that is written to learn the server's time.
enum AtomName {
    kWmState,
    kNetWmState,
    kNetWmStateHidden,
    kNetWmDesktop,
    kNetCurrentDesktop,
    kNetClientListStacking,
    kNetFrameExtents,
    kGtkFrameExtents,
    kNetWmWindowOpacity,
    kNetWmOpaqueRegion,
    kServerTime,
    kAtoms
};

constexpr const char* kAtomNames[kAtoms] = {
    "WM_STATE",
    "_NET_WM_STATE",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_DESKTOP",
    "_NET_CURRENT_DESKTOP",
    "_NET_CLIENT_LIST_STACKING",
    "_NET_FRAME_EXTENTS",
    "_GTK_FRAME_EXTENTS",
    "_NET_WM_WINDOW_OPACITY",
    "_NET_WM_OPAQUE_REGION",
    "_ULMARO_SERVER_TIME",
};

/// The second connection and what came over it. Written by the functions below.
struct Watch {
    bool tried = false;                      ///< to connect
    xcb_connection_t* connection = nullptr;  ///< null: none
    xcb_window_t window = 0;
    xcb_window_t root = 0;
    xcb_atom_t atoms[kAtoms] = {};

    bool changed = true;                  ///< something may have changed since the last look
    std::uint64_t last_look = 0;          ///< monotonic clock
    bool mapped = true;                   ///< our window, by its events
    bool obscured = false;                ///< wholly, by its events: windows without a compositor
    bool screen_saver = false;            ///< it covers the screen
    std::uint8_t screen_saver_event = 0;  ///< the number of its event; 0: the server has none
    bool seen = true;                     ///< by the last look
    bool focused = true;                  ///< our window, by its events
    xcb_timestamp_t server_time = 0;      ///< of the last change of a property

    std::uint8_t present = 0;      ///< major opcode of the Present extension; 0: the server has none
    std::uint32_t serial = 0;      ///< of the last refresh that was asked for
    bool awaiting = false;         ///< that one has not come
    std::uint64_t asked_at = 0;    ///< when it was asked for; RealNanoseconds
    std::uint64_t refreshes = 0;   ///< the number of the last refresh (MSC)
    std::uint64_t refresh_at = 0;  ///< its time (UST), microseconds
    std::uint64_t period = 0;      ///< nanoseconds

    std::uint64_t refresh_taken = 0;  ///< when the last refresh was taken in; RealNanoseconds
    std::uint64_t drawing_since = 0;  ///< when drawing was begun; 0: drawn, or not noted
    std::uint64_t drawing = 0;        ///< how long a frame takes to draw, by the last ones, nanoseconds
    bool drawn_late = true;           ///< the last frame was drawn only after its refresh
};

Watch watch;

// ---- Connecting ----

void AskForAtoms() {
    std::vector<xcb_intern_atom_cookie_t> questions;
    for (const char* name : kAtomNames) {
        const auto length = static_cast<std::uint16_t>(std::strlen(name));
        questions.push_back(xcb_intern_atom(watch.connection, 0, length, name));
    }
    for (int i = 0; i < kAtoms; ++i) {
        const auto answer =
            Owned(xcb_intern_atom_reply(watch.connection, questions[static_cast<std::size_t>(i)], nullptr));
        if (answer) watch.atoms[i] = answer->atom;
    }
}

void SelectRefreshes() {
    const auto* extension = xcb_get_extension_data(watch.connection, &xcb_present_id);
    if (extension == nullptr || extension->present == 0) return;
    const auto version = Owned(xcb_present_query_version_reply(
        watch.connection, xcb_present_query_version(watch.connection, 1, 0), nullptr));
    if (!version) return;
    watch.present = extension->major_opcode;
    xcb_present_select_input(watch.connection, xcb_generate_id(watch.connection), watch.window,
                             XCB_PRESENT_EVENT_MASK_COMPLETE_NOTIFY);
}

void SelectScreenSaver() {
    const auto* extension = xcb_get_extension_data(watch.connection, &xcb_screensaver_id);
    if (extension == nullptr || extension->present == 0) return;
    watch.screen_saver_event = extension->first_event;
    xcb_screensaver_select_input(watch.connection, watch.root, XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    const auto info = Owned(xcb_screensaver_query_info_reply(
        watch.connection, xcb_screensaver_query_info(watch.connection, watch.root), nullptr));
    watch.screen_saver = info && info->state == XCB_SCREENSAVER_STATE_ON;
}

void SelectEvents(xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(watch.connection, window, XCB_CW_EVENT_MASK, &events);
}

/// Selects our window's events, and asks what they do not tell: whether it has the focus already.
void SelectWindowEvents() {
    SelectEvents(watch.window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                   XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_FOCUS_CHANGE);
    const auto focus =
        Owned(xcb_get_input_focus_reply(watch.connection, xcb_get_input_focus(watch.connection), nullptr));
    watch.focused = focus && focus->focus == watch.window;
}

/// Connects once; returns whether there is a connection.
bool Connect() {
    if (watch.tried) return watch.connection != nullptr;
    watch.tried = true;
    Display* display = WindowConnection();
    if (display == nullptr) return false;
    watch.connection = xcb_connect(DisplayString(display), nullptr);
    if (xcb_connection_has_error(watch.connection) != 0) {
        xcb_disconnect(watch.connection);
        watch.connection = nullptr;
        return false;
    }
    watch.window = static_cast<xcb_window_t>(glXGetCurrentDrawable());
    watch.root = static_cast<xcb_window_t>(DefaultRootWindow(display));
    AskForAtoms();
    SelectWindowEvents();
    SelectEvents(watch.root, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    SelectScreenSaver();
    SelectRefreshes();
    return true;
}

// ---- Events ----

bool ConcernsSight(xcb_atom_t property) {
    return property == watch.atoms[kWmState] || property == watch.atoms[kNetWmState] ||
           property == watch.atoms[kNetWmDesktop] || property == watch.atoms[kNetCurrentDesktop] ||
           property == watch.atoms[kNetClientListStacking];
}

/// Notes that a refresh has come. The period is that of two refreshes right after each other or a few apart.
void NoteRefresh(const xcb_present_complete_notify_event_t& event) {
    if (event.serial != watch.serial) return;
    watch.awaiting = false;
    const std::uint64_t refreshes = event.msc - watch.refreshes;
    if (watch.refresh_at != 0 && refreshes > 0 && refreshes < 10 && event.ust > watch.refresh_at) {
        watch.period = (event.ust - watch.refresh_at) * 1000 / refreshes;
    }
    watch.refreshes = event.msc;
    watch.refresh_at = event.ust;
    watch.refresh_taken = RealNanoseconds();
}

/// Notes who has the focus. A window manager that grabs the keyboard, for a shortcut say, borrows the focus
/// only; and where the focus is at the pointer, that is nobody's choice of a window.
void NoteFocus(const xcb_focus_in_event_t& event) {
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) return;
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER) return;
    watch.focused = (event.response_type & 0x7FU) == XCB_FOCUS_IN;
}

void NoteProperty(const xcb_property_notify_event_t& event) {
    watch.server_time = event.time;
    if (ConcernsSight(event.atom)) watch.changed = true;
}

void TakeEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7FU;
    const auto as = [&]<typename Event>(const Event*) { return reinterpret_cast<const Event&>(event); };
    if (type == XCB_GE_GENERIC) {
        if (as(static_cast<xcb_ge_generic_event_t*>(nullptr)).extension != watch.present) return;
        NoteRefresh(reinterpret_cast<const xcb_present_complete_notify_event_t&>(event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
        NoteProperty(as(static_cast<xcb_property_notify_event_t*>(nullptr)));
    } else if (type == XCB_FOCUS_IN || type == XCB_FOCUS_OUT) {
        NoteFocus(as(static_cast<xcb_focus_in_event_t*>(nullptr)));
    } else if (type == XCB_VISIBILITY_NOTIFY) {
        const auto visibility = as(static_cast<xcb_visibility_notify_event_t*>(nullptr));
        watch.obscured = visibility.state == XCB_VISIBILITY_FULLY_OBSCURED;
        watch.changed = true;
    } else if (type == XCB_MAP_NOTIFY || type == XCB_UNMAP_NOTIFY) {
        const auto map = as(static_cast<xcb_map_notify_event_t*>(nullptr));
        if (map.window == watch.window) watch.mapped = type == XCB_MAP_NOTIFY;
        watch.changed = true;
    } else if (watch.screen_saver_event != 0 && type == watch.screen_saver_event) {
        const auto saver = as(static_cast<xcb_screensaver_notify_event_t*>(nullptr));
        watch.screen_saver = saver.state == XCB_SCREENSAVER_STATE_ON;
        watch.changed = true;
    } else if (type >= XCB_CREATE_NOTIFY && type <= XCB_CIRCULATE_NOTIFY) {
        watch.changed = true;  // a window moved, came or went
    }
}

/// Takes in what has come. A connection that has broken is given up: the window counts as seen then, and
/// nothing comes any more.
void TakeEvents() {
    if (watch.connection == nullptr) return;
    while (const auto event = Owned(xcb_poll_for_event(watch.connection))) TakeEvent(*event);
    if (xcb_connection_has_error(watch.connection) == 0) return;
    xcb_disconnect(watch.connection);
    watch = Watch();
    watch.tried = true;
}

// ---- Looking ----

/// A question for a property of numbers, sent and not yet answered.
class Numbers {
  public:
    Numbers(xcb_window_t window, AtomName name)
        : question_(xcb_get_property(watch.connection, 0, window, watch.atoms[name],
                                     XCB_GET_PROPERTY_TYPE_ANY, 0, 4096)) {}

    /// Waits for the answer; none where the window has no such property.
    std::vector<std::uint32_t> Get() const {
        std::vector<std::uint32_t> numbers;
        const auto answer = Owned(xcb_get_property_reply(watch.connection, question_, nullptr));
        if (!answer || answer->format != 32) return numbers;
        const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
        numbers.assign(first, first + xcb_get_property_value_length(answer.get()) / 4);
        return numbers;
    }

    /// Waits for the answer and returns its first number.
    std::uint32_t First(std::uint32_t otherwise) const {
        const std::vector<std::uint32_t> numbers = Get();
        return numbers.empty() ? otherwise : numbers[0];
    }

  private:
    xcb_get_property_cookie_t question_;
};

bool Holds(const std::vector<std::uint32_t>& numbers, std::uint32_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// The questions about where a window is and how deep its pixels are, sent and not yet answered.
class Geometry {
  public:
    explicit Geometry(xcb_window_t window)
        : size_(xcb_get_geometry(watch.connection, window)),
          place_(xcb_translate_coordinates(watch.connection, window, watch.root, 0, 0)) {}

    /// Waits for the answers; no area where the window is gone.
    Rectangle Get(int* depth) const {
        const auto size = Owned(xcb_get_geometry_reply(watch.connection, size_, nullptr));
        const auto place = Owned(xcb_translate_coordinates_reply(watch.connection, place_, nullptr));
        if (!size || !place) return {};
        *depth = size->depth;
        return {place->dst_x, place->dst_y, size->width, size->height};
    }

  private:
    xcb_get_geometry_cookie_t size_;
    xcb_translate_coordinates_cookie_t place_;
};

/// All questions about a window above ours.
struct HigherWindow {
    explicit HigherWindow(xcb_window_t window)
        : attributes(xcb_get_window_attributes(watch.connection, window)),
          geometry(window),
          state(window, kNetWmState),
          desktop(window, kNetWmDesktop),
          frame(window, kNetFrameExtents),
          shadow(window, kGtkFrameExtents),
          opacity(window, kNetWmWindowOpacity),
          opaque_region(window, kNetWmOpaqueRegion) {}

    xcb_get_window_attributes_cookie_t attributes;
    Geometry geometry;
    Numbers state, desktop, frame, shadow, opacity, opaque_region;
};

/// Returns the rectangle grown by a frame's extents: left, right, top, bottom.
Rectangle Grown(const Rectangle& area, const std::vector<std::uint32_t>& extents, long sign) {
    if (extents.size() != 4) return area;
    const long left = sign * extents[0];
    const long top = sign * extents[2];
    return {area.x - left, area.y - top, area.width + left + sign * extents[1],
            area.height + top + sign * extents[3]};
}

/// Returns the parts of a window that nothing shows through: all of it with its frame, or, where its pixels
/// may be transparent, what it says is opaque.
std::vector<Rectangle> OpaqueParts(const HigherWindow& window) {
    int depth = 0;
    const Rectangle area = window.geometry.Get(&depth);
    const std::vector<std::uint32_t> frame = window.frame.Get();
    const std::vector<std::uint32_t> shadow = window.shadow.Get();
    const std::vector<std::uint32_t> region = window.opaque_region.Get();
    const bool translucent = window.opacity.First(0xFFFFFFFF) != 0xFFFFFFFF;
    if (translucent) return {};
    if (depth != 32) return {Grown(Grown(area, frame, 1), shadow, -1)};
    std::vector<Rectangle> parts;
    for (std::size_t i = 0; i + 4 <= region.size(); i += 4) {
        parts.push_back({area.x + static_cast<std::int32_t>(region[i]),
                         area.y + static_cast<std::int32_t>(region[i + 1]), region[i + 2], region[i + 3]});
    }
    return parts;
}

/// Returns whether a window above ours hides all of it. Waits for the answers, all of them in any case.
bool Covers(const HigherWindow& window, const Rectangle& ours, std::uint32_t current_desktop) {
    const auto attributes =
        Owned(xcb_get_window_attributes_reply(watch.connection, window.attributes, nullptr));
    const bool minimised = Holds(window.state.Get(), watch.atoms[kNetWmStateHidden]);
    const std::uint32_t desktop = window.desktop.First(kAllDesktops);
    const std::vector<Rectangle> parts = OpaqueParts(window);
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || minimised) return false;
    if (desktop != kAllDesktops && desktop != current_desktop) return false;
    return std::any_of(parts.begin(), parts.end(),
                       [&](const Rectangle& part) { return part.Contains(ours); });
}

/// Returns the windows above ours, the next one first; none where the desktop does not list ours.
std::vector<xcb_window_t> WindowsAbove(const std::vector<std::uint32_t>& stacking) {
    const auto ours = std::find(stacking.begin(), stacking.end(), watch.window);
    if (ours == stacking.end()) return {};
    std::vector<xcb_window_t> above(ours + 1, stacking.end());
    if (above.size() > kMostHigherWindows) above.resize(kMostHigherWindows);
    return above;
}

/// Returns whether one window above ours hides all of it.
bool IsCovered(const std::vector<std::uint32_t>& stacking, const Rectangle& ours,
               std::uint32_t current_desktop) {
    std::vector<HigherWindow> above;
    for (const xcb_window_t window : WindowsAbove(stacking)) above.emplace_back(window);
    bool covered = false;
    for (const HigherWindow& window : above) covered |= Covers(window, ours, current_desktop);
    return covered;
}

/// Looks whether anybody sees the window.
bool Look() {
    const Numbers wm_state(watch.window, kWmState);
    const Numbers net_state(watch.window, kNetWmState);
    const Numbers desktop(watch.window, kNetWmDesktop);
    const Numbers current_desktop(watch.root, kNetCurrentDesktop);
    const Numbers stacking(watch.root, kNetClientListStacking);
    const Geometry geometry(watch.window);
    int depth = 0;

    const bool minimised =
        wm_state.First(0) == kIconic || Holds(net_state.Get(), watch.atoms[kNetWmStateHidden]);
    const std::uint32_t here = desktop.First(kAllDesktops);
    const std::uint32_t current = current_desktop.First(here);
    const bool covered = IsCovered(stacking.Get(), geometry.Get(&depth), current);
    const bool elsewhere = here != kAllDesktops && here != current;
    return watch.mapped && !watch.obscured && !watch.screen_saver && !minimised && !elsewhere && !covered;
}

/// Returns the server's time, in its own milliseconds: that of an event which a change without effect brings.
/// Window managers compare it with the time of the user's last click or key. 0 where it cannot be had.
xcb_timestamp_t ServerTime() {
    if (!Connect()) return 0;
    xcb_change_property(watch.connection, XCB_PROP_MODE_APPEND, watch.window, watch.atoms[kServerTime],
                        XCB_ATOM_STRING, 8, 0, nullptr);
    Owned(xcb_get_input_focus_reply(watch.connection, xcb_get_input_focus(watch.connection), nullptr));
    TakeEvents();
    return watch.server_time;
}

/// Lets the window manager go to the desktop that the window is on: not every one does when the window is to
/// be brought up.
void ShowDesktopOfWindow(Display* display) {
    if (!Connect()) return;
    const std::uint32_t desktop = Numbers(watch.window, kNetWmDesktop).First(kAllDesktops);
    const std::uint32_t current = Numbers(watch.root, kNetCurrentDesktop).First(desktop);
    if (desktop == kAllDesktops || desktop == current) return;
    TellWindowManager(display, DefaultRootWindow(display), "_NET_CURRENT_DESKTOP", desktop, ServerTime());
}

/// Waits for something to read on the second connection, and on GLUT's if asked, at most so many nanoseconds.
/// Returns whether it was GLUT's.
bool AwaitConnections(std::uint64_t nanoseconds, bool glut_too) {
    Display* display = WindowConnection();
    if (glut_too && display != nullptr && XPending(display) > 0) return true;
    xcb_flush(watch.connection);
    pollfd connections[] = {{xcb_get_file_descriptor(watch.connection), POLLIN, 0}, {-1, POLLIN, 0}};
    if (glut_too && display != nullptr) connections[1].fd = ConnectionNumber(display);
    const timespec wait = {static_cast<std::time_t>(nanoseconds / 1'000'000'000U),
                           static_cast<long>(nanoseconds % 1'000'000'000U)};
    ppoll(connections, std::size(connections), &wait, nullptr);
    return connections[1].revents != 0;
}

/// Notes how long the frame took that was begun at the end of AwaitDrawing(), and whether its refresh has
/// come already. A longer time counts at once, a shorter one little by little.
void NoteDrawn() {
    if (watch.drawing_since == 0) return;
    TakeEvents();
    if (watch.connection == nullptr) return;
    watch.drawn_late = !watch.awaiting;
    const std::uint64_t took = RealNanoseconds() - watch.drawing_since;
    watch.drawing = std::max(took, watch.drawing - watch.drawing / 16 + took / 16);
    watch.drawing_since = 0;
}

}  // namespace

bool IsWindowSeen() {
    if (!Connect()) return true;
    TakeEvents();
    if (!watch.changed || watch.connection == nullptr) return watch.seen;
    const std::uint64_t now = MonotonicNanoseconds();
    if (now - watch.last_look < kBetweenLooksNanoseconds) return watch.seen;
    watch.changed = false;
    watch.last_look = now;
    watch.seen = Look();
    return watch.seen;
}

bool IsWindowFocused() {
    return watch.focused;
}

void RaiseWindow() {
    constexpr long kFromUser = 2;  // what the user does in a dock counts the same
    Display* display = WindowConnection();
    if (display == nullptr) return;
    const Window window = glXGetCurrentDrawable();
    ShowDesktopOfWindow(display);
    XMapRaised(display, window);
    TellWindowManager(display, window, "_NET_ACTIVE_WINDOW", kFromUser, ServerTime());
    XFlush(display);
}

bool RequestRefresh() {
    if (!Connect() || watch.present == 0) return false;
    const std::uint64_t now = RealNanoseconds();
    if (watch.awaiting && now - watch.asked_at < kAskAgainNanoseconds) return true;
    watch.awaiting = true;
    watch.asked_at = now;
    xcb_present_notify_msc(watch.connection, watch.window, ++watch.serial, watch.refreshes + 1, 0, 0);
    xcb_flush(watch.connection);
    return true;
}

void AwaitDrawing() {
    if (watch.connection == nullptr) return;
    const std::uint64_t begin = watch.refresh_taken + watch.period - watch.period / kDrawingMarginShare;
    const bool known = watch.period != 0 && watch.drawing != 0 && !watch.drawn_late;
    for (std::uint64_t now = RealNanoseconds(); known && watch.awaiting && now + watch.drawing < begin;
         now = RealNanoseconds()) {
        AwaitConnections(begin - watch.drawing - now, false);
        TakeEvents();
        if (watch.connection == nullptr) return;
    }
    watch.drawing_since = RealNanoseconds();
}

bool AwaitRefresh(std::uint64_t nanoseconds, bool until_event) {
    if (watch.connection == nullptr) return true;
    NoteDrawn();
    const std::uint64_t start = RealNanoseconds();
    for (;;) {
        TakeEvents();
        if (watch.connection == nullptr || !watch.awaiting) return true;
        const std::uint64_t passed = RealNanoseconds() - start;
        if (passed >= nanoseconds) return false;
        if (AwaitConnections(nanoseconds - passed, until_event)) return true;
    }
}

std::uint64_t RefreshPeriod() {
    return watch.period;
}

void AwaitSight(std::uint64_t nanoseconds) {
    if (watch.connection == nullptr) return AwaitWindowEvent(nanoseconds);
    const bool awaiting = watch.awaiting;
    const std::uint64_t start = RealNanoseconds();
    for (;;) {
        TakeEvents();
        if (watch.connection == nullptr || (awaiting && !watch.awaiting)) return;
        const std::uint64_t now = RealNanoseconds();
        if (now - start >= nanoseconds) return;
        if (watch.changed && now - watch.last_look >= kBetweenLooksNanoseconds) return;
        AwaitConnections(nanoseconds - (now - start), false);
    }
}

// ---- The keyboard ----
//
// Dead keys, the Compose key and characters beyond Latin-1.
//
// GLUT asks XLookupString what each key that is pressed types, and reports the first byte of the answer. That
// function knows neither dead keys nor compositions, and GLUT has no other callback for a key. So
// XLookupString is replaced for the whole process by the one below: the linker gives a program's own function
// to its libraries, too. It asks the real one first, lets xkbcommon compose what can be composed, and answers
// "nothing" where a key has been taken into a composition or is reported by itself.
//
//   key pressed         the real answer    composing    GLUT is told    reported
//   a                   a                  -            a               -
//   dead grave          nothing            begins       nothing         -
//   o                   o                  ends         nothing         U+00F2
//   euro sign           nothing            -            nothing         U+20AC
//   dead grave, then x  x                  fails        x               -

namespace {

using Lookup = int (*)(XKeyEvent*, char*, int, KeySym*, XComposeStatus*);
using Report = void (*)(char32_t character);

Report report = nullptr;

/// Returns the name of the user's locale for characters.
const char* LocaleName() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* name = std::getenv(variable);
        if (name != nullptr && *name != '\0') return name;
    }
    return "C";
}

/// Makes the state of composing; null where the system has no compositions. It lives as long as the process.
xkb_compose_state* MakeComposing() {
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context == nullptr) return nullptr;
    xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
    for (const char* locale : {LocaleName(), "en_US.UTF-8"}) {
        xkb_compose_table* table =
            xkb_compose_table_new_from_locale(context, locale, XKB_COMPOSE_COMPILE_NO_FLAGS);
        if (table != nullptr) return xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS);
    }
    return nullptr;
}

/// Returns whether compositions may begin with a key.
bool BeginsComposing(KeySym key) {
    constexpr KeySym kFirstDeadKey = XKB_KEY_dead_grave;
    constexpr KeySym kLastDeadKey = XKB_KEY_dead_greek;
    return key == XKB_KEY_Multi_key || (kFirstDeadKey <= key && key <= kLastDeadKey);
}

/// Reports the character that has been composed.
void ReportComposed(xkb_compose_state* composing) {
    const xkb_keysym_t symbol = xkb_compose_state_get_one_sym(composing);
    const char32_t character = xkb_keysym_to_utf32(symbol);
    if (character != 0) report(character);
}

/// Lets a key take part in a composition. Returns whether it does; then it types nothing by itself.
bool Compose(KeySym key) {
    static xkb_compose_state* composing = nullptr;
    static bool made = false;
    // The table takes some milliseconds to read, and few users ever need it.
    if (!made && !BeginsComposing(key)) return false;
    if (!made) composing = MakeComposing();
    made = true;
    if (composing == nullptr) return false;

    if (xkb_compose_state_feed(composing, static_cast<xkb_keysym_t>(key)) == XKB_COMPOSE_FEED_IGNORED)
        return false;
    switch (xkb_compose_state_get_status(composing)) {
        case XKB_COMPOSE_COMPOSING:
            return true;
        case XKB_COMPOSE_COMPOSED:
            ReportComposed(composing);
            xkb_compose_state_reset(composing);
            return true;
        case XKB_COMPOSE_CANCELLED:
            xkb_compose_state_reset(composing);
            return false;
        case XKB_COMPOSE_NOTHING:
            return false;
    }
    return false;
}

}  // namespace

void ListenToComposing(void (*typed)(char32_t character)) {
    report = typed;
}

/// Tells GLUT what a key types: see above.
extern "C" int XLookupString(XKeyEvent* event, char* buffer, int bytes, KeySym* symbol,
                             XComposeStatus* status) {
    static const auto real = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "XLookupString"));
    KeySym key = NoSymbol;
    const int length = real(event, buffer, bytes, &key, status);
    if (symbol != nullptr) *symbol = key;
    if (event->type != KeyPress || report == nullptr) return length;
    if (Compose(key)) {
        if (symbol != nullptr) *symbol = NoSymbol;
        return 0;
    }
    constexpr char32_t kBeyondLatin1 = 0x100;
    const char32_t character = xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(key));
    if (length > 0 || character < kBeyondLatin1) return length;
    report(character);
    return 0;
}
