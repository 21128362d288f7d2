// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/content_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Numbered = std::vector<std::pair<int, std::string>>;

Numbered LinesOf(std::string_view bytes) {
    Numbered lines;
    ContentLines reader(bytes);
    for (ContentLine line; reader.Next(line);) lines.emplace_back(line.number, line.text);
    return lines;
}

TEST(ContentLines, UnfoldsAndKeepsTheNumbers) {
    EXPECT_EQ(LinesOf("A:1\r\n 2\r\n\t3\r\nB:4\r\n"), (Numbered{{1, "A:123"}, {4, "B:4"}}));
}

TEST(ContentLines, TakesBothLineEndsAMarkAndEmptyLines) {
    EXPECT_EQ(LinesOf("\xEF\xBB\xBF"
                      "A:1\n\nB:2"),
              (Numbered{{1, "A:1"}, {3, "B:2"}}));
    EXPECT_EQ(LinesOf(""), Numbered());
    EXPECT_EQ(LinesOf("\r\n\r\n"), Numbered());
}

TEST(ContentLines, FoldsACharacterInItsMiddle) {
    EXPECT_EQ(LinesOf("A:\xC3\r\n \xA8\r\n"), (Numbered{{1, "A:\xC3\xA8"}}));
}

TEST(ContentLine, TakesNameAndValueApart) {
    const ContentLine line = {1, "dtstart;TZID=\"a:b;c\";X=1:20260101T000000"};
    EXPECT_EQ(line.Name(), "DTSTART");
    EXPECT_EQ(line.Value(), "20260101T000000");
    for (const char* bad : {"", "no colon", "A", ":x", "A;X=\"1:2", "A B:1"})
        EXPECT_EQ((ContentLine{1, bad}).Name(), "") << bad;
}

}  // namespace
