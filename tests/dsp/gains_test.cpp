#include "AmbiEncoderClass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr double kPi = 3.141592653589793;

double factorial(int n) {
    double f = 1.0;
    for (int i = 2; i <= n; ++i) f *= i;
    return f;
}

// Associated Legendre function P_n^m(t) without the Condon-Shortley phase.
double legendre(int n, int m, double t) {
    double pmm = 1.0;
    const double s = std::sqrt((1.0 - t) * (1.0 + t));
    for (int i = 1; i <= m; ++i) pmm *= (2.0 * i - 1.0) * s;
    if (n == m) return pmm;
    double pm1m = t * (2.0 * m + 1.0) * pmm;
    if (n == m + 1) return pm1m;
    double pnm = 0.0;
    for (int l = m + 2; l <= n; ++l) {
        pnm = ((2.0 * l - 1.0) * t * pm1m - (l + m - 1.0) * pmm) / (l - m);
        pmm = pm1m;
        pm1m = pnm;
    }
    return pnm;
}

// Real spherical harmonics, SN3D, in ACN order, computed independently of the
// encoder's closed-form polynomials.
std::vector<double> sn3d(double azim, double elev, int order) {
    std::vector<double> y((order + 1) * (order + 1));
    for (int n = 0; n <= order; ++n) {
        for (int m = -n; m <= n; ++m) {
            const int am = m < 0 ? -m : m;
            const double norm =
                std::sqrt((am == 0 ? 1.0 : 2.0) * factorial(n - am) / factorial(n + am));
            const double p = legendre(n, am, std::sin(elev));
            const double trig = m >= 0 ? std::cos(am * azim) : std::sin(am * azim);
            y[n * n + n + m] = norm * p * trig;
        }
    }
    return y;
}

// The encoder's gains against the harmonics of the direction it shows, the
// order n scaled by r^n.
testing::AssertionResult gainsMatch(const ZelAmbisonicEncoder& enc, double r, double tolerance) {
    const int orderOf[16] = {0, 1, 1, 1, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3};
    const std::vector<double> ref =
        sn3d(enc.getazimdisplay() * kPi / 180.0, enc.getelevdisplay() * kPi / 180.0, 3);
    for (int c = 0; c < 16; ++c) {
        const double expected = ref[c] * std::pow(r, orderOf[c]);
        if (std::fabs(enc.getgain(c) - expected) > tolerance)
            return testing::AssertionFailure()
                   << "channel " << c << ": " << enc.getgain(c) << " instead of " << expected;
    }
    return testing::AssertionSuccess();
}

} // namespace

TEST(EncoderGains, RandomDirectionsMatchSn3dHarmonics) {
    std::mt19937 rng(1234);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(0.25f);
    for (int i = 0; i < 400; ++i) {
        enc.setazim(unit(rng));
        enc.setelev(unit(rng));
        ASSERT_TRUE(gainsMatch(enc, 1.0, 1e-6)) << "direction " << i;
    }
}

TEST(EncoderGains, InteriorPanningScalesOrderNByDistancePowerN) {
    std::mt19937 rng(99);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    ZelAmbisonicEncoder off(kAmbi3P); // compensation off by default
    for (int i = 0; i < 100; ++i) {
        off.setazim(unit(rng));
        off.setelev(unit(rng));
        off.setdist(unit(rng));
        ASSERT_TRUE(gainsMatch(off, off.getdistdisplay() / 4.0, 2e-6)) << "position " << i;
    }
}
