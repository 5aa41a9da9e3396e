#pragma once

#include <string>
#include <vector>

// Where the tools look for the encoder plug-in when none is named:
// beside the executable (an installed pair), in the build tree it was built
// in, then in the user's VST folder, where hosts look for it too.
class PluginLocator {
public:
    static constexpr const char* kFileName = "ZelAmbiEnc.so";

    static std::vector<std::string> candidates();
    // The first candidate that exists; throws with the list when none does.
    static std::string find();
};
