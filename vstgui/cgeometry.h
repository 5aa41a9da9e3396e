#pragma once

// Points, rectangles and colours in the toolkit's integer pixel space.

namespace VSTGUI {

// Pixel coordinates are whole numbers; every control's arithmetic (knob
// angles, switch bands, handle positions) is defined on integer pixels.
using CCoord = long;

// Truncates towards zero like a cast, but gives 0 for NaN and saturates huge
// values: a value from the host may be anything, a cast of those is undefined.
inline CCoord truncToCoord(double x) {
    constexpr double kLimit = 1e9;
    if (!(x == x)) return 0;
    if (x > kLimit) return static_cast<CCoord>(kLimit);
    if (x < -kLimit) return static_cast<CCoord>(-kLimit);
    return static_cast<CCoord>(x);
}

struct CRect;

struct CPoint {
    CPoint(CCoord h = 0, CCoord v = 0) : h(h), v(v) {}

    // h/v and x/y name the same coordinates; plug-in code uses both.
    union {
        CCoord h;
        CCoord x;
    };
    union {
        CCoord v;
        CCoord y;
    };

    CPoint& operator()(CCoord newH, CCoord newV) {
        h = newH;
        v = newV;
        return *this;
    }
    CPoint& offset(CCoord dh, CCoord dv) {
        h += dh;
        v += dv;
        return *this;
    }
    bool operator==(const CPoint& other) const { return h == other.h && v == other.v; }
    bool operator!=(const CPoint& other) const { return !(*this == other); }
    CPoint operator+(const CPoint& other) const { return CPoint(h + other.h, v + other.v); }
    CPoint operator-(const CPoint& other) const { return CPoint(h - other.h, v - other.v); }

    // Closed test: the right and bottom edges count as inside. Hit testing
    // relies on this, so a click on a view's last pixel line still hits it.
    bool isInside(const CRect& r) const;
};

struct CRect {
    // Stores the values as given, even when left > right.
    CRect(CCoord left = 0, CCoord top = 0, CCoord right = 0, CCoord bottom = 0)
        : left(left), top(top), right(right), bottom(bottom) {}
    CRect(const CPoint& origin, const CPoint& size)
        : left(origin.h), top(origin.v), right(origin.h + size.h), bottom(origin.v + size.v) {}

    union {
        CCoord left;
        CCoord x;
    };
    union {
        CCoord top;
        CCoord y;
    };
    union {
        CCoord right;
        CCoord x2;
    };
    union {
        CCoord bottom;
        CCoord y2;
    };

    // Assigns and normalises, unlike the constructor.
    CRect& operator()(CCoord l, CCoord t, CCoord r, CCoord b);
    bool operator==(const CRect& o) const {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const CRect& o) const { return !(*this == o); }

    CCoord width() const { return right - left; }
    CCoord height() const { return bottom - top; }
    CCoord getWidth() const { return width(); }
    CCoord getHeight() const { return height(); }
    CRect& setWidth(CCoord w) {
        right = left + w;
        return *this;
    }
    CRect& setHeight(CCoord h) {
        bottom = top + h;
        return *this;
    }

    CRect& offset(CCoord dx, CCoord dy);
    CRect& inset(CCoord dx, CCoord dy);
    CRect& moveTo(CCoord dx, CCoord dy);
    CRect& normalize();
    // Intersection; never leaves a negative size behind.
    CRect& bound(const CRect& r);
    CRect& unite(const CRect& r);

    // Half-open: right and bottom edges are outside.
    bool pointInside(const CPoint& p) const;
    // Touching rectangles overlap.
    bool rectOverlap(const CRect& r) const;
    bool isEmpty() const { return right <= left || bottom <= top; }

    CPoint getTopLeft() const { return CPoint(left, top); }
    CPoint getTopRight() const { return CPoint(right, top); }
    CPoint getBottomLeft() const { return CPoint(left, bottom); }
    CPoint getBottomRight() const { return CPoint(right, bottom); }
    CPoint getSize() const { return CPoint(width(), height()); }
    CRect& setTopLeft(const CPoint& p) {
        left = p.h;
        top = p.v;
        return *this;
    }
    CRect& setTopRight(const CPoint& p) {
        right = p.h;
        top = p.v;
        return *this;
    }
    CRect& setBottomLeft(const CPoint& p) {
        left = p.h;
        bottom = p.v;
        return *this;
    }
    CRect& setBottomRight(const CPoint& p) {
        right = p.h;
        bottom = p.v;
        return *this;
    }
    CRect& setSize(const CPoint& p) {
        right = left + p.h;
        bottom = top + p.v;
        return *this;
    }
};

struct CColor {
    unsigned char red;
    unsigned char green;
    unsigned char blue;
    unsigned char alpha;

    bool operator==(const CColor& o) const {
        return red == o.red && green == o.green && blue == o.blue && alpha == o.alpha;
    }
    bool operator!=(const CColor& o) const { return !(*this == o); }
};

inline CColor MakeCColor(unsigned char red = 0, unsigned char green = 0, unsigned char blue = 0,
                         unsigned char alpha = 255) {
    return CColor{red, green, blue, alpha};
}

extern const CColor kTransparentCColor;
extern const CColor kBlackCColor;
extern const CColor kWhiteCColor;
extern const CColor kGreyCColor;
extern const CColor kRedCColor;
extern const CColor kGreenCColor;
extern const CColor kBlueCColor;
extern const CColor kYellowCColor;
extern const CColor kCyanCColor;
extern const CColor kMagentaCColor;

} // namespace VSTGUI
