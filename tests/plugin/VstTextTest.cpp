// The texts a host is given: the base layer's number formatting and the
// plug-in's whole degrees, each written into a '#'-filled buffer.
#include "vsttext.h"
#include "DegreesText.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

// The text, after checking that it fits maxLen and that nothing past its
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

// Eight characters at most, then maxLen; the digits are those of the float's
// own value, truncated (0.7f is 0.699999988..., 2.675f 2.67499995...); no room
// for the integer part, no number and no room at all give short fixed texts.
TEST(VstText, Float2StringTruncatesToEightCharactersThenToMaxLen) {
    const auto f = [](float value, VstInt32 maxLen) {
        return formatted(vsttext::formatFloat, value, maxLen);
    };
    EXPECT_EQ(f(1.5f, 4), "1.50");
    EXPECT_EQ(f(0.0f, 4), "0.00");
    EXPECT_EQ(f(12.345f, 4), "12.3");
    EXPECT_EQ(f(-1.5f, 5), "-1.50");
    EXPECT_EQ(f(1.5f, 8), "1.500000");
    EXPECT_EQ(f(-1.5f, 8), "-1.50000");
    EXPECT_EQ(f(1234567.5f, 8), "1234567.");
    EXPECT_EQ(f(-1234567.0f, 8), "-1234567");
    EXPECT_EQ(f(1.5f, 20), "1.500000");
    EXPECT_EQ(f(0.7f, 8), "0.699999");
    EXPECT_EQ(f(2.675f, 4), "2.67");
    EXPECT_EQ(f(0.1f, 8), "0.100000");
    EXPECT_EQ(f(-0.7f, 5), "-0.69");
    EXPECT_EQ(f(1e-45f, 8), "0.000000");
    EXPECT_EQ(f(-1e-9f, 8), "-0.00000");
    EXPECT_EQ(f(-0.0f, 8), "0.000000");
    EXPECT_EQ(f(1e7f, 8), "Huge!");
    EXPECT_EQ(f(kInf, 8), "Huge!");
    EXPECT_EQ(f(-kInf, 8), "-Huge!");
    EXPECT_EQ(f(-3e38f, 4), "-Hug");
    EXPECT_EQ(f(std::nanf(""), 8), "nan");
    EXPECT_EQ(f(1.5f, 0), "");
    EXPECT_EQ(f(1.5f, -3), "");
    vsttext::formatFloat(1.5f, nullptr, 4); // no buffer: nothing happens
}

TEST(VstText, IntegersDecibelsAndBoundedCopy) {
    EXPECT_EQ(formatted(vsttext::formatInt, -1234567, 8), "-1234567");
    EXPECT_EQ(formatted(vsttext::formatInt, 123456789, 8), "Huge!");
    EXPECT_EQ(formatted(vsttext::formatInt, std::numeric_limits<VstInt32>::min(), 8), "-Huge!");
    EXPECT_EQ(formatted(vsttext::formatInt, 98765, 3), "987");
    EXPECT_EQ(formatted(vsttext::formatDecibels, 10.0f, 5), "20.00");
    EXPECT_EQ(formatted(vsttext::formatDecibels, 0.0f, 8), "-oo");
    EXPECT_EQ(formatted(vsttext::formatDecibels, -1.0f, 2), "-o");

    char buffer[8];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(vsttext::copy(buffer, "abcdefghij", 5), 5u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(buffer[6], '#');
    EXPECT_EQ(vsttext::copy(buffer, nullptr, 5), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(vsttext::copy(nullptr, "ab", 5), 0u);
}

// Halves away from zero, in single precision: 0.49999997f + 0.5f is already 1.
TEST(DegreesText, RoundsHalvesAwayFromZeroInSinglePrecision) {
    const auto degrees = [](float value, char* text, VstInt32) { formatDegrees(value, text); };
    const struct {
        float value;
        const char* text;
    } cases[] = {{44.5f, "45"},          {-44.5f, "-45"},        {179.5f, "180"},
                 {-0.5f, "-1"},          {-0.4f, "0"},           {0.49f, "0"},
                 {0.49999997f, "1"},     {std::nanf(""), "nan"}, {-1e30f, "-Huge!"},
                 {-999998.0f, "-999998"}};
    for (const auto& c : cases) EXPECT_EQ(formatted(degrees, c.value, 7), c.text) << c.value;
}

} // namespace
