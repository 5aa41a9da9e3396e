#pragma once

// The editor's layout, in window pixels, and the numbers of its images: the
// one place they are written down. The editor places its controls here, the
// image generator draws the artwork around these rectangles, the build embeds
// the images by these numbers (it reads them from this file) and the tests
// look for the controls here.
namespace geometry {

struct Rect {
    int left, top, right, bottom;
    int width() const { return right - left; }
    int height() const { return bottom - top; }
    double centreX() const { return 0.5 * (left + right); }
    double centreY() const { return 0.5 * (top + bottom); }
};

constexpr int kWindowWidth = 300;
constexpr int kWindowHeight = 260;

constexpr Rect kPad{85, 77, 258, 250};
constexpr Rect kXDisplay{248, 75, 288, 95};
constexpr Rect kYDisplay{248, 110, 288, 130};
constexpr Rect kSwitch{50, 77, 74, 173};
constexpr Rect kSwitchDisplay{42, 177, 82, 197};

// The switch filmstrip: frame 0 stands for compensation off (4 m), the last
// frame for the shortest compensation distance (0.5 m).
constexpr int kSwitchFrames = 79;
constexpr int kSwitchFrameWidth = 24;
constexpr int kSwitchFrameHeight = 96;
constexpr double kNearestCompensation = 0.5;  // metres, the last frame
constexpr double kFarthestCompensation = 4.0; // metres, frame 0 ("off")

constexpr int kHandleSize = 20;

// Image resources, found by the file name "bmp%05d.png" of their number.
constexpr int kBackgroundImage = 131;
constexpr int kSwitchImage = 135;
constexpr int kPadImage = 137;
constexpr int kHandleImage = 138;

// The handle's centre travels over the pad less one handle on each axis; the
// grid field is drawn over exactly that travel, so that the centre of the handle
// points at the source position. Source coordinates span -4..4 m on both axes.
constexpr double kPadMargin = kHandleSize / 2.0;
constexpr double kPadRangeMetres = 4.0;

} // namespace geometry
