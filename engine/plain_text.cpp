// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/plain_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

/// The forms of a character in UTF-8 (RFC 3629, section 3).
struct Form {
    std::uint32_t lead_mask, lead;  ///< the first byte's fixed bits
    std::size_t bytes;
    std::uint32_t least;  ///< a lower code point must be written in a shorter form
};

constexpr Form kForms[] = {
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

/// A character as it was read; no bytes where there was none.
struct Character {
    std::uint32_t code_point = 0;
    std::size_t bytes = 0;
};

Character ReadForm(std::string_view bytes, const Form& form) {
    if (bytes.size() < form.bytes) return {};
    std::uint32_t code_point = static_cast<unsigned char>(bytes[0]) & ~form.lead_mask;
    for (const char c : bytes.substr(1, form.bytes - 1)) {
        const std::uint32_t byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U) return {};
        code_point = code_point << 6U | (byte & 0x3FU);
    }
    const bool surrogate = code_point >= 0xD800 && code_point <= 0xDFFF;
    if (code_point < form.least || code_point > 0x10FFFF || surrogate) return {};
    return {code_point, form.bytes};
}

/// Reads the character at the front of the bytes, of which there must be one.
Character ReadCharacter(std::string_view bytes) {
    for (const Form& form : kForms) {
        if ((static_cast<unsigned char>(bytes[0]) & form.lead_mask) == form.lead)
            return ReadForm(bytes, form);
    }
    return {};
}

/// Returns whether the code point is text on a line: neither a control character nor a noncharacter.
bool IsText(std::uint32_t code_point) {
    const bool control = code_point < 0x20 || (code_point >= 0x7F && code_point <= 0x9F);
    const bool line_end = code_point == 0x2028 || code_point == 0x2029;
    const bool noncharacter =
        (code_point >= 0xFDD0 && code_point <= 0xFDEF) || (code_point & 0xFFFEU) == 0xFFFEU;
    return !control && !line_end && !noncharacter;
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace

std::string OneLineOfText(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const Character character = ReadCharacter(bytes);
        if (character.bytes > 0 && IsText(character.code_point)) text += bytes.substr(0, character.bytes);
        bytes.remove_prefix(std::max<std::size_t>(character.bytes, 1));
    }
    return text;
}

std::string FirstLineOfText(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
        std::string line = OneLineOfText(bytes.substr(0, end));
        if (!IsBlank(line)) return line;
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return {};
}

std::string EscapeMarkup(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}
