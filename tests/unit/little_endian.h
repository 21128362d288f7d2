// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Numbers as the program's files hold them, for tests that make such files by hand.
#pragma once

#include <cstddef>
#include <string>

/// Returns a number as that many little-endian bytes.
inline std::string Number(std::size_t number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
}
