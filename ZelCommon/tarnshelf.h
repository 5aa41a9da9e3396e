#pragma once

// Coefficients of a first-order shelving filter
//     H(z) = k * (1 + a/z) / (1 + b/z)
// with gain g_lo at 0 Hz, g_hi at the Nyquist frequency and the geometric mean
// sqrt(g_lo * g_hi) at the transition frequency. The class only designs; the
// caller runs H(z) itself, one sample at a time.
class tarnshelf {
public:
    tarnshelf() : coef{0.0f, 0.0f, 1.0f} {} // a flat, unit-gain filter until init()

    // fs and f in Hz, gains linear (not in decibels).
    void init(float fs, float f, float g_lo, float g_hi);

    // 0: zero coefficient a, 1: pole coefficient b, 2: gain k; other indices read 0.
    float getcoef(int i) const { return (i >= 0 && i < 3) ? coef[i] : 0.0f; }

private:
    float coef[3];
};
