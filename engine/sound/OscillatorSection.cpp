#include "engine/sound/OscillatorSection.h"

#include <algorithm>

namespace tolvane {

OscillatorSection::OscillatorSection(ModuleGraph& graph, OscillatorRole role, PolyModule* frequency,
                                     PolyModule* pulseWidth, PolyModule* fmDepth)
    : role_(role), frequency_(frequency) {
    links_.reserve(32);
    const GeneratorMode mode = role == OscillatorRole::Osc1 ? GeneratorMode::Plain : GeneratorMode::Fm;
    auto wire = [&](PolyModule& g, int index) {
        g.connectInput(frequency, WaveGenerator::kFrequency);
        if (readsPulseWidth(index)) g.connectInput(pulseWidth, WaveGenerator::kPulseWidth);
    };
    for (int i = 0; i < kWaveformCount; ++i) {
        auto& g = generators_[static_cast<std::size_t>(i)];
        g = makeGeneratorContainer(graph, mode, i);
        wire(*g, i);
        if (role == OscillatorRole::Osc2) g->connectInput(fmDepth, WaveGenerator::kFmDepth);
    }
    if (role == OscillatorRole::Osc1) {
        for (int i = 0; i < kWaveformCount; ++i) {
            auto& g = syncedGenerators_[static_cast<std::size_t>(i)];
            g = makeGeneratorContainer(graph, GeneratorMode::Sync, i);
            wire(*g, i);
        }
    }
}

OscillatorSection::~OscillatorSection() = default;

PolyModule* OscillatorSection::generator(int index, bool synced) const {
    index = std::clamp(index, 0, kWaveformCount - 1);
    const auto& set = synced && role_ == OscillatorRole::Osc1 ? syncedGenerators_ : generators_;
    return set[static_cast<std::size_t>(index)].get();
}

void OscillatorSection::setWaveform(int index) {
    index = std::clamp(index, 0, kWaveformCount - 1);
    if (index == waveform_) return;
    waveform_ = index;
    reroute();
}

void OscillatorSection::setSync(bool on) {
    if (role_ != OscillatorRole::Osc1 || on == sync_) return;
    sync_ = on;
    reroute();
}

void OscillatorSection::connectOutputTo(PolyModule* consumer, int input) {
    links_.push_back(OutputLink{consumer, input});
    consumer->connectInput(output(), input);
}

void OscillatorSection::reroute() {
    PolyModule* selected = output();
    for (const OutputLink& link : links_) link.consumer->connectInput(selected, link.input);
}

void linkOscillators(OscillatorSection& osc1, OscillatorSection& osc2) {
    for (auto& g : osc1.syncedGenerators_)
        if (g) g->connectInput(osc2.frequency(), WaveGenerator::kMasterIncrement);
    for (auto& g : osc2.generators_) osc1.connectOutputTo(g.get(), WaveGenerator::kModulator);
}

}  // namespace tolvane
