// Runs alone in its own program: the knobs' remembered angles are shared by
// every knob of a class for the life of the program.

#include "ZelAnimKnob.h"
#include "ZelContAnimKnob.h"

#include <gtest/gtest.h>

namespace {

TEST(KnobFirstAngleTest, CentreBeforeAnyOtherPointReadsAsPointingRight) {
    const CRect rect(0, 0, 40, 40);
    ZelAnimKnob bounded(rect, nullptr, 0, 1, 40, nullptr);
    ZelContAnimKnob endless(rect, nullptr, 0, 1, 40, nullptr);
    CPoint centre(20, 20);
    CPoint right(40, 20);
    const float pointingRight = bounded.CKnob::valueFromPoint(right);
    // Pointing right is 225° clockwise from the start of a 270° travel.
    EXPECT_NEAR(pointingRight, 225.0 / 270.0, 1e-6);
    EXPECT_FLOAT_EQ(bounded.valueFromPoint(centre), pointingRight);
    EXPECT_FLOAT_EQ(endless.valueFromPoint(centre), pointingRight);
}

} // namespace
