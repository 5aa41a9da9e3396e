#pragma once

#include "AutomationPath.h"

#include <optional>
#include <string>

// A picture of a render's source path, as a PNG: a top view of the listener's
// surroundings (front up, left to the left, rings at 1, 2 and 3 m, the outer
// 4 m limit and the compensation distance as a ring of its own), and below it
// azimuth, elevation and distance over time in seconds. A still source is one
// point. Drawn in the editor's colours.
class PathPlot {
public:
    static constexpr int kWidth = 720;
    static constexpr int kHeight = 1040;

    // compensation: metres, none when off; seconds: the render's length.
    PathPlot(const AutomationPath& path, std::optional<double> compensation, double seconds);
    // Written under a temporary name and renamed, like every output; throws
    // AudioFileError when it cannot be written.
    void write(const std::string& fileName) const;

private:
    AutomationPath path;
    std::optional<double> compensation;
    double seconds;
};
