#pragma once

// A real AudioEffect with a host callback that logs what it is told, for
// tests of what the host sees from the editor toolkit.

#include "aeffguieditor.h"

#include <utility>
#include <vector>

namespace editortest {

using HostCalls = std::vector<std::pair<VstInt32, VstInt32>>; // opcode, index

inline HostCalls& hostCalls() {
    static HostCalls calls;
    return calls;
}

inline VstIntPtr recordingHost(AEffect*, VstInt32 opcode, VstInt32 index, VstIntPtr, void*, float) {
    hostCalls().emplace_back(opcode, index);
    return 1;
}

inline HostCalls callsOf(VstInt32 opcode) {
    HostCalls selected;
    for (const auto& call : hostCalls())
        if (call.first == opcode) selected.push_back(call);
    return selected;
}

class TestEffect : public AudioEffectX {
public:
    TestEffect() : AudioEffectX(recordingHost, 1, 8) {}
    void processReplacing(float**, float**, VstInt32) override {}
};

} // namespace editortest
