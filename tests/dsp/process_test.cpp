#include "AmbiEncoderClass.h"
#include "measure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// A multichannel block of separate buffers plus the pointer arrays the
// encoder takes.
struct Buffers {
    explicit Buffers(int length) : input(length), channels(16, std::vector<float>(length)) {
        for (auto& c : channels) outputs.push_back(c.data());
        inputs[0] = input.data();
    }
    std::vector<float> input;
    std::vector<std::vector<float>> channels;
    std::vector<float*> outputs;
    float* inputs[1];
};

// Where a channel's result comes from: the channel whose gain stage it
// filters, and the total order of near-field filtering it went through.
struct Route {
    int source;
    int order;
};

// At DC a near-field filter of order m has the gain (w1/w2)^m, which is
// (compensation distance / source distance)^m; a source at infinity (its
// numerator (1 - 1/z)^m) blocks DC. So after a long constant input, each
// channel settles at the gain of its source channel times that factor.
void expectRoutes(AmbiOrder order, bool nearSource, const std::vector<Route>& routes) {
    const int n = 48000;
    ZelAmbisonicEncoder enc(order);
    enc.setNFC(0.1f);                      // 0.85 m
    enc.setdist(nearSource ? 0.6f : 0.0f); // 1.6 m or far
    enc.setazim(0.15f);
    enc.setelev(0.6f);
    enc.resume();
    Buffers b(n);
    std::fill(b.input.begin(), b.input.end(), 1.0f);
    enc.process(b.inputs, b.outputs.data(), n);
    const double ratio = 0.85 / 1.6;
    for (int c = 0; c < enc.getncoefs(); ++c) {
        const Route r = routes[c];
        const double dc = r.order == 0 ? 1.0 : nearSource ? std::pow(ratio, r.order) : 0.0;
        EXPECT_NEAR(b.channels[c][n - 1], enc.getgain(r.source) * dc, 2e-4)
            << "layout " << order << (nearSource ? " near" : " far") << ", channel " << c;
    }
}

} // namespace

TEST(EncoderProcess, EachChannelPassesThroughTheFilterOfItsOrder) {
    const std::vector<Route> full = {{0, 0},  {1, 1},  {2, 1},  {3, 1}, {4, 2},  {5, 2},
                                     {6, 2},  {7, 2},  {8, 2},  {9, 3}, {10, 3}, {11, 3},
                                     {12, 3}, {13, 3}, {14, 3}, {15, 3}};
    expectRoutes(kAmbi3P, true, full);
    expectRoutes(kAmbi3P, false, full);
    expectRoutes(kAmbi1P, true, {{0, 0}, {1, 1}, {2, 1}, {3, 1}});
    expectRoutes(kAmbi2H1P, true, {{0, 0}, {1, 1}, {2, 1}, {3, 0}, {4, 0}, {5, 0}});
    expectRoutes(kAmbi4H, true,
                 {{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 3}, {6, 3}, {7, 4}, {8, 4}});
    // The mixed third-order layout with a near source writes the second- and
    // third-order results one channel down (channel 3 is then filtered again
    // by the first-order filter); with a far source it stays in place.
    expectRoutes(kAmbi3H1P, true, {{0, 0}, {1, 1}, {2, 1}, {4, 3}, {5, 2}, {6, 3}, {7, 3}, {7, 0}});
    expectRoutes(kAmbi3H1P, false,
                 {{0, 0}, {1, 1}, {2, 1}, {3, 1}, {4, 2}, {5, 2}, {6, 3}, {7, 3}});
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
    const std::vector<float> loud = measure::noise(512, 77);
    for (int block = 0; block * 512 < rate * 11; ++block) {
        const bool silent = block * 512 >= rate;
        if (silent)
            std::fill(b.input.begin(), b.input.end(), 0.0f);
        else
            b.input = loud;
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
