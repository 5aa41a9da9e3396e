// The lane kernel's body, compiled once per instruction set: the including
// file defines ZEL_LANES_TARGET (a target attribute string without "fma") and
// ZEL_LANES_ENTRY (the entry's name). Everything else here has internal
// linkage, so the two builds never mix, and only these functions, never the
// rest of the library, use the wider instructions.

#include "EncoderLanes.h"
#include "tarnhoafilt.h"

#include <immintrin.h>

#define ZEL_LANES_FN static inline __attribute__((target(ZEL_LANES_TARGET), always_inline))
#define ZEL_LANES_METHOD inline __attribute__((target(ZEL_LANES_TARGET), always_inline))

#include "EncoderLanesGainStage.h"

namespace {

// The near-field sections of tarnhoafilt.cpp, operation by operation.
ZEL_LANES_FN V section1(V u, V a, V d, V& s) {
    const V x = add(sub(u, mul(d, s)), _mm256_set1_ps(kNearFieldAntiDenormal));
    const V y = add(x, mul(a, s));
    s = add(s, x);
    return y;
}

ZEL_LANES_FN V section1Poles(V u, V d, V& s) {
    const V x = sub(u, add(mul(d, s), _mm256_set1_ps(kNearFieldAntiDenormal)));
    s = add(s, x);
    return x;
}

ZEL_LANES_FN V section2(V u, V a1, V a2, V d1, V d2, V& s1, V& s2) {
    const V x = add(sub(sub(u, mul(d1, s1)), mul(d2, s2)), _mm256_set1_ps(kNearFieldAntiDenormal));
    const V y = add(add(x, mul(a1, s1)), mul(a2, s2));
    s2 = add(s2, s1);
    s1 = add(s1, x);
    return y;
}

ZEL_LANES_FN V section2Poles(V u, V d1, V d2, V& s1, V& s2) {
    const V x = sub(u, add(add(mul(d1, s1), mul(d2, s2)), _mm256_set1_ps(kNearFieldAntiDenormal)));
    s2 = add(s2, s1);
    s1 = add(s1, x);
    return x;
}

// Channels 4q..4q+3 of rows 0..7 (8 samples) to the channels' outputs from
// sample i on: each row's 128-bit half beside the same half of the row four
// samples on, then a 4x4 transpose within each half.
ZEL_LANES_FN void transposeQuad(const float (*rows)[16], int q, float* const* out, int i) {
    const int f = 4 * q;
    const V r0 = pairHalves(rows[0] + f, rows[4] + f), r1 = pairHalves(rows[1] + f, rows[5] + f);
    const V r2 = pairHalves(rows[2] + f, rows[6] + f), r3 = pairHalves(rows[3] + f, rows[7] + f);
    const V t0 = _mm256_unpacklo_ps(r0, r1), t1 = _mm256_unpackhi_ps(r0, r1);
    const V t2 = _mm256_unpacklo_ps(r2, r3), t3 = _mm256_unpackhi_ps(r2, r3);
    _mm256_storeu_ps(out[f] + i, _mm256_shuffle_ps(t0, t2, 0x44));
    _mm256_storeu_ps(out[f + 1] + i, _mm256_shuffle_ps(t0, t2, 0xEE));
    _mm256_storeu_ps(out[f + 2] + i, _mm256_shuffle_ps(t1, t3, 0x44));
    _mm256_storeu_ps(out[f + 3] + i, _mm256_shuffle_ps(t1, t3, 0xEE));
}

ZEL_LANES_FN V loadIf(bool wanted, const float* p) {
    return wanted ? _mm256_load_ps(p) : _mm256_setzero_ps();
}

// Compensation off with gains at rest: each channel is the input times its
// gain, channel by channel; the channel that holds the input comes last.
__attribute__((target(ZEL_LANES_TARGET))) void restingGainsOnly(const ZelLaneBlock& b,
                                                                const float* gain) {
    // Locals: the compiler cannot tell that the stores leave the block alone.
    const int n = b.n;
    const float* in = b.in;
    float* const* outs = b.out;
    int last = 15;
    for (int c = 0; c < 16; ++c)
        if (outs[c] == in) last = c;
    for (int k = 0; k < 16; ++k) {
        const int c = k == 15 ? last : k == last ? 15 : k;
        const V g = bcast(gain + c);
        float* out = outs[c];
        int i = 0;
        // Four vectors a turn: the loop is bound by its stores, and a turn of
        // one store would cost more than a store wherever the code lands.
        for (; i + 32 <= n; i += 32)
            for (int k = 0; k < 32; k += 8)
                _mm256_storeu_ps(out + i + k, mul(_mm256_loadu_ps(in + i + k), g));
        for (; i + 8 <= n; i += 8) _mm256_storeu_ps(out + i, mul(_mm256_loadu_ps(in + i), g));
        for (; i < n; ++i) out[i] = in[i] * gain[c];
    }
}

template <int kMode, GainMotion kGains, bool kRestingCoefs>
__attribute__((target(ZEL_LANES_TARGET))) void run(ZelLaneBlock& b, const GainStage& stage,
                                                   const float* restingCoef) {
    // A local copy, which the output stores cannot touch: its targets stay in
    // registers and their products with the smoothing coefficient leave the loop.
    const GainStage gains = stage;
    GainStage::State gainState = gains.start();
    // With compensation off the filters' states are neither read nor handed back.
    constexpr bool kFilters = kMode != kLanesOff;
    const V coefTargetLo = loadIf(kFilters, b.coefTarget);
    const V coefTargetHi = loadIf(kFilters, b.coefTarget + 8);
    V coefStateLo = loadIf(kFilters, b.coefState), coefStateHi = loadIf(kFilters, b.coefState + 8);
    // A far source steps only the smoothers of g and the poles (see process1).
    const V all = _mm256_castsi256_ps(_mm256_set1_epi32(-1)), none = _mm256_setzero_ps();
    const V advanceLo = kMode == kLanesNear ? all : _mm256_blend_ps(none, all, 0xCD);
    const V advanceHi = kMode == kLanesNear ? all : _mm256_blend_ps(none, all, 0x71);
    V s1 = loadIf(kFilters, b.order1);
    V s21 = loadIf(kFilters, b.order2[0]), s22 = loadIf(kFilters, b.order2[1]);
    V s31 = loadIf(kFilters, b.order3[0]), s32 = loadIf(kFilters, b.order3[1]);
    V s33 = loadIf(kFilters, b.order3[2]);

    const int n = b.n;
    const float* in = b.in;
    float* const* outs = b.out;
    // Rows of two groups of 8 samples: one being computed, and the one
    // before it, whose outputs are written in between this group's steps.
    // Written after their own group, they would wait for its last step while
    // they fill the scheduler ahead of the next group's recursions; spread
    // over the next group, they fill the recursions' latency instead. So a
    // group's outputs are written after all its input is read, and an input
    // that shares its buffer with an output is read before it is overwritten.
    alignas(64) float rows[2][8][16];
    alignas(32) float coefRows[8][16];
    for (int i = 0, g = 0; i < n; i += 8, g ^= 1) {
        const int m = n - i < 8 ? n - i : 8;
        float(*cur)[16] = rows[g];
        const float(*prev)[16] = rows[g ^ 1];
        const bool pending = i > 0; // every group but the last is whole
        for (int j = 0; j < m; ++j) {
            if (!kFilters) {
                gains.template storeProducts<kGains>(in + i + j, gainState, cur[j]);
            } else {
                const float* cf = restingCoef;
                if (!kRestingCoefs) {
                    _mm256_store_ps(coefRows[j], smoothSome(coefTargetLo, coefStateLo, advanceLo));
                    _mm256_store_ps(coefRows[j] + 8,
                                    smoothSome(coefTargetHi, coefStateHi, advanceHi));
                    cf = coefRows[j];
                }
                Groups v = gains.template step<kGains>(in + i + j, gainState);
                if (kMode == kLanesNear) {
                    const V y1 =
                        section1(mul(v.a, bcast(cf + 0)), bcast(cf + 1), bcast(cf + 2), s1);
                    v.a = _mm256_blend_ps(y1, v.a, 0x01); // W keeps its gain stage
                    v.b = section2(mul(v.b, bcast(cf + 3)), bcast(cf + 4), bcast(cf + 5),
                                   bcast(cf + 6), bcast(cf + 7), s21, s22);
                    const V y3 = section2(mul(v.c, bcast(cf + 8)), bcast(cf + 9), bcast(cf + 10),
                                          bcast(cf + 12), bcast(cf + 13), s31, s32);
                    v.c = section1(y3, bcast(cf + 11), bcast(cf + 14), s33);
                } else {
                    const V y1 = section1Poles(mul(v.a, bcast(cf + 0)), bcast(cf + 2), s1);
                    v.a = _mm256_blend_ps(y1, v.a, 0x01);
                    v.b = section2Poles(mul(v.b, bcast(cf + 3)), bcast(cf + 6), bcast(cf + 7), s21,
                                        s22);
                    const V y3 = section2Poles(mul(v.c, bcast(cf + 8)), bcast(cf + 12),
                                               bcast(cf + 13), s31, s32);
                    v.c = section1Poles(y3, bcast(cf + 14), s33);
                }
                _mm256_store_ps(cur[j], _mm256_blend_ps(v.a, v.b, 0xF0));
                _mm256_store_ps(cur[j] + 8, _mm256_blend_ps(v.b, v.c, 0xFE));
            }
            if (pending && (j & 1)) transposeQuad(prev, j >> 1, outs, i - 8);
        }
        if (m < 8) {
            for (int q = m / 2; pending && q < 4; ++q) transposeQuad(prev, q, outs, i - 8);
            for (int c = 0; c < 16; ++c)
                for (int j = 0; j < m; ++j) outs[c][i + j] = cur[j][c];
        }
    }
    if (n > 0 && n % 8 == 0)
        for (int q = 0; q < 4; ++q) transposeQuad(rows[(n / 8 - 1) & 1], q, outs, n - 8);

    if (kGains == kGainsGlideAwayFromZero) gainState = GainStage::withTinyStep(gainState);
    GainStage::store(b, gainState);
    if (!kFilters) return;
    _mm256_store_ps(b.coefState, coefStateLo);
    _mm256_store_ps(b.coefState + 8, coefStateHi);
    _mm256_store_ps(b.order1, s1);
    _mm256_store_ps(b.order2[0], s21);
    _mm256_store_ps(b.order2[1], s22);
    _mm256_store_ps(b.order3[0], s31);
    _mm256_store_ps(b.order3[1], s32);
    _mm256_store_ps(b.order3[2], s33);
}

// Smoothers that sit at a fixed point return one value for the whole block;
// the loop then skips them.
template <int kMode, GainMotion kGains>
__attribute__((target(ZEL_LANES_TARGET))) void runGains(ZelLaneBlock& b, const GainStage& gains,
                                                        bool coefsRest, const float* coef) {
    if (coefsRest)
        run<kMode, kGains, true>(b, gains, coef);
    else
        run<kMode, kGains, false>(b, gains, coef);
}

template <int kMode>
__attribute__((target(ZEL_LANES_TARGET))) void runMode(ZelLaneBlock& b, const GainStage& gains,
                                                       GainMotion motion, bool coefsRest,
                                                       const float* coef) {
    if (motion == kGainsRest) runGains<kMode, kGainsRest>(b, gains, coefsRest, coef);
    if (motion == kGainsGlide) runGains<kMode, kGainsGlide>(b, gains, coefsRest, coef);
    if (motion == kGainsGlideAwayFromZero)
        runGains<kMode, kGainsGlideAwayFromZero>(b, gains, coefsRest, coef);
}

} // namespace

__attribute__((target(ZEL_LANES_TARGET))) void ZEL_LANES_ENTRY(ZelLaneBlock& b) {
    alignas(64) float gain[16];
    alignas(32) float coef[16];
    GainStage gains;
    gains.load(b);
    const bool gainsRest = gains.settled(gain);
    b.gainsRested = gainsRest;
    b.coefsRested = true;
    const GainMotion motion = gainsRest                                 ? kGainsRest
                              : awayFromZero(b.gainTarget, b.gainState) ? kGainsGlideAwayFromZero
                                                                        : kGainsGlide;
    if (b.mode == kLanesOff) {
        if (motion == kGainsRest)
            restingGainsOnly(b, gain);
        else if (motion == kGainsGlideAwayFromZero)
            run<kLanesOff, kGainsGlideAwayFromZero, true>(b, gains, coef);
        else
            run<kLanesOff, kGainsGlide, true>(b, gains, coef);
        return;
    }
    V lo, hi;
    const bool near = b.mode == kLanesNear;
    const bool loRests =
        settled(_mm256_load_ps(b.coefTarget), _mm256_load_ps(b.coefState), near ? 0xFF : 0xCD, lo);
    const bool hiRests = settled(_mm256_load_ps(b.coefTarget + 8), _mm256_load_ps(b.coefState + 8),
                                 near ? 0x7F : 0x71, hi);
    _mm256_store_ps(coef, lo);
    _mm256_store_ps(coef + 8, hi);
    b.coefsRested = loRests && hiRests;
    if (near)
        runMode<kLanesNear>(b, gains, motion, loRests && hiRests, coef);
    else
        runMode<kLanesFar>(b, gains, motion, loRests && hiRests, coef);
}
