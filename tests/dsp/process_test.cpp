#include "AmbiEncoderClass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

namespace {

// A multichannel block of separate buffers plus the pointer arrays the
// encoder takes.
struct Buffers {
    explicit Buffers(int length) : input(length), channels(16, std::vector<float>(length)) {
        for (auto& c : channels) outputs.push_back(c.data());
        inputs[0] = input.data();
    }
    // Copies into the existing buffer, so that the pointers stay valid.
    void setInput(const std::vector<float>& signal) {
        std::copy(signal.begin(), signal.end(), input.begin());
    }
    std::vector<float> input;
    std::vector<std::vector<float>> channels;
    std::vector<float*> outputs;
    float* inputs[1];
};

std::vector<float> noise(int length, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> d(-1.0f, 1.0f);
    std::vector<float> v(length);
    for (float& s : v) s = d(rng);
    return v;
}

// A parameter change at a given sample.
struct Change {
    int at;
    std::function<void(ZelAmbisonicEncoder&)> apply;
};

// Renders `signal` through a fresh encoder, applying the changes at their
// samples and splitting the rest of the signal with `nextBlock`.
std::vector<std::vector<float>> render(const std::vector<float>& signal,
                                       const std::vector<Change>& changes,
                                       const std::function<int()>& nextBlock) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setfs(44100.0f);
    enc.resume();
    const int length = static_cast<int>(signal.size());
    std::vector<std::vector<float>> out(16, std::vector<float>(length));
    size_t next = 0;
    int pos = 0;
    while (pos < length) {
        while (next < changes.size() && changes[next].at == pos) changes[next++].apply(enc);
        int n = nextBlock();
        if (next < changes.size()) n = std::min(n, changes[next].at - pos);
        n = std::min(n, length - pos);
        float* in[1] = {const_cast<float*>(signal.data()) + pos};
        float* outs[16];
        for (int c = 0; c < 16; ++c) outs[c] = out[c].data() + pos;
        enc.process(in, outs, n);
        pos += n;
    }
    return out;
}

const std::vector<Change> kMovingSource = {
    {0, [](ZelAmbisonicEncoder& e) { e.setNFC(0.2f); }},
    {1000, [](ZelAmbisonicEncoder& e) { e.setdist(0.6f); }},
    {2500, [](ZelAmbisonicEncoder& e) { e.setazim(0.3f); }},
    {4000, [](ZelAmbisonicEncoder& e) { e.setx(0.7f); }},
    {6000, [](ZelAmbisonicEncoder& e) { e.setdist(0.0f); }}, // plane-wave path
    {7000, [](ZelAmbisonicEncoder& e) { e.setNFC(1.0f); }},  // compensation off
    {8000, [](ZelAmbisonicEncoder& e) { e.setz(0.9f); }},
};

} // namespace

TEST(EncoderProcess, BlockSizesDoNotChangeTheResult) {
    const std::vector<float> signal = noise(10000, 7);
    const auto whole = render(signal, kMovingSource, [] { return 1 << 30; });
    std::mt19937 rng(42);
    std::uniform_int_distribution<int> sizes(0, 700);
    int calls = 0;
    const auto pieces = render(signal, kMovingSource, [&] {
        ++calls;
        const int pick = calls % 5;
        return pick == 0 ? 0 : pick == 1 ? 1 : sizes(rng);
    });
    for (int c = 0; c < 16; ++c) ASSERT_EQ(whole[c], pieces[c]) << "channel " << c;
}

TEST(EncoderProcess, InPlaceInputAndSharedScratchOutputsMatchSeparateBuffers) {
    const int n = 2048;
    const std::vector<float> signal = noise(n, 3);
    ZelAmbisonicEncoder separate(kAmbi3P), shared(kAmbi3P);
    for (ZelAmbisonicEncoder* e : {&separate, &shared}) {
        e->setNFC(0.3f);
        e->setdist(0.7f);
        e->setazim(0.1f);
        e->setelev(0.6f);
        e->resume();
    }
    Buffers ref(n);
    ref.setInput(signal);
    separate.process(ref.inputs, ref.outputs.data(), n);

    // As a host does it: the input lives in output 0's buffer, outputs 1-3
    // are connected, and all unconnected outputs share one scratch buffer.
    std::vector<float> io = signal, ch1(n), ch2(n), ch3(n), scratch(n);
    float* inputs[1] = {io.data()};
    float* outputs[16] = {io.data(), ch1.data(), ch2.data(), ch3.data()};
    for (int c = 4; c < 16; ++c) outputs[c] = scratch.data();
    shared.process(inputs, outputs, n);
    EXPECT_EQ(io, ref.channels[0]);
    EXPECT_EQ(ch1, ref.channels[1]);
    EXPECT_EQ(ch2, ref.channels[2]);
    EXPECT_EQ(ch3, ref.channels[3]);
}

TEST(EncoderProcess, InputSharedWithAHigherOutputStillReadsTheSource) {
    const int n = 512;
    const std::vector<float> signal = noise(n, 5);
    ZelAmbisonicEncoder a(kAmbi3P), b(kAmbi3P);
    a.resume();
    b.resume();
    Buffers ref(n);
    ref.setInput(signal);
    a.process(ref.inputs, ref.outputs.data(), n);

    Buffers aliased(n);
    aliased.channels[9] = signal;
    aliased.inputs[0] = aliased.channels[9].data();
    b.process(aliased.inputs, aliased.outputs.data(), n);
    for (int c = 0; c < 16; ++c) EXPECT_EQ(aliased.channels[c], ref.channels[c]) << c;
}

TEST(EncoderProcess, CompensationOffIsInputTimesSmoothedGain) {
    const int n = 3000;
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setdist(0.4f);
    enc.setazim(0.2f);
    enc.resume();
    enc.setelev(0.8f); // gains glide towards the new direction
    Buffers b(n);
    b.setInput(noise(n, 11));
    enc.process(b.inputs, b.outputs.data(), n);
    for (int c = 0; c < 16; ++c) {
        DeZipper d;
        ZelAmbisonicEncoder before(kAmbi3P);
        before.setdist(0.4f);
        before.setazim(0.2f);
        d.init(before.getgain(c));
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(b.channels[c][i], b.input[i] * d.smooth(enc.getgain(c)))
                << "channel " << c << " sample " << i;
    }
    for (int i = 0; i < 3; ++i) EXPECT_EQ(enc.getnf3(0).getstate(i), 0.0f);
}

TEST(EncoderProcess, FreshEncoderFadesInAndResumeSnaps) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    Buffers b(4);
    std::fill(b.input.begin(), b.input.end(), 1.0f);
    enc.process(b.inputs, b.outputs.data(), 4);
    EXPECT_EQ(b.channels[0][0], 0.0019999742507934570f);
    enc.resume();
    enc.process(b.inputs, b.outputs.data(), 4);
    EXPECT_EQ(b.channels[0][0], 1.0f);
    EXPECT_EQ(b.channels[3][3], 1.0f); // X straight ahead
}

TEST(EncoderProcess, OnlyDeclaredOutputsAreWritten) {
    ZelAmbisonicEncoder enc(kAmbi2P);
    enc.setNFC(0.5f);
    enc.resume();
    Buffers b(64);
    b.setInput(noise(64, 1));
    for (int c = 9; c < 16; ++c) std::fill(b.channels[c].begin(), b.channels[c].end(), 7.0f);
    enc.process(b.inputs, b.outputs.data(), 64);
    for (int c = 9; c < 16; ++c)
        EXPECT_EQ(b.channels[c], std::vector<float>(64, 7.0f)) << "channel " << c;
}

TEST(EncoderProcess, NegativeOrZeroFrameCountsWriteNothing) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(0.5f);
    enc.resume();
    Buffers b(8);
    for (auto& c : b.channels) std::fill(c.begin(), c.end(), 5.0f);
    enc.process(b.inputs, b.outputs.data(), 0);
    enc.process(b.inputs, b.outputs.data(), -5);
    for (auto& c : b.channels) EXPECT_EQ(c, std::vector<float>(8, 5.0f));
}

namespace {

// Reference model of the filter stage: the gain stage, replayed with its own
// smoother, then the expected filter of each channel, designed independently.
struct Routing {
    int filterOrder; // 0: not filtered
    int source;      // channel the filter reads
};

void expectRouting(AmbiOrder order, bool nearSource, const std::vector<Routing>& routes) {
    const int n = 1500;
    ZelAmbisonicEncoder enc(order);
    enc.setfs(48000.0f);
    enc.setNFC(0.1f);
    enc.setdist(nearSource ? 0.6f : 0.0f);
    enc.setazim(0.15f);
    enc.setelev(0.6f);
    enc.resume();
    Buffers b(n);
    b.setInput(noise(n, 21));
    enc.process(b.inputs, b.outputs.data(), n);

    const int channels = enc.getncoefs();
    std::vector<std::vector<float>> stage(channels, std::vector<float>(n));
    for (int c = 0; c < channels; ++c) {
        DeZipper d;
        d.init(enc.getgain(c));
        for (int i = 0; i < n; ++i) stage[c][i] = b.input[i] * d.smooth(enc.getgain(c));
    }
    const float ws = nearSource ? enc.dist2w(enc.getdistNF(), 48000.0f) : 0.0f;
    const float wc = enc.dist2w(enc.getNFCdisplay(), 48000.0f);
    for (int c = 0; c < channels; ++c) {
        std::vector<float> expected = stage[routes[c].source];
        float* p = expected.data();
        auto run = [&](auto f) {
            f.init(ws, wc, 1.0f);
            f.reset();
            nearSource ? f.process(n, p, p, 1) : f.process1(n, p, p, 1);
        };
        switch (routes[c].filterOrder) {
        case 1:
            run(NF_filt1());
            break;
        case 2:
            run(NF_filt2());
            break;
        case 3:
            run(NF_filt3());
            break;
        case 4:
            run(NF_filt4());
            break;
        default:
            break;
        }
        EXPECT_EQ(b.channels[c], expected)
            << "layout " << order << (nearSource ? " near" : " far") << ", channel " << c;
    }
}

} // namespace

TEST(EncoderProcess, EachChannelPassesThroughTheFilterOfItsOrder) {
    const std::vector<Routing> full = {{0, 0},  {1, 1},  {1, 2},  {1, 3}, {2, 4},  {2, 5},
                                       {2, 6},  {2, 7},  {2, 8},  {3, 9}, {3, 10}, {3, 11},
                                       {3, 12}, {3, 13}, {3, 14}, {3, 15}};
    expectRouting(kAmbi3P, true, full);
    expectRouting(kAmbi3P, false, full);
    expectRouting(kAmbi1P, true, {{0, 0}, {1, 1}, {1, 2}, {1, 3}});
    expectRouting(kAmbi2H1P, true, {{0, 0}, {1, 1}, {1, 2}, {0, 3}, {0, 4}, {0, 5}});
    expectRouting(kAmbi4H, false,
                  {{0, 0}, {1, 1}, {1, 2}, {2, 3}, {2, 4}, {3, 5}, {3, 6}, {4, 7}, {4, 8}});
    // The mixed third-order layout with a near source writes the second- and
    // third-order results one channel down; with a far source it stays in place.
    expectRouting(kAmbi3H1P, false,
                  {{0, 0}, {1, 1}, {1, 2}, {1, 3}, {2, 4}, {2, 5}, {3, 6}, {3, 7}});
}

TEST(EncoderProcess, MixedLayoutNearSourceShiftsChannelsDown) {
    const int n = 800;
    ZelAmbisonicEncoder enc(kAmbi3H1P);
    enc.setNFC(0.1f);
    enc.setdist(0.6f);
    enc.setazim(0.15f);
    enc.resume();
    Buffers b(n);
    b.setInput(noise(n, 4));
    enc.process(b.inputs, b.outputs.data(), n);
    // Channel 3 ends as order-1 filtering of the order-2 result of channel 4.
    const float ws = enc.dist2w(enc.getdistNF(), 48000.0f);
    const float wc = enc.dist2w(enc.getNFCdisplay(), 48000.0f);
    std::vector<float> expected(n);
    DeZipper d;
    d.init(enc.getgain(4));
    for (int i = 0; i < n; ++i) expected[i] = b.input[i] * d.smooth(enc.getgain(4));
    NF_filt2 f2;
    f2.init(ws, wc, 1.0f);
    f2.reset();
    f2.process(n, expected.data(), expected.data(), 1);
    NF_filt1 f1;
    f1.init(ws, wc, 1.0f);
    f1.reset();
    f1.process(n, expected.data(), expected.data(), 1);
    EXPECT_EQ(b.channels[3], expected);
}

TEST(EncoderProcess, NanCompensationSkipsFiltersButKeepsDirectionalGains) {
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(std::nanf(""));
    EXPECT_FLOAT_EQ(enc.getgain(3), 1.0f); // directional, not interior panning
    enc.resume();
    Buffers b(256);
    b.setInput(noise(256, 8));
    enc.process(b.inputs, b.outputs.data(), 256);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(enc.getnf3(0).getstate(i), 0.0f);
    for (int c = 0; c < 16; ++c)
        for (float v : b.channels[c]) ASSERT_TRUE(std::isfinite(v));
}

TEST(EncoderProcess, NoSubnormalStateAfterNoiseThenSilence) {
    const int rate = 48000;
    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setNFC(0.2f);
    enc.setdist(0.9f);
    enc.setazim(0.37f);
    enc.setelev(0.61f);
    enc.resume();
    Buffers b(512);
    const std::vector<float> loud = noise(512, 77);
    for (int block = 0; block * 512 < rate * 11; ++block) {
        const bool silent = block * 512 >= rate;
        if (silent)
            std::fill(b.input.begin(), b.input.end(), 0.0f);
        else
            b.setInput(loud);
        if (block == 60) enc.setazim(0.0f); // a target of exactly zero for some gains
        enc.process(b.inputs, b.outputs.data(), 512);
    }
    auto normalOrZero = [](float v) { return std::fpclassify(v) != FP_SUBNORMAL; };
    for (int c = 0; c < 16; ++c) EXPECT_TRUE(normalOrZero(enc.getdezip(c).current())) << c;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(normalOrZero(enc.getnf1(i).getstate(0)));
        for (int k = 0; k < NF_filt1::numCoefs; ++k)
            EXPECT_TRUE(normalOrZero(enc.getnf1(i).getsmoother(k).current()));
    }
    for (int i = 0; i < 5; ++i)
        for (int s = 0; s < NF_filt2::numStates; ++s)
            EXPECT_TRUE(normalOrZero(enc.getnf2(i).getstate(s)));
    for (int i = 0; i < 7; ++i)
        for (int s = 0; s < NF_filt3::numStates; ++s)
            EXPECT_TRUE(normalOrZero(enc.getnf3(i).getstate(s)));
    for (int c = 0; c < 16; ++c)
        for (float v : b.channels[c]) ASSERT_TRUE(normalOrZero(v)) << "channel " << c;
}
