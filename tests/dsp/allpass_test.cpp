#include "ALLPASS.h"
#include "measure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// The pure all-pass part, through the filter's own coefficient.
std::vector<float> allPassImpulseResponse(AllPass& filter, std::size_t length) {
    std::vector<float> x = measure::impulse(length), y(length);
    filter.DoAllPass(x.data(), y.data(), static_cast<long>(length), filter.getcoef());
    return y;
}

} // namespace

TEST(AllPass, UnitMagnitudeAndQuarterTurnAtTheCutOff) {
    const float rates[] = {22050.0f, 44100.0f, 48000.0f, 96000.0f};
    // Below about fs/200 the single-precision cosine of the design starts to cost
    // accuracy (some 0.25 degrees at 20 Hz and 48 kHz), so the grid stays above.
    const float cutOffs[] = {250.0f, 700.0f, 3000.0f, 9000.0f};
    for (float fs : rates)
        for (float fc : cutOffs) {
            AllPass filter(1 << 16);
            filter.SetCutOff(fc, fs);
            const std::vector<float> h = allPassImpulseResponse(filter, 1 << 16);
            SCOPED_TRACE(testing::Message() << "fc " << fc << " fs " << fs);
            for (double hz : {0.0, 0.1 * fc, double(fc), 3.0 * fc, 0.45 * fs, 0.5 * fs})
                EXPECT_NEAR(std::abs(measure::dtft(h, hz, fs)), 1.0, 1e-6) << hz << " Hz";
            EXPECT_NEAR(measure::phaseDegrees(measure::dtft(h, fc, fs)), -90.0, 0.01);
        }
}

TEST(AllPass, InstancesInterleavedOnOneThreadDoNotDisturbEachOther) {
    std::vector<float> x = measure::noise(1024, 5);
    AllPass a1(64), b1(64), a2(64), b2(64);
    for (AllPass* f : {&a1, &a2}) f->SetCutOff(100.0f, 48000.0f);
    for (AllPass* f : {&b1, &b2}) f->SetCutOff(5000.0f, 48000.0f);
    std::vector<float> alone1 = x, alone2 = x, mixed1 = x, mixed2 = x;
    a1.ProcessAudio(alone1.data(), 1.0f, 0.3f, 1024);
    b1.ProcessAudio(alone2.data(), 2.0f, 0.5f, 1024);
    for (long start = 0; start < 1024; start += 64) {
        a2.ProcessAudio(mixed1.data() + start, 1.0f, 0.3f, 64);
        b2.ProcessAudio(mixed2.data() + start, 2.0f, 0.5f, 64);
    }
    EXPECT_EQ(mixed1, alone1);
    EXPECT_EQ(mixed2, alone2);
}
