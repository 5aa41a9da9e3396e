// The plug-in's editor without a window: the controls follow program
// switches, the knob mode is shared, and the effect may go mid-drag.
#include "HostCallback.h"
#include "ZAE_editor.h"
#include "ZelAmbiEncEdit.h"
#include "ZelTouchPad.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class EditorTest : public ::testing::Test {
protected:
    // Without a parent window: the host hears that no window opened, and the
    // controls are built off-screen.
    void SetUp() override {
        host.attach(*plugin->getAeffect());
        ASSERT_FALSE(editor->open(nullptr));
        ASSERT_NE(editor->getFrame(), nullptr);
    }
    void TearDown() override {
        if (editor != nullptr) editor->close();
    }
    float padX() const { return editor->getTouchPad()->getXValue(); }

    HostCallback host;
    std::unique_ptr<ZelAmbiEncEdit> plugin = std::make_unique<ZelAmbiEncEdit>(&HostCallback::entry);
    ZAE_editor* editor = static_cast<ZAE_editor*>(plugin->getEditor());
};

} // namespace

TEST_F(EditorTest, ProgramSwitchMovesTheControls) {
    plugin->setProgram(3);
    plugin->setParameter(kAzim, 0.25f); // program 3: 90 degrees, 4 m: y = 4 m
    EXPECT_NEAR(padX(), 0.0f, 1e-6f);
    plugin->setProgram(0); // straight ahead
    EXPECT_NEAR(padX(), 0.5f, 1e-6f);
    plugin->setProgram(3);
    EXPECT_NEAR(padX(), 0.0f, 1e-6f);
    char shown[CParamDisplay::kTextBufferSize] = {}, text[256] = {};
    editor->getYDisplay()->getDisplayString(shown);
    plugin->getParameterDisplay(kY, text);
    EXPECT_STREQ(shown, text);
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
    CPoint where(171, 87); // on the handle, top centre
    editor->getFrame()->onMouseDown(where, kLButton);
    editor = nullptr;
    plugin.reset();
}
