#include "AmbiEncoderClass.h"

#include <cmath>

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;

// Outer limit of both distances, and their "off" value.
constexpr float kFarLimit = 4.0f;
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

ZelAmbisonicEncoder::ZelAmbisonicEncoder(AmbiOrder order_)
    : order(order_), xhold(false), yhold(false), zhold(false), ncoefs(channelCount(order_)),
      azim(0.0f), elev(0.0f), dist(kFarLimit), distNF(kFarLimit), NFC(kFarLimit), fs(48000.0f),
      x(0.0f), y(0.0f), z(0.0f) {
    // Room for W, Y, Z, X even in the smallest layout: UpdateHOrders always
    // writes the first four entries. Entries a layout never computes stay 0.
    const int size = ncoefs > 4 ? ncoefs : 4;
    gains.reset(new float[size]());
    gains[0] = 0.70710677f;
    UpdatePolarCoords();
    SetDistCoef(distNF, NFC);
}

// ------------------------------------------------------------ setters

void ZelAmbisonicEncoder::setazim(float v) {
    azim = static_cast<float>(0.0 + v * kTwoPi);
    UpdatePolarCoords();
}

void ZelAmbisonicEncoder::setelev(float v) {
    elev = static_cast<float>(-kHalfPi + v * kPi);
    UpdatePolarCoords();
}

void ZelAmbisonicEncoder::setx(float v) {
    x = -4.0f + 8.0f * v;
    UpdateRectCoords();
}

void ZelAmbisonicEncoder::sety(float v) {
    y = -4.0f + 8.0f * v;
    UpdateRectCoords();
}

void ZelAmbisonicEncoder::setz(float v) {
    z = -4.0f + 8.0f * v;
    UpdateRectCoords();
}

void ZelAmbisonicEncoder::setdist(float v) {
    dist = 4.0f + -4.0f * v;
    distNF = filterDistance(dist);
    SetDistCoef(distNF, NFC);
    UpdatePolarCoords();
}

void ZelAmbisonicEncoder::setNFC(float v) {
    NFC = 0.5f + 3.5f * v;
    SetDistCoef(distNF, NFC);
    UpdatePolarCoords();
}

void ZelAmbisonicEncoder::setfs(float f) {
    fs = f;
    SetDistCoef(distNF, NFC);
}

// ------------------------------------------------------------ getters

float ZelAmbisonicEncoder::getazim() const {
    return static_cast<float>((azim - 0.0) / kTwoPi);
}
float ZelAmbisonicEncoder::getelev() const {
    return static_cast<float>((elev - -kHalfPi) / kPi);
}
float ZelAmbisonicEncoder::getx() const {
    return (x - -4.0f) / 8.0f;
}
float ZelAmbisonicEncoder::gety() const {
    return (y - -4.0f) / 8.0f;
}
float ZelAmbisonicEncoder::getz() const {
    return (z - -4.0f) / 8.0f;
}
float ZelAmbisonicEncoder::getdist() const {
    return (dist - 4.0f) / -4.0f;
}
float ZelAmbisonicEncoder::getNFC() const {
    return (NFC - 0.5f) / 3.5f;
}

float ZelAmbisonicEncoder::getazimdisplay() const {
    return static_cast<float>(azim * 180.0 / kPi);
}
float ZelAmbisonicEncoder::getelevdisplay() const {
    return static_cast<float>(elev * 180.0 / kPi);
}

// ------------------------------------------------------------ position model

void ZelAmbisonicEncoder::UpdatePolarCoords() {
    const float c = static_cast<float>(std::cos(static_cast<double>(elev)));
    if (!xhold) x = static_cast<float>(std::cos(static_cast<double>(azim)) * c * dist);
    if (!yhold) y = static_cast<float>(std::sin(static_cast<double>(azim)) * c * dist);
    if (!zhold) z = static_cast<float>(std::sin(static_cast<double>(elev)) * dist);
    UpdateHOrders();
}

void ZelAmbisonicEncoder::UpdateRectCoords() {
    dist = static_cast<float>(std::sqrt(static_cast<double>(x * x + y * y + z * z)));

    if (static_cast<double>(y) == 0.0 && static_cast<double>(x) == 0.0) {
        azim = 0.0f;
    } else {
        azim = static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
        if (azim < 0.0f) azim = static_cast<float>(azim + kTwoPi);
    }

    if (z == 0.0f) {
        elev = 0.0f;
    } else {
        const double horizontal = std::sqrt(static_cast<double>(x * x + y * y));
        elev = static_cast<float>(std::atan2(static_cast<double>(z), horizontal));
    }

    // Only the radius is clamped: the point moves back onto the outer sphere
    // along its own direction.
    if (dist > kFarLimit) {
        dist = kFarLimit;
        UpdatePolarCoords();
    } else {
        UpdateHOrders();
    }
    distNF = filterDistance(dist);
    SetDistCoef(distNF, NFC);
}

// ------------------------------------------------------------ gains

void ZelAmbisonicEncoder::UpdateHOrders() {
    float X, Y, Z, rho;
    if (NFC == kFarLimit) {
        // Compensation off: the harmonics are homogeneous polynomials, so using
        // the position itself scales order n by (dist/4)^n.
        X = x / 4.0f;
        Y = y / 4.0f;
        Z = z / 4.0f;
        rho = dist / 4.0f;
    } else {
        const float c = static_cast<float>(std::cos(static_cast<double>(elev)));
        X = static_cast<float>(std::cos(static_cast<double>(azim)) * c);
        Y = static_cast<float>(std::sin(static_cast<double>(azim)) * c);
        Z = static_cast<float>(std::sin(static_cast<double>(elev)));
        rho = 1.0f;
    }

    float* g = gains.get();
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

void ZelAmbisonicEncoder::SetDistCoef(float dsrc, float dcomp) {
    // A source at the outer limit is a plane wave: no near-field zeros.
    const float ws = dsrc == kFarLimit ? 0.0f : dist2w(dsrc, fs);
    const float wc = dist2w(dcomp, fs);
    const FilterSet set = filterset(order);
    if (set.n1 > 0) {
        nf1[0].init(ws, wc, 1.0f);
        for (int i = 1; i < set.n1; ++i) nf1[i].init(nf1[0]);
    }
    if (set.n2 > 0) {
        nf2[0].init(ws, wc, 1.0f);
        for (int i = 1; i < set.n2; ++i) nf2[i].init(nf2[0]);
    }
    if (set.n3 > 0) {
        nf3[0].init(ws, wc, 1.0f);
        for (int i = 1; i < set.n3; ++i) nf3[i].init(nf3[0]);
    }
    if (set.n4 > 0) {
        nf4[0].init(ws, wc, 1.0f);
        for (int i = 1; i < set.n4; ++i) nf4[i].init(nf4[0]);
    }
}

// ------------------------------------------------------------ audio

template <typename Op> void ZelAmbisonicEncoder::filterChannels(Op&& run, bool nearSource) {
    run(nf1[0], 1, 1);
    run(nf1[1], 2, 2);
    switch (order) {
    case kAmbi1H:
    case kAmbi2H1P: // channels 3..5 stay unfiltered in this layout
        break;
    case kAmbi1P:
        run(nf1[2], 3, 3);
        break;
    case kAmbi2H:
        run(nf2[0], 3, 3);
        run(nf2[1], 4, 4);
        break;
    case kAmbi2P:
        run(nf1[2], 3, 3);
        for (int k = 0; k < 5; ++k) run(nf2[k], 4 + k, 4 + k);
        break;
    case kAmbi3H:
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 3 + k, 3 + k);
            run(nf3[k], 5 + k, 5 + k);
        }
        break;
    case kAmbi3H1P:
        // With a near source the second- and third-order filters write one
        // channel below the one they read; kept as the layout has always been.
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 4 + k, nearSource ? 3 + k : 4 + k);
            run(nf3[k], 6 + k, nearSource ? 5 + k : 6 + k);
        }
        run(nf1[2], 3, 3);
        break;
    case kAmbi3P:
        run(nf1[2], 3, 3);
        for (int k = 0; k < 5; ++k) run(nf2[k], 4 + k, 4 + k);
        for (int k = 0; k < 7; ++k) run(nf3[k], 9 + k, 9 + k);
        break;
    case kAmbi4H:
        for (int k = 0; k < 2; ++k) {
            run(nf2[k], 3 + k, 3 + k);
            run(nf3[k], 5 + k, 5 + k);
            run(nf4[k], 7 + k, 7 + k);
        }
        break;
    }
}

void ZelAmbisonicEncoder::process(float** inputs, float** outputs, int n) {
    if (inputs == nullptr || outputs == nullptr || ncoefs == 0) return;
    if (n < 0) n = 0;
    // Read once: a setter on another thread may change them mid-block.
    const float compensation = NFC;
    const float sourceDistance = dist;

    const float* in = inputs[0];
    for (int i = 0; i < n; ++i) {
        const float u = in[i]; // before any output of this sample is written
        for (int c = 0; c < ncoefs; ++c) outputs[c][i] = u * dezip[c].smooth(gains[c]);
    }

    if (!(kFarLimit > compensation)) return; // compensation off: interior panning only

    if (kFarLimit > sourceDistance) {
        filterChannels(
            [&](auto& f, int from, int to) { f.process(n, outputs[from], outputs[to], 1); }, true);
    } else {
        filterChannels(
            [&](auto& f, int from, int to) { f.process1(n, outputs[from], outputs[to], 1); },
            false);
    }
}

void ZelAmbisonicEncoder::resume() {
    const FilterSet set = filterset(order);
    for (int i = 0; i < set.n1; ++i) nf1[i].reset();
    for (int i = 0; i < set.n2; ++i) nf2[i].reset();
    for (int i = 0; i < set.n3; ++i) nf3[i].reset();
    for (int i = 0; i < set.n4; ++i) nf4[i].reset();
    for (int c = 0; c < ncoefs; ++c) dezip[c].init(gains[c]);
}
