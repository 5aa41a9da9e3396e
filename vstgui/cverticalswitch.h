#pragma once

#include "ccontrol.h"

namespace VSTGUI {

// A control drawn from a filmstrip: frames of equal height stacked vertically.
class IMultiBitmapControl {
public:
    virtual ~IMultiBitmapControl() = default;
    virtual void setHeightOfOneImage(const CCoord& height) { heightOfOneImage = height; }
    virtual CCoord getHeightOfOneImage() const { return heightOfOneImage; }
    virtual void setNumSubPixmaps(const long& numSubPixmaps) { subPixmaps = numSubPixmaps; }
    virtual long getNumSubPixmaps() const { return subPixmaps; }

protected:
    CCoord heightOfOneImage = 0;
    long subPixmaps = 0;
};

// A switch of iMaxPositions positions stacked top to bottom. A click or drag
// picks the band under the mouse: band k gives the value k / (positions − 1),
// and the value picks the drawn frame, rounded to the nearest position.
class CVerticalSwitch : public CControl, public IMultiBitmapControl {
public:
    // One position per frame of the background; frame height = rect height.
    CVerticalSwitch(const CRect& size, CControlListener* listener, long tag, CBitmap* background,
                    const CPoint& offset = CPoint(0, 0));
    CVerticalSwitch(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
                    CCoord heightOfOneImage, long iMaxPositions, CBitmap* background,
                    const CPoint& offset = CPoint(0, 0));
    CVerticalSwitch(const CVerticalSwitch& other) = default;

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;

    // The frame of the strip that the current value shows.
    long getFrameIndex() const;

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CVerticalSwitch") == 0 || CControl::isTypeOf(s);
    }
    CView* newCopy() const override { return new CVerticalSwitch(*this); }
    const char* getClassName() const override { return "CVerticalSwitch"; }

protected:
    CPoint offset;
    long iMaxPositions;

private:
    double coef = 0.0;
};

} // namespace VSTGUI
