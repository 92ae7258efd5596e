// The amplifier's output side: the voice sum that multiplies each voice's filtered audio by its
// amplitude (one value per voice and block) and adds the voices into the engine's mono signal.
//
// The amplitude container (one amplitude unit per voice) is built with the modulation units; the
// audio input follows the filter section's selection, which connects itself to input kAudioInput.
#pragma once

#include "engine/sound/VoiceSum.h"

namespace tolvane {

class AmpSection {
public:
    static constexpr int kAmplitudeInput = VoiceSum::kAmplitudeInput;
    static constexpr int kAudioInput = VoiceSum::kAudioInput;

    AmpSection(ModuleGraph& graph, PolyModule* amplitude, PolyModule* audio);

    // The mono voice sum: a one-voice container with a block output.
    VoiceSumContainer* output() { return &voiceSum_; }
    VoiceSum& voiceSum() const { return voiceSum_.sum(); }

private:
    VoiceSumContainer voiceSum_;
};

}  // namespace tolvane
