// The encoder as an LV2 plug-in: the same effect class the VST 2.4 module
// carries, driven through LV2's ports instead of the VST dispatcher.
//
// Hosts own LV2's control inputs, but the position has two linked forms: a
// change of x moves azimuth, elevation and distance too. So only a control
// input whose value changed since the last cycle is applied (in index order
// when several change at once, as the effect would take them one by one),
// and the resulting position is reported on the control outputs.
//
// The state a host saves with a session is the exact position, not only the
// ports: ports replayed in index order would not always lead back to a
// position that one change after another made (x, then azimuth, say). A
// restored position is kept as it is, and the port values the host restores
// with it are taken as already applied.

#include "Lv2Ports.h"
#include "ParameterMapping.h"
#include "ZelAmbiEnc.h"

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/core/lv2_util.h>
#include <lv2/log/log.h>
#include <lv2/log/logger.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <atomic>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

constexpr int kOutputs = 16;
constexpr int kControls = kNumParams;
constexpr char kPositionKey[] = "urn:zelworks:orvalis-xy3-3d#position";

// The saved position: the bit patterns of the seven numbers that decide it,
// in hex, so that it comes back exactly and no locale's decimal point can
// get in the way.
constexpr float ZelEncoderPosition::*kSavedFields[] = {
    &ZelEncoderPosition::azim, &ZelEncoderPosition::elev, &ZelEncoderPosition::dist,
    &ZelEncoderPosition::x,    &ZelEncoderPosition::y,    &ZelEncoderPosition::z,
    &ZelEncoderPosition::NFC};
constexpr int kSavedCount = sizeof kSavedFields / sizeof kSavedFields[0];
constexpr std::size_t kSavedTextSize = kSavedCount * 9; // 8 digits and a blank or the end

void formatPosition(const ZelEncoderPosition& p, char (&text)[kSavedTextSize]) {
    for (int i = 0; i < kSavedCount; ++i) {
        std::uint32_t bits;
        std::memcpy(&bits, &(p.*kSavedFields[i]), sizeof bits);
        std::snprintf(text + 9 * i, sizeof text - 9 * i, "%08" PRIx32 "%s", bits,
                      i + 1 < kSavedCount ? " " : "");
    }
}

// A position only where every number is one the encoder can take.
bool parsePosition(const void* value, std::size_t size, ZelEncoderPosition& p) {
    char text[kSavedTextSize] = {};
    if (size == 0 || size > sizeof text) return false;
    std::memcpy(text, value, size);
    text[sizeof text - 1] = '\0';
    for (int i = 0; i < kSavedCount; ++i) {
        unsigned bits = 0;
        int used = 0;
        if (std::sscanf(text + 9 * i, "%8x%n", &bits, &used) != 1 || used != 8) return false;
        const std::uint32_t word = bits;
        std::memcpy(&(p.*kSavedFields[i]), &word, sizeof word);
    }
    return isEncoderPosition(p);
}

// The effect needs a host that says which VST version it speaks.
VstIntPtr quietHost(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
    return opcode == audioMasterVersion ? 2400 : 0;
}

// A control value in user units, clamped into the parameter's range, as the
// effect's normalised value.
float normalised(ParameterMapping& mapping, int index, float value) {
    using L = PhysicalLimits;
    auto clamp = [&](double lo, double hi) {
        return std::isnan(value) ? lo : std::min(hi, std::max(lo, static_cast<double>(value)));
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

class Lv2Encoder {
public:
    explicit Lv2Encoder(double rate, const LV2_Feature* const* features) : effect(quietHost) {
        map = static_cast<LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map));
        lv2_log_logger_init(&logger, map,
                            static_cast<LV2_Log_Log*>(lv2_features_data(features, LV2_LOG__log)));
        if (map != nullptr) {
            positionKey = map->map(map->handle, kPositionKey);
            stringType = map->map(map->handle, LV2_ATOM__String);
        }
        if (!(rate >= 1.0 && rate <= 1e7))
            lv2_log_warning(&logger, "Orvalis XY3: sample rate %g is no rate; using 48000\n", rate);
        effect.setSampleRate(static_cast<float>(rate));
        for (int k = 0; k < kControls; ++k) applied[k] = portValue(effect.getEncoder(), k);
    }

    void connect(uint32_t port, void* data) {
        if (port == kInputPort)
            input = static_cast<const float*>(data);
        else if (port < kFirstControl)
            outputs[port - kFirstOutput] = static_cast<float*>(data);
        else if (port < kFirstReport)
            controls[port - kFirstControl] = static_cast<const float*>(data);
        else if (port < kPortCount)
            reports[port - kFirstReport] = static_cast<float*>(data);
    }

    // Changes made before the switch-on are in place when it snaps the
    // gains, so the first block starts at the position instead of gliding.
    void activate() {
        if (!restored.load()) takeControls(true);
        effect.resume();
    }

    void run(uint32_t frames) {
        // After a restore the ports hold what was saved with the position;
        // applied, they would move it again. And a reopened session starts
        // at the position, as a switched-on one does, not gliding to it.
        const bool fresh = restored.exchange(false);
        takeControls(!fresh);
        if (fresh) effect.resume();
        if (input != nullptr) {
            bool connected = true;
            for (float* out : outputs) connected = connected && out != nullptr;
            if (connected) {
                float* in[1] = {const_cast<float*>(input)};
                effect.processReplacing(in, outputs, static_cast<VstInt32>(frames));
            }
        }
        for (int k = 0; k < kControls; ++k)
            if (reports[k] != nullptr) *reports[k] = portValue(effect.getEncoder(), k);
    }

    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle) {
        if (map == nullptr) return LV2_STATE_ERR_NO_FEATURE;
        char text[kSavedTextSize];
        formatPosition(effect.getEncoder().getposition(), text);
        return store(handle, positionKey, text, std::strlen(text) + 1, stringType,
                     LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
    }

    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) {
        if (map == nullptr) return LV2_STATE_ERR_NO_FEATURE;
        std::size_t size = 0;
        std::uint32_t type = 0, flags = 0;
        const void* value = retrieve(handle, positionKey, &size, &type, &flags);
        // A state without a position (a preset of port values): the ports decide.
        if (value == nullptr) return LV2_STATE_SUCCESS;
        ZelEncoderPosition position = effect.getEncoder().getposition();
        if (type != stringType || !parsePosition(value, size, position)) {
            lv2_log_warning(&logger,
                            "Orvalis XY3: the saved position is unreadable; kept as it was\n");
            return LV2_STATE_ERR_BAD_TYPE;
        }
        effect.setPosition(position);
        restored.store(true);
        return LV2_STATE_SUCCESS;
    }

private:
    // apply false: the values are only noted as applied.
    void takeControls(bool apply) {
        for (int k = 0; k < kControls; ++k) {
            if (controls[k] == nullptr || *controls[k] == applied[k]) continue;
            applied[k] = *controls[k];
            if (apply) effect.setParameter(k, normalised(mapping, k, applied[k]));
        }
    }

    ZelAmbiEnc effect;
    ParameterMapping mapping;
    LV2_URID_Map* map = nullptr;
    LV2_URID positionKey = 0;
    LV2_URID stringType = 0;
    LV2_Log_Logger logger{};
    const float* input = nullptr;
    float* outputs[kOutputs] = {};
    const float* controls[kControls] = {};
    float* reports[kControls] = {};
    float applied[kControls] = {};
    // Set by a restore, which may come from another thread than run's: the
    // next cycle takes the ports as they are and starts afresh.
    std::atomic<bool> restored{false};
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
LV2_State_Status save(LV2_Handle h, LV2_State_Store_Function store, LV2_State_Handle handle,
                      uint32_t, const LV2_Feature* const*) {
    return static_cast<Lv2Encoder*>(h)->save(store, handle);
}
LV2_State_Status restore(LV2_Handle h, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle handle, uint32_t, const LV2_Feature* const*) {
    return static_cast<Lv2Encoder*>(h)->restore(retrieve, handle);
}
const void* extensionData(const char* uri) {
    static const LV2_State_Interface state = {save, restore};
    return std::strcmp(uri, LV2_STATE__interface) == 0 ? &state : nullptr;
}

const LV2_Descriptor kDescriptor = {kLv2PluginUri, instantiate, connectPort, activate,
                                    run,           nullptr,     cleanup,     extensionData};

} // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
    return index == 0 ? &kDescriptor : nullptr;
}
