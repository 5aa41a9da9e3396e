// ZelAnimKnob and ZelContAnimKnob: the angle each class remembers for a
// reading at the centre, and the endless knob's drag past the end stop.

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

double clockwiseFraction(const CPoint& p) {
    const double degrees = std::atan2(20.0 - p.y, p.x - 20.0) * 180.0 / 3.14159265358979323846;
    return std::fmod(225.0 - degrees + 720.0, 360.0) / 270.0;
}

template <typename Knob> struct KnobHarness : RecordingFrame {
    CBitmap* strip = new CBitmap(*frame, 40, 40 * 31);
    Knob* knob = add(new Knob(CRect(100, 100, 140, 140), &listener, 5, 31, 40, strip));

    ~KnobHarness() { strip->forget(); }
    float readAt(CPoint local) const { return knob->valueFromPoint(local); }
    // Mouse calls take the frame's coordinates; these take the knob's.
    void press(CPoint local) {
        CPoint where(local.x + 100, local.y + 100);
        knob->onMouseDown(where, kLButton);
    }
    float moveTo(CPoint local) {
        CPoint where(local.x + 100, local.y + 100);
        knob->onMouseMoved(where, kLButton);
        return knob->getValue();
    }
};

TEST(KnobClassesTest, EachClassRemembersItsOwnAngle) {
    KnobHarness<ZelAnimKnob> bounded;
    KnobHarness<ZelContAnimKnob> endless;
    const float boundedTop = bounded.readAt(CPoint(20, 0));
    const float endlessRight = endless.readAt(CPoint(40, 20));
    EXPECT_FLOAT_EQ(bounded.readAt(kCentre), boundedTop);
    EXPECT_FLOAT_EQ(endless.readAt(kCentre), endlessRight);
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

} // namespace
