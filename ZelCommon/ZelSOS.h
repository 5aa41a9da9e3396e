#pragma once

// One second-order section in direct form I:
//     y = b0*x0 + b1*x1 + b2*x2 - a1*y1 - a2*y2
// The denominator is taken as normalised: a0 is kept but never used. All forms
// read each input sample before writing the output, so in place is fine.
class ZelSOS {
public:
    ZelSOS(); // a pass-through section with cleared memory

    void setFF(float b0, float b1, float b2);
    void setFB(float a0, float a1, float a2);
    void resume(); // clears the memory

    void processaudio(float* in, float* out, int n);
    void processaudio(float* io, int n);
    // In place with one sample of extra delay: the section's transfer function
    // times 1/z. The bool only selects the overload.
    void processaudio(float* io, int n, bool);

private:
    float x0, x1, x2; // inputs as stored, anti-denormal offset included
    float y1, y2;
    float unusedState;
    float b0, b1, b2;
    float a0, a1, a2;
};
