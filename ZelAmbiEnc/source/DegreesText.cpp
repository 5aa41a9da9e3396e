#include "DegreesText.h"

#include "aeffectx.h"
#include "vsttext.h"

#include <cmath>
#include <cstdio>

void formatDegrees(float degrees, char* text) {
    if (text == nullptr) return;
    // A NaN fails the comparison and takes the negative path, as any value
    // below zero does.
    const float shifted = degrees >= 0.0f ? degrees + 0.5f : degrees - 0.5f;
    if (std::isnan(shifted)) {
        vsttext::copy(text, "nan", kVstMaxParamStrLen - 1);
    } else if (std::fabs(shifted) >= 1e6f) { // keeps the text short and the cast defined
        vsttext::copy(text, shifted < 0.0f ? "-Huge!" : "Huge!", kVstMaxParamStrLen - 1);
    } else {
        std::snprintf(text, kVstMaxParamStrLen, "%d", static_cast<int>(shifted));
    }
}
