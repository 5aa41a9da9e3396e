#pragma once

#include <cstdint>
#include <ostream>

// A one-line progress bar, redrawn in place, only when the shown percentage
// changes. Disabled, it prints nothing.
class ProgressBar {
public:
    ProgressBar(std::ostream& out, std::int64_t totalFrames, double sampleRate, bool enabled);
    void update(std::int64_t framesDone);
    void finish();
    // Ends a bar left half-drawn, so that a message can follow on a fresh line.
    void abandon();

    // Worth showing: a render of more than a few seconds, to a terminal.
    static bool wanted(std::int64_t totalFrames, double sampleRate, bool toTerminal);

private:
    std::ostream& out;
    std::int64_t total;
    double rate;
    bool enabled;
    int shownPercent = -1;
};
