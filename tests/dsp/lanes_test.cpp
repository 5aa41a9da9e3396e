// The vector paths against the scalar loop, bit for bit, and no allocation
// while processing on any path.
#include "AmbiEncoderClass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>
#include <vector>

namespace {
bool counting = false;
int allocations = 0;
// Called through pointers, so that the compiler does not pair them with new.
void* (*volatile allocate)(std::size_t) = std::malloc;
void (*volatile release)(void*) = std::free;
} // namespace

void* operator new(std::size_t size) {
    if (counting) ++allocations;
    if (void* p = allocate(size ? size : 1)) return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    release(p);
}
void operator delete(void* p, std::size_t) noexcept {
    release(p);
}

namespace {

// One encoder with its own buffers; the input may sit in an output buffer.
struct Side {
    explicit Side(AmbiOrder order) : enc(order) {}
    void process(const std::vector<float>& input, bool inPlace) {
        for (int c = 0; c < 16; ++c)
            bufs[c].assign(input.size() + 1, 0.0f), outs[c] = bufs[c].data();
        own = input;
        float* in =
            inPlace ? std::copy(input.begin(), input.end(), outs[2]) - input.size() : own.data();
        counting = true;
        enc.process(&in, outs, static_cast<int>(input.size()));
        counting = false;
    }
    ZelAmbisonicEncoder enc;
    std::vector<float> bufs[16], own;
    float* outs[16];
};

class LanePath : public testing::TestWithParam<ZelLanePath> {};

TEST_P(LanePath, SameBitsAsTheScalarLoopWithoutAllocating) {
    struct Case {
        AmbiOrder order;
        float rate;
        bool inPlace;
    };
    const Case cases[] = {
        {kAmbi3P, 48000, false}, {kAmbi3P, 22050, true},    {kAmbi3P, 192000, false},
        {kAmbi3P, 44100, true},  {kAmbi1H, 96000, false},   {kAmbi1P, 48000, true},
        {kAmbi2H, 22050, false}, {kAmbi2H1P, 48000, true},  {kAmbi2P, 88200, false},
        {kAmbi3H, 48000, true},  {kAmbi3H1P, 32000, false}, {kAmbi3H1P, 48000, true},
        {kAmbi4H, 176400, false}};
    const int sizes[] = {0, 1, 2, 7, 8, 9, 31, 32, 64, 65, 255, 256, 1023, 1024, 2500, 4096};
    using Setter = void (ZelAmbisonicEncoder::*)(float);
    const Setter setters[] = {&ZelAmbisonicEncoder::setazim, &ZelAmbisonicEncoder::setelev,
                              &ZelAmbisonicEncoder::setx,    &ZelAmbisonicEncoder::sety,
                              &ZelAmbisonicEncoder::setz,    &ZelAmbisonicEncoder::setdist,
                              &ZelAmbisonicEncoder::setNFC};
    for (const Case& k : cases) {
        Side ref(k.order), lanes(k.order);
        ref.enc.usepath(ZelLanePath::kScalar);
        if (!lanes.enc.usepath(GetParam())) GTEST_SKIP() << "this CPU lacks the path";
        std::mt19937 rng(static_cast<unsigned>(k.order * 7 + k.rate));
        std::uniform_real_distribution<float> uni(0.0f, 1.0f);
        for (Side* r : {&ref, &lanes}) r->enc.setfs(k.rate);
        for (int block = 0; block < 160; ++block) {
            // Every 40 blocks, 40960 samples without a change: the smoothers come to rest.
            const bool hold = block % 40 >= 30;
            const float dice = hold ? 0.7f : uni(rng);
            auto set = [&](Setter s, float v) { (ref.enc.*s)(v), (lanes.enc.*s)(v); };
            if (dice < 0.3f) { // a program switch: everything jumps
                for (Setter s : setters) set(s, uni(rng));
                if (uni(rng) < 0.4f) set(&ZelAmbisonicEncoder::setNFC, 1.0f);     // off
                if (uni(rng) < 0.4f) set(&ZelAmbisonicEncoder::setdist, 0.0f);    // far
                if (uni(rng) < 0.1f) set(&ZelAmbisonicEncoder::setdist, -300.0f); // huge gains
            } else if (dice < 0.6f) {                                             // automation
                set(setters[rng() % 7], uni(rng));
            } else if (dice < 0.62f) {
                ref.enc.resume(), lanes.enc.resume();
            }
            std::vector<float> input(hold ? 4096 : sizes[rng() % 16] * (dice > 0.8f ? 3 : 1));
            for (float& s : input) s = uni(rng) - 0.5f;
            if (dice > 0.9f && !input.empty()) input[rng() % input.size()] = NAN;
            if (dice > 0.95f)
                std::fill_n(input.begin(), input.size() / 2, 3e37f); // overflows some filters
            if (dice < 0.05f || block % 40 > 36) std::fill(input.begin(), input.end(), 0.0f);
            allocations = 0;
            ref.process(input, k.inPlace);
            lanes.process(input, k.inPlace);
            ASSERT_EQ(allocations, 0);
            for (int c = 0; c < ref.enc.getncoefs(); ++c)
                ASSERT_EQ(std::memcmp(ref.bufs[c].data(), lanes.bufs[c].data(),
                                      input.size() * sizeof(float)),
                          0)
                    << "layout " << k.order << ", block " << block << ", channel " << c;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Paths, LanePath,
                         testing::Values(ZelLanePath::kScalar, ZelLanePath::kAvx2,
                                         ZelLanePath::kAvx512));

} // namespace
