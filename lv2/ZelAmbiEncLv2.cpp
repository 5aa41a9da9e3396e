// The encoder as an LV2 plug-in: the same effect class the VST 2.4 module
// carries, driven through LV2's ports instead of the VST dispatcher.
//
// Hosts own LV2's control inputs, but the position has two linked forms: a
// change of x moves azimuth, elevation and distance too. So only a control
// input whose value changed since the last cycle is applied (in index order
// when several change at once, as the effect would take them one by one),
// and the resulting position is reported on the control outputs.

#include "ParameterMapping.h"
#include "ZelAmbiEnc.h"

#include <lv2/core/lv2.h>
#include <lv2/core/lv2_util.h>
#include <lv2/log/log.h>
#include <lv2/log/logger.h>
#include <lv2/urid/urid.h>

#include <cmath>
#include <cstring>
#include <memory>

namespace {

constexpr char kUri[] = "urn:zelworks:orvalis-xy3-3d";
constexpr int kOutputs = 16;
constexpr int kControls = kNumParams;
enum Port { kInputPort = 0, kFirstOutput = 1, kFirstControl = 17, kFirstReport = 24 };

// The effect needs a host that says which VST version it speaks.
VstIntPtr quietHost(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
    return opcode == audioMasterVersion ? 2400 : 0;
}

// A control value in user units, clamped into the parameter's range, as the
// effect's normalised value.
float normalised(ParameterMapping& mapping, int index, float value) {
    using L = PhysicalLimits;
    auto clamp = [&](double lo, double hi) {
        return std::isfinite(value) ? std::min(hi, std::max(lo, static_cast<double>(value))) : lo;
    };
    switch (index) {
    case kAzim:
        return mapping.azimuth(clamp(0.0, 360.0));
    case kElev:
        return mapping.elevation(clamp(L::kElevationMin, L::kElevationMax));
    case kX:
    case kY:
    case kZ:
        return mapping.coordinate(static_cast<ParameterIndex>(index),
                                  clamp(L::kCoordinateMin, L::kCoordinateMax));
    case kDist:
        return mapping.distance(clamp(L::kDistanceMin, L::kDistanceMax));
    default:
        return mapping.compensation(clamp(L::kCompensationMin, L::kCompensationMax));
    }
}

// The effect's normalised value in user units, as the control outputs show it.
float physical(const ZelAmbisonicEncoder& encoder, int index) {
    switch (index) {
    case kAzim:
        return encoder.getazimdisplay();
    case kElev:
        return encoder.getelevdisplay();
    case kX:
        return encoder.getxdisplay();
    case kY:
        return encoder.getydisplay();
    case kZ:
        return encoder.getzdisplay();
    case kDist:
        return encoder.getdistdisplay();
    default:
        return encoder.getNFCdisplay();
    }
}

class Lv2Encoder {
public:
    explicit Lv2Encoder(double rate, const LV2_Feature* const* features) : effect(quietHost) {
        const auto* map = static_cast<LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map));
        lv2_log_logger_init(&logger, const_cast<LV2_URID_Map*>(map),
                            static_cast<LV2_Log_Log*>(lv2_features_data(features, LV2_LOG__log)));
        if (!(rate >= 1.0 && rate <= 1e7))
            lv2_log_warning(&logger, "Orvalis XY3: sample rate %g is no rate; using 48000\n", rate);
        effect.setSampleRate(static_cast<float>(rate));
        for (int k = 0; k < kControls; ++k) applied[k] = physical(effect.getEncoder(), k);
    }

    void connect(uint32_t port, void* data) {
        if (port == kInputPort)
            input = static_cast<const float*>(data);
        else if (port < kFirstControl)
            outputs[port - kFirstOutput] = static_cast<float*>(data);
        else if (port < kFirstReport)
            controls[port - kFirstControl] = static_cast<const float*>(data);
        else if (port < kFirstReport + kControls)
            reports[port - kFirstReport] = static_cast<float*>(data);
    }

    // Changes made before the switch-on are in place when it snaps the
    // gains, so the first block starts at the position instead of gliding.
    void activate() {
        applyChangedControls();
        effect.resume();
    }

    void run(uint32_t frames) {
        applyChangedControls();
        if (input != nullptr) {
            bool connected = true;
            for (float* out : outputs) connected = connected && out != nullptr;
            if (connected) {
                float* in[1] = {const_cast<float*>(input)};
                effect.processReplacing(in, outputs, static_cast<VstInt32>(frames));
            }
        }
        for (int k = 0; k < kControls; ++k)
            if (reports[k] != nullptr) *reports[k] = physical(effect.getEncoder(), k);
    }

private:
    void applyChangedControls() {
        for (int k = 0; k < kControls; ++k) {
            if (controls[k] == nullptr || *controls[k] == applied[k]) continue;
            applied[k] = *controls[k];
            effect.setParameter(k, normalised(mapping, k, applied[k]));
        }
    }

    ZelAmbiEnc effect;
    ParameterMapping mapping;
    LV2_Log_Logger logger{};
    const float* input = nullptr;
    float* outputs[kOutputs] = {};
    const float* controls[kControls] = {};
    float* reports[kControls] = {};
    float applied[kControls] = {};
};

LV2_Handle instantiate(const LV2_Descriptor*, double rate, const char*,
                       const LV2_Feature* const* features) {
    try {
        return new Lv2Encoder(rate, features);
    } catch (...) {
        return nullptr;
    }
}

void connectPort(LV2_Handle h, uint32_t port, void* data) {
    static_cast<Lv2Encoder*>(h)->connect(port, data);
}
void activate(LV2_Handle h) {
    static_cast<Lv2Encoder*>(h)->activate();
}
void run(LV2_Handle h, uint32_t frames) {
    static_cast<Lv2Encoder*>(h)->run(frames);
}
void cleanup(LV2_Handle h) {
    delete static_cast<Lv2Encoder*>(h);
}

const LV2_Descriptor kDescriptor = {kUri, instantiate, connectPort, activate,
                                    run,  nullptr,     cleanup,     nullptr};

} // namespace

extern "C" LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
    return index == 0 ? &kDescriptor : nullptr;
}
