// CControl's value, dirty and edit-gesture rules, and CParamDisplay's text.

#include "EditorTestSupport.h"

#include <cstring>
#include <gtest/gtest.h>
#include <thread>

using namespace editortest;

namespace {

// The smallest concrete control: remembers nothing of its own.
class PlainControl : public CControl {
public:
    using CControl::CControl;
    CMouseEventResult onMouseDown(CPoint&, const long& buttons) override {
        return checkDefaultValue(buttons) ? kMouseDownEventHandledButDontNeedMovedOrUpEvents
                                          : kMouseEventHandled;
    }
};

std::vector<std::string> drawnStrings(CParamDisplay& display) {
    RecordingContext context;
    display.draw(&context);
    return context.strings;
}

} // namespace

TEST(ControlDirty, NewControlIsDirtyInvalidCountsAsDrawnAndSetDirtyForcesADifference) {
    PlainControl control(CRect(0, 0, 10, 10));
    EXPECT_TRUE(control.isDirty());
    control.invalid();
    EXPECT_FALSE(control.isDirty());
    control.setValue(0.25f);
    EXPECT_TRUE(control.isDirty()) << "a changed value is dirty without any flag";
    control.setDirty(false);
    EXPECT_FALSE(control.isDirty());
    EXPECT_EQ(control.getOldValue(), 0.25f);

    control.setValue(-1.0f); // the old value's initial mark
    control.setDirty(true);
    EXPECT_EQ(control.getOldValue(), 0.0f);
    EXPECT_TRUE(control.isDirty());
}

TEST(ControlDirty, ValueSetFromAnotherThreadIsDrawnAtTheNextIdle) {
    auto* frame = new CFrame(CRect(0, 0, 50, 50), nullptr, nullptr);
    auto* control = new PlainControl(CRect(10, 10, 20, 20));
    frame->addView(control);
    CRect area;
    frame->takeInvalidRect(area);

    std::thread host([control] {
        control->setValue(0.75f);
        control->invalid(); // only flags a repaint from this thread
    });
    host.join();
    ASSERT_TRUE(frame->takeInvalidRect(area));
    EXPECT_EQ(area, CRect(0, 0, 50, 50)) << "another thread asks for a full repaint";

    control->setValue(0.5f);
    frame->idle();
    ASSERT_TRUE(frame->takeInvalidRect(area));
    EXPECT_EQ(area, CRect(10, 10, 20, 20));
    EXPECT_FALSE(control->isDirty());
    delete frame;
}

TEST_F(FrameFixture, BeginEditTellsListenerFirstAndEndEditTellsHostFirst) {
    auto* control = add(new PlainControl(CRect(0, 0, 10, 10), &listener, 4));
    control->beginEdit();
    control->endEdit();
    EXPECT_EQ(log, (CallLog{"listenerBegin 4", "hostBegin 4", "hostEnd 4", "listenerEnd 4"}));
    EXPECT_EQ(frame->getFocusView(), control);
}

TEST_F(FrameFixture, DefaultValueGestureNeedsExactlyControlAndLeft) {
    auto* control = add(new PlainControl(CRect(0, 0, 10, 10), &listener, 3));
    control->setValue(0.9f);
    control->invalid();
    const long almost[] = {kControl, kLButton, kControl | kLButton | kShift,
                           kControl | kLButton | kDoubleClick, kControl | kLButton | kRButton};
    for (long buttons : almost) EXPECT_FALSE(control->checkDefaultValue(buttons)) << buttons;
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(control->getValue(), 0.9f);

    EXPECT_TRUE(control->checkDefaultValue(kControl | kLButton));
    EXPECT_EQ(control->getValue(), 0.5f);
    EXPECT_EQ(log, (CallLog{"listenerBegin 3", "hostBegin 3", "valueChanged 3", "hostEnd 3",
                            "listenerEnd 3"}));
    EXPECT_TRUE(control->isDirty()) << "redrawn at the next idle, not at once";

    // Already at the default: the edit pair, but no change to announce.
    log.clear();
    control->invalid();
    EXPECT_TRUE(control->checkDefaultValue(kControl | kLButton));
    EXPECT_EQ(log, (CallLog{"listenerBegin 3", "hostBegin 3", "hostEnd 3", "listenerEnd 3"}));
}

TEST_F(FrameFixture, ListenerCanTakeModifiedClicksBeforeTheControl) {
    auto* control = add(new CVerticalSwitch(CRect(0, 0, 20, 40), &listener, 9, 4, 40, 4, nullptr));
    listener.consumeModifierClicks = true;
    EXPECT_EQ(down(5, 35, kLButton | kShift), kMouseEventHandled);
    EXPECT_EQ(log, (CallLog{"modifierClicked 9 18"}));
    EXPECT_EQ(control->getValue(), 0.0f) << "the control never saw the click";
    EXPECT_EQ(frame->getMouseDownView(), nullptr);

    log.clear();
    listener.consumeModifierClicks = false;
    down(5, 35, kLButton | kShift);
    EXPECT_EQ(log.front(), "modifierClicked 9 18");
    EXPECT_EQ(control->getValue(), 1.0f) << "declined, so the control handles it";

    log.clear();
    down(5, 35);
    EXPECT_EQ(log.front(), "listenerBegin 9") << "no pre-check without modifiers";
}

TEST(ParamDisplay, ConvertersAndTheirPrecedence) {
    CParamDisplay display(CRect(0, 0, 40, 20));
    display.setValue(0.25f);
    EXPECT_EQ(drawnStrings(display), (std::vector<std::string>{"0.25"}));
    display.setStringConvert([](float value, char* text) {
        std::snprintf(text, 256, "plain %.1f", static_cast<double>(value));
    });
    EXPECT_EQ(drawnStrings(display), (std::vector<std::string>{"plain 0.2"}));
    int userData = 42;
    display.setStringConvert(
        [](float value, char* text, void* data) {
            std::snprintf(text, 256, "%d:%.2f", *static_cast<int*>(data),
                          static_cast<double>(value));
        },
        &userData);
    EXPECT_EQ(drawnStrings(display), (std::vector<std::string>{"42:0.25"}))
        << "the converter with user data wins";

    CParamDisplay full(CRect(0, 0, 40, 20));
    full.setStringConvert(
        [](float, char* text) { std::memset(text, 'x', CParamDisplay::kTextBufferSize); });
    const std::vector<std::string> cut = drawnStrings(full);
    ASSERT_EQ(cut.size(), 1u);
    EXPECT_EQ(cut[0].size(), CParamDisplay::kTextBufferSize - 1u) << "a full buffer is cut safely";
}

TEST(ParamDisplay, WhatOpaqueTransparentAndHiddenDisplaysPaint) {
    RecordingContext context;
    CParamDisplay empty(CRect(0, 0, 40, 20));
    empty.setStringConvert([](float, char* text) { text[0] = 0; });
    empty.draw(&context);
    EXPECT_TRUE(context.strings.empty()) << "empty text draws no string";
    EXPECT_EQ(context.fills.size(), 1u) << "opaque display paints its back colour";

    CParamDisplay hidden(CRect(0, 0, 40, 20), nullptr, kNoDrawStyle);
    EXPECT_FALSE(hidden.isDirty());
    hidden.draw(&context);
    EXPECT_EQ(context.fills.size(), 1u);
    EXPECT_TRUE(context.strings.empty());

    CParamDisplay transparent(CRect(0, 0, 40, 20));
    transparent.setTransparency(true);
    transparent.setFont(kNormalFontSmaller);
    transparent.setFontColor(MakeCColor(28, 174, 255));
    transparent.draw(&context);
    EXPECT_EQ(context.fills.size(), 1u) << "transparent: only the text";
    EXPECT_EQ(context.strings, (std::vector<std::string>{"0.00"}));
    EXPECT_EQ(context.getFontSize(), 10);
    EXPECT_EQ(context.getFontColor(), MakeCColor(28, 174, 255));
}
