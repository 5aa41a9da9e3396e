#include "AudioFiles.h"

#include <cmath>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Above this a plain WAV's 32-bit chunk sizes overflow.
constexpr std::int64_t kWavByteLimit = 0xFFFFFFFFLL - 4096;

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string baseNameOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

mode_t currentUmask() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

} // namespace

// ------------------------------------------------------------ MonoFileReader

MonoFileReader::MonoFileReader(const std::string& path_) : path(path_) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw AudioFileError("cannot read input '" + path + "': " + std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw AudioFileError("cannot read input '" + path + "': not a regular file");
    }
    file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) {
        throw AudioFileError("cannot read input '" + path + "': " + sf_strerror(nullptr));
    }
    if (info.channels != 1) {
        sf_close(file);
        throw AudioFileError("input '" + path + "' has " + std::to_string(info.channels) +
                             " channels; zelrender encodes a mono file");
    }
    if (info.samplerate < 1000 || info.samplerate > 768000) {
        sf_close(file);
        throw AudioFileError("input '" + path + "' has an unusable sample rate of " +
                             std::to_string(info.samplerate) + " Hz");
    }
    if (info.frames <= 0) {
        sf_close(file);
        throw AudioFileError("input '" + path + "' holds no samples: nothing to render");
    }
}

MonoFileReader::~MonoFileReader() {
    sf_close(file);
}

int MonoFileReader::read(float* samples, int count) {
    const sf_count_t got = sf_readf_float(file, samples, count);
    if (got < 0 || (got < count && sf_error(file) != SF_ERR_NO_ERROR)) {
        throw AudioFileError("cannot read input '" + path + "': " + sf_strerror(file));
    }
    for (sf_count_t i = 0; i < got; ++i) nonFinite += !std::isfinite(samples[i]);
    return static_cast<int>(got);
}

// ------------------------------------------------------------ output target

void writeFileAtomically(const std::string& path, const std::string& bytes) {
    std::string temporary = directoryOf(path) + "/." + baseNameOf(path) + ".XXXXXX";
    const int fd = mkstemp(temporary.data());
    if (fd < 0) throw AudioFileError("cannot write '" + path + "': " + std::strerror(errno));
    fchmod(fd, 0666 & ~currentUmask());
    bool written = true;
    for (std::size_t done = 0; written && done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        written = n > 0;
        done += written ? static_cast<std::size_t>(n) : 0;
    }
    const int error = errno;
    written = close(fd) == 0 && written && std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!written) {
        unlink(temporary.c_str());
        throw AudioFileError("cannot write '" + path +
                             "': " + std::strerror(error ? error : errno));
    }
}

void checkOutputTarget(const std::string& output, const std::string& input) {
    struct stat target {};
    if (stat(output.c_str(), &target) == 0) {
        if (S_ISDIR(target.st_mode))
            throw AudioFileError("cannot write '" + output + "': it is a directory");
        struct stat source {};
        if (!input.empty() && stat(input.c_str(), &source) == 0 && source.st_dev == target.st_dev &&
            source.st_ino == target.st_ino)
            throw AudioFileError("'" + output + "' is the input file '" + input +
                                 "': the render would replace it");
    }
    const std::string folder = directoryOf(output);
    if (access(folder.c_str(), W_OK | X_OK) != 0)
        throw AudioFileError("cannot write '" + output + "': " + std::strerror(errno));
}

// ------------------------------------------------------------ AtomicWavWriter

AtomicWavWriter::AtomicWavWriter(const std::string& path_, int channels, int sampleRate,
                                 std::int64_t expectedFrames)
    : path(path_), channelCount(channels) {
    std::string pattern = directoryOf(path) + "/." + baseNameOf(path) + ".XXXXXX";
    const int fd = mkstemp(pattern.data());
    if (fd < 0) {
        throw AudioFileError("cannot write '" + path + "': " + std::strerror(errno));
    }
    temporaryPath = pattern;
    // mkstemp makes the file private; the result should look like any new file.
    fchmod(fd, 0666 & ~currentUmask());

    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = channels;
    const bool large = expectedFrames * channels * 4 > kWavByteLimit;
    info.format = (large ? SF_FORMAT_RF64 : SF_FORMAT_WAV) | SF_FORMAT_FLOAT;
    file = sf_open_fd(fd, SFM_WRITE, &info, SF_TRUE);
    if (file == nullptr) {
        const std::string reason = sf_strerror(nullptr);
        close(fd);
        unlink(temporaryPath.c_str());
        throw AudioFileError("cannot write '" + path + "': " + reason);
    }
    // The PEAK chunk carries a time stamp; without it the same render gives
    // the same bytes every time.
    sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
}

AtomicWavWriter::~AtomicWavWriter() {
    if (!committed) discard();
}

void AtomicWavWriter::discard() {
    if (file != nullptr) sf_close(file);
    file = nullptr;
    unlink(temporaryPath.c_str());
}

void AtomicWavWriter::write(const float* const* channels, int frames) {
    interleaved.resize(static_cast<std::size_t>(frames) * channelCount);
    float* out = interleaved.data();
    for (int i = 0; i < frames; ++i) {
        for (int c = 0; c < channelCount; ++c) *out++ = channels[c][i];
    }
    if (sf_writef_float(file, interleaved.data(), frames) != frames) {
        throw AudioFileError("cannot write '" + path + "': " + sf_strerror(file));
    }
}

void AtomicWavWriter::commit() {
    // The header is completed on close; only then may the file take its name.
    sf_write_sync(file);
    const int closeError = sf_close(file);
    file = nullptr;
    if (closeError != 0) {
        unlink(temporaryPath.c_str());
        throw AudioFileError("cannot write '" + path + "': " + sf_error_number(closeError));
    }
    if (std::rename(temporaryPath.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        unlink(temporaryPath.c_str());
        throw AudioFileError("cannot write '" + path + "': " + reason);
    }
    committed = true;
}
