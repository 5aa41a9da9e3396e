#pragma once

#include "AmbiEncoderClass.h"

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

// A value the user gave that the encoder cannot take: a bad number or one out
// of range. The message names the quantity and its allowed range.
struct ValueError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The plug-in's parameter indices.
enum ParameterIndex : int {
    kAzimuthParam = 0,
    kElevationParam = 1,
    kXParam = 2,
    kYParam = 3,
    kZParam = 4,
    kDistanceParam = 5,
    kCompensationParam = 6,
};

// Physical limits of the source position, in degrees and metres. 4 m is the
// outer limit of both distances and also their "off".
struct PhysicalLimits {
    static constexpr double kAzimuthMin = -360.0, kAzimuthMax = 360.0;
    static constexpr double kElevationMin = -90.0, kElevationMax = 90.0;
    static constexpr double kCoordinateMin = -4.0, kCoordinateMax = 4.0;
    static constexpr double kDistanceMin = 0.0, kDistanceMax = 4.0;
    static constexpr double kCompensationMin = 0.5, kCompensationMax = 4.0;
};

// Throws a ValueError naming the quantity and its range when value is outside.
void requireRange(double value, double min, double max, const std::string& what, const char* unit);

// A plain decimal number; anything else (including nan and inf) is refused.
double parseNumber(const std::string& text, const std::string& what);
// A distance in metres or the word "off" (returned as no value).
std::optional<double> parseMetresOrOff(const std::string& text, const std::string& what);

// Turns physical values into the plug-in's normalised 0..1 parameters: the
// inverse of the encoder's own maps, found by asking the encoder itself. Of
// all normalised floats it picks the one whose image is closest to what was
// asked for without falling short of it in magnitude: the plug-in's display
// truncates, so an image a hair below 3.51 m would read 3.50.
class ParameterMapping {
public:
    ParameterMapping();

    float azimuth(double degrees);   // -360..360, negative angles wrap into 0..360
    float elevation(double degrees); // -90..90
    float coordinate(ParameterIndex axis, double metres); // kX/kY/kZ, -4..4
    float distance(std::optional<double> metres);         // 0..4 m, or off
    float compensation(std::optional<double> metres);     // 0.5..4 m, or off

    // The other way: what the encoder makes of one normalised value on its
    // own, in degrees or metres, as a host shows it.
    float image(ParameterIndex index, float normalised);

private:
    enum class Direction { rising, falling }; // of the encoder's map over 0..1
    float closestNormalised(double wanted, double exactInverse, Direction direction,
                            const std::function<float(float)>& encoderMap) const;
    // The normalised float at the edge of those whose image reaches wanted.
    float boundaryNormalised(double wanted, Direction direction,
                             const std::function<float(float)>& encoderMap) const;

    // A private encoder, used only as the authority on the forward maps.
    mutable ZelAmbisonicEncoder probe;
};
