// Bad input to zelrender: every case ends with a message, a non-zero exit,
// and no output file (not even a temporary one) left behind.

#include "TestSupport.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

class ZelrenderRefuses : public ::testing::Test {
protected:
    void SetUp() override {
        writeAudio(dir.file("mono.wav"),
                   {1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, testNoise(4800, 1)});
        writeAudio(dir.file("stereo.wav"),
                   {2, 48000, SF_FORMAT_WAV | SF_FORMAT_PCM_16, testNoise(9600, 2)});
        dir.writeText("notaudio.wav", "this is text, not sound\n");
        before = dir.entries();
    }

    // Runs zelrender with the plug-in under test and the given arguments.
    void expectRefused(std::vector<std::string> arguments, int exitCode,
                       const std::string& messagePart) {
        arguments.insert(arguments.begin(), {"--plugin", ZEL_PLUGIN_PATH});
        expectRefusedAsIs(arguments, exitCode, messagePart);
    }

    void expectRefusedAsIs(const std::vector<std::string>& arguments, int exitCode,
                           const std::string& messagePart) {
        const RunResult result = runZelrender(arguments);
        EXPECT_EQ(result.exitCode, exitCode) << result.err;
        EXPECT_NE(result.err.find("zelrender: "), std::string::npos) << result.err;
        EXPECT_NE(result.err.find(messagePart), std::string::npos) << "message was: " << result.err;
        EXPECT_EQ(dir.entries(), before) << "a file was left behind";
    }

    std::string out() const { return dir.file("out.wav"); }

    ScratchDir dir;
    std::vector<std::string> before;
};

TEST_F(ZelrenderRefuses, InputsItCannotRead) {
    expectRefused({dir.file("missing.wav"), "-o", out()}, 1, "cannot read input");
    expectRefused({dir.file("notaudio.wav"), "-o", out()}, 1, "cannot read input");
    expectRefused({dir.file(""), "-o", out()}, 1, "not a regular file");
    expectRefused({dir.file("stereo.wav"), "-o", out()}, 1, "has 2 channels");
}

TEST_F(ZelrenderRefuses, MalformedCommandLines) {
    const std::string in = dir.file("mono.wav");
    expectRefused({in, "-o", out(), "--loudness", "3"}, 2, "unknown option '--loudness'");
    expectRefused({in}, 2, "no output file");
    expectRefused({in, "-o", out(), "--azimuth"}, 2, "--azimuth needs a value");
    expectRefused({in, "-o", out(), "--azimuth", "north"}, 2, "azimuth 'north' is not a number");
    expectRefused({in, "-o", out(), "--distance", "nan"}, 2, "is not a number");
    expectRefused({in, "-o", out(), "--quiet=yes"}, 2, "--quiet takes no value");
    expectRefused({in, dir.file("second.wav"), "-o", out()}, 2, "more than one input");
    expectRefused({in, "-o", out(), "--azimuth", "10", "--x", "1"}, 2, "not both");
    expectRefused({in, "-o", in}, 2, "overwrite the input");
    expectRefused({"-o", out(), "--azimuth", "10"}, 2, "demo has its own trajectory");
    expectRefused({"--info", "-o", out()}, 2, "--info writes no file");
}

TEST_F(ZelrenderRefuses, ValuesOutOfRange) {
    const std::string in = dir.file("mono.wav");
    expectRefused({in, "-o", out(), "--azimuth", "360.5"}, 2, "azimuth 360.5 is outside");
    expectRefused({in, "-o", out(), "--azimuth=-361"}, 2, "azimuth -361 is outside");
    expectRefused({in, "-o", out(), "--elevation", "-90.01"}, 2, "elevation -90.01 is outside");
    expectRefused({in, "-o", out(), "--distance", "4.2"}, 2, "distance 4.2 is outside");
    expectRefused({in, "-o", out(), "--distance", "-0.1"}, 2, "distance -0.1 is outside");
    expectRefused({in, "-o", out(), "--nfc", "0.4"}, 2, "compensation distance 0.4 is outside");
    expectRefused({in, "-o", out(), "--x", "4.5"}, 2, "x 4.5 is outside");
    expectRefused({in, "-o", out(), "--z", "-5"}, 2, "z -5 is outside");
    // Each coordinate is in range, but the point is 4.24 m from the centre.
    expectRefused({in, "-o", out(), "--x", "3", "--y", "3"}, 2, "beyond the 4 m limit");
    expectRefused({in, "-o", out(), "--program", "17"}, 2, "program 17 is outside 1 .. 16");
    expectRefused({in, "-o", out(), "--program", "0"}, 2, "program 0 is outside");
    expectRefused({in, "-o", out(), "--block", "0"}, 2, "block size 0 is outside");
}

TEST_F(ZelrenderRefuses, BrokenPathFiles) {
    const std::string in = dir.file("mono.wav");
    auto refusePath = [&](const std::string& text, const std::string& messagePart) {
        // The path file itself belongs to the directory's expected contents.
        dir.writeText("path.txt", text);
        before = dir.entries();
        expectRefused({in, "-o", out(), "--path", dir.file("path.txt")}, 2, messagePart);
    };
    refusePath("# no header\n0 0 0 1\n", "path.txt:2: the first line must be 'polar'");
    refusePath("polar\n0 0 0 1\n0.5 10 0\n", "path.txt:3: expected 4 values");
    refusePath("polar\n1 0 0 1\n0.5 10 0 1\n", "path.txt:3: time 0.5 is earlier");
    refusePath("polar\n-0.1 0 0 1\n", "path.txt:2: time -0.1 is negative");
    refusePath("polar\n0 0 95 1\n", "path.txt:2: elevation 95 is outside");
    refusePath("polar\n0 0 0 far\n", "path.txt:2: distance 'far' is not a number");
    refusePath("cartesian\n# t x y z\n0 1 1 1\n\n0.2 0 4 1\n", "path.txt:5: position (0, 4, 1)");
    refusePath("polar\n# nothing else\n", "the path has no positions");
    expectRefused({in, "-o", out(), "--path", dir.file("nopath.txt")}, 1, "cannot read path file");
    expectRefused({in, "-o", out(), "--path", dir.file("path.txt"), "--azimuth", "3"}, 2,
                  "cannot be combined");
}

TEST_F(ZelrenderRefuses, PluginsItCannotUse) {
    const std::string in = dir.file("mono.wav");
    expectRefusedAsIs({in, "-o", out(), "--plugin", dir.file("none.so")}, 1, "cannot load plug-in");
    expectRefusedAsIs({in, "-o", out(), "--plugin", dir.file("notaudio.wav")}, 1,
                      "cannot load plug-in");
    expectRefusedAsIs({in, "-o", out(), "--plugin", FIXTURE_NO_ENTRY}, 1,
                      "exports no VSTPluginMain");
    expectRefusedAsIs({in, "-o", out(), "--plugin", FIXTURE_STEREO_OUT}, 1,
                      "2 outputs; zelrender needs 1 input and 16 outputs");
    expectRefusedAsIs({"--info", "--plugin", FIXTURE_STEREO_OUT}, 1, "2 outputs");
}

TEST_F(ZelrenderRefuses, OutputInAMissingDirectory) {
    expectRefused({dir.file("mono.wav"), "-o", dir.file("nowhere/out.wav")}, 1, "cannot write");
}

// The input breaks off in the middle of the render, after the output has
// been started: the unfinished output goes, an earlier file stays as it was.
TEST_F(ZelrenderRefuses, InputBreakingOffMidRenderKeepsAnEarlierOutputFile) {
    writeAudio(dir.file("long.flac"),
               {1, 48000, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, testNoise(6 * 48000, 3)});
    ASSERT_EQ(truncate(dir.file("long.flac").c_str(), 100000), 0);
    dir.writeText("out.wav", "an earlier result");
    before = dir.entries();
    expectRefused({dir.file("long.flac"), "-o", out()}, 1, "cannot read input");
    std::ifstream in(out());
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "an earlier result");
}

TEST(ZelrenderHelp, DescribesOutputFormatAndPathFile) {
    const RunResult result = runZelrender({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* part : {"ACN", "SN3D", "16 channels", "32-bit float WAV", "--azimuth DEG",
                             "--nfc M|off", "--path FILE", "polar:", "cartesian:", "--info"}) {
        EXPECT_NE(result.out.find(part), std::string::npos) << part;
    }
}

} // namespace
