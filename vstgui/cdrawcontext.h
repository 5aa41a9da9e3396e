#pragma once

#include "cbaseobject.h"
#include "cfont.h"
#include "cgeometry.h"

namespace VSTGUI {

class CBitmap;

enum CDrawStyle { kDrawStroked = 0, kDrawFilled, kDrawFilledAndStroked };
enum CHoriTxtAlign { kLeftText = 0, kCenterText, kRightText };

// Where views draw. Holds the drawing state (colours, font, line width,
// clip rectangle and the offset of the view being drawn) and offers the
// primitives in the coordinates of that view. This base draws nothing: it is
// what a frame without a window uses. CCairoDrawContext draws for real.
class CDrawContext : public CBaseObject {
public:
    CDrawContext();
    ~CDrawContext() override;

    // Added to every coordinate; containers shift it so that their children
    // draw in container-local coordinates.
    void setOffset(const CPoint& o) { offset = o; }
    const CPoint& getOffset() const { return offset; }

    // Clip rectangle, given and answered in the current local coordinates.
    void setClipRect(const CRect& clip);
    CRect& getClipRect(CRect& clip) const;
    void resetClipRect();

    void setLineWidth(CCoord width) { lineWidth = width; }
    CCoord getLineWidth() const { return lineWidth; }
    void setFrameColor(const CColor& color) { frameColor = color; }
    const CColor& getFrameColor() const { return frameColor; }
    void setFillColor(const CColor& color) { fillColor = color; }
    const CColor& getFillColor() const { return fillColor; }
    void setFontColor(const CColor& color) { fontColor = color; }
    const CColor& getFontColor() const { return fontColor; }
    // size 0 keeps the font's own size; style -1 keeps its own style.
    void setFont(const CFontRef font, const long& size = 0, const long& style = -1);
    CFontRef getFont() const { return font; }
    long getFontSize() const { return fontSize; }
    long getFontStyle() const { return fontStyle; }

    void moveTo(const CPoint& p) { penLocation = p; }
    void getLoc(CPoint& where) const { where = penLocation; }
    void lineTo(const CPoint& p);
    void drawLine(const CPoint& start, const CPoint& end);
    virtual void drawRect(const CRect& rect, const CDrawStyle style = kDrawStroked);
    void fillRect(const CRect& rect) { drawRect(rect, kDrawFilled); }
    virtual void drawEllipse(const CRect& rect, const CDrawStyle style = kDrawStroked);
    void fillEllipse(const CRect& rect) { drawEllipse(rect, kDrawFilled); }
    // One line of text inside rect, vertically centred, clipped to rect.
    // opaque: fill the rect with the fill colour first.
    virtual void drawString(const char* string, const CRect& rect, const short opaque = false,
                            const CHoriTxtAlign hAlign = kCenterText);
    virtual CCoord getStringWidth(const char* string);
    // Copies the part of the bitmap that starts at srcOffset into dest, at
    // the bitmap's scale, blending with the image's alpha times alpha.
    virtual void drawBitmap(CBitmap& bitmap, const CRect& dest, const CPoint& srcOffset,
                            float alpha);

    // For old polling tracking loops; a context without a window reports no
    // buttons, which ends such a loop at once.
    virtual long getMouseButtons() { return 0; }
    virtual void getMouseLocation(CPoint& point) { point = penLocation; }

protected:
    virtual void drawLineSegment(const CPoint& start, const CPoint& end);
    // The clip in device coordinates (offset already applied).
    const CRect& deviceClip() const { return clipRect; }
    CPoint toDevice(const CPoint& p) const { return CPoint(p.h + offset.h, p.v + offset.v); }
    CRect toDevice(const CRect& r) const {
        return CRect(r.left + offset.h, r.top + offset.v, r.right + offset.h, r.bottom + offset.v);
    }
    // The area a reset clip returns to.
    void setDeviceBounds(const CRect& bounds);

    CPoint offset;

private:
    CRect deviceBounds;
    CRect clipRect;
    CPoint penLocation;
    CCoord lineWidth = 1;
    CColor frameColor = kBlackCColor;
    CColor fillColor = kWhiteCColor;
    CColor fontColor = kWhiteCColor;
    CFontRef font = nullptr;
    long fontSize = 0;
    long fontStyle = 0;
};

} // namespace VSTGUI
