// The plug-in classes linked directly: what a host cannot see from outside,
// such as the editor hand-over, the stored programs and the two classes'
// different answers.
#include "DegreesText.h"
#include "ZelAmbiEncEdit.h"
#include "aeffeditor.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string> events; // editor and host calls, in order
float valueSeenByHost = -1.0f;

VstIntPtr recordingHost(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr, void*,
                        float opt) {
    if (opcode == audioMasterVersion) return 2400;
    events.push_back("host " + std::to_string(opcode) + " " + std::to_string(index) + " " +
                     std::to_string(opt));
    if (effect != nullptr) valueSeenByHost = effect->getParameter(effect, index);
    return 0;
}

class SpyEditor : public AEffEditor {
public:
    explicit SpyEditor(AudioEffect* effect) : AEffEditor(effect) {}
    void setParameter(VstInt32 index, float value) override {
        events.push_back("editor " + std::to_string(index) + " " + std::to_string(value));
    }
};

// Puts a spy in place of the plug-in's own editor, which the effect would
// otherwise never delete once replaced.
void replaceEditorWithSpy(ZelAmbiEncEdit& effect) {
    delete effect.getEditor();
    effect.setEditor(new SpyEditor(&effect));
}

std::string degrees(float value) {
    char text[16];
    formatDegrees(value, text);
    return text;
}

TEST(DegreesText, HalvesRoundAwayFromZeroInSinglePrecision) {
    EXPECT_EQ(degrees(44.5f), "45");
    EXPECT_EQ(degrees(-44.5f), "-45");
    EXPECT_EQ(degrees(179.5f), "180");
    EXPECT_EQ(degrees(-0.5f), "-1");
    EXPECT_EQ(degrees(-0.4f), "0");
    EXPECT_EQ(degrees(0.49f), "0");
    // In float, 0.49999997 + 0.5 is already 1.
    EXPECT_EQ(degrees(0.49999997f), "1");
    EXPECT_EQ(degrees(std::nanf("")), "nan");
    EXPECT_EQ(degrees(-1e30f), "-Huge!");
    EXPECT_EQ(degrees(-999998.0f), "-999998");
}

TEST(PluginEditorHandOver, HostChangesReachTheEditorEvenWhileClosed) {
    ZelAmbiEncEdit effect(recordingHost);
    replaceEditorWithSpy(effect);
    AEffect* fx = effect.getAeffect();
    events.clear();
    fx->setParameter(fx, 2, 0.25f);
    fx->setParameter(fx, 7, 0.5f); // out of range: the editor must cope
    fx->setParameter(fx, -1, 0.5f);
    const std::vector<std::string> expected = {"editor 2 0.250000", "editor 7 0.500000",
                                               "editor -1 0.500000"};
    EXPECT_EQ(events, expected);
}

TEST(PluginEditorHandOver, ProgramSwitchPassesAllSevenValuesOn) {
    ZelAmbiEncEdit effect(recordingHost);
    replaceEditorWithSpy(effect);
    events.clear();
    effect.dispatcher(effSetProgram, 0, 2, nullptr, 0.0f);
    ASSERT_EQ(events.size(), 7u);
    for (int k = 0; k < 7; ++k)
        EXPECT_EQ(events[k].rfind("editor " + std::to_string(k) + " ", 0), 0u);
}

TEST(PluginEditorHandOver, AutomatedChangeIsAppliedThenShownThenReported) {
    ZelAmbiEncEdit effect(recordingHost);
    replaceEditorWithSpy(effect);
    events.clear();
    effect.setParameterAutomated(kNFC, 0.25f);
    const std::vector<std::string> expected = {"editor 6 0.250000", "host 0 6 0.250000"};
    EXPECT_EQ(events, expected);
    EXPECT_FLOAT_EQ(valueSeenByHost, 0.25f); // the host reads the new value back
}

TEST(PluginClasses, CategoryDiffersBetweenTheTwoClasses) {
    ZelAmbiEnc effect(recordingHost);
    ZelAmbiEncEdit edit(recordingHost);
    EXPECT_EQ(effect.getPlugCategory(), kPlugCategEffect);
    EXPECT_EQ(edit.getPlugCategory(), kPlugCategUnknown);
    EXPECT_EQ(effect.getVendorVersion(), 1000);
    EXPECT_EQ(edit.getVendorVersion(), 1000);
}

TEST(PluginClasses, SampleRateReachesBaseAndEncoder) {
    ZelAmbiEncEdit effect(recordingHost);
    EXPECT_EQ(effect.getSampleRate(), 44100.0f);
    EXPECT_EQ(effect.getEncoder().getfs(), 48000.0f); // the encoder's own until told
    effect.dispatcher(effSetSampleRate, 0, 0, nullptr, 96000.0f);
    EXPECT_EQ(effect.getSampleRate(), 96000.0f);
    EXPECT_EQ(effect.getEncoder().getfs(), 96000.0f);
}

TEST(PluginClasses, RatesThatAreNoRatesAreIgnored) {
    ZelAmbiEncEdit effect(recordingHost);
    effect.setParameter(kNFC, 0.2f); // compensation on: the filters run
    effect.setParameter(kDist, 0.8f);
    effect.dispatcher(effSetSampleRate, 0, 0, nullptr, 48000.0f);
    for (float bad : {0.0f, -44100.0f, std::nanf(""), 1e-30f, INFINITY}) {
        effect.dispatcher(effSetSampleRate, 0, 0, nullptr, bad);
        EXPECT_EQ(effect.getSampleRate(), 48000.0f) << bad;
        EXPECT_EQ(effect.getEncoder().getfs(), 48000.0f) << bad;
    }
    std::vector<float> input(512, 0.25f);
    std::vector<std::vector<float>> out(16, std::vector<float>(512));
    float* in[1] = {input.data()};
    float* outs[16];
    for (int c = 0; c < 16; ++c) outs[c] = out[c].data();
    effect.dispatcher(effMainsChanged, 0, 1, nullptr, 0.0f);
    effect.processReplacing(in, outs, 512);
    for (int c = 0; c < 16; ++c)
        for (float v : out[c]) ASSERT_TRUE(std::isfinite(v)) << "channel " << c;
}

TEST(PluginClasses, OwnProcessReplacesLikeProcessReplacing) {
    ZelAmbiEnc a(recordingHost), b(recordingHost);
    for (ZelAmbiEnc* fx : {&a, &b}) fx->setParameter(kAzim, 0.3f);
    std::vector<float> input(256, 0.5f);
    std::vector<std::vector<float>> outA(16, std::vector<float>(256, 0.0f));
    std::vector<std::vector<float>> outB(16, std::vector<float>(256, 9.0f));
    float* in[1] = {input.data()};
    float* pa[16];
    float* pb[16];
    for (int c = 0; c < 16; ++c) pa[c] = outA[c].data(), pb[c] = outB[c].data();
    a.processReplacing(in, pa, 256);
    b.process(in, pb, 256);
    EXPECT_EQ(outA, outB);
}

void expectProgramMirrorsEncoder(const ZelAmbiEnc& effect, VstInt32 program) {
    const ZelAmbisonicEncoder& enc = effect.getEncoder();
    const float reported[] = {enc.getazim(), enc.getelev(), enc.getx(),  enc.gety(),
                              enc.getz(),    enc.getdist(), enc.getNFC()};
    const ZelAmbiEncProgram* record = effect.programRecord(program);
    ASSERT_NE(record, nullptr);
    for (int k = 0; k < kNumParams; ++k) EXPECT_EQ(record->param[k], reported[k]) << k;
}

TEST(PluginProgramBank, AfterConstructionAndWriteBack) {
    ZelAmbiEncEdit effect(recordingHost);
    expectProgramMirrorsEncoder(effect, 0);
    for (int p = 0; p < kNumPrograms; ++p)
        EXPECT_EQ(std::string(effect.programRecord(p)->name), "Prog " + std::to_string(p + 1));
    EXPECT_EQ(effect.programRecord(kNumPrograms), nullptr);
    EXPECT_EQ(effect.programRecord(-1), nullptr);

    const ZelAmbiEncProgram stored = *effect.programRecord(4);
    effect.setProgram(4);
    effect.setParameter(kX, 0.3f);
    expectProgramMirrorsEncoder(effect, 4);
    effect.setParameter(99, 0.3f); // out of range still refreshes
    expectProgramMirrorsEncoder(effect, 4);
    EXPECT_NE(effect.programRecord(4)->param[kAzim], stored.param[kAzim]);
    effect.setProgram(-3); // direct callers are refused like the host
    EXPECT_EQ(effect.getProgram(), 4);

    const ZelAmbiEncProgram fresh;
    const float defaults[] = {0.0f, 0.5f, 1.0f, 0.5f, 0.5f, 0.0f, 1.0f};
    for (int k = 0; k < kNumParams; ++k) EXPECT_EQ(fresh.param[k], defaults[k]);
    EXPECT_EQ(std::string(fresh.name), "Init");
}

} // namespace
