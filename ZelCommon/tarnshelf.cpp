#include "tarnshelf.h"

#include <cmath>

namespace {

// Below this distance from c = +-t a coefficient's quotient would explode; the
// coefficient is then set to 0 outright rather than to its limit.
const double kGuard = 0.001f;

} // namespace

void tarnshelf::init(float fs, float f, float g_lo, float g_hi) {
    const float w = 6.2831855f * f / fs;
    const float c = static_cast<float>(std::cos(static_cast<double>(w)));
    const float s = static_cast<float>(std::sin(static_cast<double>(w)));

    const float r = g_lo / g_hi;
    const float t = (r - 1.0f) / (1.0f + r);

    // sqrt, product and the subtraction of 1 in double: u sits close to -1 at low
    // frequencies and would otherwise lose its small part.
    const float oneMinusT2 = 1.0f - t * t;
    const float u = static_cast<float>(
        static_cast<double>(s) * std::sqrt(static_cast<double>(oneMinusT2)) - 1.0);

    const float cMinusT = c - t;
    const float cPlusT = c + t;
    const float a = std::fabs(static_cast<double>(cMinusT)) < kGuard ? 0.0f : (u + c * t) / cMinusT;
    const float b = std::fabs(static_cast<double>(cPlusT)) < kGuard ? 0.0f : (u - c * t) / cPlusT;

    coef[0] = a;
    coef[1] = b;
    coef[2] = g_lo * (1.0f + b) / (1.0f + a);
}
