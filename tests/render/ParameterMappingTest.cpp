// Physical values → normalised parameters → the plug-in's own display text:
// what the user typed is what the plug-in shows.

#include "ParameterMapping.h"
#include "Position.h"
#include "VstPlugin.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

namespace {

class ZelrenderMappingRoundTrip : public ::testing::Test {
protected:
    ZelrenderMappingRoundTrip() : loaded(ZEL_PLUGIN_PATH), plugin(loaded.plugin()) {
        plugin.open();
        plugin.setSampleRate(48000.0f);
    }

    std::string shown(int index, float value) {
        plugin.setParameter(index, value);
        return plugin.parameterDisplay(index);
    }

    static std::string twoDecimals(double metres) {
        char text[16];
        std::snprintf(text, sizeof(text), "%.2f", metres);
        return text;
    }

    LoadedPlugin loaded;
    VstPlugin& plugin;
    ParameterMapping mapping;
};

TEST_F(ZelrenderMappingRoundTrip, AnglesShowAsTyped) {
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(45)), "45");
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(-90)), "270");
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(-360)), "0");
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(360)), "360");
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(25.5)), "26"); // halves round away from 0
    EXPECT_EQ(shown(kElevationParam, mapping.elevation(-90)), "-90");
    EXPECT_EQ(shown(kElevationParam, mapping.elevation(-30.5)), "-31");
    for (int degrees = -360; degrees <= 360; ++degrees) {
        const int wrapped = degrees < 0 ? degrees + 360 : degrees;
        ASSERT_EQ(shown(kAzimuthParam, mapping.azimuth(degrees)), std::to_string(wrapped))
            << degrees;
    }
    for (int degrees = -90; degrees <= 90; ++degrees) {
        ASSERT_EQ(shown(kElevationParam, mapping.elevation(degrees)), std::to_string(degrees))
            << degrees;
    }
}

// The display truncates to hundredths, so an image a hair below the typed
// value would show one hundredth less: every hundredth is checked.
TEST_F(ZelrenderMappingRoundTrip, DistancesShowAsTypedToTheHundredth) {
    for (int cm = 0; cm < 400; ++cm) {
        ASSERT_EQ(shown(kDistanceParam, mapping.distance(cm / 100.0)), twoDecimals(cm / 100.0))
            << cm;
    }
    for (int cm = 50; cm < 400; ++cm) {
        ASSERT_EQ(shown(kCompensationParam, mapping.compensation(cm / 100.0)),
                  twoDecimals(cm / 100.0))
            << cm;
    }
    EXPECT_EQ(shown(kDistanceParam, mapping.distance(4.0)), "off");
    EXPECT_EQ(shown(kDistanceParam, mapping.distance(std::nullopt)), "off");
    EXPECT_EQ(shown(kCompensationParam, mapping.compensation(4.0)), "off");
    EXPECT_EQ(shown(kCompensationParam, mapping.compensation(std::nullopt)), "off");
}

TEST_F(ZelrenderMappingRoundTrip, CoordinatesShowAsTypedToTheHundredth) {
    for (int cm = -400; cm <= 400; ++cm) {
        // Each axis alone, from the centre, so that no write leaves the sphere.
        for (ParameterIndex axis : {kXParam, kYParam, kZParam}) {
            for (const ParameterWrite& write :
                 positionWrites(CartesianPosition{axis == kXParam ? cm / 100.0 : 0.0,
                                                  axis == kYParam ? cm / 100.0 : 0.0,
                                                  axis == kZParam ? cm / 100.0 : 0.0},
                                mapping)) {
                plugin.setParameter(write.index, write.value);
            }
            ASSERT_EQ(plugin.parameterDisplay(axis), twoDecimals(cm / 100.0)) << cm;
        }
    }
}

TEST(ZelrenderParameterMapping, NormalisedValuesAreTheInversesOfTheEncoderMaps) {
    ParameterMapping mapping;
    auto near = [](float value, double exact) { return std::fabs(value - exact) <= 1e-6; };
    EXPECT_TRUE(near(mapping.azimuth(90), 0.25));
    EXPECT_TRUE(near(mapping.azimuth(-90), 0.75));
    EXPECT_TRUE(near(mapping.elevation(45), 0.75));
    EXPECT_TRUE(near(mapping.coordinate(kYParam, -1), 0.375));
    EXPECT_TRUE(near(mapping.distance(1.0), 0.75));
    EXPECT_TRUE(near(mapping.compensation(2.0), 1.5 / 3.5));
    // The ends are exact: they are the plug-in's "off" values.
    EXPECT_EQ(mapping.distance(std::nullopt), 0.0f);
    EXPECT_EQ(mapping.distance(4.0), 0.0f);
    EXPECT_FALSE(std::signbit(mapping.distance(4.0)));
    EXPECT_EQ(mapping.compensation(std::nullopt), 1.0f);
    EXPECT_EQ(mapping.compensation(4.0), 1.0f);
    EXPECT_EQ(mapping.distance(0.0), 1.0f);
    EXPECT_THROW(mapping.azimuth(400), ValueError);
    EXPECT_THROW(mapping.coordinate(kZParam, -4.01), ValueError);
}

} // namespace
