// A host that sends anything: the fuzzer's bytes become a session of host
// calls on one instance (dispatcher opcodes with any index, value, option and
// a buffer behind ptr as the ABI sizes them, parameters of any value, blocks
// of 0 to 4096 frames of any samples on separate or in-place buffers, any
// sample rate). Whatever comes, the plug-in must neither fail a sanitizer
// check nor write a NaN or an infinity.

#include "HostCallback.h"
#include "PlugInMain.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr int kOutputs = 16;
constexpr int kMaxFrames = 4096;

// Consumes the fuzzer's bytes; zeros once they run out.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}
    bool done() const { return at >= size; }
    template <typename T> T take() {
        T value{};
        const std::size_t n = std::min(sizeof(T), size - std::min(at, size));
        std::memcpy(&value, data + at, n);
        at += sizeof(T);
        return value;
    }

private:
    const std::uint8_t* data;
    std::size_t size;
    std::size_t at = 0;
};

// True if any of the first n samples of a channel is NaN or infinite. Not
// traced for coverage: the samples are data, and tracing them would cost most
// of each execution.
__attribute__((no_sanitize("coverage"))) bool anyNonFinite(float* const* channels, int n) {
    for (int c = 0; c < kOutputs; ++c)
        for (int i = 0; i < n; ++i)
            if (!std::isfinite(channels[c][i])) return true;
    return false;
}

// Buffers live as long as the process: filling them anew for every execution
// would cost more than the execution.
struct Session {
    explicit Session(AEffect* effect) : fx(effect) {}

    void dispatch(Bytes& in) {
        const VstInt32 opcode = in.take<std::uint8_t>() % 80;
        const VstInt32 index = in.take<VstInt32>();
        const VstIntPtr value = in.take<VstIntPtr>();
        const float opt = in.take<float>();
        // The window system is not ours to fuzz: the editor opens into nothing.
        if (opcode == effClose || opcode == effEditOpen) return;
        // Every text and record fits: the ABI's largest is far smaller.
        std::fill(ptrBuffer.begin(), ptrBuffer.end(), 0);
        for (int i = 0; i < 63; ++i) ptrBuffer[i] = static_cast<char>(in.take<std::uint8_t>());
        const bool noPointer = in.take<std::uint8_t>() & 1;
        fx->dispatcher(fx, opcode, index, value, noPointer ? nullptr : ptrBuffer.data(), opt);
    }

    void process(Bytes& in) {
        const int frames = std::min(in.take<std::uint16_t>() % (kMaxFrames + 1), frameBudget);
        frameBudget -= frames;
        const std::uint8_t layout = in.take<std::uint8_t>();
        std::fill_n(input.begin(), frames, 0.0f); // nothing from an earlier execution
        for (int i = 0; i < frames; i += 64) input[i] = in.take<float>();
        float* ins[1] = {input.data()};
        float* outs[kOutputs];
        for (int c = 0; c < kOutputs; ++c)
            outs[c] = (layout & 2) && c > 3 ? scratch.data() : outputs[c].data();
        if (layout & 1) { // in place, as Ardour passes it
            std::copy_n(input.data(), frames, outputs[0].data());
            ins[0] = outputs[0].data();
        }
        fx->processReplacing(fx, ins, outs, frames);
        if (anyNonFinite(outs, frames)) __builtin_trap();
    }

    AEffect* fx;
    // Frames one execution may process in all: one of the largest blocks.
    // Longer sessions find nothing new and slow the search down.
    int frameBudget = kMaxFrames;
    static inline std::array<char, 4096> ptrBuffer{};
    static inline std::array<float, kMaxFrames> input{}, scratch{};
    static inline std::array<float, kMaxFrames> outputs[kOutputs]{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    HostCallback host;
    AEffect* fx = nullptr;
    {
        HostCallback::LoadingScope loading(host);
        fx = VSTPluginMain(&HostCallback::entry);
    }
    if (fx == nullptr) return 0;
    host.attach(*fx);
    Session session(fx);
    Bytes in(data, size);
    for (int step = 0; step < 64 && !in.done(); ++step) {
        switch (in.take<std::uint8_t>() % 5) {
        case 0:
            session.dispatch(in);
            break;
        case 1:
            fx->setParameter(fx, in.take<VstInt32>() % 9 - 1, in.take<float>());
            break;
        case 2:
            fx->getParameter(fx, in.take<VstInt32>() % 9 - 1);
            break;
        default:
            session.process(in);
            break;
        }
    }
    fx->dispatcher(fx, effClose, 0, 0, nullptr, 0.0f);
    return 0;
}
