// The plug-in's editor drawn without a display: the editor opens on an offscreen surface (through the
// effect record, as a host would open it), shows the chosen page, draws everything, and the pixels are
// handed back or written as PNG. Nothing plays.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Vst2.h"

namespace tolvane {

struct EditorPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;  // 0x00RRGGBB, row by row

    std::uint32_t at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

// The effect must be this synthesizer's, created in this process. page: 1 or 2. pngPath may be empty.
bool drawEditorOffscreen(vst2::AEffect* effect, int page, EditorPicture& picture, const std::string& pngPath,
                         std::string& error);

// An entry function that builds the synthesizer in this process (no module), for VstHost::create.
vst2::AEffect* VST_CALL createSynthInProcess(vst2::HostCallback host);

}  // namespace tolvane
