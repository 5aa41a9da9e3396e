// The lane operations and the gain smoothers of the lane kernel. Part of
// its body (see EncoderLanesKernel.h), included once in each build of it:
// it uses the includer's ZEL_LANES_FN, ZEL_LANES_METHOD and ZEL_LANES_WIDE.

#include "Dezipper.h"
#include "EncoderLanes.h"

#include <immintrin.h>

namespace {

using V = __m256;

ZEL_LANES_FN V add(V a, V b) {
    return _mm256_add_ps(a, b);
}
ZEL_LANES_FN V sub(V a, V b) {
    return _mm256_sub_ps(a, b);
}
ZEL_LANES_FN V mul(V a, V b) {
    return _mm256_mul_ps(a, b);
}
ZEL_LANES_FN V bcast(const float* p) {
    return _mm256_broadcast_ss(p);
}

// DeZipper::smooth in every lane (without its tiny constant where that
// cannot change the outputs, see GainMotion).
template <bool kTinyStep = true> ZEL_LANES_FN V smooth(V target, V& state) {
    const V y = add(mul(_mm256_set1_ps(DeZipper::kOneMinusCoef), target),
                    mul(state, _mm256_set1_ps(DeZipper::kCoef)));
    state = kTinyStep ? add(y, _mm256_set1_ps(DeZipper::kAntiDenormal)) : y;
    return y;
}

// The same, but only the lanes whose sign bit is set in `advance` step on.
ZEL_LANES_FN V smoothSome(V target, V& state, V advance) {
    V next = state;
    const V y = smooth(target, next);
    state = _mm256_blendv_ps(state, next, advance);
    return y;
}

// True if every lane of `used` (a bit per lane) has reached a fixed point of
// its smoother: then each step returns `value` and leaves the state as it is.
ZEL_LANES_FN bool settled(V target, V state, int used, V& value) {
    V next = state;
    value = smooth(target, next);
    const __m256i same = _mm256_cmpeq_epi32(_mm256_castps_si256(next), _mm256_castps_si256(state));
    return (_mm256_movemask_ps(_mm256_castsi256_ps(same)) & used) == used;
}

// How the gain smoothers move in a block. A gliding step is a product, a sum
// and the addition of a tiny constant (1e-30) that keeps decaying states out
// of subnormal numbers. With every target at least 2^-40 in magnitude, the
// first product is at least 2^-49, so the sum is either exactly 0 (the two
// products cancel) or at least 2^-73 in magnitude (exact cancellation leaves
// a multiple of the products' last place, and anything else more), where the
// constant lies below half a unit in the last place and changes no bit. After
// a 0 the constant does become the state, but the next step's sum is again
// the first product's, which the constant cannot move. So the steps may leave
// it out, a recursion a third shorter, as long as the last state takes it:
// every output and the final state keep the scalar loop's bits.
enum GainMotion { kGainsRest, kGainsGlide, kGainsGlideAwayFromZero };

// Four floats from lo in the low half, four from hi in the high half.
ZEL_LANES_FN V pairHalves(const float* lo, const float* hi) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_load_ps(lo)), _mm_load_ps(hi), 1);
}

// The caller fills the block's gains and states in 16-byte pieces just
// before the kernel runs. Loaded in the same pieces, each comes straight from
// its store; a wider load would wait until the stores reach the cache.
ZEL_LANES_FN V loadPieces(const float* p) {
    return pairHalves(p, p + 4);
}

// True if every target is finite and at least 2^-40 in magnitude and every
// state finite.
ZEL_LANES_FN bool awayFromZero(const float* target, const float* state) {
    const V magnitude = _mm256_castsi256_ps(_mm256_set1_epi32(0x7fffffff));
    const V least = _mm256_set1_ps(0x1p-40f), most = _mm256_set1_ps(3.40282347e38f);
    int ok = 0xFF;
    for (int h = 0; h < 16; h += 8) {
        const V t = _mm256_and_ps(loadPieces(target + h), magnitude);
        const V s = _mm256_and_ps(loadPieces(state + h), magnitude);
        // Ordered compares: a NaN fails them.
        ok &= _mm256_movemask_ps(_mm256_cmp_ps(t, least, _CMP_GE_OQ)) &
              _mm256_movemask_ps(_mm256_cmp_ps(t, most, _CMP_LE_OQ)) &
              _mm256_movemask_ps(_mm256_cmp_ps(s, most, _CMP_LE_OQ));
    }
    return ok == 0xFF;
}

// The gain smoothers in channel order, and each sample's gain stage: the
// input times the smoothed gains, as the groups A (channels 0..7), B (8, then
// 1..7) and C (8..15); the lanes a group does not own carry other channels.
struct Groups {
    V a, b, c;
};

#ifdef ZEL_LANES_WIDE
// All 16 smoothers in one 16-lane vector.
struct GainStage {
    using State = __m512;
    __m512 target, state, atRest;
    template <bool kTinyStep = true> static ZEL_LANES_METHOD __m512 smooth16(__m512 t, __m512& s) {
        const __m512 y = _mm512_add_ps(_mm512_mul_ps(_mm512_set1_ps(DeZipper::kOneMinusCoef), t),
                                       _mm512_mul_ps(s, _mm512_set1_ps(DeZipper::kCoef)));
        s = kTinyStep ? _mm512_add_ps(y, _mm512_set1_ps(DeZipper::kAntiDenormal)) : y;
        return y;
    }
    static ZEL_LANES_METHOD __m512 loadPieces16(const float* p) {
        const __m512d lo = _mm512_castpd256_pd512(_mm256_castps_pd(loadPieces(p)));
        return _mm512_castpd_ps(_mm512_insertf64x4(lo, _mm256_castps_pd(loadPieces(p + 8)), 1));
    }
    ZEL_LANES_METHOD void load(const ZelLaneBlock& b) {
        target = loadPieces16(b.gainTarget);
        state = loadPieces16(b.gainState);
    }
    ZEL_LANES_METHOD State start() const { return state; }
    ZEL_LANES_METHOD bool settled(float* value) {
        __m512 next = state;
        atRest = smooth16(target, next);
        _mm512_store_ps(value, atRest);
        const __m512i a = _mm512_castps_si512(next), b = _mm512_castps_si512(state);
        return _mm512_cmpneq_epi32_mask(a, b) == 0;
    }
    ZEL_LANES_METHOD static void store(ZelLaneBlock& b, State s) {
        _mm512_store_ps(b.gainState, s);
    }
    ZEL_LANES_METHOD static State withTinyStep(State s) {
        return _mm512_add_ps(s, _mm512_set1_ps(DeZipper::kAntiDenormal));
    }
    // The smoothers' state is the caller's local, so that it stays in a register.
    template <GainMotion kMotion> ZEL_LANES_METHOD __m512 products(const float* u, State& s) const {
        const __m512 v = _mm512_mul_ps(
            _mm512_set1_ps(*u),
            kMotion == kGainsRest ? atRest : smooth16<kMotion == kGainsGlide>(target, s));
        __asm__("" : "+v"(s)); // GCC would keep the state in memory, on the recursion's path
        return v;
    }
    // The sample's row of outputs where no filter follows.
    template <GainMotion kMotion>
    ZEL_LANES_METHOD void storeProducts(const float* u, State& s, float* row) const {
        _mm512_store_ps(row, products<kMotion>(u, s));
    }
    template <GainMotion kMotion> ZEL_LANES_METHOD Groups step(const float* u, State& s) const {
        const __m512 v = products<kMotion>(u, s);
        const V a = _mm512_castps512_ps256(v);
        const V c = _mm512_castps512_ps256(_mm512_shuffle_f32x4(v, v, 0xEE));
        return {a, _mm256_blend_ps(a, c, 0x01), c};
    }
};
#else
struct GainStage {
    struct State {
        V lo, hi;
    };
    V targetLo, targetHi, stateLo, stateHi, restLo, restHi;
    ZEL_LANES_METHOD void load(const ZelLaneBlock& b) {
        targetLo = loadPieces(b.gainTarget);
        targetHi = loadPieces(b.gainTarget + 8);
        stateLo = loadPieces(b.gainState);
        stateHi = loadPieces(b.gainState + 8);
    }
    ZEL_LANES_METHOD State start() const { return {stateLo, stateHi}; }
    ZEL_LANES_METHOD bool settled(float* value) {
        const bool lo = ::settled(targetLo, stateLo, 0xFF, restLo);
        const bool hi = ::settled(targetHi, stateHi, 0xFF, restHi);
        _mm256_store_ps(value, restLo);
        _mm256_store_ps(value + 8, restHi);
        return lo && hi;
    }
    ZEL_LANES_METHOD static void store(ZelLaneBlock& b, State s) {
        _mm256_store_ps(b.gainState, s.lo);
        _mm256_store_ps(b.gainState + 8, s.hi);
    }
    ZEL_LANES_METHOD static State withTinyStep(State s) {
        const V tiny = _mm256_set1_ps(DeZipper::kAntiDenormal);
        return {add(s.lo, tiny), add(s.hi, tiny)};
    }
    // The smoothers' state is the caller's local, so that it stays in registers.
    template <GainMotion kMotion> ZEL_LANES_METHOD Groups step(const float* u, State& s) const {
        constexpr bool kTinyStep = kMotion == kGainsGlide;
        const V uj = bcast(u);
        const V a = mul(uj, kMotion == kGainsRest ? restLo : smooth<kTinyStep>(targetLo, s.lo));
        const V c = mul(uj, kMotion == kGainsRest ? restHi : smooth<kTinyStep>(targetHi, s.hi));
        return {a, _mm256_blend_ps(a, c, 0x01), c};
    }
    template <GainMotion kMotion>
    ZEL_LANES_METHOD void storeProducts(const float* u, State& s, float* row) const {
        const Groups v = step<kMotion>(u, s);
        _mm256_store_ps(row, v.a);
        _mm256_store_ps(row + 8, v.c);
    }
};
#endif

} // namespace
