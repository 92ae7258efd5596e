#include "engine/sound/AmpSection.h"

namespace tolvane {

AmpSection::AmpSection(ModuleGraph& graph, PolyModule* amplitude, PolyModule* audio) : voiceSum_(graph) {
    voiceSum_.connectInput(amplitude, kAmplitudeInput);
    voiceSum_.connectInput(audio, kAudioInput);
}

}  // namespace tolvane
