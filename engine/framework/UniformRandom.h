// The engine's one random generator: a 32-bit linear congruential state, initially 12345.
// LFO random waves, detune drift, oscillator start phases and noise all draw from it in turn.
// Draws are turned into floats through their low 23 bits used as a mantissa.
#pragma once

#include <cstdint>
#include <cstring>

namespace tolvane {

class UniformRandom {
public:
    static constexpr std::uint32_t kInitialState = 12345u;

    std::uint32_t next() {
        state_ = state_ * 1103515245u + 12345u;
        return state_;
    }
    // [0, 1)
    float unipolar() { return fromBits((next() & 0x7FFFFFu) | 0x3F800000u) - 1.0f; }
    // [-1, 1)
    float bipolar() { return fromBits((next() & 0x7FFFFFu) | 0x40000000u) - 3.0f; }
    // [-0.5, 0.5): the noise generator's draw
    float centred() { return fromBits((next() & 0x7FFFFFu) | 0x3F800000u) - 1.5f; }

    std::uint32_t state() const { return state_; }
    void setState(std::uint32_t s) { state_ = s; }

    static float fromBits(std::uint32_t bits) {
        float f;
        std::memcpy(&f, &bits, sizeof f);
        return f;
    }

private:
    std::uint32_t state_ = kInitialState;
};

}  // namespace tolvane
