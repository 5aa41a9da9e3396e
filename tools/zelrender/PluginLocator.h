#pragma once

#include <string>
#include <vector>

// Where zelrender looks for the encoder plug-in when no --plugin is given:
// beside the executable (an installed pair), in the build tree it was built
// in, then in the user's VST folder, where hosts look for it too.
class PluginLocator {
public:
    static constexpr const char* kFileName = "ZelAmbiEnc.so";

    static std::vector<std::string> candidates();
    // The first candidate that exists; throws with the list when none does.
    static std::string find();
};
