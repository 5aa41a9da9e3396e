// processReplacing of the built plug-in, reached the way a host reaches it:
// dlopen, VSTPluginMain, the dispatcher, then block after block.
//
// Three modes: compensation off (interior panning, no filters); compensation
// on with the source at 4 m (compensation filters only); compensation on
// with the source at 1 m (source and compensation filters).

#include "aeffectx.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kOutputs = 16;
constexpr int kAzimuth = 0, kElevation = 1, kDistance = 5, kCompensation = 6;
// Normalised values: distance v = (4 - m) / 4, compensation v = (m - 0.5) / 3.5.
constexpr float kDistanceFar = 0.0f, kDistanceOneMetre = 0.75f, kDistanceTwoMetres = 0.5f;
constexpr float kCompensationOff = 1.0f, kCompensationTwoMetres = 1.5f / 3.5f;

VstIntPtr hostCallback(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
    switch (opcode) {
    case audioMasterVersion:
        return 2400;
    case audioMasterGetSampleRate:
        return 48000;
    default:
        return 0;
    }
}

// One loaded, switched-on instance; closed and unloaded at the end.
class HostedEncoder {
public:
    HostedEncoder(int blockSize, float distance, float compensation)
        : input(blockSize), outputs(kOutputs, std::vector<float>(blockSize)),
          outputPointers(kOutputs) {
        library = dlopen(ZEL_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) throw std::runtime_error(dlerror());
        void* symbol = dlsym(library, "VSTPluginMain");
        if (symbol == nullptr) throw std::runtime_error("no VSTPluginMain");
        AEffect* (*entry)(audioMasterCallback);
        std::memcpy(&entry, &symbol, sizeof(entry));
        effect = entry(hostCallback);
        if (effect == nullptr || effect->numOutputs != kOutputs) {
            throw std::runtime_error("not the encoder plug-in");
        }
        dispatch(effOpen);
        dispatch(effSetSampleRate, 0, nullptr, 48000.0f);
        dispatch(effSetBlockSize, blockSize);
        effect->setParameter(effect, kCompensation, compensation);
        effect->setParameter(effect, kAzimuth, 30.0f / 360.0f);
        effect->setParameter(effect, kElevation, 100.0f / 180.0f);
        effect->setParameter(effect, kDistance, distance);
        dispatch(effMainsChanged, 1);

        // Steady noise, so that no filter state decays into silence.
        unsigned state = 1;
        for (float& s : input) {
            state = state * 1664525u + 1013904223u;
            s = static_cast<float>(state >> 8) / 16777216.0f - 0.5f;
        }
        for (int c = 0; c < kOutputs; ++c) outputPointers[c] = outputs[c].data();
    }

    ~HostedEncoder() {
        dispatch(effMainsChanged, 0);
        dispatch(effClose);
        dlclose(library);
    }

    void processBlock() {
        float* in = input.data();
        effect->processReplacing(effect, &in, outputPointers.data(),
                                 static_cast<VstInt32>(input.size()));
    }

    const float* output(int channel) const { return outputs[channel].data(); }

private:
    void dispatch(VstInt32 opcode, VstIntPtr value = 0, void* ptr = nullptr, float opt = 0.0f) {
        effect->dispatcher(effect, opcode, 0, value, ptr, opt);
    }

    void* library = nullptr;
    AEffect* effect = nullptr;
    std::vector<float> input;
    std::vector<std::vector<float>> outputs;
    std::vector<float*> outputPointers;
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
