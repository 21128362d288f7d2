// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The part of the seam to the desktop that shows notices: freedesktop.org's notifications, spoken with the
// server org.freedesktop.Notifications on the user's message bus.
//
// The client is sd-bus, which is part of libsystemd and kept as long as that is. Of the clients that there
// are, it alone suits a program of one thread whose frames must not wait: connecting, authenticating and
// every call only queue bytes, and one function takes in what has come. libdbus and GLib, which libnotify
// uses, wait while they connect; sdbus-c++ wants a thread or another library for the same bytes;
// `notify-send` would be a process per notice that is waited for to learn of a click, and a second one to
// take the notice away.
//
// It is loaded when the first notice is to be shown, which nobody sees the window to notice. So the program
// starts without the library too; then there are no notices. It is on nearly every Debian system, because
// bsdutils needs it.
//
//   ShowNotice     notes the notice; connects, where there is no connection, and sends "Notify"
//   its answer     brings the notice's number, by which it is replaced and taken away. Until it comes nothing
//                  more is sent, however long a server hangs: the last wish is then carried out
//   its error      there is no server: the notice is sent again if one comes, once
//   CloseNotice    sends "CloseNotification", and when that is answered the connection is closed, so that
//                  nothing is polled while there is no notice
//   a lost bus     is tried again with the next notice
#include <dlfcn.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/desktop.h"
#include "engine/plain_text.h"

namespace {

// ---- The library ----

/// The functions of libsystemd that are used.
struct Library {
    decltype(&sd_bus_open_user) open_user = nullptr;
    decltype(&sd_bus_set_method_call_timeout) set_timeout = nullptr;
    decltype(&sd_bus_add_match_async) add_match = nullptr;
    decltype(&sd_bus_call_method_async) call = nullptr;
    decltype(&sd_bus_process) process = nullptr;
    decltype(&sd_bus_message_is_method_error) is_error = nullptr;
    decltype(&sd_bus_message_read) read = nullptr;
    decltype(&sd_bus_close_unref) close = nullptr;
    bool tried = false;
    bool complete = false;
};

Library library;

template <typename Function>
bool Find(void* handle, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(handle, name));
    return function != nullptr;
}

/// Loads the library once; returns whether it is there with all that is needed.
bool HasLibrary() {
    if (library.tried) return library.complete;
    library.tried = true;
    void* handle = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    library.complete = handle != nullptr && Find(handle, "sd_bus_open_user", library.open_user) &&
                       Find(handle, "sd_bus_set_method_call_timeout", library.set_timeout) &&
                       Find(handle, "sd_bus_add_match_async", library.add_match) &&
                       Find(handle, "sd_bus_call_method_async", library.call) &&
                       Find(handle, "sd_bus_process", library.process) &&
                       Find(handle, "sd_bus_message_is_method_error", library.is_error) &&
                       Find(handle, "sd_bus_message_read", library.read) &&
                       Find(handle, "sd_bus_close_unref", library.close);
    return library.complete;
}

// ---- The exchange with the server ----

constexpr char kServer[] = "org.freedesktop.Notifications";
constexpr char kPath[] = "/org/freedesktop/Notifications";

/// What the server, or the bus about the server, is listened to for.
constexpr char kClicks[] =
    "type='signal',sender='org.freedesktop.Notifications',interface='org.freedesktop.Notifications',"
    "member='ActionInvoked'";
constexpr char kClosings[] =
    "type='signal',sender='org.freedesktop.Notifications',interface='org.freedesktop.Notifications',"
    "member='NotificationClosed'";
constexpr char kComingsAndGoings[] =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'";

/// A call may take as long as it likes: a server that goes on after having hung shows the notice all the
/// same.
constexpr std::uint64_t kEndless = UINT64_MAX;

/// So many messages are taken in at a time; the next frame takes in more.
constexpr int kMostMessages = 32;

/// Where the exchange stands. Written by the functions below.
struct Exchange {
    sd_bus* bus = nullptr;     ///< null: no connection
    DesktopNotice notice;      ///< the last one that was to be shown
    bool wanted = false;       ///< it is to be on the screen
    bool unsent = false;       ///< it is to be sent
    bool may_resend = false;   ///< also to a server that comes later
    bool awaiting = false;     ///< a call has not been answered
    std::uint32_t number = 0;  ///< the server's, of the notice on the screen; 0: none is
    bool clicked = false;      ///< the user has clicked it

    ~Exchange();
};

Exchange exchange;

/// Forgets the connection and what was shown over it.
void Disconnect() {
    if (exchange.bus != nullptr) library.close(exchange.bus);
    exchange.bus = nullptr;
    exchange.unsent = exchange.awaiting = false;
    exchange.number = 0;
}

/// At the program's end its notice goes, because nobody is there any more for a click.
Exchange::~Exchange() {
    if (bus == nullptr) return;
    if (number != 0) {
        library.call(bus, nullptr, kServer, kPath, kServer, "CloseNotification", nullptr, nullptr, "u",
                     number);
    }
    Disconnect();
}

// ---- What comes ----

int TakeNumber(sd_bus_message* answer, void* /*unused*/, sd_bus_error* /*unused*/) {
    exchange.awaiting = false;
    exchange.number = 0;
    if (library.is_error(answer, nullptr) == 0) {
        library.read(answer, "u", &exchange.number);
        exchange.may_resend = false;
    }
    return 0;
}

int TakeClosed(sd_bus_message* /*answer*/, void* /*unused*/, sd_bus_error* /*unused*/) {
    exchange.awaiting = false;
    return 0;
}

int TakeClick(sd_bus_message* signal, void* /*unused*/, sd_bus_error* /*unused*/) {
    std::uint32_t number = 0;
    if (library.read(signal, "u", &number) > 0 && number != 0 && number == exchange.number)
        exchange.clicked = true;
    return 0;
}

int TakeClosing(sd_bus_message* signal, void* /*unused*/, sd_bus_error* /*unused*/) {
    std::uint32_t number = 0;
    if (library.read(signal, "u", &number) > 0 && number == exchange.number) exchange.number = 0;
    return 0;
}

/// A server that goes takes its notices along, and the next one would take an old number for another's.
int TakeOwner(sd_bus_message* signal, void* /*unused*/, sd_bus_error* /*unused*/) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (library.read(signal, "sss", &name, &before, &after) <= 0) return 0;
    if (before[0] != '\0') exchange.number = 0;
    if (after[0] == '\0' || exchange.awaiting || !exchange.may_resend) return 0;
    exchange.may_resend = false;
    exchange.unsent = exchange.wanted;
    return 0;
}

// ---- What goes ----

/// Returns whether the user's bus is on this machine: connecting to another waits for a name server, or
/// starts a process.
bool IsBusLocal() {
    const char* given = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (given == nullptr) return true;  // the socket in XDG_RUNTIME_DIR
    std::string_view addresses = given;
    while (addresses.starts_with("unix:")) {
        const std::size_t end = addresses.find(';');
        if (end == std::string_view::npos) return true;
        addresses.remove_prefix(end + 1);
    }
    return false;
}

void Connect() {
    if (exchange.bus != nullptr || !HasLibrary() || !IsBusLocal()) return;
    if (library.open_user(&exchange.bus) < 0) {
        exchange.bus = nullptr;
        return;
    }
    library.set_timeout(exchange.bus, kEndless);
    library.add_match(exchange.bus, nullptr, kClicks, TakeClick, nullptr, nullptr);
    library.add_match(exchange.bus, nullptr, kClosings, TakeClosing, nullptr, nullptr);
    library.add_match(exchange.bus, nullptr, kComingsAndGoings, TakeOwner, nullptr, nullptr);
}

/// Asks the server to show the notice, in place of its predecessor, until it is taken away. Servers take
/// the text for markup and the title not, so only the text is escaped.
void SendNotice() {
    constexpr int kNeverExpires = 0;
    constexpr std::uint8_t kNormalUrgency =
        1;  // the server may keep it back while the user is not to be disturbed
    const std::string text = EscapeMarkup(exchange.notice.text);
    exchange.unsent = false;
    const int sent = library.call(
        exchange.bus, nullptr, kServer, kPath, kServer, "Notify", TakeNumber, nullptr, "susssasa{sv}i",
        "Ulmaro Assistant", exchange.number, kProgramName, exchange.notice.title.c_str(), text.c_str(), 2,
        "default", "Apri",  // what a click on the notice itself does; servers show no button for it
        3, "desktop-entry", "s", kProgramName, "category", "s", exchange.notice.category, "urgency", "y",
        kNormalUrgency, kNeverExpires);
    exchange.awaiting = sent >= 0;
}

void SendClosing() {
    const int sent = library.call(exchange.bus, nullptr, kServer, kPath, kServer, "CloseNotification",
                                  TakeClosed, nullptr, "u", exchange.number);
    exchange.awaiting = sent >= 0;
    exchange.number = 0;
}

/// Sends what is to be sent next, or closes the connection where there is nothing more to say.
void Send() {
    if (exchange.bus == nullptr || exchange.awaiting) return;
    if (exchange.wanted && exchange.unsent) return SendNotice();
    if (!exchange.wanted && exchange.number != 0) return SendClosing();
    if (!exchange.wanted) Disconnect();
}

}  // namespace

void ShowNotice(const DesktopNotice& notice) {
    exchange.notice = notice;
    exchange.wanted = exchange.unsent = exchange.may_resend = true;
    exchange.clicked = false;
    Connect();
    Send();
}

void CloseNotice() {
    exchange.wanted = exchange.unsent = exchange.clicked = false;
    Send();
}

bool ServeNotice() {
    if (exchange.bus == nullptr) return false;
    int taken = 1;
    for (int i = 0; i < kMostMessages && taken > 0; ++i) taken = library.process(exchange.bus, nullptr);
    if (taken < 0) Disconnect();
    Send();
    const bool clicked = exchange.clicked;
    exchange.clicked = false;
    return clicked;
}
