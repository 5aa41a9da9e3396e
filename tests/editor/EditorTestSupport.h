#pragma once

// Doubles for the editor toolkit tests: a listener and an editor interface that log the calls
// they receive, a view that reports its own destruction, and a frame that
// holds them.

#include "vstcontrols.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace editortest {

// Logs every call as text, in order, shared with a RecordingEditor.
using CallLog = std::vector<std::string>;

class RecordingListener : public CControlListener {
public:
    explicit RecordingListener(CallLog& log) : log(log) {}
    void valueChanged(CControl* control) override {
        log.push_back("valueChanged " + std::to_string(control->getTag()));
        values.push_back(control->getValue());
    }
    long controlModifierClicked(CControl* control, long button) override {
        log.push_back("modifierClicked " + std::to_string(control->getTag()) + " " +
                      std::to_string(button));
        return consumeModifierClicks ? 1 : 0;
    }
    void controlBeginEdit(CControl* control) override {
        log.push_back("listenerBegin " + std::to_string(control->getTag()));
    }
    void controlEndEdit(CControl* control) override {
        log.push_back("listenerEnd " + std::to_string(control->getTag()));
    }

    CallLog& log;
    std::vector<float> values;
    bool consumeModifierClicks = false;
};

class RecordingEditor : public VSTGUIEditorInterface {
public:
    explicit RecordingEditor(CallLog& log) : log(log) {}
    void beginEdit(long index) override { log.push_back("hostBegin " + std::to_string(index)); }
    void endEdit(long index) override { log.push_back("hostEnd " + std::to_string(index)); }
    long getKnobMode() const override { return knobMode; }
    void doIdleStuff() override { log.push_back("idle"); }

    CallLog& log;
    long knobMode = kCircularMode;
};

// Answers every mouse call with a fixed result and logs what it received.
class ProbeView : public CView {
public:
    ProbeView(const CRect& size, const std::string& name, CallLog& log,
              CMouseEventResult downResult = kMouseEventHandled, bool* destroyed = nullptr)
        : CView(size), name(name), log(log), downResult(downResult), destroyed(destroyed) {}
    ~ProbeView() override {
        if (destroyed) *destroyed = true;
    }
    CMouseEventResult onMouseDown(CPoint& where, const long& buttons) override {
        return record("down", where, buttons, downResult);
    }
    CMouseEventResult onMouseMoved(CPoint& where, const long& buttons) override {
        return record("moved", where, buttons, kMouseEventHandled);
    }
    CMouseEventResult onMouseUp(CPoint& where, const long& buttons) override {
        return record("up", where, buttons, kMouseEventHandled);
    }
    CMouseEventResult onMouseEntered(CPoint& where, const long& buttons) override {
        return record("entered", where, buttons, kMouseEventHandled);
    }
    CMouseEventResult onMouseExited(CPoint& where, const long& buttons) override {
        return record("exited", where, buttons, kMouseEventHandled);
    }
    void draw(CDrawContext* context) override {
        log.push_back(name + " draw");
        CView::draw(context);
    }

    std::string name;
    CallLog& log;
    CMouseEventResult downResult;
    bool* destroyed;

private:
    CMouseEventResult record(const char* what, const CPoint& where, long buttons,
                             CMouseEventResult result) {
        log.push_back(name + " " + what + " " + std::to_string(where.h) + "," +
                      std::to_string(where.v) + " " + std::to_string(buttons));
        return result;
    }
};

// A 300 x 300 frame with a recording editor and listener, sharing one log,
// and mouse events in frame coordinates.
struct FrameFixture : ::testing::Test {
    CallLog log;
    RecordingListener listener{log};
    RecordingEditor editor{log};
    CFrame* frame = new CFrame(CRect(0, 0, 300, 300), nullptr, &editor);
    ~FrameFixture() override { delete frame; }

    template <typename T> T* add(T* view) {
        frame->addView(view);
        return view;
    }
    CMouseEventResult down(CCoord x, CCoord y, long buttons = kLButton) {
        CPoint p(x, y);
        return frame->onMouseDown(p, buttons);
    }
    CMouseEventResult move(CCoord x, CCoord y, long buttons = kLButton) {
        CPoint p(x, y);
        return frame->onMouseMoved(p, buttons);
    }
    CMouseEventResult up(CCoord x, CCoord y, long buttons = 0) {
        CPoint p(x, y);
        return frame->onMouseUp(p, buttons);
    }
};

} // namespace editortest
