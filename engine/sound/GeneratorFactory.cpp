// One container per cell of the generator table (mode x waveform x quality). High quality synced
// generators reuse the Middle synced algorithm; each cell still has its own container, so every cell keeps
// its own phases.
#include "engine/sound/FmGenerators.h"
#include "engine/sound/SyncGenerators.h"
#include "engine/sound/WaveGenerator.h"

namespace tolvane {
namespace {

template <class T, typename... Args>
std::unique_ptr<PolyModule> container(ModuleGraph& graph, int numInputs, Args... args) {
    return std::make_unique<Poly<T>>(graph, numInputs, kRuleFromInputs, args...);
}

std::unique_ptr<PolyModule> makePlain(ModuleGraph& graph, int index) {
    switch (index) {
        case kSineLow: return container<LowSineGenerator>(graph, 1, 1);
        case kSineMiddle: return container<MiddleSineGenerator>(graph, 1, 1);
        case kSineHigh: return container<HighSineGenerator>(graph, 1, 1);
        case kTriangleLow: return container<LowTriangleGenerator>(graph, 1, 1);
        case kTriangleMiddle: return container<MiddleTriangleGenerator>(graph, 1, 1);
        // The free-running High triangle starts as if the previous block had one harmonic.
        case kTriangleHigh: return container<HighTriangleGenerator>(graph, 1, 1, 1);
        case kSawLow: return container<LowSawGenerator>(graph, 1, 1);
        case kSawMiddle: return container<MiddleSawGenerator>(graph, 1, 1);
        case kSawHigh: return container<HighSawGenerator>(graph, 1, 1);
        case kPulseLow: return container<LowPulseGenerator>(graph, 2, 2);
        case kPulseMiddle: return container<MiddlePulseGenerator>(graph, 2, 2);
        default: return container<HighPulseGenerator>(graph, 2, 2);
    }
}

std::unique_ptr<PolyModule> makeSync(ModuleGraph& graph, int index) {
    constexpr int kInputs = 3;
    switch (index) {
        case kSineLow: return container<LowSyncSineGenerator>(graph, kInputs);
        case kSineMiddle:
        case kSineHigh: return container<MiddleSyncSineGenerator>(graph, kInputs);
        case kTriangleLow: return container<LowSyncTriangleGenerator>(graph, kInputs);
        case kTriangleMiddle:
        case kTriangleHigh: return container<MiddleSyncTriangleGenerator>(graph, kInputs);
        case kSawLow: return container<LowSyncSawGenerator>(graph, kInputs);
        case kSawMiddle:
        case kSawHigh: return container<MiddleSyncSawGenerator>(graph, kInputs);
        case kPulseLow: return container<LowSyncPulseGenerator>(graph, kInputs);
        default: return container<MiddleSyncPulseGenerator>(graph, kInputs);
    }
}

std::unique_ptr<PolyModule> makeFm(ModuleGraph& graph, int index) {
    constexpr int kInputs = 4;
    switch (index) {
        case kSineLow: return container<FmLowSineGenerator>(graph, kInputs);
        case kSineMiddle: return container<FmMiddleSineGenerator>(graph, kInputs);
        case kSineHigh: return container<FmHighSineGenerator>(graph, kInputs);
        case kTriangleLow: return container<FmLowTriangleGenerator>(graph, kInputs);
        case kTriangleMiddle: return container<FmMiddleTriangleGenerator>(graph, kInputs);
        case kTriangleHigh: return container<FmHighTriangleGenerator>(graph, kInputs);
        case kSawLow: return container<FmLowSawGenerator>(graph, kInputs);
        case kSawMiddle: return container<FmMiddleSawGenerator>(graph, kInputs);
        case kSawHigh: return container<FmHighSawGenerator>(graph, kInputs);
        case kPulseLow: return container<FmLowPulseGenerator>(graph, kInputs);
        case kPulseMiddle: return container<FmMiddlePulseGenerator>(graph, kInputs);
        default: return container<FmHighPulseGenerator>(graph, kInputs);
    }
}

}  // namespace

std::unique_ptr<PolyModule> makeGeneratorContainer(ModuleGraph& graph, GeneratorMode mode, int waveformIndex) {
    if (waveformIndex < 0) waveformIndex = 0;
    if (waveformIndex >= kWaveformCount) waveformIndex = kWaveformCount - 1;
    switch (mode) {
        case GeneratorMode::Sync: return makeSync(graph, waveformIndex);
        case GeneratorMode::Fm: return makeFm(graph, waveformIndex);
        case GeneratorMode::Plain: break;
    }
    return makePlain(graph, waveformIndex);
}

}  // namespace tolvane
