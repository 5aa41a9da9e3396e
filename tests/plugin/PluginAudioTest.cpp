// Audio through the module's entry points, in the buffer and block patterns
// that Linux hosts use.
#include "HostedPlugin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr int kOutputs = 16;
constexpr int kMaxBlock = 1024;
enum { kAzim, kElev, kX, kY, kZ, kDist, kNFC };

// A deterministic mono signal: a sine with a little pseudo-random noise.
std::vector<float> testSignal(int frames) {
    std::vector<float> signal(frames);
    std::uint32_t seed = 12345;
    for (int i = 0; i < frames; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const float noise = static_cast<float>(seed >> 8) / 16777216.0f - 0.5f;
        signal[i] = 0.5f * static_cast<float>(std::sin(0.031 * i)) + 0.1f * noise;
    }
    return signal;
}

// A source close by with compensation on, so that the near-field filters run.
void startNearSource(HostedPlugin& plugin) {
    plugin.dispatch(effSetSampleRate, 0, 0, nullptr, 48000.0f);
    plugin.dispatch(effSetBlockSize, 0, kMaxBlock);
    plugin.setParameter(kAzim, 0.13f);
    plugin.setParameter(kElev, 0.62f);
    plugin.setParameter(kDist, 0.7f);
    plugin.setParameter(kNFC, 0.2f);
    plugin.dispatch(effMainsChanged, 0, 1);
}

// The whole output of one instance, each channel in its own buffer.
struct Recording {
    explicit Recording(int frames) : out(kOutputs, std::vector<float>(frames)) {}
    std::vector<std::vector<float>> out;

    void process(HostedPlugin& plugin, const float* input, int from, int frames) {
        float* in[1] = {const_cast<float*>(input) + from};
        float* outs[kOutputs];
        for (int c = 0; c < kOutputs; ++c) outs[c] = out[c].data() + from;
        plugin.process(in, outs, frames);
    }
};

// What happens at one frame position of a run: a parameter change or a
// switch-off and on, as a host does it between blocks.
struct HostEvent {
    int frame;
    int index; // -1: effMainsChanged 0 then 1
    float value;
};

// Runs the signal through a new instance, cutting blocks at every event and
// wherever `cuts` says, and applying the events in between.
Recording run(const std::vector<float>& signal, const std::vector<HostEvent>& events,
              const std::vector<int>& cuts) {
    HostedPlugin plugin;
    startNearSource(plugin);
    Recording rec(static_cast<int>(signal.size()));
    std::vector<int> bounds = cuts;
    for (const HostEvent& e : events) bounds.push_back(e.frame);
    bounds.push_back(static_cast<int>(signal.size()));
    std::sort(bounds.begin(), bounds.end());
    int pos = 0;
    for (int bound : bounds) {
        for (const HostEvent& e : events) {
            if (e.frame != pos) continue;
            if (e.index < 0) {
                plugin.dispatch(effMainsChanged, 0, 0);
                plugin.dispatch(effMainsChanged, 0, 1);
            } else {
                plugin.setParameter(e.index, e.value);
            }
        }
        while (pos < bound) { // never more than one host block at a time
            const int n = std::min(bound - pos, kMaxBlock);
            rec.process(plugin, signal.data(), pos, n);
            pos += n;
        }
        if (bound == pos) rec.process(plugin, signal.data(), pos, 0); // empty blocks happen
    }
    return rec;
}

TEST(PluginAudio, BlockSplitsAndEventsBetweenBlocksGiveTheSameSignal) {
    const std::vector<float> signal = testSignal(6000);
    const std::vector<HostEvent> events = {{700, kAzim, 0.4f}, {1500, kDist, 0.9f},
                                           {2100, -1, 0.0f},   {2900, kX, 0.2f},
                                           {3500, kNFC, 1.0f}, {4200, kElev, 0.1f}};
    const Recording reference = run(signal, events, {});
    std::vector<int> cuts;
    for (int pos = 0, n = 0; pos < 6000; pos += n, ++n) cuts.push_back(pos); // 0, 1, 2, ... frames
    const Recording split = run(signal, events, cuts);
    double energy = 0.0;
    for (int c = 0; c < kOutputs; ++c) {
        for (size_t i = 0; i < signal.size(); ++i) {
            ASSERT_TRUE(std::isfinite(reference.out[c][i])) << c << " " << i;
            ASSERT_EQ(split.out[c][i], reference.out[c][i]) << "channel " << c << " frame " << i;
            energy += reference.out[c][i] * reference.out[c][i];
        }
    }
    EXPECT_GT(energy, 1.0);
}

TEST(PluginAudio, WritesExactlyTheFramesAskedForUpTo1024) {
    HostedPlugin plugin;
    startNearSource(plugin);
    const std::vector<float> signal = testSignal(kMaxBlock + 8);
    std::vector<float> input = signal;
    std::vector<std::vector<float>> out(kOutputs, std::vector<float>(kMaxBlock + 8));
    for (int n : {0, 1, 2, 3, 17, 64, 255, 511, 1000, 1023, 1024}) {
        for (auto& channel : out) std::fill(channel.begin(), channel.end(), 1234.5f);
        float* in[1] = {input.data()};
        float* outs[kOutputs];
        for (int c = 0; c < kOutputs; ++c) outs[c] = out[c].data();
        plugin.process(in, outs, n);
        for (int c = 0; c < kOutputs; ++c) {
            for (int i = 0; i < n; ++i) ASSERT_NE(out[c][i], 1234.5f) << n << " " << c << " " << i;
            for (int i = n; i < kMaxBlock + 8; ++i)
                ASSERT_EQ(out[c][i], 1234.5f) << n << " " << c << " " << i;
        }
        EXPECT_EQ(input, signal); // the input is read, never written
    }
}

TEST(PluginAudio, InPlaceInputAndSharedScratchLeaveConnectedOutputsExact) {
    const int frames = 5000;
    const std::vector<float> signal = testSignal(frames);
    const std::vector<HostEvent> events = {{2500, kNFC, 0.6f}};
    const Recording reference = run(signal, events, {});

    // Ardour's layout: the input lives in output 0's buffer, and every output
    // left unconnected writes into one scratch buffer shared by all of them.
    const std::array<bool, kOutputs> connected = {true,  true,  true,  true,  false,
                                                  false, false, false, false, true};
    HostedPlugin plugin;
    startNearSource(plugin);
    std::vector<std::vector<float>> own(kOutputs, std::vector<float>(kMaxBlock));
    std::vector<float> scratch(kMaxBlock);
    float* outs[kOutputs];
    for (int c = 0; c < kOutputs; ++c) outs[c] = connected[c] ? own[c].data() : scratch.data();
    float* in[1] = {own[0].data()};
    for (int pos = 0; pos < frames;) {
        if (pos == 2500) plugin.setParameter(kNFC, 0.6f);
        const int n = std::min({kMaxBlock, frames - pos, pos < 2500 ? 2500 - pos : frames});
        std::copy(signal.begin() + pos, signal.begin() + pos + n, own[0].begin());
        plugin.process(in, outs, n);
        for (int c = 0; c < kOutputs; ++c) {
            if (!connected[c]) continue;
            for (int i = 0; i < n; ++i)
                ASSERT_EQ(own[c][i], reference.out[c][pos + i])
                    << "channel " << c << " frame " << pos + i;
        }
        pos += n;
    }
}

TEST(PluginAudio, EntriesOtherThanReplacingWriteNothing) {
    HostedPlugin plugin;
    startNearSource(plugin);
    std::vector<float> input = testSignal(64);
    std::vector<std::vector<float>> out(kOutputs, std::vector<float>(64, 7.0f));
    float* in[1] = {input.data()};
    float* outs[kOutputs];
    for (int c = 0; c < kOutputs; ++c) outs[c] = out[c].data();
    AEffect* fx = plugin.effect();
    fx->process(fx, in, outs, 64); // the deprecated accumulating entry
    std::vector<double> dIn(64, 0.5), dOut(64, 7.0);
    double* dIns[1] = {dIn.data()};
    double* dOuts[kOutputs];
    for (auto& p : dOuts) p = dOut.data();
    fx->processDoubleReplacing(fx, dIns, dOuts, 64);
    for (double v : dOut) ASSERT_EQ(v, 7.0);

    for (const auto& channel : out)
        for (float v : channel) ASSERT_EQ(v, 7.0f);
}

} // namespace
