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

void setDirection(ZelAmbisonicEncoder& enc, float azimNorm, float elevNorm) {
    enc.setazim(azimNorm);
    enc.setelev(elevNorm);
}

} // namespace

TEST(EncoderGains, RandomDirectionsMatchSn3dHarmonics) {
    std::mt19937 rng(1234);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(0.25f);
    double worst = 0.0;
    for (int i = 0; i < 400; ++i) {
        setDirection(enc, unit(rng), unit(rng));
        const double az = enc.getazimdisplay() * kPi / 180.0;
        const double el = enc.getelevdisplay() * kPi / 180.0;
        const std::vector<double> ref = sn3d(az, el, 3);
        for (int c = 0; c < 16; ++c) {
            const double err = std::fabs(enc.getgain(c) - ref[c]);
            worst = std::max(worst, err);
            ASSERT_NEAR(enc.getgain(c), ref[c], 1e-6) << "direction " << i << " channel " << c;
        }
    }
    RecordProperty("worst_error", std::to_string(worst));
}

TEST(EncoderGains, InteriorPanningScalesOrderNByDistancePowerN) {
    std::mt19937 rng(99);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    const int orderOf[16] = {0, 1, 1, 1, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3};
    ZelAmbisonicEncoder off(kAmbi3P); // compensation off by default
    for (int i = 0; i < 100; ++i) {
        setDirection(off, unit(rng), unit(rng));
        off.setdist(unit(rng));
        const double r = off.getdistdisplay() / 4.0;
        const double az = off.getazimdisplay() * kPi / 180.0;
        const double el = off.getelevdisplay() * kPi / 180.0;
        const std::vector<double> ref = sn3d(az, el, 3);
        for (int c = 0; c < 16; ++c)
            ASSERT_NEAR(off.getgain(c), ref[c] * std::pow(r, orderOf[c]), 2e-6)
                << "position " << i << " channel " << c;
    }
}
