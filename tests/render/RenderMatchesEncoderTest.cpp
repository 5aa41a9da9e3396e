// A render through zelrender and the plug-in equals, bit for bit, the encoder
// driven directly with the same parameter sequence: the host loses nothing,
// reorders nothing and splits blocks exactly at the automation time stamps.

#include "AmbiEncoderClass.h"
#include "AutomationPath.h"
#include "DemoScene.h"
#include "ParameterMapping.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

constexpr int kChannels = 16;
constexpr int kParameters = 7;
constexpr int kPrograms = 16;

// The encoder with the plug-in's handling around it: the program bank that
// every parameter write refreshes from the encoder, program switches that
// replay a program through those writes, and the switch-on resets.
class EncoderAsThePluginDrivesIt {
public:
    EncoderAsThePluginDrivesIt() : encoder(kAmbi3P) {
        programs.fill({0.0f, 0.5f, 1.0f, 0.5f, 0.5f, 0.0f, 1.0f});
        setProgram(0);
        encoder.resume(); // once by the effect's constructor,
        encoder.resume(); // once more when the editor is attached
    }

    void setSampleRate(float rate) { encoder.setfs(rate); }
    void switchOn() { encoder.resume(); }

    void setProgram(int index) {
        current = index;
        // Each write refreshes the whole program, so later values are read
        // only after the earlier writes have been applied.
        for (int k = 0; k < kParameters; ++k) setParameter(k, programs[current][k]);
    }

    void setParameter(int index, float value) {
        programs[current][index] = value;
        switch (index) {
        case 0:
            encoder.setazim(value);
            break;
        case 1:
            encoder.setelev(value);
            break;
        case 2:
            encoder.setx(value);
            break;
        case 3:
            encoder.sety(value);
            break;
        case 4:
            encoder.setz(value);
            break;
        case 5:
            encoder.setdist(value);
            break;
        case 6:
            encoder.setNFC(value);
            break;
        }
        programs[current] = {encoder.getazim(), encoder.getelev(), encoder.getx(),  encoder.gety(),
                             encoder.getz(),    encoder.getdist(), encoder.getNFC()};
    }

    void process(float* input, float** outputs, int frames) {
        encoder.process(&input, outputs, frames);
    }

private:
    ZelAmbisonicEncoder encoder;
    std::array<std::array<float, kParameters>, kPrograms> programs{};
    int current = 0;
};

struct Write {
    long long frame;
    int index;
    float value;
};

// The parameter writes for one position, in the order zelrender documents.
void addPosition(std::vector<Write>& writes, long long frame, const SourcePosition& position,
                 ParameterMapping& mapping) {
    if (const auto* p = std::get_if<PolarPosition>(&position)) {
        writes.push_back({frame, kAzimuthParam, mapping.azimuth(p->azimuth)});
        writes.push_back({frame, kElevationParam, mapping.elevation(p->elevation)});
        writes.push_back({frame, kDistanceParam, mapping.distance(p->distance)});
        return;
    }
    const auto& c = std::get<CartesianPosition>(position);
    writes.push_back({frame, kDistanceParam, mapping.distance(0.0)});
    writes.push_back({frame, kXParam, mapping.coordinate(kXParam, c.x)});
    writes.push_back({frame, kYParam, mapping.coordinate(kYParam, c.y)});
    writes.push_back({frame, kZParam, mapping.coordinate(kZParam, c.z)});
}

std::vector<Write> writesFor(std::optional<double> compensation, const AutomationPath& path,
                             double rate) {
    ParameterMapping mapping;
    std::vector<Write> writes{{0, kCompensationParam, mapping.compensation(compensation)}};
    for (std::size_t i = 0; i < path.points().size(); ++i) {
        const long long frame = i == 0 ? 0 : std::llround(path.points()[i].seconds * rate);
        addPosition(writes, frame, path.points()[i].position, mapping);
    }
    return writes;
}

// Interleaved output of the encoder over the whole input, in blocks of
// blockSize that are split wherever a write falls inside one.
std::vector<float> reference(const std::vector<float>& input, double rate, int blockSize,
                             std::optional<int> program, const std::vector<Write>& writes) {
    EncoderAsThePluginDrivesIt model;
    model.setSampleRate(static_cast<float>(rate));
    if (program) model.setProgram(*program - 1);
    std::size_t next = 0;
    auto writeUpTo = [&](long long frame) {
        for (; next < writes.size() && writes[next].frame <= frame; ++next) {
            model.setParameter(writes[next].index, writes[next].value);
        }
    };
    writeUpTo(0);
    model.switchOn();

    const long long total = static_cast<long long>(input.size());
    std::vector<std::vector<float>> channels(kChannels, std::vector<float>(input.size()));
    std::vector<float> in(input);
    for (long long start = 0; start < total; start += blockSize) {
        const long long blockEnd = std::min<long long>(start + blockSize, total);
        for (long long from = start; from < blockEnd;) {
            writeUpTo(from);
            long long to = blockEnd;
            if (next < writes.size() && writes[next].frame < blockEnd) to = writes[next].frame;
            std::array<float*, kChannels> out;
            for (int c = 0; c < kChannels; ++c) out[c] = channels[c].data() + from;
            model.process(in.data() + from, out.data(), static_cast<int>(to - from));
            from = to;
        }
    }
    std::vector<float> interleaved(input.size() * kChannels);
    for (std::size_t i = 0; i < input.size(); ++i) {
        for (int c = 0; c < kChannels; ++c) interleaved[i * kChannels + c] = channels[c][i];
    }
    return interleaved;
}

AutomationPath parsePath(const std::string& text) {
    std::istringstream in(text);
    return AutomationPath::parse(in, "path");
}

class ZelrenderMatchesEncoder : public ::testing::Test {
protected:
    std::vector<float> writeInput(double seconds, int rate, int format, unsigned seed) {
        std::vector<float> samples = testNoise(std::llround(seconds * rate), seed);
        writeAudio(dir.file("in"), {1, rate, format, samples});
        // What the encoder gets is what libsndfile reads back (16-bit formats
        // are quantised on the way in).
        return readAudio(dir.file("in")).samples;
    }

    AudioData render(std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"--plugin", ZEL_PLUGIN_PATH, "-q", "-o", dir.file("out.wav")});
        if (!demo) options.push_back(dir.file("in"));
        const RunResult result = runZelrender(options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return readAudio(dir.file("out.wav"));
    }

    static void expectSameBits(const AudioData& rendered, const std::vector<float>& expected,
                               int rate) {
        ASSERT_EQ(rendered.channels, kChannels);
        ASSERT_EQ(rendered.sampleRate, rate);
        ASSERT_EQ(rendered.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
        ASSERT_EQ(rendered.samples.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            if (std::memcmp(&rendered.samples[i], &expected[i], sizeof(float)) != 0) {
                FAIL() << "first difference at frame " << i / kChannels << ", channel "
                       << i % kChannels << ": " << rendered.samples[i] << " instead of "
                       << expected[i];
            }
        }
    }

    ScratchDir dir;
    bool demo = false;
};

TEST_F(ZelrenderMatchesEncoder, FixedPolarPositionWithCompensation) {
    const auto input = writeInput(1.3, 44100, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 11);
    const AudioData out = render({"--azimuth", "135", "--elevation", "-20", "--distance", "1.2",
                                  "--nfc", "1.5", "--block", "256"});
    const auto path = AutomationPath({{0.0, PolarPosition{135, -20, 1.2}}});
    expectSameBits(out, reference(input, 44100, 256, std::nullopt, writesFor(1.5, path, 44100)),
                   44100);
}

TEST_F(ZelrenderMatchesEncoder, FixedCartesianPositionFromFlac) {
    const auto input = writeInput(0.7, 48000, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 12);
    const AudioData out = render({"--x", "-1.5", "--y", "2", "--z", "0.5", "--nfc", "3"});
    const auto path = AutomationPath({{0.0, CartesianPosition{-1.5, 2, 0.5}}});
    expectSameBits(out, reference(input, 48000, 512, std::nullopt, writesFor(3.0, path, 48000)),
                   48000);
}

TEST_F(ZelrenderMatchesEncoder, SelectedProgram) {
    const auto input = writeInput(0.2, 32000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 13);
    const AudioData out = render({"--program", "3", "--azimuth", "30", "--distance", "0.3"});
    const auto path = AutomationPath({{0.0, PolarPosition{30, 0, 0.3}}});
    expectSameBits(out, reference(input, 32000, 512, 3, writesFor(std::nullopt, path, 32000)),
                   32000);
}

TEST_F(ZelrenderMatchesEncoder, PolarPathAcrossTheFarLimit) {
    // Time stamps inside blocks and on their edges, two at the same time,
    // the source moving in from the far limit (where the filters change
    // mode) and out again, and a last point after the end.
    const std::string text = "polar\n"
                             "0.1    0   0  off\n"
                             "0.2   45  10  3.5\n"
                             "0.31  90  20  1\n"
                             "0.31 100  20  0.5\n"
                             "0.5  200 -45  0\n"
                             "0.6  -90  90  off\n"
                             "0.75 -10   0  2\n"
                             "9     0    0  1\n";
    dir.writeText("path.txt", text);
    const auto input = writeInput(0.8, 22050, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 14);
    const AudioData out = render({"--path", dir.file("path.txt"), "--nfc", "1", "--block", "100"});
    expectSameBits(
        out, reference(input, 22050, 100, std::nullopt, writesFor(1.0, parsePath(text), 22050)),
        22050);
}

TEST_F(ZelrenderMatchesEncoder, CartesianPathThroughTheCentreWithoutCompensation) {
    const std::string text = "cartesian\n"
                             "0     3  1  0\n"
                             "0.05  1  0.3 0.1\n"
                             "0.1   0  0  0\n"
                             "0.15 -1 -0.3 -0.1\n"
                             "0.2  -3 -1  0\n"
                             "0.25  0  4  0\n";
    dir.writeText("path.txt", text);
    const auto input = writeInput(0.3, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 15);
    const AudioData out = render({"--path", dir.file("path.txt"), "--block", "64"});
    expectSameBits(
        out,
        reference(input, 48000, 64, std::nullopt, writesFor(std::nullopt, parsePath(text), 48000)),
        48000);
}

// A time-stamped PEAK chunk would make every render of the same input differ.
TEST_F(ZelrenderMatchesEncoder, OutputHeaderCarriesNoTimeStamp) {
    writeInput(0.1, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 16);
    render({});
    std::ifstream file(dir.file("out.wav"), std::ios::binary);
    std::string header(512, '\0');
    file.read(header.data(), static_cast<std::streamsize>(header.size()));
    EXPECT_EQ(header.compare(0, 4, "RIFF"), 0);
    EXPECT_EQ(header.find("PEAK"), std::string::npos);
}

TEST_F(ZelrenderMatchesEncoder, BuiltInDemo) {
    demo = true;
    const AudioData out = render({});
    DemoSignal signal;
    std::vector<float> input(static_cast<std::size_t>(signal.frames()));
    ASSERT_EQ(signal.read(input.data(), static_cast<int>(input.size())), signal.frames());
    expectSameBits(out,
                   reference(input, DemoScene::kSampleRate, 512, std::nullopt,
                             writesFor(DemoScene::kCompensationMetres, DemoScene::trajectory(),
                                       DemoScene::kSampleRate)),
                   static_cast<int>(DemoScene::kSampleRate));
    // Not silence, and moving: the front-back channel X (ACN 3) changes sign.
    float lowest = 0, highest = 0;
    for (std::size_t i = 3; i < out.samples.size(); i += kChannels) {
        lowest = std::min(lowest, out.samples[i]);
        highest = std::max(highest, out.samples[i]);
    }
    EXPECT_LT(lowest, -0.05f);
    EXPECT_GT(highest, 0.05f);
}

} // namespace
