// The path file format: forms, comments, "off", and where a position lands.

#include "AutomationPath.h"
#include "BlockRenderer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

AutomationPath parse(const std::string& text) {
    std::istringstream in(text);
    return AutomationPath::parse(in, "test.path");
}

TEST(ZelrenderPathFile, ReadsPolarLinesWithCommentsAndOff) {
    const AutomationPath path = parse("# a trajectory\n\n  polar   # form\n"
                                      "0   -90  10  off\n"
                                      "\t1.5e0 359.5 -90 0.25 # closest\n");
    ASSERT_EQ(path.points().size(), 2u);
    const auto& first = std::get<PolarPosition>(path.points()[0].position);
    EXPECT_EQ(path.points()[0].seconds, 0.0);
    EXPECT_EQ(first.azimuth, -90.0);
    EXPECT_EQ(first.elevation, 10.0);
    EXPECT_FALSE(first.distance.has_value());
    const auto& second = std::get<PolarPosition>(path.points()[1].position);
    EXPECT_EQ(path.points()[1].seconds, 1.5);
    EXPECT_EQ(second.distance, 0.25);
}

TEST(ZelrenderPathFile, ReadsCartesianLines) {
    const AutomationPath path = parse("cartesian\n0 1 -2 0.5\n0 0 0 0\n");
    ASSERT_EQ(path.points().size(), 2u);
    const auto& first = std::get<CartesianPosition>(path.points()[0].position);
    EXPECT_EQ(first.x, 1.0);
    EXPECT_EQ(first.y, -2.0);
    EXPECT_EQ(first.z, 0.5);
}

TEST(ZelrenderPathFile, ErrorsNameTheLine) {
    try {
        parse("polar\n0 0 0 1\n\n# fine so far\n2 0 0 4.5\n");
        FAIL() << "out-of-range distance accepted";
    } catch (const ValueError& error) {
        EXPECT_STREQ(error.what(), "test.path:5: distance 4.5 is outside 0 .. 4 m");
    }
    EXPECT_THROW(parse("cartesian\n0 1 2 3 4\n"), ValueError);
    EXPECT_THROW(parse("polar cartesian\n0 1 2 3\n"), ValueError);
    EXPECT_THROW(parse(""), ValueError);
}

TEST(ZelrenderSchedule, PathPositionsLandOnRoundedFramesFirstAtZero) {
    ParameterMapping mapping;
    ParameterSchedule schedule;
    schedule.add(0, {{kCompensationParam, 1.0f}});
    schedule.addPath(parse("polar\n0.5 0 0 off\n0.75001 90 0 1\n0.7504 180 0 1\n"), 1000.0,
                     mapping);
    const std::vector<ParameterChange>& changes = schedule.changes();
    ASSERT_EQ(changes.size(), 10u);
    EXPECT_EQ(changes[0].write.index, kCompensationParam);
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(changes[i].frame, 0) << i;
    for (int i = 4; i <= 9; ++i) EXPECT_EQ(changes[i].frame, 750) << i;
    EXPECT_EQ(changes[4].write.value, mapping.azimuth(90));
    EXPECT_EQ(changes[7].write.value, mapping.azimuth(180));
}

} // namespace
