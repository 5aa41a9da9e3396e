#pragma once

// The VST 2.4 plug-in ABI: the effect record, the host callback, the opcodes
// and the small records exchanged with the host. Written from the published
// binary interface; names and values are the ones every host uses.

#include <cstddef>
#include <cstdint>

using VstInt16 = int16_t;
using VstInt32 = int32_t;
using VstIntPtr = intptr_t;

struct AEffect;

using audioMasterCallback = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                          VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                            VstIntPtr value, void* ptr, float opt);
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs,
                                    VstInt32 sampleFrames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          VstInt32 sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, VstInt32 index, float parameter);
using AEffectGetParameterProc = float (*)(AEffect* effect, VstInt32 index);

// Four characters packed big-endian into one 32-bit value, as in unique IDs.
constexpr VstInt32 fourCharCode(char a, char b, char c, char d) {
    return static_cast<VstInt32>((static_cast<uint32_t>(static_cast<unsigned char>(a)) << 24) |
                                 (static_cast<uint32_t>(static_cast<unsigned char>(b)) << 16) |
                                 (static_cast<uint32_t>(static_cast<unsigned char>(c)) << 8) |
                                 static_cast<uint32_t>(static_cast<unsigned char>(d)));
}

constexpr VstInt32 kEffectMagic = fourCharCode('V', 's', 't', 'P');
static_assert(kEffectMagic == 0x56737450, "magic");

struct AEffect {
    VstInt32 magic;
    AEffectDispatcherProc dispatcher;
    AEffectProcessProc process; // deprecated accumulating entry
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 numInputs;
    VstInt32 numOutputs;
    VstInt32 flags;
    VstIntPtr resvd1;
    VstIntPtr resvd2;
    VstInt32 initialDelay;
    VstInt32 realQualities; // deprecated
    VstInt32 offQualities;  // deprecated
    float ioRatio;          // deprecated
    void* object;           // the plug-in object behind this record
    void* user;             // free for the host
    VstInt32 uniqueID;
    VstInt32 version;
    AEffectProcessProc processReplacing;
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};

enum VstAEffectFlags : VstInt32 {
    effFlagsHasEditor = 1 << 0,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9,
    effFlagsCanDoubleReplacing = 1 << 12,
};

enum AEffectOpcodes : VstInt32 {
    effOpen = 0,
    effClose,
    effSetProgram,
    effGetProgram,
    effSetProgramName,
    effGetProgramName,
    effGetParamLabel,
    effGetParamDisplay,
    effGetParamName,
    effGetVu, // deprecated
    effSetSampleRate,
    effSetBlockSize,
    effMainsChanged,
    effEditGetRect,
    effEditOpen,
    effEditClose,
    effEditDraw,  // deprecated
    effEditMouse, // deprecated
    effEditKey,   // deprecated
    effEditIdle,
    effEditTop,   // deprecated
    effEditSleep, // deprecated
    effIdentify,  // deprecated
    effGetChunk,
    effSetChunk,
    effProcessEvents,
    effCanBeAutomated,
    effString2Parameter,
    effGetNumProgramCategories, // deprecated
    effGetProgramNameIndexed,
    effCopyProgram,   // deprecated
    effConnectInput,  // deprecated
    effConnectOutput, // deprecated
    effGetInputProperties,
    effGetOutputProperties,
    effGetPlugCategory,
    effGetCurrentPosition,   // deprecated
    effGetDestinationBuffer, // deprecated
    effOfflineNotify,
    effOfflinePrepare,
    effOfflineRun,
    effProcessVarIo,
    effSetSpeakerArrangement,
    effSetBlockSizeAndSampleRate, // deprecated
    effSetBypass,
    effGetEffectName,
    effGetErrorText, // deprecated
    effGetVendorString,
    effGetProductString,
    effGetVendorVersion,
    effVendorSpecific,
    effCanDo,
    effGetTailSize,
    effIdle,            // deprecated
    effGetIcon,         // deprecated
    effSetViewPosition, // deprecated
    effGetParameterProperties,
    effKeysRequired, // deprecated
    effGetVstVersion,
    effEditKeyDown,
    effEditKeyUp,
    effSetEditKnobMode,
    effGetMidiProgramName,
    effGetCurrentMidiProgram,
    effGetMidiProgramCategory,
    effHasMidiProgramsChanged,
    effGetMidiKeyName,
    effBeginSetProgram,
    effEndSetProgram,
    effGetSpeakerArrangement,
    effShellGetNextPlugin,
    effStartProcess,
    effStopProcess,
    effSetTotalSampleToProcess,
    effSetPanLaw,
    effBeginLoadBank,
    effBeginLoadProgram,
    effSetProcessPrecision,
    effGetNumMidiInputChannels,
    effGetNumMidiOutputChannels,
};

enum AudioMasterOpcodes : VstInt32 {
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4, // deprecated
    audioMasterWantMidi = 6,     // deprecated
    audioMasterGetTime = 7,
    audioMasterProcessEvents = 8,
    audioMasterIOChanged = 13,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetInputLatency = 18,
    audioMasterGetOutputLatency = 19,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterVendorSpecific = 35,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
    audioMasterOpenFileSelector = 45,
    audioMasterCloseFileSelector = 46,
};

enum VstStringLengths {
    kVstMaxProgNameLen = 24,
    kVstMaxParamStrLen = 8,
    kVstMaxVendorStrLen = 64,
    kVstMaxProductStrLen = 64,
    kVstMaxEffectNameLen = 32,
    kVstMaxLabelLen = 64,
    kVstMaxShortLabelLen = 8,
};

enum VstPinPropertiesFlags : VstInt32 {
    kVstPinIsActive = 1 << 0,
    kVstPinIsStereo = 1 << 1,
    kVstPinUseSpeaker = 1 << 2,
};

struct VstPinProperties {
    char label[kVstMaxLabelLen];
    VstInt32 flags;
    VstInt32 arrangementType;
    char shortLabel[kVstMaxShortLabelLen];
    char future[48];
};

enum VstPlugCategory : VstInt32 {
    kPlugCategUnknown = 0,
    kPlugCategEffect,
    kPlugCategSynth,
    kPlugCategAnalysis,
    kPlugCategMastering,
    kPlugCategSpacializer,
    kPlugCategRoomFx,
    kPlugSurroundFx,
    kPlugCategRestoration,
    kPlugCategOfflineProcess,
    kPlugCategShell,
    kPlugCategGenerator,
    kPlugCategMaxCount,
};

// Editor rectangle, as the host reads it after effEditGetRect.
struct ERect {
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};

static_assert(sizeof(VstPinProperties) == 128, "VstPinProperties layout");
static_assert(sizeof(ERect) == 8, "ERect layout");
static_assert(sizeof(void*) != 8 || sizeof(AEffect) == 192, "AEffect layout on 64-bit hosts");

// Spot checks of the opcode numbering, which hosts hard-code.
static_assert(effGetProgramNameIndexed == 29 && effGetInputProperties == 33 &&
                  effGetPlugCategory == 35 && effSetBypass == 44 && effCanDo == 51 &&
                  effGetParameterProperties == 56 && effGetVstVersion == 58 &&
                  effGetSpeakerArrangement == 69 && effStartProcess == 71 &&
                  effGetNumMidiOutputChannels == 79,
              "effect opcode numbering");
static_assert(offsetof(AEffect, flags) == (sizeof(void*) == 8 ? 56 : 36) &&
                  offsetof(AEffect, object) == (sizeof(void*) == 8 ? 96 : 64) &&
                  offsetof(AEffect, processReplacing) == (sizeof(void*) == 8 ? 120 : 80),
              "AEffect field offsets");
