#include "ZelAPHilbert.h"

ZelAPHilbert::ZelAPHilbert() {
    for (int k = 0; k < kSectionsPerChain; ++k) {
        const float p = f1coefs[k] * f1coefs[k];
        const float q = f2coefs[k] * f2coefs[k];
        sections[k].setFF(p, 0.0f, -1.0f);
        sections[k].setFB(1.0f, 0.0f, -p);
        sections[kSectionsPerChain + k].setFF(q, 0.0f, -1.0f);
        sections[kSectionsPerChain + k].setFB(1.0f, 0.0f, -q);
    }
}

void ZelAPHilbert::processaudio(float* in, float* out1, float* out2, int n) {
    if (in == nullptr || out1 == nullptr || out2 == nullptr || out1 == out2 || n <= 0) return;
    ZelSOS* const chain1 = sections;
    ZelSOS* const chain2 = sections + kSectionsPerChain;

    // Both first sections read in; when in is out1, chain 2 must read it first.
    if (in == out1) {
        chain2[0].processaudio(in, out2, n);
        chain1[0].processaudio(in, out1, n);
    } else {
        chain1[0].processaudio(in, out1, n);
        chain2[0].processaudio(in, out2, n);
    }
    for (int k = 1; k < kSectionsPerChain - 1; ++k) {
        chain1[k].processaudio(out1, n);
        chain2[k].processaudio(out2, n);
    }
    // The extra sample of delay on chain 1 turns the pair's phase difference into 90 degrees.
    chain1[kSectionsPerChain - 1].processaudio(out1, n, true);
    chain2[kSectionsPerChain - 1].processaudio(out2, n);
}

void ZelAPHilbert::resume() {
    for (ZelSOS& section : sections) section.resume();
}
