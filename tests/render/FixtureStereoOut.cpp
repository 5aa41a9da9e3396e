// A well-formed VST effect with the wrong shape for zelrender: one input, but
// two outputs instead of sixteen.
#include "aeffectx.h"

namespace {

VstIntPtr dispatcher(AEffect*, VstInt32, VstInt32, VstIntPtr, void*, float) {
    return 0;
}
void process(AEffect*, float**, float**, VstInt32) {}
void setParameter(AEffect*, VstInt32, float) {}
float getParameter(AEffect*, VstInt32) {
    return 0.0f;
}

AEffect effect = [] {
    AEffect e{};
    e.magic = kEffectMagic;
    e.dispatcher = dispatcher;
    e.process = process;
    e.processReplacing = process;
    e.setParameter = setParameter;
    e.getParameter = getParameter;
    e.numInputs = 1;
    e.numOutputs = 2;
    e.flags = effFlagsCanReplacing;
    return e;
}();

} // namespace

extern "C" __attribute__((visibility("default"))) AEffect* VSTPluginMain(audioMasterCallback) {
    return &effect;
}
