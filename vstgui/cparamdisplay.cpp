#include "cparamdisplay.h"

#include "cbitmap.h"

#include <cstdio>

namespace VSTGUI {

CParamDisplay::CParamDisplay(const CRect& size, CBitmap* background, const long style)
    : CControl(size, nullptr, 0, background), style(style), fontID(kNormalFont) {
    fontID->remember();
    if (style & kNoDrawStyle) setDirty(false);
}

CParamDisplay::CParamDisplay(const CParamDisplay& other)
    : CControl(other), stringConvert(other.stringConvert), stringConvert2(other.stringConvert2),
      string2FloatConvert(other.string2FloatConvert), userData(other.userData),
      horiTxtAlign(other.horiTxtAlign), style(other.style), fontID(other.fontID),
      fontColor(other.fontColor), backColor(other.backColor), frameColor(other.frameColor),
      shadowColor(other.shadowColor), bTextTransparencyEnabled(other.bTextTransparencyEnabled),
      bAntialias(other.bAntialias) {
    if (fontID) fontID->remember();
}

CParamDisplay::~CParamDisplay() {
    if (fontID) fontID->forget();
}

void CParamDisplay::setFont(CFontRef font) {
    setDirty();
    if (font) font->remember();
    if (fontID) fontID->forget();
    fontID = font;
}

void CParamDisplay::setFontColor(CColor color) {
    if (color != fontColor) setDirty();
    fontColor = color;
}

void CParamDisplay::setBackColor(CColor color) {
    if (color != backColor) setDirty();
    backColor = color;
}

void CParamDisplay::setFrameColor(CColor color) {
    if (color != frameColor) setDirty();
    frameColor = color;
}

void CParamDisplay::setShadowColor(CColor color) {
    if (color != shadowColor) setDirty();
    shadowColor = color;
}

void CParamDisplay::setHoriAlign(CHoriTxtAlign align) {
    if (align != horiTxtAlign) setDirty();
    horiTxtAlign = align;
}

void CParamDisplay::setStyle(long val) {
    if (val != style) setDirty();
    style = val;
}

void CParamDisplay::setStringConvert(StringConvert convert) {
    stringConvert = convert;
}

void CParamDisplay::setStringConvert(StringConvertWithData convert, void* data) {
    stringConvert2 = convert;
    userData = data;
}

void CParamDisplay::setString2FloatConvert(String2FloatConvert convert) {
    string2FloatConvert = convert;
}

void CParamDisplay::getDisplayString(char* text) const {
    text[0] = 0;
    if (stringConvert2)
        stringConvert2(value, text, userData);
    else if (stringConvert)
        stringConvert(value, text);
    else
        std::snprintf(text, kTextBufferSize, "%2.2f", static_cast<double>(value));
    // A converter that fills the whole buffer must not make us read past it.
    text[kTextBufferSize - 1] = 0;
}

void CParamDisplay::draw(CDrawContext* context) {
    char string[kTextBufferSize];
    getDisplayString(string);
    drawText(context, string);
}

void CParamDisplay::drawText(CDrawContext* context, char* string, CBitmap* newBack) {
    setDirty(false);
    if (style & kNoDrawStyle) return;

    CBitmap* back = newBack ? newBack : pBackground;
    if (back) {
        if (bTransparencyEnabled)
            back->drawTransparent(context, size, backOffset);
        else
            back->draw(context, size, backOffset);
    } else if (!bTransparencyEnabled) {
        context->setFillColor(backColor);
        context->fillRect(size);
        if (!(style & (k3DIn | k3DOut | kNoFrame))) {
            context->setFrameColor(frameColor);
            context->drawRect(size);
        }
    }

    if (style & (k3DIn | k3DOut)) {
        CRect r(size);
        r.right--;
        r.top++;
        context->setFrameColor((style & k3DIn) ? backColor : frameColor);
        context->drawLine(CPoint(r.left, r.bottom), CPoint(r.left, r.top));
        context->drawLine(CPoint(r.left, r.top), CPoint(r.right, r.top));
        context->setFrameColor((style & k3DIn) ? frameColor : backColor);
        context->drawLine(CPoint(r.right, r.top), CPoint(r.right, r.bottom));
        context->drawLine(CPoint(r.right, r.bottom), CPoint(r.left, r.bottom));
    }

    if (!(style & kNoTextStyle) && string && string[0]) {
        CRect oldClip;
        context->getClipRect(oldClip);
        CRect clip(size);
        context->setClipRect(clip.bound(oldClip));
        context->setFont(fontID);
        context->setFillColor(backColor); // behind the text when it is opaque
        if (style & kShadowText) {
            CRect shadow(size);
            shadow.offset(1, 1);
            context->setFontColor(shadowColor);
            context->drawString(string, shadow, !bTextTransparencyEnabled, horiTxtAlign);
        }
        context->setFontColor(fontColor);
        context->drawString(string, size, !bTextTransparencyEnabled, horiTxtAlign);
        context->setClipRect(oldClip);
    }
}

} // namespace VSTGUI
