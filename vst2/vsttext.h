#pragma once

#include "aeffectx.h"

#include <cstddef>

// Text helpers for the strings a plug-in hands to its host. None of them ever
// writes more than the stated number of characters plus the terminator.
namespace vsttext {

// Copies at most maxChars characters of src and always terminates, so dst
// needs room for maxChars + 1 bytes. A null dst gets nothing, a null src gives
// an empty string. Returns the number of characters copied.
std::size_t copy(char* dst, const char* src, std::size_t maxChars);

// The value as its integer part, a point and truncated (never rounded) fraction
// digits of the float's exact value, eight characters in all counting a minus
// sign and the point; then only the first maxLen characters are kept. A value
// that cannot show its integer part reads "Huge!" or "-Huge!", a NaN "nan".
void formatFloat(float value, char* text, VstInt32 maxLen);

} // namespace vsttext
