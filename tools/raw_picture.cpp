// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tools/raw_picture.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace {

/// Below this alpha a premultiplied 8-bit colour is too coarse to be trusted.
constexpr int kTrustedAlpha = 24;

struct Place {
    int x, y;
};

/// Calls visit(x, y) for the pixel and its up to eight neighbours.
template <typename Visit>
void VisitAround(const RawPicture& picture, Place place, Visit visit) {
    for (int y = std::max(0, place.y - 1); y <= std::min(picture.height - 1, place.y + 1); ++y) {
        for (int x = std::max(0, place.x - 1); x <= std::min(picture.width - 1, place.x + 1); ++x)
            visit(x, y);
    }
}

/// Which pixels have a colour of their own or have been given one.
enum class Colour : std::uint8_t { kUnknown, kWanted, kKnown };
using Colours = std::vector<Colour>;

/// Returns the pixels without a colour that touch one of the ring's, each once.
std::vector<Place> NextRing(const RawPicture& picture, const std::vector<Place>& ring, Colours& colours) {
    std::vector<Place> next;
    for (const Place& place : ring) {
        VisitAround(picture, place, [&](int x, int y) {
            Colour& colour = colours[picture.Index(x, y)];
            if (colour != Colour::kUnknown) return;
            colour = Colour::kWanted;
            next.push_back({x, y});
        });
    }
    return next;
}

/// Gives a pixel the mean colour of its neighbours that have one.
void TakeMeanColour(RawPicture& picture, Place place, const Colours& colours) {
    std::array<int, 3> sum{};
    int count = 0;
    VisitAround(picture, place, [&](int x, int y) {
        if (colours[picture.Index(x, y)] != Colour::kKnown) return;
        for (std::size_t c = 0; c < sum.size(); ++c) sum[c] += picture.At(x, y)[c];
        ++count;
    });
    for (std::size_t c = 0; c < sum.size(); ++c) {
        picture.At(place.x, place.y)[c] = static_cast<std::uint8_t>(sum[c] / count);
    }
}

void PutSize(std::ofstream& out, int value) {
    for (int shift = 0; shift < 32; shift += 8) out.put(static_cast<char>((value >> shift) & 0xFF));
}

}  // namespace

RawPicture FromCairo(cairo_surface_t* surface) {
    cairo_surface_flush(surface);
    RawPicture picture;
    picture.width = cairo_image_surface_get_width(surface);
    picture.height = cairo_image_surface_get_height(surface);
    picture.rgba.resize(picture.Index(0, picture.height) * 4);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface);
    std::uint8_t* out = picture.rgba.data();
    for (int y = 0; y < picture.height; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
        for (int x = 0; x < picture.width; ++x) {
            // Cairo's pixel is one native word, alpha in the highest byte, the colours multiplied by it.
            const std::uint32_t argb = row[x];
            const std::uint32_t a = argb >> 24;
            for (const int shift : {16, 8, 0}) {
                const std::uint32_t c = (argb >> shift) & 0xFF;
                *out++ = static_cast<std::uint8_t>(a == 0 ? 0 : std::min(255U, (c * 255 + a / 2) / a));
            }
            *out++ = static_cast<std::uint8_t>(a);
        }
    }
    cairo_surface_destroy(surface);
    return picture;
}

void BleedColour(RawPicture& picture) {
    Colours colours(picture.Index(0, picture.height), Colour::kUnknown);
    std::vector<Place> ring;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.At(x, y)[3] < kTrustedAlpha) continue;
            colours[picture.Index(x, y)] = Colour::kKnown;
            ring.push_back({x, y});
        }
    }
    while (!ring.empty()) {
        ring = NextRing(picture, ring, colours);
        for (const Place& place : ring) TakeMeanColour(picture, place, colours);
        for (const Place& place : ring) colours[picture.Index(place.x, place.y)] = Colour::kKnown;
    }
}

bool Write(const RawPicture& picture, const std::string& path) {
    std::ofstream out(path, std::ios::binary);
    PutSize(out, picture.width);
    PutSize(out, picture.height);
    const std::ptrdiff_t row = std::ptrdiff_t{picture.width} * 4;
    for (int y = picture.height - 1; y >= 0; --y) {
        out.write(reinterpret_cast<const char*>(picture.rgba.data()) + y * row, row);
    }
    out.close();
    return static_cast<bool>(out);
}
