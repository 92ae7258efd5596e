// Measures how much aliasing an oscillator generator produces.
//
// The generator is rendered over an exponential sweep of its fundamental; the rendering is cut into short
// overlapping frames, each windowed (four-term Blackman-Harris) and transformed. In each frame every
// spectrum bin within reach of a harmonic of the frame's fundamental (the harmonic's frequency range
// across the frame, widened by the window's main lobe) counts as signal; every other bin, apart from
// the region around DC, counts as alias. The result is the total alias energy over the total signal
// energy, in dB.
#pragma once

namespace tolvane {
namespace measure {

struct SweepSettings {
    double sampleRate = 44100.0;
    double startHz = 2000.0;
    double endHz = 8000.0;
    double seconds = 8.0;
    int frame = 2048;
    int hop = 1024;
    float pulseWidth = 0.5f;
};

struct AliasMeasurement {
    double signalEnergy = 0.0;
    double aliasEnergy = 0.0;
    double ratioDb() const;
};

// Renders the free-running generator of a waveform index (0 .. 11) over the sweep and measures it.
AliasMeasurement measureAliasing(int waveformIndex, const SweepSettings& settings = {});

}  // namespace measure
}  // namespace tolvane
