#include "engine/modulation/Envelope.h"

#include <cmath>

#include "dsp/FastMath.h"

namespace tolvane {

void EnvelopeTime::compute() { scalar_ = fastExp((inputValue(0) + inputValue(1)) * lnRange_ + lnMin_); }

void SustainLevel::compute() {
    float s = inputValue(0) + inputValue(1);
    scalar_ = s < 0.0f ? 0.0f : (s > 1.0f ? 1.0f : s);
}

void EnvelopeCore::onReset() {
    stage_ = kIdle;
    remainingSteps_ = 0;
    totalSteps_ = 1;
    plannedTime_ = -1.0f;
}

int EnvelopeCore::steps(float seconds, double fraction) const {
    double n = static_cast<double>(blockRate_) * fraction * static_cast<double>(seconds);
    int steps = static_cast<int>(n);
    return steps < 1 ? 1 : steps;
}

void EnvelopeCore::plan(float from, float to, float seconds, double fraction) {
    totalSteps_ = remainingSteps_ = steps(seconds, fraction);
    plannedTime_ = seconds;
    float c = stage_ == kAttackStage ? attackCurve_ : (stage_ == kDecayStage ? decayCurve_ : releaseCurve_);
    double curve = c >= 0.0f ? std::fmax(0.0001, c) : std::fmin(-0.0001, c);
    ratio_ = std::exp(curve / totalSteps_);
    factor_ = ratio_;
    a_ = (static_cast<double>(from) - to) / (1.0 - std::exp(curve));
    b_ = from - a_;
}

float EnvelopeCore::next() {
    double v = a_ * factor_ + b_;
    factor_ *= ratio_;
    --remainingSteps_;
    return static_cast<float>(v);
}

void EnvelopeCore::compute() {
    auto time = [this](int k) {
        float t = inputValue(k);
        return t > 0.0f ? t : 0.0f;
    };
    bool gate = inputValue(kGate) >= 0.5f;
    float out = scalar_;

    if (gate) {
        if (inputValue(kTrigger) >= 0.5f) stage_ = kIdle;
        if (stage_ == kAttackStage) {
            float attack = time(kAttack);
            if (attack != plannedTime_) plan(out, 1.0f, attack, remainingFraction());
            out = next();
            if (remainingSteps_ <= 0) {
                stage_ = kDecayStage;
                sustain_ = inputValue(kSustain);
                plan(1.0f, sustain_, time(kDecay), 1.0);
                out = 1.0f;
            }
        } else if (stage_ == kDecayStage) {
            float s = inputValue(kSustain);
            float decay = time(kDecay);
            if (s == sustain_) {
                if (decay != plannedTime_) plan(out, s, decay, remainingFraction());
            } else {
                sustain_ = s;
                plan(out, s, decay, 1.0);
            }
            out = remainingSteps_ < 2 ? sustain_ : next();
        } else {
            // Idle, or the gate rose again during the release: the attack starts from the current level.
            float attack = time(kAttack);
            if (steps(attack, 1.0) < 2) {
                stage_ = kDecayStage;
                sustain_ = inputValue(kSustain);
                plan(1.0f, sustain_, time(kDecay), 1.0);
                out = 1.0f;
            } else {
                stage_ = kAttackStage;
                plan(out, 1.0f, attack, 1.0);
                out = next();
            }
        }
    } else {
        if (stage_ == kReleaseStage) {
            float release = time(kRelease);
            if (release != plannedTime_) plan(out, 0.0f, release, remainingFraction());
            if (remainingSteps_ >= 2) {
                out = next();
            } else {
                stage_ = kIdle;
                out = 0.0f;
            }
        } else if (stage_ == kAttackStage || stage_ == kDecayStage) {
            stage_ = kReleaseStage;
            plan(out, 0.0f, time(kRelease), 1.0);
            if (totalSteps_ >= 2) {
                out = next();
            } else {
                stage_ = kIdle;
                out = 0.0f;
            }
        } else {
            out = 0.0f;
        }
    }
    scalar_ = out;
}

Envelope::Envelope(ModuleGraph& graph, PolyModule& gate, PolyModule& trigger, const ExponentialMapping& attackTime,
                   const ExponentialMapping& decayTime, const Modulation& modulation)
    : attackValue_(graph, 0, kRuleFromInputs, kInitialAttack),
      decayValue_(graph, 0, kRuleFromInputs, kInitialDecay),
      sustainValue_(graph, 0, kRuleFromInputs, kInitialSustain),
      releaseValue_(graph, 0, kRuleFromInputs, kInitialRelease),
      attackTime_(graph, 2, kRuleFromInputs, attackTime.lnMin(), attackTime.lnRange()),
      decayTime_(graph, 2, kRuleFromInputs, decayTime.lnMin(), decayTime.lnRange()),
      sustainLevel_(graph, 2, kRuleFromInputs),
      releaseTime_(graph, 2, kRuleFromInputs, decayTime.lnMin(), decayTime.lnRange()),
      core_(graph, EnvelopeCore::kNumInputs, kRuleFromInputs),
      attackCurvature_(attackCurvature(kInitialCurve)),
      decayCurvature_(decayCurvature(kInitialCurve)) {
    attackTime_.connectInput(&attackValue_, 0);
    attackTime_.connectInput(modulation.attack, 1);
    decayTime_.connectInput(&decayValue_, 0);
    decayTime_.connectInput(modulation.decay, 1);
    sustainLevel_.connectInput(&sustainValue_, 0);
    sustainLevel_.connectInput(modulation.sustain, 1);
    releaseTime_.connectInput(&releaseValue_, 0);
    releaseTime_.connectInput(modulation.release, 1);

    core_.connectInput(&gate, EnvelopeCore::kGate);
    core_.connectInput(&trigger, EnvelopeCore::kTrigger);
    core_.connectInput(&attackTime_, EnvelopeCore::kAttack);
    core_.connectInput(&decayTime_, EnvelopeCore::kDecay);
    core_.connectInput(&sustainLevel_, EnvelopeCore::kSustain);
    core_.connectInput(&releaseTime_, EnvelopeCore::kRelease);
    pushCurvatures();
}

float Envelope::attackCurvature(int index) {
    switch (index) {
        case 0: return -4.0f;
        case 2: return 3.0f;
        default: return 0.0f;
    }
}

float Envelope::decayCurvature(int index) {
    switch (index) {
        case 0: return -2.0f;
        case 2: return -6.0f;
        default: return -4.0f;
    }
}

void Envelope::setAttack(float value) { setValue(attackValue_, value); }
void Envelope::setDecay(float value) { setValue(decayValue_, value); }
void Envelope::setSustain(float value) { setValue(sustainValue_, value); }
void Envelope::setRelease(float value) { setValue(releaseValue_, value); }

void Envelope::setAttackCurve(int index) {
    attackCurvature_ = attackCurvature(index);
    pushCurvatures();
}

void Envelope::setDecayCurve(int index) {
    decayCurvature_ = decayCurvature(index);
    pushCurvatures();
}

void Envelope::pushCurvatures() {
    float a = attackCurvature_, d = decayCurvature_;
    core_.forEach([a, d](EnvelopeCore& core) { core.setCurvatures(a, d, kReleaseCurvature); });
}

}  // namespace tolvane
