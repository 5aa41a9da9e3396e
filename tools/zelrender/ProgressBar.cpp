#include "ProgressBar.h"

#include <cstdio>
#include <string>

namespace {
constexpr int kBarWidth = 40;
constexpr double kMinimumSeconds = 4.0;
} // namespace

ProgressBar::ProgressBar(std::ostream& out_, std::int64_t totalFrames, double sampleRate,
                         bool enabled_)
    : out(out_), total(totalFrames), rate(sampleRate), enabled(enabled_ && totalFrames > 0) {}

bool ProgressBar::wanted(std::int64_t totalFrames, double sampleRate, bool toTerminal) {
    return toTerminal && static_cast<double>(totalFrames) > kMinimumSeconds * sampleRate;
}

void ProgressBar::update(std::int64_t framesDone) {
    if (!enabled) return;
    const int percent = static_cast<int>(100 * framesDone / total);
    if (percent == shownPercent) return;
    shownPercent = percent;
    const int filled = kBarWidth * percent / 100;
    char seconds[64];
    std::snprintf(seconds, sizeof(seconds), "%6.1f / %.1f s", framesDone / rate, total / rate);
    out << "\r[" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ') << "] "
        << percent << "%  " << seconds << std::flush;
}

void ProgressBar::finish() {
    if (!enabled) return;
    update(total);
    out << '\n' << std::flush;
}

void ProgressBar::abandon() {
    if (enabled && shownPercent >= 0) out << '\n' << std::flush;
    enabled = false;
}
