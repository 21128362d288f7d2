// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/typed_text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

TEST(TypedText, KeepsPrintableAscii) {
    std::string all;
    for (char c = ' '; c <= '~'; ++c) all += c;
    EXPECT_EQ(TypedText(all), all);
}

TEST(TypedText, WritesItalianAccentsAsLetterAndApostrophe) {
    EXPECT_EQ(TypedText("àèéìòù ÀÈÉÌÒÙ"), "a'e'e'i'o'u' A'E'E'I'O'U'");
}

TEST(TypedText, WritesOtherLettersAsTheOwlDoes) {
    EXPECT_EQ(TypedText("Müller çñß Łódź 20 € 3°"), "Muller cnss Lodz 20 EUR 3o");
    EXPECT_EQ(TypedText("l’albero – “sì”…"), "l'albero - \"si'\"...");
}

TEST(TypedText, LeavesOutWhatItHasNoLettersFor) {
    EXPECT_EQ(TypedText("a\U0001F989b\u0416c\x01\x7F"), "abc");
}

TEST(TypedText, TakesACombiningAccentForTheAccentedLetter) {
    EXPECT_EQ(TypedText("perche\u0301 citta\u0300"), "perche' citta'");
    EXPECT_EQ(TypedText("Mu\u0308ller a\u0301"), "Muller a");
}

TEST(TypedText, MakesABlankOfLineBreaks) {
    EXPECT_EQ(TypedText("a\r\nb\n\n\tc"), "a b c");
    EXPECT_EQ(TypedText("a  b"), "a  b");
    for (const char* text : {"a\nb", "a\rb", "a\tb", "a\u2028b", "a\u2029b", "a\u2028\t\u2029\r\nb"})
        EXPECT_EQ(TypedText(text), "a b") << text;
}

TEST(TypedText, WritesNoCharacterByHalf) {
    EXPECT_EQ(TypedText("abcè", 4), "abc");
    EXPECT_EQ(TypedText("abcè", 5), "abce'");
    EXPECT_EQ(TypedText("ab€x", 4), "ab");
    EXPECT_EQ(TypedText("abce\u0301", 4), "abc");
}

TEST(TypedText, PassesOverBytesThatAreNoUtf8) {
    EXPECT_EQ(TypedText("a\xE8"
                        "b\xC3"),
              "ab");
}

TEST(IsUtf8, KnowsGoodFromBad) {
    for (const std::string good : {"", "abc", "è", "€", "\U0001F989", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(IsUtf8(good)) << good;
    for (const std::string bad : {"\xE8", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                                  "\xF4\x90\x80\x80", "\xF0\x80\x80\x80", "\x80", "\xFF", "\xE2\x82"})
        EXPECT_FALSE(IsUtf8(bad));
}

TEST(IsUtf8, TakesTheFirstAndTheLastCharacterOfEachLengthAndNeitherShorterNorFurtherOnes) {
    for (const std::string good : {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                                   "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(IsUtf8(good)) << testing::PrintToString(good);
    for (const std::string bad : {"\x80", "\xBF", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF",
                                  "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"})
        EXPECT_FALSE(IsUtf8(bad)) << testing::PrintToString(bad);
}

TEST(IsUtf8, WantsEveryFurtherByteToBeOne) {
    for (const std::string bad : {"\xC3(", "\xC3\xC3", "\xE2(\xAC", "\xE2\x82(", "\xE2\x82\xC0",
                                  "\xF0(\x9F\xA6", "\xF0\x9F(\xA6", "\xF0\x9F\xA6("})
        EXPECT_FALSE(IsUtf8(bad)) << testing::PrintToString(bad);
}

TEST(TypedAs, IsAsciiForEveryCharacter) {
    for (char32_t c = 0; c < 0x3000; ++c) {
        for (const char written : TypedAs(c))
            EXPECT_TRUE(written >= ' ' && written <= '~') << static_cast<unsigned>(c);
    }
}

}  // namespace
