// Rectangles, reference counting and the ownership rules of the view tree.

#include "EditorTestSupport.h"
#include "TestImages.h"

#include <gtest/gtest.h>

using namespace editortest;

TEST(Geometry, EdgesCountDifferentlyForPointInsideAndIsInside) {
    const CRect r(10, 20, 30, 40);
    EXPECT_TRUE(r.pointInside(CPoint(10, 20)));
    EXPECT_FALSE(r.pointInside(CPoint(30, 25)));
    EXPECT_FALSE(r.pointInside(CPoint(15, 40)));
    EXPECT_TRUE(CPoint(30, 40).isInside(r));
    EXPECT_FALSE(CPoint(31, 40).isInside(r));
    EXPECT_FALSE(CPoint(9, 25).isInside(r));
}

TEST(Geometry, TouchingRectanglesOverlapAndBoundNeverGoesNegative) {
    const CRect a(0, 0, 10, 10);
    EXPECT_TRUE(a.rectOverlap(CRect(10, 10, 20, 20)));
    EXPECT_FALSE(a.rectOverlap(CRect(11, 0, 20, 10)));

    CRect disjoint(20, 20, 30, 30);
    disjoint.bound(a);
    EXPECT_TRUE(disjoint.isEmpty());
    EXPECT_GE(disjoint.right, disjoint.left);
    EXPECT_GE(disjoint.bottom, disjoint.top);

    CRect part(5, 5, 15, 15);
    EXPECT_EQ(part.bound(a), CRect(5, 5, 10, 10));
}

TEST(Geometry, ConstructorKeepsOrderButCallFormNormalises) {
    const CRect kept(30, 40, 10, 20);
    EXPECT_EQ(kept.left, 30);
    EXPECT_EQ(kept.width(), -20);
    CRect assigned;
    assigned(30, 40, 10, 20);
    EXPECT_EQ(assigned, CRect(10, 20, 30, 40));
    CRect moved(1, 2, 11, 22);
    EXPECT_EQ(moved.moveTo(100, 200), CRect(100, 200, 110, 220));
    EXPECT_EQ(moved.inset(2, 3), CRect(102, 203, 108, 217));
}

TEST(ReferenceCounting, ForgetDeletesAtZero) {
    bool destroyed = false;
    CallLog log;
    auto* view = new ProbeView(CRect(0, 0, 1, 1), "v", log, kMouseEventHandled, &destroyed);
    EXPECT_EQ(view->getNbReference(), 1);
    view->remember();
    EXPECT_EQ(view->getNbReference(), 2);
    view->forget();
    EXPECT_FALSE(destroyed);
    view->forget();
    EXPECT_TRUE(destroyed);
}

TEST(ReferenceCounting, ContainerTakesOverTheCreatorsReference) {
    CallLog log;
    bool firstGone = false;
    bool secondGone = false;
    auto* container = new CViewContainer(CRect(0, 0, 100, 100));
    auto* first = new ProbeView(CRect(0, 0, 10, 10), "a", log, kMouseEventHandled, &firstGone);
    auto* second = new ProbeView(CRect(0, 0, 10, 10), "b", log, kMouseEventHandled, &secondGone);
    ASSERT_TRUE(container->addView(first));
    ASSERT_TRUE(container->addView(second));
    EXPECT_FALSE(container->addView(second)) << "a view cannot be added twice";

    container->removeView(first, true);
    EXPECT_TRUE(firstGone);
    container->forget();
    EXPECT_TRUE(secondGone);
}

TEST(ReferenceCounting, RemoveWithoutForgetHandsTheReferenceBack) {
    CallLog log;
    bool gone = false;
    auto* container = new CViewContainer(CRect(0, 0, 100, 100));
    auto* view = new ProbeView(CRect(0, 0, 10, 10), "a", log, kMouseEventHandled, &gone);
    container->addView(view);
    container->removeView(view, false);
    container->forget();
    EXPECT_FALSE(gone);
    EXPECT_EQ(view->getNbReference(), 1);
    view->forget();
    EXPECT_TRUE(gone);
}

TEST(ReferenceCounting, ViewsKeepTheirBitmapsAlive) {
    auto* bitmap = new CBitmap(testimages::kSwitchStripId);
    auto* knob = new CKnob(CRect(0, 0, 40, 40), nullptr, 0, bitmap, bitmap);
    EXPECT_EQ(bitmap->getNbReference(), 3) << "background and handle each hold one";
    auto* copy = static_cast<CKnob*>(knob->newCopy());
    EXPECT_EQ(bitmap->getNbReference(), 5);
    bitmap->forget();
    knob->forget();
    EXPECT_EQ(bitmap->getNbReference(), 2);
    copy->setBackground(nullptr);
    EXPECT_EQ(bitmap->getNbReference(), 1);
    copy->forget(); // releases the last reference without a double free
}

TEST(ReferenceCounting, ParamDisplayHoldsItsFont) {
    auto* font = new CFontDesc("Sans", 10);
    auto* display = new CParamDisplay(CRect(0, 0, 10, 10));
    display->setFont(font);
    EXPECT_EQ(font->getNbReference(), 2);
    font->forget();
    EXPECT_STREQ(display->getFont()->getName(), "Sans");
    display->setFont(kNormalFontSmaller);
    EXPECT_EQ(display->getFont()->getSize(), 10);
    display->forget();
}

TEST(ClassNames, IsTypeOfWalksUpTheParents) {
    CAnimKnob knob(CRect(0, 0, 40, 40), nullptr, 0, 31, 40, nullptr);
    EXPECT_TRUE(knob.isTypeOf("CAnimKnob"));
    EXPECT_TRUE(knob.isTypeOf("CKnob"));
    EXPECT_TRUE(knob.isTypeOf("CControl"));
    EXPECT_TRUE(knob.isTypeOf("CView"));
    EXPECT_FALSE(knob.isTypeOf("CViewContainer"));
    EXPECT_STREQ(knob.getClassName(), "CAnimKnob");
    CView* copy = knob.newCopy();
    EXPECT_STREQ(copy->getClassName(), "CAnimKnob");
    copy->forget();
}

TEST(FrameOwnership, DeletingTheFrameDeletesItsViewsAndClearsPointers) {
    CallLog log;
    bool gone = false;
    auto* frame = new CFrame(CRect(0, 0, 100, 100), nullptr, nullptr);
    auto* view = new ProbeView(CRect(0, 0, 10, 10), "a", log, kMouseEventHandled, &gone);
    frame->addView(view);
    EXPECT_TRUE(view->isAttached());
    EXPECT_EQ(view->getFrame(), frame);
    CPoint where(5, 5);
    frame->onMouseDown(where, kLButton);
    EXPECT_EQ(frame->getMouseDownView(), view);
    delete frame;
    EXPECT_TRUE(gone);
}
