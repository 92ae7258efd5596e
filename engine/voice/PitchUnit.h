// The pitch offset every oscillator of a voice shares, in semitones: pitch bend and master tune (one
// shared value) plus a slow random drift per voice ("Voice Detune"), smoothed together over 0.05 s.
//
// The drift walks between random points in -depth .. +depth: output = (a + (b - a) phi) depth, phi
// advancing by 0.1 / blockRate per block, so a new random target is reached every 10 seconds.
#pragma once

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"

namespace tolvane {

// bend x (range / 8192) + tune, with the allocator's pitch bend (-8192 .. 8191).
class BendTuneSource : public DspModule {
public:
    static constexpr float kInitialRange = 2.0f;

    explicit BendTuneSource(ModuleGraph& graph) : DspModule(graph) {}
    void setRange(float semitones) { range_ = semitones; }
    void setTune(float semitones) { tune_ = semitones; }
    void compute() override;

private:
    float range_ = kInitialRange;
    float tune_ = 0.0f;
};

class DetuneDrift : public DspModule {
public:
    static constexpr float kInitialDepth = 0.01f;
    static constexpr float kPointsPerSecond = 0.1f;

    explicit DetuneDrift(ModuleGraph& graph);
    void setDepth(float semitones) { depth_ = semitones; }
    float depth() const { return depth_; }
    void compute() override;
    void sampleRateChanged() override { step_ = kPointsPerSecond / blockRate_; }
    void blockSizeChanged() override { sampleRateChanged(); }

private:
    float from_;
    float to_;
    float position_;
    float step_;
    float depth_ = kInitialDepth;
};

// Inputs: 0 bend and tune, 1 drift, 2 coefficient. Jumps to its input after a tick gap or a reset.
class PitchSmoother : public DspModule {
public:
    enum Input { kBendTune, kDrift, kCoefficient, kNumInputs };
    explicit PitchSmoother(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}
    void updateBlock(int tick) override;
    void onReset() override { jump_ = true; }

private:
    bool jump_ = true;
};

class PitchUnit {
public:
    static constexpr float kSmoothingTime = 0.05f;

    explicit PitchUnit(ModuleGraph& graph);

    void setBendRange(float semitones);
    void setMasterTune(float semitones);
    void setVoiceDetune(float depth);

    // Semitones, one instance per voice.
    Poly<PitchSmoother>& output() { return smoother_; }
    Poly<DetuneDrift>& drift() { return drift_; }

private:
    Poly<BendTuneSource> bendTune_;
    Poly<DetuneDrift> drift_;
    Poly<SmoothCoefficient> coefficient_;
    Poly<PitchSmoother> smoother_;
};

}  // namespace tolvane
