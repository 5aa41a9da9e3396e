#include "measure.h"
#include "tarnshelf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

// Impulse response of H(z) = k (1 + a/z) / (1 + b/z), run sample by sample in
// double until the tail is negligible.
std::vector<double> impulseResponse(const tarnshelf& shelf) {
    const double a = shelf.getcoef(0), b = shelf.getcoef(1), k = shelf.getcoef(2);
    const double decay = std::fabs(b);
    std::size_t length = 64;
    if (decay > 0.0 && decay < 1.0)
        length += static_cast<std::size_t>(std::log(1e-15) / std::log(decay));
    std::vector<double> h(length);
    double xPrevious = 0.0, yPrevious = 0.0;
    for (std::size_t n = 0; n < length; ++n) {
        const double x = n == 0 ? 1.0 : 0.0;
        const double y = k * (x + a * xPrevious) - b * yPrevious;
        h[n] = y;
        xPrevious = x;
        yPrevious = y;
    }
    return h;
}

double gainAt(const tarnshelf& shelf, double hz, double fs) {
    return std::abs(measure::dtft(impulseResponse(shelf), hz, fs));
}

} // namespace

TEST(TarnShelf, GainsAtDcNyquistAndTransitionOverAGrid) {
    const float rates[] = {22050.0f, 44100.0f, 48000.0f, 96000.0f, 192000.0f};
    const float transitions[] = {30.0f, 200.0f, 1000.0f, 3000.0f, 7500.0f};
    const float gainPairs[][2] = {{2.0f, 1.0f}, {1.0f, 2.0f}, {0.25f, 1.0f}, {1.0f, 0.1f},
                                  {3.5f, 0.8f}, {0.5f, 0.5f}, {10.0f, 0.3f}};
    for (float fs : rates)
        for (float f : transitions)
            for (const auto& g : gainPairs) {
                tarnshelf shelf;
                shelf.init(fs, f, g[0], g[1]);
                const auto relativeError = [&](double hz, double expected) {
                    return std::fabs(gainAt(shelf, hz, fs) / expected - 1.0);
                };
                SCOPED_TRACE(testing::Message()
                             << "fs " << fs << " f " << f << " gains " << g[0] << " -> " << g[1]);
                // Single-precision coefficients: their rounding is amplified by the
                // pole's closeness to the unit circle, which grows with fs / f.
                const double tolerance = 1e-6 + 4e-7 * fs / f;
                EXPECT_LT(relativeError(0.0, g[0]), tolerance);
                EXPECT_LT(relativeError(fs / 2.0, g[1]), tolerance);
                // At the transition, the geometric mean of the two gains.
                EXPECT_LT(relativeError(f, std::sqrt(double(g[0]) * g[1])), tolerance);
            }
}

// Inputs (found by search) that put c - t or c + t exactly at the guard's
// threshold or one float below it; the guard is strict, so only "below" trips.
class ShelfGuard : public testing::Test {
protected:
    static constexpr float kFs = 48000.0f;
    static float c(float f) { return float(std::cos(double(6.2831855f * f / kFs))); }
    static float t(float gLo, float gHi) {
        const float r = gLo / gHi;
        return (r - 1.0f) / (1.0f + r);
    }
    static constexpr float kThreshold = 0.001f;
};

TEST_F(ShelfGuard, ZeroCoefficientAtAndJustBelowTheThreshold) {
    const float below = std::nextafter(kThreshold, 0.0f);

    const float fAt = 11977.9248f, gAt = 1.00378633f;
    ASSERT_EQ(c(fAt) - t(gAt, 1.0f), kThreshold) << "search inputs no longer hit the threshold";
    tarnshelf at;
    at.init(kFs, fAt, gAt, 1.0f);
    EXPECT_NE(at.getcoef(0), 0.0f);
    // With the true quotient the design still meets its Nyquist gain (to the
    // precision that a quotient by 0.001 leaves).
    EXPECT_NEAR(gainAt(at, kFs / 2.0, kFs), 1.0, 1e-4);

    const float fBelow = 11962.5596f, gBelow = 1.00783205f;
    ASSERT_EQ(c(fBelow) - t(gBelow, 1.0f), below);
    tarnshelf guarded;
    guarded.init(kFs, fBelow, gBelow, 1.0f);
    EXPECT_EQ(guarded.getcoef(0), 0.0f);
    EXPECT_NE(guarded.getcoef(1), 0.0f);
    // The hard switch is visible: DC is still right, Nyquist no longer is.
    EXPECT_NEAR(gainAt(guarded, 0.0, kFs), gBelow, 1e-5);
    EXPECT_GT(std::fabs(gainAt(guarded, kFs / 2.0, kFs) - 1.0), 5e-4);
}
