// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/desktop.h"

#include <cstddef>

#include "tests/fakes/log.h"

namespace fakes {

Desktop& desktop() {
    static Desktop model;
    return model;
}

void ResetDesktop() {
    desktop() = Desktop();
}

}  // namespace fakes

ScreenPoint GlobalPointer() {
    fakes::Record("GlobalPointer");
    ++fakes::desktop().pointer_calls;
    return fakes::desktop().pointer;
}

std::uint64_t MonotonicNanoseconds() {
    fakes::Record("MonotonicNanoseconds");
    ++fakes::desktop().clock_calls;
    return fakes::desktop().nanoseconds;
}

void AwaitWindowEvent(std::uint64_t nanoseconds) {
    fakes::Record("AwaitWindowEvent", {static_cast<double>(nanoseconds)});
    fakes::desktop().nanoseconds += fakes::desktop().event_after.value_or(nanoseconds);
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
