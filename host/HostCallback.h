#pragma once

#include "aeffectx.h"

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

// One report from a plug-in to its host: audioMasterAutomate carries a value,
// audioMasterBeginEdit and audioMasterEndEdit only the index.
struct EditReport {
    VstInt32 opcode;
    VstInt32 index;
    float value;
    bool operator==(const EditReport& other) const {
        return opcode == other.opcode && index == other.index &&
               (opcode != audioMasterAutomate || value == other.value);
    }
};

// The host side of the VST callback: what our tools answer when a plug-in
// asks its host something. They know their sample rate and block size but
// have no transport, no MIDI and no window sizing. Every request is logged,
// and the edits a plug-in reports (automation and gestures) are recorded:
// the editor may report them on its thread while another sets parameters, so
// the records are locked (this is the host's side, never the audio path).
class HostCallback {
public:
    static constexpr VstInt32 kHostVstVersion = 2400;
    static constexpr VstInt32 kHostVendorVersion = 1000;

    HostCallback() = default;
    HostCallback(const HostCallback&) = delete;
    HostCallback& operator=(const HostCallback&) = delete;

    // The function pointer handed to VSTPluginMain.
    static VstIntPtr entry(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                           void* ptr, float opt);

    // While VSTPluginMain runs, the plug-in has no AEffect to carry the host
    // pointer yet; its calls in that window go to the host being loaded.
    class LoadingScope {
    public:
        explicit LoadingScope(HostCallback& host);
        ~LoadingScope();
        LoadingScope(const LoadingScope&) = delete;
        LoadingScope& operator=(const LoadingScope&) = delete;

    private:
        HostCallback* previous;
    };

    // Later calls find this host through the effect's user field.
    void attach(AEffect& effect) { effect.user = this; }

    void setSampleRate(float rate) { sampleRate = rate; }
    void setBlockSize(VstInt32 size) { blockSize = size; }
    // What audioMasterVersion answers; 0 plays a host too old for VST 2.
    void setVersionAnswer(VstIntPtr version) { versionAnswer = version; }

    VstIntPtr answer(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    // The first opcodes the plug-in sent, in order, and whether the last one came
    // without an effect (as during VSTPluginMain).
    std::vector<VstInt32> requests() const;
    bool lastRequestHadNoEffect() const { return lastWithoutEffect; }
    std::vector<EditReport> edits() const;
    std::vector<EditReport> editsOf(VstInt32 opcode) const;
    void clearRecords();

    // A host that shows the editor hears of each edit as it happens.
    using EditObserver = std::function<void(const EditReport&)>;
    void observeEdits(EditObserver observer);

private:
    float sampleRate = 0.0f;
    VstInt32 blockSize = 0;
    VstIntPtr versionAnswer = kHostVstVersion;
    bool lastWithoutEffect = false;
    mutable std::mutex recordsMutex;
    std::vector<VstInt32> requestLog;
    std::vector<EditReport> editLog;
    EditObserver editObserver;
};
