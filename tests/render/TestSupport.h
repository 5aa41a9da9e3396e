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
    std::vector<std::string> entries() const; // hidden ones too, sorted
    void writeText(const std::string& name, const std::string& text) const;
    std::string readText(const std::string& name) const;

private:
    std::string path;
};

struct AudioData {
    int channels, sampleRate, format; // format: a libsndfile SF_FORMAT_* mask
    std::vector<float> samples;       // interleaved
    long long frames() const { return channels ? samples.size() / channels : 0; }
};

void writeAudio(const std::string& path, const AudioData& audio);
AudioData readAudio(const std::string& path);
std::vector<std::string> lines(const std::string& text);

struct RunResult {
    int exitCode;
    std::string out, err;
};
// interruptAfterMs > 0: SIGINT to zelrender after that many milliseconds.
RunResult runZelrender(const std::vector<std::string>& arguments, int interruptAfterMs = 0);
