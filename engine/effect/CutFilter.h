// The effect's high-cut and low-cut filters: a first-order low-pass followed by a first-order high-pass,
// both bilinear designs, with one coefficient set shared by the two channels.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

// Inputs: 0 high cut in Hz, 1 low cut in Hz (scalars). Output (quad): gain, low-pass pole, high-pass
// pole, and a changed flag (1 when the coefficients differ from the previous block's).
//
// With F raised to at least 1 Hz, t = tan(pi y / 2) from the tangent table at y = min(0.49, F / sample rate):
//   low-pass  A = th / (1 + th), pole_h = 1 - 2A;
//   high-pass Bl = 1 / (1 + tl), pole_l = 2 Bl - 1;   gain = A Bl.
// The table is read at half the normalised frequency, so each corner (the -3 dB point) lies at half
// the frequency set; the high cut therefore never reaches above 0.245 times the sample rate.
class CutCoefficients : public DspModule {
public:
    enum Input { kHighCut, kLowCut };
    enum Output { kGain, kLowPassPole, kHighPassPole, kChanged };

    explicit CutCoefficients(ModuleGraph& graph) : DspModule(graph, OutputKind::Quad, 2) {}
    void compute() override;
    // Coefficients depend on the rate: the next block recomputes them.
    void sampleRateChanged() override { previousHigh_ = previousLow_ = -1.0f; }

private:
    float previousHigh_ = -1.0f;
    float previousLow_ = -1.0f;
};

// Inputs: 0 the signal (block), 1 the coefficients (quad).
// Per sample: u[n] = gain (x[n] + x[n-1]) + pole_h u[n-1]       (high cut)
//             y[n] = u[n] - u[n-1] + pole_l y[n-1]              (low cut)
// When the coefficients changed, gain and poles move linearly from their current values to the new ones
// across the block. A new filter starts from gain and poles 0, so it fades in over its first block.
class CutFilter : public DspModule {
public:
    enum Input { kSignal, kCoefficients };

    explicit CutFilter(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 2) {}
    void compute() override;
    void onReset() override { clear(); }

    // Filter states and output block to zero; the coefficients stay.
    void clear();
    // True once after a block whose states turned non-finite; that block was output as silence and the
    // states cleared, and the owner clears the rest of the loop.
    bool takeRunaway() {
        const bool r = runaway_;
        runaway_ = false;
        return r;
    }

private:
    float gain_ = 0.0f;
    float lowPassPole_ = 0.0f;
    float highPassPole_ = 0.0f;
    float x1_ = 0.0f;  // previous input
    float u1_ = 0.0f;  // previous low-pass output
    float y1_ = 0.0f;  // previous output
    bool runaway_ = false;
};

}  // namespace tolvane
