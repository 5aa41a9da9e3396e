// Draw order, clipping and transparency, with recorded and real (Cairo)
// drawing; and the embedded image resources.

#include "EditorTestSupport.h"
#include "TestImages.h"
#include "ccairodrawcontext.h"

#include <cairo.h>
#include <gtest/gtest.h>

using namespace editortest;

namespace {

std::uint32_t pixelAt(cairo_surface_t* surface, int x, int y) {
    cairo_surface_flush(surface);
    const unsigned char* row =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    std::uint32_t argb;
    std::memcpy(&argb, row + x * 4, 4);
    return argb & 0xffffff;
}

// A frame with the test background, drawn into an image of its size.
struct RenderFixture : ::testing::Test {
    CBitmap* background = new CBitmap(testimages::kBackgroundId);
    CFrame* frame = new CFrame(
        CRect(0, 0, testimages::kBackgroundWidth, testimages::kBackgroundHeight), nullptr, nullptr);
    cairo_surface_t* surface = cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, testimages::kBackgroundWidth, testimages::kBackgroundHeight);

    RenderFixture() { frame->setBackground(background); }
    ~RenderFixture() override {
        delete frame;
        background->forget();
        cairo_surface_destroy(surface);
    }
    void render(const CRect& area = CRect(0, 0, testimages::kBackgroundWidth,
                                          testimages::kBackgroundHeight)) {
        CCairoDrawContext context(surface);
        frame->drawRect(&context, area);
    }
};

} // namespace

TEST(Resources, MissingBrokenOrTruncatedImagesGiveAnEmptyBitmap) {
    for (const CResourceDescription& desc :
         {CResourceDescription(4242), CResourceDescription(testimages::kGarbageId),
          CResourceDescription("nothing.png"), CResourceDescription(-1),
          CResourceDescription(static_cast<const char*>(nullptr)), CResourceDescription()}) {
        CBitmap bitmap(desc);
        EXPECT_FALSE(bitmap.isLoaded());
        EXPECT_EQ(bitmap.getWidth(), 0);
        RecordingContext context;
        bitmap.draw(&context, CRect(0, 0, 10, 10));
    }
    const ResourceRegistry::Entry entry = ResourceRegistry::find("bmp01000.png");
    ASSERT_NE(entry.data, nullptr);
    CBitmap bitmap(4242);
    for (std::size_t size : {std::size_t{0}, std::size_t{8}, entry.size / 2, entry.size - 1})
        EXPECT_FALSE(bitmap.loadFromPngData(entry.data, size)) << size;
    EXPECT_TRUE(bitmap.loadFromPngData(entry.data, entry.size));
    EXPECT_EQ(bitmap.getWidth(), testimages::kBackgroundWidth);
}

TEST(DrawOrder, BackgroundFirstThenChildrenInTheOrderAdded) {
    CallLog log;
    auto* background = new CBitmap(testimages::kBackgroundId);
    CFrame frame(CRect(0, 0, 100, 100), nullptr, nullptr);
    frame.setBackground(background);
    frame.setBackgroundOffset(CPoint(3, 4));
    background->forget();
    frame.addView(new ProbeView(CRect(0, 0, 50, 50), "first", log));
    frame.addView(new ProbeView(CRect(40, 40, 90, 90), "second", log));
    frame.addView(new ProbeView(CRect(95, 95, 99, 99), "elsewhere", log));
    auto* hidden = new ProbeView(CRect(0, 0, 100, 100), "hidden", log);
    frame.addView(hidden);
    hidden->setVisible(false);

    RecordingContext context;
    frame.drawRect(&context, CRect(10, 10, 60, 60));
    EXPECT_EQ(log, (CallLog{"first draw", "second draw"}));
    ASSERT_EQ(context.bitmaps.size(), 1u);
    EXPECT_EQ(context.bitmaps[0].dest, CRect(0, 0, 120, 100)) << "unscaled, at the origin";
    EXPECT_EQ(context.bitmaps[0].offset, CPoint(3, 4));
    CRect clip;
    EXPECT_EQ(context.getClipRect(clip), CRect(-(1 << 24), -(1 << 24), 1 << 24, 1 << 24))
        << "the clip is restored afterwards";
}

TEST(DrawOrder, ChildrenOfNestedContainersDrawInLocalCoordinates) {
    CallLog log;
    auto* background = new CBitmap(testimages::kSwitchStripId);
    CFrame frame(CRect(0, 0, 100, 100), nullptr, nullptr);
    auto* box = new CViewContainer(CRect(30, 40, 80, 90));
    box->setTransparency(true);
    auto* control = new CVerticalSwitch(CRect(5, 5, 25, 45), nullptr, 0, background);
    background->forget();
    box->addView(control);
    frame.addView(box);

    RecordingContext context;
    frame.drawRect(&context, CRect(0, 0, 100, 100));
    ASSERT_EQ(context.bitmaps.size(), 1u) << "a transparent box without a bitmap paints nothing";
    EXPECT_EQ(context.bitmaps[0].dest, CRect(5, 5, 25, 45));
    EXPECT_EQ(context.bitmaps[0].contextOffset, CPoint(30, 40));
    EXPECT_EQ(context.fills.size(), 1u) << "only the opaque frame's own colour";
}

TEST_F(RenderFixture, OpaqueChildCoversTheBackgroundInsideItsRectAndInTheUpdateRectOnly) {
    auto* strip = new CBitmap(testimages::kSwitchStripId);
    auto* control = new CVerticalSwitch(CRect(10, 10, 30, 50), nullptr, 0, strip);
    strip->forget();
    frame->addView(control);
    control->setValue(2.0f / 3.0f);
    render();
    EXPECT_EQ(pixelAt(surface, 20, 30), testimages::switchFrameRgb(2));
    EXPECT_EQ(pixelAt(surface, 10, 10), testimages::switchFrameRgb(2));
    EXPECT_EQ(pixelAt(surface, 30, 30), testimages::kBackgroundRgb);
    EXPECT_EQ(pixelAt(surface, 5, 5), testimages::kBackgroundRgb);

    control->setValue(1.0f);
    render(CRect(10, 10, 20, 50)); // left half of the switch only
    EXPECT_EQ(pixelAt(surface, 15, 20), testimages::switchFrameRgb(3));
    EXPECT_EQ(pixelAt(surface, 25, 20), testimages::switchFrameRgb(2));
}

TEST_F(RenderFixture, DisplayTextIsDrawnInTheFontColourAndTransparencyShowsTheBackground) {
    auto* display = new CParamDisplay(CRect(10, 60, 110, 90));
    frame->addView(display);
    display->setStringConvert([](float, char* text) { text[0] = 0; });
    render();
    EXPECT_EQ(pixelAt(surface, 80, 70), 0x000000u) << "opaque: back colour black";

    display->setTransparency(true);
    display->setFontColor(MakeCColor(255, 0, 0));
    display->setStringConvert([](float, char* text) { std::strcpy(text, "WWWWWWWW"); });
    render();
    int reddish = 0;
    for (int y = 0; y < testimages::kBackgroundHeight; y++)
        for (int x = 0; x < testimages::kBackgroundWidth; x++) {
            const std::uint32_t p = pixelAt(surface, x, y);
            if (p == testimages::kBackgroundRgb) continue;
            EXPECT_TRUE(x >= 10 && x < 110 && y >= 60 && y < 90) << x << "," << y;
            if ((p >> 16) > 0x80) reddish++;
        }
    EXPECT_GT(reddish, 20);
    EXPECT_EQ(pixelAt(surface, 105, 62), testimages::kBackgroundRgb) << "transparent back";
}

TEST(Invalidation, FrameCollectsTheUnionAndInvalidateMarksChildrenForTheNextIdle) {
    CallLog log;
    CFrame frame(CRect(0, 0, 100, 100), nullptr, nullptr);
    CRect area;
    EXPECT_FALSE(frame.takeInvalidRect(area));
    frame.invalidRect(CRect(10, 10, 20, 20));
    frame.invalidRect(CRect(50, 5, 60, 15));
    frame.invalidRect(CRect(90, 90, 200, 200));
    ASSERT_TRUE(frame.takeInvalidRect(area));
    EXPECT_EQ(area, CRect(10, 5, 100, 100));
    EXPECT_FALSE(frame.takeInvalidRect(area));

    frame.addView(new ProbeView(CRect(0, 0, 10, 10), "a", log));
    frame.addView(new ProbeView(CRect(50, 50, 60, 60), "b", log));
    frame.takeInvalidRect(area);
    frame.invalidate(CRect(45, 45, 55, 55));
    frame.idle();
    ASSERT_TRUE(frame.takeInvalidRect(area));
    EXPECT_EQ(area, CRect(50, 50, 60, 60));
}
