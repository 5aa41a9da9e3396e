// The built module under hosts that push it: parameter writers on two threads
// at once, audio, automation and control threads together (also under
// ThreadSanitizer, ctest -L tsan), and samples or parameters that are no
// numbers.

#include "BlockProcessor.h"
#include "VstPlugin.h"
#include "measure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <mutex>
#include <random>
#include <thread>

namespace {

enum { kAzim, kElev, kX, kY, kZ, kDist, kNFC };
constexpr int kOutputs = 16;
constexpr double kTwoPi = 6.283185307179586;

#if defined(__SANITIZE_THREAD__)
constexpr int kTrials = 500;
constexpr auto kTortureTime = std::chrono::seconds(15);
#else
constexpr int kTrials = 10000;
constexpr auto kTortureTime = std::chrono::seconds(3);
#endif

struct Switched {
    explicit Switched(int frames)
        : loaded(ZEL_PLUGIN_PATH), buffers(plugin(), 1, kOutputs, frames) {
        plugin().open();
        plugin().setSampleRate(48000.0f);
        plugin().setBlockSize(frames);
        plugin().setMains(true);
    }
    ~Switched() { plugin().setMains(false); }
    VstPlugin& plugin() { return loaded.plugin(); }
    LoadedPlugin loaded;
    BlockProcessor buffers;
};

bool allFinite(const BlockProcessor& buffers, int frames) {
    for (int c = 0; c < kOutputs; ++c)
        for (int i = 0; i < frames; ++i)
            if (!std::isfinite(buffers.output(c)[i])) return false;
    return true;
}

// Azimuth and x written in bursts from two threads at once. Whatever the
// interleaving, the position read back is one whole position (its polar and
// Cartesian forms agree), and the audio comes from where it says: with
// compensation off the first-order gains are x/4, y/4 and z/4, which one
// frame of a constant 1 after a switch-on shows.
TEST(HostileHost, TwoWritersAtOnceLeaveOnePosition) {
    Switched host(1);
    VstPlugin& plugin = host.plugin();
    host.buffers.input(0)[0] = 1.0f;
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    int consistent = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
        plugin.setParameter(kElev, 0.3f + 0.4f * unit(rng));
        plugin.setParameter(kDist, 0.6f * unit(rng));
        float azimuths[8], xs[8];
        for (int i = 0; i < 8; ++i) azimuths[i] = unit(rng), xs[i] = unit(rng);
        std::atomic<int> ready{0};
        auto burst = [&](int index, const float* values) {
            ++ready;
            while (ready < 2) std::this_thread::yield();
            for (int i = 0; i < 8; ++i) plugin.setParameter(index, values[i]);
        };
        std::thread polar(burst, kAzim, azimuths), cartesian(burst, kX, xs);
        polar.join();
        cartesian.join();

        const double az = plugin.getParameter(kAzim) * kTwoPi;
        const double el = (plugin.getParameter(kElev) - 0.5) * kTwoPi / 2.0;
        const double d = 4.0 - 4.0 * plugin.getParameter(kDist);
        const double x = -4.0 + 8.0 * plugin.getParameter(kX);
        const double y = -4.0 + 8.0 * plugin.getParameter(kY);
        const double z = -4.0 + 8.0 * plugin.getParameter(kZ);
        plugin.setMains(false);
        plugin.setMains(true);
        host.buffers.process(0, 1);
        const bool formsAgree = std::fabs(x - std::cos(az) * std::cos(el) * d) < 1e-4 &&
                                std::fabs(y - std::sin(az) * std::cos(el) * d) < 1e-4 &&
                                std::fabs(z - std::sin(el) * d) < 1e-4;
        const bool audioAgrees = std::fabs(host.buffers.output(3)[0] - x / 4) < 1e-5 &&
                                 std::fabs(host.buffers.output(1)[0] - y / 4) < 1e-5 &&
                                 std::fabs(host.buffers.output(2)[0] - z / 4) < 1e-5;
        consistent += formsAgree && audioAgrees;
    }
    EXPECT_EQ(consistent, kTrials);
}

// An engine thread processing blocks of any size, an automation thread and a
// control thread switching programs, asking for texts, and switching off,
// changing the rate and switching on again, as DAWs do at a transport stop
// (processing pauses meanwhile: the engine lock is the host's, not the
// plug-in's). Every value the host sends is valid, so no output may be NaN.
TEST(HostileHost, AudioAutomationAndControlThreadsAtOnce) {
    constexpr int kMaxBlock = 4096;
    Switched host(kMaxBlock);
    VstPlugin& plugin = host.plugin();
    const std::vector<float> noise = measure::noise(kMaxBlock, 3);
    std::copy(noise.begin(), noise.end(), host.buffers.input(0));

    std::mutex engine;
    std::atomic<bool> stop{false}, finite{true};
    std::thread audio([&] {
        std::mt19937 rng(1);
        while (!stop) {
            std::lock_guard<std::mutex> running(engine);
            const int frames = static_cast<int>(rng() % (kMaxBlock + 1));
            host.buffers.process(0, frames);
            if (!allFinite(host.buffers, frames)) finite = false;
        }
    });
    std::thread automation([&] {
        std::mt19937 rng(2);
        std::uniform_real_distribution<float> unit(0.0f, 1.0f);
        while (!stop) plugin.setParameter(static_cast<int>(rng() % 7), unit(rng));
    });
    std::thread control([&] {
        std::mt19937 rng(4);
        const float rates[] = {22050.0f, 44100.0f, 48000.0f, 96000.0f, 192000.0f};
        while (!stop) {
            plugin.setProgram(static_cast<int>(rng() % 16));
            plugin.parameterDisplay(static_cast<int>(rng() % 7));
            plugin.programName(static_cast<int>(rng() % 16));
            if (rng() % 16 == 0) {
                std::lock_guard<std::mutex> paused(engine);
                plugin.setMains(false);
                plugin.setSampleRate(rates[rng() % 5]);
                plugin.setMains(true);
            }
        }
    });
    std::this_thread::sleep_for(kTortureTime);
    stop = true;
    audio.join();
    automation.join();
    control.join();
    EXPECT_TRUE(finite);
}

// One bad sample, or a parameter that is no number, with the near-field
// filters running: the outputs stay numbers throughout, and from the block
// after the parameter is valid again the encoder is whole again (the same
// as an instance that never saw the fault, once both have settled).
TEST(HostileHost, BadSamplesAndParametersLeaveNoTrace) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInf = std::numeric_limits<float>::infinity();
    const struct {
        const char* name;
        float sample;
        int index;
        float value;
    } cases[] = {{"NaN sample", kNaN, -1, 0.0f},        {"infinite sample", kInf, -1, 0.0f},
                 {"-inf sample", -kInf, -1, 0.0f},      {"1e38 spike", 1e38f, -1, 0.0f},
                 {"NaN distance", 0.5f, kDist, kNaN},   {"NaN x", 0.5f, kX, kNaN},
                 {"NaN compensation", 0.5f, kNFC, kNaN}};
    constexpr int kBlock = 512, kBlocks = 200;
    for (const auto& c : cases) {
        Switched faulty(kBlock), clean(kBlock);
        for (Switched* host : {&faulty, &clean}) {
            host->plugin().setParameter(kNFC, 0.2f);
            host->plugin().setParameter(kDist, 0.7f);
            host->plugin().setParameter(kAzim, 0.1f);
        }
        bool finite = true;
        for (int block = 0; block < kBlocks; ++block) {
            for (int i = 0; i < kBlock; ++i)
                faulty.buffers.input(0)[i] = clean.buffers.input(0)[i] =
                    std::sin(0.01f * static_cast<float>(block * kBlock + i));
            if (block == 1 && c.index < 0) faulty.buffers.input(0)[100] = c.sample;
            if (block == 1 && c.index >= 0) faulty.plugin().setParameter(c.index, c.value);
            if (block == 2 && c.index >= 0) faulty.plugin().setParameter(c.index, 0.7f);
            if (block == 2 && c.index >= 0) clean.plugin().setParameter(c.index, 0.7f);
            faulty.buffers.process(0, kBlock);
            clean.buffers.process(0, kBlock);
            finite = finite && allFinite(faulty.buffers, kBlock);
        }
        EXPECT_TRUE(finite) << c.name;
        for (int ch = 0; ch < kOutputs; ++ch)
            EXPECT_NEAR(faulty.buffers.output(ch)[kBlock - 1], clean.buffers.output(ch)[kBlock - 1],
                        1e-4)
                << c.name << ", channel " << ch;
    }
}

} // namespace
