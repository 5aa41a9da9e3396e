// The toolkit's rules that the plug-in's editor relies on, without a window:
// the order of edit calls, repaint requests from other threads, mouse
// capture, the switch's notifications, and double clicks from X time stamps.

#include "EditorTestSupport.h"
#include "platform/xeventtranslator.h"

#include <gtest/gtest.h>
#include <thread>

using namespace editortest;

namespace {

// The smallest concrete control: remembers nothing of its own.
class PlainControl : public CControl {
public:
    using CControl::CControl;
    CMouseEventResult onMouseDown(CPoint&, const long& buttons) override {
        return checkDefaultValue(buttons) ? kMouseDownEventHandledButDontNeedMovedOrUpEvents
                                          : kMouseEventHandled;
    }
};

struct RoutingFixture : FrameFixture {
    ProbeView* probe(const CRect& r, const std::string& name,
                     CMouseEventResult down = kMouseEventHandled, bool* destroyed = nullptr) {
        return add(new ProbeView(r, name, log, down, destroyed));
    }
};

// Removes itself from its container in the middle of a drag.
class SelfRemovingView : public ProbeView {
public:
    using ProbeView::ProbeView;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override {
        getFrame()->removeView(this, true);
        return ProbeView::onMouseMoved(where, buttons);
    }
};

// A 4-position switch, 40 px high, at (10, 20).
struct SwitchFixture : FrameFixture {
    CVerticalSwitch* control =
        add(new CVerticalSwitch(CRect(10, 20, 30, 60), &listener, 6, 4, 40, 4, nullptr));
};

} // namespace

TEST(ControlDirty, ValueSetFromAnotherThreadIsDrawnAtTheNextIdle) {
    auto* frame = new CFrame(CRect(0, 0, 50, 50), nullptr, nullptr);
    auto* control = new PlainControl(CRect(10, 10, 20, 20));
    frame->addView(control);
    CRect area;
    frame->takeInvalidRect(area);

    std::thread host([control] {
        control->setValue(0.75f);
        control->invalid(); // only flags a repaint from this thread
    });
    host.join();
    ASSERT_TRUE(frame->takeInvalidRect(area));
    EXPECT_EQ(area, CRect(0, 0, 50, 50)) << "another thread asks for a full repaint";

    control->setValue(0.5f);
    frame->idle();
    ASSERT_TRUE(frame->takeInvalidRect(area));
    EXPECT_EQ(area, CRect(10, 10, 20, 20));
    EXPECT_FALSE(control->isDirty());
    delete frame;
}

TEST_F(FrameFixture, BeginEditTellsListenerFirstAndEndEditTellsHostFirst) {
    auto* control = add(new PlainControl(CRect(0, 0, 10, 10), &listener, 4));
    control->beginEdit();
    control->endEdit();
    EXPECT_EQ(log, (CallLog{"listenerBegin 4", "hostBegin 4", "hostEnd 4", "listenerEnd 4"}));
    EXPECT_EQ(frame->getFocusView(), control);
}

TEST_F(FrameFixture, DefaultValueGestureNeedsExactlyControlAndLeft) {
    auto* control = add(new PlainControl(CRect(0, 0, 10, 10), &listener, 3));
    control->setValue(0.9f);
    control->invalid();
    const long almost[] = {kControl, kLButton, kControl | kLButton | kShift,
                           kControl | kLButton | kDoubleClick, kControl | kLButton | kRButton};
    for (long buttons : almost) EXPECT_FALSE(control->checkDefaultValue(buttons)) << buttons;
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(control->getValue(), 0.9f);

    EXPECT_TRUE(control->checkDefaultValue(kControl | kLButton));
    EXPECT_EQ(control->getValue(), 0.5f);
    EXPECT_EQ(log, (CallLog{"listenerBegin 3", "hostBegin 3", "valueChanged 3", "hostEnd 3",
                            "listenerEnd 3"}));
    EXPECT_TRUE(control->isDirty()) << "redrawn at the next idle, not at once";

    // Already at the default: the edit pair, but no change to announce.
    log.clear();
    control->invalid();
    EXPECT_TRUE(control->checkDefaultValue(kControl | kLButton));
    EXPECT_EQ(log, (CallLog{"listenerBegin 3", "hostBegin 3", "hostEnd 3", "listenerEnd 3"}));
}

TEST_F(RoutingFixture, CapturedViewGetsMovesAndUpEvenOutsideItsRect) {
    probe(CRect(0, 0, 50, 50), "a");
    probe(CRect(100, 100, 150, 150), "b");
    probe(CRect(60, 0, 90, 30), "once", kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(down(70, 10), kMouseDownEventHandledButDontNeedMovedOrUpEvents);
    EXPECT_EQ(up(70, 10), kMouseEventNotHandled) << "handled without moves: no capture";
    down(10, 10);
    move(120, 120);
    up(190, 190, kShift);
    move(120, 120, 0);
    EXPECT_EQ(log, (CallLog{"once down 70,10 2", "a down 10,10 2", "a moved 120,120 2",
                            "a up 190,190 16", "b entered 120,120 0"}));
}

TEST_F(RoutingFixture, ViewsRemovedWhileCapturedOrHoveredAreForgotten) {
    bool destroyed[2] = {};
    auto* view =
        new SelfRemovingView(CRect(0, 0, 50, 50), "self", log, kMouseEventHandled, &destroyed[0]);
    frame->addView(view);
    down(10, 10);
    move(20, 20); // the view stays valid until its handler returns
    EXPECT_TRUE(destroyed[0]);
    EXPECT_EQ(frame->getMouseDownView(), nullptr);
    EXPECT_EQ(up(20, 20), kMouseEventNotHandled);
    EXPECT_EQ(log, (CallLog{"self down 10,10 2", "self moved 20,20 2"}));

    auto* hovered = probe(CRect(100, 100, 150, 150), "a", kMouseEventHandled, &destroyed[1]);
    move(110, 110, 0);
    EXPECT_EQ(frame->getMouseOverView(), hovered);
    frame->removeView(hovered);
    EXPECT_TRUE(destroyed[1]);
    EXPECT_EQ(frame->getMouseOverView(), nullptr);
    move(112, 112, 0);
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
