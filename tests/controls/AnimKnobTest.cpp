// ZelAnimKnob and ZelContAnimKnob: the mouse-angle reading (remembered angle
// at the centre, dead sector), the endless drag against the toolkit's end
// stop, the linear drag and the polling loop.

#include "ControlTestDoubles.h"
#include "ZelAnimKnob.h"
#include "ZelContAnimKnob.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace controltest;

namespace {

// 40-px knobs, centre (20, 20) in knob coordinates; the default travel turns
// clockwise over 270° from 225°, leaving the dead sector at the bottom.
const CPoint kCentre(20, 20);
const CPoint kDeadLeft(15, 39);  // nearer the start of the travel
const CPoint kDeadRight(25, 39); // nearer its end
const CPoint kNearEnd(33, 28);   // about -31°
const CPoint kLowerLeft(5, 25);  // about 198°

double degreesOf(const CPoint& p) {
    return std::atan2(20.0 - p.y, p.x - 20.0) * 180.0 / 3.14159265358979323846;
}
double clockwiseFraction(const CPoint& p) {
    return std::fmod(225.0 - degreesOf(p) + 720.0, 360.0) / 270.0;
}
float readAt(const CKnob& knob, CPoint local) {
    return knob.valueFromPoint(local);
}

template <typename Knob> struct KnobHarness {
    EventLog log;
    RecordingListener listener{log};
    RecordingEditor editor{log};
    CFrame* frame = new CFrame(CRect(0, 0, 300, 300), nullptr, &editor);
    CBitmap* strip = new CBitmap(*frame, 40, 40 * 31);
    Knob* knob = add(100, 100);

    ~KnobHarness() {
        delete frame;
        strip->forget();
    }
    Knob* add(CCoord left, CCoord top) {
        auto* k = new Knob(CRect(left, top, left + 40, top + 40), &listener, 5, 31, 40, strip);
        frame->addView(k);
        return k;
    }
    // Mouse calls take the frame's coordinates; these take the knob's.
    void press(CPoint local, long buttons = kLButton) {
        CPoint where(local.x + 100, local.y + 100);
        knob->onMouseDown(where, buttons);
    }
    float moveTo(CPoint local, long buttons = kLButton) {
        CPoint where(local.x + 100, local.y + 100);
        knob->onMouseMoved(where, buttons);
        return knob->getValue();
    }
};

template <typename Knob> struct KnobReadingTest : ::testing::Test, KnobHarness<Knob> {};
using BothKnobs = ::testing::Types<ZelAnimKnob, ZelContAnimKnob>;
TYPED_TEST_SUITE(KnobReadingTest, BothKnobs);

const CPoint kArcPoints[] = {CPoint(3, 30), CPoint(2, 20),  CPoint(8, 5),  CPoint(20, 0),
                             CPoint(33, 4), CPoint(40, 20), CPoint(36, 30)};

TYPED_TEST(KnobReadingTest, ClockwiseTravelAndItsDeadSector) {
    for (CPoint p : kArcPoints)
        EXPECT_NEAR(readAt(*this->knob, p), clockwiseFraction(p), 1e-5) << p.x << "," << p.y;
    this->knob->setMin(-1.0f);
    this->knob->setMax(3.0f);
    this->knob->compute();
    EXPECT_FLOAT_EQ(readAt(*this->knob, kDeadRight), 3.0f);
    EXPECT_FLOAT_EQ(readAt(*this->knob, kDeadLeft), -1.0f);
}

TYPED_TEST(KnobReadingTest, CentreKeepsTheLastAngleOfAnyKnobOfTheClass) {
    TypeParam* other = this->add(200, 200);
    const float atTop = readAt(*this->knob, CPoint(20, 0));
    EXPECT_FLOAT_EQ(readAt(*other, kCentre), atTop);
    const float atLeft = readAt(*other, CPoint(0, 20));
    EXPECT_NE(atLeft, atTop);
    EXPECT_FLOAT_EQ(readAt(*this->knob, kCentre), atLeft);
}

TEST(KnobClassesTest, EachClassRemembersItsOwnAngle) {
    KnobHarness<ZelAnimKnob> bounded;
    KnobHarness<ZelContAnimKnob> endless;
    const float boundedTop = readAt(*bounded.knob, CPoint(20, 0));
    const float endlessRight = readAt(*endless.knob, CPoint(40, 20));
    EXPECT_FLOAT_EQ(readAt(*bounded.knob, kCentre), boundedTop);
    EXPECT_FLOAT_EQ(readAt(*endless.knob, kCentre), endlessRight);
}

// From just before the end, across the middle of the dead sector, on.
TEST(KnobClassesTest, OnlyTheEndlessKnobTurnsPastTheEnd) {
    KnobHarness<ZelContAnimKnob> endless;
    endless.press(kNearEnd);
    EXPECT_NEAR(endless.knob->getValue(), clockwiseFraction(kNearEnd), 1e-5);
    EXPECT_FLOAT_EQ(endless.moveTo(kDeadRight), 1.0f);
    EXPECT_FLOAT_EQ(endless.moveTo(kDeadLeft), 0.0f);
    EXPECT_NEAR(endless.moveTo(kLowerLeft), clockwiseFraction(kLowerLeft), 1e-5);
    EXPECT_FLOAT_EQ(endless.moveTo(kDeadRight), 1.0f); // and back the other way
    ASSERT_EQ(endless.listener.values.size(), 5u);
    EXPECT_FLOAT_EQ(endless.listener.values[2], 0.0f);

    KnobHarness<ZelAnimKnob> bounded;
    bounded.press(kNearEnd);
    EXPECT_FLOAT_EQ(bounded.moveTo(kDeadRight), 1.0f);
    EXPECT_FLOAT_EQ(bounded.moveTo(kDeadLeft), 1.0f);
    EXPECT_FLOAT_EQ(bounded.moveTo(kLowerLeft), 1.0f);
}

struct EndlessKnobTest : ::testing::Test, KnobHarness<ZelContAnimKnob> {};

TEST_F(EndlessKnobTest, ShiftDuringALinearDragRescalesWithoutAJump) {
    editor.knobMode = kLinearMode;
    knob->setValue(0.5f);
    press(kCentre);
    EXPECT_NEAR(moveTo(CPoint(20, 0)), 0.6f, 2e-6); // 20 px at 1/200
    // The move on which Shift appears still counts at the old rate, later
    // ones at 1/300 (unrebased it would fall back to 0.57).
    EXPECT_NEAR(moveTo(CPoint(20, -1), kLButton | kShift), 0.605f, 2e-6);
    EXPECT_NEAR(moveTo(CPoint(21, -3), kLButton | kShift), 0.605f + 3.0f / 300.0f, 2e-6);
    // Released likewise.
    EXPECT_NEAR(moveTo(CPoint(21, -4)), 0.605f + 4.0f / 300.0f, 2e-6);
    EXPECT_NEAR(moveTo(CPoint(21, -5)), 0.605f + 4.0f / 300.0f + 1.0f / 200.0f, 2e-6);
}

} // namespace
