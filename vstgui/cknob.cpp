#include "cknob.h"

#include "cbitmap.h"
#include "cdrawcontext.h"
#include "cframe.h"

#include <cmath>

namespace VSTGUI {

CKnob::CKnob(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
             CBitmap* handle, const CPoint& offset)
    : CControl(size, listener, tag, background), offset(offset), pHandle(handle),
      radius(static_cast<float>(size.right - size.left) / 2.0f) {
    if (pHandle) {
        pHandle->remember();
        inset = static_cast<long>(static_cast<float>(pHandle->getWidth()) / 2.0f + 2.5f);
    } else {
        inset = 3;
    }
    setWantsFocus(true);
    // rangeAngle starts at 1 so that compute() never divides by zero.
    setStartAngle(static_cast<float>(5.0 * kPI / 4.0));
    setRangeAngle(static_cast<float>(-3.0 * kPI / 2.0));
}

CKnob::CKnob(const CKnob& other)
    : CControl(other), offset(other.offset), pHandle(other.pHandle), inset(other.inset),
      colorShadowHandle(other.colorShadowHandle), colorHandle(other.colorHandle),
      radius(other.radius), startAngle(other.startAngle), rangeAngle(other.rangeAngle),
      halfAngle(other.halfAngle), aCoef(other.aCoef), bCoef(other.bCoef),
      zoomFactor(other.zoomFactor) {
    if (pHandle) pHandle->remember();
}

CKnob::~CKnob() {
    if (pHandle) pHandle->forget();
}

void CKnob::setStartAngle(const float& val) {
    startAngle = val;
    compute();
}

void CKnob::setRangeAngle(const float& val) {
    rangeAngle = val;
    compute();
}

void CKnob::compute() {
    aCoef = (vmax - vmin) / rangeAngle;
    bCoef = vmin - aCoef * startAngle;
    halfAngle = static_cast<float>((k2PI - std::fabs(rangeAngle)) * 0.5);
    setDirty();
}

void CKnob::setColorShadowHandle(const CColor& color) {
    colorShadowHandle = color;
    setDirty();
}

void CKnob::setColorHandle(const CColor& color) {
    colorHandle = color;
    setDirty();
}

void CKnob::setHandleBitmap(CBitmap* bitmap) {
    if (bitmap) bitmap->remember();
    if (pHandle) pHandle->forget();
    pHandle = bitmap;
    inset = pHandle ? static_cast<long>(static_cast<float>(pHandle->getWidth()) / 2.0f + 2.5f) : 3;
    setDirty();
}

void CKnob::valueToPoint(CPoint& point) const {
    const float alpha = (value - bCoef) / aCoef;
    const float reach = radius - static_cast<float>(inset);
    point.h = truncToCoord(radius + std::cos(alpha) * reach + 0.5f);
    point.v = truncToCoord(radius - std::sin(alpha) * reach + 0.5f);
}

float CKnob::valueFromPoint(CPoint& point) const {
    float alpha = static_cast<float>(
        std::atan2(static_cast<double>(radius - point.v), static_cast<double>(point.h - radius)));
    if (alpha < 0.0f) alpha = static_cast<float>(alpha + k2PI);

    float alpha2 = alpha - startAngle;
    float alpha3;
    if (rangeAngle < 0.0f) {
        // Measured from the end of the arc.
        alpha2 -= rangeAngle;
        alpha3 = alpha2;
        if (alpha3 < 0.0f)
            alpha3 = static_cast<float>(alpha3 + k2PI);
        else if (alpha3 > k2PI)
            alpha3 = static_cast<float>(alpha3 - k2PI);

        if (alpha3 > halfAngle - rangeAngle) return vmax;
        if (alpha3 > -rangeAngle) return vmin;
        if (alpha2 > halfAngle - rangeAngle)
            alpha2 = static_cast<float>(alpha2 - k2PI);
        else if (alpha2 < -halfAngle)
            alpha2 = static_cast<float>(alpha2 + k2PI);
        return aCoef * alpha2 + vmax;
    }

    alpha3 = alpha2;
    if (alpha3 < 0.0f)
        alpha3 = static_cast<float>(alpha3 + k2PI);
    else if (alpha3 > k2PI)
        alpha3 = static_cast<float>(alpha3 - k2PI);

    if (alpha3 > rangeAngle + halfAngle) return vmin;
    if (alpha3 > rangeAngle) return vmax;
    if (alpha2 > rangeAngle + halfAngle)
        alpha2 = static_cast<float>(alpha2 - k2PI);
    else if (alpha2 < -halfAngle)
        alpha2 = static_cast<float>(alpha2 + k2PI);
    return aCoef * alpha2 + vmin;
}

void CKnob::draw(CDrawContext* context) {
    drawBackground(context, offset);
    drawHandle(context);
    setDirty(false);
}

void CKnob::drawHandle(CDrawContext* context) {
    CPoint where;
    valueToPoint(where);
    if (pHandle) {
        const CCoord width = pHandle->getWidth();
        const CCoord height = pHandle->getHeight();
        const CCoord left = size.left + where.h - width / 2;
        const CCoord top = size.top + where.v - height / 2;
        pHandle->drawTransparent(context, CRect(left, top, left + width, top + height));
        return;
    }
    const CPoint origin(size.width() / 2, size.height() / 2);
    CPoint from(size.left - 1 + where.h, size.top + where.v);
    CPoint to(size.left - 1 + origin.h, size.top + origin.v);
    context->setFrameColor(colorShadowHandle);
    context->drawLine(from, to);
    from.offset(1, -1);
    to.offset(1, -1);
    context->setFrameColor(colorHandle);
    context->drawLine(from, to);
}

CMouseEventResult CKnob::onMouseDown(CPoint& where, const long& buttons) {
    beginEdit();
    if (checkDefaultValue(buttons)) {
        endEdit();
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    }

    firstPoint = where;
    lastPoint(-1, -1);
    startValue = oldValue;
    modeLinear = false;
    fEntryState = value;
    range = kLinearRange;
    coef = (vmax - vmin) / range;
    oldButton = buttons;

    const long mode = pParentFrame ? pParentFrame->getKnobMode() : long{kCircularMode};
    // Alt flips between the editor's mode and the other one.
    const bool linear = (mode == kLinearMode) != ((buttons & kAlt) != 0);
    if (linear && (buttons & kLButton)) {
        if (buttons & kShift) range *= zoomFactor;
        lastPoint = where;
        modeLinear = true;
        coef = (vmax - vmin) / range;
    } else {
        CPoint local(where.h - size.left, where.v - size.top);
        startValue = valueFromPoint(local);
    }
    return onMouseMoved(where, buttons);
}

CMouseEventResult CKnob::onMouseUp(CPoint&, const long&) {
    endEdit();
    return kMouseEventHandled;
}

CMouseEventResult CKnob::onMouseMoved(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton)) return kMouseEventHandled;
    const float middle = (vmax - vmin) * 0.5f;
    if (where == lastPoint) return kMouseEventHandled;
    lastPoint = where;

    if (modeLinear) {
        const CCoord diff = (firstPoint.v - where.v) + (where.h - firstPoint.h);
        if (buttons != oldButton) {
            // A modifier changed mid-drag: rescale without a jump.
            range = kLinearRange;
            if (buttons & kShift) range *= zoomFactor;
            const float coef2 = (vmax - vmin) / range;
            fEntryState += diff * (coef - coef2);
            coef = coef2;
            oldButton = buttons;
        }
        value = fEntryState + diff * coef;
        bounceValue();
    } else {
        where.offset(-size.left, -size.top);
        value = valueFromPoint(where);
        // Crossing the dead zone would jump end to end; pin to the end the
        // drag came from until the mouse returns.
        if (startValue - value > middle)
            value = vmax;
        else if (value - startValue > middle)
            value = vmin;
        else
            startValue = value;
    }
    if (value != oldValue && listener) listener->valueChanged(this);
    if (isDirty()) invalid();
    return kMouseEventHandled;
}

bool CKnob::onWheel(const CPoint&, const float& distance, const long& buttons) {
    if (!bMouseEnabled) return false;
    float step = distance * wheelInc;
    if (buttons & kShift) step *= 0.1f;
    value += step;
    bounceValue();
    if (isDirty() && listener) {
        beginEdit();
        listener->valueChanged(this);
        endEdit();
    }
    return true;
}

CAnimKnob::CAnimKnob(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
                     const CPoint& offset)
    : CKnob(size, listener, tag, background, nullptr, offset) {
    heightOfOneImage = size.height();
    subPixmaps = (background && heightOfOneImage > 0)
                     ? static_cast<long>(background->getHeight() / heightOfOneImage)
                     : 0;
    inset = 0;
}

CAnimKnob::CAnimKnob(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
                     CCoord heightOfOneImage, CBitmap* background, const CPoint& offset)
    : CKnob(size, listener, tag, background, nullptr, offset) {
    this->subPixmaps = subPixmaps;
    setHeightOfOneImage(heightOfOneImage);
    inset = 0;
}

void CAnimKnob::setHeightOfOneImage(const CCoord& height) {
    IMultiBitmapControl::setHeightOfOneImage(height);
    if (pBackground && heightOfOneImage > 0)
        subPixmaps = static_cast<long>(pBackground->getHeight() / heightOfOneImage);
}

CCoord CAnimKnob::getFrameOffset() const {
    if (!(value >= 0.0f)) return 0;
    const CCoord stripEnd = heightOfOneImage * (subPixmaps - 1);
    const float position = bInverseBitmap ? 1.0f - value : value;
    const CCoord y = truncToCoord(position * static_cast<float>(stripEnd));
    // Down to the start of the frame that y falls in: the frame index is
    // truncated, never rounded. At or past the last frame y is kept.
    if (y < 0) return 0;
    if (y >= stripEnd || heightOfOneImage <= 0) return y;
    return (y / heightOfOneImage) * heightOfOneImage;
}

void CAnimKnob::draw(CDrawContext* context) {
    if (pBackground) drawBackground(context, CPoint(0, getFrameOffset()));
    valueToPoint(lastDrawnPoint);
    setDirty(false);
}

bool CAnimKnob::isDirty() const {
    if (!bDirty) {
        CPoint point;
        valueToPoint(point);
        if (point == lastDrawnPoint) return false;
    }
    return CKnob::isDirty();
}

} // namespace VSTGUI
