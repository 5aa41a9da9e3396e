#pragma once

#include "vstcontrols.h"

// A square pad over which the user drags a handle image: two values, xValue
// (0 = left) and yValue (0 = top), both 0..1. It has one tag and one listener
// and knows nothing of what the values mean.
//
// The inherited single `value` always holds (xValue + yValue) / 2. Nobody
// reads it as a position: it only lets the toolkit's change detection (value
// against the last drawn value) notice that the pad moved.
class ZelTouchPad : public CControl {
public:
    // Takes a reference on the handle; a new pad stands at its centre.
    ZelTouchPad(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
                CBitmap* handle, const CPoint& offset);
    ~ZelTouchPad() override;

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;

    // Draws the handle where the values put it and remembers that spot, which
    // is where the next mouse-down looks for the handle.
    virtual void drawHandle(CDrawContext* context);
    // The handle's top-left for the current values; the handle never leaves
    // the pad.
    virtual void valueToPoint(CPoint& point) const;
    // Sets both values from a point that stands for the handle's centre,
    // clamped to 0..1; answers the new mean.
    virtual float valueFromPoint(CPoint& point);
    virtual void setHandleBitmap(CBitmap* handle);
    virtual float getXValue() const { return xValue; }
    virtual float getYValue() const { return yValue; }
    // No clamping and no redraw request: the caller decides when to draw.
    virtual void setXYValue(float x, float y);
    virtual void setXValue(float x);
    virtual void setYValue(float y);

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "ZelTouchPad") == 0 || CControl::isTypeOf(s);
    }
    // A member-wise copy: the copy shares the handle image without taking a
    // reference of its own, so the creator must keep one for it.
    CView* newCopy() const override { return new ZelTouchPad(*this); }
    const char* getClassName() const override { return "ZelTouchPad"; }

    CBitmap* getHandleBitmap() const { return pHandle; }

protected:
    ZelTouchPad(const ZelTouchPad& other) = default;

    // The handle's size in pixels; a pad without a handle image treats its
    // handle as a single point, so every mapping stays defined.
    CPoint handleSize() const;
    // How far the handle's top-left can travel; 0 when the handle fills the
    // pad (or is larger).
    CPoint handleTravel() const;
    void updateValue() { value = (xValue + yValue) / 2.0f; }

    CPoint offset;
    CPoint handlePoint;
    CPoint grabDelta;
    CPoint dragPoint;
    CPoint lastPoint;
    CBitmap* pHandle;
    float xValue;
    float yValue;
};
