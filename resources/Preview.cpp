#include "Artwork.h"
#include "EditorLayout.h"

namespace artwork {

void drawPreview(const Canvas& canvas, const Canvas& background, const Canvas& filmstrip,
                 const Canvas& pad, const Canvas& handle) {
    using namespace geometry;
    canvas.paste(background, 0, 0, background.width(), background.height());
    canvas.paste(pad, kPad.left, kPad.top, kPad.width(), kPad.height());

    // Where the pad puts its handle for the values 0.5, 0.5 (source at the centre).
    const int travel = kPad.width() - kHandleSize;
    const int handleLeft = kPad.left + static_cast<int>(0.5 * travel + 0.5);
    const int handleTop = kPad.top + static_cast<int>(0.5 * travel + 0.5);
    canvas.paste(handle, handleLeft, handleTop, kHandleSize, kHandleSize);

    canvas.paste(filmstrip, kSwitch.left, kSwitch.top, kSwitchFrameWidth, kSwitchFrameHeight, 0, 0);

    // Sample display texts, drawn as the value displays would.
    const Colour text = palette::kDisplay;
    canvas.text("0.00", kXDisplay.centreX(), kXDisplay.centreY() + 3.5, 10.0, text);
    canvas.text("0.00", kYDisplay.centreX(), kYDisplay.centreY() + 3.5, 10.0, text);
    canvas.text("off", kSwitchDisplay.centreX(), kSwitchDisplay.centreY() + 3.5, 10.0, text);
}

} // namespace artwork
