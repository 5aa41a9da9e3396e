#include "ParameterMapping.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalfPi = 1.5707963267948966;

double radians(double degrees) {
    return degrees * kPi / 180.0;
}

std::string format(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

void requireRange(double value, double min, double max, const std::string& what, const char* unit) {
    if (value < min || value > max) {
        throw ValueError(what + " " + format(value) + " is outside " + format(min) + " .. " +
                         format(max) + " " + unit);
    }
}

double parseNumber(const std::string& text, const std::string& what) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(begin, &end);
    if (text.empty() || end == begin || *end != '\0' || errno == ERANGE || !std::isfinite(value)) {
        throw ValueError(what + " '" + text + "' is not a number");
    }
    return value;
}

std::optional<double> parseMetresOrOff(const std::string& text, const std::string& what) {
    if (text == "off") return std::nullopt;
    return parseNumber(text, what);
}

ParameterMapping::ParameterMapping() : probe(kAmbi3P) {}

float ParameterMapping::closestNormalised(double wanted, double exactInverse, Direction direction,
                                          const std::function<float(float)>& encoderMap) const {
    // Several floats can share the best image; then the plain inverse is the
    // natural choice (it keeps the "off" ends at exactly 0 and 1).
    const float best = boundaryNormalised(wanted, direction, encoderMap);
    const float plain = static_cast<float>(exactInverse);
    if (plain >= 0.0f && plain <= 1.0f && encoderMap(plain) == encoderMap(best)) return plain;
    return best;
}

float ParameterMapping::boundaryNormalised(double wanted, Direction direction,
                                           const std::function<float(float)>& encoderMap) const {
    // Non-negative floats are ordered like their bit patterns, so a bisection
    // over the patterns from 0 to 1 visits every float in between.
    auto valueOf = [](std::uint32_t bits) {
        float v;
        std::memcpy(&v, &bits, sizeof(v));
        return v;
    };
    auto reaches = [&](std::uint32_t bits) {
        const double image = encoderMap(valueOf(bits));
        return wanted >= 0.0 ? image >= wanted : image <= wanted;
    };
    const std::uint32_t zero = 0, one = 0x3F800000u; // the patterns of 0.0f and 1.0f
    // The maps are monotonic, so the values that reach the wanted value form
    // one end of 0..1; the answer is the one next to the boundary.
    const bool reachingAtTheTop = (direction == Direction::rising) == (wanted >= 0.0);
    if (reachingAtTheTop) {
        if (!reaches(one)) return 1.0f;
        std::uint32_t low = zero, high = one; // high reaches
        if (reaches(low)) return 0.0f;
        while (high - low > 1) {
            const std::uint32_t middle = low + (high - low) / 2;
            (reaches(middle) ? high : low) = middle;
        }
        return valueOf(high);
    }
    if (!reaches(zero)) return 0.0f;
    std::uint32_t low = zero, high = one; // low reaches
    if (reaches(high)) return 1.0f;
    while (high - low > 1) {
        const std::uint32_t middle = low + (high - low) / 2;
        (reaches(middle) ? low : high) = middle;
    }
    return valueOf(low);
}

float ParameterMapping::azimuth(double degrees) {
    requireRange(degrees, PhysicalLimits::kAzimuthMin, PhysicalLimits::kAzimuthMax, "azimuth",
                 "degrees");
    const double wrapped = degrees < 0.0 ? degrees + 360.0 : degrees;
    return closestNormalised(wrapped, radians(wrapped) / kTwoPi, Direction::rising,
                             [this](float v) { return image(kAzimuthParam, v); });
}

float ParameterMapping::elevation(double degrees) {
    requireRange(degrees, PhysicalLimits::kElevationMin, PhysicalLimits::kElevationMax, "elevation",
                 "degrees");
    return closestNormalised(degrees, (radians(degrees) + kHalfPi) / kPi, Direction::rising,
                             [this](float v) { return image(kElevationParam, v); });
}

float ParameterMapping::coordinate(ParameterIndex axis, double metres) {
    const char* name = axis == kXParam ? "x" : axis == kYParam ? "y" : "z";
    requireRange(metres, PhysicalLimits::kCoordinateMin, PhysicalLimits::kCoordinateMax, name, "m");
    return closestNormalised(metres, (metres + 4.0) / 8.0, Direction::rising,
                             [this, axis](float v) { return image(axis, v); });
}

float ParameterMapping::distance(std::optional<double> metres) {
    if (!metres) return 0.0f;
    requireRange(*metres, PhysicalLimits::kDistanceMin, PhysicalLimits::kDistanceMax, "distance",
                 "m");
    return closestNormalised(*metres, (4.0 - *metres) / 4.0, Direction::falling,
                             [this](float v) { return image(kDistanceParam, v); });
}

float ParameterMapping::compensation(std::optional<double> metres) {
    if (!metres) return 1.0f;
    requireRange(*metres, PhysicalLimits::kCompensationMin, PhysicalLimits::kCompensationMax,
                 "compensation distance", "m");
    return closestNormalised(*metres, (*metres - 0.5) / 3.5, Direction::rising,
                             [this](float v) { return image(kCompensationParam, v); });
}

float ParameterMapping::image(ParameterIndex index, float normalised) {
    switch (index) {
    case kAzimuthParam:
        probe.setazim(normalised);
        return probe.getazimdisplay();
    case kElevationParam:
        probe.setelev(normalised);
        return probe.getelevdisplay();
    case kXParam:
    case kYParam:
    case kZParam:
        // From the centre, one coordinate alone never leaves the 4 m sphere,
        // so the encoder keeps it exactly as set.
        probe.setdist(1.0f);
        if (index == kXParam) {
            probe.setx(normalised);
            return probe.getxdisplay();
        }
        if (index == kYParam) {
            probe.sety(normalised);
            return probe.getydisplay();
        }
        probe.setz(normalised);
        return probe.getzdisplay();
    case kDistanceParam:
        probe.setdist(normalised);
        return probe.getdistdisplay();
    default:
        probe.setNFC(normalised);
        return probe.getNFCdisplay();
    }
}
