#include "params/Version1Program.h"

#include <cstring>

#include "dsp/Mappings.h"
#include "params/OptionLists.h"
#include "params/ParameterIds.h"

namespace tolvane {
namespace {

// The old layout mapped several times with curves where the current one is exponential, and the cutoff
// note over 24..136 instead of 24..152. A re-mapped value is the old value pushed through the old
// mapping and pulled back through the inverse of the new one, so that it sounds the same.
struct OldMappings {
    CurveMapping saturation{0.1f, 4.0f, 4.0f};
    CurveMapping attackTime{0.005f, 16.0f, 5.0f};
    CurveMapping decayTime{0.02f, 16.0f, 5.0f};
    CurveMapping rate{0.05f, 20.0f, 5.0f};
    CurveMapping delayTime{0.001f, 1.0f, 5.0f};
    CurveMapping overdrive{0.01f, 10.0f, 4.0f};
    CurveMapping cutFrequency{20.0f, 22000.0f, 5.0f};
    LinearMapping cutoffNote{24.0f, 136.0f};
};

// Built on first use: both sets of mappings need the fast maths tables, which are static data too.
const OldMappings& oldMappings() {
    static const OldMappings m;
    return m;
}

const ValueMappings& newMappings() {
    static const ValueMappings m;
    return m;
}

float option(int k, int n) { return optionValue(k, n); }

float remap(const ValueMapping& from, const ExponentialMapping& to, float v) {
    return to.inverse(from.map(v));
}

// Old oscillator waveform: 12 options ordered quality-major (q·4 + w, q = Low, Middle, High and
// w = Sine, Triangle, Sawtooth, Pulse); the current order is waveform-major (w·3 + q).
float oscillatorWaveform(float old) {
    int k = quantise(old, options::oscWaveforms.count());
    int quality = k / 4;
    int wave = k % 4;
    return option(wave * 3 + quality, options::oscWaveforms.count());
}

// Old LFO waveform: 12 options, six shapes (sine, triangle, sawtooth, square, sample-and-hold, random)
// run per voice, then the same six shared. The current LFO selects shapes as bits of a 64-option set and
// keeps the mode apart. The two stepped shapes ran at twice the old rate.
void lfo(float oldWave, float oldSpeed, float* out) {
    int k = quantise(oldWave, 12);
    int shape = k % 6;
    out[0] = option(1 << shape, options::lfoWaveforms.count());
    out[1] = option(k < 6 ? 0 : 1, options::lfoModes.count());
    float hz = oldMappings().rate.map(oldSpeed);
    if (shape >= 4) hz *= 2.0f;
    out[2] = newMappings().rate.inverse(hz);
}

// Old filter: 36 options. 0..11 filter off and 12..23 on, each as four types by three saturation
// curves; 24..35 four more types, on, with the saturation level at full.
void filter(float oldMode, float oldSaturation, float* out) {
    int m = quantise(oldMode, 36);
    bool on = m >= 12;
    int type;
    int curve;
    if (m < 24) {
        type = (m % 12) / 3;
        curve = m % 3;
    } else if (m < 33) {
        type = 4 + (m - 24) / 3;
        curve = 0;
    } else {
        type = 7;
        curve = 2;
    }
    out[0] = on ? 1.0f : 0.0f;
    out[1] = option(type, options::filterTypes.count());
    out[2] = m >= 24 ? 1.0f : remap(oldMappings().saturation, newMappings().saturation, oldSaturation);
    out[3] = option(curve, options::saturationCurves.count());
}

}  // namespace

ProgramRecord convertVersion1Program(const char (&name)[32], const float (&o)[kNumVersion1Values]) {
    using namespace param;
    using namespace v1;
    const OldMappings& was = oldMappings();
    const ValueMappings& now = newMappings();

    ProgramRecord r;
    std::memset(&r, 0, sizeof r);
    std::memcpy(r.name, name, sizeof r.name);
    float* n = r.values;
    // An old connection choice of 16 as the same choice out of a list of `count`.
    auto connection = [&o](int old, int count) { return option(quantise(o[old], 16), count); };

    // Oscillator 1
    n[Osc1Waveform] = oscillatorWaveform(o[OldOsc1Waveform]);
    n[Osc1Sync] = 0.0f;
    for (int i = 0; i < 4; ++i) n[Osc1PulseWidth + i] = o[OldOsc1PulseWidth + i];  // width, pitch, detune, key follow
    n[Osc1ModAConnection] = connection(OldOsc1ModAConnection, options::osc1Connections.count());
    n[Osc1ModADepth] = o[OldOsc1ModAConnection + 1];
    n[Osc1ModAVelocitySens] = o[OldOsc1ModAConnection + 2];
    n[Osc1ModBConnection] = connection(OldOsc1ModBConnection, options::osc1Connections.count());
    n[Osc1ModBDepth] = o[OldOsc1ModBConnection + 1];
    n[Osc1ModBVelocitySens] = o[OldOsc1ModBConnection + 2];

    // Oscillator 2: its modulation connections now choose among 32.
    n[Osc2Waveform] = oscillatorWaveform(o[OldOsc2Waveform]);
    n[Osc2FmDepth] = 0.0f;
    for (int i = 0; i < 4; ++i) n[Osc2PulseWidth + i] = o[OldOsc2PulseWidth + i];
    n[Osc2ModAConnection] = connection(OldOsc2ModAConnection, options::osc2Connections.count());
    n[Osc2ModADepth] = o[OldOsc2ModAConnection + 1];
    n[Osc2ModAVelocitySens] = o[OldOsc2ModAConnection + 2];
    n[Osc2ModBConnection] = connection(OldOsc2ModBConnection, options::osc2Connections.count());

    // The old second B-depth and B-sensitivity, the mixer and the noise follow in the same order.
    for (int i = 0; i < 7; ++i) n[Osc2ModBDepth + i] = o[OldOsc2ModBConnection + 1 + i];

    // Filter
    filter(o[OldFilterMode], o[OldFilterSaturation], &n[FilterOn]);
    float note = was.cutoffNote.map(o[OldFilterCutoff]);
    float cutoff = (note - 24.0f) / 128.0f;
    n[FilterCutoff] = cutoff < 0.0f ? 0.0f : (cutoff > 1.0f ? 1.0f : cutoff);
    n[FilterResonance] = o[OldFilterCutoff + 1];
    n[FilterKeyFollow] = o[OldFilterCutoff + 2];
    n[FilterModAConnection] = connection(OldFilterModAConnection, options::filterConnections.count());
    n[FilterModADepth] = o[OldFilterModAConnection + 1];
    n[FilterModAVelocitySens] = o[OldFilterModAConnection + 2];
    n[FilterModBConnection] = connection(OldFilterModBConnection, options::filterConnections.count());
    n[FilterModBDepth] = o[OldFilterModBConnection + 1];
    n[FilterModBVelocitySens] = o[OldFilterModBConnection + 2];

    // Amplifier
    const int ampCount = options::ampConnections.count();
    n[AmpModConnection] = option(quantise(o[OldAmpModConnection], ampCount), ampCount);
    n[AmpLfoDepth] = o[OldAmpModConnection + 1];
    n[AmpVelocitySens] = o[OldAmpModConnection + 2];

    // Envelopes: the decay curve did not exist and starts in its middle position.
    for (int env = 0; env < 2; ++env) {
        const int to = env == 0 ? Env1Attack : Env2Attack;
        const int from = env == 0 ? OldEnv1Attack : OldEnv2Attack;
        n[to] = remap(was.attackTime, now.attackTime, o[from]);
        n[to + 1] = o[from + 1];                                       // attack curve
        n[to + 2] = remap(was.decayTime, now.decayTime, o[from + 2]);  // decay
        n[to + 3] = option(1, options::decayCurves.count());
        n[to + 4] = o[from + 3];                                       // sustain
        n[to + 5] = remap(was.decayTime, now.decayTime, o[from + 4]);  // release
    }

    // LFOs, with their start phase at 0
    lfo(o[OldLfo1Waveform], o[OldLfo1Waveform + 1], &n[Lfo1Waveform]);
    n[Lfo1Phase] = 0.0f;
    lfo(o[OldLfo2Waveform], o[OldLfo2Waveform + 1], &n[Lfo2Waveform]);
    n[Lfo2Phase] = 0.0f;

    // Effect: always on, no tempo sync, feedback without a modulation connection.
    n[EffectOn] = 1.0f;
    n[DelayTempoSync] = 0.0f;
    n[EffectMix] = o[OldEffectMix];
    n[EffectDelayTime] = remap(was.delayTime, now.delayTime, o[OldEffectMix + 1]);
    n[EffectDiffusion] = o[OldEffectMix + 2];
    n[EffectFeedback] = o[OldEffectMix + 3];
    n[EffectFeedbackConnection] = 0.0f;
    n[EffectOverdrive] = remap(was.overdrive, now.overdrive, o[OldEffectMix + 4]);
    n[EffectLowCut] = remap(was.cutFrequency, now.cutFrequency, o[OldEffectMix + 5]);
    n[EffectHighCut] = remap(was.cutFrequency, now.cutFrequency, o[OldEffectMix + 6]);
    n[EffectModSpeed] = remap(was.rate, now.rate, o[OldEffectMix + 7]);
    n[EffectModDepth] = o[OldEffectMix + 8];
    n[NumberOfVoices] = o[OldNumberOfVoices];

    // Voices: the old voice mode held unison in bit 0 and legato in bit 1.
    int voiceMode = quantise(o[OldVoiceMode], 4);
    n[Unison] = (voiceMode & 1) ? 1.0f : 0.0f;
    n[Legato] = (voiceMode & 2) ? 1.0f : 0.0f;
    n[VoiceDetune] = 0.02f;
    n[Portamento] = o[OldPortamento];
    n[OutputVolume] = o[OldOutputVolume];

    // The assignable modulation slots did not exist: depth centred, nothing assigned.
    for (int slot = 0; slot < 8; ++slot) {
        n[ModDepth1 + slot] = 0.5f;
        n[ModSens1 + slot] = 0.0f;
        n[ModSource1 + slot] = option(0, options::modSources.count());
        n[ModSensSource1 + slot] = option(0, options::modSensSources.count());
        n[ModDestination1 + slot] = option(0, options::modDestinations.count());
    }

    n[MasterTune] = o[OldMasterTune];
    n[PitchBendRange] = option(2, options::bendRanges.count());
    n[MidiChannel] = o[OldMidiChannel];
    // The reserved values stay 0.0.
    return r;
}

}  // namespace tolvane
