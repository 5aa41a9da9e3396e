// zelrender's command line: bad input ends with a message, a non-zero exit
// and no output file (not even a temporary one) left behind; --info shows
// what a host sees of the plug-in.

#include "TestSupport.h"
#include "measure.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <sstream>
#include <unistd.h>

namespace {

struct Refusal {
    std::string arguments; // separated by blanks; IN is the mono input, OUT the output
    int exitCode;          // and DIR/name a file in the scratch directory
    std::string message;
};

class ZelrenderRefuses : public ::testing::Test {
protected:
    void SetUp() override {
        writeAudio(dir.file("mono.wav"),
                   {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, measure::noise(4800, 1)});
        writeAudio(dir.file("stereo.wav"),
                   {2, 48000, SF_FORMAT_WAV | SF_FORMAT_PCM_16, measure::noise(9600, 2)});
        dir.writeText("notaudio.wav", "this is text, not sound\n");
        writeAudio(dir.file("empty.wav"), {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, {}});
        // The input under other names.
        ASSERT_EQ(symlink("mono.wav", dir.file("link.wav").c_str()), 0);
        ASSERT_EQ(link(dir.file("mono.wav").c_str(), dir.file("hard.wav").c_str()), 0);
    }

    // Each case with the plug-in under test put first unless withPlugin is false.
    void expectRefused(const std::vector<Refusal>& cases, bool withPlugin = true) {
        const std::vector<std::string> before = dir.entries();
        for (const Refusal& c : cases) {
            std::vector<std::string> arguments;
            if (withPlugin) arguments = {"--plugin", ZEL_PLUGIN_PATH};
            std::istringstream words(c.arguments);
            for (std::string a; words >> a;) {
                arguments.push_back(a == "IN"                 ? dir.file("mono.wav")
                                    : a == "OUT"              ? dir.file("out.wav")
                                    : a.rfind("DIR/", 0) == 0 ? dir.file(a.substr(4))
                                                              : a);
            }
            const RunResult result = runZelrender(arguments);
            EXPECT_EQ(result.exitCode, c.exitCode) << c.message << ": " << result.err;
            EXPECT_NE(result.err.find("zelrender: "), std::string::npos) << result.err;
            EXPECT_NE(result.err.find(c.message), std::string::npos)
                << "message was: " << result.err;
            EXPECT_EQ(dir.entries(), before) << c.message << ": a file was left behind";
        }
    }

    ScratchDir dir;
};

TEST_F(ZelrenderRefuses, InputsItCannotReadAndMalformedCommandLines) {
    expectRefused(
        {{"DIR/missing.wav -o OUT", 1, "cannot read input"},
         {"DIR/notaudio.wav -o OUT", 1, "cannot read input"},
         {"DIR/ -o OUT", 1, "not a regular file"},
         {"DIR/stereo.wav -o OUT", 1, "has 2 channels"},
         {"IN -o DIR/nowhere/out.wav", 1, "cannot write"},
         {"IN -o OUT --loudness 3", 2, "unknown option '--loudness'"},
         {"IN", 2, "no output file"},
         {"IN -o OUT --azimuth", 2, "--azimuth needs a value"},
         {"IN -o OUT --azimuth north", 2, "azimuth 'north' is not a number"},
         {"IN -o OUT --distance nan", 2, "is not a number"},
         {"IN -o OUT --quiet=yes", 2, "--quiet takes no value"},
         {"IN DIR/second.wav -o OUT", 2, "more than one input"},
         {"IN -o OUT --azimuth 10 --x 1", 2, "not both"},
         {"IN -o IN", 2, "overwrite the input"},
         {"IN -o DIR/link.wav", 1, "the render would replace it"},
         {"DIR/hard.wav -o IN", 1, "the render would replace it"},
         {"IN -o DIR/./mono.wav", 1, "the render would replace it"},
         {"IN -o DIR/", 1, "it is a directory"},
         {"DIR/empty.wav -o OUT", 1, "holds no samples"},
         {"-o OUT --azimuth 10", 2, "demo has its own trajectory"},
         {"--info -o OUT", 2, "--info writes no file"},
         {"IN -o OUT --hrtf DIR/notaudio.wav", 2, "give --binaural FILE too"},
         {"IN -o OUT --binaural DIR/h.wav --hrtf DIR/none.sofa", 1, "cannot read HRTF set"},
         {"IN -o OUT --binaural DIR/h.wav --hrtf DIR/notaudio.wav", 1, "cannot use"}});
}

TEST_F(ZelrenderRefuses, ValuesOutOfRange) {
    expectRefused({{"IN -o OUT --azimuth 360.5", 2, "azimuth 360.5 is outside"},
                   {"IN -o OUT --azimuth=-361", 2, "azimuth -361 is outside"},
                   {"IN -o OUT --elevation -90.01", 2, "elevation -90.01 is outside"},
                   {"IN -o OUT --distance 4.2", 2, "distance 4.2 is outside"},
                   {"IN -o OUT --distance -0.1", 2, "distance -0.1 is outside"},
                   {"IN -o OUT --nfc 0.4", 2, "compensation distance 0.4 is outside"},
                   {"IN -o OUT --x 4.5", 2, "x 4.5 is outside"},
                   {"IN -o OUT --z -5", 2, "z -5 is outside"},
                   // Each coordinate is in range, but the point is 4.24 m from the centre.
                   {"IN -o OUT --x 3 --y 3", 2, "beyond the 4 m limit"},
                   {"IN -o OUT --program 17", 2, "program 17 is outside 1 .. 16"},
                   {"IN -o OUT --program 0", 2, "program 0 is outside"},
                   {"IN -o OUT --block 0", 2, "block size 0 is outside"}});
}

TEST_F(ZelrenderRefuses, BrokenPathFiles) {
    const std::pair<const char*, const char*> files[] = {
        {"# no header\n0 0 0 1\n", "path.txt:2: the first line must be 'polar'"},
        {"polar cartesian\n0 1 2 3\n", "path.txt:1: the first line must be 'polar'"},
        {"polar\n0 0 0 1\n0.5 10 0\n", "path.txt:3: expected 4 values"},
        {"cartesian\n0 1 2 3 4\n", "path.txt:2: expected 4 values"},
        {"polar\n1 0 0 1\n0.5 10 0 1\n", "path.txt:3: time 0.5 is earlier"},
        {"polar\n-0.1 0 0 1\n", "path.txt:2: time -0.1 is negative"},
        {"polar\n0 0 95 1\n", "path.txt:2: elevation 95 is outside"},
        {"polar\n0 0 0 1\n\n# fine so far\n2 0 0 4.5\n",
         "path.txt:5: distance 4.5 is outside 0 .. 4 m"},
        {"polar\n0 0 0 far\n", "path.txt:2: distance 'far' is not a number"},
        {"cartesian\n# t x y z\n0 1 1 1\n\n0.2 0 4 1\n", "path.txt:5: position (0, 4, 1)"},
        {"polar\n# nothing else\n", "the path has no positions"},
        {"", "path.txt: the path has no positions"}};
    for (const auto& [text, message] : files) {
        dir.writeText("path.txt", text);
        expectRefused({{"IN -o OUT --path DIR/path.txt", 2, message}});
    }
    expectRefused({{"IN -o OUT --path DIR/nopath.txt", 1, "cannot read path file"},
                   {"IN -o OUT --path DIR/path.txt --azimuth 3", 2, "cannot be combined"}});
}

TEST_F(ZelrenderRefuses, PluginsItCannotUse) {
    expectRefused({{"IN -o OUT --plugin DIR/none.so", 1, "cannot load plug-in"},
                   {"IN -o OUT --plugin DIR/notaudio.wav", 1, "cannot load plug-in"},
                   {"IN -o OUT --plugin " FIXTURE_NO_ENTRY, 1, "exports no VSTPluginMain"},
                   {"IN -o OUT --plugin " FIXTURE_STEREO_OUT, 1,
                    "2 outputs; zelrender needs 1 input and 16 outputs"},
                   {"--info --plugin " FIXTURE_STEREO_OUT, 1, "2 outputs"}},
                  false);
}

// The input breaks off in the middle of the render, after the output has
// been started: the unfinished output goes, an earlier file stays as it was.
TEST_F(ZelrenderRefuses, InputBreakingOffMidRenderKeepsAnEarlierOutputFile) {
    writeAudio(dir.file("long.flac"),
               {1, 48000, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, measure::noise(6 * 48000, 3)});
    ASSERT_EQ(truncate(dir.file("long.flac").c_str(), 100000), 0);
    dir.writeText("out.wav", "an earlier result");
    expectRefused({{"DIR/long.flac -o OUT", 1, "cannot read input"}});
    EXPECT_EQ(dir.readText("out.wav"), "an earlier result");
}

// Ctrl-C in the middle of a long render: exit with 128 + SIGINT, the
// unfinished output gone, an earlier file as it was.
TEST_F(ZelrenderRefuses, InterruptionKeepsAnEarlierOutputFile) {
    writeAudio(dir.file("long.wav"),
               {1, 48000, SF_FORMAT_WAV | SF_FORMAT_PCM_16, measure::noise(120 * 48000, 4)});
    dir.writeText("out.wav", "an earlier result");
    const std::vector<std::string> before = dir.entries();
    const RunResult result = runZelrender({"--plugin", ZEL_PLUGIN_PATH, dir.file("long.wav"),
                                           "--nfc", "1", "-o", dir.file("out.wav")},
                                          200);
    EXPECT_EQ(result.exitCode, 128 + SIGINT) << result.err;
    EXPECT_EQ(dir.entries(), before);
    EXPECT_EQ(dir.readText("out.wav"), "an earlier result");
}

// Samples that are no numbers and a time stamp far beyond the input are
// rendered (exit 0); the odd samples are counted on standard error.
TEST_F(ZelrenderRefuses, RendersSamplesThatAreNoNumbersAndTimesBeyondTheInput) {
    std::vector<float> samples = measure::noise(4800, 5);
    samples[10] = samples[20] = std::nanf("");
    samples[30] = INFINITY;
    writeAudio(dir.file("odd.wav"), {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, samples});
    dir.writeText("far.txt", "polar\n0 0 0 off\n1e15 90 0 1\n");
    const RunResult result =
        runZelrender({"--plugin", ZEL_PLUGIN_PATH, "-q", dir.file("odd.wav"), "--path",
                      dir.file("far.txt"), "--nfc", "1", "-o", dir.file("odd-out.wav")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.err.find("3 input samples were not numbers"), std::string::npos) << result.err;
    for (float v : readAudio(dir.file("odd-out.wav")).samples) ASSERT_TRUE(std::isfinite(v));
}

// zelrender --info: what a host sees of the plug-in, read through the ABI,
// with the parameters at the position a render would start from. The pin
// labels run in their own letter order, not in the ACN order of the content.
TEST(ZelrenderInfo, IdentityPinsParametersAndPrograms) {
    const RunResult result =
        runZelrender({"--plugin", ZEL_PLUGIN_PATH, "--info", "--azimuth", "-90", "--elevation",
                      "30", "--distance", "1.5", "--nfc", "2"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    std::string expected = "Effect name:    Zelworks Orvalis XY 3 - 3d\n"
                           "Product:        Zelworks Orvalis XY 3 - 3d\n"
                           "Vendor:         ZelWorks\n"
                           "Vendor version: 1000\n"
                           "Unique ID:      'ZX3x' (0x5A583378)\n"
                           "Category:       0 (unknown)\n"
                           "VST version:    2400\n"
                           "Editor:         yes\n"
                           "Replacing:      yes\n"
                           "Inputs: 1\n"
                           "   0  Mono Input\n"
                           "Outputs: 16\n";
    char line[64];
    for (int i = 0; i < 16; ++i) {
        std::snprintf(line, sizeof line, "  %2d  %c\n", i, "WXYZRSTUVKLMNOPQ"[i]);
        expected += line;
    }
    // y = 1.5 m × cos 30° towards azimuth 270° (the right): -1.299 m, truncated.
    expected += "Parameters: 7\n"
                "   0  'Azimuth' = 270 degrees  (normalised 0.75)\n"
                "   1  'Elevation' = 30 degrees  (normalised 0.666667)\n"
                "   2  ' x ' = 0.00 m  (normalised 0.5)\n"
                "   3  ' y ' = -1.29 m  (normalised 0.33762)\n"
                "   4  ' z ' = 0.75 m  (normalised 0.59375)\n"
                "   5  'Distance' = 1.50 m  (normalised 0.625)\n"
                "   6  'Compensation Distance' = 2.00 m  (normalised 0.428571)\n"
                "Programs: 16\n";
    for (int i = 1; i <= 16; ++i) {
        std::snprintf(line, sizeof line, "  %2d  Prog %d\n", i, i);
        expected += line;
    }
    EXPECT_EQ(result.out, expected);
}

} // namespace
