// What zelrender sends a plug-in, in which order, seen from a plug-in that
// records every request: the host's start-up sequence, the parameter writes,
// and the block splits at the automation time stamps.

#include "ParameterMapping.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

std::vector<std::string> lines(const std::string& path) {
    std::ifstream in(path);
    std::vector<std::string> result;
    for (std::string line; std::getline(in, line);) result.push_back(line);
    return result;
}

std::string param(int index, float value) {
    char text[64];
    std::snprintf(text, sizeof(text), "param %d %.9g", index, value);
    return text;
}

class ZelrenderHostBehaviour : public ::testing::Test {
protected:
    void SetUp() override {
        input = testNoise(1000, 7);
        writeAudio(dir.file("in.wav"), {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, input});
        setenv("ZEL_RECORDER_LOG", dir.file("requests.log").c_str(), 1);
    }
    void TearDown() override { unsetenv("ZEL_RECORDER_LOG"); }

    RunResult render(std::vector<std::string> options) {
        options.insert(options.begin(), {"--plugin", FIXTURE_RECORDER, dir.file("in.wav"), "-o",
                                         dir.file("out.wav")});
        return runZelrender(options);
    }

    ScratchDir dir;
    std::vector<float> input;
    ParameterMapping mapping;
};

TEST_F(ZelrenderHostBehaviour, StartsLikeADawAndSplitsBlocksAtTimeStamps) {
    dir.writeText("path.txt", "polar\n"
                              "0.004    0  0 off  # the first position also holds before it\n"
                              "0.00425 90  0 2    # frame 204, inside the third block\n"
                              "0.00425 180 0 2    # same frame: both sent, in file order\n"
                              "0.01    270 10 1   # frame 480\n"
                              "0.0125  0  0 1     # frame 600, on a block boundary\n"
                              "5.0     0  0 3     # after the end: never sent\n");
    const RunResult result =
        render({"--block", "100", "--program", "3", "--nfc", "1", "--path", dir.file("path.txt")});
    ASSERT_EQ(result.exitCode, 0) << result.err;

    auto position = [&](double azimuth, double elevation, std::optional<double> distance) {
        return std::vector<std::string>{param(0, mapping.azimuth(azimuth)),
                                        param(1, mapping.elevation(elevation)),
                                        param(5, mapping.distance(distance))};
    };
    std::vector<std::string> expected = {"host version 2400", "open",
                                         "rate 48000",        "block 100",
                                         "program 2",         param(6, mapping.compensation(1.0))};
    auto append = [&](const std::vector<std::string>& more) {
        expected.insert(expected.end(), more.begin(), more.end());
    };
    append(position(0, 0, std::nullopt));
    append({"mains 1", "host rate 48000 block 100", "process 100", "process 100", "process 4"});
    append(position(90, 0, 2.0));
    append(position(180, 0, 2.0));
    append({"process 96", "process 100", "process 80"});
    append(position(270, 10, 1.0));
    append({"process 20", "process 100"});
    append(position(0, 0, 1.0));
    append({"process 100", "process 100", "process 100", "process 100", "mains 0", "close"});
    EXPECT_EQ(lines(dir.file("requests.log")), expected);

    // The plug-in copies its input to output 0: the split blocks were handed
    // over at the right offsets and written back in order.
    const AudioData out = readAudio(dir.file("out.wav"));
    ASSERT_EQ(out.channels, 16);
    ASSERT_EQ(out.frames(), 1000);
    for (long long i = 0; i < out.frames(); ++i) ASSERT_EQ(out.samples[i * 16], input[i]) << i;
}

TEST_F(ZelrenderHostBehaviour, CartesianPositionStartsFromTheCentre) {
    ASSERT_EQ(render({"--x", "1", "--y", "-2", "--z", "0.5"}).exitCode, 0);
    const std::vector<std::string> log = lines(dir.file("requests.log"));
    const std::vector<std::string> writes = {
        param(6, 1.0f), param(5, mapping.distance(0.0)), param(2, mapping.coordinate(kXParam, 1)),
        param(3, mapping.coordinate(kYParam, -2)), param(4, mapping.coordinate(kZParam, 0.5))};
    ASSERT_GE(log.size(), 4 + writes.size() + 1);
    EXPECT_EQ(std::vector<std::string>(log.begin() + 4, log.begin() + 4 + writes.size()), writes);
    EXPECT_EQ(log[4 + writes.size()], "mains 1");
}

TEST_F(ZelrenderHostBehaviour, WithoutOptionsTheSourceIsAheadAndFar) {
    ASSERT_EQ(render({"--block", "1000"}).exitCode, 0);
    const std::vector<std::string> expected = {"host version 2400",
                                               "open",
                                               "rate 48000",
                                               "block 1000",
                                               param(6, 1.0f),
                                               param(0, 0.0f),
                                               param(1, 0.5f),
                                               param(5, 0.0f),
                                               "mains 1",
                                               "host rate 48000 block 1000",
                                               "process 1000",
                                               "mains 0",
                                               "close"};
    EXPECT_EQ(lines(dir.file("requests.log")), expected);
}

} // namespace
