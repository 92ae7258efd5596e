// The eight assignable modulation slots and the 25 destination sums they feed.
//
// A slot multiplies a source s by its depth d and by a sensitivity term built from a second source q
// and the sensitivity k:
//   unipolar q (0 .. 1):         out = s d ((q - 0.5) k + 0.5)
//   bipolar or no q (-1 .. 1):   out = s d (q k + 1)
// so with no sensitivity source the output is s d. Every destination has a summing junction whose
// input n is slot n's output while slot n targets it and has a source; unconnected inputs cost nothing.
//
// Sources (138): 0 none, 1..127 MIDI controllers (64, 120 and 123, which are sustain and the two
// all-off messages, read the next controller instead), 128 ENV1, 129 ENV2, 130 LFO1, 131 LFO2,
// 132 key, 133 velocity, 134 pitch bend, 135 channel aftertouch, 136 polyphonic aftertouch,
// 137 constant 1. Controllers, bend and aftertouch are smoothed over 0.1 s. The sensitivity source
// list is the same without the constant.
#pragma once

#include <array>
#include <memory>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/framework/SumModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/voice/NoteSources.h"

namespace tolvane {

// The stored value of one MIDI controller / 127.
class ControllerSource : public DspModule {
public:
    explicit ControllerSource(ModuleGraph& graph) : DspModule(graph) {}
    void setController(int c) { controller_ = c & 0x7F; }
    int controller() const { return controller_; }
    void compute() override;

private:
    int controller_ = 1;
};

// pitch bend / 8192, -1 .. 0.99988.
class PitchBendSource : public DspModule {
public:
    explicit PitchBendSource(ModuleGraph& graph) : DspModule(graph) {}
    void compute() override;
};

// channel pressure / 127.
class ChannelPressureSource : public DspModule {
public:
    explicit ChannelPressureSource(ModuleGraph& graph) : DspModule(graph) {}
    void compute() override;
};

// Inputs: 0 source s, 1 sensitivity source q, 2 depth d, 3 sensitivity k.
class ModSlotUnit : public DspModule {
public:
    enum Input { kSource, kSensSource, kDepth, kSens, kNumInputs };
    explicit ModSlotUnit(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}
    void setUnipolar(bool u) { unipolar_ = u; }
    bool unipolar() const { return unipolar_; }
    void compute() override;

private:
    bool unipolar_ = false;
};

class ModSlots {
public:
    static constexpr int kSlots = 8;
    static constexpr int kDestinations = 25;  // 1..25; 0 is none
    static constexpr int kSourceCount = 138;
    static constexpr int kSensSourceCount = 137;

    enum Source : int {
        kNone = 0, kFirstController = 1, kLastController = 127,
        kEnv1 = 128, kEnv2, kLfo1, kLfo2, kKey, kVelocity, kPitchBend, kChannelAftertouch, kPolyAftertouch,
        kConstant = 137,
    };
    enum Destination : int {
        kOsc1PulseWidth = 1, kOsc1Pitch, kOsc2Fm, kOsc2PulseWidth, kOsc2Pitch,
        kMixerOsc1, kMixerOsc2, kMixerRing, kMixerNoise, kSaturation, kFilterFrequency, kFilterResonance,
        kAmplifier, kEnv1Attack, kEnv1Decay, kEnv1Sustain, kEnv1Release, kEnv2Attack, kEnv2Decay, kEnv2Sustain,
        kEnv2Release, kLfo1Speed, kLfo1Phase, kLfo2Speed, kLfo2Phase,
    };

    // The controller a controller source index reads: sustain, All Sound Off and All Notes Off are
    // never sources, so 64, 120 and 123 read the next controller.
    static int controllerOf(int index);

    explicit ModSlots(ModuleGraph& graph);
    ~ModSlots();

    // Called once the envelopes and LFOs exist.
    void setModulators(PolyModule* env1, PolyModule* env2, PolyModule* lfo1, PolyModule* lfo2);

    void setSource(int slot, int index);
    void setSensSource(int slot, int index);
    void setDestination(int slot, int index);
    void setDepth(int slot, float depth);
    void setSens(int slot, float sens);
    // Re-connects every envelope or LFO source so that the slots re-derive their voice counts.
    void refreshSources();

    // Destination sum d, 1..25.
    SumContainer& destination(int d) { return *sums_[static_cast<std::size_t>(d - 1)]; }
    Poly<ModSlotUnit>& slot(int s);
    int source(int s) const;
    int sensSource(int s) const;

private:
    struct Slot;
    PolyModule* select(Slot& slot, bool sensRole, int index);
    void connectOutput(int s, bool connected);

    std::array<std::unique_ptr<SumContainer>, kDestinations> sums_;
    Poly<ValueSource> zero_;
    Poly<ValueSource> one_;
    Poly<SmoothCoefficient> coefficient_;
    NoteSourceContainer<KeySource> key_;
    NoteSourceContainer<VelocityCurve> velocity_;
    Poly<PitchBendSource> bend_;
    Poly<Smoother> bendSmoothed_;
    Poly<ChannelPressureSource> channelPressure_;
    Poly<Smoother> channelPressureSmoothed_;
    NoteSourceContainer<PolyPressureSource> polyPressure_;
    Poly<Smoother> polyPressureSmoothed_;
    std::array<PolyModule*, 4> modulators_{};
    std::array<std::unique_ptr<Slot>, kSlots> slots_;
};

}  // namespace tolvane
