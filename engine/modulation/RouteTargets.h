// The control values that the fixed modulation routes (Mod A and Mod B of OSC1, OSC2 and the filter)
// steer. Every such target has, in this order, the inputs: route A source a, route B source b, route A
// amount A, route B amount B, its assignable-slot sum X, then its own values. The routed modulation
// m = a A + b B + X is then applied per target:
//   oscillator frequency  note offset 24 m, turned into a phase increment
//   pulse width           clamp(width + 0.5 m, 0, 1)
//   OSC2 FM depth         max(0, 8 (depth + m))
//   filter cutoff         note offset 64 m, turned into a normalised cutoff
//   filter resonance      clamp(resonance + 0.5 m, 0, 1)
// An unrouted source input reads a constant zero, so its term vanishes.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

class RouteTarget : public DspModule {
public:
    enum Input { kRouteA, kRouteB, kAmountA, kAmountB, kSlotSum, kFirstOwnInput };

    // A route whose source reads 0 contributes nothing whatever its amount: the amount is not pulled then
    // (unrouted sources read the constant zero, so unused routes cost nothing).
    void updateBlock(int tick) override {
        lastTick_ = tick;
        for (int k = 0; k < numInputs(); ++k)
            if (k != kAmountA && k != kAmountB) input(k)->update(tick);
        routeA_ = inputValue(kRouteA) != 0.0f;
        routeB_ = inputValue(kRouteB) != 0.0f;
        if (routeA_) input(kAmountA)->update(tick);
        if (routeB_) input(kAmountB)->update(tick);
        compute();
    }

protected:
    RouteTarget(ModuleGraph& graph, int ownInputs) : DspModule(graph, OutputKind::Scalar, kFirstOwnInput + ownInputs) {}
    float modulation() const {
        float m = inputValue(kSlotSum);
        if (routeA_) m += inputValue(kRouteA) * inputValue(kAmountA);
        if (routeB_) m += inputValue(kRouteB) * inputValue(kAmountB);
        return m;
    }

private:
    bool routeA_ = false;
    bool routeB_ = false;
};

// The oscillator's phase increment in cycles per sample:
//   n = 64 + (glide - 64) KF + P + pitch + 24 m, clamped to 0 .. 159.99,
//   output = min(0.499, noteToHz(n) / sample rate).
// Key follow pivots on note 64; P is the oscillator's Pitch plus Detune in semitones.
class OscFrequency : public RouteTarget {
public:
    enum Own { kGlide = kFirstOwnInput, kPitch, kNumInputs };
    static constexpr float kModulationSemitones = 24.0f;

    explicit OscFrequency(ModuleGraph& graph) : RouteTarget(graph, 2) {}
    void setKeyFollow(float kf) { keyFollow_ = kf; }
    void setOffset(float semitones) { offset_ = semitones; }
    void compute() override;
    // The note number before conversion (for tests and displays).
    float note() const { return note_; }

private:
    float keyFollow_ = 1.0f;
    float offset_ = 0.0f;
    float note_ = 64.0f;
};

class PulseWidthTarget : public RouteTarget {
public:
    enum Own { kWidth = kFirstOwnInput, kNumInputs };
    explicit PulseWidthTarget(ModuleGraph& graph) : RouteTarget(graph, 1) {}
    void compute() override;
};

class FmDepthTarget : public RouteTarget {
public:
    enum Own { kDepth = kFirstOwnInput, kNumInputs };
    static constexpr float kScale = 8.0f;
    explicit FmDepthTarget(ModuleGraph& graph) : RouteTarget(graph, 1) {}
    void compute() override;
};

// The filter's normalised cutoff:
//   n = base + (key - 64) KF + 64 m, clamped to 0 .. 159.99,
//   c = min(0.499, frequency of n / sample rate).
class CutoffTarget : public RouteTarget {
public:
    enum Own { kBase = kFirstOwnInput, kKey, kNumInputs };
    static constexpr float kModulationNotes = 64.0f;

    explicit CutoffTarget(ModuleGraph& graph) : RouteTarget(graph, 2) {}
    void setKeyFollow(float kf) { keyFollow_ = kf; }
    void compute() override;
    float note() const { return note_; }

private:
    float keyFollow_ = 1.0f;
    float note_ = 64.0f;
};

class ResonanceTarget : public RouteTarget {
public:
    enum Own { kResonance = kFirstOwnInput, kNumInputs };
    explicit ResonanceTarget(ModuleGraph& graph) : RouteTarget(graph, 1) {}
    void compute() override;
};

// Largest note a pitch or cutoff composition may reach.
constexpr float kMaxControlNote = 159.99f;
// Largest phase increment (cycles per sample) or normalised cutoff.
constexpr float kMaxNormalisedFrequency = 0.499f;

}  // namespace tolvane
