#pragma once

#include "ParameterMapping.h"

#include <optional>
#include <variant>
#include <vector>

// A source position as the user writes it: polar (degrees, metres or off)
// or Cartesian (metres; x front, y left, z up).
struct PolarPosition {
    double azimuth = 0.0;
    double elevation = 0.0;
    std::optional<double> distance; // none: off, the 4 m outer limit
};

struct CartesianPosition {
    double x = 0.0, y = 0.0, z = 0.0;
};

using SourcePosition = std::variant<PolarPosition, CartesianPosition>;

struct ParameterWrite {
    int index;
    float value;
};

// Throws a ValueError for a value out of its range, and for a Cartesian point
// outside the 4 m sphere, which the plug-in would pull back onto the sphere.
void requireValid(const SourcePosition& position);

// The setParameter calls that move the plug-in's source to a position, in the
// order they must be sent. A polar position is azimuth, elevation, distance.
// A Cartesian one starts at the centre (distance 0) and then sets x, y and z:
// from anywhere else a single coordinate could briefly leave the 4 m sphere,
// and the plug-in would then shorten the other coordinates as well.
std::vector<ParameterWrite> positionWrites(const SourcePosition& position,
                                           ParameterMapping& mapping);
