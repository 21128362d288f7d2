// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bakes the program's raw texture files from the drawings in assets/pictures.
//
// The list of pictures is a text file with one picture a line (see pictures.txt for its columns).
// A picture is a crop of a drawing, made of some of its named layers, rendered by librsvg on cairo
// and written as the program reads it: width and height as 32-bit little-endian numbers, then the
// pixels as straight R, G, B, A bytes, bottom row first.
//
// usage: bake_pictures LIST DRAWINGS_FOLDER OUTPUT_FOLDER [PICTURE ...]

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/drawing.h"
#include "tools/raw_picture.h"

namespace {

/// One line of the list of pictures.
struct Picture {
    std::string file;  ///< name of the raw texture file
    int width = 0;     ///< pixels
    int height = 0;    ///< pixels
    Cutout cutout;
};

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_pictures: " << message << '\n';
    std::exit(1);
}

std::vector<Picture> ReadList(const std::string& path) {
    std::ifstream in(path);
    if (!in) Fail("cannot read " + path);
    std::vector<Picture> pictures;
    for (std::string line; std::getline(in, line);) {
        line.resize(std::min(line.find('#'), line.size()));
        std::istringstream words(line);
        Picture p;
        if (!(words >> p.file)) continue;
        Cutout& c = p.cutout;
        if (!(words >> c.drawing >> p.width >> p.height >> c.x >> c.y >> c.w >> c.h))
            Fail("the line of '" + p.file + "' is not complete");
        for (std::string layer; words >> layer;) c.layers.push_back("#" + layer);
        pictures.push_back(p);
    }
    return pictures;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc < 4) Fail("usage: bake_pictures LIST DRAWINGS_FOLDER OUTPUT_FOLDER [PICTURE ...]");
    const std::vector<std::string> wanted(argv + 4, argv + argc);
    for (const Picture& picture : ReadList(argv[1])) {
        if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), picture.file) == wanted.end())
            continue;
        const RawPicture image = Render(picture.cutout, argv[2], picture.width, picture.height);
        const std::string path = std::string(argv[3]) + "/" + picture.file;
        if (!Write(image, path)) Fail("cannot write " + path);
    }
    return 0;
} catch (const DrawingError& error) {
    Fail(error.what());
}
