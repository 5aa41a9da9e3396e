#pragma once

#include "ccontrol.h"
#include "cverticalswitch.h"

namespace VSTGUI {

// A rotary control. The value runs along an arc from startAngle over
// rangeAngle (radians, counter-clockwise from 3 o'clock, screen y up; the
// default arc turns clockwise from 7:30 to 4:30 with the dead zone at the
// bottom). Dragging follows the mouse angle (circular mode) or vertical plus
// horizontal movement (linear mode, the editor's knob mode or Alt).
class CKnob : public CControl {
public:
    CKnob(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
          CBitmap* handle, const CPoint& offset = CPoint(0, 0));
    CKnob(const CKnob& other);
    ~CKnob() override;

    void draw(CDrawContext* context) override;
    virtual void drawHandle(CDrawContext* context);

    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;
    bool onWheel(const CPoint& where, const float& distance, const long& buttons) override;

    // Both in control-local coordinates (0, 0 = the knob's top-left).
    virtual void valueToPoint(CPoint& point) const;
    virtual float valueFromPoint(CPoint& point) const;

    virtual void setStartAngle(const float& val);
    virtual float getStartAngle() const { return startAngle; }
    virtual void setRangeAngle(const float& val);
    virtual float getRangeAngle() const { return rangeAngle; }
    // Recomputes the angle↔value coefficients. setMin/setMax do not call it.
    virtual void compute();

    virtual void setInsetValue(long val) { inset = val; }
    virtual long getInsetValue() const { return inset; }
    virtual void setColorShadowHandle(const CColor& color);
    virtual CColor getColorShadowHandle() const { return colorShadowHandle; }
    virtual void setColorHandle(const CColor& color);
    virtual CColor getColorHandle() const { return colorHandle; }
    virtual void setHandleBitmap(CBitmap* bitmap);
    virtual CBitmap* getHandleBitmap() const { return pHandle; }
    virtual void setZoomFactor(float val) { zoomFactor = val; }
    virtual float getZoomFactor() const { return zoomFactor; }

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CKnob") == 0 || CControl::isTypeOf(s);
    }
    CView* newCopy() const override { return new CKnob(*this); }
    const char* getClassName() const override { return "CKnob"; }

protected:
    // Linear drag distance, in pixels, for the whole range (times the zoom
    // factor with Shift).
    static constexpr float kLinearRange = 200.0f;

    CPoint offset;
    CBitmap* pHandle;
    long inset;
    CColor colorShadowHandle = kGreyCColor;
    CColor colorHandle = kWhiteCColor;
    float radius;
    float startAngle = 0.0f;
    float rangeAngle = 1.0f;
    float halfAngle = 0.0f;
    float aCoef = 0.0f;
    float bCoef = 0.0f;
    float zoomFactor = 1.5f;

    // Drag state, set up by onMouseDown and read by onMouseMoved.
    CPoint firstPoint;
    CPoint lastPoint;
    float startValue = 0.0f;
    float fEntryState = 0.0f;
    float range = kLinearRange;
    float coef = 0.0f;
    long oldButton = 0;
    bool modeLinear = false;
};

// A knob drawn from a filmstrip: the value picks the frame (truncated), and
// it repaints only when its virtual handle point moves by a whole pixel.
class CAnimKnob : public CKnob, public IMultiBitmapControl {
public:
    // Frame height = rect height; the number of frames follows from the strip.
    CAnimKnob(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
              const CPoint& offset = CPoint(0, 0));
    // subPixmaps is recomputed from the strip's height when there is one.
    CAnimKnob(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
              CCoord heightOfOneImage, CBitmap* background, const CPoint& offset = CPoint(0, 0));
    CAnimKnob(const CAnimKnob& other) = default;

    void draw(CDrawContext* context) override;
    bool isDirty() const override;
    void setHeightOfOneImage(const CCoord& height) override;
    virtual void setInverseBitmap(bool val) { bInverseBitmap = val; }
    bool getInverseBitmap() const { return bInverseBitmap; }
    // The source offset into the strip for the current value.
    CCoord getFrameOffset() const;

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CAnimKnob") == 0 || CKnob::isTypeOf(s);
    }
    CView* newCopy() const override { return new CAnimKnob(*this); }
    const char* getClassName() const override { return "CAnimKnob"; }

protected:
    bool bInverseBitmap = false;
    CPoint lastDrawnPoint;
};

} // namespace VSTGUI
