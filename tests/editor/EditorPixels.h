#pragma once

// Reading the plug-in editor's state back from its pixels, as a user sees it:
// where the pad's handle glows, and PNG files of a window for people to look at.

#include "XTestSupport.h"

#include <optional>
#include <string>

namespace editortest {

// The editor's layout in window pixels, as the user finds it.
namespace layout {
constexpr int kPadLeft = 85;
constexpr int kPadTop = 77;
constexpr int kPadSide = 173;
constexpr int kHandleSide = 20;
constexpr int kSwitchLeft = 50;
constexpr int kSwitchTop = 77;
constexpr int kSwitchRight = 74;
constexpr int kSwitchBottom = 173;
constexpr int kSwitchPositions = 79;
constexpr int kNfcDisplayLeft = 42;
constexpr int kNfcDisplayTop = 177;
constexpr int kNfcDisplayRight = 82;
constexpr int kNfcDisplayBottom = 197;
} // namespace layout

struct Spot {
    double x;
    double y;
    int pixels;
};

// The centre of the largest connected patch of the handle's blue glow inside
// the pad, or nothing if the pad shows no such patch.
std::optional<Spot> findHandleGlow(const WindowImage& image);

// Where the handle's centre should stand for the source coordinates x and y
// (normalised parameter values): x grows towards the top, y towards the left.
Spot expectedHandleCentre(float xParameter, float yParameter);

// How many pixels of a rectangle differ between two images of one window.
int differingPixels(const WindowImage& a, const WindowImage& b, int left, int top, int right,
                    int bottom);

bool writePng(const WindowImage& image, const std::string& path);
// An opaque PNG as 0xRRGGBB pixels; empty if unreadable.
WindowImage readPng(const std::string& path);

} // namespace editortest
