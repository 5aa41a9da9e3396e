#pragma once

#include "cbaseobject.h"

#include <string>

namespace VSTGUI {

enum CTxtFace {
    kNormalFace = 0,
    kBoldFace = 1 << 1,
    kItalicFace = 1 << 2,
    kUnderlineFace = 1 << 3
};

// A font by family name, pixel size and face bits; the drawing context turns
// it into a real font when text is drawn.
class CFontDesc : public CBaseObject {
public:
    CFontDesc(const char* name = nullptr, long size = 0, long style = 0);

    const char* getName() const { return name.c_str(); }
    long getSize() const { return size; }
    long getStyle() const { return style; }
    void setName(const char* newName) { name = newName ? newName : ""; }
    void setSize(long newSize) { size = newSize; }
    void setStyle(long newStyle) { style = newStyle; }

private:
    std::string name;
    long size;
    long style;
};

using CFontRef = CFontDesc*;

// The toolkit's predefined fonts. They live for the whole program; views
// remember and forget them like any other font.
extern const CFontRef kSystemFont;
extern const CFontRef kNormalFontVeryBig;
extern const CFontRef kNormalFontBig;
extern const CFontRef kNormalFont;
extern const CFontRef kNormalFontSmall;
extern const CFontRef kNormalFontSmaller;
extern const CFontRef kNormalFontVerySmall;
extern const CFontRef kSymbolFont;

} // namespace VSTGUI
