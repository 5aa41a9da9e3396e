#include "Dezipper.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(DeZipper, FirstStepAndMonotoneApproach) {
    DeZipper d;
    EXPECT_EQ(d.smooth(1.0f), 0.0019999742507934570f);
    float previous = 0.0019999742507934570f;
    for (int k = 1; k < 20000; ++k) {
        const float v = d.smooth(1.0f);
        ASSERT_GE(v, previous) << "step " << k;
        ASSERT_LE(v, 1.0f) << "overshoot at step " << k;
        previous = v;
    }
    EXPECT_NEAR(previous, 1.0f, 2e-5f); // single precision stalls just below
}

TEST(DeZipper, HalfwayAndTimeConstantMatchThePole) {
    // Half the step after about 346 samples, 1/e left after about 499.5.
    DeZipper d;
    int halfway = -1, timeConstant = -1;
    for (int k = 1; k <= 2000; ++k) {
        const float v = d.smooth(1.0f);
        if (halfway < 0 && v >= 0.5f) halfway = k;
        if (timeConstant < 0 && v >= 1.0f - std::exp(-1.0f)) timeConstant = k;
    }
    EXPECT_EQ(halfway, 347); // 0.998^346 is just above one half
    EXPECT_NEAR(timeConstant, 499.5, 1.0);
}

TEST(DeZipper, InitStartsWithoutGlide) {
    DeZipper d;
    d.init(0.25f);
    EXPECT_FLOAT_EQ(d.smooth(0.25f), 0.25f);
    d.init(-3.0f);
    EXPECT_FLOAT_EQ(d.smooth(-3.0f), -3.0f);
}

TEST(DeZipper, ZeroTargetStaysOutOfSubnormals) {
    DeZipper d;
    d.init(1.0f);
    for (int k = 0; k < 200000; ++k) d.smooth(0.0f);
    EXPECT_NE(std::fpclassify(d.current()), FP_SUBNORMAL);
    EXPECT_GT(d.current(), 0.0f);
    EXPECT_LT(d.current(), 1e-27f);
}
