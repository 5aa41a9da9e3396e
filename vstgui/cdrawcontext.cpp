#include "cdrawcontext.h"

namespace VSTGUI {

namespace {
constexpr CCoord kUnbounded = 1 << 24;
}

CDrawContext::CDrawContext()
    : deviceBounds(-kUnbounded, -kUnbounded, kUnbounded, kUnbounded), clipRect(deviceBounds) {
    setFont(kNormalFont);
}

CDrawContext::~CDrawContext() {
    if (font) font->forget();
}

void CDrawContext::setDeviceBounds(const CRect& bounds) {
    deviceBounds = bounds;
    clipRect = bounds;
}

void CDrawContext::setClipRect(const CRect& clip) {
    clipRect = toDevice(clip);
    clipRect.normalize();
}

CRect& CDrawContext::getClipRect(CRect& clip) const {
    clip = clipRect;
    clip.offset(-offset.h, -offset.v);
    return clip;
}

void CDrawContext::resetClipRect() {
    clipRect = deviceBounds;
}

void CDrawContext::setFont(const CFontRef newFont, const long& size, const long& style) {
    if (!newFont) return;
    newFont->remember();
    if (font) font->forget();
    font = newFont;
    fontSize = size > 0 ? size : newFont->getSize();
    fontStyle = style >= 0 ? style : newFont->getStyle();
}

void CDrawContext::lineTo(const CPoint& p) {
    drawLineSegment(penLocation, p);
    penLocation = p;
}

void CDrawContext::drawLine(const CPoint& start, const CPoint& end) {
    drawLineSegment(start, end);
    penLocation = end;
}

void CDrawContext::drawLineSegment(const CPoint&, const CPoint&) {}
void CDrawContext::drawRect(const CRect&, const CDrawStyle) {}
void CDrawContext::drawEllipse(const CRect&, const CDrawStyle) {}
void CDrawContext::drawString(const char*, const CRect&, const short, const CHoriTxtAlign) {}
CCoord CDrawContext::getStringWidth(const char*) {
    return 0;
}
void CDrawContext::drawBitmap(CBitmap&, const CRect&, const CPoint&, float) {}

} // namespace VSTGUI
