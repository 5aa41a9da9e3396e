#include "HostedPlugin.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

std::vector<HostCall> TestHost::calls;
VstIntPtr TestHost::versionAnswer = 2400;
const std::string kUntouched = "<untouched>";

VstIntPtr TestHost::callback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                             void* /*ptr*/, float opt) {
    calls.push_back({effect == nullptr, opcode, index, value, opt});
    return opcode == audioMasterVersion ? versionAnswer : 0;
}

PluginEntry pluginEntry() {
    // Never closed: hosts keep a module loaded while any instance lives.
    static void* const module = dlopen(ZEL_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) throw std::runtime_error(dlerror());
    auto entry = reinterpret_cast<PluginEntry>(dlsym(module, "VSTPluginMain"));
    if (entry == nullptr) throw std::runtime_error("no VSTPluginMain");
    return entry;
}

HostedPlugin::HostedPlugin() : fx(pluginEntry()(TestHost::callback)) {
    if (fx == nullptr) throw std::runtime_error("VSTPluginMain gave no effect");
    dispatch(effOpen);
}

HostedPlugin::~HostedPlugin() {
    dispatch(effMainsChanged, 0, 0);
    dispatch(effClose);
}

VstIntPtr HostedPlugin::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                 float opt) {
    return fx->dispatcher(fx, opcode, index, value, ptr, opt);
}

std::string HostedPlugin::text(VstInt32 opcode, VstInt32 index, VstIntPtr value) {
    char buffer[256];
    std::memset(buffer, kSentinel, sizeof buffer);
    dispatch(opcode, index, value, buffer);
    if (std::all_of(buffer, buffer + sizeof buffer, [](char c) { return c == kSentinel; }))
        return kUntouched;
    const void* end = std::memchr(buffer, '\0', sizeof buffer);
    if (end == nullptr) return "<unterminated>";
    return std::string(static_cast<const char*>(buffer), static_cast<const char*>(end));
}
