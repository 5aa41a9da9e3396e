// ZelAnimKnob and ZelContAnimKnob: the angle each class remembers for a
// reading at the centre, and the endless knob's drag past the end stop.

#include "ControlTestDoubles.h"
#include "ZelAnimKnob.h"
#include "ZelContAnimKnob.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace controltest;

namespace {

// 40-px knobs at (100, 100); the default travel turns clockwise over 270°
// from 225°, leaving the dead sector at the bottom. Points are the knob's own.
template <typename Knob> struct KnobHarness : RecordingFrame {
    CBitmap* strip = new CBitmap(*frame, 40, 40 * 31);
    Knob* knob = add(new Knob(CRect(100, 100, 140, 140), &listener, 5, 31, 40, strip));

    ~KnobHarness() { strip->forget(); }
    float readAt(CPoint local) const { return knob->valueFromPoint(local); }
    // A press at the first point, then moves (the mouse calls take the frame's
    // coordinates): the value after each.
    std::vector<float> drag(const std::vector<CPoint>& path) {
        std::vector<float> values;
        for (CPoint local : path) {
            CPoint where(local.x + 100, local.y + 100);
            values.empty() ? knob->onMouseDown(where, kLButton)
                           : knob->onMouseMoved(where, kLButton);
            values.push_back(knob->getValue());
        }
        return values;
    }
};

double clockwiseFraction(const CPoint& p) {
    const double degrees = std::atan2(20.0 - p.y, p.x - 20.0) * 180.0 / 3.14159265358979323846;
    return std::fmod(225.0 - degrees + 720.0, 360.0) / 270.0;
}

TEST(KnobClassesTest, EachClassRemembersItsOwnAngle) {
    KnobHarness<ZelAnimKnob> bounded;
    KnobHarness<ZelContAnimKnob> endless;
    const float boundedTop = bounded.readAt(CPoint(20, 0));
    const float endlessRight = endless.readAt(CPoint(40, 20));
    EXPECT_FLOAT_EQ(bounded.readAt(CPoint(20, 20)), boundedTop);
    EXPECT_FLOAT_EQ(endless.readAt(CPoint(20, 20)), endlessRight);
}

// From just before the end (about -31°) across the dead sector, right of its
// middle then left, on to about 198°, and back the other way.
TEST(KnobClassesTest, OnlyTheEndlessKnobTurnsPastTheEnd) {
    const std::vector<CPoint> path = {CPoint(33, 28), CPoint(25, 39), CPoint(15, 39), CPoint(5, 25),
                                      CPoint(25, 39)};
    KnobHarness<ZelContAnimKnob> endless;
    const std::vector<float> turned = endless.drag(path);
    ASSERT_EQ(turned.size(), 5u);
    EXPECT_NEAR(turned[0], clockwiseFraction(path[0]), 1e-5);
    EXPECT_NEAR(turned[3], clockwiseFraction(path[3]), 1e-5);
    EXPECT_EQ(turned, (std::vector<float>{turned[0], 1.0f, 0.0f, turned[3], 1.0f}));
    EXPECT_EQ(endless.listener.values, turned);

    KnobHarness<ZelAnimKnob> bounded;
    const std::vector<float> held = bounded.drag(path);
    EXPECT_EQ(std::vector<float>(held.begin() + 1, held.end()), std::vector<float>(4, 1.0f));
}

} // namespace
