// Physical values → normalised parameters → the plug-in's own display text:
// what the user typed is what the plug-in shows, for every whole degree and
// every hundredth of a metre (the display truncates, so an image a hair below
// the typed value would show one hundredth less). The renders compare with an
// encoder fed through the same mapping, so only this catches its faults.

#include "ParameterMapping.h"
#include "Position.h"
#include "VstPlugin.h"

#include <gtest/gtest.h>

#include <cstdio>

TEST(ZelrenderMappingRoundTrip, WholeDegreesAndHundredthsShowAsTyped) {
    LoadedPlugin loaded(ZEL_PLUGIN_PATH);
    VstPlugin& plugin = loaded.plugin();
    plugin.open();
    ParameterMapping mapping;
    auto shown = [&](int index, float value) {
        plugin.setParameter(index, value);
        return plugin.parameterDisplay(index);
    };
    auto hundredths = [](int cm) {
        char text[16];
        std::snprintf(text, sizeof(text), "%.2f", cm / 100.0);
        return std::string(text);
    };
    for (int deg = -360; deg <= 360; ++deg) {
        ASSERT_EQ(shown(kAzimuthParam, mapping.azimuth(deg)),
                  std::to_string(deg < 0 ? deg + 360 : deg));
        if (deg >= -90 && deg <= 90) {
            ASSERT_EQ(shown(kElevationParam, mapping.elevation(deg)), std::to_string(deg));
        }
    }
    EXPECT_EQ(shown(kAzimuthParam, mapping.azimuth(25.5)), "26"); // halves round away from 0
    EXPECT_EQ(shown(kElevationParam, mapping.elevation(-30.5)), "-31");
    for (int cm = 0; cm < 400; ++cm) {
        ASSERT_EQ(shown(kDistanceParam, mapping.distance(cm / 100.0)), hundredths(cm));
        if (cm >= 50) {
            ASSERT_EQ(shown(kCompensationParam, mapping.compensation(cm / 100.0)), hundredths(cm));
        }
    }
    for (std::optional<double> off : {std::optional<double>(4.0), std::optional<double>()}) {
        EXPECT_EQ(shown(kDistanceParam, mapping.distance(off)), "off");
        EXPECT_EQ(shown(kCompensationParam, mapping.compensation(off)), "off");
    }
    // Each axis alone, from the centre, so that no write leaves the sphere.
    for (int cm = -400; cm <= 400; ++cm) {
        for (ParameterIndex axis : {kXParam, kYParam, kZParam}) {
            const double m = cm / 100.0;
            const CartesianPosition p{axis == kXParam ? m : 0.0, axis == kYParam ? m : 0.0,
                                      axis == kZParam ? m : 0.0};
            for (const ParameterWrite& write : positionWrites(p, mapping))
                plugin.setParameter(write.index, write.value);
            ASSERT_EQ(plugin.parameterDisplay(axis), hundredths(cm));
        }
    }
}
