// The common part of the twelve filter types: one instance filters one voice.
//
// Inputs (control values read once per block, audio as a block):
//   0 audio, 1 normalised cutoff c (cutoff Hz / sample rate, at most 0.499), 2 resonance r (0 .. 1;
//   left unconnected and never read by the first-order types), 3 saturation level L.
//
// Coefficients are designed only when c or r differ bit for bit from the previous block's values. Every
// coefficient and L then move linearly across the block, sample n (1 .. B) using
// previous + n (new - previous) / B, so the last sample of a block uses the new values. The first block
// after the state was cleared starts directly on the new values. A block that does not follow the
// previous one (the module was not rendered: a silent voice, a type change) and a reset clear the
// section states and forget the previous cutoff. So does a block whose section states end up non-finite,
// which is then output as silence.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"

namespace tolvane {

class FilterModule : public DspModule {
public:
    enum Input : int { kAudioInput = 0, kCutoffInput = 1, kResonanceInput = 2, kLevelInput = 3, kInputCount = 4 };
    static constexpr int kMaxCoefficients = 6;
    static constexpr int kMaxStates = 4;
    static constexpr float kDefaultKnee = 0.5f;
    static constexpr float kUnsetCutoff = -1.0f;
    // Design range of the normalised cutoff; the cutoff unit keeps c inside it already.
    static constexpr float kMinCutoff = 0.00001f;
    static constexpr float kMaxCutoff = 0.499f;

    FilterModule(ModuleGraph& graph, int coefficientCount, bool usesResonance);

    void updateBlock(int tick) override;
    void onReset() override { clearState(); }
    void compute() override;

    // Knee fraction of the saturation curve (0.5 until a curve is applied).
    void setKnee(float knee) { knee_ = knee; }
    float knee() const { return knee_; }

    bool usesResonance() const { return usesResonance_; }
    int coefficientCount() const { return coefficientCount_; }
    // The values the last block ended on.
    const float* coefficients() const { return previous_.data(); }
    float previousCutoff() const { return previousCutoff_; }
    float previousLevel() const { return previousLevel_; }
    float sectionState(int i) const { return state_[static_cast<std::size_t>(i)]; }

protected:
    // Where a block starts and how far each value moves per sample.
    struct Ramp {
        float from[kMaxCoefficients];
        float step[kMaxCoefficients];
        float level;
        float levelStep;
        float knee;
    };

    // Writes the type's coefficients for normalised cutoff c (already limited to the design range)
    // and resonance r (limited to 0 .. 1).
    virtual void design(float c, float r, float* out) const = 0;
    // Filters one block of n samples (a multiple of 16) from x into y, advancing the section states.
    virtual void render(const float* x, float* y, int n, const Ramp& ramp) = 0;

    // tan(pi c / 2), the prewarped corner of the low- and high-pass types.
    static float prewarp(float c);

    std::array<float, kMaxStates> state_{};

private:
    void clearState();

    int coefficientCount_;
    bool usesResonance_;
    float knee_ = kDefaultKnee;
    float previousCutoff_ = kUnsetCutoff;
    float previousResonance_ = 0.0f;
    float previousLevel_ = 0.0f;
    std::array<float, kMaxCoefficients> previous_{};
};

}  // namespace tolvane
