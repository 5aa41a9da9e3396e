#include "HostCallback.h"

#include <cstring>

namespace {

thread_local HostCallback* hostBeingLoaded = nullptr;

constexpr char kVendor[] = "Zelworks";
constexpr char kProduct[] = "Zelworks host";
constexpr VstIntPtr kLanguageEnglish = 1;
// Enough for everything a plug-in asks while it starts and is set up; a
// plug-in that asks on every block must not grow the log for ever.
constexpr std::size_t kMaxLoggedRequests = 4096;

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
    if (host == nullptr) return opcode == audioMasterVersion ? kHostVstVersion : 0;
    {
        std::lock_guard<std::mutex> lock(host->recordsMutex);
        if (host->requestLog.size() < kMaxLoggedRequests) host->requestLog.push_back(opcode);
        host->lastWithoutEffect = effect == nullptr;
    }
    return host->answer(opcode, index, value, ptr, opt);
}

VstIntPtr HostCallback::answer(VstInt32 opcode, VstInt32 index, VstIntPtr /*value*/, void* ptr,
                               float opt) {
    switch (opcode) {
    case audioMasterVersion:
        return versionAnswer;
    case audioMasterAutomate:
    case audioMasterBeginEdit:
    case audioMasterEndEdit: {
        const EditReport report{opcode, index, opcode == audioMasterAutomate ? opt : 0.0f};
        EditObserver observer;
        {
            std::lock_guard<std::mutex> lock(recordsMutex);
            editLog.push_back(report);
            observer = editObserver;
        }
        if (observer) observer(report);
        return 0;
    }
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

std::vector<VstInt32> HostCallback::requests() const {
    std::lock_guard<std::mutex> lock(recordsMutex);
    return requestLog;
}

std::vector<EditReport> HostCallback::edits() const {
    std::lock_guard<std::mutex> lock(recordsMutex);
    return editLog;
}

std::vector<EditReport> HostCallback::editsOf(VstInt32 opcode) const {
    std::vector<EditReport> selected;
    for (const EditReport& report : edits())
        if (report.opcode == opcode) selected.push_back(report);
    return selected;
}

void HostCallback::clearRecords() {
    std::lock_guard<std::mutex> lock(recordsMutex);
    requestLog.clear();
    editLog.clear();
}

void HostCallback::observeEdits(EditObserver observer) {
    std::lock_guard<std::mutex> lock(recordsMutex);
    editObserver = std::move(observer);
}
