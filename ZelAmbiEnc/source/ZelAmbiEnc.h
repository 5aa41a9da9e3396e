#pragma once

#include "AmbiEncoderClass.h"
#include "ZelAmbiEncParams.h"
#include "audioeffect.h"

#include <atomic>
#include <memory>

// One stored program: the seven normalised parameter values in index order
// and a name. The defaults are exactly a new encoder's position. The values
// are atomic: program switches may come from any thread.
struct ZelAmbiEncProgram {
    ZelAmbiEncProgram();

    std::atomic<float> param[kNumParams];
    char name[kVstMaxProgNameLen];
};

// The effect: one mono input encoded into 16 ambisonic outputs, seven
// parameters and a bank of 16 programs. The encoder is the only owner of the
// source position; the current program takes the encoder's view when it is
// left or recalled.
class ZelAmbiEnc : public AudioEffectX {
public:
    explicit ZelAmbiEnc(audioMasterCallback audioMaster);
    ~ZelAmbiEnc() override;

    void resume() override;
    void setSampleRate(float sampleRate) override;
    void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) override;

    void setParameter(VstInt32 index, float value) override;
    float getParameter(VstInt32 index) override;
    void getParameterLabel(VstInt32 index, char* label) override;
    void getParameterDisplay(VstInt32 index, char* text) override;
    void getParameterName(VstInt32 index, char* text) override;

    void setProgram(VstInt32 program) override;
    void setProgramName(char* name) override;
    void getProgramName(char* name) override;
    bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;

    bool getInputProperties(VstInt32 index, VstPinProperties* properties) override;
    bool getOutputProperties(VstInt32 index, VstPinProperties* properties) override;
    bool getEffectName(char* name) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    VstInt32 getVendorVersion() override;
    VstPlugCategory getPlugCategory() override;

    // Replacing, like processReplacing; the host's accumulating entry never
    // reaches it.
    virtual void process(float** inputs, float** outputs, VstInt32 sampleFrames);

    // Read-only view of the encoder, for inspection.
    const ZelAmbisonicEncoder& getEncoder() const { return encoder; }
    // Puts the encoder exactly where getEncoder().getposition() once read it
    // (a saved session, or a position reported by another instance); the
    // current program follows.
    void setPosition(const ZelEncoderPosition& saved);

protected:
    // The current program takes the encoder's view of all seven values.
    void mirrorEncoderInProgram();

    ZelAmbisonicEncoder encoder;
    // Declared after the encoder so that the bank is destroyed before it.
    std::unique_ptr<ZelAmbiEncProgram[]> programs;
};
