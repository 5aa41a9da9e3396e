// The module as a host sees it: loaded with dlopen, reached only through
// VSTPluginMain and the AEffect record, and driven in the buffer and block
// patterns that Linux hosts use.
#include "TimedWrites.h"
#include "VstPlugin.h"
#include "measure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

enum { kAzim, kElev, kX, kY, kZ, kDist, kNFC };
constexpr int kOutputs = 16;
constexpr int kMaxBlock = 1024;

// Fill byte of every buffer handed to the plug-in, so that a buffer still
// full of it provably received no write.
constexpr char kSentinel = '\xA5';
const std::string kUntouched = "<untouched>";

// One instance of the built module, opened; switched off and closed at the end.
struct HostedPlugin : LoadedPlugin {
    HostedPlugin() : LoadedPlugin(ZEL_PLUGIN_PATH) { plugin().open(); }
    ~HostedPlugin() { plugin().setMains(false); }
};

// The text a text opcode writes into a sentinel-filled 256-byte buffer.
std::string text(VstPlugin& plugin, VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0) {
    char buffer[256];
    std::memset(buffer, kSentinel, sizeof buffer);
    plugin.dispatch(opcode, index, value, buffer);
    if (std::all_of(buffer, buffer + sizeof buffer, [](char c) { return c == kSentinel; }))
        return kUntouched;
    const void* end = std::memchr(buffer, '\0', sizeof buffer);
    if (end == nullptr) return "<unterminated>";
    return std::string(static_cast<const char*>(buffer), static_cast<const char*>(end));
}

TEST(PluginEntry, AsksTheHostOnlyForItsVersionAndRefusesOneThatHasNone) {
    VstLibrary library(ZEL_PLUGIN_PATH);
    HostCallback host;
    host.setVersionAnswer(0);
    AEffect* refused = nullptr;
    {
        HostCallback::LoadingScope loading(host);
        refused = library.entryPoint()(&HostCallback::entry);
    }
    EXPECT_EQ(refused, nullptr);
    EXPECT_EQ(host.requests(), std::vector<VstInt32>{audioMasterVersion}); // nothing to call again
    EXPECT_TRUE(host.lastRequestHadNoEffect());
    EXPECT_EQ(library.entryPoint()(nullptr), nullptr);

    // Neither construction nor switching on asks for MIDI or anything else.
    HostedPlugin hosted;
    hosted.plugin().setMains(true);
    EXPECT_EQ(hosted.host().requests(), std::vector<VstInt32>{audioMasterVersion});
}

TEST(PluginParameters, IndicesOutOfRangeAndMissingBuffers) {
    HostedPlugin hosted;
    VstPlugin& plugin = hosted.plugin();
    for (int op : {effGetParamName, effGetParamLabel, effGetParamDisplay})
        EXPECT_EQ(plugin.dispatch(op, 0, 0, nullptr), 0);

    plugin.setParameter(kElev, 0.7f);
    float before[7];
    for (int i = 0; i < 7; ++i) before[i] = plugin.getParameter(i);
    for (int i : {7, -1, 1 << 30}) {
        plugin.setParameter(i, 0.3f);
        EXPECT_EQ(plugin.getParameter(i), 0.0f) << i;
        for (int op : {effGetParamName, effGetParamLabel, effGetParamDisplay})
            EXPECT_EQ(text(plugin, op, i), kUntouched) << op << " " << i;
    }
    for (int i = 0; i < 7; ++i) EXPECT_EQ(plugin.getParameter(i), before[i]) << i;
}

// Angles round to whole degrees, halves away from zero; metres truncate to
// hundredths, with one more character for a minus sign; far distances read "off".
TEST(PluginParameters, DisplayTexts) {
    HostedPlugin hosted;
    VstPlugin& plugin = hosted.plugin();
    const struct {
        int index;
        float value;
        const char* text;
    } cases[] = {
        {kX, 0.35f, "-1.20"},  // exactly -1.2f: the sign costs no digit
        {kX, 0.5875f, "0.69"}, // 0.69999981: truncated, not rounded
        {kZ, 0.25f, "-2.00"},         {kDist, 0.0025f, "3.99"},     {kDist, 0.0f, "off"},
        {kNFC, 0.0f, "0.50"},         {kNFC, 1.0f, "off"},          {kAzim, 179.6f / 360, "180"},
        {kAzim, 179.4f / 360, "179"}, {kAzim, 359.7f / 360, "360"}, {kElev, 134.6f / 180, "45"},
        {kElev, 45.4f / 180, "-45"},  {kElev, 45.6f / 180, "-44"},  {kElev, 89.6f / 180, "0"},
        {kElev, 89.4f / 180, "-1"},   {kElev, 0.0f, "-90"}};
    for (const auto& c : cases) {
        plugin.setParameter(c.index, c.value);
        EXPECT_EQ(plugin.parameterDisplay(c.index), c.text) << c.index << " " << c.value;
    }
}

TEST(PluginPrograms, NamesSelectionAndTheInitNumbering) {
    HostedPlugin hosted;
    VstPlugin& plugin = hosted.plugin();
    for (int p = 0; p < 16; ++p)
        EXPECT_EQ(text(plugin, effGetProgramNameIndexed, p, 7), "Prog " + std::to_string(p + 1));
    for (int p : {16, -1}) {
        EXPECT_EQ(text(plugin, effGetProgramNameIndexed, p), kUntouched) << p;
        char buffer[32];
        EXPECT_EQ(plugin.dispatch(effGetProgramNameIndexed, p, 0, buffer), 0) << p;
    }
    EXPECT_EQ(plugin.dispatch(effGetProgramNameIndexed, 0, 0, nullptr), 0);
    EXPECT_EQ(plugin.dispatch(effGetProgram), 0);
    EXPECT_EQ(text(plugin, effGetProgramName), "Prog 1");

    plugin.dispatch(effSetProgram, 0, 3);
    // Refused: past the end, negative, and numbers that would wrap to 1 in 32 bits.
    for (VstIntPtr p : {VstIntPtr{16}, VstIntPtr{-1}, (VstIntPtr{1} << 32) + 1})
        plugin.dispatch(effSetProgram, 0, p);
    EXPECT_EQ(plugin.dispatch(effGetProgram), 3);
    EXPECT_EQ(text(plugin, effGetProgramName), "Prog 4");

    // A program named "Init" tells its slot, but only to getProgramName.
    char init[] = "Init";
    plugin.dispatch(effSetProgramName, 0, 0, init);
    EXPECT_EQ(text(plugin, effGetProgramName), "Init 4");
    EXPECT_EQ(text(plugin, effGetProgramNameIndexed, 3), "Init");
    char longName[] = "A name far longer than twenty-three characters";
    plugin.dispatch(effSetProgramName, 0, 0, longName);
    EXPECT_EQ(text(plugin, effGetProgramName), std::string(longName, 23));
    EXPECT_EQ(plugin.dispatch(effSetProgramName, 0, 0, nullptr), 0);
    EXPECT_EQ(plugin.dispatch(effGetProgramName, 0, 0, nullptr), 0);
}

TEST(PluginPrograms, ChangesWriteTheEncodersViewBackAndSwitchingAppliesOnlyTheAzimuth) {
    HostedPlugin hosted;
    VstPlugin& plugin = hosted.plugin();
    // Azimuth 90 degrees, then x = 2 m: the source moves to x 2, y 4, beyond
    // 4 m, and is pulled back; program 0 now stores the derived azimuth.
    plugin.setParameter(kAzim, 0.25f);
    plugin.setParameter(kX, 0.75f);
    const float derived = plugin.getParameter(kAzim);
    EXPECT_NEAR(derived, 0.17620819f, 1e-6); // atan2(4, 2) / 2 pi
    plugin.dispatch(effSetProgram, 0, 1);
    EXPECT_EQ(plugin.getParameter(kAzim), 0.0f);
    plugin.dispatch(effSetProgram, 0, 0);
    EXPECT_NEAR(plugin.getParameter(kAzim), derived, 1e-6);

    // Program 5 stores the defaults, but each stored value is written after
    // the earlier ones refreshed the record: only its azimuth takes effect.
    plugin.setParameter(kElev, 0.75f); // 45 degrees
    plugin.setParameter(kDist, 0.5f);  // 2 m
    plugin.setParameter(kNFC, 0.2f);   // 1.2 m
    const float elevation = plugin.getParameter(kElev), distance = plugin.getParameter(kDist);
    plugin.dispatch(effSetProgram, 0, 5);
    EXPECT_NEAR(plugin.getParameter(kAzim), 0.0f, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kElev), elevation, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kDist), distance, 1e-6);
    EXPECT_NEAR(plugin.getParameter(kNFC), 0.2f, 1e-6);
}

// ---- Audio

// A source close by with compensation on, so that the near-field filters
// run; the sample rates are sent in turn.
void startNearSource(VstPlugin& plugin, const std::vector<float>& rates = {48000.0f}) {
    for (float rate : rates) plugin.setSampleRate(rate);
    plugin.setBlockSize(kMaxBlock);
    for (auto [index, value] :
         {std::pair{kAzim, 0.13f}, {kElev, 0.62f}, {kDist, 0.7f}, {kNFC, 0.2f}})
        plugin.setParameter(index, value);
}

using Channels = std::vector<std::vector<float>>;

// The signal through a new instance, with blocks cut at every write and at
// every frame in `cuts`, never longer than a host block, and an empty block
// after each cut. The input may live in an output's buffer, and the outputs
// left unconnected share one scratch buffer, as in Ardour.
struct Layout {
    int inputOutput = -1;
    std::vector<int> unconnected;
};
Channels run(const std::vector<float>& signal, const std::vector<TimedWrite>& writes,
             const std::vector<long long>& cuts, const std::vector<float>& rates = {48000.0f},
             const Layout& layout = {}) {
    HostedPlugin hosted;
    startNearSource(hosted.plugin(), rates);
    BlockProcessor buffers(hosted.plugin(), 1, kOutputs, static_cast<int>(signal.size()));
    std::copy(signal.begin(), signal.end(), buffers.input(0));
    buffers.setInputInOutput(layout.inputOutput);
    buffers.setUnconnected(layout.unconnected);
    playWithWrites(hosted.plugin(), buffers, writes, kMaxBlock, cuts);
    Channels out;
    for (int c = 0; c < kOutputs; ++c) out.push_back(buffers.outputChannel(c));
    return out;
}

// Blocks of 0, 1, 2, ... frames; the input in output 0's buffer (as Ardour
// passes it) or in one written later (9), the unconnected outputs sharing one
// scratch buffer: the same signal as whole blocks into buffers of their own.
TEST(PluginAudio, BlockSplitsInPlaceInputAndSharedScratchGiveTheSameSignal) {
    const std::vector<float> signal = measure::noise(6000, 1);
    // Near source, then at 4 m with compensation on (the far path), then
    // compensation off; a switch-off and -on between.
    const std::vector<TimedWrite> events = {
        {700, kAzim, 0.4f},  {1500, kDist, 0.9f}, {2100, -1, 0.0f},   {2900, kX, 0.2f},
        {3200, kDist, 0.0f}, {3500, kNFC, 1.0f},  {4200, kElev, 0.1f}};
    const Channels reference = run(signal, events, {});
    std::vector<long long> cuts;
    for (int pos = 0, n = 0; pos < 6000; pos += n, ++n) cuts.push_back(pos);
    const Channels split = run(signal, events, cuts);
    double energy = 0.0; // NaN would differ from itself
    for (int c = 0; c < kOutputs; ++c) {
        for (size_t i = 0; i < signal.size(); ++i) {
            ASSERT_EQ(split[c][i], reference[c][i]) << "channel " << c << " frame " << i;
            energy += reference[c][i] * reference[c][i];
        }
    }
    EXPECT_GT(energy, 1.0);

    const Layout ardour = {0, {4, 5, 6, 7, 8, 10, 11, 12, 13, 14, 15}};
    const Layout late = {9, {0, 1, 2, 3, 4, 5, 6, 7, 8}};
    for (const Layout& layout : {ardour, late}) {
        const Channels shared = run(signal, events, {}, {48000.0f}, layout);
        for (int c = 0; c < kOutputs; ++c) {
            if (std::count(layout.unconnected.begin(), layout.unconnected.end(), c) != 0) continue;
            EXPECT_EQ(shared[c], reference[c]) << "input in " << layout.inputOutput << ", " << c;
        }
    }
}

// Switching off and on between blocks starts afresh: the second time the
// signal comes out as it did after the first switch-on.
TEST(PluginAudio, SwitchingOffAndOnStartsAfresh) {
    std::vector<float> signal = measure::noise(3000, 1);
    const std::vector<float> once = signal;
    signal.insert(signal.end(), once.begin(), once.end());
    const Channels out = run(signal, {{3000, -1, 0.0f}}, {});
    for (int c = 0; c < kOutputs; ++c)
        EXPECT_TRUE(std::equal(out[c].begin(), out[c].begin() + 3000, out[c].begin() + 3000)) << c;
}

// Some scanners send a rate of 0: rates that are no rates keep the one set
// before, while a real one reaches the near-field filters.
TEST(PluginAudio, SampleRatesThatAreNoRatesAreIgnored) {
    const std::vector<float> signal = measure::noise(2048, 1);
    const std::vector<TimedWrite> nearer = {{0, kDist, 0.8f}}; // 0.8 m, compensation at 1.2 m
    const Channels at48k = run(signal, nearer, {});
    const Channels afterBadRates =
        run(signal, nearer, {}, {48000.0f, 0.0f, -44100.0f, std::nanf(""), 1e-30f, INFINITY});
    EXPECT_EQ(afterBadRates, at48k);
    EXPECT_NE(run(signal, nearer, {}, {96000.0f})[1], at48k[1]);
}

// Exactly the frames asked for, 0 to 1024, and never the input; nothing at
// all for malformed calls and the entries other than processReplacing.
TEST(PluginAudio, WritesExactlyTheFramesAskedForAndNothingElse) {
    HostedPlugin hosted;
    VstPlugin& plugin = hosted.plugin();
    startNearSource(plugin);
    plugin.setMains(true);
    const std::vector<float> signal = measure::noise(kMaxBlock + 8, 1);
    std::vector<float> input = signal;
    Channels out(kOutputs, std::vector<float>(kMaxBlock + 8, 7.0f));
    float* in[1] = {input.data()};
    float *outs[kOutputs], *hole[kOutputs];
    for (int c = 0; c < kOutputs; ++c) outs[c] = hole[c] = out[c].data();
    hole[5] = nullptr;
    auto expectWritten = [&](int n) {
        for (int c = 0; c < kOutputs; ++c) {
            for (int i = 0; i < kMaxBlock + 8; ++i)
                ASSERT_EQ(out[c][i] == 7.0f, i >= n) << n << " " << c << " " << i;
            std::fill(out[c].begin(), out[c].end(), 7.0f);
        }
        EXPECT_EQ(input, signal);
    };
    for (int n : {0, 1, 2, 3, 17, 64, 255, 511, 1000, 1023, 1024}) {
        plugin.processReplacing(in, outs, n);
        expectWritten(n);
    }
    AEffect* fx = &plugin.effect();
    fx->process(fx, in, outs, 64); // the deprecated accumulating entry
    fx->processReplacing(fx, in, outs, -1);
    fx->processReplacing(fx, nullptr, outs, 64);
    fx->processReplacing(fx, in, nullptr, 64);
    fx->processReplacing(fx, in, hole, 64);
    fx->processReplacing(nullptr, in, outs, 64);
    expectWritten(0);
    std::vector<double> dIn(64, 0.5), dOut(64, 7.0);
    double* dIns[1] = {dIn.data()};
    double* dOuts[kOutputs];
    for (auto& p : dOuts) p = dOut.data();
    fx->processDoubleReplacing(fx, dIns, dOuts, 64);
    EXPECT_EQ(dOut, std::vector<double>(64, 7.0));
    EXPECT_EQ(fx->dispatcher(nullptr, effGetVstVersion, 0, 0, nullptr, 0.0f), 0);
}

} // namespace
