#include "support/AliasMeasure.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <vector>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/WaveGenerator.h"
#include "tools/analyse/Fft.h"

namespace tolvane {
namespace measure {

using analyse::fft;
using analyse::kPi;

namespace {

// Half the width of the window's main lobe, in bins, plus one bin of margin.
constexpr int kLobeBins = 5;

double blackmanHarris(int n, int size) {
    double x = 2.0 * kPi * n / (size - 1);
    return 0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2 * x) - 0.01168 * std::cos(3 * x);
}

}  // namespace

double AliasMeasurement::ratioDb() const { return 10.0 * std::log10(aliasEnergy / signalEnergy); }

AliasMeasurement measureAliasing(int waveformIndex, const SweepSettings& s) {
    ModuleGraph graph;
    graph.setSampleRate(static_cast<float>(s.sampleRate));
    Poly<ValueSource> frequency(graph, 0, kRuleFromInputs, 0.0f);
    Poly<ValueSource> width(graph, 0, kRuleFromInputs, s.pulseWidth);
    std::unique_ptr<PolyModule> generator = makeGeneratorContainer(graph, GeneratorMode::Plain, waveformIndex);
    generator->connectInput(&frequency, WaveGenerator::kFrequency);
    if (readsPulseWidth(waveformIndex)) generator->connectInput(&width, WaveGenerator::kPulseWidth);
    DspModule& unit = *generator->instance(0);

    // Render: the fundamental of each block follows the exponential sweep.
    const int block = graph.blockSize();
    const int blocks = static_cast<int>(s.seconds * s.sampleRate) / block;
    std::vector<float> audio(static_cast<std::size_t>(blocks) * block);
    std::vector<double> fundamental(audio.size());
    for (int b = 0; b < blocks; ++b) {
        double t = static_cast<double>(b) * block / s.sampleRate;
        double hz = s.startHz * std::pow(s.endHz / s.startHz, t / s.seconds);
        frequency.at(0).set(static_cast<float>(hz / s.sampleRate));
        unit.update(b);
        for (int n = 0; n < block; ++n) {
            audio[static_cast<std::size_t>(b * block + n)] = unit.block()[n];
            fundamental[static_cast<std::size_t>(b * block + n)] = hz;
        }
    }

    // Analyse frame by frame.
    AliasMeasurement result;
    const double binHz = s.sampleRate / s.frame;
    const double nyquist = 0.5 * s.sampleRate;
    const double lobe = kLobeBins * binHz;
    std::vector<std::complex<double>> spectrum(static_cast<std::size_t>(s.frame));
    const auto frame = static_cast<std::size_t>(s.frame);
    for (std::size_t start = 0; start + frame <= audio.size(); start += static_cast<std::size_t>(s.hop)) {
        double lowest = fundamental[start];
        double highest = fundamental[start + frame - 1];
        for (int n = 0; n < s.frame; ++n)
            spectrum[static_cast<std::size_t>(n)] = audio[start + static_cast<std::size_t>(n)] * blackmanHarris(n, s.frame);
        fft(spectrum);
        for (int k = 0; k <= s.frame / 2; ++k) {
            double hz = k * binHz;
            if (hz < lobe) continue;  // DC is neither signal nor alias
            double energy = std::norm(spectrum[static_cast<std::size_t>(k)]);
            bool harmonic = false;
            for (int h = 1; h * lowest - lobe <= nyquist && !harmonic; ++h)
                harmonic = hz >= h * lowest - lobe && hz <= h * highest + lobe;
            (harmonic ? result.signalEnergy : result.aliasEnergy) += energy;
        }
    }
    return result;
}

}  // namespace measure
}  // namespace tolvane
