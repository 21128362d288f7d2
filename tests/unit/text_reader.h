// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What is written where: turns the glyph squares that the fake GL recorded back into lines of text.
//
// How to use it:
//
//     ActionMenu();
//     const std::vector<PrintedLine> lines = PrintedText();
//     EXPECT_EQ(lines[0].text, "mar 3/2/2026 9:5.7");
//     EXPECT_EQ(Words(lines), (std::vector<std::string>{"mar 3/2/2026 9:5.7"}));
//     EXPECT_EQ(lines[0].x, 266);                    // as the caller of glPrintText passed it
//     EXPECT_NEAR(lines[0].centre_x, 256, 0.01);     // as the caller of a centred line passed it
//
// A text box gives one record for each of its lines. A character that is drawn as the blank reads as a blank,
// whatever it was.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/fakes/gl.h"

/// A line of text as it was printed; canvas units.
struct PrintedLine {
    std::string text;
    double x = 0;          ///< the bottom left corner of the first glyph's square
    double y = 0;          ///< the same
    double centre_x = 0;   ///< the middle of the whole line, each glyph counted with its advance
    double size = 0;       ///< half the edge of a glyph's square
    fakes::Rgba color{};   ///< of the first glyph
    bool goes_on = false;  ///< a further line of the text that the line before belongs to
};
std::ostream& operator<<(std::ostream& out, const PrintedLine& line);

/// Returns every line in the primitives recorded so far, in drawing order. The texture is the font's.
std::vector<PrintedLine> PrintedText();
std::vector<PrintedLine> PrintedText(unsigned int texture);

/// Returns the texts alone.
std::vector<std::string> Words(const std::vector<PrintedLine>& lines);
