#include "Artwork.h"
#include "EditorLayout.h"

namespace artwork {

namespace {

using geometry::kWindowWidth;

constexpr double kHeaderHeight = 56.0;
constexpr double kCaptionSize = 7.5;

void drawPanel(const Canvas& canvas) {
    cairo_t* cr = canvas.cr();
    canvas.setColour(palette::kBody);
    cairo_paint(cr);

    cairo_pattern_t* band = cairo_pattern_create_linear(0, 0, 0, kHeaderHeight);
    const Colour top = palette::kHeaderTop, bottom = palette::kHeaderBottom;
    cairo_pattern_add_color_stop_rgb(band, 0.0, top.r, top.g, top.b);
    cairo_pattern_add_color_stop_rgb(band, 1.0, bottom.r, bottom.g, bottom.b);
    cairo_rectangle(cr, 0, 0, kWindowWidth, kHeaderHeight);
    cairo_set_source(cr, band);
    cairo_fill(cr);
    cairo_pattern_destroy(band);

    // An accent rule under the header that fades out towards both sides.
    const Colour blue = palette::kDisplay;
    cairo_pattern_t* rule = cairo_pattern_create_linear(0, 0, kWindowWidth, 0);
    cairo_pattern_add_color_stop_rgba(rule, 0.0, blue.r, blue.g, blue.b, 0.0);
    cairo_pattern_add_color_stop_rgba(rule, 0.3, blue.r, blue.g, blue.b, 0.8);
    cairo_pattern_add_color_stop_rgba(rule, 0.7, blue.r, blue.g, blue.b, 0.8);
    cairo_pattern_add_color_stop_rgba(rule, 1.0, blue.r, blue.g, blue.b, 0.0);
    cairo_rectangle(cr, 0, kHeaderHeight, kWindowWidth, 1);
    cairo_set_source(cr, rule);
    cairo_fill(cr);
    cairo_pattern_destroy(rule);
    cairo_rectangle(cr, 0, kHeaderHeight + 1, kWindowWidth, 1);
    canvas.setColour(Colour{0, 0, 0, 0.6});
    cairo_fill(cr);
}

// A sphere with its equator and a meridian: the product's mark.
void drawEmblem(const Canvas& canvas, double cx, double cy, double r) {
    cairo_t* cr = canvas.cr();
    const Colour blue = palette::kDisplay;
    cairo_set_line_width(cr, 1.2);
    cairo_arc(cr, cx, cy, r, 0, 2 * kPi);
    canvas.setColour(blue);
    cairo_stroke(cr);
    for (double squash : {0.35, 1.0}) {
        cairo_save(cr);
        cairo_translate(cr, cx, cy);
        if (squash < 1.0)
            cairo_scale(cr, 1.0, squash);
        else
            cairo_scale(cr, 0.35, 1.0);
        cairo_arc(cr, 0, 0, r, 0, 2 * kPi);
        cairo_restore(cr);
        canvas.setColour(blue.withAlpha(0.55));
        cairo_stroke(cr);
    }
    cairo_arc(cr, cx + 0.45 * r, cy - 0.5 * r, 2.2, 0, 2 * kPi);
    canvas.setColour(palette::kTitle);
    cairo_fill(cr);
}

void drawTitle(const Canvas& canvas) {
    canvas.text("Zelworks Orvalis XY 3 - 3d", 14, 27, 15.0, palette::kTitle, Canvas::Align::Left,
                true);
    canvas.text("THIRD-ORDER AMBISONIC ENCODER", 14, 43, 7.5, palette::kCaption,
                Canvas::Align::Left);
    drawEmblem(canvas, kWindowWidth - 26.0, 28.0, 14.0);
}

// Scale beside the switch: marks line up with the thumb's index line.
void drawSwitchScale(const Canvas& canvas) {
    struct Mark {
        double metres;
        const char* label;
    };
    const Mark marks[] = {{4.0, "OFF"}, {3.0, "3"}, {2.0, "2"}, {1.0, "1"}, {0.5, "0.5"}};
    cairo_t* cr = canvas.cr();
    const geometry::Rect& s = geometry::kSwitch;
    cairo_set_line_width(cr, 1.0);
    for (const Mark& mark : marks) {
        const int frame = static_cast<int>(switchFrameFor(mark.metres) + 0.5);
        const double y = s.top + static_cast<int>(switchThumbCentre(frame)) + 0.5;
        cairo_move_to(cr, s.left - 7.0, y);
        cairo_line_to(cr, s.left - 2.0, y);
        canvas.setColour(palette::kFaint);
        cairo_stroke(cr);
        canvas.text(mark.label, s.left - 10.0, y + 2.5, 7.0, palette::kCaption,
                    Canvas::Align::Right);
    }
}

void drawCaptions(const Canvas& canvas) {
    const geometry::Rect& sw = geometry::kSwitch;
    const geometry::Rect& swDisplay = geometry::kSwitchDisplay;
    const geometry::Rect& x = geometry::kXDisplay;
    const geometry::Rect& y = geometry::kYDisplay;
    const geometry::Rect& pad = geometry::kPad;
    const Colour c = palette::kCaption;

    canvas.text("NFC", sw.centreX(), sw.top - 5.0, kCaptionSize, c, Canvas::Align::Centre, true);
    canvas.text("COMP. DIST", swDisplay.centreX(), swDisplay.bottom + 9.0, kCaptionSize, c);
    canvas.text("metres", swDisplay.centreX(), swDisplay.bottom + 18.0, 6.5, palette::kFaint);

    // x and y sit to the right of the pad: the captions keep clear of it.
    const double right = 0.5 * (pad.right + kWindowWidth);
    canvas.text("X (m)", right, x.top - 4.0, kCaptionSize, c, Canvas::Align::Centre, true);
    canvas.text("Y (m)", right, y.top - 4.0, kCaptionSize, c, Canvas::Align::Centre, true);
    canvas.text("HORIZONTAL PLANE", pad.centreX(), pad.top - 5.0, kCaptionSize, c);
    canvas.text("ZELWORKS", 14, geometry::kWindowHeight - 11.0, 7.0, palette::kFaint,
                Canvas::Align::Left, true);
}

} // namespace

void drawBackground(const Canvas& canvas) {
    drawPanel(canvas);
    drawTitle(canvas);
    drawSwitchScale(canvas);
    drawCaptions(canvas);
}

} // namespace artwork
