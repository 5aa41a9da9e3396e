#pragma once

#include <stdexcept>
#include <string>
#include <xcb/xcb.h>

// No X display to show a window on.
struct DisplayError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The host's side of a plug-in editor: a fixed-size top-level window with a
// title, on an X connection of its own, into which the plug-in opens its
// editor as a child. It draws nothing itself.
class EditorWindow {
public:
    // Connects to $DISPLAY; throws DisplayError when there is none.
    EditorWindow();
    ~EditorWindow();
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    // Creates and maps the window; returns once the server knows it, so that
    // the plug-in's own connection can find it at once.
    void show(int width, int height, const std::string& title);
    // The X window id that effEditOpen takes in ptr.
    void* parentHandle() const;

    // Handles pending events without waiting. False once the user closed the
    // window (WM_DELETE_WINDOW), it was destroyed, or the server went away.
    bool pumpEvents();

private:
    xcb_atom_t atom(const char* name);
    void setProperty(xcb_atom_t property, xcb_atom_t type, int format, std::uint32_t count,
                     const void* data);
    void setFixedSize(int width, int height);

    xcb_connection_t* connection;
    xcb_screen_t* screen = nullptr;
    xcb_window_t window = 0;
    xcb_atom_t protocolsAtom = XCB_ATOM_NONE;
    xcb_atom_t deleteWindowAtom = XCB_ATOM_NONE;
    bool open = false;
};
