#include "VstPlugin.h"

#include <cstring>
#include <dlfcn.h>

namespace {

// Plug-ins copy their texts whole into the host's buffer; leave room beyond
// the ABI's nominal limits for those that overrun them.
constexpr std::size_t kTextBufferSize = 512;

// Memory that a plug-in's libraries keep for the whole process (font caches,
// image tables) is reachable only through their static data; once dlclose
// unmaps that, LeakSanitizer would report it as lost. Sanitizer builds keep
// the module mapped, so that their leak reports show only real leaks.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kKeepMappedForLeakReports = RTLD_NODELETE;
#else
constexpr int kKeepMappedForLeakReports = 0;
#endif

} // namespace

// ------------------------------------------------------------ VstLibrary

VstLibrary::VstLibrary(const std::string& path) : filePath(path), handle(nullptr) {
    // Without a slash dlopen would search the library path instead of the
    // current directory.
    const std::string openPath = path.find('/') == std::string::npos ? "./" + path : path;
    handle = dlopen(openPath.c_str(), RTLD_NOW | RTLD_LOCAL | kKeepMappedForLeakReports);
    if (handle == nullptr) {
        const char* reason = dlerror();
        throw PluginError("cannot load plug-in '" + path + "': " + (reason ? reason : "unknown"));
    }
}

VstLibrary::~VstLibrary() {
    dlclose(handle);
}

VstPluginMainProc VstLibrary::entryPoint() const {
    dlerror();
    void* symbol = dlsym(handle, "VSTPluginMain");
    if (symbol == nullptr) {
        throw PluginError("'" + filePath +
                          "' is not a VST 2.4 plug-in: it exports no VSTPluginMain");
    }
    VstPluginMainProc entry;
    static_assert(sizeof(entry) == sizeof(symbol), "function and object pointers differ");
    std::memcpy(&entry, &symbol, sizeof(entry));
    return entry;
}

// ------------------------------------------------------------ VstPlugin

VstPlugin::VstPlugin(VstPluginMainProc entry, HostCallback& host_, const std::string& name)
    : host(host_), aeffect(nullptr) {
    {
        HostCallback::LoadingScope loading(host);
        aeffect = entry(&HostCallback::entry);
    }
    if (aeffect == nullptr) throw PluginError("plug-in '" + name + "' refused to start");
    if (aeffect->magic != kEffectMagic || aeffect->dispatcher == nullptr) {
        // Not a VST effect record: nothing on it can be trusted, not even effClose.
        aeffect = nullptr;
        throw PluginError("'" + name + "' returned something that is not a VST effect");
    }
    host.attach(*aeffect);
}

VstPlugin::~VstPlugin() {
    if (aeffect != nullptr) dispatch(effClose);
}

void VstPlugin::requireChannels(int inputs, int outputs, const std::string& hostName) const {
    if (aeffect->numInputs != inputs || aeffect->numOutputs != outputs) {
        throw PluginError("the plug-in has " + std::to_string(aeffect->numInputs) + " inputs and " +
                          std::to_string(aeffect->numOutputs) + " outputs; " + hostName +
                          " needs " + std::to_string(inputs) + " input and " +
                          std::to_string(outputs) + " outputs");
    }
    if ((aeffect->flags & effFlagsCanReplacing) == 0 || aeffect->processReplacing == nullptr) {
        throw PluginError("the plug-in offers no processReplacing");
    }
}

VstIntPtr VstPlugin::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                              float opt) {
    return aeffect->dispatcher(aeffect, opcode, index, value, ptr, opt);
}

std::string VstPlugin::text(VstInt32 opcode, VstInt32 index) {
    char buffer[kTextBufferSize] = {};
    dispatch(opcode, index, 0, buffer);
    buffer[kTextBufferSize - 1] = '\0';
    return buffer;
}

void VstPlugin::open() {
    dispatch(effOpen);
}

void VstPlugin::setSampleRate(float rate) {
    host.setSampleRate(rate);
    dispatch(effSetSampleRate, 0, 0, nullptr, rate);
}

void VstPlugin::setBlockSize(int size) {
    host.setBlockSize(size);
    dispatch(effSetBlockSize, 0, size);
}

void VstPlugin::setProgram(int index) {
    dispatch(effSetProgram, 0, index);
}

void VstPlugin::setMains(bool on) {
    dispatch(effMainsChanged, 0, on ? 1 : 0);
}

bool VstPlugin::hasEditor() const {
    return (aeffect->flags & effFlagsHasEditor) != 0;
}

std::pair<int, int> VstPlugin::editorSize() {
    ERect* rect = nullptr;
    if (dispatch(effEditGetRect, 0, 0, &rect) == 0 || rect == nullptr) return {0, 0};
    return {rect->right - rect->left, rect->bottom - rect->top};
}

bool VstPlugin::openEditor(void* parentWindow) {
    return dispatch(effEditOpen, 0, 0, parentWindow) != 0;
}

void VstPlugin::idleEditor() {
    dispatch(effEditIdle);
}

void VstPlugin::closeEditor() {
    dispatch(effEditClose);
}

void VstPlugin::setParameter(int index, float value) {
    if (aeffect->setParameter != nullptr) aeffect->setParameter(aeffect, index, value);
}

float VstPlugin::getParameter(int index) {
    return aeffect->getParameter != nullptr ? aeffect->getParameter(aeffect, index) : 0.0f;
}

void VstPlugin::processReplacing(float** inputs, float** outputs, int frames) {
    aeffect->processReplacing(aeffect, inputs, outputs, frames);
}

std::string VstPlugin::effectName() {
    return text(effGetEffectName);
}
std::string VstPlugin::vendorName() {
    return text(effGetVendorString);
}
std::string VstPlugin::productName() {
    return text(effGetProductString);
}
int VstPlugin::vendorVersion() {
    return static_cast<int>(dispatch(effGetVendorVersion));
}
int VstPlugin::vstVersion() {
    return static_cast<int>(dispatch(effGetVstVersion));
}
int VstPlugin::category() {
    return static_cast<int>(dispatch(effGetPlugCategory));
}
std::string VstPlugin::parameterName(int index) {
    return text(effGetParamName, index);
}
std::string VstPlugin::parameterLabel(int index) {
    return text(effGetParamLabel, index);
}
std::string VstPlugin::parameterDisplay(int index) {
    return text(effGetParamDisplay, index);
}
std::string VstPlugin::programName(int index) {
    return text(effGetProgramNameIndexed, index);
}

std::string VstPlugin::pinLabel(VstInt32 opcode, int index) {
    VstPinProperties pin{};
    if (dispatch(opcode, index, 0, &pin) == 0) return "";
    pin.label[kVstMaxLabelLen - 1] = '\0';
    return pin.label;
}

std::string VstPlugin::inputLabel(int index) {
    return pinLabel(effGetInputProperties, index);
}
std::string VstPlugin::outputLabel(int index) {
    return pinLabel(effGetOutputProperties, index);
}

// ------------------------------------------------------------ LoadedPlugin

LoadedPlugin::LoadedPlugin(const std::string& path)
    : library(path), instance(std::make_unique<VstPlugin>(library.entryPoint(), callback, path)) {}
