#include "Dezipper.h"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(DeZipper, ZeroTargetStaysOutOfSubnormals) {
    DeZipper d;
    d.init(1.0f);
    for (int k = 0; k < 200000; ++k) d.smooth(0.0f);
    EXPECT_NE(std::fpclassify(d.current()), FP_SUBNORMAL);
    EXPECT_GT(d.current(), 0.0f);
    EXPECT_LT(d.current(), 1e-27f);
}
