#pragma once

#include "Dezipper.h"
#include "EncoderLanes.h"
#include "SnapshotExchange.h"
#include "tarnhoafilt.h"

#include <cstdint>

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
//
// Setters may run on any thread, also on several at once and beside process:
// each computes a whole new position (both forms and the near-field design)
// from the newest one and publishes it at once; process takes the newest
// position at the start of each block, and getters read a published one, so
// nobody ever sees half of a change. The gains follow from a position alone:
// process works them out once per block in which it changed (automation may
// change several parameters per block).
struct ZelEncoderPosition {
    float azim, elev, dist, distNF, NFC, fs;
    float x, y, z;
    float designSource, designCompensation; // distances the near-field design is for
    std::uint32_t designs;                  // near-field designs made so far
    std::uint32_t holds;                    // bits 0, 1, 2: x, y, z held
    std::uint32_t changes;                  // changes published so far
    // The direction's sines and cosines, kept with it so that a change of
    // distance or compensation needs no new ones (the cosine of the elevation
    // in single precision, as both forms and the gains use it).
    float cosElev;
    double cosAzim, sinAzim, sinElev;
};

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
    // Publishes a position read with getposition(): its polar and Cartesian
    // forms exactly as they were (neither is recomputed from the other) and
    // the compensation distance, with the near-field design that follows
    // from them at this encoder's sample rate. So a saved
    // position comes back bit for bit, whatever path led to it.
    void setposition(const ZelEncoderPosition& saved);

    // Normalised getters, the exact inverses of the setters' maps.
    float getazim() const;
    float getelev() const;
    float getx() const;
    float gety() const;
    float getz() const;
    float getdist() const;
    float getNFC() const;
    // All seven from one reading, in the setters' order: azim, elev, x, y, z,
    // dist, NFC. Cheaper than seven getters, and consistent.
    void getall(float (&values)[7]) const;
    int getncoefs() const { return ncoefs; }

    // Physical values for display: degrees and metres.
    float getazimdisplay() const;
    float getelevdisplay() const;
    float getxdisplay() const { return position.load().x; }
    float getydisplay() const { return position.load().y; }
    float getzdisplay() const { return position.load().z; }
    float getdistdisplay() const { return position.load().dist; }
    float getNFCdisplay() const { return position.load().NFC; }
    // The whole position at once, as one consistent reading.
    ZelEncoderPosition getposition() const { return position.load(); }

    // Audio: reads inputs[0], overwrites outputs[0 .. ncoefs-1]. Each input
    // sample is read before any output of that sample is written, so the input
    // may share its buffer with an output, and unused outputs may share one
    // scratch buffer. A NaN or infinity (in the input, or made by a NaN
    // parameter or an overflowing filter) is written as 0 and cleared from
    // every state at the end of its block.
    void process(float** inputs, float** outputs, int n);
    // The third-order layout runs in vector lanes where the CPU has them
    // (chosen when the encoder is made); the result is the same to the bit.
    // usepath picks a path, e.g. to compare them; false if the CPU lacks it.
    bool usepath(ZelLanePath path);
    ZelLanePath getpath() const { return path; }
    // Clears the filter memories and snaps the gain smoothers to the gains.
    // Runs on the audio thread, or while no audio runs.
    void resume();

    // Near-field corner frequency c/d as a fraction of the sample rate.
    float dist2w(float d, float fs) const;
    void SetDistCoef(float dsrc, float dcomp);

    // Read-only views of the internal state, for inspection and tests.
    AmbiOrder getorder() const { return order; }
    float getgain(int c) const;
    float getfs() const { return position.load().fs; }
    float getdistNF() const { return position.load().distNF; }
    const DeZipper& getdezip(int c) const { return dezip[c]; }
    const NF_filt1& getnf1(int i) const { return nf1[i]; }
    const NF_filt2& getnf2(int i) const { return nf2[i]; }
    const NF_filt3& getnf3(int i) const { return nf3[i]; }
    const NF_filt4& getnf4(int i) const { return nf4[i]; }

    // Hold flags: a held coordinate is left as it is by UpdatePolarCoords.
    void setholds(bool holdX, bool holdY, bool holdZ);

    // How many filters of each class a layout uses.
    struct FilterSet {
        int n1, n2, n3, n4;
    };
    static FilterSet filterset(AmbiOrder order);

private:
    using Position = ZelEncoderPosition;
    void UpdatePolarCoords(Position& p) const;
    void UpdateRectCoords(Position& p) const;
    // The gains of a position; entries the layout does not compute are left as they are.
    void UpdateHOrders(const Position& p, float (&g)[16]) const;
    // Publishes a change of the newest position.
    template <typename Change> void change(Change&& apply);
    // Brings the audio side's gains to the position.
    void takeGains(const Position& p);
    // Work out the sines and cosines after a change of azim or elev.
    static void aimAzim(Position& p);
    static void aimElev(Position& p);
    void SetDistCoef(Position& p, float dsrc, float dcomp) const;
    // Gives the filters the newest design, if they have not had it yet.
    void applyDesign(const Position& p);
    // Clears what a non-finite sample or parameter left in the block's
    // outputs, the gain smoothers and the filters, so that the next block
    // starts clean.
    void recover(float** outputs, int n, const Position& p, bool oddInput);

    template <typename Op> void filterChannels(Op&& run, bool nearSource);
    void processScalar(const float* in, float** outputs, int n, const Position& p);
    // The block in vector lanes; false (and nothing done) where it cannot be.
    bool processLanes(const float* in, float** outputs, int n, const Position& p);
    bool buffersApart(const float* in, float* const* outputs, int n);

    const AmbiOrder order;
    const int ncoefs;
    SnapshotExchange<Position> position;
    // Audio state, touched only by process and resume.
    std::uint32_t appliedDesigns;
    float gains[16] = {};
    std::uint32_t gainsChanges = 0;
    bool gainsSane = true; // every gain far from overflow (see recover)
    NF_filt1 nf1[3];
    NF_filt2 nf2[5];
    NF_filt3 nf3[7];
    NF_filt4 nf4[9];
    DeZipper dezip[24];
    // True while every filter is known to be finite: recover found them so
    // and nothing has run or changed them since.
    bool filtersFinite = false;
    // False while the filters of each order are known to have equal
    // smoothers: they start so and step together; only a recovery that resets
    // some of them can part them.
    bool smoothersParted = false;
    ZelLanePath path;
    ZelLaneKernel lanes;
    // The buffers of the last block that processLanes checked, and the verdict.
    const float* checkedIn = nullptr;
    float* checkedOut[16] = {};
    int checkedN = -1;
    bool checkedApart = false;
};
