#include "ZelAPHilbert.h"
#include "measure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

struct Outputs {
    std::vector<float> out1, out2;
};

Outputs split(ZelAPHilbert& hilbert, std::vector<float> in) {
    Outputs o{std::vector<float>(in.size()), std::vector<float>(in.size())};
    hilbert.processaudio(in.data(), o.out1.data(), o.out2.data(), static_cast<int>(in.size()));
    return o;
}

} // namespace

TEST(ZelAPHilbert, EqualGainsAndQuarterTurnFrom100HzTo23kHz) {
    const double fs = 48000.0;
    // The slowest pole pair decays by 1e-12 within about 22000 samples.
    ZelAPHilbert hilbert;
    const Outputs h = split(hilbert, measure::impulse(1 << 16));
    double worstPhase = 0.0, worstGain = 0.0, worstAt = 0.0;
    for (double hz = 100.0; hz <= 23000.0; hz *= 1.02) {
        const std::complex<double> h1 = measure::dtft(h.out1, hz, fs);
        const std::complex<double> h2 = measure::dtft(h.out2, hz, fs);
        // out1 lags out2: arg(h2) - arg(h1) is +90 degrees.
        const double lag = measure::wrapDegrees(measure::degrees(std::arg(h2) - std::arg(h1)));
        // The equiripple design itself ripples by 0.702 degrees.
        EXPECT_NEAR(lag, 90.0, 0.705) << hz << " Hz";
        EXPECT_NEAR(std::abs(h1), 1.0, 1e-5) << hz << " Hz";
        EXPECT_NEAR(std::abs(h2), 1.0, 1e-5) << hz << " Hz";
        if (std::fabs(lag - 90.0) > worstPhase) {
            worstPhase = std::fabs(lag - 90.0);
            worstAt = hz;
        }
        worstGain = std::max({worstGain, std::fabs(std::abs(h1) - std::abs(h2))});
    }
    std::printf("hilbert: worst phase error %.4f deg at %.0f Hz, worst gain mismatch %.3g\n",
                worstPhase, worstAt, worstGain);
}
