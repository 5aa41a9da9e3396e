#include "Artwork.h"
#include "EditorLayout.h"

namespace artwork {

namespace {

constexpr double kTrackLeft = 9.0, kTrackWidth = 6.0;
constexpr double kTrackTop = 5.0, kTrackBottom = 91.0;
constexpr double kThumbWidth = 20.0, kThumbHeight = 11.0;

void drawTrack(const Canvas& canvas, double thumbCentre) {
    cairo_t* cr = canvas.cr();
    canvas.roundedRect(kTrackLeft, kTrackTop, kTrackWidth, kTrackBottom - kTrackTop, 3.0);
    canvas.setColour(palette::kRecess);
    cairo_fill_preserve(cr);
    canvas.setColour(palette::kEdge);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);

    // The lit part grows as the compensation distance shrinks: nothing is lit
    // with compensation off.
    const double litBottom = thumbCentre;
    if (litBottom > kTrackTop + 3.0) {
        canvas.roundedRect(kTrackLeft + 1.5, kTrackTop + 1.5, kTrackWidth - 3.0,
                           litBottom - kTrackTop - 1.5, 1.5);
        canvas.setColour(palette::kDisplay.withAlpha(0.9));
        cairo_fill(cr);
    }
}

void drawThumb(const Canvas& canvas, double centre) {
    cairo_t* cr = canvas.cr();
    const double left = 0.5 * (geometry::kSwitchFrameWidth - kThumbWidth);
    const double top = centre - 0.5 * kThumbHeight;

    // Drop shadow, then the body with a top light.
    canvas.roundedRect(left, top + 1.0, kThumbWidth, kThumbHeight, 2.5);
    canvas.setColour(Colour{0, 0, 0, 0.5});
    cairo_fill(cr);

    cairo_pattern_t* body = cairo_pattern_create_linear(0, top, 0, top + kThumbHeight);
    const Colour light = palette::kMetalLight, dark = palette::kMetalDark;
    cairo_pattern_add_color_stop_rgb(body, 0.0, light.r, light.g, light.b);
    cairo_pattern_add_color_stop_rgb(body, 1.0, dark.r, dark.g, dark.b);
    canvas.roundedRect(left + 0.5, top + 0.5, kThumbWidth - 1.0, kThumbHeight - 1.0, 2.5);
    cairo_set_source(cr, body);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(body);
    canvas.setColour(palette::kRecess);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);

    // Index line across the thumb, in the display colour, on a whole pixel row.
    const double row = static_cast<int>(centre) + 0.5;
    cairo_move_to(cr, left + 3.0, row);
    cairo_line_to(cr, left + kThumbWidth - 3.0, row);
    canvas.setColour(palette::kDisplay);
    cairo_stroke(cr);
}

} // namespace

double switchThumbCentre(int frame) {
    const double first = kTrackTop + 0.5 * kThumbHeight + 1.0;
    const double last = kTrackBottom - 0.5 * kThumbHeight - 1.0;
    return first + (last - first) * frame / (geometry::kSwitchFrames - 1);
}

double switchFrameFor(double metres) {
    return (geometry::kFarthestCompensation - metres) /
           (geometry::kFarthestCompensation - geometry::kNearestCompensation) *
           (geometry::kSwitchFrames - 1);
}

void drawSwitchFilmstrip(const Canvas& canvas) {
    cairo_t* cr = canvas.cr();
    // The switch is drawn opaque: every frame starts from the panel colour.
    canvas.setColour(palette::kBody);
    cairo_paint(cr);
    for (int frame = 0; frame < geometry::kSwitchFrames; ++frame) {
        cairo_save(cr);
        cairo_translate(cr, 0, frame * geometry::kSwitchFrameHeight);
        cairo_rectangle(cr, 0, 0, geometry::kSwitchFrameWidth, geometry::kSwitchFrameHeight);
        cairo_clip(cr);
        const double centre = switchThumbCentre(frame);
        drawTrack(canvas, centre);
        drawThumb(canvas, centre);
        cairo_restore(cr);
    }
}

} // namespace artwork
