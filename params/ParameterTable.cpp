#include "params/ParameterTable.h"

#include "params/InitProgram.h"
#include "params/ParameterNames.h"

namespace tolvane {

using namespace param;

ParameterTable::ParameterTable() {
    // Oscillators.
    assign(Osc1Waveform, Osc1Waveform, &oscWaveforms_, oscWaveforms_.count());
    assign(Osc1Sync, Osc1Sync, &offOn_, 2);
    assign(Osc1PulseWidth, Osc1PulseWidth, &percent_, 0);
    assign(Osc1Pitch, Osc1Pitch, &semitones_, 0);
    assign(Osc1Detune, Osc1Detune, &detuneCents_, 0);
    assign(Osc1KeyFollow, Osc1KeyFollow, &keyFollowPercent_, 0);
    assign(Osc1ModAConnection, Osc1ModAConnection, &osc1Connections_, osc1Connections_.count());
    assign(Osc1ModADepth, Osc1ModADepth, &depthPercent_, 0);
    assign(Osc1ModAVelocitySens, Osc1ModAVelocitySens, &percent_, 0);
    assign(Osc1ModBConnection, Osc1ModBConnection, &osc1Connections_, osc1Connections_.count());
    assign(Osc1ModBDepth, Osc1ModBDepth, &depthPercent_, 0);
    assign(Osc1ModBVelocitySens, Osc1ModBVelocitySens, &percent_, 0);

    assign(Osc2Waveform, Osc2Waveform, &oscWaveforms_, oscWaveforms_.count());
    assign(Osc2FmDepth, Osc2PulseWidth, &percent_, 0);
    assign(Osc2Pitch, Osc2Pitch, &semitones_, 0);
    assign(Osc2Detune, Osc2Detune, &detuneCents_, 0);
    assign(Osc2KeyFollow, Osc2KeyFollow, &keyFollowPercent_, 0);
    assign(Osc2ModAConnection, Osc2ModAConnection, &osc2Connections_, osc2Connections_.count());
    assign(Osc2ModADepth, Osc2ModADepth, &depthPercent_, 0);
    assign(Osc2ModAVelocitySens, Osc2ModAVelocitySens, &percent_, 0);
    assign(Osc2ModBConnection, Osc2ModBConnection, &osc2Connections_, osc2Connections_.count());
    assign(Osc2ModBDepth, Osc2ModBDepth, &depthPercent_, 0);
    assign(Osc2ModBVelocitySens, Osc2ModBVelocitySens, &percent_, 0);

    // Mixer and filter.
    assign(MixerOsc1Level, MixerNoiseLevel, &levelPercent_, 0);
    assign(NoiseColor, NoiseColor, &noiseFiltered_, 0);
    assign(FilterOn, FilterOn, &bypassOn_, 2);
    assign(FilterType, FilterType, &filterTypes_, filterTypes_.count());
    assign(FilterSaturationLevel, FilterSaturationLevel, &saturationPercent_, 0);
    assign(FilterSaturationCurve, FilterSaturationCurve, &saturationCurves_, saturationCurves_.count());
    assign(FilterCutoff, FilterCutoff, &cutoff_, 0);
    assign(FilterResonance, FilterResonance, &percent_, 0);
    assign(FilterKeyFollow, FilterKeyFollow, &keyFollowPercent_, 0);
    assign(FilterModAConnection, FilterModAConnection, &filterConnections_, filterConnections_.count());
    assign(FilterModADepth, FilterModADepth, &depthPercent_, 0);
    assign(FilterModAVelocitySens, FilterModAVelocitySens, &percent_, 0);
    assign(FilterModBConnection, FilterModBConnection, &filterConnections_, filterConnections_.count());
    assign(FilterModBDepth, FilterModBDepth, &depthPercent_, 0);
    assign(FilterModBVelocitySens, FilterModBVelocitySens, &percent_, 0);

    // Amplifier and envelopes.
    assign(AmpModConnection, AmpModConnection, &ampConnections_, ampConnections_.count());
    assign(AmpLfoDepth, AmpLfoDepth, &depthPercent_, 0);
    assign(AmpVelocitySens, AmpVelocitySens, &percent_, 0);
    for (int env = Env1Attack; env <= Env2Attack; env += Env2Attack - Env1Attack) {
        assign(env, env, &attackSeconds_, 0);
        assign(env + 1, env + 1, &attackCurves_, attackCurves_.count());
        assign(env + 2, env + 2, &decaySeconds_, 0);
        assign(env + 3, env + 3, &decayCurves_, decayCurves_.count());
        assign(env + 4, env + 4, &percent_, 0);
        assign(env + 5, env + 5, &decaySeconds_, 0);
    }

    // LFOs: mode and speed display live state, so only their step counts are kept here.
    for (int lfo = Lfo1Waveform; lfo <= Lfo2Waveform; lfo += Lfo2Waveform - Lfo1Waveform) {
        assign(lfo, lfo, &lfoWaveforms_, lfoWaveforms_.count());
        assign(lfo + 1, lfo + 1, nullptr, options::lfoModes.count());
        assign(lfo + 2, lfo + 2, nullptr, 0);
        assign(lfo + 3, lfo + 3, &percent_, 0);
    }

    // Effect.
    assign(EffectOn, EffectOn, &bypassOn_, 2);
    assign(DelayTempoSync, DelayTempoSync, nullptr, 2);
    assign(EffectMix, EffectMix, &percent_, 0);
    assign(EffectDelayTime, EffectDelayTime, nullptr, 0);
    assign(EffectDiffusion, EffectDiffusion, &percent_, 0);
    assign(EffectFeedback, EffectFeedback, &signedPercent_, 0);
    assign(EffectFeedbackConnection, EffectFeedbackConnection, &feedbackConnections_, 2);
    assign(EffectOverdrive, EffectOverdrive, &overdrivePercent_, 0);
    assign(EffectLowCut, EffectHighCut, &cutHz_, 0);
    assign(EffectModSpeed, EffectModSpeed, &rateHz_, 0);
    assign(EffectModDepth, EffectModDepth, &percent_, 0);

    // Voices and performance.
    assign(NumberOfVoices, NumberOfVoices, &voices_, VoicesFormatter::kCount);
    assign(Unison, Legato, &offOn_, 2);
    assign(VoiceDetune, VoiceDetune, &voiceDetuneCents_, 0);
    assign(Portamento, Portamento, &portamento_, 0);
    assign(OutputVolume, OutputVolume, &levelPercent_, 0);

    // Assignable modulation slots.
    assign(ModDepth1, ModDepth1 + 7, &depthPercent_, 0);
    assign(ModSens1, ModSens1 + 7, &percent_, 0);
    assign(ModSource1, ModSource1 + 7, &modSources_, modSources_.count());
    assign(ModSensSource1, ModSensSource1 + 7, &modSensSources_, modSensSources_.count());
    assign(ModDestination1, ModDestination1 + 7, &modDestinations_, modDestinations_.count());

    // MIDI.
    assign(MasterTune, MasterTune, &detuneCents_, 0);
    assign(PitchBendRange, PitchBendRange, &bendRanges_, bendRanges_.count());
    assign(MidiChannel, MidiChannel, &midiChannels_, midiChannels_.count());

    assign(kFirstReserved, kFirstMapParameter - 1, &reserved_, 0);

    // Controller maps.
    assign(MapControl1, MapControl1 + kNumControllerMaps - 1, &controllerNames_, controllerNames_.count());
    assign(MapParameter1, MapParameter1 + kNumControllerMaps - 1, &mapParameter_, MapParameterFormatter::kSteps);
}

void ParameterTable::assign(int first, int last, const ValueFormatter* formatter, int steps) {
    for (int i = first; i <= last; ++i) {
        formatters_[i] = formatter;
        steps_[i] = steps;
    }
}

const char* ParameterTable::longName(int index) const { return parameterLongName(index); }

const char* ParameterTable::shortName(int index) const { return parameterShortName(index); }

const ValueFormatter* ParameterTable::formatter(int index) const {
    return index >= 0 && index < kNumParameters ? formatters_[index] : nullptr;
}

float ParameterTable::initValue(int index) const {
    return index >= 0 && index < kNumProgramValues ? kInitProgramValues[index] : 0.0f;
}

int ParameterTable::steps(int index) const { return index >= 0 && index < kNumParameters ? steps_[index] : 0; }

bool ParameterTable::isTempoAware(int index) {
    return index == Lfo1Mode || index == Lfo1Speed || index == Lfo2Mode || index == Lfo2Speed ||
           index == DelayTempoSync || index == EffectDelayTime;
}

}  // namespace tolvane
