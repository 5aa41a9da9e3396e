#include "TestSupport.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sndfile.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

ScratchDir::ScratchDir() {
    std::string pattern = (fs::temp_directory_path() / "zelrender-test.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path = pattern;
}

ScratchDir::~ScratchDir() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

std::vector<std::string> ScratchDir::entries() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void ScratchDir::writeText(const std::string& name, const std::string& text) const {
    std::ofstream(file(name)) << text;
}

std::string ScratchDir::readText(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void writeAudio(const std::string& path, const AudioData& audio) {
    SF_INFO info{0, audio.sampleRate, audio.channels, audio.format, 0, 0};
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr) throw std::runtime_error("cannot write test file " + path);
    sf_writef_float(file, audio.samples.data(), audio.frames());
    sf_close(file);
}

AudioData readAudio(const std::string& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) throw std::runtime_error("cannot read " + path);
    AudioData audio{info.channels, info.samplerate, info.format,
                    std::vector<float>(static_cast<std::size_t>(info.frames) * info.channels)};
    sf_readf_float(file, audio.samples.data(), info.frames);
    sf_close(file);
    return audio;
}

std::vector<float> testNoise(long long count, unsigned seed) {
    std::vector<float> samples(static_cast<std::size_t>(count));
    unsigned state = seed * 2654435761u + 1u;
    for (float& s : samples) {
        state = state * 1664525u + 1013904223u;
        s = static_cast<float>(state >> 8) / 16777216.0f - 0.5f;
    }
    return samples;
}

std::vector<std::string> lines(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);) result.push_back(line);
    return result;
}

RunResult runZelrender(const std::vector<std::string>& arguments, int interruptAfterMs) {
    ScratchDir capture;
    const pid_t child = fork();
    if (child == 0) {
        dup2(open(capture.file("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(capture.file("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        std::vector<std::string> copies = arguments;
        copies.insert(copies.begin(), ZELRENDER_PATH);
        std::vector<char*> argv;
        for (std::string& a : copies) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    if (interruptAfterMs > 0) {
        usleep(static_cast<useconds_t>(interruptAfterMs) * 1000);
        kill(child, SIGINT);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            capture.readText("out"), capture.readText("err")};
}
