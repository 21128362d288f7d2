// Bakes the program's raw texture files from the drawings in assets/pictures.
//
// The list of pictures is a text file with one picture a line (see pictures.txt for its columns).
// A picture is a crop of a drawing, made of some of its named layers, rendered by librsvg on cairo
// and written as the program reads it: width and height as 32-bit little-endian numbers, then the
// pixels as straight R, G, B, A bytes, bottom row first.
//
// usage: bake_pictures LIST DRAWINGS_FOLDER OUTPUT_FOLDER [PICTURE ...]

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/raw_picture.h"

namespace {

/// One line of the list of pictures.
struct Picture {
    std::string file;                   ///< name of the raw texture file
    std::string drawing;                ///< SVG file in the folder of drawings
    int width = 0;                      ///< pixels
    int height = 0;                     ///< pixels
    double x = 0, y = 0, w = 0, h = 0;  ///< the crop, in the drawing's own units, y down
    std::vector<std::string> layers;    ///< ids painted one over another; none: the whole drawing
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
        if (!(words >> p.drawing >> p.width >> p.height >> p.x >> p.y >> p.w >> p.h))
            Fail("the line of '" + p.file + "' is not complete");
        for (std::string layer; words >> layer;) p.layers.push_back("#" + layer);
        pictures.push_back(p);
    }
    return pictures;
}

/// Renders the picture with cairo; the result has premultiplied alpha.
cairo_surface_t* Render(const Picture& p, const std::string& folder) {
    GError* error = nullptr;
    const std::string path = folder + "/" + p.drawing;
    RsvgHandle* drawing = rsvg_handle_new_from_file(path.c_str(), &error);
    if (drawing == nullptr) Fail(path + ": " + error->message);
    gboolean has_box = FALSE;
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(drawing, nullptr, nullptr, nullptr, nullptr, &has_box, &box);
    if (!has_box) Fail(path + " has no viewBox");

    const double sx = p.width / p.w;
    const double sy = p.height / p.h;
    const RsvgRectangle viewport{0, 0, box.width, box.height};
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, p.width, p.height);
    cairo_t* cr = cairo_create(surface);
    cairo_scale(cr, sx, sy);
    cairo_translate(cr, -p.x, -p.y);
    std::vector<std::string> layers = p.layers;
    if (layers.empty()) layers.emplace_back();
    for (const std::string& layer : layers) {
        const char* id = layer.empty() ? nullptr : layer.c_str();
        if (!rsvg_handle_render_layer(drawing, cr, id, &viewport, &error))
            Fail(path + layer + ": " + error->message);
    }
    cairo_destroy(cr);
    g_object_unref(drawing);
    return surface;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) Fail("usage: bake_pictures LIST DRAWINGS_FOLDER OUTPUT_FOLDER [PICTURE ...]");
    const std::vector<std::string> wanted(argv + 4, argv + argc);
    for (const Picture& picture : ReadList(argv[1])) {
        if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), picture.file) == wanted.end())
            continue;
        RawPicture image = FromCairo(Render(picture, argv[2]));
        BleedColour(image);
        const std::string path = std::string(argv[3]) + "/" + picture.file;
        if (!Write(image, path)) Fail("cannot write " + path);
    }
    return 0;
}
