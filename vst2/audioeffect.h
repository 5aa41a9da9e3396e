#pragma once

#include "aeffectx.h"

#include <atomic>

class AEffEditor;

// Base class of a VST 2.4 effect: owns the AEffect record that the host sees
// and routes the host's requests (dispatcher opcodes, parameter and process
// entries) to the virtual operations below.
//
// Defaults: 44100 Hz, block size 1024, AEffect version 1, processReplacing
// enabled, no chunks, no tail.
//
// The dispatcher never hands a null text or record pointer on, refuses
// program numbers outside 0 .. numPrograms-1, and the process entries drop a
// call whose buffers are missing or whose frame count is negative, so a
// malformed host request cannot make the effect touch memory it does not own.
class AudioEffect {
public:
    AudioEffect(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams);
    virtual ~AudioEffect(); // deletes the editor, if any
    // The AEffect record points back at this object: it must stay put.
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    virtual VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                 float opt);

    // Lifecycle.
    virtual void open() {}
    virtual void close() {}
    virtual void suspend() {}
    virtual void resume() {}
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual void setBlockSize(VstInt32 size) { blockSize = size; }

    // Audio.
    virtual void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) = 0;
    virtual void processDoubleReplacing(double** /*inputs*/, double** /*outputs*/,
                                        VstInt32 /*sampleFrames*/) {}
    // The host's deprecated accumulating entry lands here and does nothing.
    virtual void processDeprecated(float** /*inputs*/, float** /*outputs*/,
                                   VstInt32 /*sampleFrames*/) {}

    // Parameters.
    virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}
    virtual float getParameter(VstInt32 /*index*/) { return 0.0f; }
    // Applies the value, then tells the host (audioMasterAutomate).
    virtual void setParameterAutomated(VstInt32 index, float value);
    virtual void getParameterLabel(VstInt32 /*index*/, char* label) { *label = 0; }
    virtual void getParameterDisplay(VstInt32 /*index*/, char* text) { *text = 0; }
    virtual void getParameterName(VstInt32 /*index*/, char* text) { *text = 0; }

    // Programs.
    virtual VstInt32 getProgram() { return curProgram; }
    virtual void setProgram(VstInt32 program) { curProgram = program; }
    virtual void setProgramName(char* /*name*/) {}
    virtual void getProgramName(char* name) { *name = 0; }
    virtual VstInt32 getChunk(void** /*data*/, bool /*isPreset*/ = false) { return 0; }
    virtual VstInt32 setChunk(void* /*data*/, VstInt32 /*byteSize*/, bool /*isPreset*/ = false) {
        return 0;
    }

    // Set-up of what the host sees.
    virtual AEffect* getAeffect() { return &cEffect; }
    virtual void setUniqueID(VstInt32 id) { cEffect.uniqueID = id; }
    virtual void setNumInputs(VstInt32 inputs) { cEffect.numInputs = inputs; }
    virtual void setNumOutputs(VstInt32 outputs) { cEffect.numOutputs = outputs; }
    virtual void setInitialDelay(VstInt32 delay) { cEffect.initialDelay = delay; }
    virtual void canProcessReplacing(bool state = true);
    virtual void canDoubleReplacing(bool state = true);
    virtual void programsAreChunks(bool state = true);
    virtual float getSampleRate() { return sampleRate; }
    virtual VstInt32 getBlockSize() { return blockSize; }

    // Editor: the effect owns it; setEditor also sets or clears effFlagsHasEditor.
    virtual void setEditor(AEffEditor* newEditor);
    virtual AEffEditor* getEditor() { return editor; }

    // Host queries.
    virtual VstInt32 getMasterVersion();
    virtual VstInt32 getCurrentUniqueId();
    virtual void masterIdle();

    // Edit gestures of the user, reported to the host around a change.
    virtual bool beginEdit(VstInt32 index);
    virtual bool endEdit(VstInt32 index);

    // Text helpers for parameter displays. float2string writes the integer
    // part, a point and truncated fraction digits, eight characters in all
    // (a minus sign and the point included), then keeps the first maxLen.
    virtual void float2string(float value, char* text, VstInt32 maxLen);

protected:
    audioMasterCallback audioMaster;
    AEffEditor* editor = nullptr;
    float sampleRate = 44100.0f;
    VstInt32 blockSize = 1024;
    VstInt32 numPrograms;
    VstInt32 numParams;
    // Atomic: hosts switch programs on one thread while another automates.
    std::atomic<VstInt32> curProgram{0};
    AEffect cEffect;
};

// The VST 2.x extensions: names, pins, categories, canDo and the rest of the
// 2.4 opcodes, with the answers a plug-in gives unless it overrides them.
class AudioEffectX : public AudioEffect {
public:
    AudioEffectX(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams);

    VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                         float opt) override;
    void resume() override; // asks for MIDI events only for synths or MIDI receivers

    virtual bool canParameterBeAutomated(VstInt32 /*index*/) { return true; }
    virtual bool string2parameter(VstInt32 /*index*/, char* /*text*/) { return false; }
    virtual bool getProgramNameIndexed(VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/) {
        return false;
    }
    virtual bool getInputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
        return false;
    }
    virtual bool getOutputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
        return false;
    }
    virtual VstPlugCategory getPlugCategory();
    virtual bool getEffectName(char* /*name*/) { return false; }
    virtual bool getVendorString(char* /*text*/) { return false; }
    virtual bool getProductString(char* /*text*/) { return false; }
    virtual VstInt32 getVendorVersion() { return 0; }
    virtual VstInt32 canDo(char* /*text*/) { return 0; }
    virtual VstInt32 getTailSize() { return 0; }
    virtual VstInt32 getVstVersion() { return 2400; }
    virtual bool setBypass(bool /*onOff*/) { return false; }
    virtual VstInt32 getNumMidiInputChannels() { return 0; }
    virtual VstInt32 getNumMidiOutputChannels() { return 0; }
    virtual void isSynth(bool state = true);
    virtual void noTail(bool state = true);

protected:
    // Asks the host to send MIDI events to this effect.
    void wantEvents();
};
