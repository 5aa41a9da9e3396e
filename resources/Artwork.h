#pragma once

#include "Canvas.h"

// The editor's four images and a preview of them put together. Each draw
// function fills a canvas of the image's size.
namespace artwork {

constexpr double kPi = 3.14159265358979323846;

// Window background (resource 131): window-sized.
void drawBackground(const Canvas& canvas);

// Compensation-distance switch (resource 135): all frames stacked vertically.
void drawSwitchFilmstrip(const Canvas& canvas);

// Touch-pad background (resource 137): pad-sized.
void drawPad(const Canvas& canvas);

// Touch-pad handle (resource 138): handle-sized, transparent around the dot.
void drawHandle(const Canvas& canvas);

// The window as the editor shows it with the pad centred and compensation off,
// display texts included; for judging the images, not used by the plug-in.
void drawPreview(const Canvas& canvas, const Canvas& background, const Canvas& filmstrip,
                 const Canvas& pad, const Canvas& handle);

// Vertical centre of the switch thumb within a frame; the background's scale
// marks use it too, so that they line up with the thumb.
double switchThumbCentre(int frame);

// The frame that shows a compensation distance in metres.
double switchFrameFor(double metres);

} // namespace artwork
