// The toolkit's rules that the plug-in's editor relies on, without a window:
// mouse capture, the switch's notifications, and double clicks from X time
// stamps.

#include "ControlTestDoubles.h"
#include "platform/xeventtranslator.h"

#include <gtest/gtest.h>

using namespace controltest;

namespace {

struct FrameFixture : ::testing::Test, RecordingFrame {};

// Answers every mouse call with a fixed result and logs what it received.
class ProbeView : public CView {
public:
    ProbeView(const CRect& size, std::string name, EventLog& log, CMouseEventResult downResult)
        : CView(size), name(std::move(name)), log(log), downResult(downResult) {}
    CMouseEventResult onMouseDown(CPoint& p, const long& b) override {
        return record("down", p, b, downResult);
    }
    CMouseEventResult onMouseMoved(CPoint& p, const long& b) override {
        return record("moved", p, b, kMouseEventHandled);
    }
    CMouseEventResult onMouseUp(CPoint& p, const long& b) override {
        return record("up", p, b, kMouseEventHandled);
    }
    CMouseEventResult onMouseEntered(CPoint& p, const long& b) override {
        return record("entered", p, b, kMouseEventHandled);
    }
    CMouseEventResult onMouseExited(CPoint& p, const long& b) override {
        return record("exited", p, b, kMouseEventHandled);
    }

private:
    CMouseEventResult record(const char* what, const CPoint& p, long buttons,
                             CMouseEventResult result) {
        log.push_back(name + " " + what + " " + std::to_string(p.h) + "," + std::to_string(p.v) +
                      " " + std::to_string(buttons));
        return result;
    }
    std::string name;
    EventLog& log;
    CMouseEventResult downResult;
};

using RoutingFixture = FrameFixture;
using SwitchFixture = FrameFixture;

} // namespace

TEST_F(RoutingFixture, CapturedViewGetsMovesAndUpEvenOutsideItsRect) {
    add(new ProbeView(CRect(0, 0, 50, 50), "a", log, kMouseEventHandled));
    add(new ProbeView(CRect(100, 100, 150, 150), "b", log, kMouseEventHandled));
    add(new ProbeView(CRect(60, 0, 90, 30), "once", log,
                      kMouseDownEventHandledButDontNeedMovedOrUpEvents));
    CPoint p(70, 10); // frame coordinates; assigned anew as a handler may shift it
    EXPECT_EQ(frame->onMouseDown(p, kLButton), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(frame->onMouseUp(p = CPoint(70, 10), 0), kMouseEventNotHandled)
        << "handled without moves: no capture";
    frame->onMouseDown(p = CPoint(10, 10), kLButton);
    frame->onMouseMoved(p = CPoint(120, 120), kLButton);
    frame->onMouseUp(p = CPoint(190, 190), kShift);
    frame->onMouseMoved(p = CPoint(120, 120), 0);
    EXPECT_EQ(log, (EventLog{"once down 70,10 2", "a down 10,10 2", "a moved 120,120 2",
                             "a up 190,190 16", "b entered 120,120 0"}));
}

// A 4-position switch, 40 px high, at (10, 20), dragged from its top.
TEST_F(SwitchFixture, DragNotifiesOncePerBandChangeAndOnlyWithTheLeftButton) {
    auto* control =
        add(new CVerticalSwitch(CRect(10, 20, 30, 60), &listener, 6, 4, 40, 4, nullptr));
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
    EXPECT_EQ(log, (EventLog{"listener begin", "host begin 6", "changed", "changed", "changed",
                             "host end 6", "listener end"}));
    EXPECT_EQ(listener.values, (std::vector<float>{1.0f / 3.0f, 2.0f / 3.0f, 1.0f}));
}

TEST(XEventTranslation, SecondQuickNearbyPressIsADoubleClick) {
    XEventTranslator translator;
    const struct {
        std::uint32_t time;
        int x;
        std::uint8_t button;
        bool isDouble;
    } presses[] = {
        {100, 10, 1, false},
        {400, 12, 1, true},
        {450, 12, 1, false},  // a third press starts a new pair
        {2000, 12, 1, false}, // too late
        {2100, 30, 1, false}, // too far
        {2200, 30, 3, false}, // another button
        {2300, 30, 3, true},
        {5, 0, 1, false},
        {4294967290u, 0, 1, false},
        {100, 0, 1, true}, // the server's millisecond clock wraps around
    };
    for (const auto& p : presses)
        EXPECT_EQ((translator.buttonPress(p.button, 0, p.time, p.x, 13).buttons & kDoubleClick) !=
                      0,
                  p.isDouble)
            << p.time;
}
