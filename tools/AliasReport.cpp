// Prints the alias-to-signal ratio of every oscillator waveform and quality over a 2 kHz to 8 kHz sweep
// at 44.1 kHz.
#include <cstdio>

#include "engine/sound/WaveGenerator.h"
#include "support/AliasMeasure.h"

int main() {
    using namespace tolvane;
    const char* waveforms[] = {"Sine", "Triangle", "Sawtooth", "Pulse"};
    measure::SweepSettings settings;
    std::printf("Alias-to-signal ratio, %.0f Hz to %.0f Hz exponential sweep over %.0f s at %.0f Hz\n",
                settings.startHz, settings.endHz, settings.seconds, settings.sampleRate);
    std::printf("(frames of %d samples, hop %d, Blackman-Harris window; pulse width %.2f)\n\n", settings.frame,
                settings.hop, settings.pulseWidth);
    std::printf("%-10s %10s %10s %10s\n", "waveform", "Low", "Middle", "High");
    for (int w = 0; w < 4; ++w) {
        std::printf("%-10s", waveforms[w]);
        for (int q = 0; q < 3; ++q) std::printf(" %7.1f dB", measure::measureAliasing(3 * w + q, settings).ratioDb());
        std::printf("\n");
    }
    return 0;
}
