// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into the program: the X server promises to tell of refreshes and never does, as where the screen
// is off. The question is never sent.
#include <xcb/present.h>

#include <cstdint>

extern "C" xcb_void_cookie_t xcb_present_notify_msc(xcb_connection_t* /*connection*/, xcb_window_t /*window*/,
                                                    std::uint32_t /*serial*/, std::uint64_t /*target*/,
                                                    std::uint64_t /*divisor*/, std::uint64_t /*remainder*/) {
    return {};
}
