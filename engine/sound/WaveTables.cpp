#include "engine/sound/WaveTables.h"

#include <cmath>

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;

}  // namespace

PeriodicTable::PeriodicTable(int points, const std::function<double(int)>& valueAt)
    : value_(new float[static_cast<std::size_t>(points) + 1]),
      slope_(new float[static_cast<std::size_t>(points) + 1]),
      sizeAsFloat_(static_cast<float>(points)),
      size_(points) {
    for (int i = 0; i < points; ++i) value_[i] = static_cast<float>(valueAt(i));
    for (int i = 0; i < points - 1; ++i) slope_[i] = value_[i + 1] - value_[i];
    slope_[points - 1] = value_[0] - value_[points - 1];
    value_[points] = value_[0];
    slope_[points] = 0.0f;
}

SawTableSet::SawTableSet() {
    for (int h = 1; h <= kTables; ++h) {
        tables_[static_cast<std::size_t>(h - 1)] = std::make_unique<PeriodicTable>(kPoints, [h](int i) {
            double sum = 0.0;
            for (int k = 1; k <= h; ++k) sum += std::sin(2.0 * kPi * k * i / kPoints) / k;
            return sum / kPi;
        });
    }
}

TriangleTableSet::TriangleTableSet() {
    for (int j = 0; j < kTables; ++j) {
        tables_[static_cast<std::size_t>(j)] = std::make_unique<PeriodicTable>(kPoints, [j](int i) {
            double sum = 0.0;
            for (int k = 1; k <= 2 * j + 1; k += 2) sum += std::cos(2.0 * kPi * k * i / kPoints) / (k * k);
            return sum * 4.0 / (3.0 * kPi);
        });
    }
}

namespace {

struct TableSets {
    SawTableSet saw;  // the sawtooth set is built first, then the triangle set
    TriangleTableSet triangle;
};

const TableSets& tableSets() {
    static const TableSets sets;
    return sets;
}

// Built while the library is loaded, before any voice exists.
[[maybe_unused]] const TableSets& gBuiltAtLoad = tableSets();

}  // namespace

const SawTableSet& sawTableSet() { return tableSets().saw; }
const TriangleTableSet& triangleTableSet() { return tableSets().triangle; }

}  // namespace tolvane
