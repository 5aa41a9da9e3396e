#pragma once

// Helpers for the zelrender tests: a scratch directory, audio files written
// and read with libsndfile, and running the zelrender executable.

#include <string>
#include <vector>

// A fresh directory under the system's temp dir, removed with its contents.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    std::string file(const std::string& name) const { return path + "/" + name; }
    // Names in the directory, hidden ones included, sorted.
    std::vector<std::string> entries() const;
    void writeText(const std::string& name, const std::string& text) const;

private:
    std::string path;
};

struct AudioData {
    int channels = 0;
    int sampleRate = 0;
    int format = 0;
    std::vector<float> samples; // interleaved
    long long frames() const { return channels ? samples.size() / channels : 0; }
};

// Writes interleaved float samples; format is a libsndfile SF_FORMAT_* mask.
void writeAudio(const std::string& path, const AudioData& audio);
AudioData readAudio(const std::string& path);
// Reproducible noise in -0.5..0.5.
std::vector<float> testNoise(long long count, unsigned seed);

struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs the zelrender under test with the given arguments.
RunResult runZelrender(const std::vector<std::string>& arguments);
