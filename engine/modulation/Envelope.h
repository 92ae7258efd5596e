// An ADSR envelope generator at block rate, one core per voice, output 0 .. 1.
//
// Every stage is a planned segment: from p to q in N = max(1, trunc(blockRate t)) steps along an
// exponential of curvature c, value_k = A r^k + B with r = e^(c/N), A = (p - q) / (1 - e^c), B = p - A,
// which lands exactly on q after N steps. Negative curvature moves fast at first, positive slowly at
// first, and a curvature near 0 is a straight line. When a stage's time (or the sustain level) changes
// while its segment runs, the segment is planned again from the current level over the remaining
// fraction n / N of the new time, so the level never jumps.
//
// Stages: 0 idle, 1 attack (to 1.0), 2 decay to sustain and hold, 3 release (to 0). An attack shorter
// than two blocks is skipped: the envelope outputs 1.0 at once and starts the decay.
#pragma once

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/modulation/ValueContainers.h"
#include "dsp/Mappings.h"

namespace tolvane {

// Seconds from a normalised time value and its modulation: fastExp((value + mod) lnRange + lnMin),
// that is min (max/min)^(value + mod). Inputs: 0 value, 1 modulation.
class EnvelopeTime : public DspModule {
public:
    EnvelopeTime(ModuleGraph& graph, float lnMin, float lnRange)
        : DspModule(graph, OutputKind::Scalar, 2), lnMin_(lnMin), lnRange_(lnRange) {}
    void compute() override;

private:
    float lnMin_;
    float lnRange_;
};

// clamp(value + modulation, 0, 1). Inputs: 0 value, 1 modulation.
class SustainLevel : public DspModule {
public:
    explicit SustainLevel(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, 2) {}
    void compute() override;
};

class EnvelopeCore : public DspModule {
public:
    enum Input { kGate, kTrigger, kAttack, kDecay, kSustain, kRelease, kNumInputs };
    enum Stage { kIdle = 0, kAttackStage = 1, kDecayStage = 2, kReleaseStage = 3 };

    explicit EnvelopeCore(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}

    void setCurvatures(float attack, float decay, float release) {
        attackCurve_ = attack;
        decayCurve_ = decay;
        releaseCurve_ = release;
    }
    void compute() override;
    void onReset() override;
    // An idle envelope whose gate and trigger stay off outputs 0 and has nothing to plan: it does not
    // pull its time and sustain inputs then.
    void updateBlock(int tick) override {
        lastTick_ = tick;
        DspModule* gate = input(kGate);
        DspModule* trigger = input(kTrigger);
        gate->update(tick);
        trigger->update(tick);
        if (stage_ == kIdle && controlValue(gate) < 0.5f && controlValue(trigger) < 0.5f) {
            scalar_ = 0.0f;
            return;
        }
        updateInputs(tick);
        compute();
    }

    int stage() const { return stage_; }

private:
    // Plans a segment from p to q over the fraction of time t, with the current stage's curvature.
    void plan(float from, float to, float seconds, double fraction);
    double remainingFraction() const {
        return static_cast<double>(remainingSteps_) / static_cast<double>(totalSteps_);
    }
    int steps(float seconds, double fraction) const;
    float next();

    int stage_ = kIdle;
    double a_ = 0.0;
    double b_ = 0.0;
    double ratio_ = 1.0;
    double factor_ = 1.0;
    int totalSteps_ = 1;
    int remainingSteps_ = 0;
    float plannedTime_ = -1.0f;
    float sustain_ = 0.0f;
    float attackCurve_ = 0.0f;
    float decayCurve_ = -4.0f;
    float releaseCurve_ = -4.0f;
};

// One envelope (ENV1 or ENV2): parameter values, time mappings with their modulation, sustain, core.
class Envelope {
public:
    static constexpr float kInitialAttack = 0.1f;
    static constexpr float kInitialDecay = 0.5f;
    static constexpr float kInitialSustain = 0.5f;
    static constexpr float kInitialRelease = 0.1f;
    static constexpr float kReleaseCurvature = -4.0f;
    static constexpr int kInitialCurve = 1;

    // The modulation inputs are the destination sums for attack, decay, sustain and release.
    struct Modulation {
        PolyModule* attack;
        PolyModule* decay;
        PolyModule* sustain;
        PolyModule* release;
    };

    Envelope(ModuleGraph& graph, PolyModule& gate, PolyModule& trigger, const ExponentialMapping& attackTime,
             const ExponentialMapping& decayTime, const Modulation& modulation);

    // Normalised values as the parameters deliver them.
    void setAttack(float value);
    void setDecay(float value);
    void setSustain(float value);
    void setRelease(float value);
    // Curve indices 0..2: attack -4 (fast), 0 (linear), 3 (slow); decay -2 (linear), -4 (middle), -6 (fast).
    void setAttackCurve(int index);
    void setDecayCurve(int index);

    static float attackCurvature(int index);
    static float decayCurvature(int index);

    Poly<EnvelopeCore>& output() { return core_; }
    Poly<EnvelopeTime>& attackTime() { return attackTime_; }
    Poly<EnvelopeTime>& decayTime() { return decayTime_; }
    Poly<EnvelopeTime>& releaseTime() { return releaseTime_; }
    Poly<SustainLevel>& sustainLevel() { return sustainLevel_; }

private:
    void pushCurvatures();

    Poly<ValueSource> attackValue_;
    Poly<ValueSource> decayValue_;
    Poly<ValueSource> sustainValue_;
    Poly<ValueSource> releaseValue_;
    Poly<EnvelopeTime> attackTime_;
    Poly<EnvelopeTime> decayTime_;
    Poly<SustainLevel> sustainLevel_;
    Poly<EnvelopeTime> releaseTime_;
    Poly<EnvelopeCore> core_;
    float attackCurvature_;
    float decayCurvature_;
};

}  // namespace tolvane
