#pragma once

// One plug-in instance from the built module with its editor opened into a
// parent window, the way a Linux host shows it: effEditGetRect, a parent of
// that size, effEditOpen with the parent's XID, then effEditIdle to pump.

#include "EditorPixels.h"
#include "PluginEditorHost.h"
#include "XTestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace editortest {

class PluginEditorSession {
public:
    // Parent window at (x, y) of the root window; the editor opens at once.
    PluginEditorSession(XClient& client, int x, int y);
    ~PluginEditorSession();
    PluginEditorSession(const PluginEditorSession&) = delete;
    PluginEditorSession& operator=(const PluginEditorSession&) = delete;

    HostedEditorPlugin& plugin() { return instance; }
    xcb_window_t parent() const { return parentWindow; }
    bool opened() const { return openAnswer; }
    // The editor's own window, the parent's only child; 0 if there is none.
    xcb_window_t window();
    WindowImage snapshot();

    void idle() { instance.idleEditor(); }
    // Idles the editor until done() holds; false if it never does.
    bool idleUntil(const std::function<bool()>& done);
    // Until the window is mapped and shows the background's header band.
    bool waitUntilPainted();

    // Until the handle glows where the plug-in's x and y put it; found tells
    // where it was seen last.
    ::testing::AssertionResult waitForHandleAtParameters(std::optional<Spot>& found);

    // Pointer input at window coordinates, through the X server.
    void movePointer(int x, int y);
    void click(int x, int y);

    // For a test that tears the host's side down early.
    void forgetParent() { parentWindow = 0; }

private:
    XClient& client;
    int originX;
    int originY;
    HostedEditorPlugin instance;
    EditorSize size;
    xcb_window_t parentWindow;
    bool openAnswer;
};

// The background image's header band (above every control) as the editor
// must paint it.
bool showsBackgroundHeader(const WindowImage& image);

} // namespace editortest
