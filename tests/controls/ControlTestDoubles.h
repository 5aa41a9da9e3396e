#pragma once

// Doubles for the control tests: one ordered event log shared by a listener
// and an editor (the host side of begin/end edit), a drawing context that
// records bitmap draws, and a context that replays a scripted mouse for the
// polling tracking loop.

#include "vstcontrols.h"

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace controltest {

using EventLog = std::vector<std::string>;

class RecordingListener : public CControlListener {
public:
    explicit RecordingListener(EventLog& log) : log(log) {}
    void valueChanged(CControl* control) override {
        log.push_back("changed");
        values.push_back(control->getValue());
    }
    long controlModifierClicked(CControl* /*control*/, long /*button*/) override {
        log.push_back("modifier");
        return consumeModifierClicks ? 1 : 0;
    }
    void controlBeginEdit(CControl* /*control*/) override { log.push_back("listener begin"); }
    void controlEndEdit(CControl* /*control*/) override { log.push_back("listener end"); }

    EventLog& log;
    std::vector<float> values;
    bool consumeModifierClicks = false;
};

// Stands in for the plug-in's editor: what reaches it would go to the host.
class RecordingEditor : public VSTGUIEditorInterface {
public:
    explicit RecordingEditor(EventLog& log) : log(log) {}
    void beginEdit(long index) override { log.push_back("host begin " + std::to_string(index)); }
    void endEdit(long index) override { log.push_back("host end " + std::to_string(index)); }
    long getKnobMode() const override { return knobMode; }

    EventLog& log;
    long knobMode = kCircularMode;
};

struct BitmapDraw {
    const CBitmap* bitmap;
    CRect dest;
    CPoint source;
};

class RecordingContext : public CDrawContext {
public:
    void drawBitmap(CBitmap& bitmap, const CRect& dest, const CPoint& source,
                    float /*alpha*/) override {
        draws.push_back({&bitmap, dest, source});
    }
    std::vector<BitmapDraw> draws;
};

// Each poll of the buttons takes the next step of the script, whose point is
// then the mouse location. Past the end of the script the buttons are up.
class ScriptedMouse : public CDrawContext {
public:
    void add(long buttons, CPoint where) { steps.emplace_back(buttons, where); }
    long getMouseButtons() override {
        ++polls;
        if (steps.empty()) return 0;
        const long buttons = steps.front().first;
        location = steps.front().second;
        steps.pop_front();
        return buttons;
    }
    void getMouseLocation(CPoint& point) override { point = location; }

    int polls = 0;

private:
    std::deque<std::pair<long, CPoint>> steps;
    CPoint location;
};

} // namespace controltest
