#pragma once

#include <memory>

// First-order all-pass H(z) = (a + 1/z) / (1 + a/z) and the two-band shelving
// equaliser built on it: the sum of input and all-pass output is the low band,
// their difference the high band, so the bands stay phase-matched and add back
// up to the input.
//
// The scratch value x of DoAllPass is one static variable shared by every
// instance: all AllPass objects must run on one thread (or be serialised).
//
// Every ProcessAudio variant reads the whole block before writing it, so the
// in-place forms are safe. Blocks longer than the scratch buffer are processed
// in buffer-sized pieces, with the same result as one piece.
class AllPass {
public:
    explicit AllPass(int size);
    AllPass(const AllPass&) = delete;
    AllPass& operator=(const AllPass&) = delete;

    // Note the argument order: frequency first, sample rate second.
    void SetCutOff(float fc, float fs);
    void Reset();

    // n samples of the all-pass with coefficient a, in to out (may be equal).
    void DoAllPass(float* in, float* out, long n, float a);

    // Linear gains; the high band is input minus all-pass output.
    void ProcessAudio(float* io, float g_lo, float g_hi, long n);
    void ProcessAudio(float* in, float* out, float g_lo, float g_hi, long n);
    // Gains in decibels (the bool only selects the overload). The high band is
    // all-pass output minus input, the opposite polarity of the linear forms: at
    // 0 dB on both bands these return the all-pass output, not the input.
    void ProcessAudio(float* io, float g_lo_dB, float g_hi_dB, long n, bool);
    void ProcessAudio(float* in, float* out, float g_lo_dB, float g_hi_dB, long n, bool);

    float getfs() const { return fs; }
    float getfc() const { return fc; }
    float getcoef() const { return coef; }
    int getsize() const { return size; }

private:
    enum class HighBand { InputMinusAllPass, AllPassMinusInput };
    void split(float* in, float* out, float g_lo, float g_hi, long n, HighBand polarity);

    static float x;

    float fs;
    float fc;
    float coef;
    std::unique_ptr<float[]> buffer;
    float state[4];
    int size;
};
