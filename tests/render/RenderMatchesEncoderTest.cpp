// A render through zelrender equals, bit for bit, the plug-in driven directly
// with the same parameter sequence: the host loses nothing,
// reorders nothing and splits blocks exactly at the automation time stamps.

#include "AutomationPath.h"
#include "ParameterMapping.h"
#include "Position.h"
#include "TestSupport.h"
#include "TimedWrites.h"
#include "measure.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstring>
#include <sstream>

namespace {

constexpr int kChannels = 16;

// Interleaved output of the plug-in driven directly, as a host would: opened,
// rate and block size set, the program selected, then the writes (the
// compensation, then each position, the first at frame 0; their order is
// checked in HostBehaviourTest), each made before the frame it falls on, and
// switched on after the writes due at frame 0. (How the input is cut into
// blocks does not change the output: PluginHostTest shows that; so a wrong
// block split shows here only through writes made at the wrong frames.)
std::vector<float> reference(const std::vector<float>& input, double rate,
                             std::optional<int> program, std::optional<double> compensation,
                             const AutomationPath& path) {
    LoadedPlugin loaded(ZEL_PLUGIN_PATH);
    VstPlugin& plugin = loaded.plugin();
    plugin.open();
    plugin.setSampleRate(static_cast<float>(rate));
    plugin.setBlockSize(64);
    if (program) plugin.setProgram(*program - 1);

    ParameterMapping mapping;
    std::vector<TimedWrite> writes{{0, kCompensationParam, mapping.compensation(compensation)}};
    for (std::size_t i = 0; i < path.points().size(); ++i) {
        const long long frame = i == 0 ? 0 : std::llround(path.points()[i].seconds * rate);
        for (const ParameterWrite& w : positionWrites(path.points()[i].position, mapping))
            writes.push_back({frame, w.index, w.value});
    }
    BlockProcessor buffers(plugin, 1, kChannels, static_cast<int>(input.size()));
    std::copy(input.begin(), input.end(), buffers.input(0));
    playWithWrites(plugin, buffers, writes, 64);
    plugin.setMains(false);
    std::vector<float> interleaved(input.size() * kChannels);
    for (std::size_t i = 0; i < input.size(); ++i) {
        for (int c = 0; c < kChannels; ++c) interleaved[i * kChannels + c] = buffers.output(c)[i];
    }
    return interleaved;
}

struct RenderCase {
    const char* name;
    const char* options; // separated by blanks; PATH stands for the path file
    double seconds;      // of input
    int rate, format;
    std::optional<int> program;
    std::optional<double> compensation;
    const char* path; // the render's position or path as a path file
};

void PrintTo(const RenderCase& c, std::ostream* os) {
    *os << c.name;
}

class ZelrenderMatchesEncoder : public ::testing::TestWithParam<RenderCase> {};

TEST_P(ZelrenderMatchesEncoder, BitForBit) {
    const RenderCase& c = GetParam();
    ScratchDir dir;
    std::vector<std::string> arguments = {"--plugin", ZEL_PLUGIN_PATH, "-q", "-o",
                                          dir.file("out.wav")};
    std::istringstream options(c.options);
    for (std::string o; options >> o;) arguments.push_back(o == "PATH" ? dir.file("path.txt") : o);
    dir.writeText("path.txt", c.path);
    std::istringstream pathText(c.path);
    const AutomationPath path = AutomationPath::parse(pathText, "path");
    writeAudio(dir.file("in"),
               {1, c.rate, c.format, measure::noise(std::llround(c.seconds * c.rate), c.rate)});
    // What the encoder gets is what libsndfile reads back (16-bit formats are
    // quantised on the way in).
    const std::vector<float> input = readAudio(dir.file("in")).samples;
    arguments.push_back(dir.file("in"));
    const RunResult result = runZelrender(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.err;

    const AudioData out = readAudio(dir.file("out.wav"));
    const std::vector<float> expected = reference(input, c.rate, c.program, c.compensation, path);
    ASSERT_EQ(out.channels, kChannels);
    ASSERT_EQ(out.sampleRate, c.rate);
    ASSERT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    ASSERT_EQ(out.samples.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(std::memcmp(&out.samples[i], &expected[i], sizeof(float)), 0)
            << "first difference at frame " << i / kChannels << ", channel " << i % kChannels
            << ": " << out.samples[i] << " instead of " << expected[i];
    }
    float peak = 0; // and the comparison was not one of silences
    for (float v : out.samples) peak = std::max(peak, std::fabs(v));
    EXPECT_GT(peak, 0.05f);
    // A time-stamped PEAK chunk would make every render of the same input differ.
    const std::string header = dir.readText("out.wav").substr(0, 512);
    EXPECT_EQ(header.compare(0, 4, "RIFF"), 0);
    EXPECT_EQ(header.find("PEAK"), std::string::npos);
}

constexpr int kWavFloat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
const RenderCase kCases[] = {
    {"FixedPolarPositionInAProgramWithCompensation",
     "--program 3 --azimuth 135 --elevation -20 --distance 1.2 --nfc 1.5 --block 256", 1.3, 44100,
     kWavFloat, 3, 1.5, "polar\n0 135 -20 1.2\n"},
    // Time stamps inside blocks and on their edges, two at the same time, the
    // source moving in from the far limit (where the filters change mode) and
    // out again, and a last point after the end.
    {"PolarPathAcrossTheFarLimit", "--path PATH --nfc 1 --block 100", 0.8, 22050, kWavFloat,
     std::nullopt, 1.0,
     "polar\n0.1 0 0 off\n0.2 45 10 3.5\n0.31 90 20 1\n0.31 100 20 0.5\n0.5 200 -45 0\n"
     "0.6 -90 90 off\n0.75 -10 0 2\n9 0 0 1\n"},
    {"CartesianPathThroughTheCentreFromFlacWithoutCompensation", "--path PATH --block 64", 0.3,
     48000, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, std::nullopt, std::nullopt,
     "cartesian\n0 3 1 0\n0.05 1 0.3 0.1\n0.1 0 0 0\n0.15 -1 -0.3 -0.1\n0.2 -3 -1 0\n"
     "0.25 0 4 0\n"},
};

INSTANTIATE_TEST_SUITE_P(Renders, ZelrenderMatchesEncoder, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
