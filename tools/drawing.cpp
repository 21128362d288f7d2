// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tools/drawing.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <memory>

namespace {

struct Unref {
    void operator()(RsvgHandle* drawing) const { g_object_unref(drawing); }
};
using Drawing = std::unique_ptr<RsvgHandle, Unref>;

/// Opens a drawing. Its viewport is set to its own size, so that its units are those of crops.
Drawing Open(const std::string& path, RsvgRectangle& viewport) {
    GError* error = nullptr;
    Drawing drawing(rsvg_handle_new_from_file(path.c_str(), &error));
    if (drawing == nullptr) throw DrawingError(path + ": " + error->message);
    gboolean has_box = FALSE;
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(drawing.get(), nullptr, nullptr, nullptr, nullptr, &has_box, &box);
    if (has_box == FALSE) throw DrawingError(path + " has no viewBox");
    viewport = {0, 0, box.width, box.height};
    return drawing;
}

/// Paints a layer; null is the whole drawing.
void Paint(RsvgHandle* drawing, cairo_t* cr, const char* id, const RsvgRectangle& viewport,
           const std::string& path) {
    if (id != nullptr && rsvg_handle_has_sub(drawing, id) == FALSE) {
        throw DrawingError(path + " has no layer " + id);
    }
    GError* error = nullptr;
    if (rsvg_handle_render_layer(drawing, cr, id, &viewport, &error) == FALSE) {
        throw DrawingError(path + ": " + error->message);
    }
}

}  // namespace

RawPicture Render(const Cutout& cutout, const std::string& folder, int width, int height) {
    const std::string path = folder + "/" + cutout.drawing;
    RsvgRectangle viewport{};
    const Drawing drawing = Open(path, viewport);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t* cr = cairo_create(surface);
    cairo_scale(cr, width / cutout.w, height / cutout.h);
    cairo_translate(cr, -cutout.x, -cutout.y);
    if (cutout.layers.empty()) Paint(drawing.get(), cr, nullptr, viewport, path);
    for (const std::string& layer : cutout.layers) Paint(drawing.get(), cr, layer.c_str(), viewport, path);
    cairo_destroy(cr);
    RawPicture image = FromCairo(surface);
    BleedColour(image);
    return image;
}
