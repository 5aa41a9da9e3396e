#pragma once

#include "audioeffect.h"

// Builds the one plug-in object; null if it cannot be built.
AudioEffect* createEffectInstance(audioMasterCallback audioMaster);

// The module's only exported symbol, called by the host after dlopen.
extern "C" __attribute__((visibility("default"))) AEffect*
VSTPluginMain(audioMasterCallback audioMaster);
