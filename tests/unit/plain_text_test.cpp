// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/plain_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

TEST(OneLineOfTextTest, KeepsCharactersOfEveryLength) {
    const std::string text = "Perch\u00e9 no? 5 \u20ac, \u65e5\u672c, \U0001F989";

    EXPECT_EQ(OneLineOfText(text), text);
    const std::string first_and_last = " ~\u00A0\u07FF\u0800\uD7FF\uE000\U00010000\U0010FFFD";
    EXPECT_EQ(OneLineOfText(first_and_last), first_and_last);
}

TEST(OneLineOfTextTest, LeavesOutBytesThatAreNoUtf8AndKeepsWhatStandsAroundThem) {
    struct Case {
        std::string bytes;
        std::string text;
    };
    const Case cases[] = {
        {"perch\xE9 no", "perch no"},                // Latin-1
        {"a\x80z", "az"},                            // a later byte without its first
        {"a\xC3", "a"},                              // cut short at the end
        {"a\xC3z", "az"},                            // cut short in the middle
        {"a\xE2\x82z", "az"},                        // two bytes of three
        {"a\xE2\x82\xC3\xA9", "a\u00e9"},            // the next character is whole
        {"a\xC0\xAFz", "az"},                        // longer than need be: '/'
        {"a\xE0\x80\xAFz", "az"},                    //
        {"a\xF0\x80\x80\xAFz", "az"},                //
        {"a\xED\xA0\x80z", "az"},                    // the first surrogate
        {"a\xED\xBF\xBFz", "az"},                    // the last
        {"a\xC1\xBF\xE0\x9F\xBFz", "az"},            // the last characters that are longer than need be
        {"a\xF0\x8F\xBF\xBFz", "az"},                //
        {"a\xF4\x90\x80\x80z", "az"},                // beyond the last code point
        {"a\xF8\x88\x80\x80\x80z", "az"},            // five bytes
        {"\xFF\xFE", ""},                            //
        {std::string("a\0z", 3), "az"},              //
        {"\xF4\x8F\xBF\xBDz", "\xF4\x8F\xBF\xBDz"},  // U+10FFFD, the last there is
    };
    for (const Case& row : cases) EXPECT_EQ(OneLineOfText(row.bytes), row.text);
}

TEST(OneLineOfTextTest, LeavesOutControlCharactersLineEndsAndNoncharacters) {
    struct Case {
        std::string bytes;
        std::string text;
    };
    const Case cases[] = {
        {"a\tb\nc\rd\x1B[1m\x7F", "abcd[1m"},
        {"a\u0080\u009Fb", "ab"},
        {"a\u00A0b", "a\u00A0b"},
        {"a\u2028\u2029b", "ab"},
        {"a\uFDCF\uFDD0\uFDEF\uFDF0b", "a\uFDCF\uFDF0b"},
        {"a\uFFFD\uFFFE\uFFFFb", "a\uFFFDb"},
        {"a\U0001FFFE\U0010FFFFb", "ab"},
    };
    for (const Case& row : cases) EXPECT_EQ(OneLineOfText(row.bytes), row.text);
}

TEST(OneLineOfTextTest, WhatItLeavesItLeavesAgainWhateverTheBytes) {
    std::mt19937 random(5);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        for (int i = 0; i < round % 20; ++i) bytes += static_cast<char>(byte(random));

        const std::string text = OneLineOfText(bytes);

        ASSERT_EQ(OneLineOfText(text), text);
        ASSERT_EQ(text.find_first_of("\n\r\t\x1B"), std::string::npos);
    }
}

TEST(FirstLineOfTextTest, IsTheFirstThatIsNotBlank) {
    struct Case {
        std::string bytes;
        std::string line;
    };
    const Case cases[] = {
        {"", ""},
        {"una", "una"},
        {"una\ndue", "una"},
        {"una\r\ndue", "una"},
        {"\n \n\x01\n due\ntre", " due"},
        {"\xE9\ndue", "due"},
        {"\n \n", ""},
        {"   ", ""},
    };
    for (const Case& row : cases) EXPECT_EQ(FirstLineOfText(row.bytes), row.line);
}

TEST(EscapeMarkupTest, WritesAmpersandsAndAngleBracketsAsEntities) {
    EXPECT_EQ(EscapeMarkup("latte & <b>uova</b> &amp; \"pane\" d'orzo \u00e9"),
              "latte &amp; &lt;b&gt;uova&lt;/b&gt; &amp;amp; \"pane\" d'orzo \u00e9");
    EXPECT_EQ(EscapeMarkup(""), "");
}

}  // namespace
