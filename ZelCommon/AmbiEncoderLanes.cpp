#include "AmbiEncoderClass.h"
#include "EncoderLimits.h"

#include <cstdint>
#include <cstring>

// The hand-over between the encoder's objects and the lane kernel: states in,
// the block, states back. Where the kernel could give other bits than the
// scalar loop (other layouts, buffers that overlap, filters of one order whose
// smoothers have drifted apart), the scalar loop runs instead.

namespace {

bool sameBits(float a, float b) {
    std::uint32_t x, y;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x == y;
}

// The filters of one order always get one design and step together, but a
// recovery resets only the filters that went wrong, so their smoothers can
// part (see smoothersParted); then they cannot share one.
template <typename Filter> bool smoothersShared(const Filter* filters, int count) {
    for (int i = 1; i < count; ++i)
        for (int k = 0; k < Filter::numCoefs; ++k)
            if (!sameBits(filters[i].getsmoother(k).current(), filters[0].getsmoother(k).current()))
                return false;
    return true;
}

template <typename Filter> void takeCoefs(const Filter& first, int order, ZelLaneBlock& b) {
    for (int k = 0; k < Filter::numCoefs; ++k) {
        b.coefTarget[kCoefBase[order] + k] = first.getcoef(k);
        b.coefState[kCoefBase[order] + k] = first.getsmoother(k).current();
    }
}

template <typename Filter>
void giveCoefs(Filter* filters, int count, int order, const ZelLaneBlock& b) {
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < Filter::numCoefs; ++k)
            filters[i].smoother(k).init(b.coefState[kCoefBase[order] + k]);
}

template <int kCount> bool allFinite(const float (&values)[kCount]) {
    std::uint32_t worst = 0;
    for (float v : values) {
        std::uint32_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        worst |= static_cast<std::uint32_t>((bits & 0x7f800000u) == 0x7f800000u);
    }
    return worst == 0;
}

} // namespace

bool ZelAmbisonicEncoder::usepath(ZelLanePath wanted) {
    if (wanted != ZelLanePath::kScalar && zelLaneKernel(wanted) == nullptr) return false;
    path = wanted;
    lanes = zelLaneKernel(wanted);
    return true;
}

bool ZelAmbisonicEncoder::buffersApart(const float* in, float* const* outputs, int n) {
    // Hosts hand over the same buffers block after block: check them once.
    if (in == checkedIn && n == checkedN &&
        std::memcmp(outputs, checkedOut, sizeof checkedOut) == 0)
        return checkedApart;
    auto overlap = [n](const float* a, const float* b) { return a < b + n && b < a + n; };
    bool apart = true, inIsOutput = false;
    for (int c = 0; c < 16; ++c) {
        for (int d = c + 1; d < 16; ++d) apart = apart && !overlap(outputs[c], outputs[d]);
        inIsOutput = inIsOutput || in == outputs[c];
    }
    for (int c = 0; c < 16 && !inIsOutput; ++c) apart = apart && !overlap(in, outputs[c]);
    checkedIn = in;
    checkedN = n;
    std::memcpy(checkedOut, outputs, sizeof checkedOut);
    checkedApart = apart;
    return apart;
}

bool ZelAmbisonicEncoder::processLanes(const float* in, float** outputs, int n, const Position& p) {
    if (lanes == nullptr || order != kAmbi3P || n == 0) return false;
    const int mode = !(kFarLimit > p.NFC) ? kLanesOff : kFarLimit > p.dist ? kLanesNear : kLanesFar;
    if (mode != kLanesOff && smoothersParted) {
        if (!(smoothersShared(nf1, 3) && smoothersShared(nf2, 5) && smoothersShared(nf3, 7)))
            return false;
        smoothersParted = false;
    }
    if (!buffersApart(in, outputs, n)) return false;

    ZelLaneBlock b;
    b.in = in;
    b.out = outputs;
    b.n = n;
    b.mode = mode;
    for (int c = 0; c < 16; ++c) {
        b.gainTarget[c] = gains[c];
        b.gainState[c] = dezip[c].current();
    }
    if (mode != kLanesOff) {
        std::memset(b.coefTarget, 0, sizeof b.coefTarget);
        std::memset(b.coefState, 0, sizeof b.coefState);
        std::memset(b.order1, 0, sizeof b.order1);
        std::memset(b.order2, 0, sizeof b.order2);
        std::memset(b.order3, 0, sizeof b.order3);
        takeCoefs(nf1[0], 1, b);
        takeCoefs(nf2[0], 2, b);
        takeCoefs(nf3[0], 3, b);
        for (int i = 0; i < 3; ++i) b.order1[order1Lane(i)] = nf1[i].getstate(0);
        for (int i = 0; i < 5; ++i)
            for (int s = 0; s < 2; ++s) b.order2[s][order2Lane(i)] = nf2[i].getstate(s);
        for (int i = 0; i < 7; ++i)
            for (int s = 0; s < 3; ++s) b.order3[s][order3Lane(i)] = nf3[i].getstate(s);
    }

    lanes(b);

    // Smoothers at rest kept their states.
    if (!b.gainsRested)
        for (int c = 0; c < 16; ++c) dezip[c].init(b.gainState[c]);
    if (mode != kLanesOff) {
        if (!b.coefsRested) {
            giveCoefs(nf1, 3, 1, b);
            giveCoefs(nf2, 5, 2, b);
            giveCoefs(nf3, 7, 3, b);
        }
        // What the lanes hand back is every filter's state and smoothers (and
        // the unused lanes', which can only make this answer false).
        filtersFinite = allFinite(b.coefState) && allFinite(b.order1) && allFinite(b.order2[0]) &&
                        allFinite(b.order2[1]) && allFinite(b.order3[0]) &&
                        allFinite(b.order3[1]) && allFinite(b.order3[2]);
        for (int i = 0; i < 3; ++i) nf1[i].integrator(0) = b.order1[order1Lane(i)];
        for (int i = 0; i < 5; ++i)
            for (int s = 0; s < 2; ++s) nf2[i].integrator(s) = b.order2[s][order2Lane(i)];
        for (int i = 0; i < 7; ++i)
            for (int s = 0; s < 3; ++s) nf3[i].integrator(s) = b.order3[s][order3Lane(i)];
    }
    return true;
}
