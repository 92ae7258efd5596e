// A low-frequency oscillator at block rate, output -1 .. 1.
//
// The rate is either free, 0.02 x 2500^(speed + mod) Hz, or locked to the host tempo: one of 31
// divisions k (cycles per whole note), R = k tempo / 240, scaled by 2500^mod. A jitter of up to 0.1 %
// per block keeps several LFOs from locking together. The waveform unit mixes any subset of sine,
// triangle, sawtooth, square, sample-and-hold and smoothed random (the mean of the selected shapes);
// the random shapes read a ring of 16 random values that advances by one every cycle.
//
// Mono or Poly is decided by the trigger source that feeds the jitter: the latest-trigger source is
// shared, so everything after it stays a single instance; the per-voice trigger source makes the LFO
// per voice. In Trigger mode the same source also restarts the phase.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/modulation/ValueContainers.h"
#include "dsp/Mappings.h"

namespace tolvane {

// fastExp((speed + mod) lnRange + lnMin). Inputs: 0 speed value, 1 modulation.
class LfoFreeRate : public DspModule {
public:
    LfoFreeRate(ModuleGraph& graph, float lnMin, float lnRange)
        : DspModule(graph, OutputKind::Scalar, 2), lnMin_(lnMin), lnRange_(lnRange) {}
    void compute() override;

private:
    float lnMin_;
    float lnRange_;
};

// R fastExp(mod lnRange). Input: 0 modulation.
class LfoTempoRate : public DspModule {
public:
    LfoTempoRate(ModuleGraph& graph, float lnRange) : DspModule(graph, OutputKind::Scalar, 1), lnRange_(lnRange) {}
    void setCyclesPerSecond(float r) { base_ = r; }
    void compute() override;

private:
    float lnRange_;
    float base_ = 0.0f;
};

// rate (1 + 0.001 u) with a new bipolar u every block. Inputs: 0 rate, 1 trigger (read by nobody:
// it decides whether the LFO is shared or per voice).
class LfoRateJitter : public DspModule {
public:
    static constexpr float kDepth = 0.001f;
    explicit LfoRateJitter(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, 2) {}
    void compute() override;
};

// value + modulation. Inputs: 0 value, 1 modulation.
class LfoPhaseOffset : public DspModule {
public:
    explicit LfoPhaseOffset(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, 2) {}
    void compute() override { scalar_ = inputValue(0) + inputValue(1); }
};

class LfoWaveform : public DspModule {
public:
    enum Input { kRate, kPhaseOffset, kTrigger, kNumInputs };
    enum Shape : int { kSine = 1, kTriangle = 2, kSawtooth = 4, kSquare = 8, kSampleHold = 16, kRandom = 32 };
    static constexpr int kRingSize = 16;
    static constexpr int kInitialWriteIndex = 8;
    static constexpr float kMaxStep = 0.5f;

    explicit LfoWaveform(ModuleGraph& graph);
    void setMask(int mask) { mask_ = mask & 0x3F; }
    void setPhase(float phase) { phase_ = phase; }
    float phase() const { return phase_; }
    float ringValue(int i) const { return ring_[static_cast<std::size_t>(i & (kRingSize - 1))]; }
    int readIndex() const { return readIndex_; }
    void compute() override;
    void sampleRateChanged() override { blockPeriod_ = 1.0f / blockRate_; }
    void blockSizeChanged() override { blockPeriod_ = 1.0f / blockRate_; }

    // The shapes at x in [0, 1), for a ring read at i.
    float shapeSum(float x, int i, int& count) const;

private:
    void advanceRing();

    float blockPeriod_ = 1.0f / blockRate_;  // seconds per block
    float phase_;
    std::array<float, kRingSize> ring_{};
    int readIndex_ = 0;
    int writeIndex_ = kInitialWriteIndex;
    int mask_ = kSine;
};

class Lfo {
public:
    enum ModeBits : int { kMono = 1, kTrigger = 2, kTempoSync = 4 };
    static constexpr int kDivisions = 31;
    static constexpr float kInitialSpeed = 0.5f;
    static constexpr float kInitialTempo = 120.0f;

    // Cycles per whole note (4 beats) of each tempo division, slowest first.
    static float divisionCycles(int index);
    // clamp(trunc(speed x 31), 0, 30)
    static int divisionIndex(float speed);

    // speedModulation and phaseModulation are the destination sums of this LFO.
    Lfo(ModuleGraph& graph, PolyModule& trigger, PolyModule& latestTrigger, const ExponentialMapping& rate,
        PolyModule* speedModulation, PolyModule* phaseModulation);

    void setWaveform(int mask);
    void setMode(int bits);
    void setSpeed(float value);
    void setPhase(float cycles);
    // Beats per minute; 0 or less (-1) when the host gives no tempo.
    void setTempo(float bpm);

    int mode() const { return mode_; }
    float tempo() const { return tempo_; }
    // The tempo division in use, or -1 while the free rate runs.
    int divisionInUse() const { return division_; }

    Poly<LfoWaveform>& output() { return waveform_; }
    const Poly<LfoWaveform>& output() const { return waveform_; }
    const Poly<LfoRateJitter>& jitter() const { return jitter_; }
    Poly<LfoFreeRate>& freeRate() { return freeRate_; }
    Poly<LfoPhaseOffset>& phaseOffset() { return phaseOffset_; }

private:
    void selectRate();

    PolyModule& trigger_;
    PolyModule& latestTrigger_;
    Poly<ValueSource> zero_;
    Poly<ValueSource> speedValue_;
    Poly<LfoFreeRate> freeRate_;
    Poly<LfoTempoRate> tempoRate_;
    Poly<LfoRateJitter> jitter_;
    Poly<ValueSource> phaseValue_;
    Poly<LfoPhaseOffset> phaseOffset_;
    Poly<LfoWaveform> waveform_;
    int mode_ = 0;
    float speed_ = kInitialSpeed;
    float tempo_ = kInitialTempo;
    int division_ = -1;
};

}  // namespace tolvane
