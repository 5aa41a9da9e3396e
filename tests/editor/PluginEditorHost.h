#pragma once

// The built plug-in module in the shared host, its editor opened into a
// parent window the way a Linux host shows it: effEditGetRect, a parent of
// that size, effEditOpen with the parent's XID, then effEditIdle to pump. The
// editor's state is read back from its pixels, as a user sees it.

#include "EditorLayout.h"
#include "VstPlugin.h"
#include "XTestSupport.h"
#include "ZelAmbiEncParams.h"

#include <gtest/gtest.h>

namespace editortest {

class PluginEditorSession {
public:
    // Parent window at (x, y) of the root window; the editor opens at once.
    PluginEditorSession(XClient& client, int x, int y);
    ~PluginEditorSession();
    PluginEditorSession(const PluginEditorSession&) = delete;
    PluginEditorSession& operator=(const PluginEditorSession&) = delete;

    VstPlugin& plugin() { return loaded.plugin(); }
    // What the plug-in reported: automation and edit gestures.
    HostCallback& host() { return loaded.host(); }
    xcb_window_t parent() const { return parentWindow; }
    // effEditOpen into the parent, made anew if the host destroyed it; its answer.
    bool open();
    void close();
    void idle() { plugin().idleEditor(); }
    // Idles the editor until done() holds; false if it never does.
    bool idleUntil(const std::function<bool()>& done);
    // The editor's own window, the parent's only child, as it shows now.
    WindowImage snapshot();
    // Idles until the painted handle stands where the plug-in's x and y put it.
    ::testing::AssertionResult showsHandleAtParameters();

    // Pointer input at window coordinates, through the X server.
    void movePointer(int x, int y) { client.movePointer(originX + x, originY + y); }
    // For a test that destroys the parent itself.
    void destroyParent();

private:
    XClient& client;
    int originX;
    int originY;
    LoadedPlugin loaded;
    xcb_window_t parentWindow = 0;
    bool editorOpen = false;
};

} // namespace editortest
