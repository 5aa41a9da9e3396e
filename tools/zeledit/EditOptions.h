#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// A command line zeledit cannot act on.
struct EditUsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct EditOptions {
    bool help = false;
    std::string pluginPath;        // empty: look in the usual places
    std::optional<double> seconds; // none: until the window is closed
};

// zeledit [--plugin PATH] [--seconds N] [--help]
class EditCommandLine {
public:
    static EditOptions parse(const std::vector<std::string>& arguments);
    static const char* usage();
};
