// AEffGUIEditor on a real AudioEffect: what the host sees of edit gestures,
// idle and knob mode, and the X event translation.

#include "EditorTestSupport.h"
#include "TestPlugin.h"
#include "platform/xeventtranslator.h"

#include <gtest/gtest.h>

using namespace editortest;

namespace {

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
    // Press at (x0, y0), move to (x1, y1) and release there.
    void drag(CCoord x0, CCoord y0, CCoord x1, CCoord y1) {
        CPoint down(x0, y0), to(x1, y1);
        editor->getFrame()->onMouseDown(down, kLButton);
        editor->getFrame()->onMouseMoved(to, kLButton);
        editor->getFrame()->onMouseUp(to, 0);
    }
};

} // namespace

TEST_F(EditorFixture, KnobModeIsSharedByAllEditorsOfTheModule) {
    TestEffect otherEffect;
    auto* other = new TestEditor(&otherEffect);
    EXPECT_TRUE(editor->setKnobMode(kLinearMode));
    EXPECT_EQ(other->getKnobMode(), kLinearMode);
    EXPECT_EQ(editor->getFrame()->getKnobMode(), kLinearMode);
    drag(80, 30, 80, 20);
    EXPECT_NEAR(editor->knob->getValue(), 0.05f, 1e-6) << "linear: 10 px up of 200";
    other->setKnobMode(kCircularMode);
    EXPECT_EQ(editor->getKnobMode(), kCircularMode);
}

TEST_F(EditorFixture, IdleLetsTheHostIdleAndClearsDirtyStateWithoutAWindow) {
    // A fresh editor's first doIdleStuff is due at once.
    TestEffect fresh;
    auto* idleEditor = new TestEditor(&fresh);
    hostCalls().clear();
    idleEditor->doIdleStuff();
    EXPECT_EQ(hostCalls(), (HostCalls{{audioMasterIdle, 0}}));

    editor->idle(); // the first idle takes the whole new frame
    editor->verticalSwitch->setValue(0.7f);
    EXPECT_TRUE(editor->verticalSwitch->isDirty());
    editor->idle();
    EXPECT_FALSE(editor->verticalSwitch->isDirty());
    editor->close();
    editor->idle(); // no frame: nothing to do
    editor->open(nullptr);
}

TEST(EditorLifetime, EditorDestroyedWhileOpenAndDraggingReleasesItsFrame) {
    bool viewGone = false;
    CallLog log;
    auto* effect = new TestEffect;
    auto* editor = new TestEditor(effect);
    editor->open(nullptr);
    editor->getFrame()->addView(
        new ProbeView(CRect(0, 0, 5, 5), "v", log, kMouseEventHandled, &viewGone));
    CPoint where(2, 2);
    editor->getFrame()->onMouseDown(where, kLButton); // in the middle of a drag
    delete effect;                                    // the host never sent effEditClose
    EXPECT_TRUE(viewGone);
}

TEST(XEventTranslation, ButtonsModifiersAndWheel) {
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
    EXPECT_EQ(up.buttons, 0) << "a release drops its own button";
    EXPECT_EQ(translator.buttonRelease(3, (1 << 8) | (1 << 10), 0, 0).buttons, kLButton);

    EXPECT_EQ(translator.buttonPress(1, 1 << 2, 0, 0, 0).buttons, kLButton | kControl);
    EXPECT_EQ(translator.buttonPress(3, 1 << 0, 5000, 0, 0).buttons, kRButton | kShift);
    EXPECT_EQ(translator.buttonPress(2, 1 << 3, 9000, 0, 0).buttons, kMButton | kAlt);
    EXPECT_EQ(XEventTranslator::buttonsFromState((1 << 6) | (1 << 1)), kApple)
        << "caps lock is ignored";
    EXPECT_EQ(translator.buttonPress(8, 0, 20000, 0, 0).buttons, kButton4);
    EXPECT_EQ(translator.buttonPress(7, 0, 30000, 0, 0).kind, MouseAction::kNone);

    const MouseAction wheel = translator.buttonPress(4, 1 << 0, 0, 3, 4);
    EXPECT_EQ(wheel.kind, MouseAction::kWheel);
    EXPECT_EQ(wheel.wheelDistance, 1.0f);
    EXPECT_EQ(wheel.buttons, kShift);
    EXPECT_EQ(translator.buttonPress(5, 0, 0, 3, 4).wheelDistance, -1.0f);
    EXPECT_EQ(translator.buttonRelease(4, 0, 3, 4).kind, MouseAction::kNone);
}

TEST(XEventTranslation, SecondQuickNearbyPressIsADoubleClick) {
    XEventTranslator translator;
    const struct {
        std::uint32_t time;
        int x;
        std::uint8_t button;
        bool isDouble;
    } presses[] = {
        {100, 10, 1, false},
        {400, 12, 1, true},
        {450, 12, 1, false},  // a third press starts a new pair
        {2000, 12, 1, false}, // too late
        {2100, 30, 1, false}, // too far
        {2200, 30, 3, false}, // another button
        {2300, 30, 3, true},
        {5, 0, 1, false},
        {4294967290u, 0, 1, false},
        {100, 0, 1, true}, // the server's millisecond clock wraps around
    };
    for (const auto& p : presses)
        EXPECT_EQ((translator.buttonPress(p.button, 0, p.time, p.x, 13).buttons & kDoubleClick) !=
                      0,
                  p.isDouble)
            << p.time;
}
