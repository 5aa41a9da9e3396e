#include "vsttext.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

// Formats into a sentinel-filled buffer and checks that nothing past the
// terminator was written.
template <typename Format, typename Value>
std::string formatted(Format format, Value value, VstInt32 maxLen) {
    char buffer[32];
    std::memset(buffer, '#', sizeof buffer);
    format(value, buffer, maxLen);
    const std::size_t length = std::strlen(buffer);
    EXPECT_LE(length, static_cast<std::size_t>(std::max(maxLen, 0)));
    for (std::size_t i = length + 1; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#') << i;
    return buffer;
}

std::string float2string(float value, VstInt32 maxLen) {
    return formatted(vsttext::formatFloat, value, maxLen);
}

TEST(Float2String, EightCharactersOfTruncatedDigitsThenMaxLen) {
    EXPECT_EQ(float2string(1.5f, 4), "1.50");
    EXPECT_EQ(float2string(0.0f, 4), "0.00");
    EXPECT_EQ(float2string(0.25f, 4), "0.25");
    EXPECT_EQ(float2string(12.345f, 4), "12.3");
    EXPECT_EQ(float2string(-1.5f, 5), "-1.50");
    EXPECT_EQ(float2string(1.5f, 8), "1.500000");
    EXPECT_EQ(float2string(-1.5f, 8), "-1.50000");
    EXPECT_EQ(float2string(12.345f, 8), "12.34500");
    EXPECT_EQ(float2string(1234567.5f, 8), "1234567.");
    EXPECT_EQ(float2string(-1234567.0f, 8), "-1234567");
    EXPECT_EQ(float2string(1.5f, 20), "1.500000"); // never wider than eight
}

TEST(Float2String, DigitsOfTheFloatsOwnValueAreTruncated) {
    // 0.7f is 0.699999988..., 2.675f is 2.67499995..., 0.1f is 0.100000001...
    EXPECT_EQ(float2string(0.7f, 8), "0.699999");
    EXPECT_EQ(float2string(2.675f, 4), "2.67");
    EXPECT_EQ(float2string(0.1f, 8), "0.100000");
    EXPECT_EQ(float2string(-0.7f, 5), "-0.69");
    EXPECT_EQ(float2string(1e-45f, 8), "0.000000"); // smallest subnormal
    EXPECT_EQ(float2string(-1e-9f, 8), "-0.00000");
    EXPECT_EQ(float2string(-0.0f, 8), "0.000000");
}

TEST(Float2String, ValuesWithoutRoomAndDegenerateLimitsGetShortDefinedTexts) {
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(float2string(std::nanf(""), 8), "nan");
    EXPECT_EQ(float2string(1e7f, 8), "Huge!");
    EXPECT_EQ(float2string(inf, 8), "Huge!");
    EXPECT_EQ(float2string(-inf, 8), "-Huge!");
    EXPECT_EQ(float2string(-3e38f, 4), "-Hug");
    EXPECT_EQ(float2string(1.5f, 0), "");
    EXPECT_EQ(float2string(1.5f, -3), "");
    vsttext::formatFloat(1.5f, nullptr, 4); // no buffer: nothing happens
}

TEST(VstText, IntegersAndDecibels) {
    EXPECT_EQ(formatted(vsttext::formatInt, 42, 8), "42");
    EXPECT_EQ(formatted(vsttext::formatInt, -1234567, 8), "-1234567");
    EXPECT_EQ(formatted(vsttext::formatInt, 123456789, 8), "Huge!");
    EXPECT_EQ(formatted(vsttext::formatInt, std::numeric_limits<VstInt32>::min(), 8), "-Huge!");
    EXPECT_EQ(formatted(vsttext::formatInt, 98765, 3), "987");
    EXPECT_EQ(formatted(vsttext::formatDecibels, 1.0f, 8), "0.000000");
    EXPECT_EQ(formatted(vsttext::formatDecibels, 10.0f, 5), "20.00");
    EXPECT_EQ(formatted(vsttext::formatDecibels, 0.0f, 8), "-oo");
    EXPECT_EQ(formatted(vsttext::formatDecibels, -1.0f, 2), "-o");
}

TEST(VstText, BoundedCopy) {
    char buffer[8];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(vsttext::copy(buffer, "abcdefghij", 5), 5u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(buffer[6], '#');
    EXPECT_EQ(vsttext::copy(buffer, "ab", 5), 2u);
    EXPECT_STREQ(buffer, "ab");
    EXPECT_EQ(vsttext::copy(buffer, nullptr, 5), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(vsttext::copy(nullptr, "ab", 5), 0u);
}

} // namespace
