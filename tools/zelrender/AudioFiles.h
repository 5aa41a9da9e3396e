#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <sndfile.h>

// An audio file that cannot be read or written, with the reason.
struct AudioFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A mono signal delivered in pieces.
class MonoSource {
public:
    virtual ~MonoSource() = default;
    virtual double sampleRate() const = 0;
    virtual std::int64_t frames() const = 0;
    // Fills up to count samples; returns how many, 0 at the end.
    virtual int read(float* samples, int count) = 0;
    // How many of the samples read so far were NaN or infinite.
    virtual std::int64_t nonFiniteSamples() const { return 0; }
};

// Receives rendered blocks, one buffer per channel.
class AmbisonicSink {
public:
    virtual ~AmbisonicSink() = default;
    virtual void write(const float* const* channels, int frames) = 0;
};

// A mono audio file of any format libsndfile reads (WAV, FLAC, Ogg, AIFF...),
// samples as floats in -1..1.
class MonoFileReader : public MonoSource {
public:
    explicit MonoFileReader(const std::string& path);
    ~MonoFileReader() override;
    MonoFileReader(const MonoFileReader&) = delete;
    MonoFileReader& operator=(const MonoFileReader&) = delete;

    double sampleRate() const override { return info.samplerate; }
    std::int64_t frames() const override { return info.frames; }
    int read(float* samples, int count) override;
    std::int64_t nonFiniteSamples() const override { return nonFinite; }

private:
    std::string path;
    SF_INFO info{};
    SNDFILE* file = nullptr;
    std::int64_t nonFinite = 0;
};

// Writes bytes to a file that appears under its name only when complete,
// like AtomicWavWriter; throws AudioFileError when it cannot.
void writeFileAtomically(const std::string& path, const std::string& bytes);

// Refuses, before anything is rendered, an output that would replace the
// input (the same file under any name: links and hard links included) or
// that cannot be written where it is named (a directory, a missing or
// read-only folder).
void checkOutputTarget(const std::string& output, const std::string& input);

// A multichannel 32-bit float WAV that appears under its name only when it is
// complete: it is written to a hidden temporary file in the same directory and
// renamed by commit(). Destroyed without commit(), it leaves nothing behind.
// Files beyond the 4 GiB of a WAV header are written as RF64.
class AtomicWavWriter : public AmbisonicSink {
public:
    AtomicWavWriter(const std::string& path, int channels, int sampleRate,
                    std::int64_t expectedFrames);
    ~AtomicWavWriter() override;
    AtomicWavWriter(const AtomicWavWriter&) = delete;
    AtomicWavWriter& operator=(const AtomicWavWriter&) = delete;

    void write(const float* const* channels, int frames) override;
    void commit();

private:
    void discard();

    std::string path;
    std::string temporaryPath;
    int channelCount;
    SNDFILE* file = nullptr;
    std::vector<float> interleaved;
    bool committed = false;
};
