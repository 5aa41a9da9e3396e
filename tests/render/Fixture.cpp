// Stand-ins for what a host meets, one per build of this file:
//  - FIXTURE_NO_ENTRY: a shared object that is no plug-in (no VSTPluginMain);
//  - otherwise a mono-in VST effect with FIXTURE_OUTPUTS outputs that writes
//    every host request it receives, one line each, to the file named by
//    ZEL_RECORDER_LOG, and copies its input to output 0: it shows what the
//    host sent and in which order. With 2 outputs it has the wrong shape.
#ifdef FIXTURE_NO_ENTRY
extern "C" __attribute__((visibility("default"))) int zelFixtureNotAPlugin() {
    return 42;
}
#else
#include "aeffectx.h"

#include <cstdio>
#include <cstdlib>

namespace {

audioMasterCallback host = nullptr;
std::FILE* logFile = nullptr;

void record(const char* format, double a = 0, double b = 0) {
    if (logFile == nullptr) return;
    std::fprintf(logFile, format, a, b);
    std::fputc('\n', logFile);
}

VstIntPtr dispatcher(AEffect* effect, VstInt32 opcode, VstInt32, VstIntPtr value, void*,
                     float opt) {
    const double v = static_cast<double>(value);
    if (opcode == effOpen) record("open");
    if (opcode == effSetSampleRate) record("rate %g", opt);
    if (opcode == effSetBlockSize) record("block %g", v);
    if (opcode == effSetProgram) record("program %g", v);
    if (opcode == effMainsChanged) record("mains %g", v);
    if (opcode == effMainsChanged && value != 0) {
        record("host rate %g block %g",
               static_cast<double>(host(effect, audioMasterGetSampleRate, 0, 0, nullptr, 0)),
               static_cast<double>(host(effect, audioMasterGetBlockSize, 0, 0, nullptr, 0)));
    }
    if (opcode == effClose) {
        record("close");
        if (logFile) std::fclose(logFile);
        logFile = nullptr;
    }
    return 0;
}

void processReplacing(AEffect*, float** inputs, float** outputs, VstInt32 frames) {
    record("process %g", frames);
    for (int c = 0; c < FIXTURE_OUTPUTS; ++c) {
        for (int i = 0; i < frames; ++i) outputs[c][i] = c == 0 ? inputs[0][i] : 0.0f;
    }
}

void setParameter(AEffect*, VstInt32 index, float value) {
    record("param %g %.9g", index, value);
}
float getParameter(AEffect*, VstInt32) {
    return 0.0f;
}

AEffect effect = [] {
    AEffect e{};
    e.magic = kEffectMagic;
    e.dispatcher = dispatcher;
    e.processReplacing = processReplacing;
    e.setParameter = setParameter;
    e.getParameter = getParameter;
    e.numPrograms = 16;
    e.numParams = 7;
    e.numInputs = 1;
    e.numOutputs = FIXTURE_OUTPUTS;
    e.flags = effFlagsCanReplacing;
    return e;
}();

} // namespace

extern "C" __attribute__((visibility("default"))) AEffect*
VSTPluginMain(audioMasterCallback callback) {
    host = callback;
    const char* path = std::getenv("ZEL_RECORDER_LOG");
    logFile = path ? std::fopen(path, "w") : nullptr;
    record("host version %g",
           static_cast<double>(callback(nullptr, audioMasterVersion, 0, 0, nullptr, 0)));
    return &effect;
}
#endif
