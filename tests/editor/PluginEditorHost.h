#pragma once

// The built plug-in module in the shared host, switched on as a DAW has it,
// with what it reports back (automation and edit gestures). A session opens the editor into a
// parent window the way a Linux host shows it: effEditGetRect, a parent of that size, effEditOpen
// with the parent's XID, then effEditIdle to pump; the editor's state is read back from its pixels,
// as a user sees it.

#include "EditorLayout.h"
#include "VstPlugin.h"
#include "XTestSupport.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace editortest {

enum { kAzim = 0, kElev = 1, kX = 2, kY = 3, kZ = 4, kDist = 5, kNFC = 6 };

// The editor's layout in window pixels, where the user finds the controls.
namespace layout {
constexpr int kWidth = geometry::kWindowWidth;
constexpr int kHeight = geometry::kWindowHeight;
constexpr int kPadLeft = geometry::kPad.left;
constexpr int kPadTop = geometry::kPad.top;
constexpr int kPadSide = geometry::kPad.right - geometry::kPad.left;
constexpr int kHandleSide = geometry::kHandleSize;
constexpr int kSwitchLeft = geometry::kSwitch.left;
constexpr int kSwitchTop = geometry::kSwitch.top;
constexpr int kSwitchRight = geometry::kSwitch.right;
constexpr int kSwitchBottom = geometry::kSwitch.bottom;
constexpr int kSwitchPositions = geometry::kSwitchFrames;
constexpr int kNfcDisplayLeft = geometry::kSwitchDisplay.left;
constexpr int kNfcDisplayTop = geometry::kSwitchDisplay.top;
constexpr int kNfcDisplayRight = geometry::kSwitchDisplay.right;
constexpr int kNfcDisplayBottom = geometry::kSwitchDisplay.bottom;
} // namespace layout

class HostedEditorPlugin {
public:
    // An instance of the built module, opened and switched on; switched off
    // and closed at the end.
    HostedEditorPlugin();
    ~HostedEditorPlugin();
    HostedEditorPlugin(const HostedEditorPlugin&) = delete;
    HostedEditorPlugin& operator=(const HostedEditorPlugin&) = delete;

    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0f) {
        return plugin.dispatch(opcode, index, value, ptr, opt);
    }
    void setParameter(VstInt32 index, float value) { plugin.setParameter(index, value); }
    float getParameter(VstInt32 index) { return plugin.getParameter(index); }
    std::string display(VstInt32 index) { return plugin.parameterDisplay(index); }
    std::pair<int, int> editorSize() { return plugin.editorSize(); }

    std::vector<EditReport> reports() const { return loaded.host().edits(); }
    std::vector<EditReport> reportsOf(VstInt32 opcode) const {
        return loaded.host().editsOf(opcode);
    }
    void clearReports() { loaded.host().clearRecords(); }

private:
    LoadedPlugin loaded;
    VstPlugin& plugin;
};

struct Spot {
    double x;
    double y;
};

class PluginEditorSession {
public:
    // Parent window at (x, y) of the root window; the editor opens at once.
    PluginEditorSession(XClient& client, int x, int y);
    ~PluginEditorSession();
    PluginEditorSession(const PluginEditorSession&) = delete;
    PluginEditorSession& operator=(const PluginEditorSession&) = delete;

    HostedEditorPlugin& plugin() { return instance; }
    xcb_window_t parent() const { return parentWindow; }
    // effEditOpen into the parent, made anew if the host destroyed it; its answer.
    bool open();
    bool opened() const { return editorOpen; }
    void close();
    void idle() { instance.dispatch(effEditIdle); }
    // Idles the editor until done() holds; false if it never does.
    bool idleUntil(const std::function<bool()>& done);

    // The editor's own window, the parent's only child; 0 if there is none.
    xcb_window_t window() { return client.onlyChild(parentWindow); }
    WindowImage snapshot();
    // Until the window is mapped and shows the background's header band.
    bool waitUntilPainted();
    // Until the handle glows where the plug-in's x and y put it; found tells
    // where it was seen last.
    ::testing::AssertionResult waitForHandleAtParameters(std::optional<Spot>& found);

    // Pointer input at window coordinates, through the X server.
    void movePointer(int x, int y) { client.movePointer(originX + x, originY + y); }
    void click(int x, int y);
    // For a test that destroys the parent itself.
    void destroyParent();

private:
    XClient& client;
    int originX;
    int originY;
    HostedEditorPlugin instance;
    xcb_window_t parentWindow = 0;
    bool editorOpen = false;
};

// The centre of the handle's blue glow inside the pad, or nothing if the pad
// shows none.
std::optional<Spot> findHandleGlow(const WindowImage& image);
// Where the handle's centre should stand for the source coordinates x and y
// (normalised parameter values): x grows towards the top, y towards the left.
Spot expectedHandleCentre(float xParameter, float yParameter);
// How many pixels of a rectangle differ between two images of one window.
int differingPixels(const WindowImage& a, const WindowImage& b, int left, int top, int right,
                    int bottom);
// An opaque PNG as 0xRRGGBB pixels; empty if unreadable.
WindowImage readPng(const std::string& path);

} // namespace editortest
