// ZelTouchPad: the handle grabbed only where it was last drawn, and the
// control-click that returns it to the centre.

#include "ControlTestDoubles.h"
#include "ZelTouchPad.h"

#include <gtest/gtest.h>

using namespace controltest;

namespace {

constexpr long kIgnored = kMouseDownEventHandledButDontNeedMovedOrUpEvents;
// A 173-px pad at (10, 20) with a 20-px handle.
const CRect kPadRect(10, 20, 183, 193);
constexpr CCoord kHandle = 20;

struct TouchPadTest : ::testing::Test, RecordingFrame {
    CBitmap* background = new CBitmap(*frame, 173, 173);
    CBitmap* handle = new CBitmap(*frame, kHandle, kHandle);
    CDrawContext context;
    // Drawn once, as on screen: the handle is grabbed where it was drawn.
    ZelTouchPad* pad =
        add(new ZelTouchPad(kPadRect, &listener, 2, background, handle, CPoint(3, 4)));

    void SetUp() override { pad->draw(&context); }
    ~TouchPadTest() override {
        background->forget();
        handle->forget();
    }
    CPoint handleTopLeft() const {
        CPoint p;
        pad->valueToPoint(p);
        return p;
    }
    CMouseEventResult press(CCoord x, CCoord y, long buttons = kLButton) {
        CPoint where(x, y);
        return pad->onMouseDown(where, buttons);
    }
};

TEST_F(TouchPadTest, OnlyTheHandleWhereItWasLastDrawnCanBeGrabbed) {
    const CPoint drawn = handleTopLeft();
    EXPECT_EQ(press(kPadRect.left + 2, kPadRect.top + 2), kIgnored);
    EXPECT_EQ(press(drawn.x + kHandle + 1, drawn.y), kIgnored);
    EXPECT_EQ(press(drawn.x, drawn.y - 1), kIgnored);
    // Moved but not yet drawn: the handle on screen is still at the centre.
    pad->setXYValue(0.0f, 0.0f);
    EXPECT_EQ(press(kPadRect.left + 5, kPadRect.top + 5), kIgnored);
    EXPECT_TRUE(log.empty());
    EXPECT_FLOAT_EQ(pad->getXValue(), 0.0f);
    // Edges included.
    EXPECT_EQ(press(drawn.x + kHandle, drawn.y + kHandle), kMouseEventHandled);
    EXPECT_EQ(log.front(), "listener begin");
}

TEST_F(TouchPadTest, ControlClickReturnsToTheCentreWithoutAnEdit) {
    EXPECT_EQ(press(0, 0, kLButton | kControl), kIgnored);
    EXPECT_TRUE(log.empty()); // already there
    pad->setXYValue(1.0f, 1.0f);
    const CPoint h = handleTopLeft();
    pad->draw(&context);
    EXPECT_EQ(press(0, 0, kLButton | kControl), kIgnored);
    EXPECT_FLOAT_EQ(pad->getXValue(), 0.5f);
    EXPECT_FLOAT_EQ(pad->getYValue(), 0.5f);
    EXPECT_EQ(log, EventLog{"changed"});
    // With any other modifier it is an ordinary click.
    pad->setXYValue(1.0f, 1.0f);
    log.clear();
    EXPECT_EQ(press(h.x, h.y, kLButton | kControl | kShift), kMouseEventHandled);
    EXPECT_EQ(log.front(), "listener begin");
    EXPECT_FLOAT_EQ(pad->getXValue(), 1.0f);
}

} // namespace
