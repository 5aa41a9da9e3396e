#include "ZelSOS.h"

namespace {

// Added to every input so that the recursion never decays into subnormal numbers.
constexpr float kAntiDenormal = 1e-20f;

} // namespace

ZelSOS::ZelSOS() : b0(1.0f), b1(0.0f), b2(0.0f), a0(1.0f), a1(0.0f), a2(0.0f) {
    resume();
}

void ZelSOS::setFF(float b0, float b1, float b2) {
    this->b0 = b0;
    this->b1 = b1;
    this->b2 = b2;
}

void ZelSOS::setFB(float a0, float a1, float a2) {
    this->a0 = a0;
    this->a1 = a1;
    this->a2 = a2;
}

void ZelSOS::resume() {
    x0 = x1 = x2 = y1 = y2 = unusedState = 0.0f;
}

void ZelSOS::processaudio(float* in, float* out, int n) {
    if (in == nullptr || out == nullptr) return;
    for (int i = 0; i < n; ++i) {
        x2 = x1;
        x1 = x0;
        x0 = in[i] + kAntiDenormal;
        out[i] = b0 * x0 + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        y2 = y1;
        y1 = out[i];
    }
}

void ZelSOS::processaudio(float* io, int n) {
    processaudio(io, io, n);
}

void ZelSOS::processaudio(float* io, int n, bool) {
    if (io == nullptr) return;
    for (int i = 0; i < n; ++i) {
        const float v = io[i] + kAntiDenormal;
        io[i] = b0 * x0 + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x0;
        x0 = v;
        y2 = y1;
        y1 = io[i];
    }
}
