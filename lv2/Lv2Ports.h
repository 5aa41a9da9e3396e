#pragma once

// What the LV2 plug-in and its editor agree on: their URIs, the port numbers
// and the units the control ports carry.

#include "AmbiEncoderClass.h"
#include "ParameterMapping.h"
#include "ZelAmbiEncParams.h"

#include <cmath>

constexpr char kLv2PluginUri[] = "urn:zelworks:orvalis-xy3-3d";
constexpr char kLv2UiUri[] = "urn:zelworks:orvalis-xy3-3d#ui";

// The seven control inputs take the parameters in index order, in degrees
// and metres; the seven control outputs report, in the same order and units,
// where the source is after the linked parameters moved each other.
enum Lv2Port : int {
    kInputPort = 0,
    kFirstOutput = 1,
    kFirstControl = 17,
    kFirstReport = kFirstControl + kNumParams,
    kPortCount = kFirstReport + kNumParams
};

// A parameter's value in the units of its port (degrees, metres), as the
// encoder holds it now.
inline float portValue(const ZelAmbisonicEncoder& encoder, int index) {
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

// A position whose numbers the encoder can take: finite, and the distances
// and coordinates within their ranges (the filters are designed from them).
inline bool isEncoderPosition(const ZelEncoderPosition& p) {
    using L = PhysicalLimits;
    auto within = [](float v, double lo, double hi) { return v >= lo && v <= hi; };
    return std::isfinite(p.azim) && std::isfinite(p.elev) &&
           within(p.x, L::kCoordinateMin, L::kCoordinateMax) &&
           within(p.y, L::kCoordinateMin, L::kCoordinateMax) &&
           within(p.z, L::kCoordinateMin, L::kCoordinateMax) &&
           within(p.dist, L::kDistanceMin, L::kDistanceMax) &&
           within(p.NFC, L::kCompensationMin, L::kCompensationMax);
}
