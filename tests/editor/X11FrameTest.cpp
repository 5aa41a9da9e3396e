// The toolkit's X11 window under a private Xvfb, for what the plug-in's X
// tests do not reach: filmstrip frames painted into the window, a modifier
// key held on the real keyboard, and a parent that is gone before the open.

#include "TestPlugin.h"
#include "XTestSupport.h"

#include <gtest/gtest.h>

using namespace editortest;

namespace {

constexpr std::uint32_t kControlKeysym = 0xffe3; // Control_L

void* asParent(xcb_window_t window) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

struct X11Fixture : XFixture {
    TestEffect effect;
    TestEditor* editor = new TestEditor(&effect); // owned by the effect
    X11Fixture() { hostCalls().clear(); }
    bool idleUntil(const std::function<bool()>& done) {
        return pumpUntil([this] { editor->idle(); }, done);
    }
};

} // namespace

TEST_F(X11Fixture, PaintsTheFramesOfItsControlsAndTakesAControlClick) {
    using namespace testimages;
    const xcb_window_t parent = client.createParent(0, 0, kBackgroundWidth, kBackgroundHeight);
    ASSERT_TRUE(editor->open(asParent(parent)));
    xcb_window_t window = 0;
    ASSERT_TRUE(idleUntil([&] {
        window = client.onlyChild(parent);
        return window && client.isViewable(window) &&
               client.pixel(window, kBackgroundWidth - 1, kBackgroundHeight - 1) ==
                   kBackgroundRgb &&
               client.pixel(window, 80, 30) == knobFrameRgb(0);
    }));
    EXPECT_EQ(client.pixel(window, 20, 20), switchFrameRgb(0));

    // A value set by the host shows after the next idle.
    editor->knob->setValue(1.0f);
    EXPECT_TRUE(idleUntil([&] { return client.pixel(window, 80, 30) == knobFrameRgb(30); }));

    // Control held on the keyboard: the default-value gesture, nested edits.
    client.movePointer(70, 40);
    client.pressKey(kControlKeysym);
    client.pressButton(1);
    client.releaseButton(1);
    client.releaseKey(kControlKeysym);
    ASSERT_TRUE(idleUntil([&] { return hostCalls().size() >= 5; }));
    EXPECT_EQ(editor->knob->getValue(), 0.5f);
    EXPECT_EQ(hostCalls(), (HostCalls{{audioMasterBeginEdit, 3},
                                      {audioMasterBeginEdit, 3},
                                      {audioMasterAutomate, 3},
                                      {audioMasterEndEdit, 3},
                                      {audioMasterEndEdit, 3}}));
    EXPECT_TRUE(idleUntil([&] { return client.pixel(window, 80, 30) == knobFrameRgb(15); }));
    editor->close();
    client.destroy(parent);
}

TEST_F(X11Fixture, OpeningIntoAMissingParentGivesAHeadlessFrame) {
    const xcb_window_t parent = client.createParent(0, 0, 50, 50);
    client.destroy(parent);
    EXPECT_TRUE(editor->open(asParent(parent)));
    editor->knob->setValue(0.3f);
    editor->idle(); // the first idle repaints the whole (new) frame
    editor->idle();
    EXPECT_FALSE(editor->knob->isDirty());
    editor->close();
}
