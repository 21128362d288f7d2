// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/image.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

namespace desktop {

constexpr double kPi = 3.14159265358979;

CanvasPoint Image::CanvasAt(int x, int y) const {
    return {(x + 0.5) * kCanvas / width_, kCanvas - (y + 0.5) * kCanvas / height_};
}

const Colour& Image::AtCanvas(CanvasPoint point) const {
    const auto x = static_cast<int>(std::floor(point.x * width_ / kCanvas));
    const auto y = static_cast<int>(std::floor((kCanvas - point.y) * height_ / kCanvas));
    return At(std::clamp(x, 0, width_ - 1), std::clamp(y, 0, height_ - 1));
}

void Image::SavePpm(const std::string& path) const {
    std::ofstream out(path, std::ios::binary);
    out << "P6\n" << width_ << ' ' << height_ << "\n255\n";
    for (const Colour& c : pixels_) {
        out.put(static_cast<char>(c.r)).put(static_cast<char>(c.g)).put(static_cast<char>(c.b));
    }
}

namespace {

bool Inside(const CanvasRect& part, CanvasPoint p) {
    return part.left <= p.x && p.x <= part.right && part.bottom <= p.y && p.y <= part.top;
}

int Difference(const Colour& a, const Colour& b) {
    return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

}  // namespace

double MeanDifference(const Image& a, const Image& b, const CanvasRect& part) {
    double sum = 0;
    double count = 0;
    for (int y = 0; y < a.Height(); ++y) {
        for (int x = 0; x < a.Width(); ++x) {
            const CanvasPoint p = a.CanvasAt(x, y);
            if (!Inside(part, p)) continue;
            sum += Difference(a.At(x, y), b.AtCanvas(p));
            count += 3;
        }
    }
    return count > 0 ? sum / count : 0;
}

std::optional<Blot> FindDark(const Image& image, CanvasPoint middle, double radius, double luminance) {
    Blot blot;
    double count = 0;
    double squares = 0;
    for (int y = 0; y < image.Height(); ++y) {
        for (int x = 0; x < image.Width(); ++x) {
            const CanvasPoint p = image.CanvasAt(x, y);
            if (std::hypot(p.x - middle.x, p.y - middle.y) > radius) continue;
            if (image.At(x, y).Luminance() >= luminance) continue;
            squares += p.x * p.x + p.y * p.y;
            blot.middle.x += p.x;
            blot.middle.y += p.y;
            count += 1;
        }
    }
    if (count == 0) return {};
    blot.middle.x /= count;
    blot.middle.y /= count;
    const CanvasPoint& m = blot.middle;
    const double spread = squares / count - m.x * m.x - m.y * m.y;
    blot.area = count * (kCanvas / image.Width()) * (kCanvas / image.Height());
    blot.roundness = spread > 0 ? blot.area / (2 * kPi * spread) : 1;
    return blot;
}

}  // namespace desktop
