#pragma once

// One-pole smoother that glides a parameter towards its target, one step per
// sample, so that gain and coefficient changes never click.
class DeZipper {
public:
    static constexpr float kCoef = 0.998f;
    static constexpr float kOneMinusCoef = 1.0f - kCoef;
    // The tiny constant keeps the recursion out of subnormal numbers when the
    // target is zero; it is not part of the result.
    static constexpr float kAntiDenormal = 1e-30f;

    DeZipper() : state(0.0f) {}

    // One step towards target.
    float smooth(float target) {
        const float y = kOneMinusCoef * target + state * kCoef;
        state = y + kAntiDenormal;
        return y;
    }

    // Start the next steps from value, without a glide.
    void init(float value) { state = value; }

    // Last smoothed value (plus the anti-denormal constant), for inspection.
    float current() const { return state; }

private:
    float state;
};
