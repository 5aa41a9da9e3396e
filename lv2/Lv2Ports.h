#pragma once

// What the LV2 plug-in and its editor agree on: their URIs, the port numbers
// and the units the control ports carry.

#include "ZelAmbiEncParams.h"

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
