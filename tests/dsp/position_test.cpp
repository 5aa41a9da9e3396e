#include "AmbiEncoderClass.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(EncoderPosition, CartesianOutsideTheSphereIsPulledBackAlongItsDirection) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setx(1.0f);
    enc.sety(1.0f); // (4, 4, 0): 5.657 m
    EXPECT_EQ(enc.getdistdisplay(), 4.0f);
    EXPECT_NEAR(enc.getazimdisplay(), 45.0f, 1e-4f);
    EXPECT_NEAR(enc.getxdisplay(), 2.8284271f, 1e-5f);
    EXPECT_NEAR(enc.getydisplay(), 2.8284271f, 1e-5f);
    EXPECT_EQ(enc.getzdisplay(), 0.0f);
    EXPECT_EQ(enc.getdist(), 0.0f);
}

TEST(EncoderPosition, NegativeYGivesAzimuthAbovePi) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setx(0.5f);  // x = 0
    enc.sety(0.25f); // y = -2
    EXPECT_FLOAT_EQ(enc.getazimdisplay(), 270.0f);
    EXPECT_NEAR(enc.getazim(), 0.75f, 1e-7f);
    EXPECT_EQ(enc.getdistdisplay(), 2.0f);
}

TEST(EncoderPosition, RoundTripsBetweenPolarAndCartesian) {
    // Polar -> Cartesian -> polar through the normalised getters and setters,
    // as the plug-in does when it re-applies every stored parameter.
    for (int i = 0; i < 200; ++i) {
        const float az = (i * 37 % 200) / 200.0f;
        const float el = 0.05f + 0.9f * ((i * 53 % 200) / 200.0f);
        const float d = 0.1f + 0.85f * ((i * 71 % 200) / 200.0f);
        ZelAmbisonicEncoder a(kAmbi3P);
        a.setazim(az);
        a.setelev(el);
        a.setdist(d);
        ZelAmbisonicEncoder b(kAmbi3P);
        b.setx(a.getx());
        b.sety(a.gety());
        b.setz(a.getz());
        EXPECT_NEAR(b.getdistdisplay(), a.getdistdisplay(), 2e-6f) << i;
        EXPECT_NEAR(b.getelevdisplay(), a.getelevdisplay(), 2e-3f) << i;
        // Compare azimuths on the circle: 0 and 360 are the same direction.
        const double daz = std::remainder(b.getazimdisplay() - a.getazimdisplay(), 360.0);
        EXPECT_NEAR(daz, 0.0, 2e-3) << i;
    }
}

TEST(EncoderDistance, Dist2wFigures) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    EXPECT_EQ(enc.dist2w(4.0f, 48000.0f), 0.00178125f);
    EXPECT_EQ(enc.dist2w(0.5f, 48000.0f), 0.01425f);
    EXPECT_NEAR(enc.dist2w(1.0f, 44100.0f), 0.0077551f, 1e-7f);
}

// At 4 m the source is a plane wave: no zero in the near-field filters (their
// numerator coefficient is 0), only the compensation's poles.
TEST(EncoderDistance, FarSourceDesignsNoZeros) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(0.0f); // 0.5 m
    enc.resume();     // designs reach the filters at the next block or switch-on
    EXPECT_EQ(enc.getnf1(0).getcoef(1), 0.0f);
    enc.setdist(0.01f); // 3.96 m: near, however slightly
    enc.resume();
    EXPECT_NE(enc.getnf1(0).getcoef(1), 0.0f);
}
