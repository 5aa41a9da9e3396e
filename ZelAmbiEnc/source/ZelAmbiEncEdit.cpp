#include "ZelAmbiEncEdit.h"

#include "aeffeditor.h"

ZelAmbiEncEdit::ZelAmbiEncEdit(audioMasterCallback audioMaster) : ZelAmbiEnc(audioMaster) {
    // The editor window is created and handed to setEditor() here, the one
    // place where this effect gets an editor. Until it exists the host sees no
    // effFlagsHasEditor and parameter changes reach no editor.
    resume();
}

ZelAmbiEncEdit::~ZelAmbiEncEdit() = default;

void ZelAmbiEncEdit::setParameter(VstInt32 index, float value) {
    ZelAmbiEnc::setParameter(index, value);
    // Also for out-of-range indices and a closed window: the editor copes.
    if (editor != nullptr) editor->setParameter(index, value);
}

VstInt32 ZelAmbiEncEdit::getVendorVersion() {
    return 1000;
}

// Differs from the effect class's answer on purpose: this is the category
// hosts have always filed the plug-in under.
VstPlugCategory ZelAmbiEncEdit::getPlugCategory() {
    return kPlugCategUnknown;
}
