// Parameter indices and the counts that every layer shares.
#pragma once

#include "dsp/EngineLimits.h"

namespace tolvane {

constexpr int kNumParameters = 176;       // 0..175
constexpr int kNumProgramValues = 144;    // 0..143 live in a program record
constexpr int kFirstReserved = 126;       // 126..143 have no setter
constexpr int kFirstMapParameter = 144;   // 144..159 map controls, 160..175 map targets
constexpr int kNumControllerMaps = 16;
constexpr int kNumMapValues = 32;
constexpr int kNumPrograms = 512;
constexpr int kProgramsPerBank = 128;

namespace param {
enum Index : int {
    Osc1Waveform = 0, Osc1Sync, Osc1PulseWidth, Osc1Pitch, Osc1Detune, Osc1KeyFollow,
    Osc1ModAConnection, Osc1ModADepth, Osc1ModAVelocitySens,
    Osc1ModBConnection, Osc1ModBDepth, Osc1ModBVelocitySens,
    Osc2Waveform = 12, Osc2FmDepth, Osc2PulseWidth, Osc2Pitch, Osc2Detune, Osc2KeyFollow,
    Osc2ModAConnection, Osc2ModADepth, Osc2ModAVelocitySens,
    Osc2ModBConnection, Osc2ModBDepth, Osc2ModBVelocitySens,
    MixerOsc1Level = 24, MixerOsc2Level, MixerRingLevel, MixerNoiseLevel, NoiseColor,
    FilterOn = 29, FilterType, FilterSaturationLevel, FilterSaturationCurve, FilterCutoff,
    FilterResonance, FilterKeyFollow,
    FilterModAConnection, FilterModADepth, FilterModAVelocitySens,
    FilterModBConnection, FilterModBDepth, FilterModBVelocitySens,
    AmpModConnection = 42, AmpLfoDepth, AmpVelocitySens,
    Env1Attack = 45, Env1AttackCurve, Env1Decay, Env1DecayCurve, Env1Sustain, Env1Release,
    Env2Attack = 51, Env2AttackCurve, Env2Decay, Env2DecayCurve, Env2Sustain, Env2Release,
    Lfo1Waveform = 57, Lfo1Mode, Lfo1Speed, Lfo1Phase,
    Lfo2Waveform = 61, Lfo2Mode, Lfo2Speed, Lfo2Phase,
    EffectOn = 65, DelayTempoSync, EffectMix, EffectDelayTime, EffectDiffusion, EffectFeedback,
    EffectFeedbackConnection, EffectOverdrive, EffectLowCut, EffectHighCut, EffectModSpeed,
    EffectModDepth,
    NumberOfVoices = 77, Unison, Legato, VoiceDetune, Portamento, OutputVolume,
    ModDepth1 = 83,       // 83..90, one per slot
    ModSens1 = 91,        // 91..98
    ModSource1 = 99,      // 99..106
    ModSensSource1 = 107, // 107..114
    ModDestination1 = 115,// 115..122
    MasterTune = 123, PitchBendRange, MidiChannel,
    MapControl1 = 144,    // 144..159
    MapParameter1 = 160,  // 160..175
};
}  // namespace param

}  // namespace tolvane
