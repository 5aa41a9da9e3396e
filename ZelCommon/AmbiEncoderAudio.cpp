#include "AmbiEncoderClass.h"
#include "EncoderLimits.h"

#include <cmath>
#include <cstdint>
#include <cstring>

// The encoder's audio side: the filters' designs, the block loop and the
// recovery from values that are no numbers.

namespace {

// Far beyond any real gain (at most a few units), still far from overflow.
constexpr float kSaneGain = 1e6f;
bool sane(float gain) {
    return std::fabs(gain) <= kSaneGain;
}
// True if any of the first n samples of the channels has a magnitude whose
// bits lie above limit. Bits, not float compares, compared as signed words
// (a magnitude's bits are below 2^31) eight at a time into eight separate
// flags, so that the compiler makes vector compares of it even for SSE2.
bool anyAbove(const float* const* channels, int count, int n, std::int32_t limit) {
    std::int32_t hit[8] = {};
    auto look = [limit](const float* v) {
        std::int32_t bits;
        std::memcpy(&bits, v, sizeof bits);
        return static_cast<std::int32_t>((bits & 0x7fffffff) > limit);
    };
    for (int c = 0; c < count; ++c) {
        const float* v = channels[c];
        int i = 0;
        for (; i + 8 <= n; i += 8)
            for (int k = 0; k < 8; ++k) hit[k] |= look(v + i + k);
        for (; i < n; ++i) hit[0] |= look(v + i);
    }
    std::int32_t any = 0;
    for (std::int32_t h : hit) any |= h;
    return any != 0;
}
// Beyond 2^91 gains and near-field filters could carry a sample past the
// largest float; above the largest float lie only infinities and NaNs.
constexpr std::int32_t kHugeBits = 0x6d000000, kNonFiniteBits = 0x7f7fffff;

} // namespace

void ZelAmbisonicEncoder::applyDesign(const Position& p) {
    if (p.designs == appliedDesigns) return;
    appliedDesigns = p.designs;
    // A design sets coefficients (and clears order 4's integrators), which
    // leaves a finite filter finite: filtersFinite stands.
    // A source at the outer limit is a plane wave: no near-field zeros.
    const float ws = p.designSource == kFarLimit ? 0.0f : dist2w(p.designSource, p.fs);
    const float wc = dist2w(p.designCompensation, p.fs);
    // Every filter of a class takes the first one's coefficients.
    auto design = [ws, wc](auto* filters, int count) {
        if (count == 0) return;
        filters[0].init(ws, wc, 1.0f);
        for (int i = 1; i < count; ++i) filters[i].init(filters[0]);
    };
    const FilterSet set = filterset(order);
    design(nf1, set.n1);
    design(nf2, set.n2);
    design(nf3, set.n3);
    design(nf4, set.n4);
}

void ZelAmbisonicEncoder::takeGains(const Position& p) {
    if (p.changes == gainsChanges) return;
    gainsChanges = p.changes;
    UpdateHOrders(p, gains);
    // Checked here, once per change, rather than in every block's recovery.
    // (Entries beyond a layout's channels stay 0.)
    int all = 1;
    for (float g : gains) all &= static_cast<int>(sane(g));
    gainsSane = all != 0;
}

// ------------------------------------------------------------ audio

template <typename Op> void ZelAmbisonicEncoder::filterChannels(Op&& run, bool nearSource) {
    run(nf1[0], 1, 1);
    run(nf1[1], 2, 2);
    switch (order) {
    case kAmbi1H:
    case kAmbi2H1P: // channels 3..5 stay unfiltered in this layout
        break;
    case kAmbi1P:
        run(nf1[2], 3, 3);
        break;
    case kAmbi2H:
        run(nf2[0], 3, 3);
        run(nf2[1], 4, 4);
        break;
    case kAmbi2P:
        run(nf1[2], 3, 3);
        for (int k = 0; k < 5; ++k) run(nf2[k], 4 + k, 4 + k);
        break;
    case kAmbi3H:
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 3 + k, 3 + k);
            run(nf3[k], 5 + k, 5 + k);
        }
        break;
    case kAmbi3H1P:
        // With a near source the second- and third-order filters write one
        // channel below the one they read; kept as the layout has always been.
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 4 + k, nearSource ? 3 + k : 4 + k);
            run(nf3[k], 6 + k, nearSource ? 5 + k : 6 + k);
        }
        run(nf1[2], 3, 3);
        break;
    case kAmbi3P:
        run(nf1[2], 3, 3);
        for (int k = 0; k < 5; ++k) run(nf2[k], 4 + k, 4 + k);
        for (int k = 0; k < 7; ++k) run(nf3[k], 9 + k, 9 + k);
        break;
    case kAmbi4H:
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 3 + k, 3 + k);
            run(nf3[k], 5 + k, 5 + k);
            run(nf4[k], 7 + k, 7 + k);
        }
        break;
    }
}

void ZelAmbisonicEncoder::process(float** inputs, float** outputs, int n) {
    if (inputs == nullptr || outputs == nullptr || ncoefs == 0) return;
    if (n < 0) n = 0;
    // The newest position, whole, for the whole block.
    const Position p = position.load();
    // Only compensation runs the filters; until then their design can wait
    // (an automated distance makes a new one every block).
    if (kFarLimit > p.NFC) applyDesign(p);
    takeGains(p);

    const float* in = inputs[0];
    const bool oddInput = anyAbove(&in, 1, n, kHugeBits); // before the input may be overwritten
    if (!processLanes(in, outputs, n, p)) processScalar(in, outputs, n, p);
    recover(outputs, n, p, oddInput);
}

// The straightforward block loop: the baseline path, and the reference the
// lane paths are held to.
void ZelAmbisonicEncoder::processScalar(const float* in, float** outputs, int n,
                                        const Position& p) {
    for (int i = 0; i < n; ++i) {
        const float u = in[i]; // before any output of this sample is written
        for (int c = 0; c < ncoefs; ++c) outputs[c][i] = u * dezip[c].smooth(gains[c]);
    }

    if (kFarLimit > p.NFC) { // else compensation off: interior panning only
        filtersFinite = false;
        if (kFarLimit > p.dist) {
            filterChannels(
                [&](auto& f, int from, int to) { f.process(n, outputs[from], outputs[to], 1); },
                true);
        } else {
            filterChannels(
                [&](auto& f, int from, int to) { f.process1(n, outputs[from], outputs[to], 1); },
                false);
        }
    }
}

void ZelAmbisonicEncoder::recover(float** outputs, int n, const Position& p, bool oddInput) {
    // Only a block whose input, gains or states went wrong can hold a NaN or
    // an infinity; the others are left alone, which costs a few checks.
    // A gain far beyond any direction's (a parameter far out of its range
    // makes one) counts as wrong too: with a large input it overflows.
    bool scrub = oddInput;
    // One pass without branches first: nearly always all is well. (States
    // beyond a layout's channels stay 0.)
    int allSane = static_cast<int>(gainsSane);
    for (int c = 0; c < 16; ++c) allSane &= static_cast<int>(sane(dezip[c].current()));
    for (int c = 0; !allSane && c < ncoefs; ++c) {
        scrub = scrub || !sane(gains[c]);
        if (!sane(dezip[c].current())) {
            dezip[c].init(sane(gains[c]) ? gains[c] : 0.0f);
            scrub = true;
        }
    }
    const FilterSet set = filterset(order);
    bool reset = false;
    auto recoverAll = [&reset](auto* filters, int count) {
        for (int i = 0; i < count; ++i) {
            if (!filters[i].isfinite()) {
                filters[i].reset();
                reset = true;
            }
        }
    };
    // Filters found finite and untouched since need no second look. A reset
    // one can stay non-finite (its design may be), so it is looked at again.
    if (!filtersFinite) {
        applyDesign(p); // a reset starts the coefficient smoothers from the design
        recoverAll(nf1, set.n1);
        recoverAll(nf2, set.n2);
        recoverAll(nf3, set.n3);
        recoverAll(nf4, set.n4);
        filtersFinite = !reset;
        smoothersParted = smoothersParted || reset;
    }
    scrub = scrub || reset;
    // A design far outside anything real (a sample rate of a few hertz, say)
    // can overflow a filter's output while its states are still finite.
    if (!scrub && kFarLimit > p.NFC) scrub = anyAbove(outputs, ncoefs, n, kNonFiniteBits);
    // Finite values pass untouched, so finite results keep their bits.
    for (int c = 0; scrub && c < ncoefs; ++c) {
        for (int i = 0; i < n; ++i)
            if (!std::isfinite(outputs[c][i])) outputs[c][i] = 0.0f;
    }
}

void ZelAmbisonicEncoder::resume() {
    const Position p = position.load();
    applyDesign(p);
    filtersFinite = false;
    const FilterSet set = filterset(order);
    for (int i = 0; i < set.n1; ++i) nf1[i].reset();
    for (int i = 0; i < set.n2; ++i) nf2[i].reset();
    for (int i = 0; i < set.n3; ++i) nf3[i].reset();
    for (int i = 0; i < set.n4; ++i) nf4[i].reset();
    takeGains(p);
    for (int c = 0; c < ncoefs; ++c) dezip[c].init(gains[c]);
}
