#include "PluginEditorSession.h"

#include <cmath>

namespace editortest {

namespace {

// Rows of the background above the first control (the displays start at 75).
constexpr int kHeaderRows = 70;

const WindowImage& background() {
    static const WindowImage image = readPng(ZEL_EDITOR_BACKGROUND);
    return image;
}

} // namespace

bool showsBackgroundHeader(const WindowImage& image) {
    const WindowImage& expected = background();
    if (expected.pixels.empty() || image.width != expected.width || image.height != expected.height)
        return false;
    return differingPixels(image, expected, 0, 0, image.width, kHeaderRows) == 0;
}

PluginEditorSession::PluginEditorSession(XClient& client, int x, int y)
    : client(client), originX(x), originY(y), size(instance.editorSize()),
      parentWindow(client.createParent(x, y, size.width, size.height)),
      openAnswer(instance.openEditor(parentWindow)) {}

PluginEditorSession::~PluginEditorSession() {
    instance.closeEditor();
    if (parentWindow != 0) client.destroy(parentWindow);
}

xcb_window_t PluginEditorSession::window() {
    const std::vector<xcb_window_t> list = client.children(parentWindow);
    return list.size() == 1 ? list[0] : 0;
}

WindowImage PluginEditorSession::snapshot() {
    const xcb_window_t editorWindow = window();
    return editorWindow ? client.image(editorWindow, size.width, size.height) : WindowImage{};
}

bool PluginEditorSession::idleUntil(const std::function<bool()>& done) {
    return pumpUntil([this] { idle(); }, done);
}

bool PluginEditorSession::waitUntilPainted() {
    return idleUntil([this] {
        const xcb_window_t editorWindow = window();
        return editorWindow && client.isViewable(editorWindow) && showsBackgroundHeader(snapshot());
    });
}

::testing::AssertionResult
PluginEditorSession::waitForHandleAtParameters(std::optional<Spot>& found) {
    enum { kX = 2, kY = 3 };
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

void PluginEditorSession::movePointer(int x, int y) {
    client.movePointer(originX + x, originY + y);
}

void PluginEditorSession::click(int x, int y) {
    movePointer(x, y);
    client.pressButton(1);
    client.releaseButton(1);
}

} // namespace editortest
