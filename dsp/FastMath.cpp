#include "dsp/FastMath.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace tolvane {
namespace {

struct Tables {
    float expInt[89];     // e^i
    float expFrac[513];   // e^(j/512)
    float expSlope[512];  // expFrac[j+1] - expFrac[j]
    float log2Base[513];  // log2(1 + k/512)
    float log2Slope[512]; // (log2Base[k+1] - log2Base[k]) / 16384
    float noteHz[160];    // 440 * 2^((i - 69)/12)
    float cent[101];      // 2^(c/1200)

    Tables() {
        for (int i = 0; i < 89; ++i) expInt[i] = static_cast<float>(std::exp(static_cast<double>(i)));
        for (int j = 0; j <= 512; ++j) expFrac[j] = static_cast<float>(std::exp(j / 512.0));
        for (int j = 0; j < 512; ++j) expSlope[j] = expFrac[j + 1] - expFrac[j];
        for (int k = 0; k <= 512; ++k) log2Base[k] = static_cast<float>(std::log2(1.0 + k / 512.0));
        for (int k = 0; k < 512; ++k) log2Slope[k] = (log2Base[k + 1] - log2Base[k]) / 16384.0f;
        for (int i = 0; i < 160; ++i) noteHz[i] = static_cast<float>(440.0 * std::pow(2.0, (i - 69) / 12.0));
        for (int c = 0; c <= 100; ++c) cent[c] = static_cast<float>(std::pow(2.0, c / 1200.0));
    }
};

const Tables gTables;

float expNonNegative(float x) {
    if (x >= 89.0f) x = 88.999f;  // the mappings never get here
    int i = static_cast<int>(x);
    float f = 512.0f * (x - static_cast<float>(i));
    int j = static_cast<int>(f);
    if (j > 511) j = 511;
    return gTables.expInt[i] * (gTables.expFrac[j] + (f - static_cast<float>(j)) * gTables.expSlope[j]);
}

}  // namespace

float fastExp(float x) {
    if (x >= 0.0f) return expNonNegative(x);
    if (-x >= 89.0f) return 0.0f;
    return 1.0f / expNonNegative(-x);
}

float fastLn(float x) {
    std::uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    int exponent = static_cast<int>((bits >> 23) & 0xFF);
    std::uint32_t mantissa = bits & 0x7FFFFF;
    std::uint32_t k = mantissa >> 14;
    float log2x = static_cast<float>(exponent - 127) + gTables.log2Base[k] +
                  static_cast<float>(mantissa & 0x3FFF) * gTables.log2Slope[k];
    return log2x * 0.6931472f;
}

float noteToHz(float n) {
    if (!(n >= 0.0f)) n = 0.0f;
    if (n > 159.99f) n = 159.99f;
    int i = static_cast<int>(n);
    int c = static_cast<int>(100.0f * (n - static_cast<float>(i)));
    if (c > 99) c = 99;
    return gTables.noteHz[i] * gTables.cent[c];
}

}  // namespace tolvane
