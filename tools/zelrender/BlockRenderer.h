#pragma once

#include "AudioFiles.h"
#include "AutomationPath.h"
#include "BlockProcessor.h"
#include "Position.h"
#include "ProgressBar.h"
#include "VstPlugin.h"

#include <cstdint>
#include <vector>

struct ParameterChange {
    std::int64_t frame;
    ParameterWrite write;
};

// Parameter writes at sample positions, kept in time order; writes at the
// same frame keep the order in which they were added.
class ParameterSchedule {
public:
    void add(std::int64_t frame, const std::vector<ParameterWrite>& writes);
    const std::vector<ParameterChange>& changes() const { return list; }

    // The path's positions at their frames (time × rate, rounded); the first
    // position is moved to frame 0 so that it also holds before its time.
    void addPath(const AutomationPath& path, double sampleRate, ParameterMapping& mapping);

private:
    std::vector<ParameterChange> list;
};

// Runs a prepared plug-in over a whole source, as a host's engine does:
// writes due at frame 0 go in before the switch-on (so the plug-in starts at
// that position instead of gliding to it), then blocks of blockSize frames
// are processed, split wherever a write falls inside one, with the writes
// sent between the two parts.
class BlockRenderer {
public:
    BlockRenderer(VstPlugin& plugin, int blockSize, int outputs);
    void render(MonoSource& source, AmbisonicSink& sink, const ParameterSchedule& schedule,
                ProgressBar& progress);

private:
    VstPlugin& plugin;
    int blockSize;
    int outputCount;
    BlockProcessor buffers;
};
