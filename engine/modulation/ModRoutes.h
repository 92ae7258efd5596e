// The two fixed modulation routes (Mod A, Mod B) of one section: OSC1, OSC2 or the filter.
//
// A route's connection value picks the modulator in bits 0-1 (ENV1, ENV2, LFO1, LFO2) and the targets
// in the bits above (bit 2, 3, 4: for the oscillators frequency, pulse width and, on OSC2, FM depth;
// for the filter cutoff and resonance). Setting it points each target's route input at the modulator
// when the target's bit is set, else at the constant zero, and the targets re-derive whether they are
// per voice. The route's amount is d (1 + s (2v - 1)): depth d and velocity sensitivity s, smoothed
// over 0.1 s, and the voice's velocity v; with s = 0 it is d at every velocity.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/modulation/ValueContainers.h"

namespace tolvane {

// Inputs: 0 depth, 1 sensitivity, 2 velocity (0 .. 1).
class RouteAmount : public DspModule {
public:
    enum Input { kDepth, kSens, kVelocity, kNumInputs };
    explicit RouteAmount(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}
    void compute() override {
        scalar_ = inputValue(kDepth) * (1.0f + inputValue(kSens) * (2.0f * inputValue(kVelocity) - 1.0f));
    }
};

class ModRoutes {
public:
    static constexpr int kRoutes = 2;
    static constexpr int kMaxTargets = 3;

    // modulators: ENV1, ENV2, LFO1, LFO2 outputs; zero: the constant-zero unit.
    ModRoutes(ModuleGraph& graph, PolyModule& velocity, PolyModule& zero, const std::array<PolyModule*, 4>& modulators);

    // Adds a target whose route inputs this section steers; bit is its connection bit (4, 8 or 16).
    // Wires its amount inputs and leaves its source inputs at zero until a connection routes them.
    void addTarget(PolyModule& target, int bit);

    void setConnection(int route, int value);
    void setDepth(int route, float depth);
    void setVelocitySens(int route, float sens);

    int connection(int route) const { return connection_[static_cast<std::size_t>(route)]; }
    Poly<RouteAmount>& amount(int route) { return route == 0 ? amountA_ : amountB_; }

    // The modulator a connection value selects (0 ENV1, 1 ENV2, 2 LFO1, 3 LFO2).
    static int modulatorOf(int value) { return value & 3; }

private:
    void wireTarget(int t, int route);

    PolyModule& zero_;
    std::array<PolyModule*, 4> modulators_;
    Poly<SmoothedValue> depthA_;
    Poly<SmoothedValue> sensA_;
    Poly<RouteAmount> amountA_;
    Poly<SmoothedValue> depthB_;
    Poly<SmoothedValue> sensB_;
    Poly<RouteAmount> amountB_;
    std::array<PolyModule*, kMaxTargets> targets_{};
    std::array<int, kMaxTargets> bits_{};
    int targetCount_ = 0;
    std::array<int, kRoutes> connection_{};
};

}  // namespace tolvane
