// The synthesizer's sound engine: a fixed graph of units built once on the voice allocator (which is
// the module graph), wired once, and pulled one 64-sample block at a time from the effect unit's two
// outputs. A voice is the set of instances with the same voice index in every per-voice container.
//
// The setters receive values already mapped by the parameter table (seconds, semitones, option
// indices, gains); they are called between blocks, on the thread that renders.
#pragma once

#include <array>
#include <memory>

#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/framework/ValueSource.h"
#include "engine/modulation/Envelope.h"
#include "engine/modulation/LevelTargets.h"
#include "engine/modulation/Lfo.h"
#include "engine/modulation/ModRoutes.h"
#include "engine/modulation/ModSlots.h"
#include "engine/modulation/RouteTargets.h"
#include "engine/voice/NoteSources.h"
#include "engine/voice/PitchUnit.h"
#include "engine/voice/Portamento.h"
#include "engine/sound/AmpSection.h"
#include "engine/sound/FilterSection.h"
#include "engine/sound/MixerSection.h"
#include "engine/sound/OscillatorSection.h"
#include "engine/effect/EffectUnit.h"
#include "dsp/Mappings.h"
#include "dsp/EngineLimits.h"

namespace tolvane {

class VoiceAllocator;

struct EngineMappings {
    const ExponentialMapping& attackTime;
    const ExponentialMapping& decayTime;
    const ExponentialMapping& rate;
    const ExponentialMapping& saturation;
    const ExponentialMapping& delayTime;
};

// The control-rate containers that the audio sections take as inputs, and the modulators behind them.
// Every value is a scalar per block; containers with one instance in use are shared by all voices.
struct ControlTargets {
    PolyModule* gate = nullptr;           // 0 / 1 per voice
    PolyModule* trigger = nullptr;        // 1 in a voice's (re)start block
    PolyModule* latestTrigger = nullptr;  // the newest voice's trigger, one instance
    PolyModule* velocity = nullptr;       // velocity / 127 per voice
    PolyModule* glide = nullptr;          // gliding note number per voice
    PolyModule* pitch = nullptr;          // bend + tune + drift in semitones per voice
    std::array<PolyModule*, 2> envelope{};  // ENV1, ENV2 outputs, 0 .. 1
    std::array<PolyModule*, 2> lfo{};       // LFO1, LFO2 outputs, -1 .. 1

    // Oscillator 0 = OSC1, 1 = OSC2: phase increment in cycles per sample (at most 0.499).
    std::array<Poly<OscFrequency>*, 2> phaseIncrement{};
    // Pulse width in cycles, 0 .. 1.
    std::array<Poly<PulseWidthTarget>*, 2> pulseWidth{};
    // OSC2's phase-modulation depth in cycles per unit of modulator amplitude, >= 0.
    Poly<FmDepthTarget>* fmDepth = nullptr;
    // Filter: normalised cutoff c (at most 0.499), resonance 0 .. 1, saturation ceiling L.
    Poly<CutoffTarget>* cutoff = nullptr;
    Poly<ResonanceTarget>* resonance = nullptr;
    Poly<SaturationLevel>* saturationLevel = nullptr;
    // Mixer gains: 0 OSC1, 1 OSC2, 2 ring modulator, 3 noise; each >= 0.
    std::array<Poly<LevelControl>*, 4> mixerLevel{};
    // The voice's amplitude for the block.
    Poly<AmpGain>* ampGain = nullptr;
};

class SynthEngine {
public:
    SynthEngine(VoiceAllocator& allocator, const EngineMappings& mappings);
    ~SynthEngine();
    SynthEngine(const SynthEngine&) = delete;
    SynthEngine& operator=(const SynthEngine&) = delete;

    // Computes the next block for this tick into the two output buffers.
    void render(int tick);
    // Clears outputs and states through the whole graph (envelopes idle, glides and smoothers jump).
    void reset(int tick);
    const float* left() const;
    const float* right() const;

    // Runs the envelopes and LFOs of every voice in use for the tick; render() calls it before pulling the
    // audio, whose units pull the control targets of audible voices.
    void updateControls(int tick);
    void resetControls(int tick);

    const ControlTargets& controls() const { return controls_; }
    // The audio sections (units 12 to 17).
    OscillatorSection& oscillator(int osc) { return osc == 0 ? *osc1_ : *osc2_; }
    FilterSection& filter() { return *filter_; }
    AmpSection& amp() { return *amp_; }
    EffectUnit& effect() { return *effect_; }
    Envelope& envelope(int env) { return env == 0 ? env1_ : env2_; }
    Lfo& lfo(int lfo) { return lfo == 0 ? lfo1_ : lfo2_; }
    const Lfo& lfo(int lfo) const { return lfo == 0 ? lfo1_ : lfo2_; }
    ModSlots& slots() { return slots_; }
    ModRoutes& oscRoutes(int osc) { return osc == 0 ? osc1Routes_ : osc2Routes_; }
    Portamento& portamento() { return portamento_; }

    // Host tempo in beats per minute, or -1 when the host gives none.
    void setTempo(float bpm);

    // Oscillators (osc 0 = OSC1, 1 = OSC2; route 0 = Mod A, 1 = Mod B).
    void setOscWaveform(int osc, int index);
    void setOsc1Sync(bool on);
    void setOscPulseWidth(int osc, float width);
    void setOscPitch(int osc, float semitones);
    void setOscDetune(int osc, float semitones);
    void setOscKeyFollow(int osc, float amount);
    void setOscModConnection(int osc, int route, int value);
    void setOscModDepth(int osc, int route, float depth);
    void setOscModVelocitySens(int osc, int route, float sens);
    void setOsc2FmDepth(float depth);

    // Mixer (channel 0 OSC1, 1 OSC2, 2 ring modulator, 3 noise) and noise colour in Hz.
    void setMixerLevel(int channel, float level);
    void setNoiseColor(float hz);

    // Filter.
    void setFilterOn(bool on);
    void setFilterType(int index);
    void setSaturationLevel(float value);  // normalised, mapped 0.1 .. 4 with its modulation
    void setSaturationCurve(int index);
    void setFilterCutoff(float note);
    void setFilterResonance(float resonance);
    void setFilterKeyFollow(float amount);
    void setFilterModConnection(int route, int value);
    void setFilterModDepth(int route, float depth);
    void setFilterModVelocitySens(int route, float sens);

    // Amplifier.
    void setAmpModConnection(int value);
    void setAmpLfoDepth(float depth);
    void setAmpVelocitySens(float sens);

    // Envelopes (env 0 = ENV1, 1 = ENV2): times and sustain as normalised values, curves as indices.
    void setEnvAttack(int env, float value);
    void setEnvAttackCurve(int env, int index);
    void setEnvDecay(int env, float value);
    void setEnvDecayCurve(int env, int index);
    void setEnvSustain(int env, float value);
    void setEnvRelease(int env, float value);

    // LFOs (lfo 0 = LFO1, 1 = LFO2).
    void setLfoWaveform(int lfo, int mask);
    void setLfoMode(int lfo, int bits);
    void setLfoSpeed(int lfo, float value);
    void setLfoPhase(int lfo, float value);

    // Effect and output.
    void setEffectOn(bool on);
    void setDelayTempoSync(bool on);
    void setEffectMix(float value);
    void setEffectDelayTime(float value);
    void setEffectDiffusion(float value);
    void setEffectFeedback(float gain);
    void setEffectFeedbackConnection(int value);
    void setEffectOverdrive(float drive);
    void setEffectLowCut(float hz);
    void setEffectHighCut(float hz);
    void setEffectModSpeed(float hz);
    void setEffectModDepth(float value);
    void setOutputVolume(float gain);

    // Voice and tuning.
    void setVoiceDetune(float depth);
    void setPortamentoTime(float seconds);
    void setMasterTune(float semitones);
    void setBendRange(float semitones);
    // After the voice count went down: slots reconnect their envelope and LFO sources.
    void refreshSlotSources();

    // Assignable modulation slots 0..7.
    void setSlotDepth(int slot, float depth);
    void setSlotSens(int slot, float sens);
    void setSlotSource(int slot, int index);
    void setSlotSensSource(int slot, int index);
    void setSlotDestination(int slot, int index);

private:
    struct MixerChannel {
        MixerChannel(ModuleGraph& graph, float level, PolyModule* modulation);
        Poly<ValueSource> level;
        Poly<LevelControl> control;
    };
    void pushOscOffset(int osc);
    // The constructor's wiring, in the order it runs.
    void wireOscillatorTargets();
    void wireMixerGains();
    void wireFilterTargets();
    void wireAmplifier();
    void collectControls();
    void buildAudioPath(const ExponentialMapping& delayTime);

    VoiceAllocator& allocator_;
    Poly<ValueSource> zero_;

    // The engine's units 1 to 11, in the order they are built.
    NoteSourceContainer<GateSource> gate_;
    NoteSourceContainer<TriggerSource> trigger_;
    Poly<LatestTriggerSource> latestTrigger_;
    NoteSourceContainer<VelocitySource> velocity_;
    Portamento portamento_;
    PitchUnit pitch_;
    ModSlots slots_;
    Envelope env1_;
    Envelope env2_;
    Lfo lfo1_;
    Lfo lfo2_;

    // Control targets of the oscillators.
    Poly<OscFrequency> osc1Frequency_;
    Poly<ValueSource> osc1WidthValue_;
    Poly<PulseWidthTarget> osc1PulseWidth_;
    ModRoutes osc1Routes_;
    Poly<OscFrequency> osc2Frequency_;
    Poly<ValueSource> osc2WidthValue_;
    Poly<PulseWidthTarget> osc2PulseWidth_;
    Poly<SmoothedValue> fmDepthValue_;
    Poly<FmDepthTarget> fmDepth_;
    ModRoutes osc2Routes_;
    std::array<float, 2> oscPitch_{};
    std::array<float, 2> oscDetune_{};

    // Mixer gains.
    std::array<std::unique_ptr<MixerChannel>, 4> mixer_;

    // Control targets of the filter.
    Poly<ValueSource> cutoffValue_;
    Poly<CutoffTarget> cutoff_;
    Poly<ValueSource> resonanceValue_;
    Poly<ResonanceTarget> resonance_;
    Poly<ValueSource> saturationValue_;
    Poly<SaturationLevel> saturation_;
    ModRoutes filterRoutes_;

    // The amplifier's gain: selected envelope and LFO, velocity curve, modulation.
    NoteSourceContainer<VelocityCurve> ampVelocity_;
    Poly<AmpGain> ampGain_;
    int ampConnection_ = 0;

    ControlTargets controls_;
    // Units 12 to 17: the voice's audio path and the effect after the voice sum.
    std::unique_ptr<OscillatorSection> osc1_;
    std::unique_ptr<OscillatorSection> osc2_;
    std::unique_ptr<MixerSection> mixerSection_;
    std::unique_ptr<FilterSection> filter_;
    std::unique_ptr<AmpSection> amp_;
    std::unique_ptr<EffectUnit> effect_;
};

}  // namespace tolvane
