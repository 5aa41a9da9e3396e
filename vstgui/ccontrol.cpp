#include "ccontrol.h"

#include "cframe.h"

namespace VSTGUI {

CControl::CControl(const CRect& size, CControlListener* listener, long tag, CBitmap* background)
    : CView(size), listener(listener), tag(tag) {
    bTransparencyEnabled = false;
    bMouseEnabled = true;
    // Marks the new control dirty, so the first idle draws it.
    setBackground(background);
}

CControl::CControl(const CControl& other)
    : CView(other), listener(other.listener), tag(other.tag), oldValue(other.oldValue),
      defaultValue(other.defaultValue), value(other.value), vmin(other.vmin), vmax(other.vmax),
      wheelInc(other.wheelInc), backOffset(other.backOffset) {}

void CControl::bounceValue() {
    if (value > vmax)
        value = vmax;
    else if (value < vmin)
        value = vmin;
}

bool CControl::isDirty() const {
    return oldValue != value || CView::isDirty();
}

void CControl::setDirty(const bool val) {
    CView::setDirty(val);
    if (val)
        oldValue = value != -1.0f ? -1.0f : 0.0f; // anything but the current value
    else
        oldValue = value;
}

void CControl::beginEdit() {
    if (listener) listener->controlBeginEdit(this);
    if (pParentFrame) {
        pParentFrame->setFocusView(this);
        pParentFrame->beginEdit(tag);
    }
}

void CControl::endEdit() {
    if (pParentFrame) pParentFrame->endEdit(tag);
    if (listener) listener->controlEndEdit(this);
}

bool CControl::checkDefaultValue(long button) {
    if (button != (kControl | kLButton)) return false;
    beginEdit();
    value = getDefaultValue();
    if (isDirty() && listener) listener->valueChanged(this);
    endEdit();
    return true;
}

void CControl::doIdleStuff() {
    if (pParentFrame) pParentFrame->doIdleStuff();
}

} // namespace VSTGUI
