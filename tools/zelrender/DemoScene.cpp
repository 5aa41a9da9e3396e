#include "DemoScene.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kPointSpacing = 0.02; // seconds between trajectory points
constexpr double kCircleSeconds = 5.0;
constexpr double kCircleRadius = 3.0;
constexpr double kBurstPeriod = 0.3, kBurstLength = 0.2, kBurstRamp = 0.01; // seconds
constexpr float kLevel = 0.25f;

CartesianPosition circlePoint(double t) {
    const double azimuth = 2.0 * kPi * t / kCircleSeconds;
    const double elevation = (-20.0 + 60.0 * t / kCircleSeconds) * kPi / 180.0;
    return {kCircleRadius * std::cos(elevation) * std::cos(azimuth),
            kCircleRadius * std::cos(elevation) * std::sin(azimuth),
            kCircleRadius * std::sin(elevation)};
}

// A straight line through the centre, crossing it halfway.
CartesianPosition flyThroughPoint(double t) {
    const double share = (t - kCircleSeconds) / (DemoScene::kSeconds - kCircleSeconds);
    const double along = 1.0 - 2.0 * share; // +1 .. -1
    return {3.0 * along, 1.5 * along, 1.0 * along};
}

} // namespace

AutomationPath DemoScene::trajectory() {
    std::vector<TimedPosition> points;
    const int count = static_cast<int>(std::lround(kSeconds / kPointSpacing));
    for (int i = 0; i <= count; ++i) {
        const double t = i * kPointSpacing;
        points.push_back({t, t < kCircleSeconds ? circlePoint(t) : flyThroughPoint(t)});
    }
    return AutomationPath(std::move(points));
}

DemoSignal::DemoSignal() : total(std::llround(DemoScene::kSeconds * DemoScene::kSampleRate)) {}

float DemoSignal::nextNoise() {
    // xorshift32: white noise that is the same on every machine.
    randomState ^= randomState << 13;
    randomState ^= randomState >> 17;
    randomState ^= randomState << 5;
    const float white = static_cast<float>(randomState) / 2147483648.0f - 1.0f;
    // Three leaky integrators tilt it towards pink (-3 dB per octave).
    pink0 = 0.99765f * pink0 + white * 0.0990460f;
    pink1 = 0.96300f * pink1 + white * 0.2965164f;
    pink2 = 0.57000f * pink2 + white * 1.0526913f;
    return (pink0 + pink1 + pink2 + white * 0.1848f) * 0.2f;
}

float DemoSignal::burstEnvelope(std::int64_t frame) const {
    const double t = std::fmod(frame / DemoScene::kSampleRate, kBurstPeriod);
    if (t >= kBurstLength) return 0.0f;
    const double edge = std::min(t, kBurstLength - t) / kBurstRamp;
    if (edge >= 1.0) return 1.0f;
    return static_cast<float>(0.5 - 0.5 * std::cos(kPi * edge)); // raised-cosine ramps
}

int DemoSignal::read(float* samples, int count) {
    const int n = static_cast<int>(std::min<std::int64_t>(count, total - position));
    for (int i = 0; i < n; ++i, ++position) {
        samples[i] = kLevel * burstEnvelope(position) * nextNoise();
    }
    return n;
}
