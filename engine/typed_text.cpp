// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/typed_text.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

/// A character beyond ASCII and what is written for it.
struct Typed {
    char32_t character;
    const char* ascii;
};

/// In the order of the characters.
constexpr Typed kTyped[] = {
    {0xA0, " "},     {0xA1, "!"},    {0xAA, "a"},     {0xAB, "\""},  {0xAD, "-"},    {0xB0, "o"},
    {0xB2, "2"},     {0xB3, "3"},    {0xB4, "'"},     {0xB5, "u"},   {0xB7, "."},    {0xB9, "1"},
    {0xBA, "o"},     {0xBB, "\""},   {0xBC, "1/4"},   {0xBD, "1/2"}, {0xBE, "3/4"},  {0xBF, "?"},
    {0xC0, "A'"},    {0xC1, "A"},    {0xC2, "A"},     {0xC3, "A"},   {0xC4, "A"},    {0xC5, "A"},
    {0xC6, "AE"},    {0xC7, "C"},    {0xC8, "E'"},    {0xC9, "E'"},  {0xCA, "E"},    {0xCB, "E"},
    {0xCC, "I'"},    {0xCD, "I"},    {0xCE, "I"},     {0xCF, "I"},   {0xD0, "D"},    {0xD1, "N"},
    {0xD2, "O'"},    {0xD3, "O"},    {0xD4, "O"},     {0xD5, "O"},   {0xD6, "O"},    {0xD7, "x"},
    {0xD8, "O"},     {0xD9, "U'"},   {0xDA, "U"},     {0xDB, "U"},   {0xDC, "U"},    {0xDD, "Y"},
    {0xDE, "Th"},    {0xDF, "ss"},   {0xE0, "a'"},    {0xE1, "a"},   {0xE2, "a"},    {0xE3, "a"},
    {0xE4, "a"},     {0xE5, "a"},    {0xE6, "ae"},    {0xE7, "c"},   {0xE8, "e'"},   {0xE9, "e'"},
    {0xEA, "e"},     {0xEB, "e"},    {0xEC, "i'"},    {0xED, "i"},   {0xEE, "i"},    {0xEF, "i"},
    {0xF0, "d"},     {0xF1, "n"},    {0xF2, "o'"},    {0xF3, "o"},   {0xF4, "o"},    {0xF5, "o"},
    {0xF6, "o"},     {0xF7, ":"},    {0xF8, "o"},     {0xF9, "u'"},  {0xFA, "u"},    {0xFB, "u"},
    {0xFC, "u"},     {0xFD, "y"},    {0xFE, "th"},    {0xFF, "y"},   {0x102, "A"},   {0x103, "a"},
    {0x104, "A"},    {0x105, "a"},   {0x106, "C"},    {0x107, "c"},  {0x10C, "C"},   {0x10D, "c"},
    {0x10E, "D"},    {0x10F, "d"},   {0x110, "D"},    {0x111, "d"},  {0x118, "E"},   {0x119, "e"},
    {0x11A, "E"},    {0x11B, "e"},   {0x11E, "G"},    {0x11F, "g"},  {0x130, "I"},   {0x131, "i"},
    {0x139, "L"},    {0x13A, "l"},   {0x13D, "L"},    {0x13E, "l"},  {0x141, "L"},   {0x142, "l"},
    {0x143, "N"},    {0x144, "n"},   {0x147, "N"},    {0x148, "n"},  {0x150, "O"},   {0x151, "o"},
    {0x152, "OE"},   {0x153, "oe"},  {0x154, "R"},    {0x155, "r"},  {0x158, "R"},   {0x159, "r"},
    {0x15A, "S"},    {0x15B, "s"},   {0x15E, "S"},    {0x15F, "s"},  {0x160, "S"},   {0x161, "s"},
    {0x162, "T"},    {0x163, "t"},   {0x164, "T"},    {0x165, "t"},  {0x16E, "U"},   {0x16F, "u"},
    {0x170, "U"},    {0x171, "u"},   {0x178, "Y"},    {0x179, "Z"},  {0x17A, "z"},   {0x17B, "Z"},
    {0x17C, "z"},    {0x17D, "Z"},   {0x17E, "z"},    {0x218, "S"},  {0x219, "s"},   {0x21A, "T"},
    {0x21B, "t"},    {0x2010, "-"},  {0x2011, "-"},   {0x2012, "-"}, {0x2013, "-"},  {0x2014, "-"},
    {0x2015, "-"},   {0x2018, "'"},  {0x2019, "'"},   {0x201A, "'"}, {0x201C, "\""}, {0x201D, "\""},
    {0x201E, "\""},  {0x2022, "-"},  {0x2026, "..."}, {0x202F, " "}, {0x2032, "'"},  {0x2033, "\""},
    {0x20AC, "EUR"}, {0x2192, "->"}, {0x2212, "-"},
};

static_assert(std::is_sorted(std::begin(kTyped), std::end(kTyped),
                             [](const Typed& a, const Typed& b) { return a.character < b.character; }));

constexpr char32_t kCombiningGrave = 0x300;
constexpr char32_t kCombiningAcute = 0x301;

/// What a printable ASCII character is written as: itself.
constexpr std::string_view kAscii =
    " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~";
static_assert(kAscii.size() == 0x7F - ' ');

/// A character of a text, or a byte that is none.
struct Decoded {
    char32_t character = 0;
    std::size_t bytes = 1;
    bool valid = false;
};

/// Reads the character at the front of a text, which must not be empty.
Decoded Decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return {first, 1, true};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return {};
    char32_t character = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) return {};
        character = character << 6 | (byte(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kLowest.at(length) || character > 0x10FFFF || surrogate) return {};
    return {character, length, true};
}

bool IsBreak(char32_t character) {
    return character == '\n' || character == '\r' || character == '\t' || character == 0x2028 ||
           character == 0x2029;
}

/// Returns what stands for a letter and the combining accent behind it; empty where the two are no Italian
/// accented letter.
std::string Accented(char32_t letter, char32_t accent) {
    constexpr std::string_view kGrave = "AEIOUaeiou";
    constexpr std::string_view kAcute = "Ee";
    const std::string_view letters = accent == kCombiningGrave   ? kGrave
                                     : accent == kCombiningAcute ? kAcute
                                                                 : std::string_view();
    if (letter >= 0x80 || letters.find(static_cast<char>(letter)) == std::string_view::npos) return {};
    return {static_cast<char>(letter), '\''};
}

}  // namespace

std::string_view TypedAs(char32_t character) {
    if (character >= ' ' && character < 0x7F) return kAscii.substr(character - ' ', 1);
    const auto* row =
        std::lower_bound(std::begin(kTyped), std::end(kTyped), character,
                         [](const Typed& typed, char32_t wanted) { return typed.character < wanted; });
    return row != std::end(kTyped) && row->character == character ? row->ascii : std::string_view();
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const Decoded next = Decode(text);
        if (!next.valid) return false;
        text.remove_prefix(next.bytes);
    }
    return true;
}

std::string TypedText(std::string_view utf8, std::size_t longest) {
    std::string typed;
    bool after_break = false;
    while (!utf8.empty()) {
        const Decoded next = Decode(utf8);
        utf8.remove_prefix(next.bytes);
        if (!next.valid) continue;
        const bool is_break = IsBreak(next.character);
        std::string piece(is_break ? std::string_view(after_break ? "" : " ") : TypedAs(next.character));
        after_break = is_break;
        if (!utf8.empty()) {
            const Decoded accent = Decode(utf8);
            if (const std::string both = Accented(next.character, accent.character); !both.empty()) {
                piece = both;
                utf8.remove_prefix(accent.bytes);
            }
        }
        if (typed.size() + piece.size() > longest) break;
        typed += piece;
    }
    return typed;
}
