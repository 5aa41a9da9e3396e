#pragma once

#include "Dezipper.h"

// Near-field compensation filters for ambisonic channels of order 1 to 4.
//
// Each class is the bilinear transform (no prewarping) of
//     H_m(s) = g * B_m(w1 / s) / B_m(w2 / s)
// with B_m the reverse Bessel polynomial of order m in factored form, w1 the
// normalised frequency of the source distance and w2 that of the compensation
// distance. The sections are built around integrators rather than delay lines,
// which keeps them well conditioned at the very low corner frequencies that
// distances of metres give.
//
// process() filters with numerator and denominator (finite source distance);
// process1() with the denominator alone (source at infinity, numerator taken
// as (1 - 1/z)^m). Both read each sample before writing it, so ip == op is fine.
//
// Orders 1 to 3 glide their coefficients through smoothers, so a new design
// while audio plays causes no step. Order 4 takes new coefficients at once and
// clears its integrators on every design.
//
// integrator() and smoother() give write access for the vector path, which runs
// the filters of one order side by side and hands their states back.

// Keeps the integrators out of subnormal numbers on decaying signals.
inline constexpr float kNearFieldAntiDenormal = 1e-30f;

class NF_filt1 {
public:
    NF_filt1();
    void init(float w1, float w2, float g);
    void init(const NF_filt1& other); // copies the coefficients only
    void process(int n, float* ip, float* op, int step);
    void process1(int n, float* ip, float* op, int step);
    void reset();
    // False once a state or a smoothed coefficient is NaN or infinite.
    bool isfinite() const;

    float getcoef(int i) const { return coef[i]; }
    float getstate(int i) const { return state[i]; }
    const DeZipper& getsmoother(int i) const { return smoothers[i]; }
    float& integrator(int i) { return state[i]; }
    DeZipper& smoother(int i) { return smoothers[i]; }
    static constexpr int numCoefs = 3;
    static constexpr int numStates = 1;

private:
    float coef[3];
    float state[1];
    DeZipper smoothers[3];
};

class NF_filt2 {
public:
    NF_filt2();
    void init(float w1, float w2, float g);
    void init(const NF_filt2& other); // copies the coefficients only
    void process(int n, float* ip, float* op, int step);
    void process1(int n, float* ip, float* op, int step);
    void reset();
    // False once a state or a smoothed coefficient is NaN or infinite.
    bool isfinite() const;

    float getcoef(int i) const { return coef[i]; }
    float getstate(int i) const { return state[i]; }
    const DeZipper& getsmoother(int i) const { return smoothers[i]; }
    float& integrator(int i) { return state[i]; }
    DeZipper& smoother(int i) { return smoothers[i]; }
    static constexpr int numCoefs = 5;
    static constexpr int numStates = 2;

private:
    float coef[5];
    float state[2];
    DeZipper smoothers[5];
};

class NF_filt3 {
public:
    NF_filt3();
    void init(float w1, float w2, float g);
    void init(const NF_filt3& other); // copies the coefficients only
    void process(int n, float* ip, float* op, int step);
    void process1(int n, float* ip, float* op, int step);
    void reset();
    // False once a state or a smoothed coefficient is NaN or infinite.
    bool isfinite() const;

    float getcoef(int i) const { return coef[i]; }
    float getstate(int i) const { return state[i]; }
    const DeZipper& getsmoother(int i) const { return smoothers[i]; }
    float& integrator(int i) { return state[i]; }
    DeZipper& smoother(int i) { return smoothers[i]; }
    static constexpr int numCoefs = 7;
    static constexpr int numStates = 3;

private:
    float coef[7];
    float state[3];
    DeZipper smoothers[7];
};

class NF_filt4 {
public:
    NF_filt4();
    void init(float w1, float w2, float g); // also clears the integrators
    void init(const NF_filt4& other);       // copies coefficients and integrators
    void process(int n, float* ip, float* op, int step);
    void process1(int n, float* ip, float* op, int step);
    void reset();
    // False once a state or a smoothed coefficient is NaN or infinite.
    bool isfinite() const;

    float getcoef(int i) const { return coef[i]; }
    float getstate(int i) const { return state[i]; }
    static constexpr int numCoefs = 9;
    static constexpr int numStates = 4;

private:
    float coef[9];
    float state[4];
};
