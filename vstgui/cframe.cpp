#include "cframe.h"

#include "cdrawcontext.h"

#include <chrono>

namespace VSTGUI {

CFrame::CFrame(const CRect& rect, void* systemWindow, VSTGUIEditorInterface* editor)
    : CViewContainer(rect), pEditor(editor), pSystemWindow(systemWindow),
      guiThread(std::this_thread::get_id()) {
    bIsAttached = true;
    pParentFrame = this;
    if (systemWindow) window = createFrameWindow(*this, systemWindow);
}

CFrame::~CFrame() {
    setMouseOverView(nullptr);
    pFocusView = nullptr;
    removeAll(true);
    window.reset();
    bIsAttached = false;
    pParentFrame = nullptr;
}

void CFrame::idle() {
    if (!bOpenFlag) return;
    // A control may run idle from inside a mouse handler (doIdleStuff); the
    // events still queued are then left for the outer pump.
    if (window && !inEventPump) {
        inEventPump = true;
        window->pumpEvents();
        inEventPump = false;
    }
    invalidateDirtyViews();
    if (window) window->paint();
}

void CFrame::doIdleStuff() {
    if (pEditor) pEditor->doIdleStuff();
}

unsigned long CFrame::getTicks() {
    using namespace std::chrono;
    return static_cast<unsigned long>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

long CFrame::getKnobMode() const {
    return pEditor ? pEditor->getKnobMode() : static_cast<long>(kCircularMode);
}

void CFrame::beginEdit(long index) {
    if (pEditor) pEditor->beginEdit(index);
}

void CFrame::endEdit(long index) {
    if (pEditor) pEditor->endEdit(index);
}

bool CFrame::setFocusView(CView* view) {
    if (inFocusChange || view == pFocusView) return false;
    inFocusChange = true;
    CView* old = pFocusView;
    pFocusView = view;
    if (view && view->wantsFocus()) {
        view->setDirty();
        for (CView* p = view->getParentView(); p; p = p->getParentView())
            p->notify(view, kMsgNewFocusView);
    }
    if (old) {
        if (old->wantsFocus()) {
            old->setDirty();
            for (CView* p = old->getParentView(); p; p = p->getParentView())
                p->notify(old, kMsgOldFocusView);
        }
        old->looseFocus();
    }
    inFocusChange = false;
    return true;
}

void CFrame::setMouseOverView(CView* view) {
    if (view) view->remember();
    if (pMouseOverView) pMouseOverView->forget();
    pMouseOverView = view;
}

CMouseEventResult CFrame::onMouseDown(CPoint& where, const long& buttons) {
    clearMouseDownView();
    if (pFocusView) setFocusView(nullptr);
    if (pMouseOverView) {
        CPoint local(where);
        pMouseOverView->frameToLocal(local);
        pMouseOverView->onMouseExited(local, buttons);
        setMouseOverView(nullptr);
    }
    return CViewContainer::onMouseDown(where, buttons);
}

CMouseEventResult CFrame::onMouseUp(CPoint& where, const long& buttons) {
    return CViewContainer::onMouseUp(where, buttons);
}

CMouseEventResult CFrame::onMouseMoved(CPoint& where, const long& buttons) {
    if (CViewContainer::onMouseMoved(where, buttons) == kMouseEventHandled)
        return kMouseEventHandled;
    // Hover tracking: without a captured view the buttons are not passed on.
    CView* view = getViewAt(where, true);
    if (view != pMouseOverView) {
        if (pMouseOverView) {
            CPoint local(where);
            pMouseOverView->frameToLocal(local);
            pMouseOverView->onMouseExited(local, buttons);
        }
        setMouseOverView(view);
        if (view) {
            CPoint local(where);
            view->frameToLocal(local);
            view->onMouseEntered(local, buttons);
        }
        return kMouseEventHandled;
    }
    if (view) {
        CPoint local(where);
        view->frameToLocal(local);
        return view->onMouseMoved(local, 0);
    }
    return kMouseEventNotHandled;
}

CMouseEventResult CFrame::onMouseExited(CPoint& where, const long& buttons) {
    if (pMouseOverView && !mouseDownView) {
        CPoint local(where);
        pMouseOverView->frameToLocal(local);
        pMouseOverView->onMouseExited(local, buttons);
        setMouseOverView(nullptr);
    }
    return kMouseEventHandled;
}

bool CFrame::onWheel(const CPoint& where, const float& distance, const long& buttons) {
    if (mouseDownView) return false;
    CView* view = getViewAt(where, false);
    if (!view || !view->getMouseEnabled()) return false;
    view->remember();
    const bool handled = view->onWheel(where, distance, buttons);
    view->forget();
    return handled;
}

void CFrame::drawRect(CDrawContext* context, const CRect& updateRect) {
    if (!context) return;
    CRect oldClip;
    context->getClipRect(oldClip);
    CRect clip(updateRect);
    context->setClipRect(clip.bound(oldClip));
    CViewContainer::drawRect(context, updateRect);
    context->setClipRect(oldClip);
}

void CFrame::invalid() {
    bDirty = false;
    invalidRect(localRect());
}

void CFrame::invalidRect(const CRect& rect) {
    if (!bVisible) return;
    if (!onGuiThread()) {
        // Another thread may not touch the pending area; the GUI thread
        // repaints everything at its next idle instead.
        repaintAllPending.store(true, std::memory_order_relaxed);
        return;
    }
    CRect r(rect);
    r.normalize();
    r.bound(localRect());
    if (r.isEmpty()) return;
    if (invalidArea.isEmpty())
        invalidArea = r;
    else
        invalidArea.unite(r);
}

void CFrame::invalidate(const CRect& rect) {
    for (CView* child : children) {
        CRect r;
        if (rect.rectOverlap(child->getViewSize(r))) child->setDirty(true);
    }
}

bool CFrame::takeInvalidRect(CRect& rect) {
    if (repaintAllPending.exchange(false, std::memory_order_relaxed)) invalidArea = localRect();
    if (invalidArea.isEmpty()) return false;
    rect = invalidArea;
    invalidArea = CRect();
    return true;
}

bool CFrame::contains(CView* root, CView* view) {
    if (!view) return false;
    if (root == view) return true;
    return root->isTypeOf("CViewContainer") &&
           static_cast<CViewContainer*>(root)->isChild(view, true);
}

void CFrame::viewWillBeRemoved(CView* view) {
    if (contains(view, pFocusView)) pFocusView = nullptr;
    if (contains(view, pMouseOverView)) setMouseOverView(nullptr);
}

} // namespace VSTGUI
