#include "Position.h"

#include <cmath>
#include <sstream>

void requireValid(const SourcePosition& position) {
    using L = PhysicalLimits;
    if (const auto* polar = std::get_if<PolarPosition>(&position)) {
        requireRange(polar->azimuth, L::kAzimuthMin, L::kAzimuthMax, "azimuth", "degrees");
        requireRange(polar->elevation, L::kElevationMin, L::kElevationMax, "elevation", "degrees");
        if (polar->distance) {
            requireRange(*polar->distance, L::kDistanceMin, L::kDistanceMax, "distance", "m");
        }
        return;
    }
    const auto& p = std::get<CartesianPosition>(position);
    requireRange(p.x, L::kCoordinateMin, L::kCoordinateMax, "x", "m");
    requireRange(p.y, L::kCoordinateMin, L::kCoordinateMax, "y", "m");
    requireRange(p.z, L::kCoordinateMin, L::kCoordinateMax, "z", "m");
    const double radius = std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z);
    if (radius > PhysicalLimits::kDistanceMax) {
        std::ostringstream message;
        message << "position (" << p.x << ", " << p.y << ", " << p.z << ") is " << radius
                << " m from the centre, beyond the 4 m limit";
        throw ValueError(message.str());
    }
}

std::vector<ParameterWrite> positionWrites(const SourcePosition& position,
                                           ParameterMapping& mapping) {
    if (const auto* polar = std::get_if<PolarPosition>(&position)) {
        return {{kAzimuthParam, mapping.azimuth(polar->azimuth)},
                {kElevationParam, mapping.elevation(polar->elevation)},
                {kDistanceParam, mapping.distance(polar->distance)}};
    }
    requireValid(position);
    const auto& cartesian = std::get<CartesianPosition>(position);
    return {{kDistanceParam, mapping.distance(0.0)},
            {kXParam, mapping.coordinate(kXParam, cartesian.x)},
            {kYParam, mapping.coordinate(kYParam, cartesian.y)},
            {kZParam, mapping.coordinate(kZParam, cartesian.z)}};
}
