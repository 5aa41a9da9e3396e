// The plug-in's editor without a window: layout, the two-way synchronisation
// between controls and parameters, and the value displays.
#include "HostCallback.h"
#include "ZAE_editor.h"
#include "ZelAmbiEncEdit.h"
#include "ZelTouchPad.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override {
        plugin = std::make_unique<ZelAmbiEncEdit>(&HostCallback::entry);
        host.attach(*plugin->getAeffect());
        editor = static_cast<ZAE_editor*>(plugin->getEditor());
    }
    void TearDown() override {
        if (editor != nullptr) editor->close();
    }
    // Without a parent window: the host hears that no window opened, and the
    // controls are built off-screen.
    void open() {
        ASSERT_FALSE(editor->open(nullptr));
        ASSERT_NE(frame(), nullptr);
    }
    CFrame* frame() { return editor->getFrame(); }
    std::string hostText(int index) {
        char text[256] = {};
        plugin->getParameterDisplay(index, text);
        return text;
    }
    static std::string shown(CParamDisplay* display) {
        char text[CParamDisplay::kTextBufferSize] = {};
        display->getDisplayString(text);
        return text;
    }

    HostCallback host;
    std::unique_ptr<ZelAmbiEncEdit> plugin;
    ZAE_editor* editor = nullptr;
};

} // namespace

TEST_F(EditorTest, PadPositionFollowsTheCoordinates) {
    open();
    plugin->setParameter(kX, 0.5f);
    plugin->setParameter(kY, 0.5f);
    plugin->setParameter(kAzim, plugin->getParameter(kAzim)); // refreshes the pad
    EXPECT_EQ(editor->getTouchPad()->getXValue(), 0.5f);
    EXPECT_EQ(editor->getTouchPad()->getYValue(), 0.5f);

    plugin->setParameter(kY, 1.0f); // y alone: the pad stays where it was
    EXPECT_EQ(editor->getTouchPad()->getXValue(), 0.5f);
    plugin->setParameter(kAzim, plugin->getParameter(kAzim));
    EXPECT_EQ(editor->getTouchPad()->getXValue(), 0.0f); // left centre
    EXPECT_EQ(editor->getTouchPad()->getYValue(), 0.5f);
    EXPECT_EQ(shown(editor->getYDisplay()), "4.00");
}

TEST_F(EditorTest, HostChangesOfEachIndexRefreshTheirRow) {
    open();
    // Distance: the pad moves with the derived x, y.
    plugin->setParameter(kDist, 0.5f); // 2 m straight ahead
    EXPECT_FLOAT_EQ(editor->getTouchPad()->getYValue(), 1.0f - plugin->getParameter(kX));
    EXPECT_EQ(shown(editor->getXDisplay()), "2.00");
    // Compensation distance: complement on the switch and a fresh display.
    CRect dirty;
    frame()->takeInvalidRect(dirty);
    plugin->setParameter(kNFC, 0.25f);
    EXPECT_EQ(editor->getNfcSwitch()->getValue(), 0.75f);
    EXPECT_EQ(shown(editor->getNfcDisplay()), hostText(kNFC));
    ASSERT_TRUE(frame()->takeInvalidRect(dirty));
    CRect display;
    EXPECT_TRUE(dirty.rectOverlap(editor->getNfcDisplay()->getViewSize(display)));
    // Out-of-range indices change nothing and do not crash.
    const float padX = editor->getTouchPad()->getXValue();
    plugin->setParameter(-1, 0.3f);
    plugin->setParameter(7, 0.3f);
    editor->setParameter(1000, 0.0f);
    EXPECT_EQ(editor->getTouchPad()->getXValue(), padX);
}

TEST_F(EditorTest, ProgramSwitchMovesTheControls) {
    open();
    plugin->setProgram(3);
    plugin->setParameter(kAzim, 0.25f); // program 3: 90 degrees, 4 m: y = 4 m
    plugin->setProgram(0);
    plugin->setProgram(3);
    EXPECT_NEAR(editor->getTouchPad()->getXValue(), 0.0f, 1e-6f);
    EXPECT_EQ(shown(editor->getYDisplay()), hostText(kY));
}

TEST_F(EditorTest, ValueChangedIgnoresUnknownTagsAndZ) {
    open();
    for (long tag : {-1L, 4L, 7L, 1000L}) {
        CControl stray(CRect(0, 0, 10, 10), editor, tag);
        stray.setValue(0.3f);
        editor->valueChanged(&stray);
    }
    EXPECT_TRUE(host.edits().empty());
    CControl azimuth(CRect(0, 0, 10, 10), editor, kAzim);
    azimuth.setValue(0.5f);
    editor->valueChanged(&azimuth);
    EXPECT_EQ(host.edits(), (std::vector<EditReport>{{audioMasterAutomate, kAzim, 0.5f}}));
    EXPECT_EQ(hostText(kAzim), "180");
}

TEST_F(EditorTest, KnobModeIsSharedByTheEditorsOfEveryInstance) {
    ZelAmbiEncEdit other(&HostCallback::entry);
    EXPECT_TRUE(editor->setKnobMode(kLinearMode));
    EXPECT_EQ(static_cast<AEffGUIEditor*>(other.getEditor())->getKnobMode(), kLinearMode);
    editor->setKnobMode(kCircularMode);
}

// A host that deletes the effect in the middle of a drag, without closing
// the editor first: the frame and its views go with it (LeakSanitizer and
// AddressSanitizer watch this).
TEST_F(EditorTest, EffectDeletedInTheMiddleOfADragReleasesTheEditor) {
    open();
    CPoint where(171, 87); // on the handle, top centre
    frame()->onMouseDown(where, kLButton);
    editor = nullptr;
    plugin.reset();
}
