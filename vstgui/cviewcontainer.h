#pragma once

#include "cview.h"

#include <vector>

namespace VSTGUI {

// A view that holds child views. Children are drawn in the order they were
// added (the last on top) and hit-tested in the reverse order. Points given to
// children are relative to the container's top-left corner.
class CViewContainer : public CView {
public:
    explicit CViewContainer(const CRect& size);
    ~CViewContainer() override;
    CViewContainer(const CViewContainer&) = delete;
    CViewContainer& operator=(const CViewContainer&) = delete;

    // Takes over the caller's reference: the view is deleted when it is
    // removed with forget or when the container dies. Fails (false) for null,
    // an attached view or one that is already a child.
    virtual bool addView(CView* view);
    virtual bool addView(CView* view, CView* before);
    virtual bool addView(CView* view, const CRect& mouseableArea, bool mouseEnabled = true);
    // withForget false hands the reference back to the caller.
    virtual bool removeView(CView* view, const bool& withForget = true);
    virtual bool removeAll(const bool& withForget = true);
    bool isChild(CView* view, bool deep = false) const;
    long getNbViews() const { return static_cast<long>(children.size()); }
    CView* getView(long index) const;
    // The topmost visible view under the point (container-local), or null.
    virtual CView* getViewAt(const CPoint& where, bool deep = false) const;

    void setBackgroundColor(const CColor& color);
    const CColor& getBackgroundColor() const { return backgroundColor; }
    void setBackgroundOffset(const CPoint& offset) { backgroundOffset = offset; }
    const CPoint& getBackgroundOffset() const { return backgroundOffset; }
    virtual void drawBackgroundRect(CDrawContext* context, const CRect& updateRect);

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override;
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override;
    bool onWheel(const CPoint& where, const float& distance, const long& buttons) override;

    bool isDirty() const override;
    void invalid() override;
    void invalidRect(const CRect& rect) override;
    // Turns dirty flags into repaint requests; the frame runs it at idle.
    virtual void invalidateDirtyViews();

    bool attached(CView* parent) override;
    bool removed(CView* parent) override;
    CPoint& localToFrame(CPoint& point) const override;
    CPoint& frameToLocal(CPoint& point) const override;

    CView* getMouseDownView() const { return mouseDownView; }

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CViewContainer") == 0 || CView::isTypeOf(s);
    }
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CViewContainer"; }

protected:
    CRect localRect() const { return CRect(0, 0, size.width(), size.height()); }
    void clearMouseDownView();

    std::vector<CView*> children;
    CColor backgroundColor = kBlackCColor;
    CPoint backgroundOffset;
    CView* mouseDownView = nullptr;

private:
    bool insertView(CView* view, std::vector<CView*>::iterator position);
    void detach(CView* view, bool withForget);
};

} // namespace VSTGUI
