// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The lines of an iCalendar file (RFC 5545, 3.1), unfolded, each with the number that an editor shows for its
// start. libical unfolds too, but tells no line numbers.
#pragma once

#include <string>
#include <string_view>

/// One line of content, which may fill several lines of the file.
struct ContentLine {
    int number = 0;  ///< of its first line in the file, from 1
    std::string text;

    /// Returns the name of the property in capitals, up to the first ';' or ':'; empty where the line has no
    /// name, or no value behind it.
    std::string Name() const;

    /// Returns what follows the colon; empty where there is none.
    std::string_view Value() const;
};

/// Reads a file's lines from the front. Lines may end with CR LF or with LF; a byte-order mark before the
/// first is passed over, and so are empty lines.
class ContentLines {
  public:
    /// `bytes` must live as long as this.
    explicit ContentLines(std::string_view bytes);

    /// Reads the next line of content. Returns whether there is one.
    bool Next(ContentLine& line);

    /// Returns the number of the last line that was read.
    int Number() const { return number_; }

  private:
    std::string_view TakeLine();

    std::string_view rest_;
    int number_ = 0;
};
