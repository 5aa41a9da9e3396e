#pragma once

#include "VstPlugin.h"

#include <ostream>
#include <string>

// What a host learns about a plug-in: names, identity, pins, parameters with
// their current display texts, and the program names.
class PluginInfo {
public:
    static void print(VstPlugin& plugin, std::ostream& out);

    // 'ZX3x' style: the unique ID's four bytes, most significant first.
    static std::string fourCharacterCode(VstInt32 id);
    static std::string categoryName(int category);
};
