#pragma once

// The editor base class of a VST 2.4 plug-in built on this toolkit, plus the
// whole toolkit, so that an editor needs this one include.

#include "aeffeditor.h"
#include "audioeffect.h"
#include "vstcontrols.h"
#include "vstgui.h"

namespace VSTGUI {

// Connects a frame to a VST 2.4 effect: the host opens, idles and closes the
// window through it, sets the knob mode, and hears about edit gestures.
//
// A subclass fills `rect` (usually from its background bitmap) in its
// constructor, creates `frame = new CFrame(CRect(0, 0, w, h), ptr, this)` and
// its controls in open(), and deletes the frame in close().
class AEffGUIEditor : public AEffEditor, public VSTGUIEditorInterface {
public:
    // Registers itself with the effect as its editor (the effect deletes it).
    explicit AEffGUIEditor(void* effect);
    // Deletes a frame that the host never closed, so that its window and
    // X connection do not outlive the editor.
    ~AEffGUIEditor() override;

    bool getRect(ERect** ppRect) override;
    // Stores the parent window; answers false, for the subclass to override.
    bool open(void* ptr) override;
    // Pumps the window's events and repaints what changed. Never blocks.
    void idle() override;
    // The host's knob mode (0 circular, 1 relative circular, 2 linear), shared
    // by every editor of the module.
    bool setKnobMode(VstInt32 val) override;
    long getKnobMode() const override { return knobMode; }

    // Hook for the plug-in's setParameter; only store values in controls here,
    // since the host may call it from any thread.
    void setParameter(VstInt32 index, float value) override;

    void beginEdit(long index) override;
    void endEdit(long index) override;
    // Idle from inside a long mouse handler: at most every ~50 ms, runs idle()
    // and lets the host idle too (audioMasterIdle).
    void doIdleStuff() override;
    static unsigned long getTicks();
    void wait(unsigned long ms);

    AudioEffect* getEffect() override { return effect; }
    CFrame* getFrame() const override { return frame; }
    long getVstGuiVersion() const { return (3 << 16) + 6; }

protected:
    ERect rect{0, 0, 0, 0};

private:
    static long knobMode;
    unsigned long lLastTicks;
    bool inIdleStuff = false;
};

} // namespace VSTGUI

// Plug-in code written for this toolkit uses its names unqualified.
using namespace VSTGUI;
