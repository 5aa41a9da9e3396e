#pragma once

// Outer limit of both distances, and their "off" value.
constexpr float kFarLimit = 4.0f;
