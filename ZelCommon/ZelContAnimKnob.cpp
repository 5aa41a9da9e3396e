#include "ZelContAnimKnob.h"

ZelContAnimKnob::ZelContAnimKnob(const CRect& size, CControlListener* listener, long tag,
                                 long subPixmaps, CCoord heightOfOneImage, CBitmap* background,
                                 const CPoint& offset)
    : CAnimKnob(size, listener, tag, subPixmaps, heightOfOneImage, background, offset) {}

ZelContAnimKnob::~ZelContAnimKnob() = default;

float ZelContAnimKnob::valueFromPoint(CPoint& point) const {
    // One for the whole class, on purpose, and apart from ZelAnimKnob's.
    static float lastAlpha = 0.0f;
    const ZelKnobArc arc{radius, startAngle, rangeAngle, halfAngle, aCoef, vmin, vmax};
    return arc.valueFromPoint(point, lastAlpha);
}

void ZelContAnimKnob::follow(CPoint& where, long buttons) {
    if (modeLinear) {
        const CCoord diff = (firstPoint.y - where.y) + (where.x - firstPoint.x);
        if (buttons != oldButton) {
            // A modifier changed mid-drag: new sensitivity, rebased so that
            // the value goes on from where it is.
            range = kLinearRange;
            if (buttons & kShift) range *= zoomFactor;
            const float coef2 = (vmax - vmin) / range;
            fEntryState += static_cast<float>(diff) * (coef - coef2);
            coef = coef2;
            oldButton = buttons;
        }
        value = fEntryState + static_cast<float>(diff) * coef;
        bounceValue();
        return;
    }
    // No guard against a jump across the dead sector: that jump is what
    // makes the knob endless.
    where.offset(-size.left, -size.top);
    value = valueFromPoint(where);
}

CMouseEventResult ZelContAnimKnob::onMouseMoved(CPoint& where, const long& buttons) {
    if (!(buttons & kLButton) || where == lastPoint) return kMouseEventHandled;
    lastPoint = where;
    follow(where, buttons);
    // A NaN value counts as a change.
    if (!(value == oldValue) && listener) listener->valueChanged(this);
    if (isDirty()) invalid();
    return kMouseEventHandled;
}

bool ZelContAnimKnob::wantsLinear(long buttons) const {
    const long mode = pParentFrame ? pParentFrame->getKnobMode() : long{kCircularMode};
    // Alt swaps the editor's mode for the other one.
    return (mode == kLinearMode) != ((buttons & kAlt) != 0);
}

void ZelContAnimKnob::mouse(CDrawContext* context, CPoint& where, long buttons) {
    // Without a context there is nothing to poll the mouse from.
    if (!bMouseEnabled || !context) return;
    if (buttons == -1) buttons = context->getMouseButtons();
    if (!(buttons & kLButton)) return;

    if (listener && (buttons & (kShift | kControl | kAlt | kApple)) &&
        listener->controlModifierClicked(this, buttons))
        return;
    if (checkDefaultValue(buttons)) return;

    fEntryState = value;
    range = kLinearRange;
    coef = (vmax - vmin) / range;
    oldButton = buttons;
    modeLinear = wantsLinear(buttons);
    if (modeLinear) {
        if (buttons & kShift) range *= zoomFactor;
        firstPoint = where;
        coef = (vmax - vmin) / range;
    } else {
        // Only primes the remembered angle with the click point.
        CPoint local(where.x - size.left, where.y - size.top);
        valueFromPoint(local);
    }

    beginEdit();
    // The first pass takes the click point itself.
    lastPoint(-1, -1);
    long state;
    do {
        state = context->getMouseButtons();
        if (where != lastPoint) {
            lastPoint = where;
            follow(where, state);
            if (isDirty() && listener) listener->valueChanged(this);
        }
        context->getMouseLocation(where);
        doIdleStuff();
    } while (state & kLButton);
    endEdit();
}
