// The voice's mixing stage: ring modulator, the shared noise generator with its colour, and the mixer,
// between the two oscillators and the filter. The mixer's and the ring modulator's oscillator inputs
// follow the oscillators' selections.
#pragma once

#include <array>

#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/Mixer.h"
#include "engine/sound/NoiseGenerator.h"
#include "engine/sound/RingModulator.h"

namespace tolvane {

class OscillatorSection;

class MixerSection {
public:
    // levels: the level containers of OSC1, OSC2, ring modulator and noise (each max(0, level + mod)).
    MixerSection(ModuleGraph& graph, OscillatorSection& osc1, OscillatorSection& osc2,
                 const std::array<PolyModule*, Mixer::kChannels>& levels);

    // The noise colour as a frequency in Hz.
    void setNoiseColor(float hz);

    // The mixer container: the filter's input.
    PolyModule* output() { return &mixer_; }
    Poly<Mixer>& mixer() { return mixer_; }
    Poly<RingModulator>& ringModulator() { return ring_; }
    Poly<NoiseGenerator>& noise() { return noise_; }

private:
    Poly<ValueSource> colour_;
    Poly<NoiseGenerator> noise_;
    Poly<RingModulator> ring_;
    Poly<Mixer> mixer_;
};

}  // namespace tolvane
