#pragma once

#include "../ccairodrawcontext.h"
#include "../cframe.h"
#include "xeventtranslator.h"

#include <memory>
#include <vector>
#include <xcb/xcb.h>

namespace VSTGUI {

// A frame's window on X11: a child of the host's window on a connection of
// its own, painted from a Cairo back buffer (so a repaint never shows a
// half-drawn state). Every call happens on the frame's GUI thread.
//
// X reports failures per request and asynchronously; the window notices
// them while pumping events. Once the window is gone (the host destroyed its
// parent, or the server went away) it stops drawing but stays harmless.
class XcbFrameWindow : public CFrameWindow {
public:
    // Null when there is no display, the parent does not exist, or the
    // screen's pixel format is not a 32-bit-per-pixel true-colour one.
    static std::unique_ptr<XcbFrameWindow> create(CFrame& frame, xcb_window_t parent);
    ~XcbFrameWindow() override;
    XcbFrameWindow(const XcbFrameWindow&) = delete;
    XcbFrameWindow& operator=(const XcbFrameWindow&) = delete;

    void pumpEvents() override;
    void paint() override;
    std::uintptr_t nativeHandle() const override { return window; }

    xcb_window_t getWindow() const { return window; }
    bool isAlive() const { return alive; }

private:
    XcbFrameWindow(CFrame& frame, xcb_connection_t* connection);
    bool init(xcb_window_t parent);
    void handleEvent(const xcb_generic_event_t* event);
    void dispatch(const MouseAction& action);
    void present(const CRect& area);

    CFrame& frame;
    xcb_connection_t* connection;
    xcb_window_t window = 0;
    xcb_gcontext_t gc = 0;
    std::uint8_t depth = 0;
    bool swapBytes = false;
    bool alive = false;
    std::size_t maxRequestBytes = 0;
    CCoord width = 0;
    CCoord height = 0;
    cairo_surface_t* backBuffer = nullptr;
    std::unique_ptr<CCairoDrawContext> context;
    std::vector<std::uint8_t> staging;
    XEventTranslator translator;
};

} // namespace VSTGUI
