#pragma once

// Doubles for the headless toolkit and control tests: one ordered event log
// shared by a listener and an editor (the host side of begin/end edit), and
// a frame that holds them.

#include "vstcontrols.h"

#include <string>
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
        return 0;
    }
    void controlBeginEdit(CControl* /*control*/) override { log.push_back("listener begin"); }
    void controlEndEdit(CControl* /*control*/) override { log.push_back("listener end"); }

    EventLog& log;
    std::vector<float> values;
};

// Stands in for the plug-in's editor: what reaches it would go to the host.
class RecordingEditor : public VSTGUIEditorInterface {
public:
    explicit RecordingEditor(EventLog& log) : log(log) {}
    void beginEdit(long index) override { log.push_back("host begin " + std::to_string(index)); }
    void endEdit(long index) override { log.push_back("host end " + std::to_string(index)); }

    EventLog& log;
};

// A 300 x 300 frame whose views report to the recording listener and editor.
struct RecordingFrame {
    EventLog log;
    RecordingListener listener{log};
    RecordingEditor editor{log};
    CFrame* frame = new CFrame(CRect(0, 0, 300, 300), nullptr, &editor);
    ~RecordingFrame() { delete frame; }
    template <typename View> View* add(View* view) {
        frame->addView(view);
        return view;
    }
};

} // namespace controltest
