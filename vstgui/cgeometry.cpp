#include "cgeometry.h"

#include <algorithm>
#include <utility>

namespace VSTGUI {

const CColor kTransparentCColor = {255, 255, 255, 0};
const CColor kBlackCColor = {0, 0, 0, 255};
const CColor kWhiteCColor = {255, 255, 255, 255};
const CColor kGreyCColor = {127, 127, 127, 255};
const CColor kRedCColor = {255, 0, 0, 255};
const CColor kGreenCColor = {0, 255, 0, 255};
const CColor kBlueCColor = {0, 0, 255, 255};
const CColor kYellowCColor = {255, 255, 0, 255};
const CColor kCyanCColor = {0, 255, 255, 255};
const CColor kMagentaCColor = {255, 0, 255, 255};

bool CPoint::isInside(const CRect& r) const {
    return h >= r.left && h <= r.right && v >= r.top && v <= r.bottom;
}

CRect& CRect::operator()(CCoord l, CCoord t, CCoord r, CCoord b) {
    left = l;
    top = t;
    right = r;
    bottom = b;
    return normalize();
}

CRect& CRect::offset(CCoord dx, CCoord dy) {
    left += dx;
    right += dx;
    top += dy;
    bottom += dy;
    return *this;
}

CRect& CRect::inset(CCoord dx, CCoord dy) {
    left += dx;
    right -= dx;
    top += dy;
    bottom -= dy;
    return *this;
}

CRect& CRect::moveTo(CCoord dx, CCoord dy) {
    const CCoord w = width();
    const CCoord h = height();
    left = dx;
    top = dy;
    right = dx + w;
    bottom = dy + h;
    return *this;
}

CRect& CRect::normalize() {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
    return *this;
}

CRect& CRect::bound(const CRect& r) {
    left = std::max(left, r.left);
    top = std::max(top, r.top);
    right = std::min(right, r.right);
    bottom = std::min(bottom, r.bottom);
    if (right < left) right = left;
    if (bottom < top) bottom = top;
    return *this;
}

CRect& CRect::unite(const CRect& r) {
    left = std::min(left, r.left);
    top = std::min(top, r.top);
    right = std::max(right, r.right);
    bottom = std::max(bottom, r.bottom);
    return *this;
}

bool CRect::pointInside(const CPoint& p) const {
    return p.h >= left && p.h < right && p.v >= top && p.v < bottom;
}

bool CRect::rectOverlap(const CRect& r) const {
    return !(right < r.left || left > r.right || bottom < r.top || top > r.bottom);
}

} // namespace VSTGUI
