#pragma once

#include "Palette.h"

#include <cairo.h>

#include <string>

// An ARGB image with its cairo context, plus the few drawing helpers that all
// the editor images share. Owns both cairo objects.
class Canvas {
public:
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    cairo_t* cr() const { return context; }
    cairo_surface_t* surface() const { return image; }
    int width() const { return cairo_image_surface_get_width(image); }
    int height() const { return cairo_image_surface_get_height(image); }

    void setColour(const Colour& c) const;
    void roundedRect(double x, double y, double w, double h, double radius) const;
    // Text with its centre, left or right end at x and its baseline at y.
    enum class Align { Left, Centre, Right };
    void text(const std::string& s, double x, double y, double size, const Colour& c,
              Align align = Align::Centre, bool bold = false) const;

    // Draws another canvas with its top-left corner at (x, y), showing the
    // source from (sourceX, sourceY) on, clipped to w x h.
    void paste(const Canvas& source, double x, double y, double w, double h, double sourceX = 0,
               double sourceY = 0) const;

    // False if cairo reported an error while drawing or writing.
    bool writePng(const std::string& path) const;

private:
    cairo_surface_t* image;
    cairo_t* context;
};
