#include "HostCallback.h"

#include <cstring>

namespace {

thread_local HostCallback* hostBeingLoaded = nullptr;

constexpr char kVendor[] = "Zelworks";
constexpr char kProduct[] = "zelrender";
constexpr VstIntPtr kLanguageEnglish = 1;

void copyText(void* ptr, const char* text) {
    if (ptr != nullptr) std::strcpy(static_cast<char*>(ptr), text);
}

} // namespace

HostCallback::LoadingScope::LoadingScope(HostCallback& host) : previous(hostBeingLoaded) {
    hostBeingLoaded = &host;
}

HostCallback::LoadingScope::~LoadingScope() {
    hostBeingLoaded = previous;
}

VstIntPtr HostCallback::entry(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* ptr, float opt) {
    HostCallback* host = effect != nullptr && effect->user != nullptr
                             ? static_cast<HostCallback*>(effect->user)
                             : hostBeingLoaded;
    if (host != nullptr) return host->answer(opcode, index, value, ptr, opt);
    // A plug-in that calls before any host exists still learns it may run.
    return opcode == audioMasterVersion ? kHostVstVersion : 0;
}

VstIntPtr HostCallback::answer(VstInt32 opcode, VstInt32 index, VstIntPtr /*value*/, void* ptr,
                               float opt) {
    switch (opcode) {
    case audioMasterVersion:
        return kHostVstVersion;
    case audioMasterAutomate:
        ++automateCount;
        if (editObserver) editObserver(opcode, index, opt);
        return 0;
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
        if (editObserver) editObserver(opcode, index, 0.0f);
        return 0;
    case audioMasterGetSampleRate:
        return static_cast<VstIntPtr>(sampleRate);
    case audioMasterGetBlockSize:
        return blockSize;
    case audioMasterGetVendorString:
        copyText(ptr, kVendor);
        return 1;
    case audioMasterGetProductString:
        copyText(ptr, kProduct);
        return 1;
    case audioMasterGetVendorVersion:
        return kHostVendorVersion;
    case audioMasterGetLanguage:
        return kLanguageEnglish;
    // No host feature is offered: canDo says no to every query, and time
    // info, MIDI, window sizing and file selectors are unsupported.
    default:
        return 0;
    }
}
