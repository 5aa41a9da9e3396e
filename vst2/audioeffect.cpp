#include "audioeffect.h"

#include "aeffeditor.h"
#include "vsttext.h"

namespace {

AudioEffect* effectOf(AEffect* effect) {
    return effect != nullptr ? static_cast<AudioEffect*>(effect->object) : nullptr;
}

// A host that passes a null channel array, a null channel or a negative frame
// count gets nothing done rather than a crash; a frame count of 0 is passed on.
template <typename Sample>
bool buffersUsable(const AEffect& effect, Sample** inputs, Sample** outputs,
                   VstInt32 sampleFrames) {
    if (sampleFrames < 0) return false;
    if (effect.numInputs > 0 && inputs == nullptr) return false;
    if (effect.numOutputs > 0 && outputs == nullptr) return false;
    // Every channel looked at, without a branch per channel: hosts pass this
    // check block after block, and a null channel is the rare case.
    bool allSet = true;
    for (VstInt32 i = 0; i < effect.numInputs; ++i) allSet &= inputs[i] != nullptr;
    for (VstInt32 i = 0; i < effect.numOutputs; ++i) allSet &= outputs[i] != nullptr;
    return allSet;
}

// The C entry points that the AEffect record hands to the host.

VstIntPtr dispatchEntry(AEffect* e, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                        float opt) {
    AudioEffect* effect = effectOf(e);
    return effect != nullptr ? effect->dispatcher(opcode, index, value, ptr, opt) : 0;
}

void processDeprecatedEntry(AEffect* e, float** inputs, float** outputs, VstInt32 sampleFrames) {
    AudioEffect* effect = effectOf(e);
    if (effect != nullptr && buffersUsable(*e, inputs, outputs, sampleFrames))
        effect->processDeprecated(inputs, outputs, sampleFrames);
}

void processReplacingEntry(AEffect* e, float** inputs, float** outputs, VstInt32 sampleFrames) {
    AudioEffect* effect = effectOf(e);
    if (effect != nullptr && buffersUsable(*e, inputs, outputs, sampleFrames))
        effect->processReplacing(inputs, outputs, sampleFrames);
}

void processDoubleReplacingEntry(AEffect* e, double** inputs, double** outputs,
                                 VstInt32 sampleFrames) {
    AudioEffect* effect = effectOf(e);
    if (effect != nullptr && buffersUsable(*e, inputs, outputs, sampleFrames))
        effect->processDoubleReplacing(inputs, outputs, sampleFrames);
}

void setParameterEntry(AEffect* e, VstInt32 index, float value) {
    AudioEffect* effect = effectOf(e);
    if (effect != nullptr) effect->setParameter(index, value);
}

float getParameterEntry(AEffect* e, VstInt32 index) {
    AudioEffect* effect = effectOf(e);
    return effect != nullptr ? effect->getParameter(index) : 0.0f;
}

} // namespace

AudioEffect::AudioEffect(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams)
    : audioMaster(audioMaster), numPrograms(numPrograms), numParams(numParams), cEffect() {
    cEffect.magic = kEffectMagic;
    cEffect.dispatcher = dispatchEntry;
    cEffect.process = processDeprecatedEntry;
    cEffect.setParameter = setParameterEntry;
    cEffect.getParameter = getParameterEntry;
    cEffect.numPrograms = numPrograms;
    cEffect.numParams = numParams;
    cEffect.numInputs = 1;
    cEffect.numOutputs = 2;
    cEffect.ioRatio = 1.0f;
    cEffect.object = this;
    cEffect.uniqueID = fourCharCode('N', 'o', 'E', 'f');
    cEffect.version = 1;
    cEffect.processReplacing = processReplacingEntry;
    cEffect.processDoubleReplacing = processDoubleReplacingEntry;
    canProcessReplacing(true);
}

AudioEffect::~AudioEffect() {
    delete editor;
}

VstIntPtr AudioEffect::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                  float opt) {
    char* text = static_cast<char*>(ptr);
    switch (opcode) {
    case effOpen:
        open();
        return 0;
    case effClose:
        close();
        delete this;
        return 1;
    case effSetProgram:
        // Compared before narrowing, so no value wraps into the valid range.
        if (value >= 0 && value < numPrograms) setProgram(static_cast<VstInt32>(value));
        return 0;
    case effGetProgram:
        return getProgram();
    case effSetProgramName:
        if (text != nullptr) setProgramName(text);
        return 0;
    case effGetProgramName:
        if (text != nullptr) getProgramName(text);
        return 0;
    case effGetParamLabel:
        if (text != nullptr) getParameterLabel(index, text);
        return 0;
    case effGetParamDisplay:
        if (text != nullptr) getParameterDisplay(index, text);
        return 0;
    case effGetParamName:
        if (text != nullptr) getParameterName(index, text);
        return 0;
    case effSetSampleRate:
        setSampleRate(opt);
        return 0;
    case effSetBlockSize:
        setBlockSize(static_cast<VstInt32>(value));
        return 0;
    case effMainsChanged:
        if (value != 0)
            resume();
        else
            suspend();
        return 0;
    case effEditGetRect:
        return editor != nullptr && ptr != nullptr && editor->getRect(static_cast<ERect**>(ptr));
    case effEditOpen:
        return editor != nullptr && editor->open(ptr);
    case effEditClose:
        if (editor != nullptr) editor->close();
        return 0;
    case effEditIdle:
        if (editor != nullptr) editor->idle();
        return 0;
    case effIdentify: // old hosts check this answer
        return fourCharCode('N', 'v', 'E', 'f');
    case effGetChunk:
        return ptr != nullptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
    case effSetChunk:
        return ptr != nullptr ? setChunk(ptr, static_cast<VstInt32>(value), index != 0) : 0;
    default: // everything else is unsupported and answers 0
        return 0;
    }
}

void AudioEffect::setParameterAutomated(VstInt32 index, float value) {
    setParameter(index, value);
    if (audioMaster != nullptr)
        audioMaster(&cEffect, audioMasterAutomate, index, 0, nullptr, value);
}

void AudioEffect::canProcessReplacing(bool state) {
    if (state)
        cEffect.flags |= effFlagsCanReplacing;
    else
        cEffect.flags &= ~effFlagsCanReplacing;
}

void AudioEffect::canDoubleReplacing(bool state) {
    if (state)
        cEffect.flags |= effFlagsCanDoubleReplacing;
    else
        cEffect.flags &= ~effFlagsCanDoubleReplacing;
}

void AudioEffect::programsAreChunks(bool state) {
    if (state)
        cEffect.flags |= effFlagsProgramChunks;
    else
        cEffect.flags &= ~effFlagsProgramChunks;
}

void AudioEffect::setEditor(AEffEditor* newEditor) {
    editor = newEditor;
    if (editor != nullptr)
        cEffect.flags |= effFlagsHasEditor;
    else
        cEffect.flags &= ~effFlagsHasEditor;
}

VstInt32 AudioEffect::getMasterVersion() {
    if (audioMaster == nullptr) return 1;
    const VstIntPtr version = audioMaster(&cEffect, audioMasterVersion, 0, 0, nullptr, 0.0f);
    // A host that answers 0 predates the version query: treat it as 1.
    return version != 0 ? static_cast<VstInt32>(version) : 1;
}

VstInt32 AudioEffect::getCurrentUniqueId() {
    if (audioMaster == nullptr) return 0;
    return static_cast<VstInt32>(audioMaster(&cEffect, audioMasterCurrentId, 0, 0, nullptr, 0.0f));
}

void AudioEffect::masterIdle() {
    if (audioMaster != nullptr) audioMaster(&cEffect, audioMasterIdle, 0, 0, nullptr, 0.0f);
}

bool AudioEffect::beginEdit(VstInt32 index) {
    return audioMaster != nullptr &&
           audioMaster(&cEffect, audioMasterBeginEdit, index, 0, nullptr, 0.0f) != 0;
}

bool AudioEffect::endEdit(VstInt32 index) {
    return audioMaster != nullptr &&
           audioMaster(&cEffect, audioMasterEndEdit, index, 0, nullptr, 0.0f) != 0;
}

void AudioEffect::float2string(float value, char* text, VstInt32 maxLen) {
    vsttext::formatFloat(value, text, maxLen);
}
