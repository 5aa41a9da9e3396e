#pragma once

// Doubles for the control tests: one ordered event log shared by a listener
// and an editor (the host side of begin/end edit), and a drawing context that
// records bitmap draws.

#include "vstcontrols.h"

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

} // namespace controltest
