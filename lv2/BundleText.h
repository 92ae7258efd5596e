// The texts of the LV2 bundle, written at build time from the parameter table and the factory bank so
// that the bundle never disagrees with the plug-in: the manifest, the plug-in's description with one
// control port per parameter, the editor's description and the designed programs as presets.
#pragma once

#include <string>
#include <vector>

namespace tolvane {
namespace lv2 {

// Port symbols of the 176 parameters, derived from the long names: lower case letters, digits and
// single underscores ("OSC1 Mod A Depth" -> "osc1_mod_a_depth"); a symbol that several names would share
// carries the parameter index ("reserved_126").
std::vector<std::string> parameterSymbols();

// The shortest fixed-point decimal that reads back as exactly this float.
std::string decimal(float value);

std::string manifestText();
std::string pluginText();
std::string uiText();
std::string presetsText();

}  // namespace lv2
}  // namespace tolvane
