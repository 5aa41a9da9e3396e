// Cost of encoding one block: the third-order encoder in its three distance
// modes. Figures are per sample (items processed = frames).
#include "AmbiEncoderClass.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

enum Mode { kCompensationOff = 0, kPlaneWave = 1, kNearSource = 2 };

void encode(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    const Mode mode = static_cast<Mode>(state.range(1));

    ZelAmbisonicEncoder enc(kAmbi3P);
    enc.setfs(48000.0f);
    enc.setazim(0.3f);
    enc.setelev(0.6f);
    if (mode != kCompensationOff) enc.setNFC(0.3f);  // about 1.55 m
    enc.setdist(mode == kNearSource ? 0.75f : 0.0f); // 1 m, or 4 m (plane wave)
    enc.resume();

    std::vector<float> input(block);
    std::mt19937 rng(1);
    std::uniform_real_distribution<float> d(-0.5f, 0.5f);
    for (float& s : input) s = d(rng);
    std::vector<std::vector<float>> out(16, std::vector<float>(block));
    float* inputs[1] = {input.data()};
    float* outputs[16];
    for (int c = 0; c < 16; ++c) outputs[c] = out[c].data();

    for (auto _ : state) {
        enc.process(inputs, outputs, block);
        benchmark::DoNotOptimize(out[15][block - 1]);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * block);
    state.SetLabel(mode == kCompensationOff ? "compensation off"
                   : mode == kPlaneWave     ? "compensation on, source 4 m (process1)"
                                            : "compensation on, source 1 m (process)");
}

} // namespace

BENCHMARK(encode)->ArgsProduct({{64, 512}, {kCompensationOff, kPlaneWave, kNearSource}});
