// The editor's X11 window under a private Xvfb: painting, real pointer input
// through XTest, a host that destroys the parent early, repeated and
// simultaneous editors.

#include "TestImages.h"
#include "TestPlugin.h"
#include "XTestSupport.h"

#include <gtest/gtest.h>
#include <memory>

using namespace editortest;

namespace {

constexpr std::uint32_t kControlKeysym = 0xffe3; // Control_L

// An editor with the test background, a 4-position switch at (10, 10) and a
// 31-frame knob at (60, 10), tags 6 and 3.
class XEditor : public AEffGUIEditor, public CControlListener {
public:
    explicit XEditor(AudioEffect* effect) : AEffGUIEditor(effect) {
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

// One plug-in instance with its editor opened into a parent at (x, y).
struct OpenEditor {
    OpenEditor(XClient& client, int x, int y)
        : client(client), parent(client.createParent(x, y, testimages::kBackgroundWidth,
                                                     testimages::kBackgroundHeight)) {
        editor->open(reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent)));
    }
    ~OpenEditor() {
        editor->close();
        effect.reset();
        client.destroy(parent);
    }
    void idle() { editor->idle(); }
    xcb_window_t window() {
        const std::vector<xcb_window_t> list = client.children(parent);
        return list.size() == 1 ? list[0] : 0;
    }
    // Until the editor's window is shown and painted.
    bool waitUntilShown() {
        return pumpUntil([this] { idle(); },
                         [this] {
                             const xcb_window_t w = window();
                             return w && client.isViewable(w) &&
                                    client.pixel(w, 2, 2) == testimages::kBackgroundRgb;
                         });
    }

    XClient& client;
    xcb_window_t parent;
    std::unique_ptr<TestEffect> effect = std::make_unique<TestEffect>();
    XEditor* editor = new XEditor(effect.get()); // owned by the effect
};

struct X11Fixture : ::testing::Test {
    XClient client;
    X11Fixture() { hostCalls().clear(); }
    void SetUp() override {
        ASSERT_TRUE(xvfbIsRunning());
        ASSERT_TRUE(client.ok());
    }
};

} // namespace

TEST_F(X11Fixture, FrameIsAChildWindowOfTheBackgroundsSizeAndPaintsIt) {
    OpenEditor open(client, 0, 0);
    ASSERT_TRUE(open.waitUntilShown());
    const xcb_window_t window = open.window();
    EXPECT_EQ(client.pixel(window, 20, 20), testimages::switchFrameRgb(0));
    EXPECT_EQ(client.pixel(window, 80, 30), testimages::knobFrameRgb(0));
    EXPECT_EQ(
        client.pixel(window, testimages::kBackgroundWidth - 1, testimages::kBackgroundHeight - 1),
        testimages::kBackgroundRgb);

    // A value set by the host shows after the next idle.
    open.editor->knob->setValue(1.0f);
    EXPECT_TRUE(
        pumpUntil([&] { open.idle(); },
                  [&] { return client.pixel(window, 80, 30) == testimages::knobFrameRgb(30); }));
}

TEST_F(X11Fixture, ClickOnTheSwitchSetsItsValueAndRepaints) {
    OpenEditor open(client, 0, 0);
    ASSERT_TRUE(open.waitUntilShown());
    client.movePointer(20, 10 + 35); // the switch's bottom band
    client.pressButton(1);
    client.releaseButton(1);
    ASSERT_TRUE(
        pumpUntil([&] { open.idle(); }, [&] { return callsOf(audioMasterEndEdit).size() == 1; }));
    EXPECT_EQ(open.editor->verticalSwitch->getValue(), 1.0f);
    EXPECT_EQ(
        hostCalls(),
        (HostCalls{{audioMasterBeginEdit, 6}, {audioMasterAutomate, 6}, {audioMasterEndEdit, 6}}));
    EXPECT_TRUE(pumpUntil(
        [&] { open.idle(); },
        [&] { return client.pixel(open.window(), 20, 20) == testimages::switchFrameRgb(3); }));
}

TEST_F(X11Fixture, DragOnTheKnobFollowsThePointerUntilRelease) {
    OpenEditor open(client, 0, 0);
    ASSERT_TRUE(open.waitUntilShown());
    client.movePointer(80, 10); // top centre: half way
    client.pressButton(1);
    ASSERT_TRUE(
        pumpUntil([&] { open.idle(); }, [&] { return open.editor->knob->getValue() == 0.5f; }));
    client.movePointer(100, 30); // 3 o'clock
    ASSERT_TRUE(
        pumpUntil([&] { open.idle(); },
                  [&] { return std::abs(open.editor->knob->getValue() - 0.83333f) < 1e-4f; }));
    client.movePointer(300, 30); // far outside the window, still captured
    client.releaseButton(1);
    ASSERT_TRUE(
        pumpUntil([&] { open.idle(); }, [&] { return callsOf(audioMasterEndEdit).size() == 1; }));
    EXPECT_EQ(callsOf(audioMasterBeginEdit), (HostCalls{{audioMasterBeginEdit, 3}}));
    EXPECT_EQ(callsOf(audioMasterEndEdit), (HostCalls{{audioMasterEndEdit, 3}}));
    EXPECT_GE(callsOf(audioMasterAutomate).size(), 2u);
}

TEST_F(X11Fixture, ControlClickResetsTheKnobToItsDefault) {
    OpenEditor open(client, 0, 0);
    ASSERT_TRUE(open.waitUntilShown());
    open.editor->knob->setValue(0.9f);
    client.movePointer(70, 40);
    client.pressKey(kControlKeysym);
    client.pressButton(1);
    client.releaseButton(1);
    client.releaseKey(kControlKeysym);
    ASSERT_TRUE(
        pumpUntil([&] { open.idle(); }, [&] { return callsOf(audioMasterEndEdit).size() == 2; }));
    EXPECT_EQ(open.editor->knob->getValue(), 0.5f);
    EXPECT_EQ(hostCalls(), (HostCalls{{audioMasterBeginEdit, 3},
                                      {audioMasterBeginEdit, 3},
                                      {audioMasterAutomate, 3},
                                      {audioMasterEndEdit, 3},
                                      {audioMasterEndEdit, 3}}));
}

TEST_F(X11Fixture, ParentDestroyedBeforeCloseIsSurvived) {
    OpenEditor open(client, 0, 0);
    ASSERT_TRUE(open.waitUntilShown());
    client.destroy(open.parent);
    for (int round = 0; round < 20; round++) {
        open.editor->knob->setValue(round / 20.0f); // forces paints into the dead window
        open.idle();
        client.sync();
    }
    open.editor->close();
    open.editor->idle();
}

TEST_F(X11Fixture, OpeningIntoAMissingParentGivesAHeadlessFrame) {
    TestEffect effect;
    auto* editor = new XEditor(&effect);
    const xcb_window_t parent = client.createParent(0, 0, 50, 50);
    client.destroy(parent);
    EXPECT_TRUE(editor->open(reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent))));
    editor->knob->setValue(0.3f);
    editor->idle(); // the first idle repaints the whole (new) frame
    editor->idle();
    EXPECT_FALSE(editor->knob->isDirty());
    editor->close();
}

TEST_F(X11Fixture, FiftyOpenCloseCyclesLeaveNothingBehind) {
    const int filesBefore = openFileCount();
    TestEffect effect;
    auto* editor = new XEditor(&effect);
    const xcb_window_t parent =
        client.createParent(0, 0, testimages::kBackgroundWidth, testimages::kBackgroundHeight);
    for (int cycle = 0; cycle < 50; cycle++) {
        editor->open(reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent)));
        for (int round = 0; round < 3; round++) editor->idle();
        editor->close();
    }
    EXPECT_TRUE(pumpUntil([&] { client.sync(); }, [&] { return client.children(parent).empty(); }));
    EXPECT_EQ(openFileCount(), filesBefore) << "every editor connection is closed";
    client.destroy(parent);
}

TEST_F(X11Fixture, TwoEditorsOpenAtOnceEachGetTheirOwnClicks) {
    OpenEditor left(client, 0, 0);
    OpenEditor right(client, 300, 0);
    ASSERT_TRUE(left.waitUntilShown());
    ASSERT_TRUE(right.waitUntilShown());
    client.movePointer(300 + 20, 10 + 25);
    client.pressButton(1);
    client.releaseButton(1);
    auto idleBoth = [&] {
        left.idle();
        right.idle();
    };
    ASSERT_TRUE(pumpUntil(idleBoth, [&] { return callsOf(audioMasterEndEdit).size() == 1; }));
    EXPECT_FLOAT_EQ(right.editor->verticalSwitch->getValue(), 2.0f / 3.0f);
    EXPECT_EQ(left.editor->verticalSwitch->getValue(), 0.0f);
    EXPECT_TRUE(pumpUntil(idleBoth, [&] {
        return client.pixel(right.window(), 20, 20) == testimages::switchFrameRgb(2) &&
               client.pixel(left.window(), 20, 20) == testimages::switchFrameRgb(0);
    }));
}
