#include "Canvas.h"

#include <cmath>

namespace {
// DejaVu Sans ships with Debian's base fonts, so every build machine draws the
// same glyphs.
constexpr const char* kFontFamily = "DejaVu Sans";
constexpr double kPi = 3.14159265358979323846;
} // namespace

Canvas::Canvas(int width, int height)
    : image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      context(cairo_create(image)) {}

Canvas::~Canvas() {
    cairo_destroy(context);
    cairo_surface_destroy(image);
}

void Canvas::setColour(const Colour& c) const {
    cairo_set_source_rgba(context, c.r, c.g, c.b, c.a);
}

void Canvas::roundedRect(double x, double y, double w, double h, double radius) const {
    const double r = std::fmin(radius, 0.5 * std::fmin(w, h));
    const double quarter = 0.5 * kPi;
    cairo_new_sub_path(context);
    cairo_arc(context, x + w - r, y + r, r, -quarter, 0.0);
    cairo_arc(context, x + w - r, y + h - r, r, 0.0, quarter);
    cairo_arc(context, x + r, y + h - r, r, quarter, 2.0 * quarter);
    cairo_arc(context, x + r, y + r, r, 2.0 * quarter, 3.0 * quarter);
    cairo_close_path(context);
}

void Canvas::text(const std::string& s, double x, double y, double size, const Colour& c,
                  Align align, bool bold) const {
    cairo_select_font_face(context, kFontFamily, CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, size);
    cairo_text_extents_t extents;
    cairo_text_extents(context, s.c_str(), &extents);
    double left = x - extents.x_bearing;
    if (align == Align::Centre) left = x - extents.x_bearing - 0.5 * extents.width;
    if (align == Align::Right) left = x - extents.x_bearing - extents.width;
    // Whole-pixel baselines keep small captions crisp.
    cairo_move_to(context, std::round(left), std::round(y));
    setColour(c);
    cairo_show_text(context, s.c_str());
    // show_text leaves a current point; the next shape must not join it.
    cairo_new_path(context);
}

void Canvas::paste(const Canvas& source, double x, double y, double w, double h, double sourceX,
                   double sourceY) const {
    cairo_save(context);
    cairo_rectangle(context, x, y, w, h);
    cairo_clip(context);
    cairo_set_source_surface(context, source.surface(), x - sourceX, y - sourceY);
    cairo_paint(context);
    cairo_restore(context);
}

bool Canvas::writePng(const std::string& path) const {
    cairo_surface_flush(image);
    return cairo_status(context) == CAIRO_STATUS_SUCCESS &&
           cairo_surface_write_to_png(image, path.c_str()) == CAIRO_STATUS_SUCCESS;
}
