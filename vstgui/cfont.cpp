#include "cfont.h"

namespace VSTGUI {

CFontDesc::CFontDesc(const char* name, long size, long style)
    : name(name ? name : ""), size(size), style(style) {}

namespace {
// Held by an extra reference from this module, so that one unbalanced
// forget() elsewhere does not delete a predefined font.
CFontRef makeBuiltInFont(const char* name, long size) {
    CFontRef font = new CFontDesc(name, size);
    font->remember();
    return font;
}
} // namespace

const CFontRef kSystemFont = makeBuiltInFont("Sans", 12);
const CFontRef kNormalFontVeryBig = makeBuiltInFont("Sans", 18);
const CFontRef kNormalFontBig = makeBuiltInFont("Sans", 14);
const CFontRef kNormalFont = makeBuiltInFont("Sans", 12);
const CFontRef kNormalFontSmall = makeBuiltInFont("Sans", 11);
const CFontRef kNormalFontSmaller = makeBuiltInFont("Sans", 10);
const CFontRef kNormalFontVerySmall = makeBuiltInFont("Sans", 9);
const CFontRef kSymbolFont = makeBuiltInFont("Symbol", 12);

} // namespace VSTGUI
