#include "xeventtranslator.h"

#include "../cview.h"

namespace VSTGUI {

namespace {
// X11 core protocol state mask bits.
constexpr std::uint16_t kXShift = 1 << 0;
constexpr std::uint16_t kXControl = 1 << 2;
constexpr std::uint16_t kXMod1 = 1 << 3; // Alt
constexpr std::uint16_t kXMod4 = 1 << 6; // Super
constexpr std::uint16_t kXButton1 = 1 << 8;
constexpr std::uint16_t kXButton2 = 1 << 9;
constexpr std::uint16_t kXButton3 = 1 << 10;

constexpr std::uint8_t kWheelUp = 4;
constexpr std::uint8_t kWheelDown = 5;

long modifiersFromState(std::uint16_t state) {
    long bits = 0;
    if (state & kXShift) bits |= kShift;
    if (state & kXControl) bits |= kControl;
    if (state & kXMod1) bits |= kAlt;
    if (state & kXMod4) bits |= kApple;
    return bits;
}

CCoord distance(CCoord a, CCoord b) {
    return a > b ? a - b : b - a;
}
} // namespace

long XEventTranslator::buttonsFromState(std::uint16_t state) {
    long bits = modifiersFromState(state);
    if (state & kXButton1) bits |= kLButton;
    if (state & kXButton2) bits |= kMButton;
    if (state & kXButton3) bits |= kRButton;
    return bits;
}

long XEventTranslator::buttonBit(std::uint8_t button) {
    switch (button) {
    case 1:
        return kLButton;
    case 2:
        return kMButton;
    case 3:
        return kRButton;
    case 8:
        return kButton4;
    case 9:
        return kButton5;
    default:
        return 0;
    }
}

MouseAction XEventTranslator::buttonPress(std::uint8_t button, std::uint16_t state,
                                          std::uint32_t time, CCoord x, CCoord y) {
    MouseAction action;
    action.where = CPoint(x, y);
    if (button == kWheelUp || button == kWheelDown) {
        action.kind = MouseAction::kWheel;
        action.wheelDistance = button == kWheelUp ? 1.0f : -1.0f;
        action.buttons = modifiersFromState(state);
        return action;
    }
    const long bit = buttonBit(button);
    if (!bit) return action;
    action.kind = MouseAction::kDown;
    action.buttons = buttonsFromState(state) | bit;

    const bool isDouble = havePress && button == lastButton &&
                          static_cast<std::uint32_t>(time - lastTime) <= kDoubleClickMs &&
                          distance(x, lastWhere.h) <= kDoubleClickDistance &&
                          distance(y, lastWhere.v) <= kDoubleClickDistance;
    if (isDouble) {
        action.buttons |= kDoubleClick;
        havePress = false; // a third press starts a new pair
    } else {
        havePress = true;
        lastButton = button;
        lastTime = time;
        lastWhere = action.where;
    }
    return action;
}

MouseAction XEventTranslator::buttonRelease(std::uint8_t button, std::uint16_t state, CCoord x,
                                            CCoord y) const {
    MouseAction action;
    const long bit = buttonBit(button);
    if (!bit) return action;
    action.kind = MouseAction::kUp;
    action.where = CPoint(x, y);
    action.buttons = buttonsFromState(state) & ~bit;
    return action;
}

MouseAction XEventTranslator::motion(std::uint16_t state, CCoord x, CCoord y) const {
    MouseAction action;
    action.kind = MouseAction::kMoved;
    action.where = CPoint(x, y);
    action.buttons = buttonsFromState(state);
    return action;
}

} // namespace VSTGUI
