#pragma once

// Geometry and colours of the images that make_editor_test_images draws and
// the editor tests embed. Each filmstrip frame is one solid colour, so a
// pixel tells which frame was drawn.

#include <cstdint>

namespace testimages {

constexpr long kBackgroundId = 1000;
constexpr int kBackgroundWidth = 120;
constexpr int kBackgroundHeight = 100;
constexpr std::uint32_t kBackgroundRgb = 0x102030;

constexpr long kSwitchStripId = 1001;
constexpr int kSwitchFrames = 4;
constexpr int kSwitchWidth = 20;
constexpr int kSwitchFrameHeight = 40;

constexpr long kKnobStripId = 1002;
constexpr int kKnobFrames = 31;
constexpr int kKnobSide = 40;

// Not a PNG at all: loading it must fail cleanly.
constexpr long kGarbageId = 1003;

inline std::uint32_t switchFrameRgb(int frame) {
    return 0x300000u * static_cast<std::uint32_t>(frame + 1) + 0x0000ffu;
}
inline std::uint32_t knobFrameRgb(int frame) {
    return 0x080000u * static_cast<std::uint32_t>(frame) + 0x00ff00u;
}

} // namespace testimages
