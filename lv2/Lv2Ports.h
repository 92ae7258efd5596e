// The LV2 build's fixed names and port numbers, shared by the plug-in, its editor, the bundle
// generator and the hosts in the tools and tests.
//
// Ports 0..175 are the parameters (port index = parameter index), then the event input (MIDI and
// transport position) and the two audio outputs.
#pragma once

#include <cstdint>

#include "params/ParameterIds.h"

namespace tolvane {
namespace lv2 {

constexpr const char* kPluginUri = "urn:brindlecot:tolvane2";
constexpr const char* kUiUri = "urn:brindlecot:tolvane2#ui";
// State properties: the plug-in's whole state as bytes, the ports as the plug-in last saw them, and the
// program a preset selects.
constexpr const char* kStateUri = "urn:brindlecot:tolvane2#state";
constexpr const char* kSeenPortsUri = "urn:brindlecot:tolvane2#seenPorts";
constexpr const char* kProgramUri = "urn:brindlecot:tolvane2#program";
// Preset n (0-based program number) is kPresetPrefix followed by n in three digits.
constexpr const char* kPresetPrefix = "urn:brindlecot:tolvane2#preset-";

constexpr const char* kBinaryName = "Tolvane2-lv2.so";
constexpr const char* kBundleName = "Tolvane2.lv2";

constexpr std::uint32_t kEventsPort = kNumParameters;       // 176
constexpr std::uint32_t kLeftPort = kNumParameters + 1;     // 177
constexpr std::uint32_t kRightPort = kNumParameters + 2;    // 178
constexpr std::uint32_t kPortCount = kNumParameters + 3;

}  // namespace lv2
}  // namespace tolvane
