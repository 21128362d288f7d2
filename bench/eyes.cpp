// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/eyes.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <string>

#include "tests/desktop/process.h"

namespace bench {

using desktop::Desktop;
using desktop::ScreenPoint;

namespace {

constexpr double kLookSeconds = 0.0002;  ///< between looks
constexpr double kPatienceSeconds = 0.5;

constexpr ScreenPoint kCorners[] = {{30, 30}, {Desktop::kWidth - 30, Desktop::kHeight - 30}};

std::string PixelsOf(Display* connection, const Part& part) {
    XImage* image =
        XGetImage(connection, part.window, part.x, part.y, part.width, part.height, AllPlanes, ZPixmap);
    if (image == nullptr) desktop::Fail("the eyes cannot be looked at");
    std::string pixels(image->data, static_cast<std::size_t>(image->bytes_per_line) *
                                        static_cast<std::size_t>(image->height));
    XDestroyImage(image);
    return pixels;
}

}  // namespace

Part OwlsEyes(const desktop::Program& program) {
    constexpr double kLeft = 222, kRight = 296, kTop = 404, kBottom = 378;  // canvas units
    const desktop::ScreenRect place = program.Place();
    const double scale = place.width / desktop::kCanvas;
    Part part;
    part.window = program.Handle();
    part.x = static_cast<int>(kLeft * scale);
    part.y = static_cast<int>((desktop::kCanvas - kTop) * scale);
    part.width = static_cast<unsigned int>((kRight - kLeft) * scale);
    part.height = static_cast<unsigned int>((kTop - kBottom) * scale);
    return part;
}

std::optional<double> TimeToFollow(Display* connection, const Part& eyes) {
    static int corner = 0;
    corner = 1 - corner;
    const std::string before = PixelsOf(connection, eyes);
    const double start = desktop::Now();
    XTestFakeMotionEvent(connection, DefaultScreen(connection), kCorners[corner].x, kCorners[corner].y,
                         CurrentTime);
    while (PixelsOf(connection, eyes) == before) {
        if (desktop::Now() - start > kPatienceSeconds) return {};
        desktop::SleepSeconds(kLookSeconds);
    }
    return 1000 * (desktop::Now() - start);
}

}  // namespace bench
