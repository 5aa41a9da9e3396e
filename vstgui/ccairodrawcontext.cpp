#include "ccairodrawcontext.h"

#include "cbitmap.h"

namespace VSTGUI {

CCairoDrawContext::CCairoDrawContext(cairo_surface_t* imageSurface)
    : surface(cairo_surface_reference(imageSurface)), cr(cairo_create(imageSurface)) {
    const bool isImage = cairo_surface_get_type(surface) == CAIRO_SURFACE_TYPE_IMAGE;
    const CCoord width = isImage ? cairo_image_surface_get_width(surface) : 0;
    const CCoord height = isImage ? cairo_image_surface_get_height(surface) : 0;
    setDeviceBounds(CRect(0, 0, width, height));
}

CCairoDrawContext::~CCairoDrawContext() {
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}

bool CCairoDrawContext::beginPrimitive() {
    if (cairo_status(cr) != CAIRO_STATUS_SUCCESS) return false;
    const CRect& clip = deviceClip();
    if (clip.isEmpty()) return false;
    cairo_save(cr);
    cairo_rectangle(cr, clip.left, clip.top, clip.width(), clip.height());
    cairo_clip(cr);
    return true;
}

void CCairoDrawContext::endPrimitive() {
    cairo_restore(cr);
}

void CCairoDrawContext::setSourceColor(const CColor& c) {
    cairo_set_source_rgba(cr, c.red / 255.0, c.green / 255.0, c.blue / 255.0, c.alpha / 255.0);
}

void CCairoDrawContext::drawLineSegment(const CPoint& start, const CPoint& end) {
    if (!beginPrimitive()) return;
    const CPoint a = toDevice(start);
    const CPoint b = toDevice(end);
    // Pixel centres, so that a 1-pixel line covers exactly one pixel row.
    cairo_move_to(cr, a.h + 0.5, a.v + 0.5);
    cairo_line_to(cr, b.h + 0.5, b.v + 0.5);
    cairo_set_line_width(cr, static_cast<double>(getLineWidth()));
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
    setSourceColor(getFrameColor());
    cairo_stroke(cr);
    endPrimitive();
}

void CCairoDrawContext::drawRect(const CRect& rect, const CDrawStyle style) {
    if (!beginPrimitive()) return;
    CRect r = toDevice(rect);
    r.normalize();
    if (style != kDrawStroked) {
        cairo_rectangle(cr, r.left, r.top, r.width(), r.height());
        setSourceColor(getFillColor());
        cairo_fill(cr);
    }
    if (style != kDrawFilled && r.width() > 0 && r.height() > 0) {
        cairo_rectangle(cr, r.left + 0.5, r.top + 0.5, r.width() - 1, r.height() - 1);
        cairo_set_line_width(cr, static_cast<double>(getLineWidth()));
        setSourceColor(getFrameColor());
        cairo_stroke(cr);
    }
    endPrimitive();
}

void CCairoDrawContext::drawEllipse(const CRect& rect, const CDrawStyle style) {
    CRect r = toDevice(rect);
    r.normalize();
    if (r.isEmpty() || !beginPrimitive()) return;
    cairo_save(cr);
    cairo_translate(cr, (r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0);
    cairo_scale(cr, r.width() / 2.0, r.height() / 2.0);
    cairo_arc(cr, 0, 0, 1, 0, 6.283185307179586);
    cairo_restore(cr);
    if (style != kDrawStroked) {
        setSourceColor(getFillColor());
        cairo_fill_preserve(cr);
    }
    if (style != kDrawFilled) {
        setSourceColor(getFrameColor());
        cairo_set_line_width(cr, static_cast<double>(getLineWidth()));
        cairo_stroke_preserve(cr);
    }
    cairo_new_path(cr);
    endPrimitive();
}

void CCairoDrawContext::selectFont() {
    const CFontRef font = getFont();
    const long style = getFontStyle();
    cairo_select_font_face(cr, font ? font->getName() : "Sans",
                           (style & kItalicFace) ? CAIRO_FONT_SLANT_ITALIC
                                                 : CAIRO_FONT_SLANT_NORMAL,
                           (style & kBoldFace) ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, static_cast<double>(getFontSize()));
}

CCoord CCairoDrawContext::getStringWidth(const char* string) {
    if (!string || !*string || cairo_status(cr) != CAIRO_STATUS_SUCCESS) return 0;
    selectFont();
    cairo_text_extents_t extents;
    cairo_text_extents(cr, string, &extents);
    return static_cast<CCoord>(extents.x_advance + 0.5);
}

void CCairoDrawContext::drawString(const char* string, const CRect& rect, const short opaque,
                                   const CHoriTxtAlign hAlign) {
    if (!string) return;
    if (opaque) drawRect(rect, kDrawFilled);
    if (!*string) return;
    const CCoord textWidth = getStringWidth(string);
    if (!beginPrimitive()) return;
    CRect r = toDevice(rect);
    cairo_rectangle(cr, r.left, r.top, r.width(), r.height());
    cairo_clip(cr);
    CCoord x = r.left;
    if (hAlign == kRightText)
        x = r.right - textWidth;
    else if (hAlign == kCenterText)
        x = r.left + r.width() / 2 - textWidth / 2;
    // Baseline rule that centres a line of text of the font's size.
    const CCoord baseline = r.bottom - (r.height() / 2 - getFontSize() / 2 + 1);
    selectFont();
    setSourceColor(getFontColor());
    cairo_move_to(cr, x, baseline);
    cairo_show_text(cr, string);
    endPrimitive();
}

void CCairoDrawContext::drawBitmap(CBitmap& bitmap, const CRect& dest, const CPoint& srcOffset,
                                   float alpha) {
    auto* image = static_cast<cairo_surface_t*>(bitmap.getHandle());
    if (!image || dest.isEmpty() || !beginPrimitive()) return;
    const CRect r = toDevice(dest);
    cairo_set_source_surface(cr, image, r.left - srcOffset.h, r.top - srcOffset.v);
    cairo_rectangle(cr, r.left, r.top, r.width(), r.height());
    cairo_clip(cr);
    cairo_paint_with_alpha(cr, alpha);
    endPrimitive();
}

} // namespace VSTGUI

#if defined(__SANITIZE_ADDRESS__)
// Fontconfig, which Cairo uses to find fonts, keeps a few allocations it
// never frees. They are not ours; without this, every sanitizer run of code
// that draws text would report them as leaks. Only compiled into sanitizer
// builds, so the plug-in itself exports nothing extra.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
