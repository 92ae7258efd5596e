#include "params/TextHelpers.h"

#include "dsp/FastMath.h"

namespace tolvane {
namespace {

constexpr double kPowersOfTen[16] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr double kHugeScaled = 100000000.0;
constexpr char kHugeText8[] = " Huge!  ";

char* copyText(char* text, const char* source, int from = 0) {
    int i = from;
    while (*source && i < kNumberTextSize - 1) text[i++] = *source++;
    text[i] = '\0';
    return text;
}

int textLength(const char* text) {
    int n = 0;
    while (text[n]) ++n;
    return n;
}

char* appendSuffix(char* text, const char* suffix) { return copyText(text, suffix ? suffix : "", textLength(text)); }

// Digits of a non-negative number into `digits`, least significant first; returns the count.
int reversedDigits(unsigned long long k, char* digits) {
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + k % 10);
        k /= 10;
    } while (k != 0);
    return count;
}

}  // namespace

char* intToText(char* text, int n, bool forceSign) {
    // Through a wider type, so that the most negative int keeps its magnitude.
    long long value = n;
    unsigned long long magnitude = static_cast<unsigned long long>(value < 0 ? -value : value);
    char digits[24];
    int count = reversedDigits(magnitude, digits);
    int pos = 0;
    if (n < 0)
        text[pos++] = '-';
    else if (forceSign)
        text[pos++] = '+';
    while (count > 0) text[pos++] = digits[--count];
    text[pos] = '\0';
    return text;
}

// The number is scaled to an integer count of units in the last place (rounded half up), and the
// digits of that count are laid out with the point inserted `decimals` places from the right.
// The scaling is done in double precision: a float cannot count units of 1e-4 beyond 1677.
char* fixedToText(char* text, float x, int decimals, bool forceSign) {
    if (decimals < 0) decimals = 0;
    if (decimals > 15) decimals = 15;
    bool negative = x < 0.0f;
    double magnitude = negative ? -static_cast<double>(x) : static_cast<double>(x);
    double scaled = magnitude * kPowersOfTen[decimals] + 0.5;
    if (!(scaled <= kHugeScaled)) return copyText(text, negative ? "-Huge!" : "+Huge!");

    char digits[32];
    int count = reversedDigits(static_cast<unsigned long long>(scaled), digits);
    // Leading zeros so that the integer part keeps at least one digit.
    while (count < decimals + 1) digits[count++] = '0';

    int pos = 0;
    if (negative)
        text[pos++] = '-';
    else if (forceSign)
        text[pos++] = '+';
    for (int i = count - 1; i >= 0; --i) {
        text[pos++] = digits[i];
        if (i == decimals && decimals > 0) text[pos++] = '.';
    }
    text[pos] = '\0';
    return text;
}

char* floatToText(char* text, float x, int width, bool forceSign) {
    float magnitude = x < 0.0f ? -x : x;
    int integerDigits = 1;
    float bound = 10.0f;
    while (magnitude >= bound && integerDigits < 12) {
        ++integerDigits;
        bound *= 10.0f;
    }
    int available = (x < 0.0f || forceSign) ? width - 1 : width;
    int decimals = available - integerDigits - 1;
    return fixedToText(text, x, decimals < 0 ? 0 : decimals, forceSign);
}

char* intWithSuffix(char* text, int n, const char* suffix, bool forceSign) {
    return appendSuffix(intToText(text, n, forceSign), suffix);
}

char* fixedWithSuffix(char* text, float x, int decimals, const char* suffix, bool forceSign) {
    return appendSuffix(fixedToText(text, x, decimals, forceSign), suffix);
}

char* floatWithSuffix(char* text, float x, int width, const char* suffix, bool forceSign) {
    return appendSuffix(floatToText(text, x, width, forceSign), suffix);
}

char* floatText8(char* text, float x) {
    bool negative = x < 0.0f;
    float magnitude = negative ? -x : x;
    if (!(magnitude < (negative ? 10000000.0f : 100000000.0f))) return copyText(text, kHugeText8);
    // The point and at least one decimal need two characters after the integer digits; when they
    // do not fit the number is written without a point. Rounding may add an integer digit
    // (9.9999999 -> 10.000000), in which case one decimal less is written.
    int integerDigits = 1;
    for (float bound = 10.0f; magnitude >= bound; bound *= 10.0f) ++integerDigits;
    int decimals = 8 - (negative ? 1 : 0) - integerDigits - 1;
    if (decimals < 0) decimals = 0;
    for (;;) {
        fixedToText(text, x, decimals);
        if (textLength(text) <= 8 || decimals == 0) return text;
        --decimals;
    }
}

char* integerText7(char* text, int n) {
    if (n >= 100000000) return copyText(text, kHugeText8);
    char number[24];
    intToText(number, n);
    int length = textLength(number);
    int pos = 0;
    while (pos < 7 - length) text[pos++] = ' ';
    return copyText(text, number, pos);
}

char* decibelText(char* text, float level) {
    if (!(level > 0.0f)) return copyText(text, "  -oo   ");
    // 20 log10(level) = (20 / ln 10) ln(level)
    return floatText8(text, 8.685889638f * fastLn(level));
}

char* hzFromSamplesText(char* text, float samples, float sampleRate) {
    return floatText8(text, samples == 0.0f ? 0.0f : sampleRate / samples);
}

char* msFromSamplesText(char* text, float samples, float sampleRate) {
    return floatText8(text, sampleRate > 0.0f ? samples * 1000.0f / sampleRate : 0.0f);
}

}  // namespace tolvane
