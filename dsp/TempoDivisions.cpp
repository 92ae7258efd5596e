#include "dsp/TempoDivisions.h"

namespace tolvane {
namespace {

struct LfoDivision {
    const char* name;
    float cyclesPerWholeNote;
};

constexpr LfoDivision kLfoDivisions[kNumLfoDivisions] = {
    {"16", 1.0f / 16.0f},  {"12", 1.0f / 12.0f},  {"32/3", 3.0f / 32.0f}, {"8", 1.0f / 8.0f},
    {"6", 1.0f / 6.0f},    {"16/3", 3.0f / 16.0f}, {"4", 1.0f / 4.0f},    {"3", 1.0f / 3.0f},
    {"8/3", 3.0f / 8.0f},  {"2", 1.0f / 2.0f},    {"3/2", 2.0f / 3.0f},  {"4/3", 3.0f / 4.0f},
    {"1", 1.0f},           {"3/4", 4.0f / 3.0f},  {"2/3", 3.0f / 2.0f},  {"1/2", 2.0f},
    {"3/8", 8.0f / 3.0f},  {"1/3", 3.0f},         {"1/4", 4.0f},         {"3/16", 16.0f / 3.0f},
    {"1/6", 6.0f},         {"1/8", 8.0f},         {"3/32", 32.0f / 3.0f}, {"1/12", 12.0f},
    {"1/16", 16.0f},       {"3/64", 64.0f / 3.0f}, {"1/24", 24.0f},       {"1/32", 32.0f},
    {"3/128", 128.0f / 3.0f}, {"1/48", 48.0f},    {"1/64", 64.0f},
};

struct DelayDivision {
    const char* name;
    float secondsPerBeatPerMinute;
};

constexpr DelayDivision kDelayDivisions[kNumDelayDivisions] = {
    {"1/64", 240.0f / 64.0f},  {"1/48", 240.0f / 48.0f},  {"3/128", 240.0f * 3.0f / 128.0f},
    {"1/32", 240.0f / 32.0f},  {"1/24", 240.0f / 24.0f},  {"3/64", 240.0f * 3.0f / 64.0f},
    {"1/16", 240.0f / 16.0f},  {"1/12", 240.0f / 12.0f},  {"3/32", 240.0f * 3.0f / 32.0f},
    {"1/8", 240.0f / 8.0f},    {"1/6", 240.0f / 6.0f},    {"3/16", 240.0f * 3.0f / 16.0f},
    {"1/4", 240.0f / 4.0f},    {"1/3", 240.0f / 3.0f},    {"3/8", 240.0f * 3.0f / 8.0f},
    {"1/2", 240.0f / 2.0f},    {"2/3", 240.0f * 2.0f / 3.0f}, {"3/4", 240.0f * 3.0f / 4.0f},
    {"1", 240.0f},             {"4/3", 240.0f * 4.0f / 3.0f}, {"3/2", 240.0f * 3.0f / 2.0f},
    {"2", 480.0f},
};

int clampIndex(int index, int count) { return index < 0 ? 0 : (index >= count ? count - 1 : index); }

// clamp(trunc(count x), 0, count - 1), with NaN and negative values at 0.
int divisionOf(float x, int count) {
    float scaled = static_cast<float>(count) * x;
    if (!(scaled > 0.0f)) return 0;
    if (scaled >= static_cast<float>(count)) return count - 1;
    return static_cast<int>(scaled);
}

}  // namespace

const char* lfoDivisionName(int index) { return kLfoDivisions[clampIndex(index, kNumLfoDivisions)].name; }

float lfoDivisionFactor(int index) {
    return kLfoDivisions[clampIndex(index, kNumLfoDivisions)].cyclesPerWholeNote;
}

const char* delayDivisionName(int index) { return kDelayDivisions[clampIndex(index, kNumDelayDivisions)].name; }

float delayDivisionValue(int index) {
    return kDelayDivisions[clampIndex(index, kNumDelayDivisions)].secondsPerBeatPerMinute;
}

int lfoDivisionIndex(float speedValue) { return divisionOf(speedValue, kNumLfoDivisions); }

float lfoTempoRate(int index, float tempo) { return lfoDivisionFactor(index) * tempo / 240.0f; }

int delayDivisionIndex(float delayTimeValue) { return divisionOf(delayTimeValue, kNumDelayDivisions); }

float delayDivisionSeconds(int index, float tempo) {
    return tempo > 0.0f ? delayDivisionValue(index) / tempo : 0.0f;
}

}  // namespace tolvane
