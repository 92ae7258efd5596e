// Single-cycle band-limited waveforms computed by additive synthesis when the library is loaded.
//
// The High quality oscillators read these while the fundamental is high enough that only a few harmonics
// fit below half the sample rate: the sawtooth up to 8 harmonics, the triangle up to harmonic 15. Above
// that the residual correction of a naive waveform takes over (see ResidualTables.h).
#pragma once

#include <array>
#include <functional>
#include <memory>

namespace tolvane {

// One cycle of N points with a slope array; the slope of the last point leads back to value[0].
class PeriodicTable {
public:
    // Fills value[i] = valueAt(i) for i = 0 .. N-1 (computed in double, stored as float), then the slopes.
    PeriodicTable(int points, const std::function<double(int)>& valueAt);

    // The value at phase p in cycles, 0 <= p <= 1, with linear interpolation. A phase that rounded up to
    // exactly 1.0 reads a guard point past the end that repeats value[0].
    float lookup(float p) const {
        float x = p * sizeAsFloat_;
        int i = static_cast<int>(x);
        return value_[i] + (x - static_cast<float>(i)) * slope_[i];
    }

    const float* values() const { return value_.get(); }
    const float* slopes() const { return slope_.get(); }
    int size() const { return size_; }

private:
    std::unique_ptr<float[]> value_;
    std::unique_ptr<float[]> slope_;
    float sizeAsFloat_;
    int size_;
};

// Band-limited forms of the sawtooth 0.5 - p with exactly h harmonics, h = 1 .. 8:
// value[i] = (1/pi) sum_{k=1..h} sin(2 pi k i / N) / k, N = 1252.
class SawTableSet {
public:
    static constexpr int kPoints = 1252;
    static constexpr int kTables = 8;

    SawTableSet();
    // The table with h harmonics, 1 <= h <= 8.
    const PeriodicTable& forHarmonics(int h) const { return *tables_[static_cast<std::size_t>(h - 1)]; }

private:
    std::array<std::unique_ptr<PeriodicTable>, kTables> tables_;
};

// Band-limited triangles with their peak at phase 0 (falling first) and the odd harmonics up to 2j + 1,
// j = 0 .. 7: value[i] = 4/(3 pi) sum_{odd k <= 2j+1} cos(2 pi k i / N) / k^2, N = 728. The factor makes
// the peak approach pi/6 as harmonics are added.
class TriangleTableSet {
public:
    static constexpr int kPoints = 728;
    static constexpr int kTables = 8;

    TriangleTableSet();
    // Entry j holds the odd harmonics 1 .. 2j + 1, 0 <= j <= 7.
    const PeriodicTable& entry(int j) const { return *tables_[static_cast<std::size_t>(j)]; }

private:
    std::array<std::unique_ptr<PeriodicTable>, kTables> tables_;
};

const SawTableSet& sawTableSet();
const TriangleTableSet& triangleTableSet();

}  // namespace tolvane
