#include "cview.h"

#include "cbitmap.h"
#include "cframe.h"

namespace VSTGUI {

const char* kMsgNewFocusView = "kMsgNewFocusView";
const char* kMsgOldFocusView = "kMsgOldFocusView";

CView::CView(const CRect& size) : size(size), mouseableArea(size) {}

CView::CView(const CView& other)
    : CBaseObject(other), size(other.size), mouseableArea(other.mouseableArea),
      bDirty(other.bDirty), bMouseEnabled(other.bMouseEnabled),
      bTransparencyEnabled(other.bTransparencyEnabled), bWantsFocus(other.bWantsFocus),
      bVisible(other.bVisible), autosizeFlags(other.autosizeFlags), pBackground(other.pBackground) {
    if (pBackground) pBackground->remember();
}

CView::~CView() {
    if (pBackground) pBackground->forget();
}

void CView::drawBackground(CDrawContext* context, const CPoint& offset) {
    if (!pBackground) return;
    if (bTransparencyEnabled)
        pBackground->drawTransparent(context, size, offset);
    else
        pBackground->draw(context, size, offset);
}

void CView::draw(CDrawContext* context) {
    drawBackground(context);
    setDirty(false);
}

void CView::drawRect(CDrawContext* context, const CRect& /*updateRect*/) {
    draw(context);
}

CMouseEventResult CView::onMouseDown(CPoint&, const long&) {
    return kMouseEventNotImplemented;
}
CMouseEventResult CView::onMouseUp(CPoint&, const long&) {
    return kMouseEventNotImplemented;
}
CMouseEventResult CView::onMouseMoved(CPoint&, const long&) {
    return kMouseEventNotImplemented;
}
CMouseEventResult CView::onMouseEntered(CPoint&, const long&) {
    return kMouseEventNotImplemented;
}
CMouseEventResult CView::onMouseExited(CPoint&, const long&) {
    return kMouseEventNotImplemented;
}
bool CView::onWheel(const CPoint&, const float&, const long&) {
    return false;
}
void CView::mouse(CDrawContext*, CPoint&, long) {}

bool CView::hitTest(const CPoint& where, const long) {
    return where.isInside(mouseableArea);
}

void CView::invalid() {
    setDirty(false);
    invalidRect(size);
}

void CView::invalidRect(const CRect& rect) {
    if (!bIsAttached || !bVisible) return;
    if (pParentView)
        pParentView->invalidRect(rect);
    else if (pParentFrame)
        pParentFrame->invalidRect(rect);
}

void CView::setViewSize(const CRect& rect, bool invalid) {
    size = rect;
    if (invalid) setDirty();
}

CRect& CView::getViewSize(CRect& rect) const {
    rect = size;
    return rect;
}

CRect& CView::getMouseableArea(CRect& rect) const {
    rect = mouseableArea;
    return rect;
}

void CView::setVisible(bool state) {
    if (bVisible == state) return;
    bVisible = state;
    setDirty();
}

void CView::setBackground(CBitmap* background) {
    if (background) background->remember();
    if (pBackground) pBackground->forget();
    pBackground = background;
    setDirty(true);
}

bool CView::attached(CView* parent) {
    if (bIsAttached || !parent) return false;
    pParentView = parent;
    pParentFrame = parent->getFrame();
    bIsAttached = true;
    return true;
}

bool CView::removed(CView* /*parent*/) {
    if (!bIsAttached) return false;
    pParentView = nullptr;
    pParentFrame = nullptr;
    bIsAttached = false;
    return true;
}

VSTGUIEditorInterface* CView::getEditor() const {
    return pParentFrame ? pParentFrame->getEditor() : nullptr;
}

// A view's points live in its parent's space, so the parent converts them.
CPoint& CView::localToFrame(CPoint& point) const {
    if (pParentView) pParentView->localToFrame(point);
    return point;
}

CPoint& CView::frameToLocal(CPoint& point) const {
    if (pParentView) pParentView->frameToLocal(point);
    return point;
}

} // namespace VSTGUI
