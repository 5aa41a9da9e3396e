// Draws the small PNG images that the editor tests embed.
// usage: make_editor_test_images OUTPUT_DIR

#include "TestImages.h"

#include <cairo.h>
#include <cstdio>
#include <string>

namespace {

void fill(cairo_t* cr, double x, double y, double w, double h, std::uint32_t rgb) {
    cairo_set_source_rgb(cr, ((rgb >> 16) & 0xff) / 255.0, ((rgb >> 8) & 0xff) / 255.0,
                         (rgb & 0xff) / 255.0);
    cairo_rectangle(cr, x, y, w, h);
    cairo_fill(cr);
}

// Frames of equal height stacked vertically, frame k in colour rgbOf(k).
template <typename ColourOf>
bool writeStrip(const std::string& path, int width, int frameHeight, int frames, ColourOf rgbOf) {
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, frameHeight * frames);
    cairo_t* cr = cairo_create(surface);
    for (int k = 0; k < frames; k++) fill(cr, 0, k * frameHeight, width, frameHeight, rgbOf(k));
    cairo_destroy(cr);
    const bool ok = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_DIR\n", argv[0]);
        return 2;
    }
    using namespace testimages;
    const std::string dir = argv[1];
    bool ok = writeStrip(dir + "/background.png", kBackgroundWidth, kBackgroundHeight, 1,
                         [](int) { return kBackgroundRgb; });
    ok = ok && writeStrip(dir + "/switch.png", kSwitchWidth, kSwitchFrameHeight, kSwitchFrames,
                          switchFrameRgb);
    ok = ok && writeStrip(dir + "/knob.png", kKnobSide, kKnobSide, kKnobFrames, knobFrameRgb);

    std::FILE* garbage = std::fopen((dir + "/garbage.png").c_str(), "wb");
    ok = ok && garbage && std::fputs("\x89PNG but not really an image", garbage) >= 0;
    if (garbage) ok = (std::fclose(garbage) == 0) && ok;
    return ok ? 0 : 1;
}
