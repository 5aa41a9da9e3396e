#pragma once

#include "ZelAmbiEnc.h"

// The class the host instantiates: the effect with its editor attached.
// Every parameter change also reaches the editor, whether or not its window
// is open, so that the controls follow host automation and program changes.
class ZelAmbiEncEdit : public ZelAmbiEnc {
public:
    explicit ZelAmbiEncEdit(audioMasterCallback audioMaster);
    ~ZelAmbiEncEdit() override;

    void setParameter(VstInt32 index, float value) override;
    VstInt32 getVendorVersion() override;
    VstPlugCategory getPlugCategory() override;
};
