// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the owl writes for a character that its font does not have. The font has ASCII only, so an Italian
// accented letter becomes the plain letter and an apostrophe, a letter of another language its plain letter,
// and typographic marks what a typewriter has for them; all else becomes nothing.
//
// One table, shared by whoever brings characters from outside into the events' texts.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

/// Returns what stands for a Unicode character: itself for printable ASCII, ASCII for what the table has, an
/// empty text for everything else, control characters included.
std::string_view TypedAs(char32_t character);

/// Returns whether a text is UTF-8: no bytes that mean nothing, no overlong forms, no surrogates, nothing
/// beyond U+10FFFF.
bool IsUtf8(std::string_view text);

/// Returns a UTF-8 text as the owl writes it, at most `longest` bytes of it: a character of which not all
/// fits ends it, so that none is written by half. Line breaks and tabs become blanks, several in a row one.
/// A letter with a combining accent behind it is as good as the accented letter. Bytes that are no UTF-8 are
/// left out.
std::string TypedText(std::string_view utf8, std::size_t longest = std::numeric_limits<std::size_t>::max());
