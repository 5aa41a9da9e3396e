#pragma once

#include "AudioFiles.h"

#include <spatialaudio/Ambisonics.h>

#include <cstdint>
#include <string>
#include <vector>

// A headphone version of the render: the 16 ambisonic channels decoded at
// third order through a head-related transfer function set (SOFA), written
// as a 2-channel float WAV under the same temporary-name-then-rename rule as
// the main output. The decoder takes AmbiX as it is (ACN order, SN3D, W at
// unit gain), which is what the encoder writes.
class BinauralPreview : public AmbisonicSink {
public:
    static constexpr const char* kDefaultHrtf = "/usr/share/libmysofa/default.sofa";

    // Throws AudioFileError if the HRTF set cannot be read or the file not
    // be written, before anything is rendered.
    BinauralPreview(const std::string& path, const std::string& hrtfPath, int sampleRate,
                    std::int64_t frames);

    void write(const float* const* channels, int frames) override;
    // Decodes what is left, lets the filters ring out and puts the file in place.
    void commit();

private:
    static constexpr unsigned kBlock = 512;
    static constexpr int kChannels = 16;
    // Decodes the pending block (zeros after what was filled), writes frames of it.
    void decodeBlock(unsigned frames);

    CAmbisonicBinauralizer decoder;
    CBFormat block;
    unsigned tail = 0;
    unsigned filled = 0;
    std::vector<std::vector<float>> pending;
    std::vector<float> left, right;
    AtomicWavWriter output;
};

// Hands every block to several sinks in turn.
class SinkFanout : public AmbisonicSink {
public:
    explicit SinkFanout(std::vector<AmbisonicSink*> sinks) : sinks(std::move(sinks)) {}
    void write(const float* const* channels, int frames) override {
        for (AmbisonicSink* sink : sinks) sink->write(channels, frames);
    }

private:
    std::vector<AmbisonicSink*> sinks;
};
