#include "ALLPASS.h"

#include <algorithm>
#include <cmath>

float AllPass::x = 0.0f;

namespace {

// Keeps the filter memory out of subnormal numbers on decaying signals.
constexpr float kAntiDenormal = 1e-30f;

float decibelsToGain(float dB) {
    return static_cast<float>(std::pow(10.0, static_cast<double>(dB) / 20.0));
}

} // namespace

// A capacity of at least one sample lets any block go through in pieces.
AllPass::AllPass(int size)
    : fs(44100.0f), fc(700.0f), coef(0.0f),
      buffer(new float[std::max(size, 1)]), state{0.0f, 0.0f, 0.0f, 0.0f}, size(std::max(size, 1)) {
    SetCutOff(700.0f, 44100.0f);
}

void AllPass::SetCutOff(float fc, float fs) {
    this->fs = fs;
    this->fc = fc;
    const float c = static_cast<float>(std::cos(static_cast<double>(6.2831855f * (fc / fs))));
    // The root of a quadratic: -(1 - sin w) / cos w, a phase of -90 degrees at fc.
    const float fourCC = 4.0f * c * c;
    const float twoC = 2.0f * c;
    coef = static_cast<float>(-(2.0 - std::sqrt(4.0 - static_cast<double>(fourCC))) /
                              static_cast<double>(twoC));
}

void AllPass::Reset() {
    std::fill(state, state + 4, 0.0f);
}

void AllPass::DoAllPass(float* in, float* out, long n, float a) {
    if (n <= 0 || in == nullptr || out == nullptr) return;
    float& s = state[1];
    for (long i = 0; i < n; ++i) {
        x = in[i] - a * s;
        out[i] = s + a * x;
        s = x + kAntiDenormal;
    }
}

void AllPass::split(float* in, float* out, float g_lo, float g_hi, long n, HighBand polarity) {
    if (in == nullptr || out == nullptr) return;
    float* const p = buffer.get();
    for (long done = 0; done < n;) {
        const long m = std::min(n - done, static_cast<long>(size));
        float* const u = in + done;
        float* const y = out + done;
        DoAllPass(u, p, m, coef);
        if (polarity == HighBand::InputMinusAllPass) {
            for (long i = 0; i < m; ++i)
                y[i] = 0.5f * (u[i] + p[i]) * g_lo + 0.5f * (u[i] - p[i]) * g_hi;
        } else {
            for (long i = 0; i < m; ++i)
                y[i] = 0.5f * (p[i] + u[i]) * g_lo + 0.5f * (p[i] - u[i]) * g_hi;
        }
        done += m;
    }
}

void AllPass::ProcessAudio(float* io, float g_lo, float g_hi, long n) {
    split(io, io, g_lo, g_hi, n, HighBand::InputMinusAllPass);
}

void AllPass::ProcessAudio(float* in, float* out, float g_lo, float g_hi, long n) {
    split(in, out, g_lo, g_hi, n, HighBand::InputMinusAllPass);
}

void AllPass::ProcessAudio(float* io, float g_lo_dB, float g_hi_dB, long n, bool) {
    split(io, io, decibelsToGain(g_lo_dB), decibelsToGain(g_hi_dB), n, HighBand::AllPassMinusInput);
}

void AllPass::ProcessAudio(float* in, float* out, float g_lo_dB, float g_hi_dB, long n, bool) {
    split(in, out, decibelsToGain(g_lo_dB), decibelsToGain(g_hi_dB), n,
          HighBand::AllPassMinusInput);
}
