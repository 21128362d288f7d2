// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bakes a particle effect (.zfx) that the program loads from its source in assets/effects.
//
// A source is a .zfx file as a person writes it: '#' starts a comment, lines without a word are skipped, and
// all other lines are those of the .zfx file, each keyword on a line of its own. The one difference is the
// texture. Instead of its texel numbers a line names where they come from:
//
//     texture: WIDTH HEIGHT BLEND           pixels; blend 0 adds light, 1 covers
//     picture: DRAWING X Y W H LAYER ...    SVG file; crop in its own units, y down; layers' ids, in order
//
// Layers that are painted one over another are rendered by librsvg, and written in straight alpha, bottom row
// first, 4 numbers a texel. All lines of an emitter must be there, in the program's order: its reader checks
// nothing.
//
// usage: bake_effects SOURCE DRAWINGS_FOLDER OUTPUT

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "tools/drawing.h"
#include "tools/raw_picture.h"

namespace {

/// What the numbers of a line must be.
enum class Kind { kWhole, kReal };

/// A line of an emitter: its keyword and the numbers after it.
struct Field {
    const char* keyword;
    Kind kind;
    std::size_t numbers;
};

constexpr Field kTexture = {"texture:", Kind::kWhole, 3};

/// The lines after the texture, in the order in which the program reads them.
constexpr std::array kFields = {
    Field{"particles_limit:", Kind::kWhole, 1},  // live particles at most
    Field{"spawn_time:", Kind::kReal, 2},        // seconds between bursts
    Field{"spawn_particles:", Kind::kWhole, 2},  // particles in a burst
    Field{"spawn_position:", Kind::kReal, 6},    // least x y z, greatest x y z
    Field{"spawn_direction:", Kind::kReal, 6},   // least x y z, greatest x y z
    Field{"particles_acceleration:", Kind::kReal, 3},
    Field{"particles_rotation:", Kind::kReal, 2},    // degrees
    Field{"particle_random_rot:", Kind::kWhole, 1},  // flag
    Field{"particles_speed:", Kind::kReal, 2},
    Field{"particles_timelife:", Kind::kReal, 2},     // seconds
    Field{"particles_scale:", Kind::kReal, 2},        // half the edge
    Field{"particles_color_start:", Kind::kReal, 6},  // 0 to 255, least r g b, greatest r g b
    Field{"particles_color_end:", Kind::kReal, 6},    // 0 to 255, least r g b, greatest r g b
    Field{"billboarding:", Kind::kWhole, 1},
    Field{"time_delay:", Kind::kReal, 1},  // seconds
    Field{"time_step:", Kind::kReal, 1},   // seconds
    Field{"loop:", Kind::kWhole, 1},       // flag
};

/// The largest texture edge, pixels. The program reads its numbers one by one at start-up.
constexpr int kMaxEdge = 128;

/// A line that holds words, the keyword first.
struct Line {
    int number = 0;
    std::vector<std::string> words;
};

/// A source and how far it has been read.
struct Source {
    std::string path;
    std::vector<Line> lines;
    std::size_t next = 0;  ///< index of the line to be taken next
};

/// Ends the tool with one line that says why.
[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_effects: " << message << '\n';
    std::exit(1);
}

/// Ends the tool with one line that says why and which line of the source is to blame.
[[noreturn]] void Fail(const Source& source, const Line& line, const std::string& message) {
    Fail(source.path + ":" + std::to_string(line.number) + ": " + message);
}

// ---- The source ----

/// Reads the lines that hold words; comments are left out.
Source ReadSource(const std::string& path) {
    std::ifstream in(path);
    if (!in) Fail("cannot read " + path);
    Source source{path, {}, 0};
    int number = 0;
    for (std::string text; std::getline(in, text);) {
        ++number;
        text.resize(std::min(text.find('#'), text.size()));
        std::istringstream stream(text);
        Line line{number, {}};
        for (std::string word; stream >> word;) line.words.push_back(word);
        if (!line.words.empty()) source.lines.push_back(line);
    }
    return source;
}

/// Takes the next line, which must begin with the keyword.
const Line& Take(Source& source, const std::string& keyword) {
    if (source.next == source.lines.size())
        Fail("the end of " + source.path + " where '" + keyword + "' should be");
    const Line& line = source.lines[source.next++];
    if (line.words.front() == keyword) return line;
    Fail(source, line, "'" + line.words.front() + "' where '" + keyword + "' should be");
}

/// Returns whether the whole word is a number of the type.
template <typename Number>
bool Parse(const std::string& word, Number& value) {
    const char* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

/// Returns whether the program's reader takes the word for a number of the kind.
bool IsNumber(const std::string& word, Kind kind) {
    int whole = 0;
    float real = 0;
    return kind == Kind::kWhole ? Parse(word, whole) : Parse(word, real) && std::isfinite(real);
}

/// Takes the next line, which must be the field's and have its numbers.
const Line& Take(Source& source, const Field& field) {
    const Line& line = Take(source, std::string(field.keyword));
    if (line.words.size() != field.numbers + 1)
        Fail(source, line,
             "'" + line.words.front() + "' needs " + std::to_string(field.numbers) + " numbers");
    for (std::size_t i = 1; i < line.words.size(); ++i) {
        if (IsNumber(line.words[i], field.kind)) continue;
        const char* kind = field.kind == Kind::kWhole ? "whole number" : "number";
        Fail(source, line, "'" + line.words[i] + "' is not a " + kind);
    }
    return line;
}

/// Takes the first line, which tells the program what it reads.
void TakeHeader(Source& source) {
    const Line& line = Take(source, std::string("ZFX"));
    if (line.words != std::vector<std::string>{"ZFX", "ver:", "2"}) Fail(source, line, "not 'ZFX ver: 2'");
}

/// Takes the line that names the picture of a texture.
Cutout TakePicture(Source& source) {
    const Line& line = Take(source, std::string("picture:"));
    const std::vector<std::string>& words = line.words;
    Cutout p;
    if (words.size() < 7) Fail(source, line, "'picture:' needs a drawing, a crop x y w h and layers");
    p.drawing = words[1];
    if (!Parse(words[2], p.x) || !Parse(words[3], p.y) || !Parse(words[4], p.w) || !Parse(words[5], p.h) ||
        !(p.w > 0) || !(p.h > 0))
        Fail(source, line, "the crop is not four numbers x y w h");
    for (std::size_t i = 6; i < words.size(); ++i) p.layers.push_back("#" + words[i]);
    return p;
}

// ---- The texture ----

/// Writes the texels, a row of the texture a line. The program's first row is the bottom one.
void PutTexels(std::ostream& out, const RawPicture& image) {
    for (int y = image.height - 1; y >= 0; --y) {
        const std::size_t begin = image.Index(0, y) * 4;
        const std::size_t end = image.Index(0, y + 1) * 4;
        for (std::size_t i = begin; i < end; ++i) out << int{image.rgba[i]} << (i + 1 == end ? '\n' : ' ');
    }
}

// ---- The effect ----

/// Writes a line as it stands in the source.
void Put(std::ostream& out, const Line& line) {
    for (const std::string& word : line.words) out << word << (&word == &line.words.back() ? '\n' : ' ');
}

/// Takes one emitter and writes it as the program reads it.
void BakeEmitter(Source& source, const std::string& folder, std::ostream& out) {
    const Line& texture = Take(source, kTexture);
    int width = 0;
    int height = 0;
    Parse(texture.words[1], width);
    Parse(texture.words[2], height);
    if (width < 1 || height < 1 || width > kMaxEdge || height > kMaxEdge)
        Fail(source, texture, "the texture's edges must be 1 to " + std::to_string(kMaxEdge) + " pixels");
    Put(out, texture);
    PutTexels(out, Render(TakePicture(source), folder, width, height));
    for (const Field& field : kFields) Put(out, Take(source, field));
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 4) Fail("usage: bake_effects SOURCE DRAWINGS_FOLDER OUTPUT");
    Source source = ReadSource(argv[1]);
    std::ostringstream effect;
    TakeHeader(source);
    effect << "ZFX ver: 2\n";
    while (source.next < source.lines.size()) BakeEmitter(source, argv[2], effect);

    std::ofstream out(argv[3], std::ios::binary);
    out << effect.str();
    out.close();
    if (!out) Fail(std::string("cannot write ") + argv[3]);
    return 0;
} catch (const DrawingError& error) {
    Fail(error.what());
}
