// Mouse routing through the frame and containers: hit order, capture and
// hover, in frame and container-local coordinates.

#include "EditorTestSupport.h"

#include <gtest/gtest.h>

using namespace editortest;

namespace {

struct RoutingFixture : FrameFixture {
    ProbeView* probe(const CRect& r, const std::string& name,
                     CMouseEventResult down = kMouseEventHandled, bool* destroyed = nullptr) {
        return add(new ProbeView(r, name, log, down, destroyed));
    }
};

} // namespace

TEST_F(RoutingFixture, LastAddedVisibleViewIsHitFirstEdgesIncludedAndNothingFallsThrough) {
    probe(CRect(0, 0, 100, 100), "under");
    probe(CRect(50, 50, 150, 150), "over");
    probe(CRect(0, 0, 40, 40), "hidden")->setVisible(false);
    probe(CRect(0, 0, 40, 40), "deaf")->setMouseEnabled(false);
    probe(CRect(160, 160, 190, 190), "floor");
    probe(CRect(160, 160, 190, 190), "refusing", kMouseEventNotHandled);
    down(60, 60);
    down(100, 100); // the under view's right/bottom edge is inside it too
    down(150, 150); // the over view's bottom-right corner
    down(20, 20);
    EXPECT_EQ(down(155, 155), kMouseEventNotHandled);
    EXPECT_EQ(down(170, 170), kMouseEventNotHandled);
    EXPECT_EQ(frame->getMouseDownView(), nullptr);
    EXPECT_EQ(log, (CallLog{"over down 60,60 2", "over down 100,100 2", "over down 150,150 2",
                            "under down 20,20 2", "refusing down 170,170 2"}));
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

TEST_F(RoutingFixture, HoverEntersExitsAndMouseDownClearsFocusAndHover) {
    auto* knob = add(new CKnob(CRect(160, 0, 200, 40), nullptr, 1, nullptr, nullptr));
    probe(CRect(0, 0, 50, 50), "a");
    probe(CRect(100, 100, 150, 150), "b");
    move(10, 10, kRButton);
    move(12, 12, kRButton);
    move(120, 120, 0);
    move(180, 180, 0);
    frame->setFocusView(knob);
    move(10, 10, 0);
    down(10, 10);
    EXPECT_EQ(frame->getFocusView(), nullptr);
    EXPECT_EQ(log, (CallLog{"a entered 10,10 8", "a moved 12,12 0", "a exited 120,120 0",
                            "b entered 120,120 0", "b exited 180,180 0", "a entered 10,10 0",
                            "a exited 10,10 2", "a down 10,10 2"}));
}

TEST_F(RoutingFixture, NestedContainersConvertToLocalCoordinates) {
    auto* outer = new CViewContainer(CRect(20, 30, 180, 190));
    auto* inner = new CViewContainer(CRect(10, 10, 100, 100));
    auto* view = new ProbeView(CRect(5, 5, 25, 25), "deep", log);
    inner->addView(view);
    outer->addView(inner);
    frame->addView(outer);
    EXPECT_EQ(view->getFrame(), frame) << "attached when the outer container was";

    down(20 + 10 + 5, 30 + 10 + 5);
    move(100, 100);
    up(100, 100);
    EXPECT_EQ(log, (CallLog{"deep down 5,5 2", "deep moved 70,60 2", "deep up 70,60 0"}));

    CPoint p(1, 2);
    view->localToFrame(p);
    EXPECT_EQ(p, CPoint(31, 42));
    view->frameToLocal(p);
    EXPECT_EQ(p, CPoint(1, 2));
    EXPECT_EQ(frame->getViewAt(CPoint(40, 50), true), view);
    EXPECT_EQ(frame->getViewAt(CPoint(40, 50), false), outer);
}

namespace {
// Removes itself from its container in the middle of a drag.
class SelfRemovingView : public ProbeView {
public:
    using ProbeView::ProbeView;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override {
        getFrame()->removeView(this, true);
        return ProbeView::onMouseMoved(where, buttons);
    }
};
} // namespace

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
