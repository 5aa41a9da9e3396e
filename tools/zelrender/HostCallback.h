#pragma once

#include "aeffectx.h"

#include <functional>
#include <utility>

// The host side of the VST callback: what zelrender answers when a plug-in
// asks its host something. It renders offline, so it knows its sample rate and
// block size but has no transport, no MIDI and no window.
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

    VstIntPtr answer(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    // Automation reports from the plug-in (it sends them when its own editor
    // moves a parameter); counted, since there is nobody to record them for.
    int automationReports() const { return automateCount; }

    // A host that shows the editor hears of each edit: audioMasterAutomate
    // with the new value, audioMasterBeginEdit and audioMasterEndEdit (value 0).
    using EditObserver = std::function<void(VstInt32 opcode, VstInt32 index, float value)>;
    void observeEdits(EditObserver observer) { editObserver = std::move(observer); }

private:
    float sampleRate = 0.0f;
    VstInt32 blockSize = 0;
    int automateCount = 0;
    EditObserver editObserver;
};
