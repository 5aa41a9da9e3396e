// CVerticalSwitch: click position → value, value → drawn frame, gestures.

#include "EditorTestSupport.h"
#include "TestImages.h"

#include <gtest/gtest.h>

using namespace editortest;

namespace {

// A 4-position switch, 40 px high, at (10, 20) in a frame with a recording
// host and listener.
struct SwitchFixture : FrameFixture {
    CVerticalSwitch* control =
        add(new CVerticalSwitch(CRect(10, 20, 30, 60), &listener, 6, 4, 40, 4, nullptr));

    float valueAfterClickAt(CCoord y) {
        CPoint where(15, 20 + y);
        control->onMouseDown(where, kLButton);
        control->onMouseUp(where, 0);
        return control->getValue();
    }
};

} // namespace

TEST_F(SwitchFixture, BandsOfTheHeightGiveEvenlySpacedValues) {
    EXPECT_EQ(valueAfterClickAt(0), 0.0f);
    EXPECT_EQ(valueAfterClickAt(9), 0.0f);
    EXPECT_FLOAT_EQ(valueAfterClickAt(10), 1.0f / 3.0f);
    EXPECT_FLOAT_EQ(valueAfterClickAt(19), 1.0f / 3.0f);
    EXPECT_FLOAT_EQ(valueAfterClickAt(20), 2.0f / 3.0f);
    EXPECT_EQ(valueAfterClickAt(30), 1.0f);
    EXPECT_EQ(valueAfterClickAt(40), 1.0f) << "bottom edge clamps to the last position";
    EXPECT_EQ(valueAfterClickAt(-5), 0.0f);
    EXPECT_EQ(valueAfterClickAt(500), 1.0f);
}

TEST_F(SwitchFixture, DragNotifiesOncePerBandChangeAndOnlyWithTheLeftButton) {
    CPoint right(15, 55);
    EXPECT_EQ(control->onMouseDown(right, kRButton), kMouseEventNotHandled);
    EXPECT_TRUE(log.empty()) << "a right click announces nothing";

    CPoint where(15, 25);
    control->onMouseDown(where, kLButton);
    CPoint lower(15, 55);
    EXPECT_EQ(control->onMouseMoved(lower, 0), kMouseEventHandled);
    EXPECT_EQ(control->getValue(), 0.0f) << "a move without the left button changes nothing";
    for (CCoord y : {26, 27, 31, 33, 45, 59, 70}) {
        CPoint p(40, y); // x is ignored
        control->onMouseMoved(p, kLButton);
    }
    control->onMouseUp(where, 0);
    EXPECT_EQ(log, (CallLog{"listenerBegin 6", "hostBegin 6", "valueChanged 6", "valueChanged 6",
                            "valueChanged 6", "hostEnd 6", "listenerEnd 6"}));
    EXPECT_EQ(listener.values, (std::vector<float>{1.0f / 3.0f, 2.0f / 3.0f, 1.0f}));
}

TEST_F(SwitchFixture, DefaultGestureNestsBeginAndEndAndResetsToZero) {
    control->setValue(1.0f);
    control->invalid();
    CPoint where(15, 55);
    EXPECT_EQ(control->onMouseDown(where, kLButton | kControl),
              kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(control->getValue(), 0.0f);
    EXPECT_EQ(log, (CallLog{"listenerBegin 6", "hostBegin 6", "listenerBegin 6", "hostBegin 6",
                            "valueChanged 6", "hostEnd 6", "listenerEnd 6", "hostEnd 6",
                            "listenerEnd 6"}));
}

TEST_F(SwitchFixture, DrawnFrameIsTheValueRoundedToTheNearestPosition) {
    auto* strip = new CBitmap(testimages::kSwitchStripId);
    control->setBackground(strip);
    strip->forget();
    RecordingContext context;
    for (float value : {0.0f, 0.16f, 0.17f, 0.49f, 0.5f, 0.84f, 1.0f}) {
        control->setValue(value);
        control->draw(&context);
    }
    std::vector<CCoord> offsets;
    for (const BitmapDraw& draw : context.bitmaps) {
        EXPECT_EQ(draw.dest, CRect(10, 20, 30, 60));
        offsets.push_back(draw.offset.v);
    }
    EXPECT_EQ(offsets, (std::vector<CCoord>{0, 0, 40, 40, 80, 120, 120}));
    EXPECT_FALSE(control->isDirty());
}

TEST(VerticalSwitchConstruction, PositionsFollowTheStripAndDegenerateGeometryStaysAtZero) {
    auto* strip = new CBitmap(testimages::kSwitchStripId);
    CVerticalSwitch fromStrip(CRect(0, 0, testimages::kSwitchWidth, testimages::kSwitchFrameHeight),
                              nullptr, 0, strip);
    strip->forget();
    EXPECT_EQ(fromStrip.getNumSubPixmaps(), testimages::kSwitchFrames);
    EXPECT_EQ(fromStrip.getHeightOfOneImage(), testimages::kSwitchFrameHeight);
    CPoint bottom(0, testimages::kSwitchFrameHeight - 1);
    fromStrip.onMouseDown(bottom, kLButton);
    EXPECT_EQ(fromStrip.getValue(), 1.0f);

    CVerticalSwitch noStrip(CRect(0, 0, 20, 40), nullptr, 0, nullptr);
    CVerticalSwitch onePosition(CRect(0, 0, 20, 40), nullptr, 0, 1, 40, 1, nullptr);
    CVerticalSwitch flat(CRect(0, 0, 20, 0), nullptr, 0, 4, 0, 4, nullptr);
    for (CVerticalSwitch* control : {&noStrip, &onePosition, &flat}) {
        CPoint where(5, 30);
        control->onMouseDown(where, kLButton);
        EXPECT_EQ(control->getValue(), 0.0f);
        RecordingContext context;
        control->setValue(1e30f);
        control->draw(&context);
    }
}
