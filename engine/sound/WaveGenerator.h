// The base of every oscillator generator: a block-output unit that owns a phase and renders one block
// per tick from a phase increment and, by kind, a pulse width, a sync master increment or an FM depth
// and modulator.
//
// Every generator starts at a random phase drawn from the engine's random generator and is free-running:
// nothing sets the phase again. What a generator interpolates between blocks (pulse width and FM depth
// ramps, the previous harmonic count, a sync transition) is forgotten when a block tick does not follow
// the previous one, and on reset, so that a voice that was not rendered for a while starts cleanly.
#pragma once

#include <memory>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"

namespace tolvane {

// "OSC1 Waveform" / "OSC2 Waveform": 3 x waveform + quality.
enum WaveformIndex : int {
    kSineLow, kSineMiddle, kSineHigh,
    kTriangleLow, kTriangleMiddle, kTriangleHigh,
    kSawLow, kSawMiddle, kSawHigh,
    kPulseLow, kPulseMiddle, kPulseHigh,
    kWaveformCount
};

enum class Waveform { Sine, Triangle, Sawtooth, Pulse };
enum class Quality { Low, Middle, High };
inline Waveform waveformOf(int index) { return static_cast<Waveform>(index / 3); }

// Plain generators (OSC1 without sync), hard-synced generators (OSC1 with sync), phase-modulated
// generators (OSC2).
enum class GeneratorMode { Plain, Sync, Fm };

// A control value that moves linearly across a block: sample k (1 .. B) of the block uses
// start + k step, and the block's target becomes the next block's start. An unset ramp starts at its
// first target, without a ramp.
class ControlRamp {
public:
    static constexpr float kUnset = -1.0f;

    void unset() { previous_ = kUnset; }
    bool isUnset() const { return previous_ == kUnset; }
    float previous() const { return previous_; }
    // The previous value, or the target when unset.
    float startToward(float target) const { return isUnset() ? target : previous_; }
    // Starts a block toward target: gives the start and the per-sample step, and stores the target.
    void begin(float target, int samples, float& start, float& step) {
        start = startToward(target);
        step = (target - start) / static_cast<float>(samples);
        previous_ = target;
    }

private:
    float previous_ = kUnset;
};

class WaveGenerator : public DspModule {
public:
    // Input slots. Pulses read the width; synced generators the master increment; FM generators the
    // depth and the modulator's audio.
    enum Input : int { kFrequency = 0, kPulseWidth = 1, kMasterIncrement = 2, kFmDepth = 2, kModulator = 3 };

    WaveGenerator(ModuleGraph& graph, int numInputs);

    // Memoised per tick; a tick that does not follow the last one forgets the interpolation state first.
    void updateBlock(int tick) override;
    void onReset() override { resetInterpolation(); }

    // The phase in cycles. The engine never sets it after construction; tools and tests may place it.
    float phase() const { return phase_; }
    void setPhase(float p) { phase_ = p; }

protected:
    virtual void resetInterpolation() { width_.unset(); }

    float phase_;
    ControlRamp width_;
};

// Calls body(n) for n = 0 .. count-1, in groups of 16 samples.
template <typename Body>
inline void forEachSample(int count, Body&& body) {
    int n = 0;
    for (; n + 16 <= count; n += 16)
        for (int j = 0; j < 16; ++j) body(n + j);
    for (; n < count; ++n) body(n);
}

// The container (rule 0: it follows its inputs) of the generator of one cell of the generator table.
// The caller connects its inputs: kFrequency always, kPulseWidth for pulses, kMasterIncrement for synced
// generators, kFmDepth and kModulator for FM generators.
std::unique_ptr<PolyModule> makeGeneratorContainer(ModuleGraph& graph, GeneratorMode mode, int waveformIndex);

inline bool readsPulseWidth(int waveformIndex) { return waveformOf(waveformIndex) == Waveform::Pulse; }

}  // namespace tolvane
