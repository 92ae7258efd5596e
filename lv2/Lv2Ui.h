// The editor as an LV2 X11 UI: the same window the VST 2.x editor opens, in the host's parent window,
// reaching the plug-in instance directly (instance access).
#pragma once

#include <lv2/ui/ui.h>

namespace tolvane {

const LV2UI_Descriptor* lv2UiDescriptor();

}  // namespace tolvane
