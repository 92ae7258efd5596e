#include "engine/sound/LookupTables.h"

#include <cmath>

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct Tables {
    SineTable sine;
    TangentTable tangent;
    NoteFrequencyTable notes;

    Tables() {
        for (int k = 0; k < SineTable::kLength; ++k)
            sine.value[k] = static_cast<float>(std::sin(2.0 * kPi * k / SineTable::kSize));
        for (int k = 0; k < SineTable::kLength - 1; ++k) sine.slope[k] = sine.value[k + 1] - sine.value[k];
        sine.slope[SineTable::kLength - 1] = static_cast<float>(std::sin(2.0 * kPi * SineTable::kLength / SineTable::kSize)) -
                                             sine.value[SineTable::kLength - 1];

        tangent.value[0] = -3911.911865f;
        for (int k = 1; k < TangentTable::kSize; ++k)
            tangent.value[k] = static_cast<float>(std::tan(kPi * (k - 2048) / TangentTable::kSize));
        for (int k = 0; k < TangentTable::kSize - 1; ++k) tangent.slope[k] = tangent.value[k + 1] - tangent.value[k];
        tangent.slope[TangentTable::kSize - 1] = 0.0f;

        for (int n = 0; n < 160; ++n) notes.note[n] = static_cast<float>(440.0 * std::pow(2.0, (n - 69) / 12.0));
        for (int c = 0; c < 100; ++c) notes.cent[c] = static_cast<float>(std::pow(2.0, c / 1200.0));
    }
};

const Tables gTables;

}  // namespace

const SineTable& sineTable() { return gTables.sine; }
const TangentTable& tangentTable() { return gTables.tangent; }
const NoteFrequencyTable& noteFrequencyTable() { return gTables.notes; }

}  // namespace tolvane
