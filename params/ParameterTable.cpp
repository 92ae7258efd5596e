#include "params/ParameterTable.h"

#include "params/InitProgram.h"
#include "params/ParameterNames.h"

namespace tolvane {

using namespace param;

namespace {

// How a parameter shows its value: through an option list, one of the table's formatters, or live
// module state that the plug-in object displays.
enum class Display : unsigned char {
    Options, Live, Percent, KeyFollowPercent, LevelPercent, SignedPercent, DepthPercent, SaturationPercent,
    OverdrivePercent, NoiseFiltered, DetuneCents, VoiceDetuneCents, Semitones, Cutoff, AttackSeconds,
    DecaySeconds, CutHz, RateHz, Voices, Portamento, Reserved, MapParameter,
};

// Parameters first..last: their display and their steps (an option list's count when it has one).
struct Row {
    int first;
    int last;
    Display display;
    const OptionList* options;
    int steps;
};

constexpr Row one(int index, Display display, int steps = 0) { return {index, index, display, nullptr, steps}; }
constexpr Row span(int first, int last, Display display, int steps = 0) { return {first, last, display, nullptr, steps}; }
constexpr Row choice(int index, const OptionList& list) { return {index, index, Display::Options, &list, 0}; }
constexpr Row choices(int first, int last, const OptionList& list) { return {first, last, Display::Options, &list, 0}; }

constexpr Row kRows[] = {
    // Oscillators.
    choice(Osc1Waveform, options::oscWaveforms),
    choice(Osc1Sync, options::offOn),
    one(Osc1PulseWidth, Display::Percent),
    one(Osc1Pitch, Display::Semitones),
    one(Osc1Detune, Display::DetuneCents),
    one(Osc1KeyFollow, Display::KeyFollowPercent),
    choice(Osc1ModAConnection, options::osc1Connections),
    one(Osc1ModADepth, Display::DepthPercent),
    one(Osc1ModAVelocitySens, Display::Percent),
    choice(Osc1ModBConnection, options::osc1Connections),
    one(Osc1ModBDepth, Display::DepthPercent),
    one(Osc1ModBVelocitySens, Display::Percent),
    choice(Osc2Waveform, options::oscWaveforms),
    span(Osc2FmDepth, Osc2PulseWidth, Display::Percent),
    one(Osc2Pitch, Display::Semitones),
    one(Osc2Detune, Display::DetuneCents),
    one(Osc2KeyFollow, Display::KeyFollowPercent),
    choice(Osc2ModAConnection, options::osc2Connections),
    one(Osc2ModADepth, Display::DepthPercent),
    one(Osc2ModAVelocitySens, Display::Percent),
    choice(Osc2ModBConnection, options::osc2Connections),
    one(Osc2ModBDepth, Display::DepthPercent),
    one(Osc2ModBVelocitySens, Display::Percent),
    // Mixer and filter.
    span(MixerOsc1Level, MixerNoiseLevel, Display::LevelPercent),
    one(NoiseColor, Display::NoiseFiltered),
    choice(FilterOn, options::bypassOn),
    choice(FilterType, options::filterTypes),
    one(FilterSaturationLevel, Display::SaturationPercent),
    choice(FilterSaturationCurve, options::saturationCurves),
    one(FilterCutoff, Display::Cutoff),
    one(FilterResonance, Display::Percent),
    one(FilterKeyFollow, Display::KeyFollowPercent),
    choice(FilterModAConnection, options::filterConnections),
    one(FilterModADepth, Display::DepthPercent),
    one(FilterModAVelocitySens, Display::Percent),
    choice(FilterModBConnection, options::filterConnections),
    one(FilterModBDepth, Display::DepthPercent),
    one(FilterModBVelocitySens, Display::Percent),
    // Amplifier and envelopes.
    choice(AmpModConnection, options::ampConnections),
    one(AmpLfoDepth, Display::DepthPercent),
    one(AmpVelocitySens, Display::Percent),
    one(Env1Attack, Display::AttackSeconds),
    choice(Env1AttackCurve, options::attackCurves),
    one(Env1Decay, Display::DecaySeconds),
    choice(Env1DecayCurve, options::decayCurves),
    one(Env1Sustain, Display::Percent),
    one(Env1Release, Display::DecaySeconds),
    one(Env2Attack, Display::AttackSeconds),
    choice(Env2AttackCurve, options::attackCurves),
    one(Env2Decay, Display::DecaySeconds),
    choice(Env2DecayCurve, options::decayCurves),
    one(Env2Sustain, Display::Percent),
    one(Env2Release, Display::DecaySeconds),
    // LFOs: mode and speed display live state; the modes still count their options.
    choice(Lfo1Waveform, options::lfoWaveforms),
    {Lfo1Mode, Lfo1Mode, Display::Live, &options::lfoModes, 0},
    one(Lfo1Speed, Display::Live),
    one(Lfo1Phase, Display::Percent),
    choice(Lfo2Waveform, options::lfoWaveforms),
    {Lfo2Mode, Lfo2Mode, Display::Live, &options::lfoModes, 0},
    one(Lfo2Speed, Display::Live),
    one(Lfo2Phase, Display::Percent),
    // Effect.
    choice(EffectOn, options::bypassOn),
    one(DelayTempoSync, Display::Live, 2),
    one(EffectMix, Display::Percent),
    one(EffectDelayTime, Display::Live),
    one(EffectDiffusion, Display::Percent),
    one(EffectFeedback, Display::SignedPercent),
    choice(EffectFeedbackConnection, options::feedbackConnections),
    one(EffectOverdrive, Display::OverdrivePercent),
    span(EffectLowCut, EffectHighCut, Display::CutHz),
    one(EffectModSpeed, Display::RateHz),
    one(EffectModDepth, Display::Percent),
    // Voices and performance.
    one(NumberOfVoices, Display::Voices, VoicesFormatter::kCount),
    choices(Unison, Legato, options::offOn),
    one(VoiceDetune, Display::VoiceDetuneCents),
    one(Portamento, Display::Portamento),
    one(OutputVolume, Display::LevelPercent),
    // Assignable modulation slots.
    span(ModDepth1, ModDepth1 + 7, Display::DepthPercent),
    span(ModSens1, ModSens1 + 7, Display::Percent),
    choices(ModSource1, ModSource1 + 7, options::modSources),
    choices(ModSensSource1, ModSensSource1 + 7, options::modSensSources),
    choices(ModDestination1, ModDestination1 + 7, options::modDestinations),
    // MIDI.
    one(MasterTune, Display::DetuneCents),
    choice(PitchBendRange, options::bendRanges),
    choice(MidiChannel, options::midiChannels),
    span(kFirstReserved, kFirstMapParameter - 1, Display::Reserved),
    // Controller maps.
    choices(MapControl1, MapControl1 + kNumControllerMaps - 1, options::controllerNames),
    span(MapParameter1, MapParameter1 + kNumControllerMaps - 1, Display::MapParameter, MapParameterFormatter::kSteps),
};

}  // namespace

ParameterTable::ParameterTable() {
    // In the order of Display, from Live.
    const ValueFormatter* const formatters[] = {
        nullptr,           &percent_,           &keyFollowPercent_, &levelPercent_,     &signedPercent_,
        &depthPercent_,    &saturationPercent_, &overdrivePercent_, &noiseFiltered_,    &detuneCents_,
        &voiceDetuneCents_, &semitones_,        &cutoff_,           &attackSeconds_,    &decaySeconds_,
        &cutHz_,           &rateHz_,            &voices_,           &portamento_,       &reserved_,
        &mapParameter_};
    static_assert(sizeof formatters / sizeof *formatters == static_cast<std::size_t>(Display::MapParameter),
                  "a formatter for every display but the option lists");
    optionFormatters_.reserve(sizeof kRows / sizeof *kRows);
    for (const Row& row : kRows) {
        const ValueFormatter* formatter = row.display == Display::Options
                                              ? &optionFormatter(*row.options)
                                              : formatters[static_cast<int>(row.display) - 1];
        const int steps = row.options ? row.options->count() : row.steps;
        for (int i = row.first; i <= row.last; ++i) {
            formatters_[i] = formatter;
            steps_[i] = steps;
        }
    }
}

const OptionFormatter& ParameterTable::optionFormatter(const OptionList& options) {
    for (const OptionFormatter& f : optionFormatters_)
        if (&f.options() == &options) return f;
    return optionFormatters_.emplace_back(options);
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
