#pragma once

#include "cviewcontainer.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

namespace VSTGUI {

class CFrame;

// What the frame needs from the editor that owns it.
class VSTGUIEditorInterface {
public:
    virtual ~VSTGUIEditorInterface() = default;
    // Lets a control keep the host and the screen alive during long work
    // inside a mouse handler; rate-limited by the editor.
    virtual void doIdleStuff() {}
    virtual long getKnobMode() const { return kCircularMode; }
    // index is the tag of the control being edited.
    virtual void beginEdit(long /*index*/) {}
    virtual void endEdit(long /*index*/) {}
    virtual CFrame* getFrame() const { return frame; }

protected:
    CFrame* frame = nullptr;
};

// The window system's side of a frame: a child window of the host's window
// that delivers mouse events to the frame and shows what the frame draws.
class CFrameWindow {
public:
    virtual ~CFrameWindow() = default;
    // Delivers every pending window event; never waits for new ones.
    virtual void pumpEvents() = 0;
    // Redraws and shows what the frame reports as invalid.
    virtual void paint() = 0;
    // The window system's handle of the window (an X11 window id).
    virtual std::uintptr_t nativeHandle() const = 0;
};

// Makes the window for a frame inside the host's window (an X11 window id),
// or null when there is no usable display or parent.
std::unique_ptr<CFrameWindow> createFrameWindow(CFrame& frame, void* systemWindow);

// The root of a plug-in editor's views. With a system window it also owns the
// platform window; without one it is a plain view tree (used headless).
//
// Threads: the thread that constructs the frame is its GUI thread; idle(),
// mouse events and drawing run there. Other threads may set values and mark
// views dirty; an invalidation from another thread only flags a full repaint.
class CFrame : public CViewContainer {
public:
    CFrame(const CRect& size, void* systemWindow, VSTGUIEditorInterface* editor);
    ~CFrame() override;

    // Pumps window events, turns dirty views into repaint requests and paints.
    virtual void idle();
    virtual void doIdleStuff();
    static unsigned long getTicks();
    long getKnobMode() const;
    VSTGUIEditorInterface* getEditor() const { return pEditor; }
    void* getSystemWindow() const { return pSystemWindow; }
    bool isOpen() const { return bOpenFlag; }
    // False for a frame without a platform window (none asked for, or the
    // parent it was asked for could not take one).
    bool hasWindow() const { return window != nullptr; }
    // The platform window's handle (an X11 window id), 0 without one: for a
    // host that embeds the window itself.
    std::uintptr_t getNativeWindow() const { return window ? window->nativeHandle() : 0; }

    virtual void beginEdit(long index);
    virtual void endEdit(long index);

    virtual bool setFocusView(CView* view);
    CView* getFocusView() const { return pFocusView; }
    CView* getMouseOverView() const { return pMouseOverView; }

    // Points in frame coordinates.
    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseExited(CPoint& where, const long& buttons) override;
    bool onWheel(const CPoint& where, const float& distance, const long& buttons) override;

    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    void invalid() override;
    // Frame coordinates; collects the area for the next paint.
    void invalidRect(const CRect& rect) override;
    // Marks every direct child that overlaps rect dirty, to be drawn at idle.
    void invalidate(const CRect& rect);
    // Hands the area to repaint to the window and forgets it; false if none.
    bool takeInvalidRect(CRect& rect);

    CPoint& localToFrame(CPoint& point) const override { return point; }
    CPoint& frameToLocal(CPoint& point) const override { return point; }

    // Drops the frame's pointers into a subtree that leaves the view tree.
    void viewWillBeRemoved(CView* view);

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CFrame") == 0 || CViewContainer::isTypeOf(s);
    }
    const char* getClassName() const override { return "CFrame"; }

protected:
    VSTGUIEditorInterface* pEditor;
    void* pSystemWindow;
    CView* pFocusView = nullptr;
    CView* pMouseOverView = nullptr;
    bool bOpenFlag = true;

private:
    bool onGuiThread() const { return std::this_thread::get_id() == guiThread; }
    void setMouseOverView(CView* view);
    static bool contains(CView* root, CView* view);

    std::unique_ptr<CFrameWindow> window;
    std::thread::id guiThread;
    CRect invalidArea;
    std::atomic<bool> repaintAllPending{false};
    bool inFocusChange = false;
    bool inEventPump = false;
};

} // namespace VSTGUI
