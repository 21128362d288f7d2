// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bakes a raw texture file of the program from a drawing in assets/pictures.
//
// A picture is a crop of a drawing, made of some of its named layers, rendered by librsvg on cairo and
// written as the program reads it: width and height as 32-bit little-endian numbers, then the pixels as
// straight R, G, B, A bytes, bottom row first. The arguments after the first three are those of the picture's
// line in assets/data_files.txt: the size in pixels, the crop in the drawing's units, and the layers (none:
// the whole drawing).
//
// usage: bake_pictures DRAWINGS_FOLDER DRAWING PICTURE WIDTH HEIGHT X Y W H [LAYER ...]

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "tools/drawing.h"
#include "tools/raw_picture.h"

namespace {

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_pictures: " << message << '\n';
    std::exit(1);
}

/// Returns the argument as a number; ends the program where it is none.
template <typename Number>
Number NumberFrom(const char* argument) {
    std::istringstream in(argument);
    Number number = 0;
    if (!(in >> number) || !in.eof()) Fail(std::string("'") + argument + "' is not a number");
    return number;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc < 10)
        Fail("usage: bake_pictures DRAWINGS_FOLDER DRAWING PICTURE WIDTH HEIGHT X Y W H [LAYER ...]");
    const std::string path = argv[3];
    const int width = NumberFrom<int>(argv[4]);
    const int height = NumberFrom<int>(argv[5]);
    Cutout cutout;
    cutout.drawing = argv[2];
    cutout.x = NumberFrom<double>(argv[6]);
    cutout.y = NumberFrom<double>(argv[7]);
    cutout.w = NumberFrom<double>(argv[8]);
    cutout.h = NumberFrom<double>(argv[9]);
    for (int i = 10; i < argc; ++i) cutout.layers.push_back("#" + std::string(argv[i]));

    const RawPicture image = Render(cutout, argv[1], width, height);
    if (!Write(image, path)) Fail("cannot write " + path);
    return 0;
} catch (const DrawingError& error) {
    Fail(error.what());
}
