#pragma once

#include "Position.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// A command line zelrender cannot act on.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    bool help = false;
    bool info = false;
    bool quiet = false;
    std::string pluginPath; // empty: look in the usual places
    std::string inputPath;  // empty: the built-in demo
    std::string outputPath;
    std::string pathFile;     // automation path; excludes a fixed position
    std::string binauralPath; // headphone preview, if wanted
    std::string hrtfPath;     // empty: the default set
    std::string plotPath;     // picture of the path, if wanted
    SourcePosition position = PolarPosition{};
    bool positionGiven = false;
    std::optional<double> compensation; // none: off
    bool compensationGiven = false;
    std::optional<int> program; // 1..16, as hosts number them
    int blockSize = 512;
};

class CommandLine {
public:
    static constexpr int kMaxBlockSize = 8192;
    static constexpr int kProgramCount = 16;

    // Throws UsageError for unknown options, missing or malformed values and
    // contradictory choices, ValueError for values out of range.
    static Options parse(const std::vector<std::string>& arguments);
    static const char* usage();
};
