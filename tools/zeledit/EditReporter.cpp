#include "EditReporter.h"

#include <iomanip>

namespace {

// Some names are padded for the host's narrow columns (" x "): not needed here.
std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

void EditReporter::report(VstInt32 opcode, VstInt32 index, float value) {
    const char* what = opcode == audioMasterAutomate    ? "automate"
                       : opcode == audioMasterBeginEdit ? "begin edit"
                       : opcode == audioMasterEndEdit   ? "end edit"
                                                        : nullptr;
    if (what == nullptr) return;
    out << std::left << std::setw(12) << what << std::right << std::setw(2) << index << ' ';
    if (opcode == audioMasterAutomate) {
        // Asked now, inside the report: the plug-in has already applied the
        // value, so its text is the one the user sees.
        const std::string label = plugin.parameterLabel(index);
        out << std::left << std::setw(10) << trimmed(plugin.parameterName(index)) << std::right
            << ' ' << std::fixed << std::setprecision(6) << value << "  "
            << plugin.parameterDisplay(index) << (label.empty() ? "" : " ") << label;
    } else {
        out << trimmed(plugin.parameterName(index));
    }
    // Flushed line by line, so that a pipe shows each edit as it happens.
    out << std::endl;
}
