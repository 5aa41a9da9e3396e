#pragma once

// The editor's colours, as cairo's 0..1 components.
struct Colour {
    double r, g, b, a;
    constexpr Colour withAlpha(double alpha) const { return {r, g, b, alpha}; }
};

constexpr Colour rgb(int r, int g, int b) {
    return {r / 255.0, g / 255.0, b / 255.0, 1.0};
}

namespace palette {

// The value displays draw their text in this colour at runtime; the artwork
// uses it as its accent so that text and images belong together.
constexpr Colour kDisplay = rgb(28, 174, 255);

constexpr Colour kBody = rgb(24, 28, 33);      // the panel, flat so the pad's bezel blends in
constexpr Colour kHeaderTop = rgb(44, 50, 58); // header band gradient
constexpr Colour kHeaderBottom = rgb(30, 34, 40);
constexpr Colour kRecess = rgb(11, 14, 17); // tracks and field, set into the panel
constexpr Colour kFieldCentre = rgb(20, 27, 34);
constexpr Colour kEdge = rgb(46, 53, 62); // frames around recessed areas
constexpr Colour kTitle = rgb(230, 235, 240);
constexpr Colour kCaption = rgb(128, 140, 153);
constexpr Colour kFaint = rgb(78, 88, 99);
constexpr Colour kMetalLight = rgb(222, 227, 233); // switch thumb and head
constexpr Colour kMetalDark = rgb(132, 142, 154);

} // namespace palette
