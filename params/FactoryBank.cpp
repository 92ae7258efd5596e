#include "params/FactoryBank.h"

#include "params/InitProgram.h"
#include "params/SoundDesign.h"

namespace tolvane {
namespace {

constexpr const char* kDesignedNames[kNumDesignedPrograms] = {
    "Lavender Myst", "Blue Dragon", "Valhalla", "Spiral Nebula", "Aurora", "Warm Pulse Strings",
    "PWM Vivrato Strings", "Slow Sync Strings", "HP Sweeping Strings", "Harmonium", "Saw Unison Lead",
    "PWM Sync Lead", "Phat Lead", "V-Analog Lead", "Brass Solo", "Percussive Organ", "Perc Bright Organ 1",
    "Purple Hammond", "Noisy Attack Organ", "Polyphonic Pianika", "Hard FM Piano", "Mild E.Piano",
    "Warm Percussive Piano", "BP Percussive Clav", "Harpsichord", "Warm PWM Guitar", "Bright PWM Pluck",
    "Leslie Vibe", "Thumb Piano", "Chime", "Synth Brass", "Bright Octave Saw", "BubbleBrass", "Ethno Voice",
    "Husky Wind", "5th Brass", "Spacy Horn", "7th Orbit", "Warp Sixteen", "Clock-work", "Groovy House Bass",
    "303 Hardcore", "Reso Vel Bass", "Dirty Driven Bass", "FM Bass", "Fat Rubber Bass", "Sync Bass",
    "Fat Square", "Attackless Subbass", "Bass Drum Base", "House BD", "Noizy BD", "Noisy Snare",
    "Pseudoreal Tom", "Noiz Clap", "Closed Synhat", "Open Synhat", "Velo Tabla", "Ethnic Drum", "Katana Hit",
    "Magnetosphere", "Chaotic Conversation", "Quasar 3C 273", "Infinity",
};

constexpr char kInitName[] = "InitProg";

using namespace design;
using namespace param;

// "Lavender Myst", the sound the plug-in starts with: two detuned pulses through a 12 dB low-pass,
// slow envelopes, a gentle delay.
constexpr float kLavenderMyst[kNumProgramValues] = {
    /*   0 */ 0.875f, 0.0f, 0.358f, 0.51f, 0.497f, 0.5f, 0.03125f, 0.5f,
    /*   8 */ 0.5f, 0.65625f, 0.819f, 0.03f, 0.875f, 0.0f, 0.725f, 0.504f,
    /*  16 */ 0.503f, 0.5f, 0.015625f, 0.52f, 0.5f, 0.359375f, 0.777f, 0.004f,
    /*  24 */ 0.4f, 0.455f, 0.0f, 0.0f, 1.0f, 1.0f, 0.09375f, 0.609197f,
    /*  32 */ 0.833333f, 0.485f, 1.0f, 0.5f, 0.28125f, 0.869f, 0.5f, 0.96875f,
    /*  40 */ 0.583f, 0.263f, 0.875f, 0.5f, 0.7f, 0.843287f, 0.5f, 0.812469f,
    /*  48 */ 0.5f, 0.034f, 0.816072f, 0.530253f, 0.833f, 0.814316f, 0.5f, 0.837f,
    /*  56 */ 0.706018f, 0.023438f, 0.0625f, 0.592067f, 0.0f, 0.507812f, 0.0625f, 0.628071f,
    /*  64 */ 0.0f, 1.0f, 0.0f, 0.384f, 0.773885f, 0.243f, 0.89f, 0.75f,
    /*  72 */ 0.678296f, 0.376985f, 1.0f, 0.452495f, 0.08f, 0.117188f, 0.0f, 0.0f,
    /*  80 */ 0.03f, 0.0f, 0.683f, 0.459f, 0.541f, 0.5f, 0.5f, 0.5f,
    /*  88 */ 0.5f, 0.5f, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /*  96 */ 0.0f, 0.0f, 0.0f, 0.01087f, 0.01087f, 0.003623f, 0.003623f, 0.003623f,
    /* 104 */ 0.003623f, 0.003623f, 0.003623f, 0.00365f, 0.00365f, 0.00365f, 0.00365f, 0.00365f,
    /* 112 */ 0.00365f, 0.00365f, 0.00365f, 0.096154f, 0.211538f, 0.019231f, 0.019231f, 0.019231f,
    /* 120 */ 0.019231f, 0.019231f, 0.019231f, 0.5f, 0.1f, 0.029412f, 0.0f, 0.0f,
    /* 128 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 136 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
};

// ---- pads -------------------------------------------------------------------------------------------

// Blue Dragon: dark, big sawtooth pad an octave deep that opens slowly and breathes.
constexpr Patch blueDragon() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2Detune] = cents(10);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.8);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(700);  // about 350 Hz at C3
    p[FilterResonance] = 0.25f;
    p[FilterSaturationLevel] = saturation(0.9);
    p[FilterSaturationCurve] = clipCurve(SoftClip);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(26);
    p[FilterModAVelocitySens] = 0.3f;
    p[FilterModBConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModBDepth] = cutoffDepth(4);
    p[Lfo1Speed] = lfoHz(0.15);
    env1(p, 0.4, 2.0, 0.85, 2.0);
    env2(p, 2.5, 2.0, 0.6, 2.0);
    chorus(p, 12, 0.3, 0.3, 0.5);
    p[EffectHighCut] = cutHz(4000);
    p[OutputVolume] = level(1.60);
    return p;
}

// Valhalla: a choir of detuned sawtooths an octave deep, a slow breathing filter and a long
// stereo echo.
constexpr Patch valhalla() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Detune] = cents(-7);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2Detune] = cents(7);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.7);
    p[FilterCutoff] = cutoffHz(1900);  // about 1.5 kHz at C4
    p[FilterResonance] = 0.2f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(5);
    p[Lfo1Speed] = lfoHz(0.2);
    env1(p, 0.8, 2.0, 0.85, 2.5);
    echo(p, 0.45, 0.5, 0.33, true, 0.7);
    p[EffectHighCut] = cutHz(7000);
    p[OutputVolume] = level(0.70);
    return p;
}

// Spiral Nebula: pulse and sawtooth with a trace of ring shimmer; each voice's filter circles on
// its own slow LFO while the pulse width wanders.
constexpr Patch spiralNebula() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.4f;
    p[Osc1ModAConnection] = osc1Route(Lfo2, ToPwm);
    p[Osc1ModADepth] = depth(0.3);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(6);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.7);
    p[MixerRingLevel] = level(0.25);
    p[FilterCutoff] = cutoffHz(2400);
    p[FilterResonance] = 0.35f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(14);
    p[Lfo1Waveform] = lfoWave(LfoTriangle);
    p[Lfo1Speed] = lfoHz(0.35);
    p[Lfo2Waveform] = lfoWave(LfoSine);
    p[Lfo2Speed] = lfoHz(0.25);
    env1(p, 1.0, 2.0, 0.9, 3.0);
    echo(p, 0.4, 0.45, 0.3, true, 0.9);
    p[EffectModDepth] = 0.4f;
    p[EffectModSpeed] = modSpeedHz(0.3);
    p[OutputVolume] = level(0.46);
    return p;
}

// Aurora: bright sawtooths with the second an octave up, a breath of white noise, the bottom thinned
// by a gentle high-pass; a few cents of slow pitch wander and a wide echo.
constexpr Patch aurora() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(12);
    p[Osc2Detune] = cents(5);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[MixerNoiseLevel] = level(0.12);
    p[FilterType] = filter(HP6);
    p[FilterCutoff] = cutoffHz(320);
    p[FilterSaturationLevel] = saturation(1.5);
    p.slot(1, SrcLfo1, DstPitch2, slotSemitones(0.05));
    p[Lfo1Speed] = lfoHz(0.3);
    env1(p, 0.7, 2.0, 0.8, 2.5);
    echo(p, 0.3, 0.35, 0.3, true, 0.9);
    p[EffectModDepth] = 0.35f;
    p[EffectModSpeed] = modSpeedHz(0.6);
    p[OutputVolume] = level(0.42);
    return p;
}

// ---- strings ----------------------------------------------------------------------------------------

// Warm Pulse Strings: two slightly detuned pulses of unequal width under a 24 dB low-pass, slow
// pulse-width movement, chorus.
constexpr Patch warmPulseStrings() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.35f;
    p[Osc1ModAConnection] = osc1Route(Lfo1, ToPwm);
    p[Osc1ModADepth] = depth(0.2);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2PulseWidth] = 0.4f;
    p[Osc2Detune] = cents(7);
    p[Osc2ModAConnection] = osc2Route(Lfo1, ToPwm);
    p[Osc2ModADepth] = depth(0.15);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.5);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(2500);  // about 2 kHz at C4
    p[FilterResonance] = 0.1f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[Lfo1Speed] = lfoHz(0.7);
    env1(p, 0.22, 1.0, 0.9, 0.65);
    chorus(p, 12, 0.3, 0.3);
    p[OutputVolume] = level(0.34);
    return p;
}

// PWM Vivrato Strings: brighter than Warm Pulse Strings; the widths of both pulses swing against each
// other and a vibrato fades in.
constexpr Patch pwmVibratoStrings() {
    Patch p = warmPulseStrings();
    p[FilterCutoff] = cutoffHz(3500);
    p[Osc1ModADepth] = depth(0.3);
    p[Osc2ModADepth] = depth(-0.3);
    p[Lfo1Speed] = lfoHz(1.5);
    p[Lfo2Speed] = lfoHz(5.5);
    p.slot(1, SrcLfo2, DstPitch1, slotSemitones(0.15), SrcEnv2, 1.0);
    p.slot(2, SrcLfo2, DstPitch2, slotSemitones(0.15), SrcEnv2, 1.0);
    env2(p, 0.7, 1.0, 1.0, 0.5);  // delays the vibrato
    p[OutputVolume] = level(0.35);
    return p;
}

// Slow Sync Strings: a sawtooth synced to the second oscillator, its own pitch swept slowly up and
// down an octave either side of +12, so the timbre travels through the sync formants.
constexpr Patch slowSyncStrings() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Sync] = kOn;
    p[Osc1Pitch] = semitones(12);
    p[Osc1ModAConnection] = osc1Route(Lfo1, ToPitch);
    p[Osc1ModADepth] = pitchDepth(7);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(5);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.35);
    p[FilterCutoff] = cutoffHz(3500);
    p[FilterSaturationLevel] = saturation(1.5);
    p[Lfo1Waveform] = lfoWave(LfoTriangle);
    p[Lfo1Mode] = lfoMode(Poly | Trigger);
    p[Lfo1Speed] = lfoHz(0.3);
    env1(p, 0.3, 1.0, 0.9, 0.8);
    chorus(p, 14, 0.3, 0.3);
    p[OutputVolume] = level(0.86);
    return p;
}

// HP Sweeping Strings: detuned sawtooths through a resonant high-pass that every note sweeps up from
// below the key and back.
constexpr Patch hpSweepingStrings() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Detune] = cents(-4);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(4);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(HP12);
    p[FilterCutoff] = cutoffHz(300);  // a little below the key
    p[FilterResonance] = 0.35f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(24);
    p[Lfo1Waveform] = lfoWave(LfoTriangle);
    p[Lfo1Mode] = lfoMode(Poly | Trigger);
    p[Lfo1Speed] = lfoHz(0.25);
    p[Lfo1Phase] = 0.25f;  // starts in the middle of the rise
    env1(p, 0.3, 1.0, 0.9, 0.7);
    chorus(p, 12, 0.3, 0.3);
    p[OutputVolume] = level(0.56);
    return p;
}

// ---- organs -----------------------------------------------------------------------------------------

// Harmonium: a narrow pulse reed with a sawtooth an octave up, a trace of air, a slight pumping
// tremolo and a small room.
constexpr Patch harmonium() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.28f;
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(12);
    p[MixerOsc1Level] = level(0.9);
    p[MixerOsc2Level] = level(0.35);
    p[MixerNoiseLevel] = level(0.05);
    p[NoiseColor] = noiseColorHz(3000);
    p[FilterCutoff] = cutoffHz(3200);  // about 2.5 kHz at C4
    p[FilterSaturationLevel] = saturation(1.5);
    p[AmpLfoDepth] = depth(0.08);
    p[Lfo1Speed] = lfoHz(4.5);
    env1(p, 0.045, 0.5, 1.0, 0.15);
    echo(p, 0.06, 0.2, 0.12, true, 0.6);
    p[OutputVolume] = level(0.32);
    return p;
}

// Percussive Organ: sine drawbars at 8' and 4'; at each key the 4' is pushed and the ring modulator
// adds 8' and 2 2/3' (difference and sum of 8' and 4'), a percussion that ENV2 lets die in a third of
// a second.
constexpr Patch percussiveOrgan() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(12);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.6);
    p.slot(1, SrcEnv2, DstMixRing, 1.0);
    p.slot(2, SrcEnv2, DstMix2, 0.8);
    p[FilterOn] = kOff;
    env1(p, 0.003, 0.1, 1.0, 0.08);
    env2(p, 0.002, 0.3, 0.0, 0.05);
    p[Env2DecayCurve] = decayCurve(FastDecay);
    chorus(p, 5, 0.45, 0.35, 6.0);
    p[OutputVolume] = level(0.31);
    return p;
}

// Perc Bright Organ 1: square and a pulse at +19 (the 2 2/3' drawbar) through an open filter; the
// upper drawbar is pushed at each key and falls back (percussion).
constexpr Patch percBrightOrgan1() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(19);
    p[Osc2PulseWidth] = 0.3f;
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.25);
    p.slot(1, SrcEnv2, DstMix2, 0.9);
    p[FilterCutoff] = cutoffHz(9000);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 0.003, 0.1, 1.0, 0.08);
    env2(p, 0.002, 0.25, 0.0, 0.05);
    p[Env2DecayCurve] = decayCurve(FastDecay);
    chorus(p, 6, 0.35, 0.3, 5.5);
    p[OutputVolume] = level(0.26);
    return p;
}

// Purple Hammond: sines at 8' and 4', the ring modulator adding 8' and 2 2/3', a key click of
// bright noise under 10 ms, and a fast, wide rotary-like chorus.
constexpr Patch purpleHammond() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(12);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.7);
    p[MixerRingLevel] = level(1.6);
    p[NoiseColor] = noiseColorHz(6000);
    p.slot(1, SrcEnv2, DstMixNoise, 0.5);
    p[FilterOn] = kOff;
    env1(p, 0.003, 0.1, 1.0, 0.06);
    env2(p, 0.002, 0.008, 0.0, 0.005);
    chorus(p, 4, 0.5, 0.4, 6.2);
    p[EffectDiffusion] = 0.95f;
    p[OutputVolume] = level(0.33);
    return p;
}

// Noisy Attack Organ: 8' and 2 2/3' sines, the ring adding 4' and 2'; a breath of white noise at
// each key that ENV2 blows out within 80 ms.
constexpr Patch noisyAttackOrgan() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(19);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.5);
    p[MixerRingLevel] = level(1.2);
    p[MixerNoiseLevel] = level(0.03);
    p.slot(1, SrcEnv2, DstMixNoise, 0.8);
    p[FilterCutoff] = cutoffHz(9000);
    p[FilterSaturationLevel] = saturation(2.0);
    env1(p, 0.003, 0.1, 1.0, 0.06);
    env2(p, 0.002, 0.08, 0.0, 0.03);
    chorus(p, 7, 0.3, 0.3, 1.2);
    p[OutputVolume] = level(0.29);
    return p;
}

// Polyphonic Pianika: a 30 % pulse reed with a quiet sawtooth, a mid-range low-pass, breath and a
// little vibrato.
constexpr Patch polyphonicPianika() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.3f;
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.4);
    p[MixerNoiseLevel] = level(0.07);
    p[NoiseColor] = noiseColorHz(3000);
    p[FilterCutoff] = cutoffHz(2200);
    p[FilterResonance] = 0.15f;
    p[FilterSaturationLevel] = saturation(1.5);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.06));
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.06));
    p[Lfo1Speed] = lfoHz(5.0);
    env1(p, 0.03, 0.5, 1.0, 0.1);
    echo(p, 0.05, 0.25, 0.15, true, 0.5);
    p[OutputVolume] = level(0.41);
    return p;
}

// ---- leads ------------------------------------------------------------------------------------------

// Saw Unison Lead: eight unison voices of two sawtooths, each voice drifting up to 15 cents; a 24 dB
// low-pass that dips quickly after the attack; vibrato from the modulation wheel; eighth echoes.
constexpr Patch sawUnisonLead() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc1Detune] = cents(-4);
    p[Osc2Detune] = cents(4);
    p[MixerOsc1Level] = level(0.6);
    p[MixerOsc2Level] = level(0.6);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffNote(88);
    p[FilterResonance] = 0.2f;
    p[FilterSaturationLevel] = saturation(2.0);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(24);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.3), ModWheel, 1.0);
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.3), ModWheel, 1.0);
    p[Lfo1Speed] = lfoHz(5.5);
    p[NumberOfVoices] = voices(8);
    p[Unison] = kOn;
    p[VoiceDetune] = voiceDetuneCents(15);
    env1(p, 0.005, 0.5, 0.9, 0.2);
    env2(p, 0.002, 0.3, 0.5, 0.2);
    syncedEcho(p, DelayEighth, 0.3, 0.2, true, 0.4);
    p[OutputVolume] = level(0.18);
    return p;
}

// PWM Sync Lead: a pulse hard-synced to the second oscillator; each note starts an octave and a
// fourth up and sweeps down to a fourth in a third of a second, its width wobbling.
constexpr Patch pwmSyncLead() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1Sync] = kOn;
    p[Osc1Pitch] = semitones(5);
    p[Osc1PulseWidth] = 0.4f;
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(12);
    p[Osc1ModBConnection] = osc1Route(Lfo1, ToPwm);
    p[Osc1ModBDepth] = depth(0.3);
    p[Osc2Waveform] = wave(Sawtooth);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.35);
    p[FilterCutoff] = cutoffHz(5000);
    p[FilterSaturationLevel] = saturation(1.5);
    p[Lfo1Speed] = lfoHz(4.0);
    monoLegato(p, 0.065);
    env1(p, 0.003, 0.5, 1.0, 0.15);
    env2(p, 0.002, 0.3, 0.0, 0.2);
    echo(p, 0.3, 0.25, 0.15, true, 0.5);
    p[OutputVolume] = level(0.33);
    return p;
}

// Phat Lead: sawtooths an octave apart and 12 cents off, a driven 24 dB low-pass snapping shut after
// the attack, glide.
constexpr Patch phatLead() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2Detune] = cents(12);
    p[MixerOsc1Level] = level(0.9);
    p[MixerOsc2Level] = level(0.8);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(1200);
    p[FilterResonance] = 0.2f;
    p[FilterSaturationLevel] = saturation(0.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(30);
    monoLegato(p, 0.06);
    env1(p, 0.003, 0.5, 1.0, 0.15);
    env2(p, 0.002, 0.25, 0.35, 0.15);
    echo(p, 0.35, 0.3, 0.2, true, 0.5);
    p[OutputVolume] = level(0.65);
    return p;
}

// V-Analog Lead: sawtooth and square through a resonant 24 dB low-pass; the filter starts bright and
// settles while a vibrato fades in (ENV2 rises slowly and drives both).
constexpr Patch vAnalogLead() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Detune] = cents(5);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(3500);
    p[FilterResonance] = 0.45f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(-18);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.15), SrcEnv2, 1.0);
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.15), SrcEnv2, 1.0);
    p[Lfo1Speed] = lfoHz(5.0);
    monoLegato(p, 0.0);
    env1(p, 0.003, 0.3, 0.9, 0.2);
    env2(p, 0.6, 1.0, 1.0, 0.3);
    echo(p, 0.3, 0.25, 0.15, true, 0.5);
    p[OutputVolume] = level(0.56);
    return p;
}

// ---- brass ------------------------------------------------------------------------------------------

// Brass Solo: two sawtooths; the low-pass opens with the attack (harder with velocity) and settles
// as ENV2 rises; a slight scoop into the note and a delayed vibrato.
constexpr Patch brassSolo() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Detune] = cents(-27);
    p[Osc1ModAConnection] = osc1Route(Env1, ToPitch);  // scoop: 27 cents flat to in tune
    p[Osc1ModADepth] = pitchDepth(0.3);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(-19);
    p[Osc2ModAConnection] = osc2Route(Env1, ToPitch);
    p[Osc2ModADepth] = pitchDepth(0.3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(500);
    p[FilterResonance] = 0.1f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(40);
    p[FilterModAVelocitySens] = 0.5f;
    p[FilterModBConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModBDepth] = cutoffDepth(-14);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.12), SrcEnv2, 1.0);
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.12), SrcEnv2, 1.0);
    p[Lfo1Speed] = lfoHz(5.0);
    monoLegato(p, 0.04);
    env1(p, 0.05, 0.5, 0.9, 0.2);
    env2(p, 0.5, 1.0, 1.0, 0.3);
    echo(p, 0.08, 0.2, 0.12, true, 0.6);
    p[OutputVolume] = level(0.47);
    return p;
}

// ---- keys and plucks --------------------------------------------------------------------------------

// Hard FM Piano: a sine carrier phase-modulated by a sine at the same pitch; the index is high at the
// strike (more with velocity) and dies within half a second, the tone in two to three seconds.
constexpr Patch hardFmPiano() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2FmDepth] = 0.015f;
    p[Osc2ModAConnection] = osc2Route(Env2, ToFm);
    p[Osc2ModADepth] = depth(0.11);
    p[Osc2ModAVelocitySens] = 0.5f;
    p[MixerOsc1Level] = level(0.0);
    p[MixerOsc2Level] = level(1.0);
    p[FilterOn] = kOff;
    p[AmpVelocitySens] = 0.4f;
    env1(p, 0.002, 3.0, 0.0, 0.3);
    env2(p, 0.002, 0.45, 0.0, 0.3);
    p[Env2DecayCurve] = decayCurve(FastDecay);
    chorus(p, 8, 0.25, 0.2);
    p[OutputVolume] = level(0.32);
    return p;
}

// Mild E.Piano: a sine carrier with a low FM index from a sine at the same pitch: a gentle tine bark
// that fades in half a second and grows with velocity.
constexpr Patch mildEPiano() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2FmDepth] = 0.005f;
    p[Osc2ModAConnection] = osc2Route(Env2, ToFm);
    p[Osc2ModADepth] = depth(0.03);
    p[Osc2ModAVelocitySens] = 0.7f;
    p[MixerOsc1Level] = level(0.0);
    p[MixerOsc2Level] = level(1.0);
    p[FilterOn] = kOff;
    p[AmpVelocitySens] = 0.5f;
    env1(p, 0.002, 3.5, 0.0, 0.3);
    env2(p, 0.002, 0.4, 0.0, 0.3);
    chorus(p, 8, 0.35, 0.25, 1.0);
    p[OutputVolume] = level(0.30);
    return p;
}

// Warm Percussive Piano: sawtooth and a triangle an octave up through a low-pass that closes over
// about a second (opened further by velocity).
constexpr Patch warmPercussivePiano() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Triangle);
    p[Osc2Pitch] = semitones(12);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.5);
    p[FilterCutoff] = cutoffHz(750);
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(36);
    p[FilterModAVelocitySens] = 0.6f;
    env1(p, 0.002, 2.5, 0.0, 0.3);
    env2(p, 0.002, 1.0, 0.1, 0.3);
    echo(p, 0.12, 0.2, 0.12, true, 0.5);
    p[OutputVolume] = level(0.41);
    return p;
}

// BP Percussive Clav: a narrow pulse through a resonant band-pass that snaps down from high at each
// strike (higher with velocity); a short stereo slap.
constexpr Patch bpPercussiveClav() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.2f;
    p[MixerOsc1Level] = level(1.0);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(1000);
    p[FilterResonance] = 0.5f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(24);
    p[FilterModAVelocitySens] = 0.6f;
    env1(p, 0.002, 0.8, 0.05, 0.07);
    env2(p, 0.002, 0.15, 0.0, 0.07);
    echo(p, 0.025, 0.0, 0.2, false, 1.0);
    p[OutputVolume] = level(0.42);
    return p;
}

// Harpsichord: sawtooth with a thin pulse an octave up, the bottom thinned by a high-pass, a fast
// continuous decay and a small room.
constexpr Patch harpsichord() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(12);
    p[Osc2PulseWidth] = 0.3f;
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterType] = filter(HP6);
    p[FilterCutoff] = cutoffHz(400);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 0.002, 1.5, 0.0, 0.25);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    echo(p, 0.07, 0.2, 0.12, true, 0.5);
    p[OutputVolume] = level(0.45);
    return p;
}

// Warm PWM Guitar: one slowly modulated pulse through a low-pass plucked open by ENV2.
constexpr Patch warmPwmGuitar() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.35f;
    p[Osc1ModAConnection] = osc1Route(Lfo1, ToPwm);
    p[Osc1ModADepth] = depth(0.2);
    p[MixerOsc1Level] = level(0.8);
    p[FilterCutoff] = cutoffHz(630);
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(36);
    p[Lfo1Mode] = lfoMode(Poly | Trigger);  // every note starts at the same width
    p[Lfo1Speed] = lfoHz(0.8);
    env1(p, 0.002, 1.0, 0.0, 0.3);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    env2(p, 0.002, 0.3, 0.0, 0.3);
    chorus(p, 10, 0.3, 0.25);
    p[OutputVolume] = level(0.56);
    return p;
}

// Bright PWM Pluck: two pulses an octave apart whose widths swing against each other, a filter snap, synced
// cross-feedback eighths.
constexpr Patch brightPwmPluck() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1PulseWidth] = 0.4f;
    p[Osc1ModAConnection] = osc1Route(Lfo1, ToPwm);
    p[Osc1ModADepth] = depth(0.3);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2PulseWidth] = 0.4f;
    p[Osc2Pitch] = semitones(12);
    p[Osc2ModAConnection] = osc2Route(Lfo1, ToPwm);
    p[Osc2ModADepth] = depth(-0.3);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.5);
    p[FilterCutoff] = cutoffHz(2500);
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(30);
    p[Lfo1Mode] = lfoMode(Poly | Trigger);  // every note starts at the same width
    p[Lfo1Speed] = lfoHz(3.0);
    env1(p, 0.002, 0.6, 0.0, 0.3);
    env2(p, 0.002, 0.15, 0.0, 0.3);
    syncedEcho(p, DelayEighth, 0.35, 0.2, true, 0.5);
    p[OutputVolume] = level(0.45);
    return p;
}

// Leslie Vibe: a sine bar with a partial two octaves up that dies sooner, a rotating-speaker
// tremolo and a chorus turning at the same speed.
constexpr Patch leslieVibe() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(24);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.0);
    p.slot(1, SrcEnv2, DstMix2, 0.5);
    p[FilterOn] = kOff;
    p[AmpLfoDepth] = depth(0.35);
    p[Lfo1Mode] = lfoMode(Mono);
    p[Lfo1Speed] = lfoHz(5.5);
    env1(p, 0.002, 2.5, 0.0, 0.5);
    env2(p, 0.002, 0.6, 0.0, 0.3);
    chorus(p, 6, 0.3, 0.3, 5.5);
    p[EffectDiffusion] = 1.0f;
    p[OutputVolume] = level(0.39);
    return p;
}

// Thumb Piano: a sine tine with an overtone 27 semitones and 35 cents up (not a harmonic) that dies
// fast, a tick of noise, a short echo.
constexpr Patch thumbPiano() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(27);
    p[Osc2Detune] = cents(35);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.0);
    p.slot(1, SrcEnv2, DstMix2, 0.6);
    p.slot(2, SrcEnv2, DstMixNoise, 0.06);
    p[NoiseColor] = noiseColorHz(4000);
    p[FilterOn] = kOff;
    env1(p, 0.002, 1.2, 0.0, 0.3);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    env2(p, 0.002, 0.2, 0.0, 0.1);
    p[Env2DecayCurve] = decayCurve(FastDecay);
    echo(p, 0.15, 0.2, 0.15, true, 0.5);
    p[OutputVolume] = level(0.41);
    return p;
}

// Chime: a sine ring-modulated by a sine 21 semitones and 60 cents up (partials at their sum and
// difference, not harmonics) over the plain sine, ringing for seconds.
constexpr Patch chime() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(21);
    p[Osc2Detune] = cents(60);
    p[MixerOsc1Level] = level(0.6);
    p[MixerOsc2Level] = level(0.15);
    p[MixerRingLevel] = level(1.5);
    p[FilterOn] = kOff;
    env1(p, 0.002, 4.0, 0.0, 2.0);
    p[Env1DecayCurve] = decayCurve(LinearDecay);
    echo(p, 0.3, 0.3, 0.2, true, 0.6);
    p[OutputVolume] = level(0.45);
    return p;
}

// ---- brass and friends ------------------------------------------------------------------------------

// Synth Brass: two sawtooths 6 cents apart; a 24 dB low-pass swells open with ENV2 and settles
// bright enough to keep the fundamental; velocity opens it further.
constexpr Patch synthBrass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(6);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(700);
    p[FilterResonance] = 0.1f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(40);
    p[FilterModAVelocitySens] = 0.5f;
    env1(p, 0.03, 0.3, 0.9, 0.25);
    env2(p, 0.07, 0.5, 0.6, 0.25);
    chorus(p, 10, 0.3, 0.25);
    p[OutputVolume] = level(0.47);
    return p;
}

// Bright Octave Saw: sawtooths at the key and an octave up, filter open, a light echo.
constexpr Patch brightOctaveSaw() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(12);
    p[Osc2Detune] = cents(3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterSaturationLevel] = saturation(2.0);
    env1(p, 0.003, 0.5, 1.0, 0.25);
    echo(p, 0.25, 0.25, 0.15, true, 0.5);
    p[OutputVolume] = level(0.36);
    return p;
}

// BubbleBrass: sawtooths through a resonant 24 dB low-pass swept open at the attack and bubbling on a
// fast random-step LFO.
constexpr Patch bubbleBrass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Detune] = cents(7);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.8);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(1000);
    p[FilterResonance] = 0.6f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(40);
    p[FilterModBConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModBDepth] = cutoffDepth(6);
    p[Lfo1Waveform] = lfoWave(LfoSampleHold);
    p[Lfo1Speed] = lfoHz(8.0);
    env1(p, 0.03, 0.5, 0.9, 0.2);
    env2(p, 0.03, 0.4, 0.2, 0.2);
    echo(p, 0.12, 0.25, 0.12, true, 0.6);
    p[OutputVolume] = level(0.54);
    return p;
}

// Ethno Voice: sawtooth and a pulse an octave up through a resonant band-pass fixed in the vowel region, breath,
// vibrato, glide.
constexpr Patch ethnoVoice() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(12);
    p[Osc2PulseWidth] = 0.3f;
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.5);
    p[MixerNoiseLevel] = level(0.08);
    p[NoiseColor] = noiseColorHz(3000);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(900);
    p[FilterKeyFollow] = keyFollow(30);
    p[FilterResonance] = 0.55f;
    p[FilterSaturationLevel] = saturation(1.5);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.2));
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.2));
    p[Lfo1Speed] = lfoHz(5.0);
    monoLegato(p, 0.08);
    env1(p, 0.06, 0.5, 1.0, 0.3);
    echo(p, 0.35, 0.3, 0.2, true, 0.6);
    p[OutputVolume] = level(0.19);
    return p;
}

// Husky Wind: a triangle with a quiet sine an octave up, a lot of mid-high breath, a delayed
// vibrato and a small room.
constexpr Patch huskyWind() {
    Patch p;
    p[Osc1Waveform] = wave(Triangle);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(12);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.25);
    p[MixerNoiseLevel] = level(0.4);
    p[NoiseColor] = noiseColorHz(5000);
    p[FilterCutoff] = cutoffHz(6000);
    p[FilterSaturationLevel] = saturation(2.0);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.12), SrcEnv2, 1.0);
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.12), SrcEnv2, 1.0);
    p[Lfo1Speed] = lfoHz(5.0);
    monoLegato(p, 0.05);
    env1(p, 0.07, 0.5, 0.9, 0.25);
    env2(p, 0.6, 1.0, 1.0, 0.3);
    echo(p, 0.09, 0.25, 0.15, true, 0.6);
    p[OutputVolume] = level(0.37);
    return p;
}

// 5th Brass: sawtooths a fifth apart through a 24 dB low-pass that ENV2 opens.
constexpr Patch fifthBrass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(7);
    p[Osc2Detune] = cents(3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(700);
    p[FilterResonance] = 0.1f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(36);
    env1(p, 0.04, 0.5, 0.9, 0.2);
    env2(p, 0.06, 0.6, 0.5, 0.2);
    chorus(p, 10, 0.25, 0.2);
    p[OutputVolume] = level(0.66);
    return p;
}

// Spacy Horn: sawtooth and pulse under a soft low-pass, a slow swell, gentle vibrato, a long wide
// echo.
constexpr Patch spacyHorn() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2PulseWidth] = 0.45f;
    p[Osc2Detune] = cents(5);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.6);
    p[FilterCutoff] = cutoffHz(1500);
    p[FilterSaturationLevel] = saturation(1.5);
    p.slot(1, SrcLfo1, DstPitch1, slotSemitones(0.08));
    p.slot(2, SrcLfo1, DstPitch2, slotSemitones(0.08));
    p[Lfo1Speed] = lfoHz(4.5);
    env1(p, 0.12, 0.5, 0.9, 0.4);
    echo(p, 0.4, 0.45, 0.3, true, 0.9);
    p[OutputVolume] = level(0.42);
    return p;
}

// ---- textures ---------------------------------------------------------------------------------------

// 7th Orbit: sawtooth with a pulse a natural minor seventh up, the filter and the pulse width circling on
// slow LFOs, echoes orbiting between the sides.
constexpr Patch seventhOrbit() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(10);
    p[Osc2Detune] = cents(-31);  // the natural seventh, 7/4: the pair stays periodic at the key    p[Osc2PulseWidth] = 0.4f;
    p[Osc2ModAConnection] = osc2Route(Lfo2, ToPwm);
    p[Osc2ModADepth] = depth(0.3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.25);
    p[FilterCutoff] = cutoffHz(2200);
    p[FilterResonance] = 0.25f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(10);
    p[Lfo1Waveform] = lfoWave(LfoTriangle);
    p[Lfo1Speed] = lfoHz(0.25);
    p[Lfo2Speed] = lfoHz(0.4);
    env1(p, 0.2, 1.0, 0.8, 1.5);
    echo(p, 0.35, 0.5, 0.35, true, 0.9);
    p[EffectModDepth] = 0.5f;
    p[EffectModSpeed] = modSpeedHz(0.2);
    p[OutputVolume] = level(0.89);
    return p;
}

// Warp Sixteen: octave sawtooths through a resonant 24 dB low-pass, chopped into sixteenths by a
// square LFO on the amplifier and the cutoff; each note starts with a fast downward pitch warp.
constexpr Patch warpSixteen() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(12);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(12);
    p[Osc2ModAConnection] = osc2Route(Env2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(12);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.5);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(1500);
    p[FilterResonance] = 0.5f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(12);
    p[AmpLfoDepth] = depth(0.9);
    p[Lfo1Waveform] = lfoWave(LfoSquare);
    p[Lfo1Mode] = lfoMode(Mono | Trigger | TempoSync);
    p[Lfo1Speed] = lfoSync(LfoSixteenth);
    env1(p, 0.003, 0.5, 1.0, 0.3);
    env2(p, 0.002, 0.12, 0.0, 0.1);
    syncedEcho(p, DelaySixteenth, 0.35, 0.25, true, 0.4);
    p[OutputVolume] = level(0.59);
    return p;
}

// Clock-work: two high pulses ring-modulated into a metallic tick through a band-pass, a trace of
// noise, echoed on dotted eighths.
constexpr Patch clockWork() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1Pitch] = semitones(12);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(19);
    p[Osc2Detune] = cents(40);
    p[MixerOsc1Level] = level(0.5);
    p[MixerOsc2Level] = level(0.0);
    p[MixerRingLevel] = level(2.0);
    p[MixerNoiseLevel] = level(0.15);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(2500);
    p[FilterResonance] = 0.5f;
    p[FilterSaturationLevel] = saturation(0.5);
    env1(p, 0.002, 0.1, 0.0, 0.1);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    syncedEcho(p, DelayDottedEighth, 0.25, 0.3, true, 0.5);
    p[OutputVolume] = level(2.00);
    return p;
}

// ---- basses -----------------------------------------------------------------------------------------

// Groovy House Bass: sawtooth over a sine an octave down, a 24 dB low-pass plucked by ENV2, dry.
constexpr Patch groovyHouseBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(-12);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.8);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(1000);  // about 200 Hz at C2
    p[FilterResonance] = 0.2f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(30);
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 0.5, 0.6, 0.1);
    env2(p, 0.002, 0.25, 0.0, 0.1);
    p[EffectMix] = 0.0f;
    p[OutputVolume] = level(0.53);
    return p;
}

// 303 Hardcore: one sawtooth through a very resonant 24 dB low-pass that each note sweeps down (an
// accent with velocity), driven in the filter and again in the effect's overdrive; slides.
constexpr Patch hardcore303() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[MixerOsc1Level] = level(1.0);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(900);
    p[FilterResonance] = 0.72f;
    p[FilterSaturationLevel] = saturation(0.4);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(44);
    p[FilterModAVelocitySens] = 0.6f;
    monoLegato(p, 0.08);
    env1(p, 0.002, 0.5, 1.0, 0.08);
    env2(p, 0.002, 0.3, 0.0, 0.1);
    overdriveInsert(p, 3.0);
    p[OutputVolume] = level(0.37);
    return p;
}

// Reso Vel Bass: sawtooth and a pulse an octave down through a resonant 24 dB low-pass closed low; ENV2 opens it by an
// amount that follows velocity, so soft notes stay dark and hard ones squelch.
constexpr Patch resoVelBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2PulseWidth] = 0.4f;
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.5);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(500);
    p[FilterResonance] = 0.65f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(30);
    p[FilterModAVelocitySens] = 1.0f;
    p[AmpVelocitySens] = 0.3f;
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 1.0, 0.8, 0.1);
    env2(p, 0.002, 0.3, 0.0, 0.1);
    p[OutputVolume] = level(0.43);
    return p;
}

// Dirty Driven Bass: sawtooth and pulse through a resonant low-pass clipped hard, then the effect's
// overdrive.
constexpr Patch dirtyDrivenBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Detune] = cents(8);
    p[MixerOsc1Level] = level(0.9);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(4000);  // about 800 Hz at C2
    p[FilterResonance] = 0.4f;
    p[FilterSaturationLevel] = saturation(0.25);
    p[FilterSaturationCurve] = clipCurve(HardClip);
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 0.5, 0.9, 0.1);
    overdriveInsert(p, 4.0);
    p[OutputVolume] = level(0.25);
    return p;
}

// FM Bass: a sine carrier phase-modulated by a sine at the same pitch, the index struck high and
// falling in a third of a second.
constexpr Patch fmBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2FmDepth] = 0.03f;
    p[Osc2ModAConnection] = osc2Route(Env2, ToFm);
    p[Osc2ModADepth] = depth(0.09);
    p[MixerOsc1Level] = level(0.0);
    p[MixerOsc2Level] = level(1.0);
    p[FilterOn] = kOff;
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 0.5, 0.7, 0.1);
    env2(p, 0.002, 0.3, 0.0, 0.1);
    p[OutputVolume] = level(0.30);
    return p;
}

// Fat Rubber Bass: sawtooth over a square an octave down, a low-mid 24 dB low-pass; each note bends
// down four semitones into pitch in 60 ms while the filter snaps (the boing); a short glide.
constexpr Patch fatRubberBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(4);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2Detune] = cents(8);
    p[Osc2ModAConnection] = osc2Route(Env2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(4);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(1500);  // about 300 Hz at C2
    p[FilterResonance] = 0.25f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Env2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(18);
    monoLegato(p, 0.04);
    env1(p, 0.002, 0.6, 0.7, 0.1);
    env2(p, 0.002, 0.06, 0.0, 0.05);
    p[OutputVolume] = level(0.49);
    return p;
}

// Sync Bass: a sawtooth synced to the second oscillator, its pitch zapping down from +18 semitones
// in a quarter of a second.
constexpr Patch syncBass() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Sync] = kOn;
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(18);
    p[Osc2Waveform] = wave(Sawtooth);
    p[MixerOsc1Level] = level(0.9);
    p[MixerOsc2Level] = level(0.4);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(5000);  // about 1 kHz at C2
    p[FilterResonance] = 0.2f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 0.5, 0.8, 0.1);
    env2(p, 0.002, 0.25, 0.0, 0.1);
    p[OutputVolume] = level(0.78);
    return p;
}

// Fat Square: a square over a square an octave down, 6 cents apart, under a moderate low-pass.
constexpr Patch fatSquare() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(-12);
    p[Osc2Detune] = cents(6);
    p[MixerOsc1Level] = level(0.7);
    p[MixerOsc2Level] = level(0.7);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(3500);  // about 700 Hz at C2
    p[FilterResonance] = 0.15f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[NumberOfVoices] = voices(1);
    env1(p, 0.002, 0.5, 0.8, 0.1);
    p[OutputVolume] = level(0.35);
    return p;
}

// Attackless Subbass: a sine under a low low-pass, faded in just slowly enough not to click.
constexpr Patch attacklessSubbass() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[MixerOsc1Level] = level(1.2);
    p[FilterCutoff] = cutoffHz(1250);  // about 250 Hz at C2
    p[FilterSaturationLevel] = saturation(2.0);
    monoLegato(p, 0.0);
    env1(p, 0.015, 0.5, 1.0, 0.15);
    p[OutputVolume] = level(0.30);
    return p;
}

// ---- drums (one-shots: sustain 0, release as the decay) ---------------------------------------------

// Bass Drum Base: a sine at 49 Hz on every key, its pitch falling two octaves in 50 ms.
constexpr Patch bassDrumBase() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc1Pitch] = semitones(-33);
    p[Osc1KeyFollow] = keyFollow(0);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(24);
    p[MixerOsc1Level] = level(1.2);
    p[FilterOn] = kOff;
    p[AmpVelocitySens] = 0.5f;
    env1(p, 0.002, 0.4, 0.0, 0.4);
    env2(p, 0.002, 0.05, 0.0, 0.05);
    p[OutputVolume] = level(0.27);
    return p;
}

// House BD: a deeper, longer sine body with a short pitch drop, a burst of noise for the click and a
// gentle drive.
constexpr Patch houseBd() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc1Pitch] = semitones(-34);
    p[Osc1KeyFollow] = keyFollow(0);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(20);
    p[MixerOsc1Level] = level(1.2);
    p.slot(1, SrcEnv2, DstMixNoise, 0.5);
    p[FilterCutoff] = cutoffHz(6000);
    p[FilterKeyFollow] = keyFollow(0);
    p[FilterSaturationLevel] = saturation(0.45);
    p[AmpVelocitySens] = 0.4f;
    env1(p, 0.002, 0.7, 0.0, 0.7);
    p[Env1DecayCurve] = decayCurve(LinearDecay);
    env2(p, 0.002, 0.04, 0.0, 0.04);
    p[Env2DecayCurve] = decayCurve(FastDecay);
    p[OutputVolume] = level(0.35);
    return p;
}

// Noizy BD: the basic kick with a layer of mid-to-high noise that dies within about 100 ms.
constexpr Patch noizyBd() {
    Patch p = bassDrumBase();
    p[Osc1ModADepth] = pitchDepth(20);
    p.slot(1, SrcEnv2, DstMixNoise, 0.7);
    p[NoiseColor] = noiseColorHz(3500);
    env2(p, 0.002, 0.09, 0.0, 0.09);
    p[OutputVolume] = level(0.27);
    return p;
}

// Noisy Snare: a triangle body near 200 Hz that drops a few semitones, under loud bright noise; a
// gentle high-pass keeps it off the kick.
constexpr Patch noisySnare() {
    Patch p;
    p[Osc1Waveform] = wave(Triangle);
    p[Osc1Pitch] = semitones(-9);
    p[Osc1KeyFollow] = keyFollow(0);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(7);
    p[MixerOsc1Level] = level(0.8);
    p[MixerNoiseLevel] = level(1.6);
    p[FilterType] = filter(HP6);
    p[FilterCutoff] = cutoffHz(250);
    p[FilterKeyFollow] = keyFollow(0);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 0.002, 0.22, 0.0, 0.22);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    env2(p, 0.002, 0.05, 0.0, 0.05);
    p[OutputVolume] = level(0.66);
    return p;
}

// Pseudoreal Tom: a sine with a triangle a fifth up, dropping four semitones as it sounds, tuned by
// the key, with a little noise.
constexpr Patch pseudorealTom() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(4);
    p[Osc2Waveform] = wave(Triangle);
    p[Osc2Pitch] = semitones(7);
    p[Osc2ModAConnection] = osc2Route(Env2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(4);
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.4);
    p[MixerNoiseLevel] = level(0.15);
    p[NoiseColor] = noiseColorHz(2000);
    p[FilterCutoff] = cutoffHz(3000);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 0.002, 0.6, 0.0, 0.6);
    env2(p, 0.002, 0.15, 0.0, 0.15);
    p[OutputVolume] = level(0.38);
    return p;
}

// Noiz Clap: noise through a band-pass near 1.4 kHz; a square LFO running fast (faster still by a
// constant slot) gates the first 30 ms into bursts about 9 ms apart, then a short tail.
constexpr Patch noizClap() {
    Patch p;
    p[MixerOsc1Level] = level(0.0);
    p[MixerNoiseLevel] = level(1.5);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(1400);
    p[FilterKeyFollow] = keyFollow(0);
    p[FilterResonance] = 0.35f;
    p[FilterSaturationLevel] = saturation(0.45);
    p[Lfo1Waveform] = lfoWave(LfoSquare);
    p[Lfo1Mode] = lfoMode(Poly | Trigger);
    p[Lfo1Speed] = lfoHz(50.0);
    p.slot(1, SrcConstant, DstLfo1Speed, 0.1);
    p.slot(2, SrcLfo1, DstAmplifier, 1.0, SrcEnv2, 1.0);  // two slots: the gaps close fully
    p.slot(3, SrcLfo1, DstAmplifier, 1.0, SrcEnv2, 1.0);
    env1(p, 0.002, 0.15, 0.0, 0.15);
    env2(p, 0.002, 0.05, 0.0, 0.05);
    p[Env2DecayCurve] = decayCurve(LinearDecay);
    p[OutputVolume] = level(0.59);
    return p;
}

// Closed Synhat: white noise and two high ring-modulated pulses through a 24 dB high-pass at 8 kHz,
// gone in 60 ms.
constexpr Patch closedSynhat() {
    Patch p;
    p[Osc1Waveform] = wave(Pulse);
    p[Osc1Pitch] = semitones(30);
    p[Osc1KeyFollow] = keyFollow(0);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(37);
    p[Osc2KeyFollow] = keyFollow(0);
    p[MixerOsc1Level] = level(0.0);
    p[MixerRingLevel] = level(1.0);
    p[MixerNoiseLevel] = level(2.0);
    p[FilterType] = filter(HP24);
    p[FilterCutoff] = cutoffHz(8000);
    p[FilterKeyFollow] = keyFollow(0);
    p[FilterResonance] = 0.1f;
    p[FilterSaturationLevel] = saturation(0.4);
    env1(p, 0.002, 0.07, 0.0, 0.07);
    p[Env1DecayCurve] = decayCurve(FastDecay);
    p[OutputVolume] = level(2.00);
    return p;
}

// Open Synhat: the same metal and noise ringing for over half a second.
constexpr Patch openSynhat() {
    Patch p = closedSynhat();
    env1(p, 0.002, 0.6, 0.0, 0.6);
    p[Env1DecayCurve] = decayCurve(MiddleDecay);
    p[OutputVolume] = level(0.70);
    return p;
}

// Velo Tabla: a tuned sine with its octave, bent down at the strike; velocity deepens the bend,
// raises the level and brings up the octave.
constexpr Patch veloTabla() {
    Patch p;
    p[Osc1Waveform] = wave(Sine);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(4);
    p[Osc1ModAVelocitySens] = 1.0f;
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(12);
    p[Osc2ModAConnection] = osc2Route(Env2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(4);
    p[Osc2ModAVelocitySens] = 1.0f;
    p[MixerOsc1Level] = level(1.0);
    p[MixerOsc2Level] = level(0.1);
    p.slot(1, SrcVelocity, DstMix2, 0.6);
    p[FilterOn] = kOff;
    p[AmpVelocitySens] = 0.6f;
    env1(p, 0.002, 0.6, 0.0, 0.6);
    env2(p, 0.002, 0.12, 0.0, 0.12);
    p[OutputVolume] = level(0.23);
    return p;
}

// Ethnic Drum: a low triangle body dropping a fifth, with a slap of noise at the strike.
constexpr Patch ethnicDrum() {
    Patch p;
    p[Osc1Waveform] = wave(Triangle);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(7);
    p[MixerOsc1Level] = level(1.0);
    p.slot(1, SrcEnv2, DstMixNoise, 0.8);
    p[NoiseColor] = noiseColorHz(2500);
    p[FilterCutoff] = cutoffHz(4000);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 0.002, 0.5, 0.0, 0.5);
    env2(p, 0.002, 0.08, 0.0, 0.08);
    p[OutputVolume] = level(0.51);
    return p;
}

// ---- effects ----------------------------------------------------------------------------------------

// Katana Hit: noise and a ring of high sawtooth and pulse, both diving two octaves in 150 ms,
// through a resonant high-pass; it decays like a hit even when held, into an echo.
constexpr Patch katanaHit() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1Pitch] = semitones(24);
    p[Osc1ModAConnection] = osc1Route(Env2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(24);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(31);
    p[Osc2ModAConnection] = osc2Route(Env2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(24);
    p[MixerOsc1Level] = level(0.2);
    p[MixerRingLevel] = level(1.5);
    p[MixerNoiseLevel] = level(0.5);
    p[FilterType] = filter(HP12);
    p[FilterCutoff] = cutoffHz(1500);
    p[FilterKeyFollow] = keyFollow(0);
    p[FilterResonance] = 0.6f;
    p[FilterSaturationLevel] = saturation(2.0);
    env1(p, 0.002, 1.2, 0.0, 1.0);
    env2(p, 0.002, 0.15, 0.0, 0.15);
    echo(p, 0.25, 0.3, 0.25, true, 0.6);
    p[OutputVolume] = level(1.20);
    return p;
}

// Magnetosphere: coloured noise and ring-modulated oscillators through a resonant band-pass that two
// slow random LFOs push around; a wide modulated delay.
constexpr Patch magnetosphere() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2Pitch] = semitones(7);
    p[Osc2Detune] = cents(30);
    p[MixerOsc1Level] = level(0.0);
    p[MixerRingLevel] = level(0.8);
    p[MixerNoiseLevel] = level(0.8);
    p[NoiseColor] = noiseColorHz(2000);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(1200);
    p[FilterResonance] = 0.6f;
    p[FilterSaturationLevel] = saturation(2.0);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(20);
    p[FilterModBConnection] = filterRoute(Lfo2, ToCutoffResonance);
    p[FilterModBDepth] = cutoffDepth(10);
    p[Lfo1Waveform] = lfoWave(LfoRandom);
    p[Lfo1Speed] = lfoHz(0.2);
    p[Lfo2Waveform] = lfoWave(LfoRandom);
    p[Lfo2Speed] = lfoHz(0.13);
    env1(p, 1.0, 1.0, 0.9, 3.0);
    echo(p, 0.5, 0.5, 0.4, true, 1.0);
    p[EffectModDepth] = 0.6f;
    p[EffectModSpeed] = modSpeedHz(0.15);
    p[OutputVolume] = level(0.61);
    return p;
}

// Chaotic Conversation: sawtooth and pulse through a resonant band-pass whose centre jumps at random
// six times a second while the pitch wanders a few semitones: a voice talking nonsense.
constexpr Patch chaoticConversation() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc1ModAConnection] = osc1Route(Lfo2, ToPitch);
    p[Osc1ModADepth] = pitchDepth(3);
    p[Osc2Waveform] = wave(Pulse);
    p[Osc2PulseWidth] = 0.3f;
    p[Osc2Detune] = cents(8);
    p[Osc2ModAConnection] = osc2Route(Lfo2, ToPitch);
    p[Osc2ModADepth] = pitchDepth(3);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterType] = filter(BP12);
    p[FilterCutoff] = cutoffHz(1100);
    p[FilterKeyFollow] = keyFollow(50);
    p[FilterResonance] = 0.7f;
    p[FilterSaturationLevel] = saturation(2.0);
    p[FilterModAConnection] = filterRoute(Lfo1, ToCutoff);
    p[FilterModADepth] = cutoffDepth(20);
    p[Lfo1Waveform] = lfoWave(LfoSampleHold);
    p[Lfo1Speed] = lfoHz(6.5);
    p[Lfo2Waveform] = lfoWave(LfoRandom);
    p[Lfo2Speed] = lfoHz(3.0);
    p[NumberOfVoices] = voices(1);
    env1(p, 0.03, 0.5, 1.0, 0.3);
    echo(p, 0.2, 0.2, 0.15, true, 0.5);
    p[OutputVolume] = level(0.18);
    return p;
}

// Quasar 3C 273: a sawtooth ring-modulated by a sine 17 semitones and 37 cents up, through a resonant
// low-pass sweeping over half a minute, pulsing twice a second, far away in a long echo.
constexpr Patch quasar3C273() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sine);
    p[Osc2Pitch] = semitones(17);
    p[Osc2Detune] = cents(37);
    p[MixerOsc1Level] = level(0.2);
    p[MixerRingLevel] = level(1.5);
    p[FilterType] = filter(LP24);
    p[FilterCutoff] = cutoffHz(2500);
    p[FilterResonance] = 0.55f;
    p[FilterSaturationLevel] = saturation(1.5);
    p[FilterModAConnection] = filterRoute(Lfo2, ToCutoff);
    p[FilterModADepth] = cutoffDepth(24);
    p[AmpLfoDepth] = depth(0.5);
    p[Lfo1Speed] = lfoHz(2.0);
    p[Lfo1Mode] = lfoMode(Mono);
    p[Lfo2Waveform] = lfoWave(LfoTriangle);
    p[Lfo2Speed] = lfoHz(0.07);
    env1(p, 0.3, 1.0, 0.9, 2.0);
    echo(p, 0.6, 0.55, 0.35, true, 0.8);
    p[EffectHighCut] = cutHz(6000);
    p[OutputVolume] = level(1.24);
    return p;
}

// Infinity: sawtooths a fifth apart under a medium low-pass, a slow swell, and a cross-feedback echo
// that keeps the chord ringing for seconds after the keys are up.
constexpr Patch infinity() {
    Patch p;
    p[Osc1Waveform] = wave(Sawtooth);
    p[Osc2Waveform] = wave(Sawtooth);
    p[Osc2Pitch] = semitones(7);
    p[Osc2Detune] = cents(4);
    p[MixerOsc1Level] = level(0.8);
    p[MixerOsc2Level] = level(0.6);
    p[FilterCutoff] = cutoffHz(2400);
    p[FilterSaturationLevel] = saturation(1.5);
    env1(p, 1.5, 2.0, 0.9, 4.5);
    echo(p, 0.5, 0.8, 0.35, true, 0.8);
    p[EffectHighCut] = cutHz(5000);
    p[OutputVolume] = level(0.54);
    return p;
}

// Programs 1..63 in bank order.
constexpr Patch kDesignedPatches[kNumDesignedPrograms - 1] = {
    blueDragon(), valhalla(), spiralNebula(), aurora(),
    warmPulseStrings(), pwmVibratoStrings(), slowSyncStrings(), hpSweepingStrings(),
    harmonium(), sawUnisonLead(), pwmSyncLead(), phatLead(), vAnalogLead(), brassSolo(),
    percussiveOrgan(), percBrightOrgan1(), purpleHammond(), noisyAttackOrgan(), polyphonicPianika(),
    hardFmPiano(), mildEPiano(), warmPercussivePiano(), bpPercussiveClav(), harpsichord(),
    warmPwmGuitar(), brightPwmPluck(), leslieVibe(), thumbPiano(), chime(),
    synthBrass(), brightOctaveSaw(), bubbleBrass(), ethnoVoice(), huskyWind(), fifthBrass(), spacyHorn(),
    seventhOrbit(), warpSixteen(), clockWork(),
    groovyHouseBass(), hardcore303(), resoVelBass(), dirtyDrivenBass(), fmBass(), fatRubberBass(), syncBass(),
    fatSquare(), attacklessSubbass(),
    bassDrumBase(), houseBd(), noizyBd(), noisySnare(), pseudorealTom(), noizClap(), closedSynhat(),
    openSynhat(), veloTabla(), ethnicDrum(),
    katanaHit(), magnetosphere(), chaoticConversation(), quasar3C273(), infinity(),
};

struct Bank {
    ProgramRecord records[kNumPrograms];
};

constexpr void setName(ProgramRecord& record, const char* name) {
    for (int i = 0; i < kMaxProgramNameLength && name[i] != '\0'; ++i) record.name[i] = name[i];
}

constexpr void setValues(ProgramRecord& record, const float (&values)[kNumProgramValues]) {
    for (int i = 0; i < kNumProgramValues; ++i) record.values[i] = values[i];
}

// Built by the compiler, so the bank is read-only data and needs no start-up work.
constexpr Bank makeBank() {
    Bank bank{};
    for (int p = 0; p < kNumPrograms; ++p) {
        ProgramRecord& record = bank.records[p];
        setName(record, p < kNumDesignedPrograms ? kDesignedNames[p] : kInitName);
        if (p == 0) setValues(record, kLavenderMyst);
        else if (p < kNumDesignedPrograms) setValues(record, kDesignedPatches[p - 1].values);
        else setValues(record, kInitProgramValues);
    }
    return bank;
}

constexpr Bank kFactoryBank = makeBank();

}  // namespace

const ProgramRecord& factoryProgram(int index) {
    if (index < 0) index = 0;
    if (index >= kNumPrograms) index = kNumPrograms - 1;
    return kFactoryBank.records[index];
}

}  // namespace tolvane
