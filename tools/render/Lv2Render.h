// tolvane2-render --lv2 BUNDLE: the same rendering through the LV2 build.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/render/MidiMessage.h"
#include "tools/render/RenderOptions.h"

namespace tolvane {

// Loads options.lv2BundlePath, applies the preset of --program, the --load file and the --param values
// to the control ports, renders the messages into options.outputPath and reports like the VST rendering.
// Answers the program's exit status.
int renderLv2(const RenderOptions& options, const std::vector<MidiMessage>& messages, std::uint64_t totalFrames);

}  // namespace tolvane
