#pragma once

#include "ccontrol.h"
#include "cdrawcontext.h"
#include "cfont.h"

namespace VSTGUI {

// Shows a control value as text. The text comes from a converter callback
// when one is set, else from "%2.2f" of the raw value.
class CParamDisplay : public CControl {
public:
    using StringConvert = void (*)(float value, char* string);
    using StringConvertWithData = void (*)(float value, char* string, void* userData);
    using String2FloatConvert = void (*)(char* string, float& output);

    // The text buffer that converters fill holds this many bytes.
    static constexpr int kTextBufferSize = 256;

    CParamDisplay(const CRect& size, CBitmap* background = nullptr, const long style = 0);
    CParamDisplay(const CParamDisplay& other);
    ~CParamDisplay() override;

    virtual void setFont(CFontRef font);
    CFontRef getFont() const { return fontID; }
    virtual void setFontColor(CColor color);
    CColor getFontColor() const { return fontColor; }
    virtual void setBackColor(CColor color);
    CColor getBackColor() const { return backColor; }
    virtual void setFrameColor(CColor color);
    CColor getFrameColor() const { return frameColor; }
    virtual void setShadowColor(CColor color);
    CColor getShadowColor() const { return shadowColor; }
    virtual void setHoriAlign(CHoriTxtAlign align);
    CHoriTxtAlign getHoriAlign() const { return horiTxtAlign; }
    virtual void setStyle(long val);
    long getStyle() const { return style; }
    virtual void setTextTransparency(bool val) { bTextTransparencyEnabled = val; }
    bool getTextTransparency() const { return bTextTransparencyEnabled; }
    virtual void setAntialias(bool state) { bAntialias = state; }
    bool getAntialias() const { return bAntialias; }

    virtual void setStringConvert(StringConvert convert);
    virtual void setStringConvert(StringConvertWithData convert, void* userData);
    virtual void setString2FloatConvert(String2FloatConvert convert);

    // Fills text (kTextBufferSize bytes) with what the display shows now.
    virtual void getDisplayString(char* text) const;

    void draw(CDrawContext* context) override;

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CParamDisplay") == 0 || CControl::isTypeOf(s);
    }
    CView* newCopy() const override { return new CParamDisplay(*this); }
    const char* getClassName() const override { return "CParamDisplay"; }

protected:
    virtual void drawText(CDrawContext* context, char* string, CBitmap* newBack = nullptr);

    StringConvert stringConvert = nullptr;
    StringConvertWithData stringConvert2 = nullptr;
    String2FloatConvert string2FloatConvert = nullptr;
    void* userData = nullptr;
    CHoriTxtAlign horiTxtAlign = kCenterText;
    long style;
    CFontRef fontID;
    CColor fontColor = kWhiteCColor;
    CColor backColor = kBlackCColor;
    CColor frameColor = kBlackCColor;
    CColor shadowColor = kRedCColor;
    bool bTextTransparencyEnabled = true;
    bool bAntialias = true;
};

} // namespace VSTGUI
