#include "EditOptions.h"

#include <cmath>
#include <cstdlib>

namespace {

// A positive, finite number of seconds, written whole ("1", "0.5", "2e1").
double parseSeconds(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || end != text.c_str() + text.size() || !std::isfinite(value) || value <= 0)
        throw EditUsageError("--seconds needs a positive number, not '" + text + "'");
    return value;
}

} // namespace

EditOptions EditCommandLine::parse(const std::vector<std::string>& arguments) {
    EditOptions options;
    for (std::size_t i = 0; i < arguments.size(); i++) {
        const std::string& argument = arguments[i];
        auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size()) throw EditUsageError(argument + " needs a value");
            return arguments[++i];
        };
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--plugin") {
            options.pluginPath = value();
            if (options.pluginPath.empty()) throw EditUsageError("--plugin needs a path");
        } else if (argument == "--seconds") {
            options.seconds = parseSeconds(value());
        } else {
            throw EditUsageError("unknown argument '" + argument + "'");
        }
    }
    return options;
}

const char* EditCommandLine::usage() {
    return "usage: zeledit [--plugin PATH] [--seconds N]\n"
           "\n"
           "Opens the encoder plug-in's editor in a window of its own, as a DAW would,\n"
           "and prints every edit the plug-in reports to its host: begin and end of\n"
           "each gesture, and each parameter it automates with its value and text.\n"
           "\n"
           "  --plugin PATH  the plug-in to load (default: beside zeledit, in its build\n"
           "                 tree, then ~/.vst/ZelAmbiEnc.so)\n"
           "  --seconds N    close the editor after N seconds (default: when the\n"
           "                 window is closed or on Ctrl-C)\n"
           "  --help         this text\n";
}
