// The LV2 modules given what a careless host gives: a sample rate that is no
// rate, no parent window for the editor. Neither may crash, and both say so
// in the host's log.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <limits>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <string>
#include <vector>

namespace {

// urid:map (every URI a new number: the modules compare none) and log:log,
// the log kept as one text.
struct Host {
    LV2_URID next = 0;
    std::string logged;
    LV2_URID_Map map{
        this, [](LV2_URID_Map_Handle h, const char*) { return ++static_cast<Host*>(h)->next; }};
    LV2_Log_Log log{this, nullptr,
                    [](LV2_Log_Handle h, LV2_URID, const char* format, va_list args) {
                        char text[256];
                        const int n = std::vsnprintf(text, sizeof text, format, args);
                        static_cast<Host*>(h)->logged += text;
                        return n;
                    }};
    LV2_Feature mapFeature{LV2_URID__map, &map};
    LV2_Feature logFeature{LV2_LOG__log, &log};
    const LV2_Feature* features[3] = {&mapFeature, &logFeature, nullptr};
};

void* entry(const char* module, const char* symbol) {
    void* library = dlopen(module, RTLD_NOW | RTLD_LOCAL);
    return library != nullptr ? dlsym(library, symbol) : nullptr;
}

// Control inputs in user units: azimuth, elevation, x, y, z, distance,
// compensation. By default compensation at 1 m, whose filters are designed
// for the rate.
using Controls = std::array<float, 7>;
constexpr Controls kNear{0, 0, 4, 0, 0, 1, 1};

// 256 frames of a sine through an instance at rate: all 16 outputs, one
// after another.
std::vector<float> render(double rate, Host& host, const Controls& set = kNear) {
    auto descriptor =
        reinterpret_cast<LV2_Descriptor_Function>(entry(ZEL_LV2_DSP, "lv2_descriptor"));
    const LV2_Descriptor* d = descriptor != nullptr ? descriptor(0) : nullptr;
    if (d == nullptr) return {};
    LV2_Handle h = d->instantiate(d, rate, "", host.features);
    if (h == nullptr) return {};
    std::vector<float> input(256), outputs(16 * 256);
    float controls[14] = {};
    std::copy(set.begin(), set.end(), controls);
    for (int i = 0; i < 256; ++i) input[i] = static_cast<float>(std::sin(0.05 * i));
    d->connect_port(h, 0, input.data());
    for (uint32_t c = 0; c < 16; ++c) d->connect_port(h, 1 + c, &outputs[c * 256]);
    for (uint32_t k = 0; k < 14; ++k) d->connect_port(h, 17 + k, &controls[k]);
    d->activate(h);
    d->run(h, 256);
    d->cleanup(h);
    return outputs;
}

TEST(Lv2BadInput, NoRateRunsAt48kHzAndSaysSo) {
    Host reference;
    const std::vector<float> at48k = render(48000.0, reference);
    ASSERT_EQ(at48k.size(), 16u * 256u);
    EXPECT_EQ(reference.logged, "");
    for (double rate : {0.0, -44100.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        Host host;
        EXPECT_EQ(render(rate, host), at48k) << rate;
        EXPECT_NE(host.logged.find("sample rate"), std::string::npos) << rate;
    }
}

// Beyond a range: its end; no number: its lower end.
TEST(Lv2BadInput, ControlsOutOfRangeOrNoNumberAreClamped) {
    Host wild, ends;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(render(48000.0, wild, {720, inf, 4, 0, 0, nan, -5}),
              render(48000.0, ends, {360, 90, 4, 0, 0, 0, 0.5f}));
}

TEST(Lv2BadInput, EditorWithoutParentWindowIsRefusedAndSaysSo) {
    auto descriptor =
        reinterpret_cast<LV2UI_DescriptorFunction>(entry(ZEL_LV2_UI, "lv2ui_descriptor"));
    ASSERT_NE(descriptor, nullptr);
    const LV2UI_Descriptor* d = descriptor(0);
    Host host;
    LV2UI_Widget widget = nullptr;
    auto write = [](LV2UI_Controller, uint32_t, uint32_t, uint32_t, const void*) {};
    EXPECT_EQ(d->instantiate(d, "urn:zelworks:orvalis-xy3-3d", "", write, nullptr, &widget,
                             host.features),
              nullptr);
    EXPECT_NE(host.logged.find("parent window"), std::string::npos);
}

} // namespace
