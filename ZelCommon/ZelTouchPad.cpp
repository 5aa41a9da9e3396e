#include "ZelTouchPad.h"

ZelTouchPad::ZelTouchPad(const CRect& size, CControlListener* listener, long tag,
                         CBitmap* background, CBitmap* handle, const CPoint& offset)
    : CControl(size, listener, tag, background), offset(offset), handlePoint(0, 0), grabDelta(0, 0),
      dragPoint(0, 0), lastPoint(0, 0), pHandle(handle) {
    if (pHandle) pHandle->remember();
    setDefaultValue(0.5f);
    value = getDefaultValue();
    xValue = value;
    yValue = value;
}

ZelTouchPad::~ZelTouchPad() {
    if (pHandle) pHandle->forget();
}

CPoint ZelTouchPad::handleSize() const {
    if (!pHandle) return CPoint(0, 0);
    return CPoint(pHandle->getWidth(), pHandle->getHeight());
}

CPoint ZelTouchPad::handleTravel() const {
    const CPoint handle = handleSize();
    const CCoord x = size.width() - handle.x;
    const CCoord y = size.height() - handle.y;
    return CPoint(x > 0 ? x : 0, y > 0 ? y : 0);
}

void ZelTouchPad::setXYValue(float x, float y) {
    xValue = x;
    yValue = y;
    updateValue();
}

void ZelTouchPad::setXValue(float x) {
    xValue = x;
    updateValue();
}

void ZelTouchPad::setYValue(float y) {
    yValue = y;
    updateValue();
}

void ZelTouchPad::setHandleBitmap(CBitmap* handle) {
    // Take the new reference first: giving a pad its own handle again must
    // not free the image in between.
    if (handle) handle->remember();
    if (pHandle) pHandle->forget();
    pHandle = handle;
}

void ZelTouchPad::valueToPoint(CPoint& point) const {
    const CPoint travel = handleTravel();
    const float px = xValue * static_cast<float>(travel.x) + static_cast<float>(size.left);
    const float py = yValue * static_cast<float>(travel.y) + static_cast<float>(size.top);
    // Rounds half up; values from outside 0..1 (or NaN) still give a point.
    point.x = truncToCoord(static_cast<double>(px) + 0.5);
    point.y = truncToCoord(static_cast<double>(py) + 0.5);
}

float ZelTouchPad::valueFromPoint(CPoint& point) {
    const CPoint handle = handleSize();
    const CPoint travel = handleTravel();
    const float width = static_cast<float>(travel.x);
    const float height = static_cast<float>(travel.y);
    float fx = static_cast<float>(point.x - size.left) - static_cast<float>(handle.x) / 2.0f;
    float fy = static_cast<float>(point.y - size.top) - static_cast<float>(handle.y) / 2.0f;
    if (fy > height) fy = height;
    if (fx > width) fx = width;
    // A handle that fills the pad has nowhere to go: it stays at 0.
    fx = width > 0.0f ? fx / width : 0.0f;
    fy = height > 0.0f ? fy / height : 0.0f;
    if (0.0f > fx) fx = 0.0f;
    if (0.0f > fy) fy = 0.0f;
    xValue = fx;
    yValue = fy;
    return (xValue + yValue) / 2.0f;
}

void ZelTouchPad::draw(CDrawContext* context) {
    drawBackground(context, offset);
    drawHandle(context);
    setDirty(false);
}

void ZelTouchPad::drawHandle(CDrawContext* context) {
    valueToPoint(handlePoint);
    if (!pHandle) return;
    CRect where(CPoint(0, 0), handleSize());
    where.offset(handlePoint.x, handlePoint.y);
    pHandle->drawTransparent(context, where, CPoint(0, 0));
}

CMouseEventResult ZelTouchPad::onMouseDown(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton)) return kMouseEventNotHandled;

    if (buttons == (kLButton | kControl)) {
        // Back to the centre. Unlike the toolkit's reset gesture this one
        // announces no edit to the host.
        value = getDefaultValue();
        xValue = value;
        yValue = value;
        if (isDirty() && listener) listener->valueChanged(this);
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }

    // Only the handle can be grabbed (edges included); a click beside it
    // leaves the pad where it is.
    const CPoint handle = handleSize();
    const CRect handleRect(handlePoint, handle);
    if (!where.isInside(handleRect)) return kMouseDownEventHandledButDontNeedMovedOrUpEvents;

    // Keeps the spot of the handle under the mouse while dragging.
    grabDelta(handlePoint.x - where.x + handle.x / 2, handlePoint.y - where.y + handle.y / 2);
    beginEdit();
    lastPoint = dragPoint;
    return onMouseMoved(where, buttons);
}

CMouseEventResult ZelTouchPad::onMouseMoved(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton)) return kMouseEventHandled;

    dragPoint(where.x + grabDelta.x, where.y + grabDelta.y);
    value = valueFromPoint(dragPoint);
    // The mean alone could stay put while the handle moves (x up, y down).
    if (dragPoint != lastPoint) setDirty(true);
    if (isDirty() && listener) listener->valueChanged(this);
    if (isDirty()) invalid();
    doIdleStuff();
    return kMouseEventHandled;
}

CMouseEventResult ZelTouchPad::onMouseUp(CPoint& /*where*/, const long& /*buttons*/) {
    endEdit();
    return kMouseEventHandled;
}
