#include "ZelAmbiEncEdit.h"

#include "ZAE_editor.h"

ZelAmbiEncEdit::ZelAmbiEncEdit(audioMasterCallback audioMaster) : ZelAmbiEnc(audioMaster) {
    // The editor registers itself with this effect (setEditor, which also
    // raises effFlagsHasEditor); the effect owns and deletes it. Its window
    // is made only when the host opens it.
    editor = new ZAE_editor(this);
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
