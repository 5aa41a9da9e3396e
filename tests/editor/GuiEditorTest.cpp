// AEffGUIEditor on a real AudioEffect: what the host sees of edit gestures,
// idle and knob mode, and the X event translation.

#include "EditorTestSupport.h"
#include "TestPlugin.h"
#include "platform/xeventtranslator.h"

#include <gtest/gtest.h>

using namespace editortest;

namespace {

// A minimal editor on the toolkit: a knob (tag 3) and a switch (tag 6).
class TestEditor : public AEffGUIEditor, public CControlListener {
public:
    explicit TestEditor(AudioEffect* effect) : AEffGUIEditor(effect) {
        rect.right = 200;
        rect.bottom = 100;
    }
    bool open(void* ptr) override {
        AEffGUIEditor::open(ptr);
        frame = new CFrame(CRect(0, 0, rect.right, rect.bottom), ptr, this);
        knob = new CKnob(CRect(0, 0, 40, 40), this, 3, nullptr, nullptr);
        frame->addView(knob);
        verticalSwitch = new CVerticalSwitch(CRect(100, 0, 120, 40), this, 6, 4, 40, 4, nullptr);
        frame->addView(verticalSwitch);
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

    CKnob* knob = nullptr;
    CVerticalSwitch* verticalSwitch = nullptr;
};

struct EditorFixture : ::testing::Test {
    TestEffect* effect = new TestEffect;
    TestEditor* editor = new TestEditor(effect); // owned by the effect

    EditorFixture() {
        hostCalls().clear();
        editor->open(nullptr);
    }
    ~EditorFixture() override {
        editor->close();
        delete effect;
    }
    void click(CCoord x, CCoord y, long buttons) {
        CPoint where(x, y);
        editor->getFrame()->onMouseDown(where, buttons);
    }
    void drag(CCoord x, CCoord y) {
        CPoint where(x, y);
        editor->getFrame()->onMouseMoved(where, kLButton);
    }
    void release(CCoord x, CCoord y) {
        CPoint where(x, y);
        editor->getFrame()->onMouseUp(where, 0);
    }
};

using Calls = HostCalls;

} // namespace

TEST_F(EditorFixture, ConstructionRegistersTheEditorWithTheEffect) {
    EXPECT_EQ(effect->getEditor(), editor);
    EXPECT_TRUE(effect->getAeffect()->flags & effFlagsHasEditor);
    ERect* rect = nullptr;
    EXPECT_TRUE(editor->getRect(&rect));
    ASSERT_NE(rect, nullptr);
    EXPECT_EQ(rect->right, 200);
    EXPECT_EQ(rect->bottom, 100);
    EXPECT_FALSE(editor->getRect(nullptr));
}

TEST_F(EditorFixture, KnobDragIsBracketedByBeginAndEndEditForItsTag) {
    click(20, 0, kLButton);
    drag(40, 20);
    release(40, 20);
    EXPECT_EQ(hostCalls(), (Calls{{audioMasterBeginEdit, 3},
                                  {audioMasterAutomate, 3},
                                  {audioMasterAutomate, 3},
                                  {audioMasterEndEdit, 3}}));
}

TEST_F(EditorFixture, DefaultGestureGivesTheHostNestedEdits) {
    editor->verticalSwitch->setValue(1.0f);
    editor->verticalSwitch->invalid();
    click(110, 30, kLButton | kControl);
    EXPECT_EQ(hostCalls(), (Calls{{audioMasterBeginEdit, 6},
                                  {audioMasterBeginEdit, 6},
                                  {audioMasterAutomate, 6},
                                  {audioMasterEndEdit, 6},
                                  {audioMasterEndEdit, 6}}));
}

TEST_F(EditorFixture, KnobModeIsSharedByAllEditorsOfTheModule) {
    TestEffect otherEffect;
    auto* other = new TestEditor(&otherEffect);
    EXPECT_TRUE(editor->setKnobMode(kLinearMode));
    EXPECT_EQ(other->getKnobMode(), kLinearMode);
    EXPECT_EQ(editor->getFrame()->getKnobMode(), kLinearMode);
    click(20, 20, kLButton);
    drag(20, 10);
    release(20, 10);
    EXPECT_NEAR(editor->knob->getValue(), 0.05f, 1e-6) << "linear: 10 px up of 200";
    other->setKnobMode(kCircularMode);
    EXPECT_EQ(editor->getKnobMode(), kCircularMode);
}

TEST_F(EditorFixture, DoIdleStuffLetsTheHostIdleButIsRateLimited) {
    // The editor was made just now, so its first call is due at once.
    TestEffect fresh;
    auto* idleEditor = new TestEditor(&fresh);
    hostCalls().clear();
    idleEditor->doIdleStuff();
    EXPECT_EQ(hostCalls(), (Calls{{audioMasterIdle, 0}}));
}

TEST_F(EditorFixture, IdleWithoutAWindowDrawsNothingButClearsDirtyState) {
    editor->knob->setValue(0.7f);
    EXPECT_TRUE(editor->knob->isDirty());
    editor->idle();
    EXPECT_FALSE(editor->knob->isDirty());
    editor->close();
    editor->idle(); // no frame: nothing to do
    editor->open(nullptr);
}

TEST(XEventTranslation, PressIncludesTheButtonAndReleaseDropsIt) {
    XEventTranslator translator;
    const MouseAction down = translator.buttonPress(1, 0, 1000, 5, 6);
    EXPECT_EQ(down.kind, MouseAction::kDown);
    EXPECT_EQ(down.buttons, kLButton);
    EXPECT_EQ(down.where, CPoint(5, 6));
    const MouseAction moved = translator.motion(1 << 8, 7, 8);
    EXPECT_EQ(moved.kind, MouseAction::kMoved);
    EXPECT_EQ(moved.buttons, kLButton);
    const MouseAction up = translator.buttonRelease(1, 1 << 8, 9, 9);
    EXPECT_EQ(up.kind, MouseAction::kUp);
    EXPECT_EQ(up.buttons, 0);
    EXPECT_EQ(translator.buttonRelease(3, (1 << 8) | (1 << 10), 0, 0).buttons, kLButton);
}

TEST(XEventTranslation, ModifiersMapToTheToolkitBits) {
    XEventTranslator translator;
    EXPECT_EQ(translator.buttonPress(1, 1 << 2, 0, 0, 0).buttons, kLButton | kControl);
    EXPECT_EQ(translator.buttonPress(3, 1 << 0, 5000, 0, 0).buttons, kRButton | kShift);
    EXPECT_EQ(translator.buttonPress(2, 1 << 3, 9000, 0, 0).buttons, kMButton | kAlt);
    EXPECT_EQ(XEventTranslator::buttonsFromState((1 << 6) | (1 << 1)), kApple)
        << "caps lock is ignored";
    EXPECT_EQ(translator.buttonPress(8, 0, 20000, 0, 0).buttons, kButton4);
    EXPECT_EQ(translator.buttonPress(7, 0, 30000, 0, 0).kind, MouseAction::kNone);
}

TEST(XEventTranslation, WheelButtonsBecomeWheelSteps) {
    XEventTranslator translator;
    const MouseAction up = translator.buttonPress(4, 1 << 0, 0, 3, 4);
    EXPECT_EQ(up.kind, MouseAction::kWheel);
    EXPECT_EQ(up.wheelDistance, 1.0f);
    EXPECT_EQ(up.buttons, kShift);
    EXPECT_EQ(translator.buttonPress(5, 0, 0, 3, 4).wheelDistance, -1.0f);
    EXPECT_EQ(translator.buttonRelease(4, 0, 3, 4).kind, MouseAction::kNone);
}

TEST(XEventTranslation, SecondQuickNearbyPressIsADoubleClick) {
    XEventTranslator translator;
    EXPECT_FALSE(translator.buttonPress(1, 0, 100, 10, 10).buttons & kDoubleClick);
    EXPECT_TRUE(translator.buttonPress(1, 0, 400, 12, 13).buttons & kDoubleClick);
    EXPECT_FALSE(translator.buttonPress(1, 0, 450, 12, 13).buttons & kDoubleClick)
        << "a third press starts a new pair";
    EXPECT_FALSE(translator.buttonPress(1, 0, 2000, 12, 13).buttons & kDoubleClick) << "too late";
    EXPECT_FALSE(translator.buttonPress(1, 0, 2100, 30, 13).buttons & kDoubleClick) << "too far";
    EXPECT_FALSE(translator.buttonPress(3, 0, 2200, 30, 13).buttons & kDoubleClick)
        << "another button";
    EXPECT_TRUE(translator.buttonPress(3, 0, 2300, 30, 13).buttons & kDoubleClick);
    EXPECT_TRUE(translator.buttonPress(1, 0, 5, 0, 0).buttons == kLButton);
    EXPECT_TRUE(translator.buttonPress(1, 0, 4294967290u, 0, 0).buttons == kLButton);
    EXPECT_TRUE(translator.buttonPress(1, 0, 100, 0, 0).buttons & kDoubleClick)
        << "the server's millisecond clock wraps around";
}

TEST(EditorLifetime, EditorDestroyedWhileOpenReleasesItsFrame) {
    bool viewGone = false;
    CallLog log;
    auto* effect = new TestEffect;
    auto* editor = new TestEditor(effect);
    editor->open(nullptr);
    editor->getFrame()->addView(
        new ProbeView(CRect(0, 0, 5, 5), "v", log, kMouseEventHandled, &viewGone));
    delete effect; // the host never sent effEditClose
    EXPECT_TRUE(viewGone);
}
