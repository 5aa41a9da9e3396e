// processReplacing of the built plug-in, reached the way a host reaches it:
// dlopen, VSTPluginMain, the dispatcher, then block after block.
//
// Three modes: compensation off (interior panning, no filters); compensation
// on with the source at 4 m (compensation filters only); compensation on
// with the source at 1 m (source and compensation filters).

#include "BlockProcessor.h"
#include "VstPlugin.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kOutputs = 16;
constexpr int kAzimuth = 0, kElevation = 1, kDistance = 5, kCompensation = 6;
// Normalised values: distance v = (4 - m) / 4, compensation v = (m - 0.5) / 3.5.
constexpr float kDistanceFar = 0.0f, kDistanceOneMetre = 0.75f, kDistanceTwoMetres = 0.5f;
constexpr float kCompensationOff = 1.0f, kCompensationTwoMetres = 1.5f / 3.5f;

// One loaded, switched-on instance; closed and unloaded at the end.
class HostedEncoder {
public:
    HostedEncoder(int blockSize, float distance, float compensation)
        : loaded(ZEL_PLUGIN_PATH), buffers(loaded.plugin(), 1, kOutputs, blockSize) {
        VstPlugin& plugin = loaded.plugin();
        plugin.requireChannels(1, kOutputs, "the benchmark");
        plugin.open();
        plugin.setSampleRate(48000.0f);
        plugin.setBlockSize(blockSize);
        plugin.setParameter(kCompensation, compensation);
        plugin.setParameter(kAzimuth, 30.0f / 360.0f);
        plugin.setParameter(kElevation, 100.0f / 180.0f);
        plugin.setParameter(kDistance, distance);
        plugin.setMains(true);

        // Steady noise, so that no filter state decays into silence.
        unsigned state = 1;
        float* input = buffers.input(0);
        for (int i = 0; i < blockSize; ++i) {
            state = state * 1664525u + 1013904223u;
            input[i] = static_cast<float>(state >> 8) / 16777216.0f - 0.5f;
        }
    }

    ~HostedEncoder() { loaded.plugin().setMains(false); }

    void processBlock() { buffers.process(0, buffers.frames()); }
    const float* output(int channel) const { return buffers.output(channel); }

private:
    LoadedPlugin loaded;
    BlockProcessor buffers;
};

void processReplacing(benchmark::State& state, float distance, float compensation) {
    const int blockSize = static_cast<int>(state.range(0));
    HostedEncoder encoder(blockSize, distance, compensation);
    for (auto _ : state) {
        encoder.processBlock();
        benchmark::DoNotOptimize(encoder.output(kOutputs - 1)[blockSize - 1]);
        benchmark::ClobberMemory();
    }
    const double samples = static_cast<double>(state.iterations()) * blockSize;
    state.SetItemsProcessed(static_cast<int64_t>(samples));
    // Time per mono input sample (all 16 outputs written), shown with its SI
    // prefix, e.g. 17.2ns.
    state.counters["per_sample"] =
        benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void CompensationOff(benchmark::State& state) {
    processReplacing(state, kDistanceTwoMetres, kCompensationOff);
}
void CompensationOnSourceAt4m(benchmark::State& state) {
    processReplacing(state, kDistanceFar, kCompensationTwoMetres);
}
void CompensationOnSourceAt1m(benchmark::State& state) {
    processReplacing(state, kDistanceOneMetre, kCompensationTwoMetres);
}

BENCHMARK(CompensationOff)->Arg(64)->Arg(512);
BENCHMARK(CompensationOnSourceAt4m)->Arg(64)->Arg(512);
BENCHMARK(CompensationOnSourceAt1m)->Arg(64)->Arg(512);

} // namespace
