// A voice's multimode filter: twelve filter modules, one container each, all fed by the same audio,
// cutoff, resonance and saturation-level containers, and a switch that hands either the selected
// module or (bypassed) the unfiltered audio to whatever consumes the section.
//
// The type index has 16 positions: the eight low- and high-pass types, then each band type twice.
// Only the selected module is pulled, so only it costs time; a module that comes back into use after a
// pause sees the tick gap and starts from cleared states on its new coefficients.
#pragma once

#include <array>
#include <memory>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"

namespace tolvane {

enum class FilterKind : int {
    LowPass6, LowPass12, LowPass18, LowPass24,
    HighPass6, HighPass12, HighPass18, HighPass24,
    BandPass12, BandPass24, BandReject12, BandReject24,
};

class FilterSection {
public:
    static constexpr int kTypeCount = 16;
    static constexpr int kKindCount = 12;
    static constexpr int kMaxConsumers = 4;
    static constexpr int kDefaultCurve = 1;  // the middle clip, knee 0.5 like a new module

    // All containers must outlive the section; the audio container is the section's output while
    // bypassed. LP6 and HP6 leave their resonance input unconnected.
    FilterSection(ModuleGraph& graph, PolyModule* audio, PolyModule* cutoff, PolyModule* resonance,
                  PolyModule* saturationLevel);
    ~FilterSection();
    FilterSection(const FilterSection&) = delete;
    FilterSection& operator=(const FilterSection&) = delete;

    // Each re-points the output (and every consumer) and then applies the curve's knee to the module
    // of the current type, on every voice instance.
    void setOn(bool on);
    void setType(int index);
    void setCurve(int index);

    bool on() const { return on_; }
    int type() const { return type_; }
    int curve() const { return curve_; }

    // The selected module while on, else the audio input.
    PolyModule* output() const { return output_; }
    // Connects consumer input `input` to the output now and again whenever the output changes.
    // At most kMaxConsumers pairs; a pair given twice is kept once.
    bool connectOutputTo(PolyModule* consumer, int input);

    static FilterKind kindForType(int index);
    PolyModule& module(FilterKind kind) const { return *modules_[static_cast<std::size_t>(kind)]; }

private:
    void select();
    void applyCurve();

    std::array<std::unique_ptr<PolyModule>, kKindCount> modules_;
    std::array<PolyModule*, kTypeCount> typeTable_{};
    PolyModule* audio_;
    PolyModule* output_;
    std::array<ConsumerLink, kMaxConsumers> consumers_{};
    int consumerCount_ = 0;
    bool on_ = true;
    int type_ = 0;
    int curve_ = kDefaultCurve;
};

}  // namespace tolvane
