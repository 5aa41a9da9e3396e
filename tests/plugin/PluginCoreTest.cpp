// The plug-in classes linked directly, for what a host cannot see from
// outside: the editor requests routed to the editor, and parameter changes
// handed between host, effect and editor in the right order.
#include "ZelAmbiEncEdit.h"
#include "aeffeditor.h"

#include <gtest/gtest.h>
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
    if (opcode == audioMasterAutomate) valueSeenByHost = effect->getParameter(effect, index);
    return 1;
}

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
    void setParameter(VstInt32 index, float value) override {
        events.push_back("editor " + std::to_string(index) + " " + std::to_string(value));
    }
    ERect rect{0, 0, 300, 400};

private:
    bool* destroyed;
};

// The plug-in with a spy in place of its own editor, which is deleted first
// (the effect would never delete it once replaced).
struct SpiedPlugin {
    SpiedPlugin() : effect(new ZelAmbiEncEdit(recordingHost)) {
        delete effect->getEditor();
        effect->setEditor(nullptr);
    }
    ~SpiedPlugin() {
        if (effect != nullptr) dispatch(effClose);
    }
    void attachSpy() {
        effect->setEditor(spy = new SpyEditor(effect, &editorGone));
        events.clear();
    }
    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0,
                       void* ptr = nullptr) {
        AEffect* fx = effect->getAeffect();
        return fx->dispatcher(fx, opcode, index, value, ptr, 0.0f);
    }
    ZelAmbiEncEdit* effect;
    SpyEditor* spy = nullptr;
    bool editorGone = false;
};

TEST(PluginEditor, RequestsReachTheEditorAndCloseDeletesIt) {
    SpiedPlugin plugin;
    ERect* rect = nullptr;
    EXPECT_EQ(plugin.dispatch(effEditGetRect, 0, 0, &rect), 0); // no editor
    plugin.attachSpy();
    EXPECT_EQ(plugin.dispatch(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect, &plugin.spy->rect);
    EXPECT_EQ(plugin.dispatch(effEditGetRect), 0); // no pointer to answer through
    int window = 0;
    EXPECT_EQ(plugin.dispatch(effEditOpen, 0, 0, &window), 1);
    plugin.dispatch(effEditIdle);
    plugin.dispatch(effSetEditKnobMode, 0, 2);
    plugin.dispatch(effEditClose);
    EXPECT_EQ(events, (std::vector<std::string>{"getRect", "open", "idle", "knobMode 2", "close"}));
    EXPECT_EQ(plugin.dispatch(effClose), 1); // LeakSanitizer sees to the effect itself
    plugin.effect = nullptr;
    EXPECT_TRUE(plugin.editorGone);
}

TEST(PluginEditor, HostChangesAndProgramSwitchesReachTheEditorEvenWhileClosed) {
    SpiedPlugin plugin;
    plugin.attachSpy();
    AEffect* fx = plugin.effect->getAeffect();
    fx->setParameter(fx, 2, 0.25f);
    fx->setParameter(fx, 7, 0.5f); // out of range: the editor must cope
    fx->setParameter(fx, -1, 0.5f);
    EXPECT_EQ(events, (std::vector<std::string>{"editor 2 0.250000", "editor 7 0.500000",
                                                "editor -1 0.500000"}));
    events.clear();
    plugin.dispatch(effSetProgram, 0, 2);
    ASSERT_EQ(events.size(), 7u);
    for (int k = 0; k < 7; ++k)
        EXPECT_EQ(events[k].rfind("editor " + std::to_string(k) + " ", 0), 0u) << events[k];
}

// An edit in the window: applied, shown, then reported to the host, which
// reads the new value back; gestures go to the host as begin and end edit.
TEST(PluginEditor, AutomatedChangeIsAppliedThenShownThenReported) {
    SpiedPlugin plugin;
    plugin.attachSpy();
    plugin.effect->setParameterAutomated(kNFC, 0.25f);
    EXPECT_TRUE(plugin.effect->beginEdit(1));
    EXPECT_TRUE(plugin.effect->endEdit(1));
    EXPECT_EQ(events, (std::vector<std::string>{"editor 6 0.250000", "host 0 6 0.250000",
                                                "host 43 1 0.000000", "host 44 1 0.000000"}));
    EXPECT_FLOAT_EQ(valueSeenByHost, 0.25f);
}

} // namespace
