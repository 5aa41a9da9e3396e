// The editor as an LV2 X11 UI: the same effect class with the same editor
// that the VST 2.4 module carries, in a module of its own. Here the effect
// does no audio; it is the editor's model of the position. It follows where
// the plug-in reports the source to be (the "*_now" control outputs), and
// what the editor tells its host (a parameter set, a gesture begun or ended)
// goes on to the plug-in's control inputs through the LV2 host, in degrees
// and metres.

#include "Lv2Ports.h"
#include "ZAE_editor.h"
#include "ZelAmbiEncEdit.h"

#include <lv2/core/lv2_util.h>
#include <lv2/log/logger.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <memory>

namespace {

constexpr double kDegreesPerRadian = 180.0 / 3.141592653589793;

class EditorModel : public ZelAmbiEncEdit {
public:
    EditorModel(LV2UI_Write_Function write, LV2UI_Controller controller, const LV2UI_Touch* touch)
        : ZelAmbiEncEdit(&EditorModel::hostCallback), writePort(write), controller(controller),
          touch(touch) {
        for (int k = 0; k < kNumParams; ++k) reported[k] = portValue(getEncoder(), k);
        getAeffect()->user = this;
    }

    ZAE_editor& editor() { return *static_cast<ZAE_editor*>(getEditor()); }

    // One control output: the model moves to the reported position, unless
    // the user is dragging, when reports from before the drag's newest
    // writes would pull the handle back; or unless the plug-in has not run
    // yet and reports nothing the encoder could take.
    void follow(int index, float value) {
        reported[index] = value;
        if (gestures > 0) return;
        ZelEncoderPosition p = getEncoder().getposition();
        p.azim = static_cast<float>(reported[kAzim] / kDegreesPerRadian);
        p.elev = static_cast<float>(reported[kElev] / kDegreesPerRadian);
        p.x = reported[kX];
        p.y = reported[kY];
        p.z = reported[kZ];
        p.dist = reported[kDist];
        p.NFC = reported[kNFC];
        if (!isEncoderPosition(p)) return;
        setPosition(p);
        for (int k = 0; k < kNumParams; ++k) editor().setParameter(k, 0.0f);
    }

private:
    static VstIntPtr hostCallback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr,
                                  void*, float value) {
        if (opcode == audioMasterVersion) return 2400;
        auto* self = effect != nullptr ? static_cast<EditorModel*>(effect->user) : nullptr;
        if (self == nullptr || static_cast<unsigned>(index) >= kNumParams) return 0;
        switch (opcode) {
        case audioMasterAutomate:
            self->write(index, value);
            return 1;
        case audioMasterBeginEdit:
            self->grab(index, true);
            return 1;
        case audioMasterEndEdit:
            self->grab(index, false);
            return 1;
        default:
            return 0;
        }
    }

    void write(int index, float normalised) {
        const float value = mapping.image(static_cast<ParameterIndex>(index), normalised);
        writePort(controller, kFirstControl + index, sizeof value, 0, &value);
    }

    // The pad's gesture carries x's index but writes y as well.
    void grab(int index, bool grabbed) {
        gestures = grabbed ? gestures + 1 : (gestures > 0 ? gestures - 1 : 0);
        if (touch == nullptr) return;
        touch->touch(touch->handle, kFirstControl + index, grabbed);
        if (index == kX) touch->touch(touch->handle, kFirstControl + kY, grabbed);
    }

    LV2UI_Write_Function writePort;
    LV2UI_Controller controller;
    const LV2UI_Touch* touch;
    ParameterMapping mapping;
    float reported[kNumParams];
    int gestures = 0;
};

LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char*, const char*,
                         LV2UI_Write_Function write, LV2UI_Controller controller,
                         LV2UI_Widget* widget, const LV2_Feature* const* features) {
    LV2_Log_Logger logger{};
    lv2_log_logger_init(&logger,
                        static_cast<LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map)),
                        static_cast<LV2_Log_Log*>(lv2_features_data(features, LV2_LOG__log)));
    void* parent = lv2_features_data(features, LV2_UI__parent);
    if (parent == nullptr || write == nullptr || widget == nullptr) {
        lv2_log_error(&logger, "Orvalis XY3: the host offers no parent window (ui:parent) or no "
                               "way to write the controls; no editor\n");
        return nullptr;
    }
    try {
        auto model = std::make_unique<EditorModel>(
            write, controller,
            static_cast<LV2UI_Touch*>(lv2_features_data(features, LV2_UI__touch)));
        ZAE_editor& editor = model->editor();
        if (!editor.open(parent)) {
            lv2_log_error(&logger, "Orvalis XY3: no editor window in the host's parent window\n");
            return nullptr;
        }
        *widget = reinterpret_cast<LV2UI_Widget>(editor.getFrame()->getNativeWindow());
        ERect* size = nullptr;
        const auto* resize =
            static_cast<LV2UI_Resize*>(lv2_features_data(features, LV2_UI__resize));
        if (resize != nullptr && editor.getRect(&size))
            resize->ui_resize(resize->handle, size->right - size->left, size->bottom - size->top);
        return model.release();
    } catch (...) {
        lv2_log_error(&logger, "Orvalis XY3: the editor could not be made\n");
        return nullptr;
    }
}

void cleanup(LV2UI_Handle handle) {
    auto* model = static_cast<EditorModel*>(handle);
    model->editor().close();
    delete model;
}

void portEvent(LV2UI_Handle handle, uint32_t port, uint32_t size, uint32_t format,
               const void* buffer) {
    // Only the reports: the control inputs say what was asked, not where
    // the linked parameters put the source.
    if (format != 0 || size != sizeof(float) || port < kFirstReport || port >= kPortCount) return;
    static_cast<EditorModel*>(handle)->follow(static_cast<int>(port - kFirstReport),
                                              *static_cast<const float*>(buffer));
}

int idle(LV2UI_Handle handle) {
    static_cast<EditorModel*>(handle)->editor().idle();
    return 0;
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idleInterface = {idle};
    return std::strcmp(uri, LV2_UI__idleInterface) == 0 ? &idleInterface : nullptr;
}

const LV2UI_Descriptor kDescriptor = {kLv2UiUri, instantiate, cleanup, portEvent, extensionData};

} // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(uint32_t index) {
    return index == 0 ? &kDescriptor : nullptr;
}
