// The plug-in's voice allocator: adds bank select, program change and the sixteen controller maps with
// MIDI learn to the allocator's controller handling. Runs on the audio thread while events are applied.
#pragma once

#include <array>

#include "engine/voice/VoiceAllocator.h"
#include "params/ParameterIds.h"

namespace tolvane {

// What the router needs of the plug-in; calls arrive on the audio thread and take effect at once.
class ControllerRouterHost {
public:
    virtual ~ControllerRouterHost() = default;
    virtual void setParameterFromMidi(int index, float value) = 0;
    virtual void selectProgramFromMidi(int program) = 0;
    virtual int currentProgram() const = 0;
};

class ControllerRouter : public VoiceAllocator {
public:
    static constexpr int kNoController = 0;
    static constexpr int kLearn = 128;
    static constexpr int kNoParameter = 99;

    ControllerRouter(ControllerRouterHost& host, int voiceCount, int midiChannel);

    // Setters of parameters 144..159 and 160..175, with the quantised index.
    void setMapControl(int map, int controller);
    void setMapParameter(int map, int parameter);
    int mapControl(int map) const { return mapControl_[static_cast<std::size_t>(map)]; }

    void controlChange(int controller, int value) override;
    void programChange(int program) override;

    // The normalised value stored for controller c and for parameter p.
    static float controlValue(int c) { return (static_cast<float>(c) + 0.5f) / 129.0f; }
    static float parameterValue(int p) { return (static_cast<float>(p) + 0.5f) / 100.0f; }

private:
    ControllerRouterHost& host_;
    std::array<int, kNumControllerMaps> mapControl_{};
    std::array<int, kNumControllerMaps> mapParameter_{};
};

}  // namespace tolvane
