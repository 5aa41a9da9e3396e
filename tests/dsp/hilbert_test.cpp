#include "ZelAPHilbert.h"
#include "measure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

TEST(ZelAPHilbert, EqualGainsAndQuarterTurnFrom100HzTo23kHz) {
    const double fs = 48000.0;
    // The slowest pole pair decays by 1e-12 within about 22000 samples.
    ZelAPHilbert hilbert;
    std::vector<float> impulse = measure::impulse(1 << 16), out1(1 << 16), out2(1 << 16);
    hilbert.processaudio(impulse.data(), out1.data(), out2.data(), 1 << 16);
    for (double hz = 100.0; hz <= 23000.0; hz *= 1.02) {
        const std::complex<double> h1 = measure::dtft(out1, hz, fs);
        const std::complex<double> h2 = measure::dtft(out2, hz, fs);
        // out1 lags out2: arg(h2) - arg(h1) is +90 degrees.
        const double lag = measure::wrapDegrees(measure::degrees(std::arg(h2) - std::arg(h1)));
        // The equiripple design itself ripples by 0.702 degrees.
        EXPECT_NEAR(lag, 90.0, 0.705) << hz << " Hz";
        EXPECT_NEAR(std::abs(h1), 1.0, 1e-5) << hz << " Hz";
        EXPECT_NEAR(std::abs(h2), 1.0, 1e-5) << hz << " Hz";
    }
}
