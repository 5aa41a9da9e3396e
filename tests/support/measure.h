#pragma once

// Measurement helpers for the filter tests: frequency responses are taken from
// impulse responses by a DFT in double precision, independent of the filters'
// own formulas.

#include <cmath>
#include <complex>
#include <random>
#include <vector>

namespace measure {

constexpr double kPi = 3.14159265358979323846;

inline std::vector<float> impulse(std::size_t length) {
    std::vector<float> x(length, 0.0f);
    if (length > 0) x[0] = 1.0f;
    return x;
}

// Reproducible white noise in -1..1.
inline std::vector<float> noise(std::size_t length, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    std::vector<float> x(length);
    for (float& v : x) v = uniform(generator);
    return x;
}

// Sum of h[n] * exp(-j*w*n); the rotation is renormalised now and then so that
// it stays on the unit circle over long responses.
template <typename Sample>
std::complex<double> dtft(const std::vector<Sample>& h, double hz, double fs) {
    const double w = 2.0 * kPi * hz / fs;
    const std::complex<double> step(std::cos(w), -std::sin(w));
    std::complex<double> rotation(1.0, 0.0), sum(0.0, 0.0);
    for (std::size_t n = 0; n < h.size(); ++n) {
        sum += static_cast<double>(h[n]) * rotation;
        rotation *= step;
        if ((n & 1023) == 1023) rotation = std::polar(1.0, -w * static_cast<double>(n + 1));
    }
    return sum;
}

inline double degrees(double radians) {
    return radians * 180.0 / kPi;
}

// Phase angle in degrees, wrapped into (-180, 180].
inline double phaseDegrees(std::complex<double> z) {
    return degrees(std::arg(z));
}

inline double wrapDegrees(double d) {
    while (d > 180.0) d -= 360.0;
    while (d <= -180.0) d += 360.0;
    return d;
}

} // namespace measure
