#pragma once

#include "Position.h"

#include <istream>
#include <string>
#include <utility>
#include <vector>

struct TimedPosition {
    double seconds;
    SourcePosition position;
};

// A source trajectory read from a small text file:
//
//   # comment (from '#' to the end of a line; blank lines are skipped)
//   polar                 # or "cartesian": the first word of the file
//   0.0   0   0   2       # t[s] azimuth[deg] elevation[deg] distance[m|off]
//   1.5  90  10   off
//
// With "cartesian" each line is "t x y z" in metres. Times are in seconds
// from the start, never decreasing; each position holds from its time until
// the next one (the plug-in glides to it in about 10 ms), and the first one
// also holds before its time. Values are checked against the plug-in's ranges.
class AutomationPath {
public:
    AutomationPath() = default;
    explicit AutomationPath(std::vector<TimedPosition> points) : trajectory(std::move(points)) {}

    static AutomationPath load(const std::string& fileName);
    static AutomationPath parse(std::istream& in, const std::string& sourceName);

    const std::vector<TimedPosition>& points() const { return trajectory; }

private:
    std::vector<TimedPosition> trajectory;
};
