#include "cverticalswitch.h"

#include "cbitmap.h"

namespace VSTGUI {

CVerticalSwitch::CVerticalSwitch(const CRect& size, CControlListener* listener, long tag,
                                 CBitmap* background, const CPoint& offset)
    : CControl(size, listener, tag, background), offset(offset) {
    heightOfOneImage = size.height();
    subPixmaps = (background && heightOfOneImage > 0)
                     ? static_cast<long>(background->getHeight() / heightOfOneImage)
                     : 0;
    iMaxPositions = subPixmaps;
    setDefaultValue(0.0f);
}

CVerticalSwitch::CVerticalSwitch(const CRect& size, CControlListener* listener, long tag,
                                 long subPixmaps, CCoord heightOfOneImage, long iMaxPositions,
                                 CBitmap* background, const CPoint& offset)
    : CControl(size, listener, tag, background), offset(offset), iMaxPositions(iMaxPositions) {
    this->subPixmaps = subPixmaps;
    setHeightOfOneImage(heightOfOneImage);
    setDefaultValue(0.0f);
}

long CVerticalSwitch::getFrameIndex() const {
    // With fewer than two positions there is only frame 0.
    if (iMaxPositions < 2) return 0;
    return truncToCoord(value * (iMaxPositions - 1) + 0.5);
}

void CVerticalSwitch::draw(CDrawContext* context) {
    if (pBackground) drawBackground(context, CPoint(0, heightOfOneImage * getFrameIndex()));
    setDirty(false);
}

CMouseEventResult CVerticalSwitch::onMouseDown(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton)) return kMouseEventNotHandled;
    coef = iMaxPositions > 0 ? static_cast<double>(heightOfOneImage) / iMaxPositions : 0.0;
    beginEdit();
    if (checkDefaultValue(buttons)) {
        endEdit();
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }
    // The click itself already picks a position.
    return onMouseMoved(where, buttons);
}

CMouseEventResult CVerticalSwitch::onMouseUp(CPoint&, const long&) {
    endEdit();
    return kMouseEventHandled;
}

CMouseEventResult CVerticalSwitch::onMouseMoved(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton)) return kMouseEventHandled;
    // Degenerate geometry (no band height, one position) has only value 0.
    if (coef > 0.0 && iMaxPositions > 1)
        value =
            static_cast<long>((where.v - size.top) / coef) / static_cast<float>(iMaxPositions - 1);
    else
        value = 0.0f;
    if (value > 1.0f)
        value = 1.0f;
    else if (value < 0.0f)
        value = 0.0f;
    if (isDirty() && listener) listener->valueChanged(this);
    if (isDirty()) invalid();
    return kMouseEventHandled;
}

} // namespace VSTGUI
