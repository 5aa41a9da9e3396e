// The built plug-in's editor in a real X window under a private Xvfb, driven
// as a host and a user drive it: the dispatcher's editor opcodes, pointer
// input through XTest, host automation, and the host's reports checked.

#include "PluginEditorHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

using namespace editortest;
using namespace geometry;

namespace {

using PluginEditorX = XFixture;

// What the pad writes for y (horizontal) and x (vertical) when its handle is
// dragged by its centre to window point p: the complement of the handle's
// place on its travel, clamped.
float padWriteFor(int p, int padOrigin) {
    const float travel = kPad.width() - kHandleSize;
    return 1.0f - std::clamp((p - padOrigin - kHandleSize / 2.0f) / travel, 0.0f, 1.0f);
}

// A drag of the pad as the host must hear it: one edit of x (the pad's tag),
// and inside it pairs of automation reports, y before x.
bool isOneEditOfXWithPairs(const std::vector<EditReport>& r) {
    bool pairs = r.size() >= 4 && r.size() % 2 == 0 &&
                 r.front() == EditReport{audioMasterBeginEdit, kX, 0.0f} &&
                 r.back() == EditReport{audioMasterEndEdit, kX, 0.0f};
    for (std::size_t i = 1; pairs && i + 1 < r.size(); i += 2)
        pairs = r[i].opcode == audioMasterAutomate && r[i].index == kY &&
                r[i + 1].opcode == audioMasterAutomate && r[i + 1].index == kX;
    return pairs;
}

} // namespace

// With a second instance open beside it, which neither the drag nor the
// first one's window may touch.
TEST_F(PluginEditorX, DraggingTheHandleWritesYThenXInsideOneEditOfX) {
    PluginEditorSession editor(client, 0, 0);
    PluginEditorSession other(client, 320, 0);
    ASSERT_TRUE(other.showsHandleAtParameters());
    const WindowImage otherBefore = other.snapshot();
    VstPlugin& plugin = editor.plugin();
    HostCallback& host = editor.host();
    // From the centre, with every move inside 4 m: writing y before x never
    // passes a point beyond the outer limit, where the encoder would pull the
    // source back in. The pad hit-tests the handle where it last drew it.
    plugin.setParameter(kDist, 1.0f);
    ASSERT_TRUE(editor.showsHandleAtParameters());
    host.clearRecords();

    // Grab the handle by its centre (its top-left is at 162, 154), so that
    // the pad follows the pointer exactly.
    editor.movePointer(172, 164);
    client.pressButton(1);
    ASSERT_TRUE(editor.idleUntil([&] { return !host.editsOf(audioMasterAutomate).empty(); }));
    // Last, beyond the pad's top-left corner (the pointer is still captured):
    // the pad holds at its corner and writes the largest x and y.
    const int targets[][2] = {{140, 130}, {200, 190}, {150, 180}, {-40, -30}};
    for (const auto& [x, y] : targets) {
        const float yWrite = padWriteFor(x, kPad.left), xWrite = padWriteFor(y, kPad.top);
        editor.movePointer(x, y);
        ASSERT_TRUE(editor.idleUntil([&] {
            const std::vector<EditReport> automation = host.editsOf(audioMasterAutomate);
            return automation.size() >= 2 && automation.back().index == kX &&
                   automation.back().value == xWrite &&
                   automation[automation.size() - 2].value == yWrite;
        })) << "move to "
            << x << ", " << y;
        if (x < 0) break;
        EXPECT_NEAR(plugin.getParameter(kY), yWrite, 1e-6f); // inside 4 m: kept as written
        EXPECT_NEAR(plugin.getParameter(kX), xWrite, 1e-6f);
    }
    // At the corner the encoder keeps the source on its 4 m limit, front left.
    EXPECT_EQ(plugin.getParameter(kDist), 0.0f);
    EXPECT_GT(plugin.getParameter(kAzim), 0.0f);
    EXPECT_LT(plugin.getParameter(kAzim), 0.25f);

    client.releaseButton(1);
    ASSERT_TRUE(editor.idleUntil([&] { return !host.editsOf(audioMasterEndEdit).empty(); }));
    EXPECT_TRUE(isOneEditOfXWithPairs(host.edits()));
    EXPECT_GE(host.edits().size(), 2 + 2 * std::size(targets));
    EXPECT_TRUE(other.host().edits().empty());
    other.idle();
    EXPECT_TRUE(other.snapshot().pixels == otherBefore.pixels) << "the other window changed";

    // Host automation of the other instance moves only its own handle.
    other.plugin().setParameter(kDist, 0.5f);  // 2 m
    other.plugin().setParameter(kAzim, 0.25f); // to the left
    EXPECT_TRUE(other.showsHandleAtParameters());
    EXPECT_TRUE(editor.showsHandleAtParameters()) << "the window follows the stored position";
}

// Cycles of open and close, every other one opened again without a close;
// then a parent destroyed before the close, one gone and none refused at
// open, and the same instance opened again into a new parent.
TEST_F(PluginEditorX, OpenCloseCyclesAndADestroyedParentLeaveNoWindowOrConnection) {
    const std::size_t topLevelWindows = client.children(client.root()).size();
    const int filesBefore = openFileCount();
    {
        PluginEditorSession editor(client, 0, 0);
        for (int cycle = 0; cycle < 50; cycle++) {
            if (cycle % 2) editor.close();
            ASSERT_TRUE(editor.open()) << "cycle " << cycle;
            for (int round = 0; round < 3; round++) editor.idle();
        }
        editor.close();
        EXPECT_TRUE(pumpUntil([&] { client.sync(); },
                              [&] { return client.children(editor.parent()).empty(); }));

        ASSERT_TRUE(editor.open());
        ASSERT_TRUE(editor.showsHandleAtParameters());
        void* gone = reinterpret_cast<void*>(static_cast<std::uintptr_t>(editor.parent()));
        editor.destroyParent();
        for (int round = 0; round < 20; round++) {
            // Changes force paints into the window that is gone.
            editor.plugin().setParameter(kAzim, round / 20.0f);
            editor.plugin().setParameter(kNFC, round / 20.0f);
            editor.idle();
            client.sync();
        }
        editor.close();
        editor.idle();
        EXPECT_FALSE(editor.plugin().openEditor(gone));
        EXPECT_FALSE(editor.plugin().openEditor(nullptr));
        editor.plugin().closeEditor();
        ASSERT_TRUE(editor.open());
        EXPECT_TRUE(editor.showsHandleAtParameters());
    }
    EXPECT_EQ(client.children(client.root()).size(), topLevelWindows);
    EXPECT_EQ(openFileCount(), filesBefore) << "every editor connection is closed";
}
