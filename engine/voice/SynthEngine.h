// The synthesizer's sound engine: a fixed graph of units built once on the voice allocator (which is
// the module graph), wired once, and pulled one 64-sample block at a time from the effect unit's two
// outputs. A voice is the set of instances with the same voice index in every per-voice container.
//
// The setters receive values already mapped by the parameter table (seconds, semitones, option
// indices, gains); they are called between blocks, on the thread that renders.
#pragma once

#include <array>
#include <memory>

#include "params/Mappings.h"
#include "params/ParameterIds.h"

namespace tolvane {

class VoiceAllocator;

struct EngineMappings {
    const ExponentialMapping& attackTime;
    const ExponentialMapping& decayTime;
    const ExponentialMapping& rate;
    const ExponentialMapping& saturation;
    const ExponentialMapping& delayTime;
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
    VoiceAllocator& allocator_;
    std::array<float, kBlockSize> left_{};
    std::array<float, kBlockSize> right_{};
};

}  // namespace tolvane
