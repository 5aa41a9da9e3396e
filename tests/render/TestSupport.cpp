#include "TestSupport.h"
#include "ChildProcess.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sndfile.h>
#include <sstream>
#include <stdexcept>
#include <thread>

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

std::vector<std::string> lines(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);) result.push_back(line);
    return result;
}

RunResult runZelrender(const std::vector<std::string>& arguments, int interruptAfterMs) {
    std::vector<std::string> command{ZELRENDER_PATH};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess zelrender(command);
    if (interruptAfterMs > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(interruptAfterMs));
        zelrender.signal(SIGINT);
    }
    return {zelrender.wait().value_or(-1), zelrender.output(), zelrender.errors()};
}
