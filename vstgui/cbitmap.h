#pragma once

#include "cbaseobject.h"
#include "cgeometry.h"
#include "cresources.h"

#include <string>

namespace VSTGUI {

class CDrawContext;
class CFrame;

// An image loaded from the binary's embedded PNG resources. Resource number
// N is the file "bmpNNNNN.png"; a string names the file itself. A bitmap
// that could not be loaded exists with size 0 × 0 and draws nothing.
// Shared by reference count: release with forget(), never delete.
class CBitmap : public CBaseObject {
public:
    CBitmap(const CResourceDescription& desc);
    // An empty (transparent) image of the given size, for drawing into.
    CBitmap(CFrame& frame, CCoord width, CCoord height);
    ~CBitmap() override;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    // Copies the width × height of rect starting at offset in the image to
    // rect's top-left; no scaling. The offset picks a frame of a filmstrip.
    virtual void draw(CDrawContext* context, const CRect& rect,
                      const CPoint& offset = CPoint(0, 0));
    // PNG alpha is always honoured, so this is the same copy as draw().
    virtual void drawTransparent(CDrawContext* context, const CRect& rect,
                                 const CPoint& offset = CPoint(0, 0));
    virtual void drawAlphaBlend(CDrawContext* context, const CRect& rect,
                                const CPoint& offset = CPoint(0, 0), unsigned char alpha = 128);

    CCoord getWidth() const { return width; }
    CCoord getHeight() const { return height; }
    bool isLoaded() const { return image != nullptr; }
    // The Cairo image surface behind the bitmap, or null.
    void* getHandle() const { return image; }
    const CResourceDescription& getResourceDescription() const { return resourceDesc; }

    void setTransparentColor(const CColor& color) { transparentColor = color; }
    const CColor& getTransparentColor() const { return transparentColor; }
    void setNoAlpha(bool state) { noAlpha = state; }
    bool getNoAlpha() const { return noAlpha; }

    // Replaces the image with PNG data; false (and an empty bitmap) when the
    // data is not a readable PNG.
    bool loadFromPngData(const unsigned char* data, std::size_t size);

private:
    bool loadFromResource(const CResourceDescription& desc);
    void dispose();

    CResourceDescription resourceDesc;
    std::string resourceName;
    void* image = nullptr;
    CCoord width = 0;
    CCoord height = 0;
    CColor transparentColor = kTransparentCColor;
    bool noAlpha = true;
};

} // namespace VSTGUI
