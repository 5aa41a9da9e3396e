#include "cbitmap.h"

#include "cdrawcontext.h"

#include <algorithm>
#include <cairo.h>
#include <cstring>

namespace VSTGUI {

namespace {

struct PngReader {
    const unsigned char* data;
    std::size_t size;
    std::size_t position;
};

cairo_status_t readPng(void* closure, unsigned char* out, unsigned int length) {
    auto* reader = static_cast<PngReader*>(closure);
    if (reader->size - reader->position < length) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(out, reader->data + reader->position, length);
    reader->position += length;
    return CAIRO_STATUS_SUCCESS;
}

cairo_surface_t* asSurface(void* image) {
    return static_cast<cairo_surface_t*>(image);
}

} // namespace

CBitmap::CBitmap(const CResourceDescription& desc) : resourceDesc(desc) {
    loadFromResource(desc);
}

CBitmap::CBitmap(CFrame& /*frame*/, CCoord w, CCoord h) {
    if (w <= 0 || h <= 0 || w > 32767 || h > 32767) return;
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(w), static_cast<int>(h));
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return;
    }
    image = surface;
    width = w;
    height = h;
    noAlpha = false;
}

CBitmap::~CBitmap() {
    dispose();
}

void CBitmap::dispose() {
    if (image) cairo_surface_destroy(asSurface(image));
    image = nullptr;
    width = 0;
    height = 0;
}

bool CBitmap::loadFromResource(const CResourceDescription& desc) {
    dispose();
    char name[32];
    const char* fileName = nullptr;
    if (desc.type == CResourceDescription::kIntegerType) {
        ResourceRegistry::fileNameForId(desc.u.id, name, sizeof name);
        fileName = name;
    } else if (desc.type == CResourceDescription::kStringType && desc.u.name) {
        fileName = desc.u.name;
    }
    if (!fileName) return false;
    resourceName = fileName;
    // Our description then names our own copy, whatever the caller's string.
    if (desc.type == CResourceDescription::kStringType) resourceDesc.u.name = resourceName.c_str();
    const ResourceRegistry::Entry entry = ResourceRegistry::find(fileName);
    return entry.data && loadFromPngData(entry.data, entry.size);
}

bool CBitmap::loadFromPngData(const unsigned char* data, std::size_t size) {
    dispose();
    if (!data) return false;
    PngReader reader{data, size, 0};
    cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(readPng, &reader);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return false;
    }
    image = surface;
    width = cairo_image_surface_get_width(surface);
    height = cairo_image_surface_get_height(surface);
    noAlpha = cairo_image_surface_get_format(surface) != CAIRO_FORMAT_ARGB32;
    return true;
}

void CBitmap::draw(CDrawContext* context, const CRect& rect, const CPoint& offset) {
    if (context) context->drawBitmap(*this, rect, offset, 1.0f);
}

void CBitmap::drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset) {
    if (context) context->drawBitmap(*this, rect, offset, 1.0f);
}

void CBitmap::drawAlphaBlend(CDrawContext* context, const CRect& rect, const CPoint& offset,
                             unsigned char alpha) {
    if (context) context->drawBitmap(*this, rect, offset, alpha / 255.0f);
}

} // namespace VSTGUI
