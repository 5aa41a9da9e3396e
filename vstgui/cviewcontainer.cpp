#include "cviewcontainer.h"

#include "cbitmap.h"
#include "ccontrol.h"
#include "cdrawcontext.h"
#include "cframe.h"

#include <algorithm>

namespace VSTGUI {

namespace {
// Keeps a view alive while one of its own handlers runs, even if that
// handler makes someone remove it from its container.
class ViewHold {
public:
    explicit ViewHold(CView* view) : view(view) { view->remember(); }
    ~ViewHold() { view->forget(); }
    ViewHold(const ViewHold&) = delete;
    ViewHold& operator=(const ViewHold&) = delete;

private:
    CView* view;
};
} // namespace

CViewContainer::CViewContainer(const CRect& size) : CView(size) {}

CViewContainer::~CViewContainer() {
    removeAll(true);
}

bool CViewContainer::insertView(CView* view, std::vector<CView*>::iterator position) {
    if (!view || view->isAttached() || view == this || isChild(view)) return false;
    children.insert(position, view);
    view->remember();
    if (bIsAttached) {
        view->attached(this);
        view->invalid();
    }
    return true;
}

bool CViewContainer::addView(CView* view) {
    return insertView(view, children.end());
}

bool CViewContainer::addView(CView* view, CView* before) {
    return insertView(view, std::find(children.begin(), children.end(), before));
}

bool CViewContainer::addView(CView* view, const CRect& mouseableArea, bool mouseEnabled) {
    if (!addView(view)) return false;
    view->setMouseableArea(mouseableArea);
    view->setMouseEnabled(mouseEnabled);
    return true;
}

void CViewContainer::detach(CView* view, bool withForget) {
    if (view == mouseDownView) clearMouseDownView();
    if (pParentFrame) pParentFrame->viewWillBeRemoved(view);
    if (view->isAttached()) view->removed(this);
    if (withForget) view->forget();
    view->forget(); // the container's own reference
}

bool CViewContainer::removeView(CView* view, const bool& withForget) {
    auto it = std::find(children.begin(), children.end(), view);
    if (!view || it == children.end()) return false;
    children.erase(it);
    detach(view, withForget);
    return true;
}

bool CViewContainer::removeAll(const bool& withForget) {
    clearMouseDownView();
    while (!children.empty()) {
        CView* view = children.back();
        children.pop_back();
        detach(view, withForget);
    }
    return true;
}

bool CViewContainer::isChild(CView* view, bool deep) const {
    for (CView* child : children) {
        if (child == view) return true;
        if (deep && child->isTypeOf("CViewContainer") &&
            static_cast<CViewContainer*>(child)->isChild(view, true))
            return true;
    }
    return false;
}

CView* CViewContainer::getView(long index) const {
    if (index < 0 || index >= getNbViews()) return nullptr;
    return children[static_cast<std::size_t>(index)];
}

CView* CViewContainer::getViewAt(const CPoint& where, bool deep) const {
    const CPoint local(where.h - size.left, where.v - size.top);
    for (auto it = children.rbegin(); it != children.rend(); ++it) {
        CView* child = *it;
        CRect area;
        if (!child->isVisible() || !local.isInside(child->getMouseableArea(area))) continue;
        if (deep && child->isTypeOf("CViewContainer")) {
            CView* inner = static_cast<CViewContainer*>(child)->getViewAt(local, true);
            return inner ? inner : child;
        }
        return child;
    }
    return nullptr;
}

void CViewContainer::setBackgroundColor(const CColor& color) {
    backgroundColor = color;
    setDirty(true);
}

void CViewContainer::drawBackgroundRect(CDrawContext* context, const CRect& updateRect) {
    if (pBackground) {
        CRect oldClip;
        context->getClipRect(oldClip);
        CRect clip(updateRect);
        context->setClipRect(clip.bound(oldClip));
        const CRect whole(0, 0, pBackground->getWidth(), pBackground->getHeight());
        if (bTransparencyEnabled)
            pBackground->drawTransparent(context, whole, backgroundOffset);
        else
            pBackground->draw(context, whole, backgroundOffset);
        context->setClipRect(oldClip);
    } else if (!bTransparencyEnabled || backgroundColor.alpha != 255) {
        context->setFillColor(backgroundColor);
        context->setFrameColor(backgroundColor);
        context->drawRect(localRect(), kDrawFilledAndStroked);
    }
}

void CViewContainer::draw(CDrawContext* context) {
    drawRect(context, size);
}

void CViewContainer::drawRect(CDrawContext* context, const CRect& updateRect) {
    if (!context) return;
    CRect clientRect(updateRect);
    clientRect.bound(size);
    clientRect.offset(-size.left, -size.top);

    const CPoint oldOffset = context->getOffset();
    CRect oldClip;
    context->getClipRect(oldClip);
    context->setOffset(CPoint(oldOffset.h + size.left, oldOffset.v + size.top));

    CRect clip;
    context->getClipRect(clip); // the old clip, now in local coordinates
    clip.bound(clientRect);
    context->setClipRect(clip);

    drawBackgroundRect(context, clientRect);
    for (CView* child : children) {
        if (!child->isVisible() || !child->checkUpdate(clientRect)) continue;
        CRect viewSize;
        child->getViewSize(viewSize);
        CRect childClip(clip);
        childClip.bound(viewSize);
        if (childClip.isEmpty()) continue;
        context->setClipRect(childClip);
        child->drawRect(context, clientRect);
        context->setClipRect(clip);
    }

    context->setOffset(oldOffset);
    context->setClipRect(oldClip);
    setDirty(false);
}

CMouseEventResult CViewContainer::onMouseDown(CPoint& where, const long& buttons) {
    CPoint local(where.h - size.left, where.v - size.top);
    for (auto it = children.rbegin(); it != children.rend(); ++it) {
        CView* child = *it;
        if (!child->isVisible() || !child->getMouseEnabled() || !child->hitTest(local, buttons))
            continue;
        ViewHold hold(child);
        // A listener may take modified clicks for itself (e.g. to open a menu);
        // the control then never sees the click.
        constexpr long kModifierBits = kAlt | kShift | kControl | kApple | kRButton;
        if (child->isTypeOf("CControl") && (buttons & kModifierBits)) {
            auto* control = static_cast<CControl*>(child);
            if (control->getListener() &&
                control->getListener()->controlModifierClicked(control, buttons) != 0)
                return kMouseEventHandled;
        }
        const CMouseEventResult result = child->onMouseDown(local, buttons);
        if (result == kMouseEventHandled && isChild(child)) mouseDownView = child;
        // No fall-through to views underneath, whatever the child answered.
        return result;
    }
    return kMouseEventNotHandled;
}

CMouseEventResult CViewContainer::onMouseMoved(CPoint& where, const long& buttons) {
    if (!mouseDownView) return kMouseEventNotHandled;
    CView* view = mouseDownView;
    ViewHold hold(view);
    CPoint local(where.h - size.left, where.v - size.top);
    if (view->onMouseMoved(local, buttons) != kMouseEventHandled) {
        if (mouseDownView == view) clearMouseDownView();
        return kMouseEventNotHandled;
    }
    return kMouseEventHandled;
}

CMouseEventResult CViewContainer::onMouseUp(CPoint& where, const long& buttons) {
    if (!mouseDownView) return kMouseEventNotHandled;
    CView* view = mouseDownView;
    ViewHold hold(view);
    CPoint local(where.h - size.left, where.v - size.top);
    view->onMouseUp(local, buttons);
    if (mouseDownView == view) clearMouseDownView();
    return kMouseEventHandled;
}

bool CViewContainer::onWheel(const CPoint& where, const float& distance, const long& buttons) {
    if (mouseDownView) return false;
    const CPoint local(where.h - size.left, where.v - size.top);
    for (auto it = children.rbegin(); it != children.rend(); ++it) {
        CView* child = *it;
        if (child->isVisible() && child->getMouseEnabled() && child->hitTest(local, buttons)) {
            ViewHold hold(child);
            return child->onWheel(local, distance, buttons);
        }
    }
    return false;
}

void CViewContainer::clearMouseDownView() {
    if (!mouseDownView) return;
    if (mouseDownView->isTypeOf("CViewContainer"))
        static_cast<CViewContainer*>(mouseDownView)->clearMouseDownView();
    mouseDownView = nullptr;
}

bool CViewContainer::isDirty() const {
    if (bDirty) return true;
    const CRect bounds = localRect();
    for (CView* child : children) {
        if (!child->isDirty()) continue;
        CRect r;
        child->getViewSize(r);
        if (!r.bound(bounds).isEmpty()) return true;
    }
    return false;
}

void CViewContainer::invalid() {
    bDirty = false;
    CView::invalidRect(size);
}

void CViewContainer::invalidRect(const CRect& rect) {
    if (!bIsAttached || !bVisible) return;
    CRect r(rect);
    r.offset(size.left, size.top);
    r.bound(size);
    if (r.isEmpty()) return;
    CView::invalidRect(r);
}

void CViewContainer::invalidateDirtyViews() {
    if (!bVisible) return;
    if (bDirty) {
        invalid();
        return;
    }
    for (CView* child : children) {
        if (!child->isDirty() || !child->isVisible()) continue;
        if (child->isTypeOf("CViewContainer"))
            static_cast<CViewContainer*>(child)->invalidateDirtyViews();
        else
            child->invalid();
    }
}

bool CViewContainer::attached(CView* parent) {
    if (!CView::attached(parent)) return false;
    for (CView* child : children) child->attached(this);
    return true;
}

bool CViewContainer::removed(CView* parent) {
    if (!bIsAttached) return false;
    clearMouseDownView();
    for (CView* child : children) child->removed(this);
    return CView::removed(parent);
}

CPoint& CViewContainer::localToFrame(CPoint& point) const {
    point.offset(size.left, size.top);
    return CView::localToFrame(point);
}

CPoint& CViewContainer::frameToLocal(CPoint& point) const {
    point.offset(-size.left, -size.top);
    return CView::frameToLocal(point);
}

} // namespace VSTGUI
