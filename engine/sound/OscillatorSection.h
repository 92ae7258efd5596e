// One oscillator of a voice: a generator container for every waveform and quality, and the routing of
// the selected one to the consumers of the section's output.
//
// OSC1 holds two sets of 12 generators, free-running and hard-synced; "OSC1 Sync" chooses the set. OSC2
// holds 12 phase-modulated generators whose modulator is OSC1's selected generator. Changing the
// selection only re-points the consumers: every generator keeps its phase and state, and only the
// selected one is pulled, so the others are not rendered.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "engine/framework/PolyModule.h"
#include "engine/sound/WaveGenerator.h"

namespace tolvane {

enum class OscillatorRole { Osc1, Osc2 };

class OscillatorSection {
public:
    // frequency: the phase increment per voice (cycles per sample, 0 .. 0.499); pulseWidth: the pulse
    // width per voice (0 .. 1); fmDepth (OSC2 only): the FM depth per voice (>= 0). OSC1's sync master
    // and OSC2's modulator are connected by linkOscillators, which must run before the first block.
    OscillatorSection(ModuleGraph& graph, OscillatorRole role, PolyModule* frequency, PolyModule* pulseWidth,
                      PolyModule* fmDepth = nullptr);
    ~OscillatorSection();
    OscillatorSection(const OscillatorSection&) = delete;
    OscillatorSection& operator=(const OscillatorSection&) = delete;

    // Waveform index 0 .. 11 (3 x waveform + quality); out-of-range values are clamped.
    void setWaveform(int index);
    // OSC1 only: switches between the free-running and the synced set.
    void setSync(bool on);
    int waveform() const { return waveform_; }
    bool sync() const { return sync_; }
    OscillatorRole role() const { return role_; }

    // The selected generator container (audio block per voice).
    PolyModule* output() const { return generator(waveform_, sync_); }
    // Connects a consumer's input to the output now and again whenever the selection changes.
    void connectOutputTo(PolyModule* consumer, int input);

    PolyModule* frequency() const { return frequency_; }
    // A generator container by waveform index; synced is for OSC1's synced set.
    PolyModule* generator(int index, bool synced = false) const;

private:
    friend void linkOscillators(OscillatorSection& osc1, OscillatorSection& osc2);
    struct OutputLink {
        PolyModule* consumer;
        int input;
    };
    void reroute();

    OscillatorRole role_;
    PolyModule* frequency_;
    int waveform_ = kSineMiddle;  // the parameter's default
    bool sync_ = false;
    // OSC1: free-running generators; OSC2: phase-modulated generators.
    std::array<std::unique_ptr<PolyModule>, kWaveformCount> generators_;
    // OSC1 only: synced generators.
    std::array<std::unique_ptr<PolyModule>, kWaveformCount> syncedGenerators_;
    std::vector<OutputLink> links_;
};

// Links the two oscillators of a voice: OSC1's synced generators take OSC2's phase increment as their
// master increment, and every OSC2 generator takes OSC1's selected generator as its modulator (kept in
// step with OSC1's waveform and sync selection).
void linkOscillators(OscillatorSection& osc1, OscillatorSection& osc2);

}  // namespace tolvane
