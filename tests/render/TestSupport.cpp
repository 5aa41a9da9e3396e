#include "TestSupport.h"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <sndfile.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void removeTree(const std::string& path) {
    if (DIR* dir = opendir(path.c_str())) {
        while (dirent* entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name == "." || name == "..") continue;
            const std::string child = path + "/" + name;
            if (entry->d_type == DT_DIR) {
                removeTree(child);
            } else {
                unlink(child.c_str());
            }
        }
        closedir(dir);
    }
    rmdir(path.c_str());
}

std::string slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace

ScratchDir::ScratchDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/zelrender-test.XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path = pattern;
}

ScratchDir::~ScratchDir() {
    removeTree(path);
}

std::vector<std::string> ScratchDir::entries() const {
    std::vector<std::string> names;
    if (DIR* dir = opendir(path.c_str())) {
        while (dirent* entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..") names.push_back(name);
        }
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

void ScratchDir::writeText(const std::string& name, const std::string& text) const {
    std::ofstream(file(name)) << text;
}

void writeAudio(const std::string& path, const AudioData& audio) {
    SF_INFO info{};
    info.channels = audio.channels;
    info.samplerate = audio.sampleRate;
    info.format = audio.format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr) throw std::runtime_error("cannot write test file " + path);
    sf_writef_float(file, audio.samples.data(), audio.frames());
    sf_close(file);
}

AudioData readAudio(const std::string& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) throw std::runtime_error("cannot read " + path);
    AudioData audio;
    audio.channels = info.channels;
    audio.sampleRate = info.samplerate;
    audio.format = info.format;
    audio.samples.resize(static_cast<std::size_t>(info.frames) * info.channels);
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

RunResult runZelrender(const std::vector<std::string>& arguments) {
    ScratchDir capture;
    const std::string outPath = capture.file("stdout"), errPath = capture.file("stderr");
    const pid_t child = fork();
    if (child == 0) {
        const int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        std::vector<char*> argv;
        std::string program = ZELRENDER_PATH;
        argv.push_back(program.data());
        std::vector<std::string> copies = arguments;
        for (std::string& a : copies) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    RunResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = slurp(outPath);
    result.err = slurp(errPath);
    return result;
}
