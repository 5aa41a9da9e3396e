// zelrender --info: what a host sees of the plug-in, read through the ABI.

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::vector<std::string> lines(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);) result.push_back(line);
    return result;
}

// The lines after the one that starts with heading, up to the next heading.
std::vector<std::string> section(const std::string& text, const std::string& heading) {
    std::vector<std::string> all = lines(text), result;
    bool inside = false;
    for (const std::string& line : all) {
        if (line.rfind(heading, 0) == 0) {
            inside = true;
            result.push_back(line);
        } else if (inside && line.rfind("  ", 0) == 0) {
            result.push_back(line);
        } else if (inside) {
            break;
        }
    }
    return result;
}

RunResult info(std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"--plugin", ZEL_PLUGIN_PATH, "--info"});
    return runZelrender(options);
}

TEST(ZelrenderInfo, IdentityAsTheHostSeesIt) {
    const RunResult result = info();
    ASSERT_EQ(result.exitCode, 0) << result.err;
    for (const char* line :
         {"Effect name:    Zelworks Orvalis XY 3 - 3d",
          "Product:        Zelworks Orvalis XY 3 - 3d", "Vendor:         ZelWorks",
          "Vendor version: 1000", "Unique ID:      'ZX3x' (0x5A583378)",
          "Category:       0 (unknown)", "VST version:    2400", "Replacing:      yes"}) {
        EXPECT_NE(result.out.find(std::string(line) + "\n"), std::string::npos) << line;
    }
}

TEST(ZelrenderInfo, PinsParametersAndPrograms) {
    const RunResult result = info();
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(section(result.out, "Inputs:"),
              (std::vector<std::string>{"Inputs: 1", "   0  Mono Input"}));

    // The pin labels run in their own letter order, not in the ACN order of
    // the content.
    const std::vector<std::string> outputs = section(result.out, "Outputs:");
    ASSERT_EQ(outputs.size(), 17u);
    EXPECT_EQ(outputs[0], "Outputs: 16");
    const char* labels = "WXYZRSTUVKLMNOPQ";
    for (int i = 0; i < 16; ++i) {
        char expected[32];
        std::snprintf(expected, sizeof(expected), "  %2d  %c", i, labels[i]);
        EXPECT_EQ(outputs[i + 1], expected);
    }

    EXPECT_EQ(
        section(result.out, "Parameters:"),
        (std::vector<std::string>{
            "Parameters: 7", "   0  'Azimuth' = 0 degrees  (normalised 0)",
            "   1  'Elevation' = 0 degrees  (normalised 0.5)",
            "   2  ' x ' = 4.00 m  (normalised 1)", "   3  ' y ' = 0.00 m  (normalised 0.5)",
            "   4  ' z ' = 0.00 m  (normalised 0.5)", "   5  'Distance' = off m  (normalised -0)",
            "   6  'Compensation Distance' = off m  (normalised 1)"}));

    const std::vector<std::string> programs = section(result.out, "Programs:");
    ASSERT_EQ(programs.size(), 17u);
    EXPECT_EQ(programs[1], "   1  Prog 1");
    EXPECT_EQ(programs[16], "  16  Prog 16");
}

TEST(ZelrenderInfo, ShowsThePositionARenderWouldStartFrom) {
    const RunResult result =
        info({"--azimuth", "-90", "--elevation", "30", "--distance", "1.5", "--nfc", "2"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::vector<std::string> parameters = section(result.out, "Parameters:");
    ASSERT_EQ(parameters.size(), 8u);
    EXPECT_EQ(parameters[1].substr(0, 30), "   0  'Azimuth' = 270 degrees ");
    EXPECT_EQ(parameters[2].substr(0, 31), "   1  'Elevation' = 30 degrees ");
    // y = 1.5 m × cos 30° towards azimuth 270° (the right): -1.299 m.
    EXPECT_EQ(parameters[4].substr(0, 22), "   3  ' y ' = -1.29 m ");
    EXPECT_EQ(parameters[5].substr(0, 21), "   4  ' z ' = 0.75 m ");
    EXPECT_EQ(parameters[6].substr(0, 26), "   5  'Distance' = 1.50 m ");
    EXPECT_EQ(parameters[7].substr(0, 39), "   6  'Compensation Distance' = 2.00 m ");
}

} // namespace
