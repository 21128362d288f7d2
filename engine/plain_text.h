// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Making text out of bytes that may be anything, for whoever shows it outside the owl's window: what is sent
// over a message bus must be UTF-8, and a server that reads markup must not find any in a user's words.
#pragma once

#include <string>
#include <string_view>

/// Returns what of the bytes is text on one line: characters in UTF-8. Bytes that are no UTF-8 are left out,
/// and so are control characters and the code points that are none ("noncharacters", which a message bus
/// rejects).
std::string OneLineOfText(std::string_view bytes);

/// Returns the first line that is not blank, as OneLineOfText() leaves it; empty where there is none.
std::string FirstLineOfText(std::string_view bytes);

/// Returns the text with the characters that begin or end markup written as entities.
std::string EscapeMarkup(std::string_view text);
