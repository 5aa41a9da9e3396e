#include "PluginEditorHost.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace editortest {

namespace {

using namespace geometry;

struct Spot {
    double x;
    double y;
};

// The handle glows in the displays' blue (28, 174, 255) over the dark field;
// the field, its grid and rings stay grey-blue, far less saturated.
bool isGlow(std::uint32_t rgb) {
    const int red = (rgb >> 16) & 0xff, green = (rgb >> 8) & 0xff, blue = rgb & 0xff;
    return blue - red > 120 && green - red > 70;
}

// The centre of the handle's glow inside the pad, or nothing if the pad shows
// none: the largest four-connected patch, as the field has a few stray
// glowing pixels.
std::optional<Spot> findHandleGlow(const WindowImage& image) {
    const int width = std::min(kPad.right, image.width) - kPad.left;
    const int height = std::min(kPad.bottom, image.height) - kPad.top;
    std::vector<bool> seen(static_cast<std::size_t>(std::max(width * height, 0)), false);
    auto unseenGlow = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= width || y >= height || seen[y * width + x]) return false;
        seen[y * width + x] = true;
        return isGlow(image.at(kPad.left + x, kPad.top + y));
    };
    std::optional<Spot> best;
    int bestCount = 0;
    for (int start = 0; start < width * height; start++) {
        std::vector<std::pair<int, int>> stack;
        if (unseenGlow(start % width, start / width))
            stack.emplace_back(start % width, start / width);
        double sumX = 0, sumY = 0;
        int count = 0;
        while (!stack.empty()) {
            const auto [x, y] = stack.back();
            stack.pop_back();
            sumX += kPad.left + x;
            sumY += kPad.top + y;
            count++;
            for (const auto& [nx, ny] : {std::pair{x - 1, y}, {x + 1, y}, {x, y - 1}, {x, y + 1}})
                if (unseenGlow(nx, ny)) stack.emplace_back(nx, ny);
        }
        if (count > bestCount) {
            bestCount = count;
            best = Spot{sumX / count, sumY / count};
        }
    }
    return best;
}

} // namespace

PluginEditorSession::PluginEditorSession(XClient& client, int x, int y)
    : client(client), originX(x), originY(y), loaded(ZEL_PLUGIN_PATH) {
    plugin().open();
    plugin().setSampleRate(48000.0f);
    plugin().setMains(true);
    open();
}

PluginEditorSession::~PluginEditorSession() {
    close();
    plugin().setMains(false);
    if (parentWindow != 0) client.destroy(parentWindow);
}

bool PluginEditorSession::open() {
    const auto [width, height] = plugin().editorSize();
    if (parentWindow == 0) parentWindow = client.createParent(originX, originY, width, height);
    // The X window id travels in ptr, as Linux hosts pass it.
    editorOpen =
        plugin().openEditor(reinterpret_cast<void*>(static_cast<std::uintptr_t>(parentWindow)));
    return editorOpen;
}

void PluginEditorSession::close() {
    if (editorOpen) plugin().closeEditor();
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
    const xcb_window_t editorWindow = client.onlyChild(parentWindow);
    return editorWindow ? client.image(editorWindow, kWindowWidth, kWindowHeight) : WindowImage{};
}

::testing::AssertionResult PluginEditorSession::showsHandleAtParameters() {
    // x grows towards the top of the pad, y towards the left.
    const double travel = kPad.width() - kHandleSize;
    const Spot expected{kPad.left + kPadMargin + (1.0 - plugin().getParameter(kY)) * travel,
                        kPad.top + kPadMargin + (1.0 - plugin().getParameter(kX)) * travel};
    std::optional<Spot> found;
    if (idleUntil([&] {
            found = findHandleGlow(snapshot());
            return found && std::hypot(found->x - expected.x, found->y - expected.y) < 2.0;
        }))
        return ::testing::AssertionSuccess();
    ::testing::AssertionResult failure = ::testing::AssertionFailure();
    failure << "handle expected at " << expected.x << ", " << expected.y;
    if (found) failure << "; glows at " << found->x << ", " << found->y;
    return failure;
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
