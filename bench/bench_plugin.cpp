// processReplacing as a host calls it (dlopen, VSTPluginMain, the dispatcher,
// then block after block), for the plug-in on its fastest path, the plug-in
// on its scalar path (the straightforward loop), a peer encoder without
// distance filters, and a floor of 16 multiplies per sample.
//
// Names: mode/variant/load/block. Modes: off (compensation off), far
// (compensation 1.375 m, source 4 m), near (compensation 1.375 m, source 1 m);
// the source at azimuth 30 degrees, elevation 20 degrees, 48 kHz. Loads:
// static, auto (azimuth swept every block, and the distance where the mode
// allows), silence (after a second of signal). Run with
// --benchmark_enable_random_interleaving and repetitions; scripts/bench.sh
// does, and prints the medians.

#include "BlockProcessor.h"
#include "VstPlugin.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

enum Variant { kFast, kScalar, kPeer, kFloor };
enum Mode { kOff, kFar, kNear };
enum Load { kStatic, kAuto, kSilence };
const char* const kVariantNames[] = {"fast", "scalar", "peer", "floor"};
const char* const kModeNames[] = {"off", "far", "near"};
const char* const kLoadNames[] = {"static", "auto", "silence"};

constexpr const char* kPeerPath = "/usr/lib/x86_64-linux-gnu/iem-plugin-suite/vst/"
                                  "libStereoEncoder.so";
constexpr int kAzimuth = 0, kElevation = 1, kDistance = 5, kCompensation = 6;
constexpr int kPeerAzimuth = 6;
// Normalised: azimuth deg / 360, elevation (deg + 90) / 180, distance
// (4 - m) / 4, compensation (m - 0.5) / 3.5 with 1 = off.
float azimuthValue(double degrees) {
    return static_cast<float>(degrees / 360.0);
}
float distanceValue(double metres) {
    return static_cast<float>((4.0 - metres) / 4.0);
}

// Steady noise, so that no filter state decays into silence.
void fillNoise(float* v, int n) {
    unsigned state = 1;
    for (int i = 0; i < n; ++i) {
        state = state * 1664525u + 1013904223u;
        v[i] = static_cast<float>(state >> 8) / 16777216.0f - 0.5f;
    }
}

class Hosted {
public:
    Hosted(Variant variant, Mode mode, int block) : variant(variant), mode(mode) {
        const bool peer = variant == kPeer;
        // The scalar variant caps the path for its own instance only; a cap
        // set for the whole run (e.g. avx2) stays for the fast variant.
        const char* cap = std::getenv("ZEL_ENCODER_PATH");
        const std::string runCap = cap ? cap : "";
        if (variant == kScalar) setenv("ZEL_ENCODER_PATH", "scalar", 1);
        loaded = std::make_unique<LoadedPlugin>(peer ? kPeerPath : ZEL_PLUGIN_PATH);
        if (cap)
            setenv("ZEL_ENCODER_PATH", runCap.c_str(), 1);
        else
            unsetenv("ZEL_ENCODER_PATH");
        VstPlugin& plugin = loaded->plugin();
        const int channels = peer ? 64 : 16;
        buffers = std::make_unique<BlockProcessor>(plugin, peer ? 64 : 1, channels, block);
        plugin.open();
        plugin.setSampleRate(48000.0f);
        plugin.setBlockSize(block);
        if (peer) {
            plugin.setParameter(0, 0.5f); // third order
            plugin.setParameter(1, 1.0f); // SN3D
            plugin.setParameter(kPeerAzimuth, 0.583333f);
            plugin.setParameter(7, 0.555556f); // elevation 20 degrees
        } else {
            plugin.setParameter(kCompensation, mode == kOff ? 1.0f : 0.875f / 3.5f);
            plugin.setParameter(kAzimuth, azimuthValue(30.0));
            plugin.setParameter(kElevation, 110.0f / 180.0f);
            plugin.setParameter(kDistance, distanceValue(mode == kFar ? 4.0 : 1.0));
        }
        plugin.setMains(true);
        fillNoise(buffers->input(0), block);
        // The sweep's values are worked out here, so that the timed loop
        // holds only what a host does: set the parameters, process.
        for (int k = 0; k < kSweepSteps; ++k) {
            const double phase = std::sin(k * 6.283185307179586 / kSweepSteps);
            if (peer) {
                sweep[k][0] = static_cast<float>(0.5 + (30.0 + 20.0 * phase) / 360.0);
            } else {
                sweep[k][0] = azimuthValue(30.0 + 20.0 * phase);
                sweep[k][1] = distanceValue(1.0 + 0.2 * phase);
            }
        }
    }
    ~Hosted() { loaded->plugin().setMains(false); }

    void process() { buffers->process(0, buffers->frames()); }
    // One step of a sweep: azimuth 30 +- 20 degrees, distance 1 +- 0.2 m.
    void automate(int step) {
        const float* values = sweep[step % kSweepSteps];
        VstPlugin& plugin = loaded->plugin();
        if (variant == kPeer) {
            plugin.setParameter(kPeerAzimuth, values[0]);
            return;
        }
        plugin.setParameter(kAzimuth, values[0]);
        if (mode != kFar) plugin.setParameter(kDistance, values[1]);
    }
    void silence() {
        for (int k = 0; k < 48000 / buffers->frames() + 1; ++k) process();
        std::fill_n(buffers->input(0), buffers->frames(), 0.0f);
    }
    const float* last() const { return buffers->output(15); }

private:
    static constexpr int kSweepSteps = 128; // blocks per period of the sweep
    float sweep[kSweepSteps][2] = {};
    Variant variant;
    Mode mode;
    std::unique_ptr<LoadedPlugin> loaded;
    std::unique_ptr<BlockProcessor> buffers;
};

void perSample(benchmark::State& state, int block) {
    const double samples = static_cast<double>(state.iterations()) * block;
    state.SetItemsProcessed(static_cast<int64_t>(samples));
    state.counters["per_sample"] =
        benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void hosted(benchmark::State& state, Variant variant, Mode mode, Load load, int block) {
    Hosted h(variant, mode, block);
    if (load == kSilence) h.silence();
    int step = 0;
    for (auto _ : state) {
        if (load == kAuto) h.automate(++step);
        h.process();
        benchmark::DoNotOptimize(h.last()[block - 1]);
        benchmark::ClobberMemory();
    }
    perSample(state, block);
}

// Each output the input times a gain: what no encoder can undercut.
void floorLoop(benchmark::State& state, int block) {
    std::vector<float> in(block);
    fillNoise(in.data(), block);
    std::vector<std::vector<float>> out(16, std::vector<float>(block));
    float gain[16];
    for (int c = 0; c < 16; ++c) gain[c] = 0.1f * static_cast<float>(c + 1);
    for (auto _ : state) {
        for (int c = 0; c < 16; ++c) {
            float* o = out[c].data();
            for (int i = 0; i < block; ++i) o[i] = in[i] * gain[c];
        }
        benchmark::DoNotOptimize(out[15][block - 1]);
        benchmark::ClobberMemory();
    }
    perSample(state, block);
}

const int registered = [] {
    for (int block : {32, 64, 256, 1024}) {
        for (int load : {kStatic, kAuto, kSilence}) {
            for (int variant : {kFast, kScalar, kPeer}) {
                for (int mode : {kOff, kFar, kNear}) {
                    if (variant == kPeer && mode != kOff) continue; // the peer has no modes
                    const std::string name = std::string(kModeNames[mode]) + "/" +
                                             kVariantNames[variant] + "/" + kLoadNames[load] + "/" +
                                             std::to_string(block);
                    benchmark::RegisterBenchmark(name.c_str(), hosted, Variant(variant), Mode(mode),
                                                 Load(load), block);
                }
            }
        }
        benchmark::RegisterBenchmark(("any/floor/static/" + std::to_string(block)).c_str(),
                                     floorLoop, block);
    }
    return 0;
}();

} // namespace
