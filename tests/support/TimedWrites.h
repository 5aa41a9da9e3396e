#pragma once

// A host's pass over a whole signal with parameter writes due at frames, the
// way a DAW plays automation: each write made between blocks, before the frame
// it falls on, so that blocks are cut at every write.

#include "BlockProcessor.h"

#include <algorithm>
#include <vector>

struct TimedWrite {
    long long frame;
    int index; // -1: switch off and on again
    float value;
};

// Writes due at one frame go in their given order; those due at frame 0 come
// before the switch-on. Blocks are never longer than maxBlock and are also cut
// at every frame in `cuts`; each cut is followed by an empty block.
inline void playWithWrites(VstPlugin& plugin, BlockProcessor& buffers,
                           std::vector<TimedWrite> writes, int maxBlock,
                           std::vector<long long> cuts = {}) {
    std::stable_sort(writes.begin(), writes.end(),
                     [](const TimedWrite& a, const TimedWrite& b) { return a.frame < b.frame; });
    for (const TimedWrite& w : writes)
        cuts.push_back(std::min<long long>(w.frame, buffers.frames()));
    cuts.push_back(buffers.frames());
    std::sort(cuts.begin(), cuts.end());
    std::size_t next = 0;
    int pos = 0;
    bool on = false;
    for (long long cut : cuts) {
        for (; next < writes.size() && writes[next].frame <= pos; ++next) {
            if (writes[next].index >= 0) {
                plugin.setParameter(writes[next].index, writes[next].value);
            } else {
                plugin.setMains(false);
                on = false;
            }
        }
        if (!on) plugin.setMains(on = true);
        for (int n; pos < cut; pos += n)
            buffers.process(pos, n = static_cast<int>(std::min<long long>(cut - pos, maxBlock)));
        buffers.process(pos, 0);
    }
}
