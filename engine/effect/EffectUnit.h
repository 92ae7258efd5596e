// The stereo effect after the voice sum: two modulated delay lines with feedback, overdrive and cut
// filters, then the dry/wet mix, output volume and limiter. Channel 0 is the left output, channel 1 the
// right one.
//
//   voice sum -> input guard (dry) -+-> feed mix c -> delay line c -> overdrive c -> cut filter c -+-> output mix c
//                                   |        ^                                                     |        ^
//                                   |        +------------- feedback (own or other channel) -------+        |
//                                   +----------------------------------------------------------------------+
//
// Delay c reads the smoothed time base_c +- LFO: base_0 = (1 - d) T, base_1 = (1 + d) T with d half the
// diffusion, T the base delay time (free, or a tempo division). The engine pulls the left output, then the
// right one, once per block; that order closes the feedback loop (see FeedMix).
//
// Setters take the values of the parameter table (Hz, gains, drive factor, normalised values) and are
// called between blocks on the rendering thread. The display getters may be read from any thread.
#pragma once

#include <array>
#include <atomic>

#include "engine/effect/CutFilter.h"
#include "engine/effect/DelayLine.h"
#include "engine/effect/DelayModulation.h"
#include "engine/effect/OutputMix.h"
#include "engine/effect/SignalStages.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/framework/ValueSource.h"
#include "dsp/Mappings.h"
#include "dsp/TempoDisplayState.h"

namespace tolvane {

class EffectUnit : public DelayDisplayState {
public:
    enum FeedbackConnection { kParallel = 0, kCross = 1 };

    // voiceSum: the container of the summed voices (block output); may be connected later.
    // delayTime: the exponential mapping of unsynced delay times (0.001 s to 1 s).
    EffectUnit(ModuleGraph& graph, PolyModule* voiceSum, const ExponentialMapping& delayTime);
    ~EffectUnit() override;
    EffectUnit(const EffectUnit&) = delete;
    EffectUnit& operator=(const EffectUnit&) = delete;

    void connectInput(PolyModule* voiceSum) { guard_.connectInput(voiceSum, 0); }

    // The output units of channel 0 (left) and 1 (right); pull channel 0 first.
    DspModule& output(int channel) { return channels_[static_cast<std::size_t>(channel)].mix; }
    const float* left() const { return channels_[0].mix.block(); }
    const float* right() const { return channels_[1].mix.block(); }
    void update(int tick);
    void reset(int tick) {
        channels_[0].mix.reset(tick);
        channels_[1].mix.reset(tick);
    }

    // Delay time: tempo in beats per minute (<= 0: none), sync on/off, normalised time value.
    void setTempo(float bpm);
    void setTempoSync(bool on);
    void setDelayTime(float value);
    // Spread and modulation: normalised diffusion and depth, speed in Hz.
    void setDiffusion(float value);
    void setModDepth(float value);
    void setModSpeed(float hz);
    // Loop and colour: signed feedback gain, drive factor, corner frequencies in Hz.
    void setFeedback(float gain);
    void setFeedbackConnection(int connection);
    void setDrive(float drive);
    void setHighCut(float hz);
    void setLowCut(float hz);
    // Output: normalised mix, volume gain, effect on or bypassed.
    void setMix(float value);
    void setOutputVolume(float gain);
    void setEffectOn(bool on);

    // For the delay displays.
    float tempo() const override { return shownTempo_.load(std::memory_order_relaxed); }
    int divisionIndex() const override { return shownDivision_.load(std::memory_order_relaxed); }
    float currentDelaySeconds() const override { return shownSeconds_.load(std::memory_order_relaxed); }

    // Read by tests and tools.
    const DelayLine& delayLine(int channel) const { return channels_[static_cast<std::size_t>(channel)].delay; }

private:
    struct Channel {
        Channel(ModuleGraph& graph, float direction);
        ModulatedDelayTime time;
        Smoother smoother;
        FeedMix feed;
        DelayLine delay;
        Overdrive overdrive;
        CutFilter cut;
        OutputMix mix;
    };

    void updateDelayTime();
    void updateModulation();
    void applyMixAndVolume();
    void wireFeedback();
    void clearLoop();
    void setResting(bool resting);
    bool inputSilent() const;
    bool wetSilent() const;

    const ExponentialMapping& delayTimeMapping_;

    // Parameter values as received.
    float tempo_ = 120.0f;
    bool tempoSync_ = false;
    float delayTimeValue_ = 0.5f;
    float diffusion_ = 0.0f;
    float modDepth_ = 0.0f;
    float mixValue_ = 0.0f;
    float volumeValue_ = 1.0f;
    bool effectOn_ = true;
    int connection_ = kParallel;
    // Derived: the base delay time T and the division in use (-1 when free).
    float baseSeconds_ = 0.0f;
    int division_ = -1;

    std::atomic<float> shownTempo_{120.0f};
    std::atomic<int> shownDivision_{-1};
    std::atomic<float> shownSeconds_{0.0f};

    // Sources written by the setters.
    ValueSource feedbackGain_;
    ValueSource drive_;
    ValueSource highCut_;
    ValueSource lowCut_;
    ValueSource volume_;
    ValueSource mix_;  // the stored mix while on, 0 while bypassed

    Poly<InputGuard> guard_;
    ModulationLfo lfo_;
    SmoothCoefficient smoothing_;
    CutCoefficients cutCoefficients_;
    std::array<Channel, 2> channels_;
    // The wet path rests once its input has been silent, and its output below the silence threshold,
    // for longer than the delay lines hold; it wakes, empty, with the next sound.
    bool resting_ = false;
    int quietBlocks_ = 0;
};

}  // namespace tolvane
