#include "AmbiEncoderClass.h"

#include "EncoderLimits.h"

#include <cmath>

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;

// Nearest distance handed to the near-field filters.
constexpr float kNearestFilterDistance = 0.5f;
constexpr float kSpeedOfSound = 342.0f;

int channelCount(AmbiOrder order) {
    switch (order) {
    case kAmbi1H:
        return 3;
    case kAmbi1P:
        return 4;
    case kAmbi2H:
        return 5;
    case kAmbi2H1P:
        return 6;
    case kAmbi2P:
        return 9;
    case kAmbi3H:
        return 7;
    case kAmbi3H1P:
        return 8;
    case kAmbi3P:
        return 16;
    case kAmbi4H:
        return 9;
    }
    return 0; // unsupported layouts get no channels and no filters
}

float filterDistance(float dist) {
    return kNearestFilterDistance > dist ? kNearestFilterDistance : dist;
}

} // namespace

ZelAmbisonicEncoder::FilterSet ZelAmbisonicEncoder::filterset(AmbiOrder order) {
    switch (order) {
    case kAmbi1H:
        return {2, 0, 0, 0};
    case kAmbi1P:
        return {3, 0, 0, 0};
    case kAmbi2H:
        return {2, 2, 0, 0};
    case kAmbi2H1P:
        return {3, 2, 0, 0};
    case kAmbi2P:
        return {3, 5, 0, 0};
    case kAmbi3H:
        return {2, 2, 2, 0};
    case kAmbi3H1P:
        return {3, 2, 2, 0};
    case kAmbi3P:
        return {3, 5, 7, 0};
    case kAmbi4H:
        return {2, 2, 2, 2};
    }
    return {0, 0, 0, 0};
}

namespace {

constexpr std::uint32_t kHoldX = 1, kHoldY = 2, kHoldZ = 4;

ZelEncoderPosition farStraightAhead() {
    ZelEncoderPosition p{};
    p.dist = p.distNF = p.NFC = kFarLimit;
    p.fs = 48000.0f;
    p.cosElev = 1.0f;
    p.cosAzim = 1.0;
    return p;
}

} // namespace

ZelAmbisonicEncoder::ZelAmbisonicEncoder(AmbiOrder order_)
    : order(order_), ncoefs(channelCount(order_)), position(farStraightAhead()), appliedDesigns(0),
      path(zelDefaultLanePath()), lanes(zelLaneKernel(path)) {
    // Entries a layout never computes stay 0.
    change([this](Position& p) {
        UpdatePolarCoords(p);
        SetDistCoef(p, p.distNF, p.NFC);
    });
    const Position p = position.load();
    applyDesign(p);
    takeGains(p);
}

// ------------------------------------------------------------ setters

template <typename Change> void ZelAmbisonicEncoder::change(Change&& apply) {
    position.update([&](Position& p) {
        apply(p);
        ++p.changes;
    });
}

void ZelAmbisonicEncoder::setazim(float v) {
    change([&](Position& p) {
        p.azim = static_cast<float>(0.0 + v * kTwoPi);
        aimAzim(p);
        UpdatePolarCoords(p);
    });
}

void ZelAmbisonicEncoder::setelev(float v) {
    change([&](Position& p) {
        p.elev = static_cast<float>(-kHalfPi + v * kPi);
        aimElev(p);
        UpdatePolarCoords(p);
    });
}

void ZelAmbisonicEncoder::setx(float v) {
    change([&](Position& p) {
        p.x = -4.0f + 8.0f * v;
        UpdateRectCoords(p);
    });
}

void ZelAmbisonicEncoder::sety(float v) {
    change([&](Position& p) {
        p.y = -4.0f + 8.0f * v;
        UpdateRectCoords(p);
    });
}

void ZelAmbisonicEncoder::setz(float v) {
    change([&](Position& p) {
        p.z = -4.0f + 8.0f * v;
        UpdateRectCoords(p);
    });
}

void ZelAmbisonicEncoder::setdist(float v) {
    change([&](Position& p) {
        p.dist = 4.0f + -4.0f * v;
        p.distNF = filterDistance(p.dist);
        SetDistCoef(p, p.distNF, p.NFC);
        UpdatePolarCoords(p);
    });
}

void ZelAmbisonicEncoder::setNFC(float v) {
    change([&](Position& p) {
        p.NFC = 0.5f + 3.5f * v;
        SetDistCoef(p, p.distNF, p.NFC);
        UpdatePolarCoords(p);
    });
}

void ZelAmbisonicEncoder::setfs(float f) {
    change([&](Position& p) {
        p.fs = f;
        SetDistCoef(p, p.distNF, p.NFC);
    });
}

void ZelAmbisonicEncoder::setposition(const ZelEncoderPosition& saved) {
    change([&](Position& p) {
        p.azim = saved.azim;
        p.elev = saved.elev;
        aimAzim(p);
        aimElev(p);
        p.dist = saved.dist;
        p.x = saved.x;
        p.y = saved.y;
        p.z = saved.z;
        p.NFC = saved.NFC;
        p.distNF = filterDistance(p.dist);
        SetDistCoef(p, p.distNF, p.NFC);
    });
}

void ZelAmbisonicEncoder::setholds(bool holdX, bool holdY, bool holdZ) {
    change([&](Position& p) {
        p.holds = (holdX ? kHoldX : 0) | (holdY ? kHoldY : 0) | (holdZ ? kHoldZ : 0);
    });
}

void ZelAmbisonicEncoder::SetDistCoef(float dsrc, float dcomp) {
    change([&](Position& p) { SetDistCoef(p, dsrc, dcomp); });
}

// ------------------------------------------------------------ getters

namespace {

float normalisedAzim(const ZelEncoderPosition& p) {
    return static_cast<float>((p.azim - 0.0) / kTwoPi);
}
float normalisedElev(const ZelEncoderPosition& p) {
    return static_cast<float>((p.elev - -kHalfPi) / kPi);
}
float normalisedX(const ZelEncoderPosition& p) {
    return (p.x - -4.0f) / 8.0f;
}
float normalisedY(const ZelEncoderPosition& p) {
    return (p.y - -4.0f) / 8.0f;
}
float normalisedZ(const ZelEncoderPosition& p) {
    return (p.z - -4.0f) / 8.0f;
}
float normalisedDist(const ZelEncoderPosition& p) {
    return (p.dist - 4.0f) / -4.0f;
}
float normalisedNFC(const ZelEncoderPosition& p) {
    return (p.NFC - 0.5f) / 3.5f;
}

} // namespace

float ZelAmbisonicEncoder::getazim() const {
    return normalisedAzim(position.load());
}
float ZelAmbisonicEncoder::getelev() const {
    return normalisedElev(position.load());
}
float ZelAmbisonicEncoder::getx() const {
    return normalisedX(position.load());
}
float ZelAmbisonicEncoder::gety() const {
    return normalisedY(position.load());
}
float ZelAmbisonicEncoder::getz() const {
    return normalisedZ(position.load());
}
float ZelAmbisonicEncoder::getdist() const {
    return normalisedDist(position.load());
}
float ZelAmbisonicEncoder::getNFC() const {
    return normalisedNFC(position.load());
}

void ZelAmbisonicEncoder::getall(float (&values)[7]) const {
    const Position p = position.load();
    values[0] = normalisedAzim(p);
    values[1] = normalisedElev(p);
    values[2] = normalisedX(p);
    values[3] = normalisedY(p);
    values[4] = normalisedZ(p);
    values[5] = normalisedDist(p);
    values[6] = normalisedNFC(p);
}

float ZelAmbisonicEncoder::getazimdisplay() const {
    return static_cast<float>(position.load().azim * 180.0 / kPi);
}
float ZelAmbisonicEncoder::getelevdisplay() const {
    return static_cast<float>(position.load().elev * 180.0 / kPi);
}

// ------------------------------------------------------------ position model

// sincos is what the compiler makes of a cosine and a sine of one angle
// anyway; called by hand, it writes each result straight to where it is read
// next, where the compiler's copy of the pair would wait for both stores.
void ZelAmbisonicEncoder::aimAzim(Position& p) {
    sincos(static_cast<double>(p.azim), &p.sinAzim, &p.cosAzim);
}

void ZelAmbisonicEncoder::aimElev(Position& p) {
    double cosElev;
    sincos(static_cast<double>(p.elev), &p.sinElev, &cosElev);
    p.cosElev = static_cast<float>(cosElev);
}

void ZelAmbisonicEncoder::UpdatePolarCoords(Position& p) const {
    if (!(p.holds & kHoldX)) p.x = static_cast<float>(p.cosAzim * p.cosElev * p.dist);
    if (!(p.holds & kHoldY)) p.y = static_cast<float>(p.sinAzim * p.cosElev * p.dist);
    if (!(p.holds & kHoldZ)) p.z = static_cast<float>(p.sinElev * p.dist);
}

void ZelAmbisonicEncoder::UpdateRectCoords(Position& p) const {
    const float x = p.x, y = p.y, z = p.z;
    p.dist = static_cast<float>(std::sqrt(static_cast<double>(x * x + y * y + z * z)));

    if (static_cast<double>(y) == 0.0 && static_cast<double>(x) == 0.0) {
        p.azim = 0.0f;
    } else {
        p.azim = static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
        if (p.azim < 0.0f) p.azim = static_cast<float>(p.azim + kTwoPi);
    }

    if (z == 0.0f) {
        p.elev = 0.0f;
    } else {
        const double horizontal = std::sqrt(static_cast<double>(x * x + y * y));
        p.elev = static_cast<float>(std::atan2(static_cast<double>(z), horizontal));
    }
    aimAzim(p);
    aimElev(p);

    // Only the radius is clamped: the point moves back onto the outer sphere
    // along its own direction.
    if (p.dist > kFarLimit) {
        p.dist = kFarLimit;
        UpdatePolarCoords(p);
    }
    p.distNF = filterDistance(p.dist);
    SetDistCoef(p, p.distNF, p.NFC);
}

// ------------------------------------------------------------ gains

float ZelAmbisonicEncoder::getgain(int c) const {
    float g[16] = {};
    UpdateHOrders(position.load(), g);
    return g[c];
}

void ZelAmbisonicEncoder::UpdateHOrders(const Position& p, float (&g)[16]) const {
    float X, Y, Z, rho;
    if (p.NFC == kFarLimit) {
        // Compensation off: the harmonics are homogeneous polynomials, so using
        // the position itself scales order n by (dist/4)^n.
        X = p.x / 4.0f;
        Y = p.y / 4.0f;
        Z = p.z / 4.0f;
        rho = p.dist / 4.0f;
    } else {
        X = static_cast<float>(p.cosAzim * p.cosElev);
        Y = static_cast<float>(p.sinAzim * p.cosElev);
        Z = static_cast<float>(p.sinElev);
        rho = 1.0f;
    }

    g[0] = 1.0f;
    g[1] = Y;
    g[2] = Z;
    g[3] = X;
    if (order != kAmbi2P && order != kAmbi3P) return;

    const double dX = X, dY = Y, dZ = Z, dRho = rho;
    g[4] = static_cast<float>(1.73205080757 * dX * dY);
    g[5] = static_cast<float>(1.73205080757 * dY * dZ);
    g[6] = static_cast<float>(1.5 * dZ * dZ - 0.5 * dRho * dRho);
    g[7] = static_cast<float>(1.73205080757 * dX * dZ);
    g[8] = static_cast<float>(0.86602540378 * (X * X - Y * Y));
    if (order != kAmbi3P) return;

    // Some squares and differences are deliberately formed in single precision.
    const float XXminusYY = X * X - Y * Y;
    const float YY = Y * Y;
    const float XX = X * X;
    const float rhoRho = rho * rho;
    g[9] = static_cast<float>(0.79056941504 * dY * (3.0 * dX * dX - YY));
    g[10] = static_cast<float>(3.87298334621 * dX * dY * dZ);
    g[11] = static_cast<float>(0.61237243569 * dY * (5.0 * dZ * dZ - rhoRho));
    g[12] = static_cast<float>(0.5 * dZ * (5.0 * dZ * dZ - 3.0 * dRho * dRho));
    g[13] = static_cast<float>(0.61237243569 * dX * (5.0 * dZ * dZ - rhoRho));
    g[14] = static_cast<float>(1.9364916731 * dZ * XXminusYY);
    g[15] = static_cast<float>(0.79056941504 * dX * (XX - 3.0 * dY * dY));
}

// ------------------------------------------------------------ distance model

float ZelAmbisonicEncoder::dist2w(float d, float rate) const {
    return kSpeedOfSound / (d * rate);
}

void ZelAmbisonicEncoder::SetDistCoef(Position& p, float dsrc, float dcomp) const {
    // The corner frequencies follow where the filters take the design (see
    // applyDesign): a change of distance with compensation off costs no division.
    p.designSource = dsrc;
    p.designCompensation = dcomp;
    ++p.designs;
}
