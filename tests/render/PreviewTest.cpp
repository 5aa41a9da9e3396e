// zelrender's headphone preview and path picture: a source is heard where it
// is placed (level differences between the ears), and the picture shows the
// path.

#include "TestSupport.h"
#include "measure.h"

#include <cairo.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr int kRate = 48000;

struct Ears {
    std::vector<float> left, right;
};

// Two seconds of noise placed with the given options, as heard on headphones.
Ears headphones(const std::vector<std::string>& placement) {
    ScratchDir dir;
    writeAudio(dir.file("in.wav"),
               {1, kRate, SF_FORMAT_WAV | SF_FORMAT_FLOAT, measure::noise(2 * kRate, 9)});
    std::vector<std::string> arguments = {
        "--plugin", ZEL_PLUGIN_PATH,     "-q",         dir.file("in.wav"),
        "-o",       dir.file("out.wav"), "--binaural", dir.file("ears.wav")};
    for (const std::string& word : placement)
        arguments.push_back(word == "PATH" ? dir.file("path.txt") : word);
    dir.writeText("path.txt", "polar\n0 90 0 2\n0.5 60 0 2\n0.8 30 0 2\n1.0 0 0 2\n"
                              "1.2 -30 0 2\n1.5 -60 0 2\n2 -90 0 2\n");
    const RunResult result = runZelrender(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const AudioData audio = readAudio(dir.file("ears.wav"));
    EXPECT_EQ(audio.channels, 2);
    Ears ears;
    for (std::size_t i = 0; i + 1 < audio.samples.size(); i += 2) {
        ears.left.push_back(audio.samples[i]);
        ears.right.push_back(audio.samples[i + 1]);
    }
    return ears;
}

// Mean power in dB over frames [from, to) and frequencies lo..hi: bins every
// 250 Hz averaged over 1024-sample frames.
double bandDb(const std::vector<float>& x, double lo, double hi, std::size_t from = 0,
              std::size_t to = 0) {
    if (to == 0 || to > x.size()) to = x.size();
    double sum = 0.0;
    int count = 0;
    for (double f = lo; f <= hi; f += 250.0) {
        for (std::size_t start = from; start + 1024 <= to; start += 1024, ++count) {
            const std::vector<float> frame(x.begin() + start, x.begin() + start + 1024);
            sum += std::norm(measure::dtft(frame, f, kRate));
        }
    }
    return 10.0 * std::log10(sum / count + 1e-30);
}

// Left minus right, in dB, between 1 and 4 kHz.
double levelDifference(const Ears& e, std::size_t from = 0, std::size_t to = 0) {
    return bandDb(e.left, 1000, 4000, from, to) - bandDb(e.right, 1000, 4000, from, to);
}

TEST(ZelrenderHeadphones, SourcesAreHeardWhereTheyArePlaced) {
    const Ears left = headphones({"--azimuth", "90"});
    const Ears right = headphones({"--azimuth", "270"});
    const Ears front = headphones({"--azimuth", "0"});
    EXPECT_GE(levelDifference(left), 6.0);
    EXPECT_LE(levelDifference(right), -6.0);
    EXPECT_NEAR(levelDifference(front), 0.0, 1.0);

    // From the left round the front to the right over two seconds.
    const Ears moving = headphones({"--path", "PATH"});
    EXPECT_GE(levelDifference(moving, 0, kRate / 2), 6.0);
    EXPECT_LE(levelDifference(moving, 3 * kRate / 2, 2 * kRate), -6.0);
}

// The picture of the demo's path: its size, and the path drawn in the
// displays' blue.
TEST(ZelrenderPlot, DrawsThePath) {
    ScratchDir dir;
    const RunResult result = runZelrender({"--plugin", ZEL_PLUGIN_PATH, "-q", "-o",
                                           dir.file("demo.wav"), "--plot", dir.file("p.png")});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    cairo_surface_t* image = cairo_image_surface_create_from_png(dir.file("p.png").c_str());
    ASSERT_EQ(cairo_surface_status(image), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(image), 720);
    EXPECT_EQ(cairo_image_surface_get_height(image), 1040);
    const unsigned char* data = cairo_image_surface_get_data(image);
    int blue = 0;
    for (int y = 0; y < cairo_image_surface_get_height(image); ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(
            data + y * cairo_image_surface_get_stride(image));
        for (int x = 0; x < cairo_image_surface_get_width(image); ++x)
            blue += (row[x] & 0xffffff) == 0x1caeff;
    }
    EXPECT_GT(blue, 2000);
    cairo_surface_destroy(image);
}

} // namespace
