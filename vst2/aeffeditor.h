#pragma once

#include "aeffectx.h"

class AudioEffect;

// Base of a plug-in editor: the window the host opens through the effEdit*
// opcodes. The effect owns its editor and deletes it with itself.
class AEffEditor {
public:
    explicit AEffEditor(AudioEffect* effect = nullptr) : effect(effect) {}
    virtual ~AEffEditor() = default;

    virtual AudioEffect* getEffect() { return effect; }
    // Answers the window size; the rectangle stays owned by the editor.
    virtual bool getRect(ERect** rect) {
        if (rect) *rect = nullptr;
        return false;
    }
    // parent: the host's window (an X11 window id on Linux).
    virtual bool open(void* ptr) {
        systemWindow = ptr;
        return false;
    }
    virtual void close() { systemWindow = nullptr; }
    virtual bool isOpen() { return systemWindow != nullptr; }
    // Called from the host's GUI thread, about every 40 ms.
    virtual void idle() {}
    virtual bool setKnobMode(VstInt32 /*val*/) { return false; }
    // A parameter changed, from the host or from the editor itself. Editors
    // that show parameters override it; it is called whether or not the
    // window is open.
    virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}

protected:
    AudioEffect* effect;
    void* systemWindow = nullptr;
};
