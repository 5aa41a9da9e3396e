#include "ZelAnimKnob.h"

#include <cmath>

namespace {

// 2π as a float; the angle arithmetic stays in single precision.
constexpr float kTwoPi = 6.2831855f;
constexpr double kTwoPiDouble = 6.283185307179586;

// Brings an angle measured from one end of the travel once into [0, 2π].
float wrapOnce(float angle) {
    if (0.0f > angle) return angle + kTwoPi;
    if (static_cast<double>(angle) > kTwoPiDouble) return angle - kTwoPi;
    return angle;
}

// The same angle, taken to the side of the travel that it is nearer to.
float nearerTurn(float angle, float upper, float halfAngle) {
    if (angle > upper) return angle - kTwoPi;
    if (-halfAngle > angle) return angle + kTwoPi;
    return angle;
}

} // namespace

float ZelKnobArc::angleOf(const CPoint& point, float& lastAlpha) const {
    const float dy = radius - static_cast<float>(point.y);
    const float dx = static_cast<float>(point.x) - radius;
    // atan2(0, 0) would say "pointing right" and make the knob jump.
    if (dy == 0.0f && dx == 0.0f) return lastAlpha;
    float alpha = static_cast<float>(std::atan2(static_cast<double>(dy), static_cast<double>(dx)));
    if (0.0f > alpha) alpha = alpha + kTwoPi;
    lastAlpha = alpha;
    return alpha;
}

float ZelKnobArc::valueFromPoint(const CPoint& point, float& lastAlpha) const {
    float alpha2 = angleOf(point, lastAlpha) - startAngle;
    if (0.0f > rangeAngle) {
        // Measured from the end of the travel.
        alpha2 = alpha2 - rangeAngle;
        const float alpha3 = wrapOnce(alpha2);
        if (alpha3 > halfAngle - rangeAngle) return vmax;
        if (alpha3 > -rangeAngle) return vmin;
        return aCoef * nearerTurn(alpha2, halfAngle - rangeAngle, halfAngle) + vmax;
    }
    const float alpha3 = wrapOnce(alpha2);
    if (alpha3 > rangeAngle + halfAngle) return vmin;
    if (alpha3 > rangeAngle) return vmax;
    return aCoef * nearerTurn(alpha2, rangeAngle + halfAngle, halfAngle) + vmin;
}

ZelAnimKnob::ZelAnimKnob(const CRect& size, CControlListener* listener, long tag, long subPixmaps,
                         CCoord heightOfOneImage, CBitmap* background, const CPoint& offset)
    : CAnimKnob(size, listener, tag, subPixmaps, heightOfOneImage, background, offset) {}

ZelAnimKnob::~ZelAnimKnob() = default;

float ZelAnimKnob::valueFromPoint(CPoint& point) const {
    // One for the whole class, on purpose (see the class comment).
    static float lastAlpha = 0.0f;
    const ZelKnobArc arc{radius, startAngle, rangeAngle, halfAngle, aCoef, vmin, vmax};
    return arc.valueFromPoint(point, lastAlpha);
}
