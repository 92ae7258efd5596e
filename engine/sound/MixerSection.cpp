#include "engine/sound/MixerSection.h"

#include "engine/sound/OscillatorSection.h"
#include "dsp/FastMath.h"

namespace tolvane {
namespace {

// The colour of the "Noise Color" default (note 136), until the first setNoiseColor.
constexpr float kDefaultColourNote = 136.0f;

}  // namespace

MixerSection::MixerSection(ModuleGraph& graph, OscillatorSection& osc1, OscillatorSection& osc2,
                           const std::array<PolyModule*, Mixer::kChannels>& levels)
    : colour_(graph, 0, kRuleFromInputs, noteToHz(kDefaultColourNote)),
      noise_(graph, 1, kRuleFromInputs),
      ring_(graph, 2, kRuleFromInputs),
      mixer_(graph, 2 * Mixer::kChannels, kRuleFromInputs) {
    noise_.connectInput(&colour_, NoiseGenerator::kColour);
    osc1.connectOutputTo(&ring_, RingModulator::kOsc1);
    osc2.connectOutputTo(&ring_, RingModulator::kOsc2);
    osc1.connectOutputTo(&mixer_, Mixer::kOsc1);
    osc2.connectOutputTo(&mixer_, Mixer::kOsc2);
    mixer_.connectInput(&ring_, Mixer::kRing);
    mixer_.connectInput(&noise_, Mixer::kNoise);
    for (int i = 0; i < Mixer::kChannels; ++i)
        mixer_.connectInput(levels[static_cast<std::size_t>(i)], Mixer::kLevelInput + i);
}

void MixerSection::setNoiseColor(float hz) {
    colour_.forEach([hz](ValueSource& v) { v.set(hz); });
}

}  // namespace tolvane
