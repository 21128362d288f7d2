// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/desktop.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "tests/fakes/log.h"

namespace fakes {
namespace {

constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

}  // namespace

Desktop& desktop() {
    static Desktop model;
    return model;
}

void ResetDesktop() {
    desktop() = Desktop();
}

namespace {

/// Returns the sum of a time and a delay that may be endless.
std::uint64_t After(std::uint64_t time, const std::optional<std::uint64_t>& delay) {
    return delay ? time + *delay : kEndless;
}

/// Returns when the refresh that was asked for comes.
std::uint64_t NextRefresh() {
    if (!desktop().refresh_asked_for) return kEndless;
    return After(*desktop().refresh_asked_for, desktop().refresh_after);
}

/// Lets the clock go on to a time, and the refresh come if that is due then. The clock never goes back.
void WaitUntil(std::uint64_t time) {
    desktop().nanoseconds = std::max(desktop().nanoseconds, time);
    if (desktop().nanoseconds >= NextRefresh()) desktop().refresh_asked_for.reset();
}

}  // namespace
}  // namespace fakes

ScreenPoint GlobalPointer() {
    fakes::Record("GlobalPointer");
    ++fakes::desktop().pointer_calls;
    return fakes::desktop().pointer;
}

void ListenToComposing(void (*typed)(char32_t character)) {
    fakes::Record("ListenToComposing");
    fakes::desktop().composed = typed;
}

std::uint64_t MonotonicNanoseconds() {
    fakes::Record("MonotonicNanoseconds");
    ++fakes::desktop().clock_calls;
    return fakes::desktop().nanoseconds;
}

std::uint64_t ProcessorNanoseconds() {
    fakes::Record("ProcessorNanoseconds");
    return fakes::desktop().processor += fakes::desktop().frame_processor;
}

void OpenWebAddress(const char* address) {
    fakes::Record("OpenWebAddress", {}, address);
    fakes::desktop().opened.emplace_back(address);
}

void SetWindowIdentity(const char* program, const WindowIcon& icon) {
    fakes::Record("SetWindowIdentity", {icon.width, icon.height}, program);
    fakes::desktop().program = program;
    fakes::desktop().icon_width = icon.width;
    fakes::desktop().icon_height = icon.height;
    fakes::desktop().icon.assign(icon.pixels,
                                 icon.pixels + static_cast<std::ptrdiff_t>(icon.width) * icon.height * 4);
}

void ResetMouse() {
    fakes::Record("ResetMouse");
    ++fakes::desktop().mouse_resets;
}

void SetSwapInterval(int refreshes) {
    fakes::Record("SetSwapInterval", {refreshes});
    fakes::desktop().swap_intervals.push_back(refreshes);
}

void MinimiseWindow() {
    fakes::Record("MinimiseWindow");
    ++fakes::desktop().minimised;
}

void RaiseWindow() {
    fakes::Record("RaiseWindow");
    ++fakes::desktop().raised;
}

void DemandAttention(bool wanted) {
    fakes::Record("DemandAttention", {wanted});
    fakes::desktop().demands.push_back(wanted);
}

bool IsWindowFocused() {
    return fakes::desktop().focused;
}

void ShowNotice(const DesktopNotice& notice) {
    fakes::Record("ShowNotice", {}, notice.title);
    fakes::desktop().notices.push_back(notice);
    fakes::desktop().notice_shown = true;
}

void CloseNotice() {
    fakes::Record("CloseNotice");
    ++fakes::desktop().notices_closed;
    fakes::desktop().notice_shown = false;
}

bool ServeNotice() {
    return std::exchange(fakes::desktop().notice_clicked, false);
}

bool IsGeometry(const char* text) {
    fakes::Record("IsGeometry", {}, text);
    const std::vector<std::string>& wrong = fakes::desktop().wrong_geometries;
    return std::find(wrong.begin(), wrong.end(), text) == wrong.end();
}

bool IsWindowSeen() {
    fakes::Record("IsWindowSeen");
    return fakes::desktop().seen;
}

bool RequestRefresh() {
    fakes::Record("RequestRefresh");
    fakes::Desktop& desktop = fakes::desktop();
    if (!desktop.tells_of_refreshes) return false;
    if (!desktop.refresh_asked_for) desktop.refresh_asked_for = desktop.nanoseconds;
    return true;
}

void AwaitDrawing() {
    fakes::Record("AwaitDrawing");
}

bool AwaitRefresh(std::uint64_t nanoseconds, bool until_event) {
    fakes::Record("AwaitRefresh", {nanoseconds, until_event});
    const fakes::Desktop& desktop = fakes::desktop();
    if (!desktop.refresh_asked_for) return true;
    const std::uint64_t start = desktop.nanoseconds;
    const std::uint64_t event = until_event ? fakes::After(start, desktop.event_after) : fakes::kEndless;
    fakes::WaitUntil(std::min({start + nanoseconds, fakes::NextRefresh(), event}));
    return !desktop.refresh_asked_for || desktop.nanoseconds >= event;
}

std::uint64_t RefreshPeriod() {
    fakes::Record("RefreshPeriod");
    return fakes::desktop().tells_of_refreshes ? fakes::desktop().refresh_period : 0;
}

void AwaitSight(std::uint64_t nanoseconds) {
    fakes::Record("AwaitSight", {nanoseconds});
    fakes::Desktop& desktop = fakes::desktop();
    const std::uint64_t start = desktop.nanoseconds;
    const std::uint64_t sight = fakes::After(start, desktop.sight_after);
    fakes::WaitUntil(std::min({start + nanoseconds, fakes::NextRefresh(), sight}));
    if (desktop.nanoseconds >= sight) desktop.seen = true;
}
