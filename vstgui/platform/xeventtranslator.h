#pragma once

#include "../cgeometry.h"

#include <cstdint>

namespace VSTGUI {

// What a pointer event of the window system means for the frame.
struct MouseAction {
    enum Kind { kNone, kDown, kUp, kMoved, kWheel };
    Kind kind = kNone;
    CPoint where;
    long buttons = 0;
    float wheelDistance = 0.0f;
};

// Turns X11 pointer events (core protocol button numbers and state masks)
// into the toolkit's mouse calls and button bits. The bits follow the
// "state at the time of the event" rule: a press includes the pressed button,
// a release no longer includes the released one.
class XEventTranslator {
public:
    // Presses of the same button closer than this in time and space form a
    // double click.
    static constexpr std::uint32_t kDoubleClickMs = 500;
    static constexpr CCoord kDoubleClickDistance = 4;

    MouseAction buttonPress(std::uint8_t button, std::uint16_t state, std::uint32_t time, CCoord x,
                            CCoord y);
    MouseAction buttonRelease(std::uint8_t button, std::uint16_t state, CCoord x, CCoord y) const;
    MouseAction motion(std::uint16_t state, CCoord x, CCoord y) const;

    // The modifier and held-button bits of an X state mask.
    static long buttonsFromState(std::uint16_t state);
    // The bit of one X button number, 0 for wheel and unknown buttons.
    static long buttonBit(std::uint8_t button);

private:
    bool havePress = false;
    std::uint8_t lastButton = 0;
    std::uint32_t lastTime = 0;
    CPoint lastWhere;
};

} // namespace VSTGUI
