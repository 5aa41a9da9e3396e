#pragma once

// A real AudioEffect with a host callback that logs what it is told, and a
// small editor on the toolkit, for tests of what the host sees from it.

#include "TestImages.h"
#include "aeffguieditor.h"

#include <utility>
#include <vector>

namespace editortest {

using HostCalls = std::vector<std::pair<VstInt32, VstInt32>>; // opcode, index

inline HostCalls& hostCalls() {
    static HostCalls calls;
    return calls;
}

inline VstIntPtr recordingHost(AEffect*, VstInt32 opcode, VstInt32 index, VstIntPtr, void*, float) {
    hostCalls().emplace_back(opcode, index);
    return 1;
}

class TestEffect : public AudioEffectX {
public:
    TestEffect() : AudioEffectX(recordingHost, 1, 8) {}
    void processReplacing(float**, float**, VstInt32) override {}
};

// The test background with a 4-position switch at (10, 10), tag 6, and a
// 31-frame knob at (60, 10), tag 3; edits go to the host as automation.
class TestEditor : public AEffGUIEditor, public CControlListener {
public:
    explicit TestEditor(AudioEffect* effect) : AEffGUIEditor(effect) {
        rect.right = testimages::kBackgroundWidth;
        rect.bottom = testimages::kBackgroundHeight;
    }
    bool open(void* ptr) override {
        AEffGUIEditor::open(ptr);
        auto* background = new CBitmap(testimages::kBackgroundId);
        auto* switchStrip = new CBitmap(testimages::kSwitchStripId);
        auto* knobStrip = new CBitmap(testimages::kKnobStripId);
        frame = new CFrame(CRect(0, 0, rect.right, rect.bottom), ptr, this);
        frame->setBackground(background);
        verticalSwitch = new CVerticalSwitch(CRect(10, 10, 30, 50), this, 6, switchStrip);
        frame->addView(verticalSwitch);
        knob = new CAnimKnob(CRect(60, 10, 100, 50), this, 3, knobStrip);
        frame->addView(knob);
        background->forget();
        switchStrip->forget();
        knobStrip->forget();
        return true;
    }
    void close() override {
        delete frame;
        frame = nullptr;
        AEffGUIEditor::close();
    }
    void valueChanged(CControl* control) override {
        effect->setParameterAutomated(static_cast<VstInt32>(control->getTag()),
                                      control->getValue());
    }

    CVerticalSwitch* verticalSwitch = nullptr;
    CAnimKnob* knob = nullptr;
};

} // namespace editortest
