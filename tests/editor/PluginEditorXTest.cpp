// The built plug-in's editor in a real X window under a private Xvfb, driven
// as a host and a user drive it: the dispatcher's editor opcodes, pointer
// input through XTest, host automation, and the host's reports checked.

#include "PluginEditorHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

using namespace editortest;

namespace {

// Normalised values of positions and distances the tests place.
constexpr float kTwoMetres = 0.5f;                   // distance 4 m .. 0 m
constexpr float kAzimuthLeft = 0.25f;                // 90 degrees
constexpr float kCompensationOneMetre = 0.5f / 3.5f; // 0.5 m .. 4 m

// Normalised parameter value for a coordinate in metres (-4 .. 4 m).
float coordinate(double metres) {
    return static_cast<float>((metres + 4.0) / 8.0);
}

// What the pad writes for y (horizontal) and x (vertical) when its handle is
// dragged by its centre to window point (x, y): the complements of the
// handle's place on its travel, clamped.
struct PadWrite {
    float y;
    float x;
};
PadWrite padWriteFor(int x, int y) {
    auto along = [](int p, int origin) {
        const float travel = layout::kPadSide - layout::kHandleSide;
        return 1.0f - std::clamp((p - origin - layout::kHandleSide / 2.0f) / travel, 0.0f, 1.0f);
    };
    return {along(x, layout::kPadLeft), along(y, layout::kPadTop)};
}

// A drag of the pad as the host must hear it: one edit of x (the pad's tag),
// and inside it pairs of automation reports, y before x.
::testing::AssertionResult isOneEditOfXWithPairs(const std::vector<EditReport>& reports) {
    if (reports.size() < 4) return ::testing::AssertionFailure() << reports.size() << " reports";
    if (!(reports.front() == EditReport{audioMasterBeginEdit, kX, 0.0f}))
        return ::testing::AssertionFailure() << "does not begin with the edit of x";
    if (!(reports.back() == EditReport{audioMasterEndEdit, kX, 0.0f}))
        return ::testing::AssertionFailure() << "does not end with the edit of x";
    if (reports.size() % 2 != 0) return ::testing::AssertionFailure() << "unpaired report";
    for (std::size_t i = 1; i + 1 < reports.size(); i += 2) {
        if (reports[i].opcode != audioMasterAutomate || reports[i].index != kY ||
            reports[i + 1].opcode != audioMasterAutomate || reports[i + 1].index != kX)
            return ::testing::AssertionFailure() << "report " << i << " is not a (y, x) pair";
    }
    return ::testing::AssertionSuccess();
}

struct PluginEditorX : XFixture {
    // Places the source in the horizontal plane from the host's side.
    static void placeSource(HostedEditorPlugin& plugin, float azimuth, float distanceValue) {
        plugin.setParameter(kElev, 0.5f);
        plugin.setParameter(kDist, distanceValue);
        plugin.setParameter(kAzim, azimuth);
    }
};

} // namespace

TEST_F(PluginEditorX, OpensAtTheReportedSizeWithTheHandleWhereTheHostPutsTheSource) {
    PluginEditorSession editor(client, 0, 0);
    HostedEditorPlugin& plugin = editor.plugin();
    EXPECT_EQ(plugin.editorSize(), std::make_pair(layout::kWidth, layout::kHeight));
    ASSERT_TRUE(editor.opened());
    ASSERT_TRUE(editor.waitUntilPainted());
    const WindowGeometry geometry = client.geometry(editor.window());
    EXPECT_EQ(geometry.x, 0);
    EXPECT_EQ(geometry.y, 0);
    EXPECT_EQ(geometry.width, layout::kWidth);
    EXPECT_EQ(geometry.height, layout::kHeight);
    // The handle stands where the initial program puts the source.
    std::optional<Spot> handle;
    EXPECT_TRUE(editor.waitForHandleAtParameters(handle));

    placeSource(plugin, 0.0f, kTwoMetres); // 2 m to the front: above the centre
    std::optional<Spot> front;
    ASSERT_TRUE(editor.waitForHandleAtParameters(front));
    EXPECT_NEAR(plugin.getParameter(kX), coordinate(2.0), 1e-6f);
    // 2 m to the left: left of the centre. The pad's two values keep their
    // mean on this move, so only a repaint that looks at both shows it.
    plugin.setParameter(kAzim, kAzimuthLeft);
    std::optional<Spot> left;
    ASSERT_TRUE(editor.waitForHandleAtParameters(left));
    EXPECT_NEAR(plugin.getParameter(kY), coordinate(2.0), 1e-6f);
    // 2 m is 153 / 4 px of travel on each axis.
    const double quarter = (layout::kPadSide - layout::kHandleSide) / 4.0;
    EXPECT_NEAR(left->x - front->x, -quarter, 1.5);
    EXPECT_NEAR(left->y - front->y, quarter, 1.5);

    plugin.setParameter(kNFC, kCompensationOneMetre);
    EXPECT_EQ(plugin.display(kNFC), "1.00");
    // Host automation is no user edit: nothing is reported back.
    EXPECT_TRUE(plugin.reports().empty());
}

TEST_F(PluginEditorX, DraggingTheHandleWritesYThenXInsideOneEditOfX) {
    PluginEditorSession editor(client, 0, 0);
    HostedEditorPlugin& plugin = editor.plugin();
    ASSERT_TRUE(editor.waitUntilPainted());
    // From the centre, with every move inside 4 m: writing y before x never
    // passes a point beyond the outer limit, where the encoder would pull the
    // source back in.
    placeSource(plugin, 0.0f, 1.0f);
    std::optional<Spot> centre; // the pad hit-tests the handle where it last drew it
    ASSERT_TRUE(editor.waitForHandleAtParameters(centre));
    plugin.clearReports();

    // Grab the handle by its centre, so that the pad follows the pointer exactly.
    const Spot start = expectedHandleCentre(plugin.getParameter(kX), plugin.getParameter(kY));
    editor.movePointer(static_cast<int>(start.x + 0.5), static_cast<int>(start.y + 0.5));
    client.pressButton(1);
    ASSERT_TRUE(editor.idleUntil([&] { return !plugin.reportsOf(audioMasterAutomate).empty(); }));
    EXPECT_EQ(plugin.reports().front(), (EditReport{audioMasterBeginEdit, kX, 0.0f}));

    const int targets[][2] = {{140, 130}, {200, 190}, {150, 180}};
    for (const auto& target : targets) {
        const PadWrite expected = padWriteFor(target[0], target[1]);
        editor.movePointer(target[0], target[1]);
        ASSERT_TRUE(editor.idleUntil([&] {
            const std::vector<EditReport> automation = plugin.reportsOf(audioMasterAutomate);
            return automation.size() >= 2 && automation.back().index == kX &&
                   automation.back().value == expected.x &&
                   automation[automation.size() - 2].value == expected.y;
        })) << "move to "
            << target[0] << ", " << target[1];
        EXPECT_NEAR(plugin.getParameter(kY), expected.y, 1e-6f);
        EXPECT_NEAR(plugin.getParameter(kX), expected.x, 1e-6f);
    }
    // Beyond the pad's top-left corner (the pointer is still captured) the pad
    // holds at its corner and writes the largest x and y; the encoder keeps
    // the source on its 4 m limit, front left.
    editor.movePointer(-40, -30);
    ASSERT_TRUE(editor.idleUntil([&] {
        const std::vector<EditReport> automation = plugin.reportsOf(audioMasterAutomate);
        return automation.back().value == 1.0f && automation[automation.size() - 2].value == 1.0f;
    }));
    EXPECT_EQ(plugin.getParameter(kDist), 0.0f);
    EXPECT_GT(plugin.getParameter(kAzim), 0.0f);
    EXPECT_LT(plugin.getParameter(kAzim), kAzimuthLeft);

    client.releaseButton(1);
    ASSERT_TRUE(editor.idleUntil([&] { return !plugin.reportsOf(audioMasterEndEdit).empty(); }));
    const std::vector<EditReport> reports = plugin.reports();
    EXPECT_TRUE(isOneEditOfXWithPairs(reports));
    EXPECT_GE(reports.size(), 2 + 2 * (std::size(targets) + 1));

    // The window follows the stored position.
    std::optional<Spot> handle;
    EXPECT_TRUE(editor.waitForHandleAtParameters(handle));
}

TEST_F(PluginEditorX, FiftyOpenCloseCyclesLeaveNoWindowOrConnection) {
    PluginEditorSession editor(client, 0, 0);
    editor.close();
    const std::size_t topLevelWindows = client.children(client.root()).size();
    const int filesBefore = openFileCount();
    for (int cycle = 0; cycle < 50; cycle++) {
        ASSERT_TRUE(editor.open()) << "cycle " << cycle;
        if (cycle % 2) {
            ASSERT_TRUE(editor.open()) << "opened again without a close";
        }
        for (int round = 0; round < 3; round++) editor.idle();
        editor.close();
    }
    EXPECT_TRUE(pumpUntil([&] { client.sync(); },
                          [&] { return client.children(editor.parent()).empty(); }));
    EXPECT_EQ(client.children(client.root()).size(), topLevelWindows);
    EXPECT_EQ(openFileCount(), filesBefore) << "every editor connection is closed";
}

// Two instances at once: a click on the right one's compensation switch and
// host automation of the left one each change only their own instance.
TEST_F(PluginEditorX, ClickOnTheSwitchSetsTheCompensationDistanceOfItsOwnInstance) {
    using namespace layout;
    PluginEditorSession left(client, 0, 0);
    PluginEditorSession right(client, 320, 0);
    ASSERT_TRUE(left.waitUntilPainted());
    ASSERT_TRUE(right.waitUntilPainted());
    HostedEditorPlugin& plugin = right.plugin();
    ASSERT_EQ(plugin.display(kNFC), "off");
    const WindowImage leftBefore = left.snapshot();
    const WindowImage before = right.snapshot();
    auto idleBoth = [&] {
        left.idle();
        right.idle();
    };

    // 60 px down the switch's 96 px: band 49 of 79, counted from "off" at the top.
    right.click((kSwitchLeft + kSwitchRight) / 2, kSwitchTop + 60);
    ASSERT_TRUE(pumpUntil(idleBoth, [&] { return !plugin.reportsOf(audioMasterEndEdit).empty(); }));
    const float written = 1.0f - 49.0f / (kSwitchPositions - 1);
    EXPECT_EQ(plugin.reports(), (std::vector<EditReport>{{audioMasterBeginEdit, kNFC, 0.0f},
                                                         {audioMasterAutomate, kNFC, written},
                                                         {audioMasterEndEdit, kNFC, 0.0f}}));
    EXPECT_NEAR(plugin.getParameter(kNFC), written, 1e-6f);
    const std::string text = plugin.display(kNFC);
    EXPECT_NEAR(std::strtod(text.c_str(), nullptr), 0.5 + 3.5 * written, 0.005) << text;
    EXPECT_TRUE(left.plugin().reports().empty());
    EXPECT_EQ(left.plugin().display(kNFC), "off");
    // The switch and the display beneath it repaint; the pad stays as it was.
    EXPECT_TRUE(pumpUntil(idleBoth, [&] {
        const WindowImage after = right.snapshot();
        return differingPixels(before, after, kSwitchLeft, kSwitchTop, kSwitchRight,
                               kSwitchBottom) > 0 &&
               differingPixels(before, after, kNfcDisplayLeft, kNfcDisplayTop, kNfcDisplayRight,
                               kNfcDisplayBottom) > 0;
    }));

    // Host automation of the left instance moves only the left handle.
    placeSource(left.plugin(), kAzimuthLeft, kTwoMetres);
    std::optional<Spot> handle;
    EXPECT_TRUE(left.waitForHandleAtParameters(handle));
    idleBoth();
    EXPECT_EQ(differingPixels(leftBefore, left.snapshot(), kSwitchLeft, kSwitchTop, kSwitchRight,
                              kSwitchBottom),
              0);
    EXPECT_EQ(differingPixels(before, right.snapshot(), kPadLeft, kPadTop, kPadLeft + kPadSide,
                              kPadTop + kPadSide),
              0);
}

TEST_F(PluginEditorX, ParentDestroyedBeforeCloseIsSurvivedAndTheEditorReopens) {
    const int filesBefore = openFileCount();
    {
        PluginEditorSession editor(client, 0, 0);
        ASSERT_TRUE(editor.waitUntilPainted());
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
        // No window can be made in a parent that is gone, or in none.
        EXPECT_EQ(editor.plugin().dispatch(effEditOpen, 0, 0, gone), 0);
        EXPECT_EQ(editor.plugin().dispatch(effEditOpen, 0, 0, nullptr), 0);
        editor.plugin().dispatch(effEditClose);
        // The same instance opens again into a new parent, complete.
        ASSERT_TRUE(editor.open());
        EXPECT_TRUE(editor.waitUntilPainted());
    }
    EXPECT_EQ(openFileCount(), filesBefore);
}
