// The signal unit every sound and modulation unit derives from.
//
// Evaluation is pulled and memoised per block: update(tick) first updates the unit's inputs for the
// same tick (depth first, in input order) and then computes. A unit updated twice for the same tick
// computes once, however many consumers read it; a unit asked for the tick it is still computing
// (a feedback loop) returns what it has, which is its previous block.
//
// Ticks count blocks since the last reset. They wrap around after 2^32 blocks (more than two weeks at
// 192 kHz) and are compared for equality only; whether one tick follows another is worked out in
// unsigned arithmetic, so the wrap is seamless. A unit that was never updated holds the tick before 0.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace tolvane {

class ModuleGraph;

enum class OutputKind { Scalar, Block, Quad };

class DspModule {
public:
    static constexpr int kMaxInputs = 8;

    explicit DspModule(ModuleGraph& graph, OutputKind kind = OutputKind::Scalar, int numInputs = 0);
    virtual ~DspModule();
    DspModule(const DspModule&) = delete;
    DspModule& operator=(const DspModule&) = delete;

    // True when tick is the one after previous, across the wrap as well.
    static bool follows(int tick, int previous) {
        return static_cast<std::uint32_t>(tick) == static_cast<std::uint32_t>(previous) + 1u;
    }
    // The tick argument for a running block count: the count modulo 2^32 as a signed value.
    static int tickOf(std::uint32_t count) {
        constexpr std::uint32_t kHalf = 0x80000000u;
        return count < kHalf ? static_cast<int>(count) : static_cast<int>(count - kHalf) - 0x7FFFFFFF - 1;
    }

    virtual void reset(int tick);
    // Computes the block for this tick unless that was done already (the check is inline: most calls
    // are repeated pulls of a shared unit). Units with a special update override updateBlock.
    void update(int tick) {
        if (tick != lastTick_) updateBlock(tick);
    }
    virtual void updateBlock(int tick);
    virtual void setSampleRate(float rate);
    virtual void setBlockSize(int size);
    virtual void sampleRateChanged() {}
    virtual void blockSizeChanged() {}
    virtual void clearOutput();
    virtual void resetInputs(int tick);
    virtual void updateInputs(int tick);
    virtual void onReset() {}
    virtual void compute() {}

    // Inputs are plain, unowned pointers; a container wires them (null when unconnected).
    int numInputs() const { return numInputs_; }
    DspModule* input(int k) const { return inputs_[static_cast<std::size_t>(k)]; }
    virtual void setInput(int k, DspModule* source) { inputs_[static_cast<std::size_t>(k)] = source; }

    // A hint from block-output units: every sample of this block equals the first (silence, typically).
    // Consumers may then do a block's work once; units that never set it are simply not steady.
    bool steadyBlock() const { return steady_; }
    float value() const { return scalar_; }
    const float* block() const { return block_.data(); }
    float* block() { return block_.data(); }
    const float* quad() const { return quad_.data(); }

    ModuleGraph& owner() const { return *owner_; }
    float sampleRate() const { return sampleRate_; }
    float blockRate() const { return blockRate_; }
    int blockSize() const { return blockSize_; }
    int lastTick() const { return lastTick_; }

protected:
    // The first value of an input's output: its scalar, or the first sample or coefficient.
    static float controlValue(const DspModule* m) {
        switch (m->kind_) {
            case OutputKind::Scalar: return m->scalar_;
            case OutputKind::Block: return m->block_.empty() ? 0.0f : m->block_[0];
            case OutputKind::Quad: return m->quad_[0];
        }
        return 0.0f;
    }
    float inputValue(int k) const { return controlValue(inputs_[static_cast<std::size_t>(k)]); }
    // Sets every sample of the block output to v (in groups of 16, which the compiler vectorises).
    void fillBlock(float v) {
        float* out = block_.data();
        const int n = static_cast<int>(block_.size());
        int i = 0;
        for (; i + 16 <= n; i += 16)
            for (int j = 0; j < 16; ++j) out[i + j] = v;
        for (; i < n; ++i) out[i] = v;
    }
    const float* inputBlock(int k) const { return inputs_[static_cast<std::size_t>(k)]->block(); }

    ModuleGraph* owner_;
    float sampleRate_;
    float blockRate_;
    int blockSize_;
    int lastTick_ = -1;
    float scalar_ = 0.0f;
    std::vector<float> block_;
    std::array<float, 4> quad_{};
    bool steady_ = false;

private:
    friend class ModuleGraph;
    DspModule* prevInGraph_ = nullptr;
    DspModule* nextInGraph_ = nullptr;
    OutputKind kind_;
    int numInputs_;
    std::array<DspModule*, kMaxInputs> inputs_{};
};

}  // namespace tolvane
