// Physical values → normalised parameters → the plug-in's own display text:
// what the user typed is what the plug-in shows. (The renders compare with
// an encoder fed through the same mapping, so only this catches its faults.)

#include "ParameterMapping.h"
#include "Position.h"
#include "VstPlugin.h"

#include <gtest/gtest.h>

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

    static std::string hundredths(int cm) {
        char text[16];
        std::snprintf(text, sizeof(text), "%.2f", cm / 100.0);
        return text;
    }

    LoadedPlugin loaded;
    VstPlugin& plugin;
    ParameterMapping mapping;
};

TEST_F(ZelrenderMappingRoundTrip, AnglesShowAsTyped) {
    for (int degrees = -360; degrees <= 360; ++degrees) {
        ASSERT_EQ(shown(kAzimuthParam, mapping.azimuth(degrees)),
                  std::to_string(degrees < 0 ? degrees + 360 : degrees))
            << degrees;
    }
    for (int degrees = -90; degrees <= 90; ++degrees) {
        ASSERT_EQ(shown(kElevationParam, mapping.elevation(degrees)), std::to_string(degrees))
            << degrees;
    }
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(25.5)), "26"); // halves round away from 0
    EXPECT_EQ(shown(kElevationParam, mapping.elevation(-30.5)), "-31");
}

// The display truncates to hundredths, so an image a hair below the typed
// value would show one hundredth less: every hundredth is checked.
TEST_F(ZelrenderMappingRoundTrip, MetresShowAsTypedToTheHundredth) {
    for (int cm = 0; cm < 400; ++cm) {
        ASSERT_EQ(shown(kDistanceParam, mapping.distance(cm / 100.0)), hundredths(cm)) << cm;
        if (cm >= 50) {
            ASSERT_EQ(shown(kCompensationParam, mapping.compensation(cm / 100.0)), hundredths(cm))
                << cm;
        }
    }
    for (std::optional<double> off : {std::optional<double>(4.0), std::optional<double>()}) {
        EXPECT_EQ(shown(kDistanceParam, mapping.distance(off)), "off");
        EXPECT_EQ(shown(kCompensationParam, mapping.compensation(off)), "off");
    }
    for (int cm = -400; cm <= 400; ++cm) {
        // Each axis alone, from the centre, so that no write leaves the sphere.
        for (ParameterIndex axis : {kXParam, kYParam, kZParam}) {
            const double m = cm / 100.0;
            for (const ParameterWrite& write : positionWrites(
                     CartesianPosition{axis == kXParam ? m : 0.0, axis == kYParam ? m : 0.0,
                                       axis == kZParam ? m : 0.0},
                     mapping)) {
                plugin.setParameter(write.index, write.value);
            }
            ASSERT_EQ(plugin.parameterDisplay(axis), hundredths(cm)) << cm;
        }
    }
}

} // namespace
