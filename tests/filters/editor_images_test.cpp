// Checks the generated editor images against the layout that the editor
// relies on: sizes, the switch's frame order, the handle's transparency and
// plain ground under the value displays.

#include "EditorGeometry.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

namespace {

struct Image {
    explicit Image(const char* name)
        : surface(cairo_image_surface_create_from_png(
                      (std::string(ZEL_IMAGE_DIR) + "/" + name).c_str()),
                  cairo_surface_destroy) {}
    bool loaded() const { return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS; }
    int width() const { return cairo_image_surface_get_width(surface.get()); }
    int height() const { return cairo_image_surface_get_height(surface.get()); }
    // Premultiplied ARGB, as cairo stores it.
    std::uint32_t pixel(int x, int y) const {
        const unsigned char* row = cairo_image_surface_get_data(surface.get()) +
                                   y * cairo_image_surface_get_stride(surface.get());
        return reinterpret_cast<const std::uint32_t*>(row)[x];
    }
    int alpha(int x, int y) const { return pixel(x, y) >> 24; }
    int red(int x, int y) const { return (pixel(x, y) >> 16) & 0xff; }
    int blue(int x, int y) const { return pixel(x, y) & 0xff; }

    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface;
};

// True if every pixel of the rectangle has the colour of its top-left pixel.
bool plain(const Image& image, int left, int top, int right, int bottom) {
    const std::uint32_t first = image.pixel(left, top);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            if (image.pixel(x, y) != first) return false;
    return true;
}

// The row of the switch thumb's index line in one frame: the most strongly
// blue pixel row in the thumb's column, above an opaque light body.
int thumbRow(const Image& strip, int frame) {
    const int top = frame * geometry::kSwitchFrameHeight;
    int best = -1, bestScore = -1;
    for (int y = 0; y < geometry::kSwitchFrameHeight; ++y) {
        // The index line spans the thumb; the lit track is narrower, so look
        // beside the track.
        const int x = 5;
        const int score = strip.blue(x, top + y) - strip.red(x, top + y);
        if (score > bestScore) {
            bestScore = score;
            best = y;
        }
    }
    return best;
}

} // namespace

TEST(EditorImages, SizesMatchTheLayout) {
    const Image background("bmp00131.png"), strip("bmp00135.png"), pad("bmp00137.png"),
        handle("bmp00138.png");
    ASSERT_TRUE(background.loaded() && strip.loaded() && pad.loaded() && handle.loaded());
    EXPECT_GE(background.width(), 288);
    EXPECT_GE(background.height(), 250);
    EXPECT_GE(background.width(), geometry::kPad.right);
    EXPECT_GE(background.height(), geometry::kPad.bottom);
    EXPECT_EQ(strip.width(), 24);
    EXPECT_EQ(strip.height(), 79 * 96);
    EXPECT_EQ(pad.width(), 173);
    EXPECT_EQ(pad.height(), 173);
    EXPECT_EQ(handle.width(), 20);
    EXPECT_EQ(handle.height(), 20);
}

TEST(EditorImages, SwitchThumbMovesFromTopAtFrameZeroToBottomAtTheLast) {
    const Image strip("bmp00135.png");
    ASSERT_TRUE(strip.loaded());
    int previous = -1;
    for (int frame = 0; frame < geometry::kSwitchFrames; ++frame) {
        const int row = thumbRow(strip, frame);
        EXPECT_GE(row, previous) << "frame " << frame;
        previous = row;
    }
    EXPECT_LT(thumbRow(strip, 0), 20);
    EXPECT_GT(thumbRow(strip, geometry::kSwitchFrames - 1), geometry::kSwitchFrameHeight - 20);
    // Every frame is opaque: the switch is drawn without transparency.
    for (int y = 0; y < strip.height(); y += 7)
        for (int x = 0; x < strip.width(); ++x) ASSERT_EQ(strip.alpha(x, y), 255) << x << ", " << y;
}

TEST(EditorImages, HandleIsADotOnTransparentGround) {
    const Image handle("bmp00138.png");
    ASSERT_TRUE(handle.loaded());
    const int last = geometry::kHandleSize - 1;
    for (int corner : {0, last}) {
        EXPECT_EQ(handle.alpha(corner, 0), 0);
        EXPECT_EQ(handle.alpha(corner, last), 0);
    }
    EXPECT_EQ(handle.alpha(10, 10), 255);
    EXPECT_GT(handle.blue(10, 10), handle.red(10, 10));
}

TEST(EditorImages, ValueDisplaysSitOnPlainGround) {
    const Image background("bmp00131.png"), pad("bmp00137.png");
    ASSERT_TRUE(background.loaded() && pad.loaded());
    for (const geometry::Rect& r :
         {geometry::kXDisplay, geometry::kYDisplay, geometry::kSwitchDisplay}) {
        EXPECT_TRUE(plain(background, r.left, r.top, r.right, r.bottom)) << r.left << ", " << r.top;
        // Where a display overlaps the pad, the pad's own pixels show through.
        const int left = std::max(r.left, geometry::kPad.left) - geometry::kPad.left;
        const int right = std::min(r.right, geometry::kPad.right) - geometry::kPad.left;
        const int top = std::max(r.top, geometry::kPad.top) - geometry::kPad.top;
        const int bottom = std::min(r.bottom, geometry::kPad.bottom) - geometry::kPad.top;
        if (left < right && top < bottom) {
            EXPECT_TRUE(plain(pad, left, top, right, bottom))
                << "pad under " << r.left << ", " << r.top;
            EXPECT_EQ(pad.pixel(left, top), background.pixel(r.right - 1, r.bottom - 1));
        }
    }
}
