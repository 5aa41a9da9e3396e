#include "ZelAmbiEnc.h"

#include "DegreesText.h"
#include "vsttext.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

using Setter = void (ZelAmbisonicEncoder::*)(float);
using Getter = float (ZelAmbisonicEncoder::*)() const;

// Per parameter index: the encoder's normalised setter and getter, and the
// getter of the physical value shown to the user.
constexpr Setter kSetters[kNumParams] = {
    &ZelAmbisonicEncoder::setazim, &ZelAmbisonicEncoder::setelev, &ZelAmbisonicEncoder::setx,
    &ZelAmbisonicEncoder::sety,    &ZelAmbisonicEncoder::setz,    &ZelAmbisonicEncoder::setdist,
    &ZelAmbisonicEncoder::setNFC};
constexpr Getter kGetters[kNumParams] = {
    &ZelAmbisonicEncoder::getazim, &ZelAmbisonicEncoder::getelev, &ZelAmbisonicEncoder::getx,
    &ZelAmbisonicEncoder::gety,    &ZelAmbisonicEncoder::getz,    &ZelAmbisonicEncoder::getdist,
    &ZelAmbisonicEncoder::getNFC};
constexpr Getter kDisplayGetters[kNumParams] = {
    &ZelAmbisonicEncoder::getazimdisplay, &ZelAmbisonicEncoder::getelevdisplay,
    &ZelAmbisonicEncoder::getxdisplay,    &ZelAmbisonicEncoder::getydisplay,
    &ZelAmbisonicEncoder::getzdisplay,    &ZelAmbisonicEncoder::getdistdisplay,
    &ZelAmbisonicEncoder::getNFCdisplay};

// The blanks around x, y and z are part of the names.
constexpr const char* kParamNames[kNumParams] = {
    "Azimuth", "Elevation", " x ", " y ", " z ", "Distance", "Compensation Distance"};
constexpr const char* kParamLabels[kNumParams] = {"degrees", "degrees", "m", "m", "m", "m", "m"};

// Output pins by index. The labels follow the letter order, not the order of
// the components the encoder writes, and are kept so: sessions rely on them.
constexpr const char* kOutputLabels[] = {"W", "X", "Y", "Z", "R", "S", "T", "U",
                                         "V", "K", "L", "M", "N", "O", "P", "Q"};
constexpr int kNumOutputLabels = sizeof kOutputLabels / sizeof kOutputLabels[0];

constexpr char kProductName[] = "Zelworks Orvalis XY 3 - 3d";
constexpr char kVendorName[] = "ZelWorks";
constexpr char kInputLabel[] = "Mono Input";
constexpr char kDefaultProgramName[] = "Init";
constexpr VstInt32 kVendorVersion = 1000;
// A distance of 4 m is the outer limit, where the effect of either distance is off.
constexpr float kOffDistance = 4.0f;
// Sample rates the near-field filters can be designed for in single precision.
constexpr float kLowestSampleRate = 1.0f;
constexpr float kHighestSampleRate = 1.0e7f;
constexpr std::size_t kMaxProgramNameChars = kVstMaxProgNameLen - 1;
// Our fixed texts are all well within the host's buffers and go in whole.
constexpr std::size_t kMaxFixedTextChars = kVstMaxLabelLen - 1;

// Negative indices compare as huge unsigned numbers and fall out too.
bool inRange(VstInt32 index, int count) {
    return static_cast<unsigned>(index) < static_cast<unsigned>(count);
}

} // namespace

ZelAmbiEncProgram::ZelAmbiEncProgram() : param{0.0f, 0.5f, 1.0f, 0.5f, 0.5f, 0.0f, 1.0f}, name{} {
    vsttext::copy(name, kDefaultProgramName, kMaxProgramNameChars);
}

ZelAmbiEnc::ZelAmbiEnc(audioMasterCallback audioMaster)
    : AudioEffectX(audioMaster, kNumPrograms, kNumParams), encoder(kAmbi3P),
      programs(new ZelAmbiEncProgram[kNumPrograms]) {
    for (int i = 0; i < kNumPrograms; ++i)
        std::snprintf(programs[i].name, sizeof programs[i].name, "Prog %i", i + 1);
    setProgram(0);
    setNumInputs(1);
    setNumOutputs(encoder.getncoefs());
    setUniqueID(fourCharCode('Z', 'X', '3', 'x'));
    resume();
}

ZelAmbiEnc::~ZelAmbiEnc() = default;

void ZelAmbiEnc::resume() {
    AudioEffectX::resume();
    encoder.resume();
}

void ZelAmbiEnc::setSampleRate(float sampleRate) {
    // A rate that is no real rate (some scanners send 0) would turn the
    // near-field coefficients into infinities and the outputs into NaN until
    // the next switch-on: keep the rate we have.
    if (!(sampleRate >= kLowestSampleRate && sampleRate <= kHighestSampleRate)) return;
    AudioEffectX::setSampleRate(sampleRate);
    encoder.setfs(sampleRate);
}

void ZelAmbiEnc::processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) {
    encoder.process(inputs, outputs, sampleFrames);
}

void ZelAmbiEnc::process(float** inputs, float** outputs, VstInt32 sampleFrames) {
    processReplacing(inputs, outputs, sampleFrames);
}

void ZelAmbiEnc::setParameter(VstInt32 index, float value) {
    // The current program is brought up to date only when it is read (see
    // setProgram): automation calls this every block, and the encoder holds
    // the position anyway.
    if (inRange(index, kNumParams)) (encoder.*kSetters[index])(value);
}

void ZelAmbiEnc::mirrorEncoderInProgram() {
    ZelAmbiEncProgram& current = programs[curProgram];
    float values[kNumParams];
    encoder.getall(values);
    for (int k = 0; k < kNumParams; ++k) current.param[k] = values[k];
}

void ZelAmbiEnc::setPosition(const ZelEncoderPosition& saved) {
    encoder.setposition(saved);
}

float ZelAmbiEnc::getParameter(VstInt32 index) {
    return inRange(index, kNumParams) ? (encoder.*kGetters[index])() : 0.0f;
}

void ZelAmbiEnc::getParameterLabel(VstInt32 index, char* label) {
    if (inRange(index, kNumParams)) vsttext::copy(label, kParamLabels[index], kMaxFixedTextChars);
}

void ZelAmbiEnc::getParameterName(VstInt32 index, char* text) {
    if (inRange(index, kNumParams)) vsttext::copy(text, kParamNames[index], kMaxFixedTextChars);
}

void ZelAmbiEnc::getParameterDisplay(VstInt32 index, char* text) {
    if (!inRange(index, kNumParams) || text == nullptr) return;
    const float value = (encoder.*kDisplayGetters[index])();
    switch (index) {
    case kAzim:
    case kElev:
        formatDegrees(value, text);
        break;
    case kX:
    case kY:
    case kZ:
        // One more character for a minus sign, so that it costs no digit.
        float2string(value, text, value >= 0.0f ? 4 : 5);
        break;
    default: // the two distances
        if (value == kOffDistance)
            vsttext::copy(text, "off", kMaxFixedTextChars);
        else
            float2string(value, text, 4);
        break;
    }
}

void ZelAmbiEnc::setProgram(VstInt32 program) {
    // The dispatcher refuses other numbers already; direct callers get the same.
    if (!inRange(program, kNumPrograms)) return;
    // The program we leave keeps the encoder's view of all seven values.
    mirrorEncoderInProgram();
    const ZelAmbiEncProgram& record = programs[program];
    curProgram = program;
    // Each value applied rewrites the whole record with the encoder's state,
    // so only the azimuth is applied as stored; the later values read back
    // what the encoder reports by then. Stored sessions were made with this
    // recall, so it is kept.
    for (int k = 0; k < kNumParams; ++k) {
        setParameter(k, record.param[k]);
        mirrorEncoderInProgram();
    }
}

void ZelAmbiEnc::setProgramName(char* name) {
    vsttext::copy(programs[curProgram].name, name, kMaxProgramNameChars);
}

void ZelAmbiEnc::getProgramName(char* name) {
    if (name == nullptr) return;
    const ZelAmbiEncProgram& current = programs[curProgram];
    // A program named after the default tells which slot it is.
    if (std::strcmp(current.name, kDefaultProgramName) == 0)
        std::snprintf(name, kVstMaxProgNameLen, "%s %d", kDefaultProgramName, curProgram + 1);
    else
        vsttext::copy(name, current.name, kMaxProgramNameChars);
}

bool ZelAmbiEnc::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text) {
    if (!inRange(index, kNumPrograms) || text == nullptr) return false;
    vsttext::copy(text, programs[index].name, kMaxProgramNameChars);
    return true;
}

bool ZelAmbiEnc::getInputProperties(VstInt32 index, VstPinProperties* properties) {
    if (index != 0 || properties == nullptr) return false;
    vsttext::copy(properties->label, kInputLabel, kVstMaxLabelLen - 1);
    properties->flags = kVstPinIsActive;
    return true;
}

bool ZelAmbiEnc::getOutputProperties(VstInt32 index, VstPinProperties* properties) {
    if (properties == nullptr) return false;
    // Every index answers as an active pin, also beyond the 16 outputs; only
    // real outputs get a label. This long-standing lenience is kept.
    if (inRange(index, kNumOutputLabels))
        vsttext::copy(properties->label, kOutputLabels[index], kVstMaxLabelLen - 1);
    properties->flags = kVstPinIsActive;
    return true;
}

bool ZelAmbiEnc::getEffectName(char* name) {
    getProductString(name);
    return true;
}

bool ZelAmbiEnc::getVendorString(char* text) {
    vsttext::copy(text, kVendorName, kVstMaxVendorStrLen - 1);
    return true;
}

bool ZelAmbiEnc::getProductString(char* text) {
    vsttext::copy(text, kProductName, kVstMaxProductStrLen - 1);
    return true;
}

VstInt32 ZelAmbiEnc::getVendorVersion() {
    return kVendorVersion;
}

VstPlugCategory ZelAmbiEnc::getPlugCategory() {
    return kPlugCategEffect;
}
