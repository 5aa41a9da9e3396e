#include "EditorPixels.h"

#include <cairo.h>
#include <cmath>
#include <cstring>
#include <vector>

namespace editortest {

namespace {

int red(std::uint32_t rgb) {
    return static_cast<int>((rgb >> 16) & 0xff);
}
int green(std::uint32_t rgb) {
    return static_cast<int>((rgb >> 8) & 0xff);
}
int blue(std::uint32_t rgb) {
    return static_cast<int>(rgb & 0xff);
}

// The handle glows in the displays' blue (28, 174, 255) over the dark field;
// the field, its grid and rings stay grey-blue, far less saturated.
bool isGlow(std::uint32_t rgb) {
    return blue(rgb) - red(rgb) > 120 && green(rgb) - red(rgb) > 70;
}

} // namespace

std::optional<Spot> findHandleGlow(const WindowImage& image) {
    using namespace layout;
    const int right = std::min(kPadLeft + kPadSide, image.width);
    const int bottom = std::min(kPadTop + kPadSide, image.height);
    if (right <= kPadLeft || bottom <= kPadTop) return std::nullopt;
    const int width = right - kPadLeft;
    const int height = bottom - kPadTop;
    std::vector<int> label(static_cast<std::size_t>(width * height), 0);
    std::optional<Spot> best;
    int next = 0;
    std::vector<int> stack;
    for (int start = 0; start < width * height; start++) {
        if (label[start] != 0 ||
            !isGlow(image.at(kPadLeft + start % width, kPadTop + start / width)))
            continue;
        // Flood fill one patch, four-connected.
        label[start] = ++next;
        stack.assign(1, start);
        double sumX = 0, sumY = 0;
        int count = 0;
        while (!stack.empty()) {
            const int at = stack.back();
            stack.pop_back();
            const int x = at % width;
            const int y = at / width;
            sumX += kPadLeft + x;
            sumY += kPadTop + y;
            count++;
            const int neighbours[4][2] = {{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}};
            for (const auto& n : neighbours) {
                if (n[0] < 0 || n[1] < 0 || n[0] >= width || n[1] >= height) continue;
                const int index = n[1] * width + n[0];
                if (label[index] != 0 || !isGlow(image.at(kPadLeft + n[0], kPadTop + n[1])))
                    continue;
                label[index] = next;
                stack.push_back(index);
            }
        }
        if (!best || count > best->pixels) best = Spot{sumX / count, sumY / count, count};
    }
    return best;
}

Spot expectedHandleCentre(float xParameter, float yParameter) {
    using namespace layout;
    const auto travel = static_cast<float>(kPadSide - kHandleSide);
    const auto padX = static_cast<float>(1.0 - yParameter);
    const auto padY = static_cast<float>(1.0 - xParameter);
    const double left = std::trunc(static_cast<double>(padX * travel + kPadLeft) + 0.5);
    const double top = std::trunc(static_cast<double>(padY * travel + kPadTop) + 0.5);
    // Pixel indices left .. left + 19 have their centroid half a pixel short
    // of the image's centre.
    const double half = (kHandleSide - 1) / 2.0;
    return {left + half, top + half, kHandleSide * kHandleSide};
}

int differingPixels(const WindowImage& a, const WindowImage& b, int left, int top, int right,
                    int bottom) {
    int count = 0;
    for (int y = top; y < bottom; y++)
        for (int x = left; x < right; x++)
            if (x < a.width && y < a.height && x < b.width && y < b.height &&
                a.at(x, y) != b.at(x, y))
                count++;
    return count;
}

bool writePng(const WindowImage& image, const std::string& path) {
    if (image.pixels.empty()) return false;
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, image.width, image.height);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) return false;
    cairo_surface_flush(surface);
    unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    for (int y = 0; y < image.height; y++)
        std::memcpy(
            data + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride),
            &image.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width)],
            static_cast<std::size_t>(image.width) * 4);
    cairo_surface_mark_dirty(surface);
    const bool written = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return written;
}

WindowImage readPng(const std::string& path) {
    WindowImage image;
    cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
        cairo_surface_flush(surface);
        image.width = cairo_image_surface_get_width(surface);
        image.height = cairo_image_surface_get_height(surface);
        const int stride = cairo_image_surface_get_stride(surface);
        const unsigned char* data = cairo_image_surface_get_data(surface);
        image.pixels.resize(static_cast<std::size_t>(image.width) *
                            static_cast<std::size_t>(image.height));
        for (int y = 0; y < image.height; y++)
            std::memcpy(
                &image.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width)],
                data + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride),
                static_cast<std::size_t>(image.width) * 4);
        for (std::uint32_t& pixel : image.pixels) pixel &= 0xffffff;
    }
    cairo_surface_destroy(surface);
    return image;
}

} // namespace editortest
