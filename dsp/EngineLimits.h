// The engine's fixed sizes, known to every layer above it.
#pragma once

namespace tolvane {

constexpr int kBlockSize = 64;  // the engine's fixed block; one block is one tick
constexpr int kMaxVoices = 64;  // voices prebuilt in every per-voice container

}  // namespace tolvane
