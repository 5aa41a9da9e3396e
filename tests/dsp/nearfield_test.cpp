#include "measure.h"
#include "tarnhoafilt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <string>
#include <vector>

namespace {

using cd = std::complex<double>;
using measure::kPi;

float w(double metres, double rate) {
    return static_cast<float>(342.0 / (metres * rate));
}

// The analogue prototype g * B_m(w1/s) / B_m(w2/s) with the exact Bessel
// coefficients, evaluated where the bilinear transform (no prewarping) maps
// the digital frequency omega: w/s = (w/2) * (1 + 1/z) / (1 - 1/z).
cd bessel(int m, cd x) {
    static const double coefs[5][5] = {{1, 0, 0, 0, 0},
                                       {1, 1, 0, 0, 0},
                                       {1, 3, 3, 0, 0},
                                       {1, 6, 15, 15, 0},
                                       {1, 10, 45, 105, 105}};
    cd sum = 0.0, power = 1.0;
    for (int k = 0; k <= m; ++k) {
        sum += coefs[m][k] * power;
        power *= x;
    }
    return sum;
}

cd analogue(int m, double w1, double w2, double g, double omega) {
    const cd z = std::polar(1.0, omega);
    const cd warp = (1.0 + 1.0 / z) / (1.0 - 1.0 / z);
    return g * bessel(m, 0.5 * w1 * warp) / bessel(m, 0.5 * w2 * warp);
}

template <typename F> std::vector<float> impulseResponse(F&& f, int length, bool poles = false) {
    std::vector<float> h = measure::impulse(length);
    if (poles)
        f.process1(length, h.data(), h.data(), 1);
    else
        f.process(length, h.data(), h.data(), 1);
    return h;
}

template <typename F> F designed(float w1, float w2, float g) {
    F f;
    f.init(w1, w2, g);
    f.reset(); // settle the smoothers on the coefficients
    return f;
}

// Compare a settled filter's frequency response with the analogue prototype.
template <typename F>
void expectMatchesPrototype(int m, float w1, float w2, double rate, const std::string& what) {
    const std::vector<float> h = impulseResponse(designed<F>(w1, w2, 1.0f), 1 << 18);
    for (double hz : {0.0, 5.0, 20.0, 60.0, 200.0, 700.0, 2000.0, 8000.0, 0.45 * rate}) {
        const double omega = 2.0 * kPi * hz / rate;
        const cd expected = hz == 0.0 ? cd(std::pow(static_cast<double>(w1) / w2, m))
                                      : analogue(m, w1, w2, 1.0, omega);
        const cd got = measure::dtft(h, hz, rate);
        EXPECT_LE(std::abs(got - expected), 1e-4 * std::abs(expected))
            << what << " at " << hz << " Hz: got " << got << " expected " << expected;
    }
    // At Nyquist the response is exactly the gain.
    double nyquist = 0.0;
    for (size_t n = 0; n < h.size(); ++n) nyquist += (n & 1 ? -1.0 : 1.0) * h[n];
    EXPECT_NEAR(nyquist, 1.0, 1e-4) << what << " at Nyquist";
}

struct Case {
    double source, compensation, rate;
};
const Case kCases[] = {
    {1.0, 2.0, 48000}, {0.5, 4.0, 44100}, {3.0, 0.7, 96000}, {2.0, 2.0, 192000}, {4.0, 1.0, 48000}};

std::string name(const Case& c) {
    return std::to_string(c.source) + " m / " + std::to_string(c.compensation) + " m @ " +
           std::to_string(static_cast<int>(c.rate));
}

} // namespace

TEST(NearField, EveryOrderMatchesTheAnaloguePrototype) {
    for (const Case& c : kCases) {
        const float w1 = w(c.source, c.rate), w2 = w(c.compensation, c.rate);
        expectMatchesPrototype<NF_filt1>(1, w1, w2, c.rate, "order 1, " + name(c));
        expectMatchesPrototype<NF_filt2>(2, w1, w2, c.rate, "order 2, " + name(c));
        expectMatchesPrototype<NF_filt3>(3, w1, w2, c.rate, "order 3, " + name(c));
        expectMatchesPrototype<NF_filt4>(4, w1, w2, c.rate, "order 4, " + name(c));
    }
}

TEST(NearField, PlaneWaveSourceMatchesPrototypeAndBlocksDc) {
    // w1 = 0: the numerator degenerates to (1 - 1/z)^m, zero at DC.
    const float w2 = w(1.0, 48000);
    const std::vector<float> a = impulseResponse(designed<NF_filt3>(0.0f, w2, 1.0f), 1 << 16);
    const std::vector<float> b = impulseResponse(designed<NF_filt3>(0.0f, w2, 1.0f), 1 << 16, true);
    for (size_t n = 0; n < a.size(); ++n) ASSERT_NEAR(a[n], b[n], 1e-6f) << n;
    EXPECT_NEAR(std::abs(measure::dtft(b, 0.0, 48000.0)), 0.0, 1e-4);
    const double omega = 2.0 * kPi * 100.0 / 48000.0;
    EXPECT_NEAR(std::abs(measure::dtft(b, 100.0, 48000.0)),
                std::abs(analogue(3, 0.0, w2, 1.0, omega)), 1e-4);
}

TEST(NearField, ImpulseResponsesDecayOverTheWholeGrid) {
    const double distances[] = {0.5, 0.75, 1.0, 1.5, 2.0, 3.0, 4.0};
    const int length = 1 << 17;
    const auto smaller = [](float a, float b) { return std::fabs(a) < std::fabs(b); };
    for (double rate : {44100.0, 48000.0, 88200.0, 96000.0, 192000.0})
        for (double src : distances)
            for (double comp : distances) {
                const float w1 = src == 4.0 ? 0.0f : w(src, rate), w2 = w(comp, rate);
                const std::vector<float> h[4] = {
                    impulseResponse(designed<NF_filt1>(w1, w2, 1.0f), length),
                    impulseResponse(designed<NF_filt2>(w1, w2, 1.0f), length),
                    impulseResponse(designed<NF_filt3>(w1, w2, 1.0f), length),
                    impulseResponse(designed<NF_filt4>(w1, w2, 1.0f), length)};
                for (int m = 0; m < 4; ++m) {
                    const auto half = h[m].begin() + length / 2;
                    const float peak = *std::max_element(h[m].begin(), half, smaller);
                    const float tail = *std::max_element(half, h[m].end(), smaller);
                    ASSERT_TRUE(std::all_of(h[m].begin(), h[m].end(),
                                            [](float v) { return std::isfinite(v); }));
                    EXPECT_LT(std::fabs(tail), 1e-6f * std::fabs(peak))
                        << "order " << m + 1 << ", " << src << " m / " << comp << " m @ " << rate;
                }
            }
}

TEST(NearField, ResetSettlesCoefficientsExactlyAndClearsIntegrators) {
    NF_filt2 a = designed<NF_filt2>(w(1.0, 48000), w(2.0, 48000), 1.0f);
    std::vector<float> noise(500);
    for (size_t n = 0; n < noise.size(); ++n) noise[n] = std::sin(1.7f * n);
    a.process(500, noise.data(), noise.data(), 1);
    a.reset();
    for (int i = 0; i < NF_filt2::numStates; ++i) EXPECT_EQ(a.getstate(i), 0.0f);
    EXPECT_EQ(impulseResponse(a, 64),
              impulseResponse(designed<NF_filt2>(w(1.0, 48000), w(2.0, 48000), 1.0f), 64));
}

TEST(NearField, CoefficientChangeGlidesInLowOrdersAndJumpsInOrderFour) {
    const float w1 = w(1.0, 48000), w2 = w(2.0, 48000), w1b = w(0.5, 48000);
    NF_filt3 smooth = designed<NF_filt3>(w1, w2, 1.0f);
    NF_filt4 sharp = designed<NF_filt4>(w1, w2, 1.0f);
    std::vector<float> dc(2000, 1.0f), out3(2000), out4(2000);
    smooth.process(1000, dc.data(), out3.data(), 1);
    sharp.process(1000, dc.data(), out4.data(), 1);
    const float stateBefore = smooth.getstate(0);
    smooth.init(w1b, w2, 1.0f);
    sharp.init(w1b, w2, 1.0f);
    EXPECT_EQ(smooth.getstate(0), stateBefore); // integrators kept
    for (int i = 0; i < NF_filt4::numStates; ++i) EXPECT_EQ(sharp.getstate(i), 0.0f);
    smooth.process(1000, dc.data() + 1000, out3.data() + 1000, 1);
    // No step at the switch for the gliding filter.
    EXPECT_NEAR(out3[1000], out3[999], 0.01f * std::fabs(out3[999]) + 1e-3f);
}

TEST(NearField, CopyTakesCoefficientsOnlyExceptOrderFour) {
    const float w1 = w(1.0, 48000), w2 = w(2.0, 48000);
    NF_filt2 src2 = designed<NF_filt2>(w1, w2, 1.0f);
    NF_filt4 src4 = designed<NF_filt4>(w1, w2, 1.0f);
    std::vector<float> x(300, 0.5f);
    src2.process(300, x.data(), x.data(), 1);
    std::vector<float> y(300, 0.5f);
    src4.process(300, y.data(), y.data(), 1);

    NF_filt2 dst2;
    dst2.init(src2);
    NF_filt4 dst4;
    dst4.init(src4);
    for (int i = 0; i < NF_filt2::numCoefs; ++i) EXPECT_EQ(dst2.getcoef(i), src2.getcoef(i));
    for (int i = 0; i < NF_filt2::numStates; ++i) EXPECT_EQ(dst2.getstate(i), 0.0f);
    EXPECT_EQ(dst2.getsmoother(0).current(), 0.0f);
    for (int i = 0; i < NF_filt4::numCoefs; ++i) EXPECT_EQ(dst4.getcoef(i), src4.getcoef(i));
    for (int i = 0; i < NF_filt4::numStates; ++i) EXPECT_EQ(dst4.getstate(i), src4.getstate(i));
}
