#include "PluginInfo.h"

#include <cctype>
#include <cstdio>
#include <iomanip>

std::string PluginInfo::fourCharacterCode(VstInt32 id) {
    const auto bits = static_cast<std::uint32_t>(id);
    std::string code;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto c = static_cast<unsigned char>(bits >> shift);
        code += std::isprint(c) ? static_cast<char>(c) : '?';
    }
    return code;
}

std::string PluginInfo::categoryName(int category) {
    static const char* const names[] = {
        "unknown",     "effect",          "synth",       "analysis",
        "mastering",   "spatialiser",     "room effect", "surround effect",
        "restoration", "offline process", "shell",       "generator",
    };
    if (category < 0 || category >= static_cast<int>(sizeof(names) / sizeof(names[0]))) {
        return "invalid";
    }
    return names[category];
}

void PluginInfo::print(VstPlugin& plugin, std::ostream& out) {
    const AEffect& effect = plugin.effect();
    char id[16];
    std::snprintf(id, sizeof(id), "0x%08X", static_cast<unsigned>(effect.uniqueID));
    const int category = plugin.category();

    out << "Effect name:    " << plugin.effectName() << '\n'
        << "Product:        " << plugin.productName() << '\n'
        << "Vendor:         " << plugin.vendorName() << '\n'
        << "Vendor version: " << plugin.vendorVersion() << '\n'
        << "Unique ID:      '" << fourCharacterCode(effect.uniqueID) << "' (" << id << ")\n"
        << "Category:       " << category << " (" << categoryName(category) << ")\n"
        << "VST version:    " << plugin.vstVersion() << '\n'
        << "Editor:         " << ((effect.flags & effFlagsHasEditor) ? "yes" : "no") << '\n'
        << "Replacing:      " << ((effect.flags & effFlagsCanReplacing) ? "yes" : "no") << '\n';

    out << "Inputs: " << effect.numInputs << '\n';
    for (int i = 0; i < effect.numInputs; ++i) {
        out << "  " << std::setw(2) << i << "  " << plugin.inputLabel(i) << '\n';
    }
    out << "Outputs: " << effect.numOutputs << '\n';
    for (int i = 0; i < effect.numOutputs; ++i) {
        out << "  " << std::setw(2) << i << "  " << plugin.outputLabel(i) << '\n';
    }

    out << "Parameters: " << effect.numParams << '\n';
    for (int i = 0; i < effect.numParams; ++i) {
        out << "  " << std::setw(2) << i << "  '" << plugin.parameterName(i)
            << "' = " << plugin.parameterDisplay(i) << ' ' << plugin.parameterLabel(i)
            << "  (normalised " << plugin.getParameter(i) << ")\n";
    }

    out << "Programs: " << effect.numPrograms << '\n';
    for (int i = 0; i < effect.numPrograms; ++i) {
        out << "  " << std::setw(2) << i + 1 << "  " << plugin.programName(i) << '\n';
    }
}
