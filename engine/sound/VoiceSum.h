// Adds every audible voice into one mono block.
//
// Per block: for every voice slot the voice's amplitude a (from the amplitude container, never below 0)
// is pulled first; a voice is audible when a >= 0.00001. A voice audible now or in the previous block
// has its audio pulled and added with a gain ramped linearly from its previous amplitude:
// sample n (1 .. B) gets prev + n (a - prev) / B, so a voice falling silent fades to 0 within the block.
// A voice silent in this block and the previous one is not pulled at all: its oscillators, mixer and
// filter do not run. A reset forgets the previous amplitudes, so every voice fades in from 0. A voice
// whose block holds a non-finite or runaway value is left out of the sum for that block.
//
// One instance serves all voices: its container has a single voice and hands the instance the two
// source containers themselves rather than one of their voice instances.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"

namespace tolvane {

class VoiceSum : public DspModule {
public:
    enum Input : int { kAmplitudeInput = 0, kAudioInput = 1, kInputCount = 2 };
    static constexpr float kSilence = 0.00001f;
    static constexpr int kMaxVoices = PolyModule::kPrebuiltVoices;

    explicit VoiceSum(ModuleGraph& graph) : DspModule(graph, OutputKind::Block) {}

    void setSource(int input, PolyModule* source);
    PolyModule* source(int input) const { return input == kAmplitudeInput ? amplitude_ : audio_; }

    void updateBlock(int tick) override;
    void resetInputs(int tick) override;
    void onReset() override;

    // Voice slots looked at per block: the larger voice count of the two sources.
    int slotCount() const;
    float previousAmplitude(int slot) const { return previous_[static_cast<std::size_t>(slot)]; }
    // Voices whose audio was pulled in the last block.
    int voicesRendered() const { return rendered_; }

private:
    void dropRunawayVoices(int slots);

    PolyModule* amplitude_ = nullptr;
    PolyModule* audio_ = nullptr;
    std::array<float, kMaxVoices> previous_{};
    std::array<bool, kMaxVoices> audible_{};
    // This block: which voices were pulled, and the amplitude each one's ramp started from.
    std::array<bool, kMaxVoices> renderedNow_{};
    std::array<float, kMaxVoices> rampStart_{};
    int lastSlotCount_ = 0;
    int rendered_ = 0;
};

// The voice sum's container: one voice, inputs 0 amplitude and 1 audio (both per-voice containers).
class VoiceSumContainer : public Poly<VoiceSum> {
public:
    explicit VoiceSumContainer(ModuleGraph& graph) : Poly<VoiceSum>(graph, VoiceSum::kInputCount, kRuleOwnerVoices) {}
    VoiceSum& sum() const { return at(0); }

protected:
    void wireInput(int k) override;
};

}  // namespace tolvane
