// The base classes' routing of host requests, their defaults and their guards.
#include "aeffeditor.h"
#include "audioeffect.h"
#include "vsttext.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

std::vector<std::string> events; // plug-in, editor and host calls, in order

VstIntPtr recordingHost(AEffect*, VstInt32 opcode, VstInt32 index, VstIntPtr value, void*,
                        float opt) {
    events.push_back("host " + std::to_string(opcode) + " " + std::to_string(index) + " " +
                     std::to_string(value) + " " + std::to_string(opt));
    return 1;
}

class ProbeEffect : public AudioEffectX {
public:
    explicit ProbeEffect(bool* destroyed = nullptr, audioMasterCallback host = recordingHost)
        : AudioEffectX(host, 4, 3), destroyed(destroyed) {}
    ~ProbeEffect() override {
        if (destroyed) *destroyed = true;
    }
    void processReplacing(float**, float**, VstInt32 frames) override {
        events.push_back("process " + std::to_string(frames));
    }
    void resume() override {
        events.push_back("resume");
        AudioEffectX::resume();
    }
    void suspend() override { events.push_back("suspend"); }
    void setProgram(VstInt32 program) override {
        events.push_back("setProgram " + std::to_string(program));
    }
    void setParameter(VstInt32 index, float value) override {
        events.push_back("setParameter " + std::to_string(index) + " " + std::to_string(value));
    }
    void getParameterName(VstInt32 index, char* text) override {
        events.push_back("name " + std::to_string(index));
        vsttext::copy(text, "n", 1);
    }
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char*) override {
        events.push_back("indexed " + std::to_string(category) + " " + std::to_string(index));
        return true;
    }
    AEffect* fx() { return getAeffect(); }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr, float opt = 0.0f) {
        return fx()->dispatcher(fx(), opcode, index, value, ptr, opt);
    }

private:
    bool* destroyed;
};

class SpyEditor : public AEffEditor {
public:
    SpyEditor(AudioEffect* effect, bool* destroyed) : AEffEditor(effect), destroyed(destroyed) {}
    ~SpyEditor() override { *destroyed = true; }
    bool getRect(ERect** r) override {
        events.push_back("getRect");
        *r = &rect;
        return true;
    }
    bool open(void* parent) override {
        events.push_back("open");
        AEffEditor::open(parent);
        return true;
    }
    void close() override { events.push_back("close"); }
    void idle() override { events.push_back("idle"); }
    bool setKnobMode(VstInt32 mode) override {
        events.push_back("knobMode " + std::to_string(mode));
        return true;
    }
    ERect rect{0, 0, 300, 400};

private:
    bool* destroyed;
};

TEST(VstBase, DefaultsOfTheEffectRecordAndAnswers) {
    ProbeEffect effect;
    const AEffect& e = *effect.fx();
    EXPECT_EQ(e.magic, kEffectMagic);
    EXPECT_EQ(e.version, 1);
    EXPECT_EQ(e.flags, effFlagsCanReplacing);
    EXPECT_EQ(e.object, &effect);
    EXPECT_EQ(effect.getSampleRate(), 44100.0f);
    EXPECT_EQ(effect.getBlockSize(), 1024);
    EXPECT_EQ(effect.dispatch(effGetVstVersion), 2400);
    char query[] = "receiveVstEvents";
    EXPECT_EQ(effect.dispatch(effGetParameterProperties, 0, 0, query), 0);
    EXPECT_EQ(effect.dispatch(9999), 0);
    EXPECT_EQ(effect.dispatch(-1), 0);
}

TEST(VstBase, RoutesRequestsAndRefusesBadProgramsAndNullTexts) {
    ProbeEffect effect;
    events.clear();
    for (VstIntPtr p :
         {VstIntPtr{0}, VstIntPtr{3}, VstIntPtr{4}, VstIntPtr{-1}, (VstIntPtr{1} << 32) + 1})
        effect.dispatch(effSetProgram, 0, p);
    effect.dispatch(effMainsChanged, 0, 1);
    effect.dispatch(effMainsChanged, 0, 0);
    char text[16];
    effect.dispatch(effGetParamName, 2, 0, text);
    effect.dispatch(effGetParamName, 2, 0, nullptr);
    effect.dispatch(effGetProgramNameIndexed, 2, 9, text);
    effect.dispatch(effGetProgramNameIndexed, 2, 9, nullptr);
    effect.dispatch(effSetSampleRate, 0, 0, nullptr, 96000.0f);
    effect.dispatch(effSetBlockSize, 0, 256);
    const std::vector<std::string> expected = {"setProgram 0", "setProgram 3", "resume",
                                               "suspend",      "name 2",       "indexed 9 2"};
    EXPECT_EQ(events, expected); // the non-synth resume asks the host for nothing
    EXPECT_EQ(effect.getSampleRate(), 96000.0f);
    EXPECT_EQ(effect.getBlockSize(), 256);
}

TEST(VstBase, EditorRequestsReachTheEditorAndCloseDeletesBoth) {
    bool effectGone = false, editorGone = false;
    auto* effect = new ProbeEffect(&effectGone);
    ERect* rect = nullptr;
    EXPECT_EQ(effect->dispatch(effEditGetRect, 0, 0, &rect), 0); // no editor yet
    auto* editor = new SpyEditor(effect, &editorGone);
    effect->setEditor(editor);
    EXPECT_EQ(effect->fx()->flags, effFlagsCanReplacing | effFlagsHasEditor);
    events.clear();
    EXPECT_EQ(effect->dispatch(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect, &editor->rect);
    EXPECT_EQ(effect->dispatch(effEditGetRect, 0, 0, nullptr), 0);
    int window = 0;
    EXPECT_EQ(effect->dispatch(effEditOpen, 0, 0, &window), 1);
    effect->dispatch(effEditIdle);
    effect->dispatch(effSetEditKnobMode, 0, 2);
    effect->dispatch(effEditClose);
    const std::vector<std::string> expected = {"getRect", "open", "idle", "knobMode 2", "close"};
    EXPECT_EQ(events, expected);

    AEffect* fx = effect->fx();
    EXPECT_EQ(fx->dispatcher(fx, effClose, 0, 0, nullptr, 0.0f), 1);
    EXPECT_TRUE(effectGone);
    EXPECT_TRUE(editorGone);
}

TEST(VstBase, AutomationAndEditGesturesTellTheHostAfterApplying) {
    ProbeEffect effect;
    events.clear();
    effect.setParameterAutomated(2, 0.5f);
    EXPECT_TRUE(effect.beginEdit(1));
    EXPECT_TRUE(effect.endEdit(1));
    const std::vector<std::string> expected = {"setParameter 2 0.500000", "host 0 2 0 0.500000",
                                               "host 43 1 0 0.000000", "host 44 1 0 0.000000"};
    EXPECT_EQ(events, expected);

    ProbeEffect hostless(nullptr, nullptr);
    hostless.setParameterAutomated(1, 0.25f); // applied, nobody to tell
    EXPECT_FALSE(hostless.beginEdit(1));
}

TEST(VstBase, ProcessEntriesDropMalformedCalls) {
    ProbeEffect effect; // 1 input, 2 outputs
    AEffect* fx = effect.fx();
    float a[4] = {}, b[4] = {}, c[4] = {};
    float* in[1] = {a};
    float* out[2] = {b, c};
    float* hole[2] = {b, nullptr};
    events.clear();
    fx->processReplacing(fx, in, out, 4);
    fx->processReplacing(fx, in, out, 0);
    fx->processReplacing(fx, in, out, -1);
    fx->processReplacing(fx, nullptr, out, 4);
    fx->processReplacing(fx, in, nullptr, 4);
    fx->processReplacing(fx, in, hole, 4);
    fx->processReplacing(nullptr, in, out, 4);
    fx->process(fx, in, out, 4); // deprecated: lands in the empty default
    const std::vector<std::string> expected = {"process 4", "process 0"};
    EXPECT_EQ(events, expected);
    EXPECT_EQ(fx->dispatcher(nullptr, effGetVstVersion, 0, 0, nullptr, 0.0f), 0);
}

} // namespace
