// CKnob's angle↔value mapping and drag modes, CAnimKnob's frame choice.

#include "EditorTestSupport.h"
#include "TestImages.h"

#include <gtest/gtest.h>
#include <limits>

using namespace editortest;

namespace {

// A 40-px knob at (100, 100): its centre is (120, 120).
struct KnobFixture : FrameFixture {
    CKnob* knob = add(new CKnob(CRect(100, 100, 140, 140), &listener, 5, nullptr, nullptr));

    float moveTo(CCoord x, CCoord y, long buttons = kLButton) {
        move(x, y, buttons);
        return knob->getValue();
    }
};

CPoint pointFor(CKnob& knob, float value) {
    knob.setValue(value);
    CPoint p;
    knob.valueToPoint(p);
    return p;
}

} // namespace

TEST(KnobMapping, ValueFromPointFollowsTheArcAndSnapsInTheDeadZone) {
    CKnob knob(CRect(0, 0, 40, 40), nullptr, 0, nullptr, nullptr);
    CKnob reversed(CRect(0, 0, 40, 40), nullptr, 0, nullptr, nullptr);
    reversed.setStartAngle(static_cast<float>(-kPI / 4));
    reversed.setRangeAngle(static_cast<float>(3 * kPI / 2)); // positive: the other way round
    const struct {
        CKnob* knob;
        CCoord x, y;
        float value;
    } cases[] = {
        {&knob, 20, 0, 0.5f},          {&knob, 40, 20, 0.83333f}, {&knob, 0, 20, 0.16667f},
        {&knob, 38, 28, 0.92208f},     {&knob, 2, 28, 0.07792f},  {&knob, 19, 40, 0.0f},
        {&knob, 5, 35, 0.0f},          {&knob, 21, 40, 1.0f},     {&knob, 35, 35, 1.0f},
        {&reversed, 40, 20, 1.0f / 6}, {&reversed, 20, 0, 0.5f},  {&reversed, 21, 40, 0.0f},
        {&reversed, 19, 40, 1.0f},
    };
    for (const auto& c : cases) {
        CPoint p(c.x, c.y);
        EXPECT_NEAR(c.knob->valueFromPoint(p), c.value, 1e-5) << c.x << "," << c.y;
    }
}

TEST(KnobMapping, ValueToPointWithDefaultAndZeroInset) {
    CKnob knob(CRect(0, 0, 40, 40), nullptr, 0, nullptr, nullptr);
    EXPECT_EQ(pointFor(knob, 0.0f), CPoint(8, 32));
    EXPECT_EQ(pointFor(knob, 0.25f), CPoint(4, 13));
    EXPECT_EQ(pointFor(knob, 0.5f), CPoint(20, 3));
    EXPECT_EQ(pointFor(knob, 0.75f), CPoint(36, 13));
    EXPECT_EQ(pointFor(knob, 1.0f), CPoint(32, 32));

    CAnimKnob anim(CRect(0, 0, 40, 40), nullptr, 0, 31, 40, nullptr);
    EXPECT_EQ(pointFor(anim, 0.0f), CPoint(6, 34));
    EXPECT_EQ(pointFor(anim, 0.5f), CPoint(20, 0));
    EXPECT_EQ(pointFor(anim, 1.0f), CPoint(34, 34));
}

TEST_F(KnobFixture, CircularClickJumpsToTheAngleAndTheDragFollowsOutsideTheKnob) {
    down(120, 100);
    EXPECT_FLOAT_EQ(knob->getValue(), 0.5f);
    EXPECT_EQ(frame->getMouseDownView(), knob);
    EXPECT_NEAR(moveTo(290, 120), 0.83333f, 1e-5) << "far outside the knob, at 3 o'clock";
    up(290, 290);
    EXPECT_EQ(log, (CallLog{"listenerBegin 5", "hostBegin 5", "valueChanged 5", "valueChanged 5",
                            "hostEnd 5", "listenerEnd 5"}));
}

TEST_F(KnobFixture, CircularDragIsPinnedAtTheEndItCameFrom) {
    down(140, 120);
    EXPECT_EQ(moveTo(135, 135), 1.0f);
    EXPECT_EQ(moveTo(105, 135), 1.0f) << "crossing the dead zone does not jump to 0";
    EXPECT_EQ(moveTo(100, 120), 1.0f) << "still more than half the range away";
    EXPECT_NEAR(moveTo(138, 128), 0.92208f, 1e-5) << "back near the last accepted value";
    up(138, 128);

    down(104, 108);
    EXPECT_NEAR(knob->getValue(), 0.3032f, 1e-4);
    EXPECT_EQ(moveTo(135, 135), 0.0f) << "a jump from 0.3 to the top end pins the bottom end";
    EXPECT_NEAR(moveTo(129, 102), 0.5984f, 1e-4) << "within half the range of 0.3, not of 0";
}

TEST_F(KnobFixture, LinearModeMovesWithDistanceAndShiftRescalesWithoutAJump) {
    editor.knobMode = kLinearMode;
    knob->setValue(0.3f);
    knob->invalid();
    down(120, 100);
    EXPECT_EQ(knob->getValue(), 0.3f) << "no jump on click";
    up(120, 100);
    down(120, 120);
    EXPECT_NEAR(moveTo(120, 100), 0.4f, 1e-6) << "20 px up of 200";
    EXPECT_NEAR(moveTo(130, 100), 0.45f, 1e-6) << "right counts like up";
    EXPECT_EQ(moveTo(130, -300), 1.0f);
    EXPECT_NEAR(moveTo(130, 0), 0.95f, 1e-6) << "the value follows the distance, not the path";
    EXPECT_NEAR(moveTo(120, 100), 0.4f, 1e-6);
    // The entry value is rebased where the buttons change, so the value there
    // is the one the old scale gives; from there on the fine scale applies.
    EXPECT_NEAR(moveTo(120, 99, kLButton | kShift), 0.3f + 21.0f / 200.0f, 1e-6);
    EXPECT_NEAR(moveTo(120, 69, kLButton | kShift), 0.405f + 30.0f / 300.0f, 1e-6);
    up(120, 69);

    knob->setValue(0.0f);
    down(120, 120, kLButton | kShift);
    EXPECT_NEAR(moveTo(120, 90, kLButton | kShift), 0.1f, 1e-6) << "fine from a shifted press";
}

TEST_F(KnobFixture, AltFlipsTheEditorsKnobMode) {
    const struct {
        long editorMode;
        long buttons;
        bool linear; // a linear knob does not jump to the clicked angle
    } cases[] = {{kCircularMode, kLButton | kAlt, true},
                 {kLinearMode, kLButton | kAlt, false},
                 {kRelativCircularMode, kLButton, false}}; // behaves as circular
    for (const auto& c : cases) {
        editor.knobMode = c.editorMode;
        knob->setValue(0.2f);
        down(120, 100, c.buttons);
        EXPECT_EQ(knob->getValue(), c.linear ? 0.2f : 0.5f) << c.editorMode;
        up(120, 100);
    }
}

TEST_F(KnobFixture, DefaultGestureNestsAndRightClickGivesAnEmptyEditPair) {
    knob->setValue(0.9f);
    knob->invalid();
    down(120, 100, kLButton | kControl);
    EXPECT_EQ(knob->getValue(), 0.5f);
    EXPECT_EQ(frame->getMouseDownView(), nullptr) << "no moves wanted";
    EXPECT_EQ(log, (CallLog{"modifierClicked 5 34", "listenerBegin 5", "hostBegin 5",
                            "listenerBegin 5", "hostBegin 5", "valueChanged 5", "hostEnd 5",
                            "listenerEnd 5", "hostEnd 5", "listenerEnd 5"}));

    log.clear();
    knob->setValue(0.2f);
    knob->invalid();
    down(120, 100, kRButton);
    moveTo(140, 120, kRButton);
    up(140, 120);
    EXPECT_EQ(knob->getValue(), 0.2f);
    EXPECT_EQ(log, (CallLog{"modifierClicked 5 8", "listenerBegin 5", "hostBegin 5", "hostEnd 5",
                            "listenerEnd 5"}));
}

TEST(AnimKnob, FrameIndexIsTruncatedAndFollowsTheStrip) {
    auto* strip = new CBitmap(testimages::kKnobStripId);
    CAnimKnob knob(CRect(50, 60, 90, 100), nullptr, 0, 7, 40, strip);
    strip->forget();
    EXPECT_EQ(knob.getNumSubPixmaps(), 31) << "the strip's height overrides the given count";
    RecordingContext context;
    std::vector<CCoord> frames;
    for (float value : {0.0f, 0.49f, 0.5f, 0.999f, 1.0f, -0.5f}) {
        knob.setValue(value);
        knob.draw(&context);
        EXPECT_EQ(context.bitmaps.back().dest, CRect(50, 60, 90, 100));
        frames.push_back(context.bitmaps.back().offset.v / testimages::kKnobSide);
    }
    EXPECT_EQ(frames, (std::vector<CCoord>{0, 14, 15, 29, 30, 0}));
    knob.setHeightOfOneImage(80);
    EXPECT_EQ(knob.getNumSubPixmaps(), 15);

    CAnimKnob hundred(CRect(0, 0, 40, 40), nullptr, 0, 101, 40, nullptr);
    hundred.setInverseBitmap(true);
    hundred.setValue(0.25f);
    EXPECT_EQ(hundred.getFrameOffset(), 75 * 40);
    hundred.setValue(1.5f);
    EXPECT_EQ(hundred.getFrameOffset(), 0);
}

TEST(AnimKnob, HostileValuesGiveDefinedOffsets) {
    CAnimKnob knob(CRect(0, 0, 40, 40), nullptr, 0, 31, 40, nullptr);
    for (float value : {std::numeric_limits<float>::quiet_NaN(),
                        std::numeric_limits<float>::infinity(), -1e30f, 1e30f}) {
        knob.setValue(value);
        const CCoord offset = knob.getFrameOffset();
        EXPECT_GE(offset, 0);
        CPoint p;
        knob.valueToPoint(p);
        RecordingContext context;
        knob.draw(&context);
    }
}

TEST(AnimKnob, RepaintsOnlyWhenTheHandlePointMoves) {
    CAnimKnob knob(CRect(0, 0, 40, 40), nullptr, 0, 31, 40, nullptr);
    RecordingContext context;
    knob.setValue(0.5f);
    knob.draw(&context);
    EXPECT_FALSE(knob.isDirty());
    knob.setValue(0.5005f);
    EXPECT_FALSE(knob.isDirty()) << "same pixel on the virtual handle circle";
    knob.setValue(0.6f);
    EXPECT_TRUE(knob.isDirty());
    knob.setValue(0.5f);
    knob.setDirty(true);
    EXPECT_TRUE(knob.isDirty()) << "an explicit dirty flag always counts";
}
