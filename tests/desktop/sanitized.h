// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Which programs want the address sanitizer's library loaded ahead of all others.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace desktop {

/// Returns whether a program was built with the address sanitizer.
inline bool IsSanitized(const std::string& program) {
    std::ifstream file(program, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str().find("libasan.so") != std::string::npos;
}

}  // namespace desktop
