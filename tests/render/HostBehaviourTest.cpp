// What zelrender sends a plug-in, in which order, seen from a plug-in that
// records every request: the host's start-up sequence, the parameter writes,
// and the block splits at the automation time stamps; and the path file
// those time stamps come from.

#include "AutomationPath.h"
#include "ParameterMapping.h"
#include "TestSupport.h"
#include "measure.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <tuple>

namespace {

std::string param(int index, float value) {
    char text[64];
    std::snprintf(text, sizeof(text), "param %d %.9g", index, value);
    return text;
}

class ZelrenderHostBehaviour : public ::testing::Test {
protected:
    void SetUp() override {
        writeAudio(dir.file("in.wav"), {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, input});
        setenv("ZEL_RECORDER_LOG", dir.file("requests.log").c_str(), 1);
    }
    void TearDown() override { unsetenv("ZEL_RECORDER_LOG"); }

    std::vector<std::string> requests(std::vector<std::string> options) {
        options.insert(options.begin(), {"--plugin", FIXTURE_RECORDER, dir.file("in.wav"), "-o",
                                         dir.file("out.wav")});
        const RunResult result = runZelrender(options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return lines(dir.readText("requests.log"));
    }

    ScratchDir dir;
    const std::vector<float> input = measure::noise(1000, 7);
    ParameterMapping mapping;
};

TEST_F(ZelrenderHostBehaviour, StartsLikeADawAndSplitsBlocksAtTimeStamps) {
    dir.writeText("path.txt", "# comments, blank lines, tabs and exponents are fine\n\n"
                              "  polar   # the form\n"
                              "0.004    0  0 off  # the first position also holds before it\n"
                              "\t4.25e-3 90 0 2   # frame 204, inside the third block\n"
                              "0.00425 180 0 2    # same frame: both sent, in file order\n"
                              "0.010011 -90 10 1  # frame 480.528, rounded to 481\n"
                              "0.0125  0  0 1     # frame 600, on a block boundary\n"
                              "5.0     0  0 3     # after the end: never sent\n");
    const std::vector<std::string> log = requests(
        {"--block", "100", "--program", "3", "--nfc", "1", "--path", dir.file("path.txt")});

    std::vector<std::string> expected = {"host version 2400", "open",
                                         "rate 48000",        "block 100",
                                         "program 2",         param(6, mapping.compensation(1.0))};
    auto append = [&](const std::vector<std::string>& more) {
        expected.insert(expected.end(), more.begin(), more.end());
    };
    auto position = [&](double azimuth, double elevation, std::optional<double> distance) {
        append({param(0, mapping.azimuth(azimuth)), param(1, mapping.elevation(elevation)),
                param(5, mapping.distance(distance))});
    };
    position(0, 0, std::nullopt);
    append({"mains 1", "host rate 48000 block 100", "process 100", "process 100", "process 4"});
    position(90, 0, 2.0);
    position(180, 0, 2.0);
    append({"process 96", "process 100", "process 81"});
    position(-90, 10, 1.0);
    append({"process 19", "process 100"});
    position(0, 0, 1.0);
    append({"process 100", "process 100", "process 100", "process 100", "mains 0", "close"});
    EXPECT_EQ(log, expected);

    // The plug-in copies its input to output 0: the split blocks were handed
    // over at the right offsets and written back in order.
    const AudioData out = readAudio(dir.file("out.wav"));
    ASSERT_EQ(out.channels, 16);
    ASSERT_EQ(out.frames(), 1000);
    for (long long i = 0; i < out.frames(); ++i) ASSERT_EQ(out.samples[i * 16], input[i]) << i;
}

} // namespace
