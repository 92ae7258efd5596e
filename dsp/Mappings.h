// Value mappings: how a normalised parameter value v (0..1) becomes the value a setter uses.
#pragma once

namespace tolvane {

class ValueMapping {
public:
    virtual ~ValueMapping() = default;
    virtual float map(float v) const = 0;
};

// min + v (max - min)
class LinearMapping : public ValueMapping {
public:
    LinearMapping(float min, float max) : offset_(min), scale_(max - min) {}
    float map(float v) const override { return offset_ + v * scale_; }
    float offset() const { return offset_; }
    float scale() const { return scale_; }

private:
    float offset_;
    float scale_;
};

// min (max/min)^v, evaluated as fastExp(ln min + v (ln max - ln min)).
class ExponentialMapping : public ValueMapping {
public:
    ExponentialMapping(float min, float max);
    float map(float v) const override;
    float lnMin() const { return lnMin_; }
    float lnRange() const { return lnRange_; }
    // The normalised value that maps to x (0 when x <= 0, at most 1).
    float inverse(float x) const;

private:
    float lnMin_;
    float lnRange_;
};

// min + scale (e^(k v) - 1) with scale = (max - min)/(e^k - 1): map(0) = min, map(1) = max.
class CurveMapping : public ValueMapping {
public:
    CurveMapping(float min, float max, float curvature);
    float map(float v) const override;

private:
    float min_;
    float k_;
    float scale_;
};

// s |s| with s = 2v - 1: modulation depths.
class BipolarSquareMapping : public ValueMapping {
public:
    float map(float v) const override {
        float s = 2.0f * v - 1.0f;
        return s * (s < 0.0f ? -s : s);
    }
};

// trunc(min + v (max - min)) toward zero: oscillator pitch in semitones.
class TruncatedLinearMapping : public ValueMapping {
public:
    TruncatedLinearMapping(float min, float max) : linear_(min, max) {}
    float map(float v) const override { return static_cast<float>(static_cast<int>(linear_.map(v))); }

private:
    LinearMapping linear_;
};

// The sixteen mappings the parameter table uses.
struct ValueMappings {
    LinearMapping unit{0.0f, 1.0f};
    LinearMapping doubled{0.0f, 2.0f};
    LinearMapping signedUnit{-1.0f, 1.0f};
    BipolarSquareMapping bipolarSquare;
    CurveMapping levelCurve{0.0f, 2.0f, 2.0f};
    ExponentialMapping cutFrequency{20.0f, 22000.0f};
    TruncatedLinearMapping semitone{-48.5f, 48.5f};
    LinearMapping noiseNote{136.0f, 69.0f};
    ExponentialMapping saturation{0.1f, 4.0f};
    LinearMapping cutoffNote{24.0f, 152.0f};
    ExponentialMapping attackTime{0.002f, 20.0f};
    ExponentialMapping decayTime{0.004f, 40.0f};
    ExponentialMapping rate{0.02f, 50.0f};
    ExponentialMapping delayTime{0.001f, 1.0f};
    ExponentialMapping overdrive{0.01f, 10.0f};
    CurveMapping portamentoCurve{-0.01f, 16.0f, 5.0f};
};

// Index of option k for an N-option parameter: min(N - 1, trunc(N v)), never below 0.
inline int quantise(float v, int n) {
    float x = static_cast<float>(n) * v;
    if (!(x > 0.0f)) return 0;
    int k = static_cast<int>(x);
    return k < n - 1 ? k : n - 1;
}

// The normalised value stored for option k of N.
inline float optionValue(int k, int n) { return (static_cast<float>(k) + 0.5f) / static_cast<float>(n); }

inline bool switchOn(float v) { return v >= 0.5f; }

}  // namespace tolvane
