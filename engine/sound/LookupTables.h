// Constant lookup tables shared by every voice, built once when the library is loaded and only read
// afterwards. Each table has a slope array, slope[i] = value[i+1] - value[i], so that a lookup at a
// fractional position x is value[i] + (x - i) slope[i] with i = trunc(x).
#pragma once

namespace tolvane {

// sin(2 pi k / 4096) for k = 0 .. 5119: one and a quarter cycles, so that the cosine is the same arrays
// read from index 1024.
struct SineTable {
    static constexpr int kSize = 4096;
    static constexpr int kLength = 5120;
    static constexpr int kCosineOffset = 1024;
    float value[kLength];
    float slope[kLength];

    // sin(2 pi p) for a phase p in cycles, 0 <= p < 1.
    float sine(float p) const { return lookup(p * kSize); }
    // cos(2 pi p) for 0 <= p < 1.
    float cosine(float p) const { return lookup(p * kSize + kCosineOffset); }
    float lookup(float x) const {
        int i = static_cast<int>(x);
        return value[i] + (x - static_cast<float>(i)) * slope[i];
    }
};

// tan(pi y) for y in [-0.5, 0.5), read at x = 4096 y + 2048; value[0] is a large negative stand-in for -infinity.
struct TangentTable {
    static constexpr int kSize = 4096;
    float value[kSize];
    float slope[kSize];

    float tanPi(float y) const { return lookup(static_cast<float>(kSize) * y + 2048.0f); }
    float lookup(float x) const {
        int i = static_cast<int>(x);
        if (i < 0) i = 0;
        if (i > kSize - 1) i = kSize - 1;
        return value[i] + (x - static_cast<float>(i)) * slope[i];
    }
};

// Frequencies of notes 0..159 and of hundredths of a semitone (no interpolation).
struct NoteFrequencyTable {
    float note[160];
    float cent[100];

    float frequency(float n) const {
        if (!(n >= 0.0f)) n = 0.0f;
        if (n > 159.99f) n = 159.99f;
        int i = static_cast<int>(n);
        int c = static_cast<int>(100.0f * (n - static_cast<float>(i)));
        if (c > 99) c = 99;
        return note[i] * cent[c];
    }
};

const SineTable& sineTable();
const TangentTable& tangentTable();
const NoteFrequencyTable& noteFrequencyTable();

}  // namespace tolvane
