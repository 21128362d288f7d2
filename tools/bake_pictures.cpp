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
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

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

/// An image in the program's own layout, but top row first: 4 bytes a pixel, straight alpha.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};

[[noreturn]] void Fail(const std::string& message) {
    std::cerr << "bake_pictures: " << message << '\n';
    std::exit(1);
}

/// Below this alpha a premultiplied 8-bit colour is too coarse to be trusted.
constexpr int kTrustedAlpha = 24;

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
    cairo_surface_flush(surface);
    return surface;
}

/// Turns cairo's premultiplied native-endian ARGB words into straight RGBA bytes.
Image ToStraightAlpha(cairo_surface_t* surface) {
    Image image;
    image.width = cairo_image_surface_get_width(surface);
    image.height = cairo_image_surface_get_height(surface);
    image.rgba.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    std::uint8_t* out = image.rgba.data();
    for (int y = 0; y < image.height; ++y) {
        const auto* row =
            reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
        for (int x = 0; x < image.width; ++x) {
            const std::uint32_t argb = row[x];
            const std::uint32_t a = argb >> 24;
            for (int channel = 0; channel < 3; ++channel) {
                const std::uint32_t c = (argb >> (16 - 8 * channel)) & 0xFF;
                *out++ = static_cast<std::uint8_t>(a == 0 ? 0 : std::min(255U, (c * 255 + a / 2) / a));
            }
            *out++ = static_cast<std::uint8_t>(a);
        }
    }
    return image;
}

/// Gives every transparent pixel the colour of its nearest painted neighbours, ring by ring, so that
/// linear filtering finds no dark fringe around a sprite. Alpha stays as it is.
void BleedColour(Image& image) {
    const int w = image.width;
    const int h = image.height;
    const auto at = [&](int x, int y) {
        return &image.rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(w) +
                            static_cast<std::size_t>(x)) *
                           4];
    };
    std::vector<char> known(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), 0);
    const auto mark = [&](int x, int y) -> char& {
        return known[static_cast<std::size_t>(y) * static_cast<std::size_t>(w) + static_cast<std::size_t>(x)];
    };
    std::vector<std::array<int, 2>> ring;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if (at(x, y)[3] >= kTrustedAlpha) {
                mark(x, y) = 1;
                ring.push_back({x, y});
            }
    while (!ring.empty()) {
        std::vector<std::array<int, 2>> next;
        for (const auto& [cx, cy] : ring)
            for (int y = std::max(0, cy - 1); y <= std::min(h - 1, cy + 1); ++y)
                for (int x = std::max(0, cx - 1); x <= std::min(w - 1, cx + 1); ++x) {
                    if (mark(x, y) != 0) continue;
                    mark(x, y) = 2;
                    next.push_back({x, y});
                }
        for (const auto& [cx, cy] : next) {
            std::array<int, 3> sum{};
            int n = 0;
            for (int y = std::max(0, cy - 1); y <= std::min(h - 1, cy + 1); ++y)
                for (int x = std::max(0, cx - 1); x <= std::min(w - 1, cx + 1); ++x) {
                    if (mark(x, y) != 1) continue;
                    for (int c = 0; c < 3; ++c) sum[static_cast<std::size_t>(c)] += at(x, y)[c];
                    ++n;
                }
            for (int c = 0; c < 3; ++c)
                at(cx, cy)[c] = static_cast<std::uint8_t>(sum[static_cast<std::size_t>(c)] / n);
        }
        for (const auto& [x, y] : next) mark(x, y) = 1;
        ring = std::move(next);
    }
}

void PutSize(std::ofstream& out, int value) {
    for (int shift = 0; shift < 32; shift += 8) out.put(static_cast<char>((value >> shift) & 0xFF));
}

void Write(const Image& image, const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    PutSize(out, image.width);
    PutSize(out, image.height);
    const auto row = static_cast<std::ptrdiff_t>(image.width) * 4;
    for (int y = image.height - 1; y >= 0; --y)
        out.write(reinterpret_cast<const char*>(image.rgba.data()) + y * row, row);
    out.close();
    if (!out) Fail("cannot write " + path);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) Fail("usage: bake_pictures LIST DRAWINGS_FOLDER OUTPUT_FOLDER [PICTURE ...]");
    const std::vector<std::string> wanted(argv + 4, argv + argc);
    for (const Picture& picture : ReadList(argv[1])) {
        if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), picture.file) == wanted.end())
            continue;
        cairo_surface_t* surface = Render(picture, argv[2]);
        Image image = ToStraightAlpha(surface);
        cairo_surface_destroy(surface);
        BleedColour(image);
        Write(image, std::string(argv[3]) + "/" + picture.file);
    }
    return 0;
}
