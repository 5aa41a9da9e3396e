#include "PluginEditorHost.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace editortest {

namespace {

using PluginEntry = AEffect* (*)(audioMasterCallback);

PluginEntry pluginEntry() {
    static void* const module = dlopen(ZEL_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) throw std::runtime_error(dlerror());
    void* symbol = dlsym(module, "VSTPluginMain");
    if (symbol == nullptr) throw std::runtime_error("the module exports no VSTPluginMain");
    PluginEntry entry;
    std::memcpy(&entry, &symbol, sizeof entry);
    return entry;
}

constexpr float kSampleRate = 48000.0f;
constexpr VstIntPtr kBlockSize = 512;

} // namespace

HostedEditorPlugin::HostedEditorPlugin() : fx(pluginEntry()(callback)) {
    if (fx == nullptr) throw std::runtime_error("VSTPluginMain gave no effect");
    fx->user = this;
    dispatch(effOpen);
    dispatch(effSetSampleRate, 0, 0, nullptr, kSampleRate);
    dispatch(effSetBlockSize, 0, kBlockSize);
    dispatch(effMainsChanged, 0, 1);
}

HostedEditorPlugin::~HostedEditorPlugin() {
    closeEditor();
    dispatch(effMainsChanged, 0, 0);
    dispatch(effClose);
}

VstIntPtr HostedEditorPlugin::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                       float opt) {
    return fx->dispatcher(fx, opcode, index, value, ptr, opt);
}

std::string HostedEditorPlugin::display(VstInt32 index) {
    char text[256] = {};
    dispatch(effGetParamDisplay, index, 0, text);
    text[sizeof text - 1] = '\0';
    return text;
}

EditorSize HostedEditorPlugin::editorSize() {
    ERect* rect = nullptr;
    if (dispatch(effEditGetRect, 0, 0, &rect) == 0 || rect == nullptr) return {0, 0};
    return {rect->right - rect->left, rect->bottom - rect->top};
}

bool HostedEditorPlugin::openEditor(std::uint32_t parentWindow) {
    // The X window id travels in ptr, as Linux hosts pass it.
    void* parent = reinterpret_cast<void*>(static_cast<std::uintptr_t>(parentWindow));
    editorOpen = dispatch(effEditOpen, 0, 0, parent) != 0;
    return editorOpen;
}

void HostedEditorPlugin::closeEditor() {
    if (!editorOpen) return;
    dispatch(effEditClose);
    editorOpen = false;
}

std::vector<EditReport> HostedEditorPlugin::reports() const {
    std::lock_guard<std::mutex> lock(reportsMutex);
    return log;
}

std::vector<EditReport> HostedEditorPlugin::reportsOf(VstInt32 opcode) const {
    std::vector<EditReport> all = reports();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [opcode](const EditReport& r) { return r.opcode != opcode; }),
              all.end());
    return all;
}

void HostedEditorPlugin::clearReports() {
    std::lock_guard<std::mutex> lock(reportsMutex);
    log.clear();
}

void HostedEditorPlugin::record(const EditReport& report) {
    std::lock_guard<std::mutex> lock(reportsMutex);
    log.push_back(report);
}

VstIntPtr HostedEditorPlugin::callback(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                       VstIntPtr /*value*/, void* /*ptr*/, float opt) {
    if (opcode == audioMasterVersion) return 2400;
    auto* host = effect != nullptr ? static_cast<HostedEditorPlugin*>(effect->user) : nullptr;
    if (host == nullptr) return 0;
    switch (opcode) {
    case audioMasterAutomate:
        host->record({opcode, index, opt});
        return 0;
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
        host->record({opcode, index, 0.0f});
        return 1;
    default:
        return 0;
    }
}

} // namespace editortest

#if defined(__SANITIZE_ADDRESS__)
// Fontconfig, which Cairo uses for the editor's display texts, keeps a few
// allocations it never frees. LeakSanitizer asks the executable, not the
// module loaded later, which leaks to forgive; these are not ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
