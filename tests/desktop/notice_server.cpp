// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/notice_server.h"

#include <poll.h>
#include <systemd/sd-bus.h>

#include <cstring>

#include "tests/desktop/process.h"

namespace desktop {

namespace {

constexpr char kName[] = "org.freedesktop.Notifications";
constexpr char kPath[] = "/org/freedesktop/Notifications";

std::string ReadText(sd_bus_message* message) {
    const char* text = "";
    sd_bus_message_read(message, "s", &text);
    return text;
}

template <typename Number>
Number ReadNumber(sd_bus_message* message, const char* type) {
    Number number = 0;
    sd_bus_message_read(message, type, &number);
    return number;
}

std::vector<std::string> ReadTexts(sd_bus_message* message) {
    std::vector<std::string> texts;
    sd_bus_message_enter_container(message, 'a', "s");
    while (sd_bus_message_at_end(message, 0) == 0) texts.push_back(ReadText(message));
    sd_bus_message_exit_container(message);
    return texts;
}

/// Reads a hint that is a text or a byte; others are skipped.
std::string ReadHint(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    sd_bus_message_peek_type(message, &type, &contents);
    std::string value;
    if (std::strcmp(contents, "s") != 0 && std::strcmp(contents, "y") != 0) {
        sd_bus_message_skip(message, "v");
        return value;
    }
    sd_bus_message_enter_container(message, 'v', contents);
    value = *contents == 's' ? ReadText(message) : std::to_string(ReadNumber<std::uint8_t>(message, "y"));
    sd_bus_message_exit_container(message);
    return value;
}

std::map<std::string, std::string> ReadHints(sd_bus_message* message) {
    std::map<std::string, std::string> hints;
    sd_bus_message_enter_container(message, 'a', "{sv}");
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const std::string name = ReadText(message);
        hints[name] = ReadHint(message);
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    return hints;
}

}  // namespace

NoticeServer::NoticeServer(const std::string& bus_address) {
    const auto take = [](sd_bus_message* message, void* server, sd_bus_error* /*unused*/) {
        return static_cast<NoticeServer*>(server)->Take(message);
    };
    const bool ready = sd_bus_new(&bus_) >= 0 && sd_bus_set_address(bus_, bus_address.c_str()) >= 0 &&
                       sd_bus_set_bus_client(bus_, 1) >= 0 && sd_bus_start(bus_) >= 0 &&
                       sd_bus_add_object(bus_, nullptr, kPath, take, this) >= 0 &&
                       sd_bus_request_name(bus_, kName, 0) >= 0;
    if (!ready) Fail("cannot serve notices on " + bus_address);
}

NoticeServer::~NoticeServer() {
    sd_bus_flush_close_unref(bus_);
}

void NoticeServer::Serve() {
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
}

bool NoticeServer::AwaitUnread(double seconds) {
    pollfd unread{sd_bus_get_fd(bus_), POLLIN, 0};
    return poll(&unread, 1, static_cast<int>(seconds * 1000)) == 1;
}

bool NoticeServer::AwaitNotices(std::size_t count, double seconds) {
    return WaitUntil([&] { return Serve(), notices_.size() >= count; }, seconds);
}

bool NoticeServer::AwaitNone(double seconds) {
    return WaitUntil([&] { return Serve(), shown_ == 0; }, seconds);
}

void NoticeServer::ServeFor(double seconds) {
    WaitUntil([&] { return Serve(), false; }, seconds);
}

void NoticeServer::Click() {
    sd_bus_emit_signal(bus_, kPath, kName, "ActionInvoked", "us", shown_, "default");
    constexpr std::uint32_t kDismissed = 2;
    TellClosed(kDismissed);
}

int NoticeServer::Take(sd_bus_message* message) {
    if (sd_bus_message_is_method_call(message, kName, "Notify") > 0) return Notify(message);
    if (sd_bus_message_is_method_call(message, kName, "CloseNotification") > 0) return Close(message);
    return 0;
}

int NoticeServer::Notify(sd_bus_message* message) {
    SentNotice notice;
    notice.program = ReadText(message);
    notice.replaced = ReadNumber<std::uint32_t>(message, "u");
    notice.icon = ReadText(message);
    notice.title = ReadText(message);
    notice.text = ReadText(message);
    notice.actions = ReadTexts(message);
    notice.hints = ReadHints(message);
    notice.timeout = ReadNumber<std::int32_t>(message, "i");
    notice.number = notice.replaced != 0 ? notice.replaced : ++last_;
    shown_ = notice.number;
    notices_.push_back(notice);
    return sd_bus_reply_method_return(message, "u", notice.number);
}

int NoticeServer::Close(sd_bus_message* message) {
    const auto number = ReadNumber<std::uint32_t>(message, "u");
    constexpr std::uint32_t kByProgram = 3;
    if (number == shown_) TellClosed(kByProgram);
    return sd_bus_reply_method_return(message, "");
}

void NoticeServer::TellClosed(std::uint32_t reason) {
    sd_bus_emit_signal(bus_, kPath, kName, "NotificationClosed", "uu", shown_, reason);
    shown_ = 0;
}

}  // namespace desktop
