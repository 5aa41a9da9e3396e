#pragma once

// One-pole smoother that glides a parameter towards its target, one step per
// sample, so that gain and coefficient changes never click.
class DeZipper {
public:
    DeZipper() : state(0.0f), coef(0.998f), oneMinusCoef(1.0f - coef) {}

    // One step towards target. The tiny constant keeps the recursion out of
    // subnormal numbers when the target is zero; it is not part of the result.
    float smooth(float target) {
        const float y = oneMinusCoef * target + state * coef;
        state = y + 1e-30f;
        return y;
    }

    // Start the next steps from value, without a glide.
    void init(float value) { state = value; }

    // Last smoothed value (plus the anti-denormal constant), for inspection.
    float current() const { return state; }

private:
    float state;
    float coef;
    float oneMinusCoef;
};
