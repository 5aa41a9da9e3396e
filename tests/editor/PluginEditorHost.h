#pragma once

// A test host for the built plug-in module: loads it with dlopen, talks to it
// only through the AEffect record, and records what each instance reports
// back (automation and edit gestures). Like a DAW, it may set parameters from
// one thread while another idles the editor, so the records are locked.

#include "aeffectx.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace editortest {

// One report from the plug-in: audioMasterAutomate carries a value,
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

struct EditorSize {
    int width;
    int height;
};

class HostedEditorPlugin {
public:
    // Loads the module on first use (never unloaded, as hosts keep it while
    // any instance lives), creates an instance, opens it and switches it on.
    HostedEditorPlugin();
    // Closes a still-open editor, switches off and closes the instance.
    ~HostedEditorPlugin();
    HostedEditorPlugin(const HostedEditorPlugin&) = delete;
    HostedEditorPlugin& operator=(const HostedEditorPlugin&) = delete;

    AEffect* effect() const { return fx; }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0f);
    void setParameter(VstInt32 index, float value) { fx->setParameter(fx, index, value); }
    float getParameter(VstInt32 index) { return fx->getParameter(fx, index); }
    std::string display(VstInt32 index);

    // effEditGetRect; {0, 0} if the plug-in gives no rectangle.
    EditorSize editorSize();
    bool openEditor(std::uint32_t parentWindow);
    void idleEditor() { dispatch(effEditIdle); }
    void closeEditor();

    std::vector<EditReport> reports() const;
    std::vector<EditReport> reportsOf(VstInt32 opcode) const;
    void clearReports();

    // The host callback; finds the instance through the effect record.
    static VstIntPtr callback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* ptr, float opt);

private:
    void record(const EditReport& report);

    AEffect* fx = nullptr;
    bool editorOpen = false;
    mutable std::mutex reportsMutex;
    std::vector<EditReport> log;
};

} // namespace editortest
