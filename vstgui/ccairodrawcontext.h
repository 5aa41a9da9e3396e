#pragma once

#include "cdrawcontext.h"

#include <cairo.h>

namespace VSTGUI {

// A drawing context that paints into a Cairo image surface: the frame's back
// buffer on screen, or any image for headless rendering.
class CCairoDrawContext : public CDrawContext {
public:
    // Takes its own reference on the surface.
    explicit CCairoDrawContext(cairo_surface_t* imageSurface);
    ~CCairoDrawContext() override;
    CCairoDrawContext(const CCairoDrawContext&) = delete;
    CCairoDrawContext& operator=(const CCairoDrawContext&) = delete;

    void drawRect(const CRect& rect, const CDrawStyle style = kDrawStroked) override;
    void drawEllipse(const CRect& rect, const CDrawStyle style = kDrawStroked) override;
    void drawString(const char* string, const CRect& rect, const short opaque = false,
                    const CHoriTxtAlign hAlign = kCenterText) override;
    CCoord getStringWidth(const char* string) override;
    void drawBitmap(CBitmap& bitmap, const CRect& dest, const CPoint& srcOffset,
                    float alpha) override;

protected:
    void drawLineSegment(const CPoint& start, const CPoint& end) override;

private:
    // Saves the Cairo state and clips to the current clip rectangle; false
    // when nothing would be visible.
    bool beginPrimitive();
    void endPrimitive();
    void setSourceColor(const CColor& color);
    void selectFont();

    cairo_surface_t* surface;
    cairo_t* cr;
};

} // namespace VSTGUI
