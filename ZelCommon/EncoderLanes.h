#pragma once

// The third-order encoder's block loop in vector lanes: the gain smoothers of
// all 16 channels and the near-field filters of one order side by side, one
// channel per lane, doing per lane the very operations of the scalar code in
// its order (no fused multiply-add), so that every output keeps its bits.
//
// Three 8-lane groups hold the channels (ACN numbers):
//   A: lanes 0..3 = 0..3  (W, then the first-order filters)
//   B: lane 0 = 8, lanes 4..7 = 4..7  (second order)
//   C: lanes 1..7 = 9..15  (third order)
// so that two blends make the rows 0..7 and 8..15 of a sample. The other
// lanes carry zeros and are never handed back.
//
// The filters of one order share their coefficient smoothers (their designs
// and smoothing steps are always the same; the caller checks that the states
// are too), so the smoothers run once per order, all 15 in two vectors with
// the coefficient's index as lane:
//   0 g, 1 a, 2 d  (first order)
//   3 g, 4 a1, 5 a2, 6 d1, 7 d2  (second order)
//   8 g, 9 a1, 10 a2, 11 a3, 12 d1, 13 d2, 14 d3  (third order)

enum class ZelLanePath { kScalar, kAvx2, kAvx512 };

enum ZelLaneMode : int {
    kLanesOff = 0,  // compensation off: gains only
    kLanesFar = 1,  // source at the outer limit: the filters' poles only
    kLanesNear = 2, // poles and zeros
};

struct alignas(64) ZelLaneBlock {
    const float* in;
    float* const* out; // 16 channels, apart from each other; in is apart or one of them
    int n;
    int mode;
    // Set by the kernel: the gain or coefficient smoothers sat at a fixed
    // point, so their states are as they were.
    bool gainsRested;
    bool coefsRested;
    // Gain smoothers in channel order.
    alignas(64) float gainTarget[16];
    alignas(64) float gainState[16];
    // Shared coefficient smoothers, indexed as above.
    alignas(32) float coefTarget[16];
    alignas(32) float coefState[16];
    // Integrators in the groups' lanes.
    alignas(32) float order1[8];
    alignas(32) float order2[2][8];
    alignas(32) float order3[3][8];
};

// Lane of filter i of order 1, 2 and 3 in its group.
constexpr int order1Lane(int i) {
    return i + 1;
}
constexpr int order2Lane(int i) {
    return i < 4 ? 4 + i : 0;
}
constexpr int order3Lane(int i) {
    return i + 1;
}
// First coefficient index of each order.
constexpr int kCoefBase[4] = {0, 0, 3, 8};

using ZelLaneKernel = void (*)(ZelLaneBlock&);
void zelLanesAvx2(ZelLaneBlock& block);
void zelLanesAvx512(ZelLaneBlock& block);

// The kernel of a path, or nullptr for the scalar path or one this CPU lacks.
ZelLaneKernel zelLaneKernel(ZelLanePath path);
// The fastest path this CPU has, capped by the environment variable
// ZEL_ENCODER_PATH (scalar, avx2 or avx512) if that is set when an encoder is
// made.
ZelLanePath zelDefaultLanePath();
