#include "BinauralPreview.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

// The decoder's set-up talks on standard output, which belongs to --info's
// report; its words go to /dev/null and ours say what went wrong.
class QuietStdout {
public:
    QuietStdout() : saved(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        if (FILE* null = std::fopen("/dev/null", "w")) {
            dup2(fileno(null), STDOUT_FILENO);
            std::fclose(null);
        }
    }
    ~QuietStdout() {
        std::fflush(stdout);
        if (saved >= 0) {
            dup2(saved, STDOUT_FILENO);
            close(saved);
        }
    }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved;
};

bool configure(CAmbisonicBinauralizer& decoder, const std::string& hrtf, int rate, unsigned block,
               unsigned& tail) {
    QuietStdout quiet;
    return decoder.Configure(3, true, static_cast<unsigned>(rate), block, tail, hrtf);
}

// The set must exist and be a file: the decoder would otherwise fall back
// to no set at all and say so only on standard output.
void requireReadable(const std::string& hrtf) {
    if (access(hrtf.c_str(), R_OK) != 0)
        throw AudioFileError("cannot read HRTF set '" + hrtf + "'");
}

} // namespace

BinauralPreview::BinauralPreview(const std::string& path, const std::string& hrtfPath,
                                 int sampleRate, std::int64_t frames)
    : pending(kChannels, std::vector<float>(kBlock)), left(kBlock), right(kBlock),
      output((requireReadable(hrtfPath), path), 2, sampleRate, frames) {
    if (!configure(decoder, hrtfPath, sampleRate, kBlock, tail))
        throw AudioFileError("cannot use '" + hrtfPath + "' as an HRTF set (a SOFA file)");
    block.Configure(3, true, kBlock);
}

void BinauralPreview::write(const float* const* channels, int frames) {
    for (int done = 0; done < frames;) {
        const unsigned take = std::min<unsigned>(kBlock - filled, frames - done);
        for (int c = 0; c < kChannels; ++c)
            std::copy_n(channels[c] + done, take, pending[c].begin() + filled);
        filled += take;
        done += static_cast<int>(take);
        if (filled == kBlock) decodeBlock(kBlock);
    }
}

void BinauralPreview::decodeBlock(unsigned frames) {
    for (int c = 0; c < kChannels; ++c) {
        std::fill(pending[c].begin() + filled, pending[c].end(), 0.0f);
        block.InsertStream(pending[c].data(), c, kBlock);
    }
    float* ears[2] = {left.data(), right.data()};
    decoder.Process(&block, ears);
    const float* out[2] = {left.data(), right.data()};
    output.write(out, static_cast<int>(frames));
    filled = 0;
}

void BinauralPreview::commit() {
    // The last samples, then silence until the filters have rung out, in
    // whole blocks so that the decoder's stream stays contiguous.
    for (unsigned remaining = filled + tail; remaining > 0;) {
        const unsigned frames = std::min(kBlock, remaining);
        decodeBlock(frames);
        remaining -= frames;
    }
    output.commit();
}
