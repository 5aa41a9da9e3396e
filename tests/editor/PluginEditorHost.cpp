#include "PluginEditorHost.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace editortest {

namespace {

// Rows of the background above the first control (the displays start at 75).
constexpr int kHeaderRows = 70;

const WindowImage& background() {
    static const WindowImage image = readPng(ZEL_EDITOR_BACKGROUND);
    return image;
}

bool showsBackgroundHeader(const WindowImage& image) {
    const WindowImage& expected = background();
    return !expected.pixels.empty() && image.width == expected.width &&
           image.height == expected.height &&
           differingPixels(image, expected, 0, 0, image.width, kHeaderRows) == 0;
}

// The handle glows in the displays' blue (28, 174, 255) over the dark field;
// the field, its grid and rings stay grey-blue, far less saturated.
bool isGlow(std::uint32_t rgb) {
    const int red = (rgb >> 16) & 0xff, green = (rgb >> 8) & 0xff, blue = rgb & 0xff;
    return blue - red > 120 && green - red > 70;
}

// Copies rows between buffers of different strides.
void copyRows(unsigned char* to, int toStride, const unsigned char* from, int fromStride,
              int rowBytes, int rows) {
    for (int y = 0; y < rows; y++)
        std::memcpy(to + static_cast<std::ptrdiff_t>(y) * toStride,
                    from + static_cast<std::ptrdiff_t>(y) * fromStride,
                    static_cast<std::size_t>(rowBytes));
}

} // namespace

HostedEditorPlugin::HostedEditorPlugin() : loaded(ZEL_PLUGIN_PATH), plugin(loaded.plugin()) {
    plugin.open();
    plugin.setSampleRate(48000.0f);
    plugin.setBlockSize(512);
    plugin.setMains(true);
}

HostedEditorPlugin::~HostedEditorPlugin() {
    plugin.setMains(false);
}

PluginEditorSession::PluginEditorSession(XClient& client, int x, int y)
    : client(client), originX(x), originY(y) {
    open();
}

PluginEditorSession::~PluginEditorSession() {
    close();
    if (parentWindow != 0) client.destroy(parentWindow);
}

bool PluginEditorSession::open() {
    const auto [width, height] = instance.editorSize();
    if (parentWindow == 0) parentWindow = client.createParent(originX, originY, width, height);
    // The X window id travels in ptr, as Linux hosts pass it.
    void* parent = reinterpret_cast<void*>(static_cast<std::uintptr_t>(parentWindow));
    editorOpen = instance.dispatch(effEditOpen, 0, 0, parent) != 0;
    return editorOpen;
}

void PluginEditorSession::close() {
    if (editorOpen) instance.dispatch(effEditClose);
    editorOpen = false;
}

void PluginEditorSession::destroyParent() {
    client.destroy(parentWindow);
    parentWindow = 0;
}

bool PluginEditorSession::idleUntil(const std::function<bool()>& done) {
    return pumpUntil([this] { idle(); }, done);
}

WindowImage PluginEditorSession::snapshot() {
    const xcb_window_t editorWindow = window();
    const auto [width, height] = instance.editorSize();
    return editorWindow ? client.image(editorWindow, width, height) : WindowImage{};
}

bool PluginEditorSession::waitUntilPainted() {
    return idleUntil([this] {
        const xcb_window_t editorWindow = window();
        return editorWindow && client.isViewable(editorWindow) && showsBackgroundHeader(snapshot());
    });
}

::testing::AssertionResult
PluginEditorSession::waitForHandleAtParameters(std::optional<Spot>& found) {
    const Spot expected =
        expectedHandleCentre(instance.getParameter(kX), instance.getParameter(kY));
    if (idleUntil([&] {
            found = findHandleGlow(snapshot());
            return found && std::hypot(found->x - expected.x, found->y - expected.y) < 1.5;
        }))
        return ::testing::AssertionSuccess();
    ::testing::AssertionResult failure = ::testing::AssertionFailure();
    failure << "handle expected at " << expected.x << ", " << expected.y;
    if (found) failure << "; glows at " << found->x << ", " << found->y;
    return failure;
}

void PluginEditorSession::click(int x, int y) {
    movePointer(x, y);
    client.pressButton(1);
    client.releaseButton(1);
}

std::optional<Spot> findHandleGlow(const WindowImage& image) {
    using namespace layout;
    const int width = std::min(kPadLeft + kPadSide, image.width) - kPadLeft;
    const int height = std::min(kPadTop + kPadSide, image.height) - kPadTop;
    if (width <= 0 || height <= 0) return std::nullopt;
    auto glows = [&](int x, int y) { return isGlow(image.at(kPadLeft + x, kPadTop + y)); };
    // The largest four-connected patch: the field has a few stray glowing pixels.
    std::vector<bool> seen(static_cast<std::size_t>(width * height), false);
    std::optional<Spot> best;
    int bestCount = 0;
    for (int start = 0; start < width * height; start++) {
        if (seen[start] || !glows(start % width, start / width)) continue;
        seen[start] = true;
        std::vector<int> stack{start};
        double sumX = 0, sumY = 0;
        int count = 0;
        while (!stack.empty()) {
            const int x = stack.back() % width, y = stack.back() / width;
            stack.pop_back();
            sumX += kPadLeft + x;
            sumY += kPadTop + y;
            count++;
            for (const auto& [nx, ny] : {std::pair{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}}) {
                if (nx < 0 || ny < 0 || nx >= width || ny >= height) continue;
                const int index = ny * width + nx;
                if (seen[index] || !glows(nx, ny)) continue;
                seen[index] = true;
                stack.push_back(index);
            }
        }
        if (count > bestCount) {
            bestCount = count;
            best = Spot{sumX / count, sumY / count};
        }
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
    return {left + half, top + half};
}

int differingPixels(const WindowImage& a, const WindowImage& b, int left, int top, int right,
                    int bottom) {
    int count = 0;
    for (int y = top; y < std::min({bottom, a.height, b.height}); y++)
        for (int x = left; x < std::min({right, a.width, b.width}); x++)
            if (a.at(x, y) != b.at(x, y)) count++;
    return count;
}

WindowImage readPng(const std::string& path) {
    WindowImage image;
    cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
    if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS) {
        cairo_surface_flush(surface);
        image.width = cairo_image_surface_get_width(surface);
        image.height = cairo_image_surface_get_height(surface);
        image.pixels.resize(static_cast<std::size_t>(image.width) *
                            static_cast<std::size_t>(image.height));
        copyRows(reinterpret_cast<unsigned char*>(image.pixels.data()), image.width * 4,
                 cairo_image_surface_get_data(surface), cairo_image_surface_get_stride(surface),
                 image.width * 4, image.height);
        for (std::uint32_t& pixel : image.pixels) pixel &= 0xffffff;
    }
    cairo_surface_destroy(surface);
    return image;
}

} // namespace editortest

#if defined(__SANITIZE_ADDRESS__)
// Fontconfig, which Cairo uses for the editor's display texts, keeps a few
// allocations it never frees. LeakSanitizer asks the executable, not the
// module loaded later, which leaks to forgive; these are not ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
