#pragma once

#include "ZelAnimKnob.h"

// An endless filmstrip knob: it reads the mouse like ZelAnimKnob (with its
// own class-wide remembered angle) and, in circular mode, lets the value pass
// from one end of the range to the other while the mouse turns round. The
// toolkit's knob pins the value at the end it came from instead.
class ZelContAnimKnob : public CAnimKnob {
public:
    ZelContAnimKnob(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
                    CCoord heightOfOneImage, CBitmap* background,
                    const CPoint& offset = CPoint(0, 0));
    ~ZelContAnimKnob() override;

    float valueFromPoint(CPoint& point) const override;
    // Follows a drag that the toolkit's onMouseDown started.
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;
    // The older blocking way to track a drag: polls the buttons and the mouse
    // location from the context until the left button is released. Not
    // called by the toolkit's own mouse routing.
    void mouse(CDrawContext* context, CPoint& where, long buttons = -1) override;

private:
    // Sets the value for the mouse point during a drag. Circular mode moves
    // where into knob-local coordinates.
    void follow(CPoint& where, long buttons);
    bool wantsLinear(long buttons) const;
};
