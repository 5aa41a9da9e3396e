#include "tarnhoafilt.h"

#include <cmath>

namespace {

// Keeps the integrators out of subnormal numbers on decaying signals.
constexpr float kAntiDenormal = kNearFieldAntiDenormal;

// Coefficients of the bilinear-transformed factor (1 + alpha*x) at b = w / 2.
struct FirstOrderFactor {
    float norm; // 1 + alpha*b
    float c;    // 2*alpha*b / norm
};

FirstOrderFactor firstOrder(float alpha, float w) {
    const float b = 0.5f * w;
    const float q = 1.0f + alpha * b;
    return {q, 2.0f * alpha * b / q};
}

// Coefficients of the factor (1 + alpha*x + beta*x^2) at b = w / 2.
struct SecondOrderFactor {
    float norm; // 1 + alpha*b + beta*b^2
    float c1;   // (2*alpha*b + t) / norm, t = 4*beta*b^2
    float c2;   // t / norm
};

SecondOrderFactor secondOrder(float alpha, float beta, float w) {
    const float b = 0.5f * w;
    const float p = 1.0f + alpha * b + beta * b * b;
    const float t = 4.0f * beta * b * b;
    return {p, (2.0f * alpha * b + t) / p, t / p};
}

// Reverse Bessel polynomials in factored form.
constexpr float kB3a = 3.6778f, kB3b = 6.4595f, kB3c = 2.3222f;
constexpr float kB4Aa = 4.2076f, kB4Ab = 11.4877f;
constexpr float kB4Ba = 5.7924f, kB4Bb = 9.1401f;

// One sample of a second-order integrator section; returns the section output.
inline float section2(float u, float a1, float a2, float d1, float d2, float& s1, float& s2) {
    const float x = u - d1 * s1 - d2 * s2 + kAntiDenormal;
    const float y = x + a1 * s1 + a2 * s2;
    s2 = s2 + s1;
    s1 = s1 + x;
    return y;
}

// Denominator-only second-order section (numerator (1 - 1/z)^2).
inline float section2Poles(float u, float d1, float d2, float& s1, float& s2) {
    const float x = u - (d1 * s1 + d2 * s2 + kAntiDenormal);
    s2 = s2 + s1;
    s1 = s1 + x;
    return x;
}

inline float section1(float u, float a, float d, float& s) {
    const float x = u - d * s + kAntiDenormal;
    const float y = x + a * s;
    s = s + x;
    return y;
}

// Without a branch per value: recovery asks this of every filter in every block.
template <int kStates, int kSmoothers>
bool allFinite(const float (&state)[kStates], const DeZipper (&smoothers)[kSmoothers]) {
    bool finite = true;
    for (float v : state) finite &= std::isfinite(v);
    for (const DeZipper& d : smoothers) finite &= std::isfinite(d.current());
    return finite;
}

inline float section1Poles(float u, float d, float& s) {
    const float x = u - (d * s + kAntiDenormal);
    s = s + x;
    return x;
}

} // namespace

// ---------------------------------------------------------------- order 1

NF_filt1::NF_filt1() : coef{0.0f, 0.0f, 0.0f}, state{0.0f} {}

void NF_filt1::init(float w1, float w2, float g) {
    const FirstOrderFactor z = firstOrder(1.0f, w1);
    const FirstOrderFactor p = firstOrder(1.0f, w2);
    coef[0] = (z.norm * g) / p.norm;
    coef[1] = z.c;
    coef[2] = p.c;
}

void NF_filt1::init(const NF_filt1& other) {
    for (int i = 0; i < numCoefs; ++i) coef[i] = other.coef[i];
}

void NF_filt1::process(int n, float* ip, float* op, int step) {
    float s = state[0];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float a = smoothers[1].smooth(coef[1]);
        const float d = smoothers[2].smooth(coef[2]);
        *op = section1(u * g, a, d, s);
        op += step;
    }
    state[0] = s;
}

void NF_filt1::process1(int n, float* ip, float* op, int step) {
    float s = state[0];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float d = smoothers[2].smooth(coef[2]);
        *op = section1Poles(u * g, d, s);
        op += step;
    }
    state[0] = s;
}

bool NF_filt1::isfinite() const {
    return allFinite(state, smoothers);
}

void NF_filt1::reset() {
    state[0] = 0.0f;
    for (int i = 0; i < numCoefs; ++i) smoothers[i].init(coef[i]);
}

// ---------------------------------------------------------------- order 2

NF_filt2::NF_filt2() : coef{}, state{0.0f, 0.0f} {}

void NF_filt2::init(float w1, float w2, float g) {
    const SecondOrderFactor z = secondOrder(3.0f, 3.0f, w1);
    const SecondOrderFactor p = secondOrder(3.0f, 3.0f, w2);
    coef[0] = (z.norm * g) / p.norm;
    coef[1] = z.c1;
    coef[2] = z.c2;
    coef[3] = p.c1;
    coef[4] = p.c2;
}

void NF_filt2::init(const NF_filt2& other) {
    for (int i = 0; i < numCoefs; ++i) coef[i] = other.coef[i];
}

void NF_filt2::process(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float a1 = smoothers[1].smooth(coef[1]);
        const float a2 = smoothers[2].smooth(coef[2]);
        const float d1 = smoothers[3].smooth(coef[3]);
        const float d2 = smoothers[4].smooth(coef[4]);
        *op = section2(u * g, a1, a2, d1, d2, s1, s2);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
}

void NF_filt2::process1(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float d1 = smoothers[3].smooth(coef[3]);
        const float d2 = smoothers[4].smooth(coef[4]);
        *op = section2Poles(u * g, d1, d2, s1, s2);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
}

bool NF_filt2::isfinite() const {
    return allFinite(state, smoothers);
}

void NF_filt2::reset() {
    state[0] = state[1] = 0.0f;
    for (int i = 0; i < numCoefs; ++i) smoothers[i].init(coef[i]);
}

// ---------------------------------------------------------------- order 3

NF_filt3::NF_filt3() : coef{}, state{0.0f, 0.0f, 0.0f} {}

void NF_filt3::init(float w1, float w2, float g) {
    const SecondOrderFactor pz = secondOrder(kB3a, kB3b, w1);
    const FirstOrderFactor qz = firstOrder(kB3c, w1);
    const SecondOrderFactor pp = secondOrder(kB3a, kB3b, w2);
    const FirstOrderFactor qp = firstOrder(kB3c, w2);
    coef[0] = ((qz.norm * (pz.norm * g)) / pp.norm) / qp.norm;
    coef[1] = pz.c1;
    coef[2] = pz.c2;
    coef[3] = qz.c;
    coef[4] = pp.c1;
    coef[5] = pp.c2;
    coef[6] = qp.c;
}

void NF_filt3::init(const NF_filt3& other) {
    for (int i = 0; i < numCoefs; ++i) coef[i] = other.coef[i];
}

void NF_filt3::process(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1], s3 = state[2];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float a1 = smoothers[1].smooth(coef[1]);
        const float a2 = smoothers[2].smooth(coef[2]);
        const float a3 = smoothers[3].smooth(coef[3]);
        const float d1 = smoothers[4].smooth(coef[4]);
        const float d2 = smoothers[5].smooth(coef[5]);
        const float d3 = smoothers[6].smooth(coef[6]);
        const float y = section2(u * g, a1, a2, d1, d2, s1, s2);
        *op = section1(y, a3, d3, s3);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
    state[2] = s3;
}

void NF_filt3::process1(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1], s3 = state[2];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float g = smoothers[0].smooth(coef[0]);
        const float d1 = smoothers[4].smooth(coef[4]);
        const float d2 = smoothers[5].smooth(coef[5]);
        const float d3 = smoothers[6].smooth(coef[6]);
        const float y = section2Poles(u * g, d1, d2, s1, s2);
        *op = section1Poles(y, d3, s3);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
    state[2] = s3;
}

bool NF_filt3::isfinite() const {
    return allFinite(state, smoothers);
}

void NF_filt3::reset() {
    state[0] = state[1] = state[2] = 0.0f;
    for (int i = 0; i < numCoefs; ++i) smoothers[i].init(coef[i]);
}

// ---------------------------------------------------------------- order 4

NF_filt4::NF_filt4() : coef{}, state{0.0f, 0.0f, 0.0f, 0.0f} {}

void NF_filt4::init(float w1, float w2, float g) {
    const SecondOrderFactor az = secondOrder(kB4Aa, kB4Ab, w1);
    const SecondOrderFactor bz = secondOrder(kB4Ba, kB4Bb, w1);
    const SecondOrderFactor ap = secondOrder(kB4Aa, kB4Ab, w2);
    const SecondOrderFactor bp = secondOrder(kB4Ba, kB4Bb, w2);
    coef[0] = ((bz.norm * (az.norm * g)) / ap.norm) / bp.norm;
    coef[1] = az.c1;
    coef[2] = az.c2;
    coef[3] = bz.c1;
    coef[4] = bz.c2;
    coef[5] = ap.c1;
    coef[6] = ap.c2;
    coef[7] = bp.c1;
    coef[8] = bp.c2;
    state[0] = state[1] = state[2] = state[3] = 0.0f;
}

void NF_filt4::init(const NF_filt4& other) {
    for (int i = 0; i < numCoefs; ++i) coef[i] = other.coef[i];
    for (int i = 0; i < numStates; ++i) state[i] = other.state[i];
}

void NF_filt4::process(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1], s3 = state[2], s4 = state[3];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float y = section2(u * coef[0], coef[1], coef[2], coef[5], coef[6], s1, s2);
        *op = section2(y, coef[3], coef[4], coef[7], coef[8], s3, s4);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
    state[2] = s3;
    state[3] = s4;
}

void NF_filt4::process1(int n, float* ip, float* op, int step) {
    float s1 = state[0], s2 = state[1], s3 = state[2], s4 = state[3];
    while (n-- > 0) {
        const float u = *ip;
        ip += step;
        const float y = section2Poles(u * coef[0], coef[5], coef[6], s1, s2);
        *op = section2Poles(y, coef[7], coef[8], s3, s4);
        op += step;
    }
    state[0] = s1;
    state[1] = s2;
    state[2] = s3;
    state[3] = s4;
}

bool NF_filt4::isfinite() const {
    for (float v : state)
        if (!std::isfinite(v)) return false;
    return true;
}

void NF_filt4::reset() {
    state[0] = state[1] = state[2] = state[3] = 0.0f;
}
