// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/scene.h"

#include <cmath>

#include "tests/desktop/process.h"

namespace desktop {

namespace {

constexpr const char* kBodies[] = {"stand_01", "stand_01_close_eyes", "stand_02", "stand_02_close_eyes",
                                   "sleep",    "sleep_close_eyes"};
constexpr const char* kOthers[] = {"background", "tree", "eye_left", "eye_right"};

/// A colour between the 8-bit steps, straight alpha, 0 to 255 a channel.
struct Paint {
    double r = 0, g = 0, b = 0, a = 0;
};

void Add(Paint& sum, const Texel& texel, double weight) {
    sum.r += weight * texel.r;
    sum.g += weight * texel.g;
    sum.b += weight * texel.b;
    sum.a += weight * texel.a;
}

int Wrapped(int i, int size) {
    return (i % size + size) % size;
}

/// Returns a picture's colour at texture coordinates u, v as GL's linear filter reads it; the picture
/// repeats.
Paint SampleOf(const RawPicture& picture, double u, double v) {
    const double x = u * picture.Width() - 0.5;
    const double y = v * picture.Height() - 0.5;
    const auto column = static_cast<int>(std::floor(x));
    const auto row = static_cast<int>(std::floor(y));
    Paint paint;
    for (int dy = 0; dy < 2; ++dy) {
        for (int dx = 0; dx < 2; ++dx) {
            const double weight_x = dx == 0 ? 1 - (x - column) : x - column;
            const double weight_y = dy == 0 ? 1 - (y - row) : y - row;
            Add(paint, picture.At(Wrapped(column + dx, picture.Width()), Wrapped(row + dy, picture.Height())),
                weight_x * weight_y);
        }
    }
    return paint;
}

std::uint8_t Blend(std::uint8_t below, double above, double alpha) {
    return static_cast<std::uint8_t>(std::lround(below + (above - below) * alpha / 255));
}

/// Paints a picture over a rectangle of the canvas.
void DrawOver(Image& image, const RawPicture& picture, const CanvasRect& place, bool blend) {
    for (int y = 0; y < image.Height(); ++y) {
        for (int x = 0; x < image.Width(); ++x) {
            const CanvasPoint p = image.CanvasAt(x, y);
            const double u = (p.x - place.left) / (place.right - place.left);
            const double v = (p.y - place.bottom) / (place.top - place.bottom);
            if (u < 0 || u > 1 || v < 0 || v > 1) continue;
            const Paint paint = SampleOf(picture, u, v);
            const double alpha = blend ? paint.a : 255;
            Colour& pixel = image.At(x, y);
            pixel = {Blend(pixel.r, paint.r, alpha), Blend(pixel.g, paint.g, alpha),
                     Blend(pixel.b, paint.b, alpha)};
        }
    }
}

/// The owl's pictures: 500 x 500 units around canvas point (271, 265).
CanvasRect OwlPlace(CanvasPoint offset, double stretch) {
    return {21 + offset.x, 15 + offset.y, 521 + offset.x, 515 + offset.y + stretch};
}

}  // namespace

namespace {

/// Returns where a pupil is from its rest.
std::optional<CanvasPoint> FindPupil(const Image& image, CanvasPoint rest) {
    constexpr double kDark = 60;   // luminance
    constexpr double kReach = 16;  // canvas units: turned and breathing the pupil stays mostly in this disc
    constexpr double kAround = 12.5;         // canvas units: holds the pupil and none of the eye's rim
    constexpr double kLeastArea = 100;       // square canvas units
    constexpr double kLeastRoundness = 0.7;  // a shut lid's line is dark but far from round
    const auto near = FindDark(image, rest, kReach, kDark);
    if (!near) return {};
    const auto pupil = FindDark(image, near->middle, kAround, kDark);
    if (!pupil || pupil->area < kLeastArea || pupil->roundness < kLeastRoundness) return {};
    return CanvasPoint{pupil->middle.x - rest.x, pupil->middle.y - rest.y};
}

}  // namespace

std::optional<Gaze> GazeIn(const Image& image) {
    const auto left = FindPupil(image, kLeftPupil);
    const auto right = FindPupil(image, kRightPupil);
    if (!left || !right) return {};
    return Gaze{*left, *right};
}

Scene::Scene() {
    const auto read = [this](const char* name) {
        pictures_[name] = ReadRawPicture(std::string(ULMARO_DATA) + "/" + name);
        if (pictures_[name].texels.empty()) Fail(std::string("cannot read the picture ") + name);
    };
    for (const char* name : kBodies) read(name);
    for (const char* name : kOthers) read(name);
}

Image Scene::Draw(int width, int height, const Owl& owl) const {
    Image image(width, height);
    DrawOver(image, pictures_.at("background"), {}, false);
    DrawOver(image, pictures_.at("tree"), {}, true);
    DrawOver(image, pictures_.at(owl.body), OwlPlace({}, owl.bob), true);
    if (!owl.pupils) return image;
    DrawOver(image, pictures_.at("eye_left"), OwlPlace({owl.left.x, owl.left.y + owl.bob}, 0), true);
    DrawOver(image, pictures_.at("eye_right"), OwlPlace({owl.right.x, owl.right.y + owl.bob}, 0), true);
    return image;
}

const Image& Scene::Bare(const std::string& body, int width, int height) {
    const std::string key = body + " " + std::to_string(width) + " x " + std::to_string(height);
    const auto drawn = bare_.find(key);
    if (drawn != bare_.end()) return drawn->second;
    return bare_.emplace(key, Draw(width, height, {body, 0, body == "stand_01", {}, {}})).first->second;
}

std::string Scene::BodyIn(const Image& image) {
    std::string best;
    double least = 256;
    for (const char* body : kBodies) {
        const double difference = MeanDifference(image, Bare(body, image.Width(), image.Height()), kOwlPart);
        if (difference >= least) continue;
        least = difference;
        best = body;
    }
    return best;
}

}  // namespace desktop
