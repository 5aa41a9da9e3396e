#pragma once

#include "aeffectx.h"

#include <string>
#include <vector>

// One call from the plug-in to the host, as the test host recorded it.
struct HostCall {
    bool nullEffect;
    VstInt32 opcode;
    VstInt32 index;
    VstIntPtr value;
    float opt;
};

// The host side: records every callback and answers audioMasterVersion with
// versionAnswer (2400 unless a test changes it), everything else with 0.
struct TestHost {
    static std::vector<HostCall> calls;
    static VstIntPtr versionAnswer;
    static VstIntPtr callback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* ptr, float opt);
};

using PluginEntry = AEffect* (*)(audioMasterCallback);
// VSTPluginMain of the built module, loaded once per process as hosts do.
PluginEntry pluginEntry();

// Fill byte of every buffer handed to the plug-in, so that a buffer that is
// still full of it provably received no write.
constexpr char kSentinel = '\xA5';
// text() result for a buffer that the plug-in did not touch.
extern const std::string kUntouched;

// One plug-in instance, driven only through its AEffect record and closed
// (effMainsChanged 0, effClose) on destruction.
class HostedPlugin {
public:
    HostedPlugin();
    ~HostedPlugin();
    HostedPlugin(const HostedPlugin&) = delete;
    HostedPlugin& operator=(const HostedPlugin&) = delete;

    AEffect* effect() const { return fx; }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0f);
    // The text a text opcode writes into a sentinel-filled 256-byte buffer.
    std::string text(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0);
    std::string display(VstInt32 index) { return text(effGetParamDisplay, index); }
    void setParameter(VstInt32 index, float value) { fx->setParameter(fx, index, value); }
    float getParameter(VstInt32 index) { return fx->getParameter(fx, index); }
    void process(float** inputs, float** outputs, VstInt32 frames) {
        fx->processReplacing(fx, inputs, outputs, frames);
    }

private:
    AEffect* fx;
};
