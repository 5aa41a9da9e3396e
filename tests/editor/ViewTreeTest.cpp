// Rectangles, reference counting and the ownership rules of the view tree.

#include "EditorTestSupport.h"
#include "TestImages.h"

#include <gtest/gtest.h>

using namespace editortest;

TEST(Geometry, EdgesOverlapAndNormalisation) {
    const CRect r(10, 20, 30, 40);
    // pointInside is half-open, isInside (the hit test) closed.
    EXPECT_TRUE(r.pointInside(CPoint(10, 20)));
    EXPECT_FALSE(r.pointInside(CPoint(30, 25)));
    EXPECT_FALSE(r.pointInside(CPoint(15, 40)));
    EXPECT_TRUE(CPoint(30, 40).isInside(r));
    EXPECT_FALSE(CPoint(31, 40).isInside(r));
    EXPECT_FALSE(CPoint(9, 25).isInside(r));

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

    EXPECT_EQ(CRect(30, 40, 10, 20).width(), -20) << "the constructor keeps the order";
    CRect assigned;
    assigned(30, 40, 10, 20);
    EXPECT_EQ(assigned, CRect(10, 20, 30, 40)) << "the call form normalises";
    EXPECT_EQ(assigned.moveTo(100, 200).inset(2, 3), CRect(102, 203, 118, 217));
}

TEST(ReferenceCounting, ForgetDeletesAtZeroAndContainersOwnTheirViews) {
    CallLog log;
    bool gone[3] = {};
    auto* single = new ProbeView(CRect(0, 0, 1, 1), "v", log, kMouseEventHandled, &gone[0]);
    EXPECT_EQ(single->getNbReference(), 1);
    single->remember();
    single->forget();
    EXPECT_FALSE(gone[0]);
    single->forget();
    EXPECT_TRUE(gone[0]);

    auto* container = new CViewContainer(CRect(0, 0, 100, 100));
    auto* first = new ProbeView(CRect(0, 0, 10, 10), "a", log, kMouseEventHandled, &gone[1]);
    auto* second = new ProbeView(CRect(0, 0, 10, 10), "b", log, kMouseEventHandled, &gone[2]);
    ASSERT_TRUE(container->addView(first));
    ASSERT_TRUE(container->addView(second));
    EXPECT_FALSE(container->addView(second)) << "a view cannot be added twice";
    container->removeView(first, true);
    EXPECT_TRUE(gone[1]);
    container->removeView(second, false); // hands the reference back
    container->forget();
    EXPECT_FALSE(gone[2]);
    EXPECT_EQ(second->getNbReference(), 1);
    second->forget();
    EXPECT_TRUE(gone[2]);
}

TEST(ReferenceCounting, ViewsKeepTheirBitmapsAndFontsAlive) {
    auto* bitmap = new CBitmap(testimages::kSwitchStripId);
    auto* knob = new CKnob(CRect(0, 0, 40, 40), nullptr, 0, bitmap, bitmap);
    EXPECT_EQ(bitmap->getNbReference(), 3) << "background and handle each hold one";
    auto* copy = static_cast<CKnob*>(knob->newCopy());
    EXPECT_EQ(bitmap->getNbReference(), 5);
    EXPECT_STREQ(copy->getClassName(), "CKnob");
    bitmap->forget();
    knob->forget();
    EXPECT_EQ(bitmap->getNbReference(), 2);
    copy->setBackground(nullptr);
    EXPECT_EQ(bitmap->getNbReference(), 1);
    copy->forget(); // releases the last reference without a double free

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
