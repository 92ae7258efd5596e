#include "engine/voice/SynthEngine.h"

#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

// Values the control targets hold until the program's setters arrive.
constexpr float kInitialPulseWidth = 0.5f;
constexpr float kInitialCutoffNote = 64.0f;
constexpr float kInitialSaturation = 0.5f;  // normalised; L = 0.1 x 40^0.5
constexpr float kInitialOsc1Level = 1.0f;
constexpr float kInitialAmpVelocitySens = 1.0f;

// Connection bits of the fixed routes' targets.
constexpr int kFrequencyBit = 4;
constexpr int kPulseWidthBit = 8;
constexpr int kFmBit = 16;
constexpr int kCutoffBit = 4;
constexpr int kResonanceBit = 8;

}  // namespace

SynthEngine::MixerChannel::MixerChannel(ModuleGraph& graph, float initial, PolyModule* modulation)
    : level(graph, 0, kRuleFromInputs, initial), control(graph, 2, kRuleFromInputs) {
    control.connectInput(&level, 0);
    control.connectInput(modulation, 1);
}

SynthEngine::SynthEngine(VoiceAllocator& allocator, const EngineMappings& mappings)
    : allocator_(allocator),
      zero_(allocator, 0, kRuleFromInputs, 0.0f),
      gate_(allocator),
      trigger_(allocator),
      latestTrigger_(allocator, 0, kRuleFromInputs),
      velocity_(allocator),
      portamento_(allocator, trigger_),
      pitch_(allocator),
      slots_(allocator),
      env1_(allocator, gate_, trigger_, mappings.attackTime, mappings.decayTime,
            {&slots_.destination(ModSlots::kEnv1Attack), &slots_.destination(ModSlots::kEnv1Decay),
             &slots_.destination(ModSlots::kEnv1Sustain), &slots_.destination(ModSlots::kEnv1Release)}),
      env2_(allocator, gate_, trigger_, mappings.attackTime, mappings.decayTime,
            {&slots_.destination(ModSlots::kEnv2Attack), &slots_.destination(ModSlots::kEnv2Decay),
             &slots_.destination(ModSlots::kEnv2Sustain), &slots_.destination(ModSlots::kEnv2Release)}),
      lfo1_(allocator, trigger_, latestTrigger_, mappings.rate, &slots_.destination(ModSlots::kLfo1Speed),
            &slots_.destination(ModSlots::kLfo1Phase)),
      lfo2_(allocator, trigger_, latestTrigger_, mappings.rate, &slots_.destination(ModSlots::kLfo2Speed),
            &slots_.destination(ModSlots::kLfo2Phase)),
      osc1Frequency_(allocator, OscFrequency::kNumInputs, kRuleFromInputs),
      osc1WidthValue_(allocator, 0, kRuleFromInputs, kInitialPulseWidth),
      osc1PulseWidth_(allocator, PulseWidthTarget::kNumInputs, kRuleFromInputs),
      osc1Routes_(allocator, velocity_, zero_, {&env1_.output(), &env2_.output(), &lfo1_.output(), &lfo2_.output()}),
      osc2Frequency_(allocator, OscFrequency::kNumInputs, kRuleFromInputs),
      osc2WidthValue_(allocator, 0, kRuleFromInputs, kInitialPulseWidth),
      osc2PulseWidth_(allocator, PulseWidthTarget::kNumInputs, kRuleFromInputs),
      fmDepthValue_(allocator, 0, kRuleFromInputs, 0.0f),
      fmDepth_(allocator, FmDepthTarget::kNumInputs, kRuleFromInputs),
      osc2Routes_(allocator, velocity_, zero_, {&env1_.output(), &env2_.output(), &lfo1_.output(), &lfo2_.output()}),
      cutoffValue_(allocator, 0, kRuleFromInputs, kInitialCutoffNote),
      cutoff_(allocator, CutoffTarget::kNumInputs, kRuleFromInputs),
      resonanceValue_(allocator, 0, kRuleFromInputs, 0.0f),
      resonance_(allocator, ResonanceTarget::kNumInputs, kRuleFromInputs),
      saturationValue_(allocator, 0, kRuleFromInputs, kInitialSaturation),
      saturation_(allocator, 2, kRuleFromInputs, mappings.saturation.lnMin(), mappings.saturation.lnRange()),
      filterRoutes_(allocator, velocity_, zero_, {&env1_.output(), &env2_.output(), &lfo1_.output(), &lfo2_.output()}),
      ampVelocity_(allocator),
      ampGain_(allocator, AmpGain::kNumInputs, kRuleFromInputs) {
    slots_.setModulators(&env1_.output(), &env2_.output(), &lfo1_.output(), &lfo2_.output());
    wireOscillatorTargets();
    wireMixerGains();
    wireFilterTargets();
    wireAmplifier();
    collectControls();
    buildAudioPath(mappings.delayTime);
}

// Oscillators: frequency from glide and pitch, pulse widths, OSC2's FM depth; each with its slot sums.
void SynthEngine::wireOscillatorTargets() {
    osc1Frequency_.connectInput(&slots_.destination(ModSlots::kOsc1Pitch), RouteTarget::kSlotSum);
    osc1Frequency_.connectInput(&portamento_.output(), OscFrequency::kGlide);
    osc1Frequency_.connectInput(&pitch_.output(), OscFrequency::kPitch);
    osc1PulseWidth_.connectInput(&slots_.destination(ModSlots::kOsc1PulseWidth), RouteTarget::kSlotSum);
    osc1PulseWidth_.connectInput(&osc1WidthValue_, PulseWidthTarget::kWidth);
    osc1Routes_.addTarget(osc1Frequency_, kFrequencyBit);
    osc1Routes_.addTarget(osc1PulseWidth_, kPulseWidthBit);

    osc2Frequency_.connectInput(&slots_.destination(ModSlots::kOsc2Pitch), RouteTarget::kSlotSum);
    osc2Frequency_.connectInput(&portamento_.output(), OscFrequency::kGlide);
    osc2Frequency_.connectInput(&pitch_.output(), OscFrequency::kPitch);
    osc2PulseWidth_.connectInput(&slots_.destination(ModSlots::kOsc2PulseWidth), RouteTarget::kSlotSum);
    osc2PulseWidth_.connectInput(&osc2WidthValue_, PulseWidthTarget::kWidth);
    fmDepth_.connectInput(&slots_.destination(ModSlots::kOsc2Fm), RouteTarget::kSlotSum);
    fmDepth_.connectInput(&fmDepthValue_, FmDepthTarget::kDepth);
    osc2Routes_.addTarget(osc2Frequency_, kFrequencyBit);
    osc2Routes_.addTarget(osc2PulseWidth_, kPulseWidthBit);
    osc2Routes_.addTarget(fmDepth_, kFmBit);
}

void SynthEngine::wireMixerGains() {
    for (int ch = 0; ch < 4; ++ch)
        mixer_[static_cast<std::size_t>(ch)] = std::make_unique<MixerChannel>(
            allocator_, ch == 0 ? kInitialOsc1Level : 0.0f, &slots_.destination(ModSlots::kMixerOsc1 + ch));
}

// Filter: cutoff follows the gliding note; resonance; saturation ceiling.
void SynthEngine::wireFilterTargets() {
    cutoff_.connectInput(&slots_.destination(ModSlots::kFilterFrequency), RouteTarget::kSlotSum);
    cutoff_.connectInput(&cutoffValue_, CutoffTarget::kBase);
    cutoff_.connectInput(&portamento_.output(), CutoffTarget::kKey);
    resonance_.connectInput(&slots_.destination(ModSlots::kFilterResonance), RouteTarget::kSlotSum);
    resonance_.connectInput(&resonanceValue_, ResonanceTarget::kResonance);
    filterRoutes_.addTarget(cutoff_, kCutoffBit);
    filterRoutes_.addTarget(resonance_, kResonanceBit);
    saturation_.connectInput(&saturationValue_, 0);
    saturation_.connectInput(&slots_.destination(ModSlots::kSaturation), 1);
}

void SynthEngine::wireAmplifier() {
    ampVelocity_.forEach([](VelocityCurve& v) { v.setSensitivity(kInitialAmpVelocitySens, 1.0f); });
    ampGain_.connectInput(&ampVelocity_, AmpGain::kVelocity);
    ampGain_.connectInput(&slots_.destination(ModSlots::kAmplifier), AmpGain::kModulation);
    setAmpModConnection(0);
}

// What the audio units of a voice read at control rate.
void SynthEngine::collectControls() {
    controls_.gate = &gate_;
    controls_.trigger = &trigger_;
    controls_.latestTrigger = &latestTrigger_;
    controls_.velocity = &velocity_;
    controls_.glide = &portamento_.output();
    controls_.pitch = &pitch_.output();
    controls_.envelope = {&env1_.output(), &env2_.output()};
    controls_.lfo = {&lfo1_.output(), &lfo2_.output()};
    controls_.phaseIncrement = {&osc1Frequency_, &osc2Frequency_};
    controls_.pulseWidth = {&osc1PulseWidth_, &osc2PulseWidth_};
    controls_.fmDepth = &fmDepth_;
    controls_.cutoff = &cutoff_;
    controls_.resonance = &resonance_;
    controls_.saturationLevel = &saturation_;
    for (int ch = 0; ch < 4; ++ch)
        controls_.mixerLevel[static_cast<std::size_t>(ch)] = &mixer_[static_cast<std::size_t>(ch)]->control;
    controls_.ampGain = &ampGain_;
}

// The audio path of a voice: two oscillators, the mixer with ring modulator and noise, the filter, the
// amplifier summing the voices, and the effect unit producing the two outputs.
void SynthEngine::buildAudioPath(const ExponentialMapping& delayTime) {
    osc1_ = std::make_unique<OscillatorSection>(allocator_, OscillatorRole::Osc1, &osc1Frequency_, &osc1PulseWidth_);
    osc2_ = std::make_unique<OscillatorSection>(allocator_, OscillatorRole::Osc2, &osc2Frequency_, &osc2PulseWidth_,
                                                &fmDepth_);
    linkOscillators(*osc1_, *osc2_);
    mixerSection_ = std::make_unique<MixerSection>(
        allocator_, *osc1_, *osc2_,
        std::array<PolyModule*, Mixer::kChannels>{&mixer_[0]->control, &mixer_[1]->control, &mixer_[2]->control,
                                                  &mixer_[3]->control});
    filter_ = std::make_unique<FilterSection>(allocator_, mixerSection_->output(), &cutoff_, &resonance_, &saturation_);
    amp_ = std::make_unique<AmpSection>(allocator_, &ampGain_, filter_->output());
    filter_->connectOutputTo(amp_->output(), AmpSection::kAudioInput);
    effect_ = std::make_unique<EffectUnit>(allocator_, amp_->output(), delayTime);
}

SynthEngine::~SynthEngine() = default;

void SynthEngine::updateControls(int tick) {
    // The modulators run every block for every voice, whether or not anything reads them now, so that
    // a later connection or a voice becoming audible finds them in their running state. Everything else
    // (oscillator, filter and mixer targets) is pulled by the audio units of audible voices only.
    env1_.output().updateInstances(tick);
    env2_.output().updateInstances(tick);
    lfo1_.output().updateInstances(tick);
    lfo2_.output().updateInstances(tick);
}

void SynthEngine::resetControls(int tick) {
    env1_.output().resetInstances(tick);
    env2_.output().resetInstances(tick);
    lfo1_.output().resetInstances(tick);
    lfo2_.output().resetInstances(tick);
    portamento_.output().resetInstances(tick);
    pitch_.output().resetInstances(tick);
    ampGain_.resetInstances(tick);
    osc1Frequency_.resetInstances(tick);
    osc1PulseWidth_.resetInstances(tick);
    osc2Frequency_.resetInstances(tick);
    osc2PulseWidth_.resetInstances(tick);
    fmDepth_.resetInstances(tick);
    for (auto& ch : mixer_) ch->control.resetInstances(tick);
    cutoff_.resetInstances(tick);
    resonance_.resetInstances(tick);
    saturation_.resetInstances(tick);
}

void SynthEngine::render(int tick) {
    updateControls(tick);
    // Pulling the effect's outputs pulls the voice sum, and through it every audible voice.
    effect_->update(tick);
}

void SynthEngine::reset(int tick) {
    resetControls(tick);
    effect_->reset(tick);
}

const float* SynthEngine::left() const { return effect_->left(); }
const float* SynthEngine::right() const { return effect_->right(); }

void SynthEngine::setTempo(float bpm) {
    lfo1_.setTempo(bpm);
    lfo2_.setTempo(bpm);
    effect_->setTempo(bpm);
}

// Oscillators.
void SynthEngine::setOscPulseWidth(int osc, float width) { setValue(osc == 0 ? osc1WidthValue_ : osc2WidthValue_, width); }

void SynthEngine::setOscPitch(int osc, float semitones) {
    if (osc < 0 || osc > 1) return;
    oscPitch_[static_cast<std::size_t>(osc)] = semitones;
    pushOscOffset(osc);
}

void SynthEngine::setOscDetune(int osc, float semitones) {
    if (osc < 0 || osc > 1) return;
    oscDetune_[static_cast<std::size_t>(osc)] = semitones;
    pushOscOffset(osc);
}

void SynthEngine::pushOscOffset(int osc) {
    float p = oscPitch_[static_cast<std::size_t>(osc)] + oscDetune_[static_cast<std::size_t>(osc)];
    (osc == 0 ? osc1Frequency_ : osc2Frequency_).forEach([p](OscFrequency& f) { f.setOffset(p); });
}

void SynthEngine::setOscKeyFollow(int osc, float amount) {
    (osc == 0 ? osc1Frequency_ : osc2Frequency_).forEach([amount](OscFrequency& f) { f.setKeyFollow(amount); });
}

void SynthEngine::setOscModConnection(int osc, int route, int value) { oscRoutes(osc).setConnection(route, value); }
void SynthEngine::setOscModDepth(int osc, int route, float depth) { oscRoutes(osc).setDepth(route, depth); }
void SynthEngine::setOscModVelocitySens(int osc, int route, float sens) { oscRoutes(osc).setVelocitySens(route, sens); }
void SynthEngine::setOsc2FmDepth(float depth) { setTarget(fmDepthValue_, depth); }

// Mixer gains.
void SynthEngine::setMixerLevel(int channel, float level) {
    if (channel < 0 || channel > 3) return;
    setValue(mixer_[static_cast<std::size_t>(channel)]->level, level);
}

// Filter control values.
void SynthEngine::setSaturationLevel(float value) { setValue(saturationValue_, value); }
void SynthEngine::setFilterCutoff(float note) { setValue(cutoffValue_, note); }
void SynthEngine::setFilterResonance(float resonance) { setValue(resonanceValue_, resonance); }
void SynthEngine::setFilterKeyFollow(float amount) {
    cutoff_.forEach([amount](CutoffTarget& c) { c.setKeyFollow(amount); });
}
void SynthEngine::setFilterModConnection(int route, int value) { filterRoutes_.setConnection(route, value); }
void SynthEngine::setFilterModDepth(int route, float depth) { filterRoutes_.setDepth(route, depth); }
void SynthEngine::setFilterModVelocitySens(int route, float sens) { filterRoutes_.setVelocitySens(route, sens); }

// Amplifier: bit 0 chooses ENV2 over ENV1, bit 1 LFO2 over LFO1.
void SynthEngine::setAmpModConnection(int value) {
    ampConnection_ = value & 3;
    PolyModule* env = (ampConnection_ & 1) ? &env2_.output() : &env1_.output();
    PolyModule* lfo = (ampConnection_ & 2) ? &lfo2_.output() : &lfo1_.output();
    if (ampGain_.inputSource(AmpGain::kEnvelope) != env) ampGain_.connectInput(env, AmpGain::kEnvelope);
    if (ampGain_.inputSource(AmpGain::kLfo) != lfo) ampGain_.connectInput(lfo, AmpGain::kLfo);
}

void SynthEngine::setAmpLfoDepth(float depth) {
    ampGain_.forEach([depth](AmpGain& a) { a.setLfoDepth(depth); });
}

// The velocity factor runs linearly from 1 - S at velocity 0 to 1 + S at 127.
void SynthEngine::setAmpVelocitySens(float sens) {
    ampVelocity_.forEach([sens](VelocityCurve& v) { v.setSensitivity(sens, 1.0f); });
}

// Envelopes.
void SynthEngine::setEnvAttack(int env, float value) { envelope(env).setAttack(value); }
void SynthEngine::setEnvAttackCurve(int env, int index) { envelope(env).setAttackCurve(index); }
void SynthEngine::setEnvDecay(int env, float value) { envelope(env).setDecay(value); }
void SynthEngine::setEnvDecayCurve(int env, int index) { envelope(env).setDecayCurve(index); }
void SynthEngine::setEnvSustain(int env, float value) { envelope(env).setSustain(value); }
void SynthEngine::setEnvRelease(int env, float value) { envelope(env).setRelease(value); }

// LFOs.
void SynthEngine::setLfoWaveform(int lfo, int mask) { this->lfo(lfo).setWaveform(mask); }
void SynthEngine::setLfoMode(int lfo, int bits) { this->lfo(lfo).setMode(bits); }
void SynthEngine::setLfoSpeed(int lfo, float value) { this->lfo(lfo).setSpeed(value); }
void SynthEngine::setLfoPhase(int lfo, float value) { this->lfo(lfo).setPhase(value); }

// Voice and tuning.
void SynthEngine::setVoiceDetune(float depth) { pitch_.setVoiceDetune(depth); }
void SynthEngine::setPortamentoTime(float seconds) { portamento_.setTime(seconds); }
void SynthEngine::setMasterTune(float semitones) { pitch_.setMasterTune(semitones); }
void SynthEngine::setBendRange(float semitones) { pitch_.setBendRange(semitones); }
void SynthEngine::refreshSlotSources() { slots_.refreshSources(); }

// Assignable modulation slots.
void SynthEngine::setSlotDepth(int slot, float depth) { slots_.setDepth(slot, depth); }
void SynthEngine::setSlotSens(int slot, float sens) { slots_.setSens(slot, sens); }
void SynthEngine::setSlotSource(int slot, int index) { slots_.setSource(slot, index); }
void SynthEngine::setSlotSensSource(int slot, int index) { slots_.setSensSource(slot, index); }
void SynthEngine::setSlotDestination(int slot, int index) { slots_.setDestination(slot, index); }

// The audio sections' own settings.
void SynthEngine::setOscWaveform(int osc, int index) { oscillator(osc == 0 ? 0 : 1).setWaveform(index); }
void SynthEngine::setOsc1Sync(bool on) { osc1_->setSync(on); }
void SynthEngine::setNoiseColor(float hz) { mixerSection_->setNoiseColor(hz); }
void SynthEngine::setFilterOn(bool on) { filter_->setOn(on); }
void SynthEngine::setFilterType(int index) { filter_->setType(index); }
void SynthEngine::setSaturationCurve(int index) { filter_->setCurve(index); }
void SynthEngine::setEffectOn(bool on) { effect_->setEffectOn(on); }
void SynthEngine::setDelayTempoSync(bool on) { effect_->setTempoSync(on); }
void SynthEngine::setEffectMix(float value) { effect_->setMix(value); }
void SynthEngine::setEffectDelayTime(float value) { effect_->setDelayTime(value); }
void SynthEngine::setEffectDiffusion(float value) { effect_->setDiffusion(value); }
void SynthEngine::setEffectFeedback(float gain) { effect_->setFeedback(gain); }
void SynthEngine::setEffectFeedbackConnection(int value) { effect_->setFeedbackConnection(value); }
void SynthEngine::setEffectOverdrive(float drive) { effect_->setDrive(drive); }
void SynthEngine::setEffectLowCut(float hz) { effect_->setLowCut(hz); }
void SynthEngine::setEffectHighCut(float hz) { effect_->setHighCut(hz); }
void SynthEngine::setEffectModSpeed(float hz) { effect_->setModSpeed(hz); }
void SynthEngine::setEffectModDepth(float value) { effect_->setModDepth(value); }
void SynthEngine::setOutputVolume(float gain) { effect_->setOutputVolume(gain); }

}  // namespace tolvane
