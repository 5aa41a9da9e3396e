#include "Artwork.h"
#include "EditorLayout.h"

#include <cmath>

namespace artwork {

namespace {

// The field is the handle centre's travel; metres map linearly onto it.
struct Field {
    double left, top, size;
    double centre() const { return left + 0.5 * size; }
    double pixelsPerMetre() const { return 0.5 * size / geometry::kPadRangeMetres; }
    // A 1-pixel line at offset d from the centre, on a pixel centre so it stays crisp.
    double crisp(double offset) const { return std::floor(centre() + offset) + 0.5; }
};

Field fieldOf(const Canvas& canvas) {
    const double m = geometry::kPadMargin;
    return {m, m, canvas.width() - 2.0 * m};
}

void drawField(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    // The bezel is the panel colour, so the field sits in the window and the
    // value displays that overlap the pad's right edge read on plain ground.
    canvas.setColour(palette::kBody);
    cairo_paint(cr);

    cairo_pattern_t* glow = cairo_pattern_create_radial(f.centre(), f.centre(), 0, f.centre(),
                                                        f.centre(), 0.75 * f.size);
    const Colour inner = palette::kFieldCentre, outer = palette::kRecess;
    cairo_pattern_add_color_stop_rgb(glow, 0.0, inner.r, inner.g, inner.b);
    cairo_pattern_add_color_stop_rgb(glow, 1.0, outer.r, outer.g, outer.b);
    cairo_rectangle(cr, f.left, f.top, f.size, f.size);
    cairo_set_source(cr, glow);
    cairo_fill(cr);
    cairo_pattern_destroy(glow);
}

void drawGrid(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    cairo_set_line_width(cr, 1.0);
    const double top = f.top, bottom = f.top + f.size;
    // Half metres faint, whole metres stronger; the axes through the listener last.
    for (int half = -7; half <= 7; ++half) {
        if (half == 0) continue;
        const double p = f.crisp(half * 0.5 * f.pixelsPerMetre());
        cairo_move_to(cr, p, top);
        cairo_line_to(cr, p, bottom);
        cairo_move_to(cr, top, p);
        cairo_line_to(cr, bottom, p);
        canvas.setColour(Colour{1, 1, 1, half % 2 == 0 ? 0.085 : 0.035});
        cairo_stroke(cr);
    }
    const double axis = f.crisp(0.0);
    cairo_move_to(cr, axis, top);
    cairo_line_to(cr, axis, bottom);
    cairo_move_to(cr, top, axis);
    cairo_line_to(cr, bottom, axis);
    canvas.setColour(palette::kDisplay.withAlpha(0.28));
    cairo_stroke(cr);
}

void drawDistanceRings(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    cairo_set_line_width(cr, 1.0);
    for (int metres = 1; metres <= 4; ++metres) {
        cairo_new_sub_path(cr);
        cairo_arc(cr, f.centre(), f.centre(), metres * f.pixelsPerMetre() - 0.5, 0, 2 * kPi);
        canvas.setColour(palette::kDisplay.withAlpha(metres == 4 ? 0.30 : 0.16));
        cairo_stroke(cr);
    }
    // Ring labels along the lower-right diagonal, out of the front-left quarter
    // where sources usually sit.
    for (int metres = 1; metres <= 3; ++metres) {
        const double d = metres * f.pixelsPerMetre() * std::sqrt(0.5);
        canvas.text(std::to_string(metres) + " m", f.centre() + d + 2.0, f.centre() + d + 8.0, 6.5,
                    palette::kFaint, Canvas::Align::Left);
    }
}

// The listener seen from above, facing the top of the pad (the front).
void drawListener(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    const double cx = f.centre(), cy = f.centre();
    const Colour light = palette::kMetalLight, dark = palette::kMetalDark;

    cairo_pattern_t* halo = cairo_pattern_create_radial(cx, cy, 4, cx, cy, 20);
    cairo_pattern_add_color_stop_rgba(halo, 0.0, 0, 0, 0, 0.55);
    cairo_pattern_add_color_stop_rgba(halo, 1.0, 0, 0, 0, 0.0);
    cairo_arc(cr, cx, cy, 20, 0, 2 * kPi);
    cairo_set_source(cr, halo);
    cairo_fill(cr);
    cairo_pattern_destroy(halo);

    // Ears, then nose, then the head over both.
    for (double side : {-1.0, 1.0}) {
        cairo_save(cr);
        cairo_translate(cr, cx + side * 7.6, cy + 0.5);
        cairo_scale(cr, 1.6, 3.0);
        cairo_arc(cr, 0, 0, 1.0, 0, 2 * kPi);
        cairo_restore(cr);
        canvas.setColour(dark);
        cairo_fill(cr);
    }
    cairo_move_to(cr, cx - 2.6, cy - 7.0);
    cairo_line_to(cr, cx, cy - 11.5);
    cairo_line_to(cr, cx + 2.6, cy - 7.0);
    cairo_close_path(cr);
    canvas.setColour(light);
    cairo_fill(cr);

    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_scale(cr, 7.0, 8.3);
    cairo_arc(cr, 0, 0, 1.0, 0, 2 * kPi);
    cairo_restore(cr);
    cairo_pattern_t* skin = cairo_pattern_create_radial(cx - 2, cy - 3, 1, cx, cy, 9);
    cairo_pattern_add_color_stop_rgb(skin, 0.0, light.r, light.g, light.b);
    cairo_pattern_add_color_stop_rgb(skin, 1.0, dark.r, dark.g, dark.b);
    cairo_set_source(cr, skin);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(skin);
    canvas.setColour(palette::kRecess);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);
}

// Front is the top of the pad (x grows upwards), left its left edge (y grows
// to the left).
void drawDirectionMarks(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    const double c = f.centre();
    const Colour strong = palette::kDisplay, faint = palette::kFaint;

    // Arrowheads on the axes at the front and left edges.
    cairo_move_to(cr, c, f.top + 2.0);
    cairo_line_to(cr, c - 4.0, f.top + 8.0);
    cairo_line_to(cr, c + 4.0, f.top + 8.0);
    cairo_close_path(cr);
    cairo_move_to(cr, f.left + 2.0, c);
    cairo_line_to(cr, f.left + 8.0, c - 4.0);
    cairo_line_to(cr, f.left + 8.0, c + 4.0);
    cairo_close_path(cr);
    canvas.setColour(strong);
    cairo_fill(cr);

    canvas.text("FRONT  +x", c + 7.0, f.top + 9.0, 7.0, strong, Canvas::Align::Left, true);
    canvas.text("BACK", c + 5.0, f.top + f.size - 4.0, 6.5, faint, Canvas::Align::Left);

    cairo_save(cr);
    cairo_translate(cr, f.left + 9.0, c - 7.0);
    cairo_rotate(cr, -0.5 * kPi);
    canvas.text("LEFT  +y", 0, 0, 7.0, strong, Canvas::Align::Left, true);
    cairo_restore(cr);

    cairo_save(cr);
    cairo_translate(cr, f.left + f.size - 4.0, c + 5.0);
    cairo_rotate(cr, 0.5 * kPi);
    canvas.text("RIGHT", 0, 0, 6.5, faint, Canvas::Align::Left);
    cairo_restore(cr);
}

// The frame lies on the field's outermost pixels, so the bezel stays plain.
void drawFieldFrame(const Canvas& canvas, const Field& f) {
    cairo_t* cr = canvas.cr();
    cairo_rectangle(cr, f.left + 0.5, f.top + 0.5, f.size - 1.0, f.size - 1.0);
    canvas.setColour(palette::kEdge);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);
}

} // namespace

void drawPad(const Canvas& canvas) {
    const Field f = fieldOf(canvas);
    drawField(canvas, f);
    drawGrid(canvas, f);
    drawDistanceRings(canvas, f);
    drawDirectionMarks(canvas, f);
    drawListener(canvas, f);
    drawFieldFrame(canvas, f);
}

void drawHandle(const Canvas& canvas) {
    cairo_t* cr = canvas.cr();
    const double c = 0.5 * canvas.width();
    const Colour blue = palette::kDisplay;

    cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
    cairo_paint(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_OVER);

    // Soft glow fading out to full transparency at the image's edge.
    cairo_pattern_t* glow = cairo_pattern_create_radial(c, c, 2.0, c, c, c);
    cairo_pattern_add_color_stop_rgba(glow, 0.0, blue.r, blue.g, blue.b, 0.75);
    cairo_pattern_add_color_stop_rgba(glow, 0.45, blue.r, blue.g, blue.b, 0.35);
    cairo_pattern_add_color_stop_rgba(glow, 1.0, blue.r, blue.g, blue.b, 0.0);
    cairo_arc(cr, c, c, c, 0, 2 * kPi);
    cairo_set_source(cr, glow);
    cairo_fill(cr);
    cairo_pattern_destroy(glow);

    // Solid dot with a dark rim for contrast on the grid, and a hot centre.
    cairo_arc(cr, c, c, 4.5, 0, 2 * kPi);
    canvas.setColour(blue);
    cairo_fill_preserve(cr);
    canvas.setColour(Colour{0.0, 0.05, 0.1, 0.8});
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);

    cairo_pattern_t* core = cairo_pattern_create_radial(c - 0.8, c - 0.8, 0.0, c, c, 3.5);
    cairo_pattern_add_color_stop_rgba(core, 0.0, 1, 1, 1, 0.95);
    cairo_pattern_add_color_stop_rgba(core, 1.0, 1, 1, 1, 0.0);
    cairo_arc(cr, c, c, 3.5, 0, 2 * kPi);
    cairo_set_source(cr, core);
    cairo_fill(cr);
    cairo_pattern_destroy(core);
}

} // namespace artwork
