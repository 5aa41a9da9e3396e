#pragma once

#include "vstcontrols.h"

// Reads a mouse point on a knob as a value, from the state of the toolkit's
// knob. Unlike the toolkit's reading, a point exactly on the centre has no
// direction of its own: it keeps the angle of the last point that had one, so
// a drag through the centre does not jump.
struct ZelKnobArc {
    float radius;
    float startAngle;
    float rangeAngle; // negative for a knob that turns clockwise
    float halfAngle;  // half of the dead sector outside the travel
    float aCoef;      // value per radian
    float vmin;
    float vmax;

    // point is relative to the knob's top-left. lastAlpha is read at the
    // centre and updated by every other point. A point in the dead sector
    // gives the nearer end of the range.
    float valueFromPoint(const CPoint& point, float& lastAlpha) const;

private:
    float angleOf(const CPoint& point, float& lastAlpha) const;
};

// A bounded filmstrip knob that survives a drag through its exact centre.
// All ZelAnimKnobs share one remembered angle: a knob dragged onto its centre
// goes on from the angle that any of them saw last.
class ZelAnimKnob : public CAnimKnob {
public:
    ZelAnimKnob(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
                CCoord heightOfOneImage, CBitmap* background, const CPoint& offset = CPoint(0, 0));
    ~ZelAnimKnob() override;

    float valueFromPoint(CPoint& point) const override;
};
