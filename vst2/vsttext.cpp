#include "vsttext.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace vsttext {
namespace {

// Width of a formatted number before the caller's own limit applies.
constexpr std::size_t kNumberWidth = 8;

std::size_t clampedLength(VstInt32 maxLen) {
    return maxLen > 0 ? static_cast<std::size_t>(maxLen) : 0;
}

} // namespace

std::size_t copy(char* dst, const char* src, std::size_t maxChars) {
    if (dst == nullptr) return 0;
    std::size_t n = 0;
    if (src != nullptr) {
        while (n < maxChars && src[n] != '\0') {
            dst[n] = src[n];
            ++n;
        }
    }
    dst[n] = '\0';
    return n;
}

void formatFloat(float value, char* text, VstInt32 maxLen) {
    if (text == nullptr) return;
    char full[32];
    const bool negative = value < 0.0f; // -0 and NaN show no sign
    const double magnitude = std::fabs(static_cast<double>(value));
    if (std::isnan(value)) {
        copy(full, "nan", kNumberWidth);
    } else if (magnitude >= 1e7) { // the integer part alone would fill the width
        copy(full, negative ? "-Huge!" : "Huge!", kNumberWidth);
    } else {
        // Both steps are exact in double: the float's fraction has at most 24
        // significant bits and 10^7 = 2^7 * 78125 adds 17, so the fraction
        // digits are truncated from the true binary value, not from a rounded
        // decimal rendering of it.
        const double whole = std::floor(magnitude);
        const double scaledFraction = std::floor((magnitude - whole) * 1e7);
        std::snprintf(full, sizeof full, "%s%u.%07u", negative ? "-" : "",
                      static_cast<unsigned>(whole), static_cast<unsigned>(scaledFraction));
        full[kNumberWidth] = '\0';
    }
    copy(text, full, clampedLength(maxLen));
}

} // namespace vsttext
