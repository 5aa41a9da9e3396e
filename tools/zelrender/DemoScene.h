#pragma once

#include "AudioFiles.h"
#include "AutomationPath.h"

#include <cstdint>

// The built-in demonstration: pink-ish noise bursts (easy to localise) that
// circle the listener once while rising, then fly straight through the
// listener from front-left-above to back-right-below. Meant to be heard
// with near-field compensation on.
class DemoScene {
public:
    static constexpr double kSampleRate = 48000.0;
    static constexpr double kSeconds = 8.0;
    static constexpr double kCompensationMetres = 2.0;

    static AutomationPath trajectory();
};

// The demo's test signal, generated on the fly and always the same.
class DemoSignal : public MonoSource {
public:
    DemoSignal();
    double sampleRate() const override { return DemoScene::kSampleRate; }
    std::int64_t frames() const override { return total; }
    int read(float* samples, int count) override;

private:
    float nextNoise();
    float burstEnvelope(std::int64_t frame) const;

    std::int64_t total;
    std::int64_t position = 0;
    std::uint32_t randomState = 0x2545F491u;
    float pink0 = 0.0f, pink1 = 0.0f, pink2 = 0.0f;
};
