#include "audioeffect.h"

#include "aeffeditor.h"

AudioEffectX::AudioEffectX(audioMasterCallback audioMaster, VstInt32 numPrograms,
                           VstInt32 numParams)
    : AudioEffect(audioMaster, numPrograms, numParams) {}

VstIntPtr AudioEffectX::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                   float opt) {
    char* text = static_cast<char*>(ptr);
    auto* pin = static_cast<VstPinProperties*>(ptr);
    switch (opcode) {
    case effCanBeAutomated:
        return canParameterBeAutomated(index);
    case effString2Parameter:
        return text != nullptr && string2parameter(index, text);
    case effGetProgramNameIndexed: // the category travels in value
        return text != nullptr && getProgramNameIndexed(static_cast<VstInt32>(value), index, text);
    case effGetInputProperties:
        return pin != nullptr && getInputProperties(index, pin);
    case effGetOutputProperties:
        return pin != nullptr && getOutputProperties(index, pin);
    case effGetPlugCategory:
        return getPlugCategory();
    case effSetBlockSizeAndSampleRate:
        setBlockSize(static_cast<VstInt32>(value));
        setSampleRate(opt);
        return 0;
    case effSetBypass:
        return setBypass(value != 0);
    case effGetEffectName:
        return text != nullptr && getEffectName(text);
    case effGetVendorString:
        return text != nullptr && getVendorString(text);
    case effGetProductString:
        return text != nullptr && getProductString(text);
    case effGetVendorVersion:
        return getVendorVersion();
    case effCanDo:
        return text != nullptr ? canDo(text) : 0;
    case effGetTailSize:
        return getTailSize();
    case effGetVstVersion:
        return getVstVersion();
    case effSetEditKnobMode:
        return editor != nullptr && editor->setKnobMode(static_cast<VstInt32>(value));
    case effSetTotalSampleToProcess: // the host's count stands unless an effect changes it
        return value;
    case effGetNumMidiInputChannels:
        return getNumMidiInputChannels();
    case effGetNumMidiOutputChannels:
        return getNumMidiOutputChannels();
    default:
        return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
    }
}

void AudioEffectX::resume() {
    // Only instruments and MIDI receivers need the host's event stream.
    char query[] = "receiveVstMidiEvent";
    if ((cEffect.flags & effFlagsIsSynth) != 0 || canDo(query) == 1) wantEvents();
}

VstPlugCategory AudioEffectX::getPlugCategory() {
    return (cEffect.flags & effFlagsIsSynth) != 0 ? kPlugCategSynth : kPlugCategUnknown;
}

void AudioEffectX::isSynth(bool state) {
    if (state)
        cEffect.flags |= effFlagsIsSynth;
    else
        cEffect.flags &= ~effFlagsIsSynth;
}

void AudioEffectX::noTail(bool state) {
    if (state)
        cEffect.flags |= effFlagsNoSoundInStop;
    else
        cEffect.flags &= ~effFlagsNoSoundInStop;
}

void AudioEffectX::wantEvents() {
    if (audioMaster != nullptr) audioMaster(&cEffect, audioMasterWantMidi, 0, 1, nullptr, 0.0f);
}
