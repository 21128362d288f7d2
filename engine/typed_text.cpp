// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/typed_text.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

/// What Latin-1 beyond ASCII types, from 0xA0 on; in the locales where GLUT reports Latin-9, 0xA4 is the euro
/// sign.
constexpr const char* kLatin1[] = {
    " ",  "!",  "c",  "GBP", "EUR", "JPY", "|",  "par.", "\"", "(c)", "a", "\"", "-",   "",    "(r)", "-",
    "o",  "+-", "2",  "3",   "'",   "u",   "P",  ".",    ",",  "1",   "o", "\"", "1/4", "1/2", "3/4", "?",
    "A'", "A",  "A",  "A",   "A",   "A",   "AE", "C",    "E'", "E'",  "E", "E",  "I'",  "I",   "I",   "I",
    "D",  "N",  "O'", "O",   "O",   "O",   "O",  "x",    "O",  "U'",  "U", "U",  "U",   "Y",   "TH",  "ss",
    "a'", "a",  "a",  "a",   "a",   "a",   "ae", "c",    "e'", "e'",  "e", "e",  "i'",  "i",   "i",   "i",
    "d",  "n",  "o'", "o",   "o",   "o",   "o",  ":",    "o",  "u'",  "u", "u",  "u",   "y",   "th",  "y",
};
constexpr char32_t kFirstOfLatin1 = 0xA0;
static_assert(std::size(kLatin1) == 0x100 - kFirstOfLatin1);

/// What the letters of Latin Extended-A type, from 0x100 on; "?" stands for those of kOthers.
constexpr char kExtendedA[] =
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi??JjKkkLlLlLlLlLlNnNnNnnNnOoOoOo??RrRrRrSsSsSsSsTtTtTt"
    "UuUuUuUuUuUuWwYyYZzZzZzs";
constexpr char32_t kFirstOfExtendedA = 0x100;
static_assert(std::size(kExtendedA) - 1 == 0x180 - kFirstOfExtendedA);

/// A character beyond those and what it types.
struct Spelling {
    char32_t character;
    const char* text;
};

constexpr Spelling kOthers[] = {
    {0x132, "IJ"},    {0x133, "ij"},  {0x152, "OE"},  {0x153, "oe"}, {0x218, "S"},    {0x219, "s"},
    {0x21A, "T"},     {0x21B, "t"},   {0x1E9E, "SS"}, {0x2010, "-"}, {0x2011, "-"},   {0x2012, "-"},
    {0x2013, "-"},    {0x2014, "-"},  {0x2015, "-"},  {0x2018, "'"}, {0x2019, "'"},   {0x201A, ","},
    {0x201C, "\""},   {0x201D, "\""}, {0x201E, "\""}, {0x2022, "*"}, {0x2026, "..."}, {0x202F, " "},
    {0x2032, "'"},    {0x2033, "\""}, {0x2039, "'"},  {0x203A, "'"}, {0x20AC, "EUR"}, {0x2116, "n."},
    {0x2122, "(tm)"}, {0x2192, "->"}, {0x2212, "-"},
};

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
    const auto* row = std::find_if(std::begin(kOthers), std::end(kOthers),
                                   [&](const Spelling& other) { return other.character == character; });
    if (row != std::end(kOthers)) return row->text;
    if (character < kFirstOfLatin1) return {};
    if (character < kFirstOfExtendedA) return kLatin1[character - kFirstOfLatin1];
    if (character < kFirstOfExtendedA + std::size(kExtendedA) - 1) {
        return std::string_view(kExtendedA).substr(character - kFirstOfExtendedA, 1);
    }
    return {};
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
