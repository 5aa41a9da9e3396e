#pragma once

#include "Dezipper.h"
#include "tarnhoafilt.h"

#include <memory>

// Channel layouts of the encoder. Only the full-sphere layouts (1, 4 and 7)
// compute a complete channel set; the horizontal and mixed ones declare their
// channel counts and filter sets but only ever compute the first-order gains.
enum AmbiOrder : int {
    kAmbi1H = 0,   // first order, horizontal: 3 channels
    kAmbi1P = 1,   // first order, full sphere: 4
    kAmbi2H = 2,   // second order, horizontal: 5
    kAmbi2H1P = 3, // second order horizontal, first order vertical: 6
    kAmbi2P = 4,   // second order, full sphere: 9
    kAmbi3H = 5,   // third order, horizontal: 7
    kAmbi3H1P = 6, // third order horizontal, first order vertical: 8
    kAmbi3P = 7,   // third order, full sphere: 16 (the plug-in's layout)
    kAmbi4H = 8,   // fourth order, horizontal: 9
};

// Encodes one mono signal into ambisonic channels in ACN order with SN3D
// weighting (W, Y, Z, X, V, T, R, S, U, Q, O, M, K, L, N, P for third order).
//
// The source position is held twice, in polar form (azim, elev in radians,
// dist in metres) and in Cartesian form (x front, y left, z up, metres); every
// setter takes a normalised 0..1 value and recomputes the other form. 4 m is
// the outer limit of both distances and doubles as their "off" value.
//
// With compensation on (NFC < 4 m) the gains are purely directional and every
// directional channel passes through a near-field filter; with compensation off
// the directional gains shrink towards the centre instead (interior panning).
class ZelAmbisonicEncoder {
public:
    explicit ZelAmbisonicEncoder(AmbiOrder order);
    ZelAmbisonicEncoder(const ZelAmbisonicEncoder&) = delete;
    ZelAmbisonicEncoder& operator=(const ZelAmbisonicEncoder&) = delete;

    // Normalised setters (no clamping: values outside 0..1 map linearly).
    void setazim(float v);
    void setelev(float v);
    void setx(float v);
    void sety(float v);
    void setz(float v);
    void setdist(float v);
    void setNFC(float v);
    void setfs(float f);

    // Normalised getters, the exact inverses of the setters' maps.
    float getazim() const;
    float getelev() const;
    float getx() const;
    float gety() const;
    float getz() const;
    float getdist() const;
    float getNFC() const;
    int getncoefs() const { return ncoefs; }

    // Physical values for display: degrees and metres.
    float getazimdisplay() const;
    float getelevdisplay() const;
    float getxdisplay() const { return x; }
    float getydisplay() const { return y; }
    float getzdisplay() const { return z; }
    float getdistdisplay() const { return dist; }
    float getNFCdisplay() const { return NFC; }

    // Audio: reads inputs[0], overwrites outputs[0 .. ncoefs-1]. Each input
    // sample is read before any output of that sample is written, so the input
    // may share its buffer with an output, and unused outputs may share one
    // scratch buffer.
    void process(float** inputs, float** outputs, int n);
    // Clears the filter memories and snaps the gain smoothers to the gains.
    void resume();

    // Near-field corner frequency c/d as a fraction of the sample rate.
    float dist2w(float d, float fs) const;
    void SetDistCoef(float dsrc, float dcomp);

    // Read-only views of the internal state, for inspection and tests.
    AmbiOrder getorder() const { return order; }
    float getgain(int c) const { return gains[c]; }
    float getfs() const { return fs; }
    float getdistNF() const { return distNF; }
    const DeZipper& getdezip(int c) const { return dezip[c]; }
    const NF_filt1& getnf1(int i) const { return nf1[i]; }
    const NF_filt2& getnf2(int i) const { return nf2[i]; }
    const NF_filt3& getnf3(int i) const { return nf3[i]; }
    const NF_filt4& getnf4(int i) const { return nf4[i]; }

    // Hold flags: a held coordinate is left as it is by UpdatePolarCoords.
    void setholds(bool holdX, bool holdY, bool holdZ) {
        xhold = holdX;
        yhold = holdY;
        zhold = holdZ;
    }

    // How many filters of each class a layout uses.
    struct FilterSet {
        int n1, n2, n3, n4;
    };
    static FilterSet filterset(AmbiOrder order);

private:
    void UpdatePolarCoords();
    void UpdateRectCoords();
    void UpdateHOrders();

    template <typename Op> void filterChannels(Op&& run, bool nearSource);

    AmbiOrder order;
    bool xhold, yhold, zhold;
    int ncoefs;
    float azim, elev, dist, distNF, NFC, fs;
    float x, y, z;
    std::unique_ptr<float[]> gains;
    NF_filt1 nf1[3];
    NF_filt2 nf2[5];
    NF_filt3 nf3[7];
    NF_filt4 nf4[9];
    DeZipper dezip[24];
};
