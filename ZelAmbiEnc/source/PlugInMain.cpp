#include "PlugInMain.h"

#include "ZelAmbiEncEdit.h"

AudioEffect* createEffectInstance(audioMasterCallback audioMaster) {
    return new ZelAmbiEncEdit(audioMaster);
}

AEffect* VSTPluginMain(audioMasterCallback audioMaster) {
    if (audioMaster == nullptr) return nullptr;
    // A host that reports no version is not one we can talk to.
    if (audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
    try {
        AudioEffect* effect = createEffectInstance(audioMaster);
        return effect != nullptr ? effect->getAeffect() : nullptr;
    } catch (...) {
        return nullptr; // nothing may unwind into the host
    }
}
