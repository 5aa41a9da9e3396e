#pragma once

#include "cbaseobject.h"
#include "cgeometry.h"

namespace VSTGUI {

class CBitmap;
class CDrawContext;
class CFrame;
class VSTGUIEditorInterface;

// Mouse buttons and modifier keys, as a bit set passed with every mouse event.
// Bit 0 is unused. kControl is the primary modifier (the Ctrl key here).
enum CButton {
    kLButton = 1 << 1,
    kMButton = 1 << 2,
    kRButton = 1 << 3,
    kShift = 1 << 4,
    kControl = 1 << 5,
    kAlt = 1 << 6,
    kApple = 1 << 7,
    kButton4 = 1 << 8,
    kButton5 = 1 << 9,
    kDoubleClick = 1 << 10
};

enum CMouseEventResult {
    kMouseEventNotImplemented = 0,
    kMouseEventHandled,
    kMouseEventNotHandled,
    kMouseDownEventHandledButDontNeedMovedOrUpEvents
};

enum CKnobMode { kCircularMode = 0, kRelativCircularMode, kLinearMode };

// Messages that the frame sends to a view's ancestors when focus moves.
extern const char* kMsgNewFocusView;
extern const char* kMsgOldFocusView;

// Something drawn in a rectangle of its parent and able to receive the mouse.
// `size` is in the parent's coordinates; mouse points arrive in the same space.
class CView : public CBaseObject {
public:
    explicit CView(const CRect& size);
    CView(const CView& other);
    ~CView() override;
    CView& operator=(const CView&) = delete;

    virtual void draw(CDrawContext* context);
    virtual void drawRect(CDrawContext* context, const CRect& updateRect);
    virtual bool checkUpdate(const CRect& updateRect) const { return updateRect.rectOverlap(size); }

    virtual CMouseEventResult onMouseDown(CPoint& where, const long& buttons);
    virtual CMouseEventResult onMouseUp(CPoint& where, const long& buttons);
    virtual CMouseEventResult onMouseMoved(CPoint& where, const long& buttons);
    virtual CMouseEventResult onMouseEntered(CPoint& where, const long& buttons);
    virtual CMouseEventResult onMouseExited(CPoint& where, const long& buttons);
    virtual bool onWheel(const CPoint& where, const float& distance, const long& buttons);
    // Old blocking tracking entry; never called by the toolkit itself.
    virtual void mouse(CDrawContext* context, CPoint& where, long buttons = -1);
    virtual bool hitTest(const CPoint& where, const long buttons = -1);

    virtual bool isDirty() const { return bDirty; }
    // Only stores a flag, so any thread may call it; drawing follows at the
    // next idle of the frame.
    virtual void setDirty(const bool val = true) { bDirty = val; }
    // Counts as drawn now and asks the window to repaint our rectangle.
    virtual void invalid();
    virtual void invalidRect(const CRect& rect);

    virtual void setViewSize(const CRect& rect, bool invalid = true);
    virtual CRect& getViewSize(CRect& rect) const;
    CCoord getWidth() const { return size.width(); }
    CCoord getHeight() const { return size.height(); }
    virtual void setMouseableArea(const CRect& rect) { mouseableArea = rect; }
    virtual CRect& getMouseableArea(CRect& rect) const;
    virtual void setVisible(bool state);
    bool isVisible() const { return bVisible; }
    virtual void setMouseEnabled(const bool bEnable = true) { bMouseEnabled = bEnable; }
    bool getMouseEnabled() const { return bMouseEnabled; }
    virtual void setTransparency(bool val) { bTransparencyEnabled = val; }
    bool getTransparency() const { return bTransparencyEnabled; }
    // Takes a reference on the new bitmap and gives up the old one.
    virtual void setBackground(CBitmap* background);
    CBitmap* getBackground() const { return pBackground; }
    void setAutosizeFlags(long flags) { autosizeFlags = flags; }
    long getAutosizeFlags() const { return autosizeFlags; }

    virtual bool attached(CView* parent);
    virtual bool removed(CView* parent);
    bool isAttached() const { return bIsAttached; }
    CFrame* getFrame() const { return pParentFrame; }
    CView* getParentView() const { return pParentView; }
    VSTGUIEditorInterface* getEditor() const;

    virtual bool wantsFocus() const { return bWantsFocus; }
    void setWantsFocus(bool state) { bWantsFocus = state; }
    virtual void takeFocus() {}
    virtual void looseFocus() {}

    // Converts between this view's parent space and the frame's space.
    virtual CPoint& localToFrame(CPoint& point) const;
    virtual CPoint& frameToLocal(CPoint& point) const;

    virtual bool isTypeOf(const char* s) const { return std::strcmp(s, "CView") == 0; }
    virtual CView* newCopy() const { return new CView(*this); }
    virtual const char* getClassName() const { return "CView"; }

protected:
    // Draws the background image into our rectangle from offset, blended when
    // the view is transparent; nothing without a background.
    void drawBackground(CDrawContext* context, const CPoint& offset = CPoint(0, 0));

    CRect size;
    CRect mouseableArea;
    CFrame* pParentFrame = nullptr;
    CView* pParentView = nullptr;
    bool bDirty = false;
    bool bMouseEnabled = true;
    bool bTransparencyEnabled = false;
    bool bWantsFocus = false;
    bool bIsAttached = false;
    bool bVisible = true;
    long autosizeFlags = 0;
    CBitmap* pBackground = nullptr;
};

} // namespace VSTGUI
