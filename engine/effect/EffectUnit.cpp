#include "engine/effect/EffectUnit.h"

#include <algorithm>

#include "dsp/TempoDivisions.h"

namespace tolvane {

using effect::kSilence;

EffectUnit::Channel::Channel(ModuleGraph& graph, float direction)
    : time(graph, direction), smoother(graph), feed(graph), delay(graph), overdrive(graph), cut(graph), mix(graph) {}

EffectUnit::EffectUnit(ModuleGraph& graph, PolyModule* voiceSum, const ExponentialMapping& delayTime)
    : delayTimeMapping_(delayTime),
      feedbackGain_(graph, 0.0f),
      drive_(graph, 1.0f),
      highCut_(graph, 20000.0f),
      lowCut_(graph, 20.0f),
      volume_(graph, 1.0f),
      mix_(graph, 0.0f),
      guard_(graph, 1, kRuleFromInputs),
      lfo_(graph),
      smoothing_(graph, effect::kSmoothingSeconds),
      cutCoefficients_(graph),
      channels_{{Channel(graph, 1.0f), Channel(graph, -1.0f)}} {
    cutCoefficients_.setInput(CutCoefficients::kHighCut, &highCut_);
    cutCoefficients_.setInput(CutCoefficients::kLowCut, &lowCut_);
    DspModule* dry = guard_.instanceAt(0);
    for (Channel& c : channels_) {
        c.time.setInput(0, &lfo_);
        c.smoother.setInput(0, &c.time);
        c.smoother.setInput(1, &smoothing_);
        c.feed.setInput(FeedMix::kDry, dry);
        c.feed.setInput(FeedMix::kGain, &feedbackGain_);
        c.delay.setInput(DelayLine::kSignal, &c.feed);
        c.delay.setInput(DelayLine::kSeconds, &c.smoother);
        c.overdrive.setInput(Overdrive::kSignal, &c.delay);
        c.overdrive.setInput(Overdrive::kDrive, &drive_);
        c.cut.setInput(CutFilter::kSignal, &c.overdrive);
        c.cut.setInput(CutFilter::kCoefficients, &cutCoefficients_);
        c.mix.setInput(OutputMix::kDry, dry);
        c.mix.setInput(OutputMix::kWet, &c.cut);
        c.mix.setInput(OutputMix::kVolume, &volume_);
        c.mix.setInput(OutputMix::kMix, &mix_);
    }
    wireFeedback();
    connectInput(voiceSum);
    updateDelayTime();
    applyMixAndVolume();
}

EffectUnit::~EffectUnit() = default;

// Base delay time: a tempo division while synced to a known tempo, otherwise the free time mapping.
void EffectUnit::updateDelayTime() {
    if (tempoSync_ && tempo_ > 0.0f) {
        division_ = delayDivisionIndex(delayTimeValue_);
        baseSeconds_ = delayDivisionValue(division_) / tempo_;
    } else {
        division_ = -1;
        baseSeconds_ = delayTimeMapping_.map(delayTimeValue_);
    }
    shownTempo_.store(tempo_, std::memory_order_relaxed);
    shownDivision_.store(division_, std::memory_order_relaxed);
    shownSeconds_.store(baseSeconds_, std::memory_order_relaxed);
    updateModulation();
}

// Spread the two times apart and size the modulation. The amplitude shrinks with the speed so that the
// pitch deviation depends on the depth only; it never exceeds the shorter base time, so delay 1 stays
// at or above zero.
void EffectUnit::updateModulation() {
    const float d = effect::kSpreadPerDiffusion * diffusion_;
    const float shorter = (1.0f - d) * baseSeconds_;
    channels_[0].time.setBase(shorter);
    channels_[1].time.setBase((1.0f + d) * baseSeconds_);
    const float speed = lfo_.speed();
    const float amplitude = speed > 0.0f ? effect::kDepthSpeedLaw * modDepth_ / speed : shorter;
    lfo_.setAmplitude(std::min(amplitude, shorter));
}

void EffectUnit::setTempo(float bpm) {
    tempo_ = bpm;
    updateDelayTime();
}

void EffectUnit::setTempoSync(bool on) {
    tempoSync_ = on;
    updateDelayTime();
}

void EffectUnit::setDelayTime(float value) {
    delayTimeValue_ = value;
    updateDelayTime();
}

void EffectUnit::setDiffusion(float value) {
    diffusion_ = std::clamp(value, 0.0f, 1.0f);
    updateModulation();
}

void EffectUnit::setModDepth(float value) {
    modDepth_ = std::clamp(value, 0.0f, 1.0f);
    updateModulation();
}

void EffectUnit::setModSpeed(float hz) {
    lfo_.setSpeed(hz);
    updateModulation();
}

void EffectUnit::setFeedback(float gain) { feedbackGain_.set(gain); }
void EffectUnit::setDrive(float drive) { drive_.set(drive); }
void EffectUnit::setHighCut(float hz) { highCut_.set(hz); }
void EffectUnit::setLowCut(float hz) { lowCut_.set(hz); }

void EffectUnit::setMix(float value) {
    mixValue_ = value;
    applyMixAndVolume();
}

void EffectUnit::setOutputVolume(float gain) {
    volumeValue_ = gain;
    applyMixAndVolume();
}

void EffectUnit::setEffectOn(bool on) {
    effectOn_ = on;
    applyMixAndVolume();
}

// Bypass is a mix of 0. When the wet path turns audible, the cut filters start from rest; the delay
// lines empty themselves when they are pulled again after the pause.
void EffectUnit::applyMixAndVolume() {
    const float mix = effectOn_ ? mixValue_ : 0.0f;
    const bool wasAudible = mix_.value() > kSilence && volume_.value() > kSilence;
    const bool nowAudible = mix > kSilence && volumeValue_ > kSilence;
    if (nowAudible && !wasAudible)
        for (Channel& c : channels_) c.cut.clear();
    mix_.set(mix);
    volume_.set(volumeValue_);
}

void EffectUnit::setFeedbackConnection(int connection) {
    const int wanted = connection == kCross ? kCross : kParallel;
    if (wanted == connection_) return;
    connection_ = wanted;
    wireFeedback();
    clearLoop();
}

void EffectUnit::wireFeedback() {
    const bool cross = connection_ == kCross;
    channels_[0].feed.setInput(FeedMix::kFeedback, cross ? &channels_[1].cut : &channels_[0].cut);
    channels_[1].feed.setInput(FeedMix::kFeedback, cross ? &channels_[0].cut : &channels_[1].cut);
}

// Resting the wet path. With nothing but silence (the voice sum exactly 0) going in for longer than the
// longest delay, and nothing above the silence threshold coming out, every sample the delay lines can
// still play is silent: computing them would only produce the input guard's offset, which the low cut
// removes. The path is then not pulled, which is what makes an idle synthesizer cheap; the next sound
// wakes it with emptied delay lines and filters, exactly as after a pause in its updates.
void EffectUnit::update(int tick) {
    if (resting_) {
        guard_.instanceAt(0)->update(tick);
        if (!inputSilent()) setResting(false);
    }
    channels_[0].mix.update(tick);
    channels_[1].mix.update(tick);
    // A non-finite value reached the loop (each cut filter silenced its own block): nothing of it may
    // stay in the delay lines.
    const bool runaway = channels_[0].cut.takeRunaway();
    if (channels_[1].cut.takeRunaway() || runaway) clearLoop();
    if (resting_) return;
    bool quiet = inputSilent() && wetSilent();
    quietBlocks_ = quiet ? quietBlocks_ + 1 : 0;
    const int holdBlocks = static_cast<int>(static_cast<float>(effect::kMaxDelaySeconds) * channels_[0].mix.sampleRate() /
                                            static_cast<float>(channels_[0].mix.blockSize())) + 3;
    if (quietBlocks_ > holdBlocks) setResting(true);
}

void EffectUnit::setResting(bool resting) {
    resting_ = resting;
    quietBlocks_ = 0;
    for (Channel& c : channels_) c.mix.setWetResting(resting);
    if (!resting) clearLoop();
}

bool EffectUnit::inputSilent() const {
    const DspModule* dry = guard_.instanceAt(0);
    return dry->steadyBlock() && dry->block()[0] == effect::kInputOffset;
}

bool EffectUnit::wetSilent() const {
    for (const Channel& c : channels_) {
        if (c.cut.lastTick() != c.mix.lastTick()) continue;  // not pulled this block
        const float* x = c.cut.block();
        for (int k = 0; k < c.cut.blockSize(); ++k)
            if (!(x[k] < effect::kSilence && x[k] > -effect::kSilence)) return false;
    }
    return true;
}

void EffectUnit::clearLoop() {
    for (Channel& c : channels_) {
        c.delay.clear();
        c.cut.clear();
    }
}

}  // namespace tolvane
