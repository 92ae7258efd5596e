#include "params/ControllerRouter.h"

namespace tolvane {

ControllerRouter::ControllerRouter(ControllerRouterHost& host, int voiceCount, int midiChannel)
    : VoiceAllocator(voiceCount, midiChannel), host_(host) {
    mapControl_.fill(kNoController);
    mapParameter_.fill(kNoParameter);
}

void ControllerRouter::setMapControl(int map, int controller) {
    if (map < 0 || map >= kNumControllerMaps) return;
    if (controller < 1 || controller > kLearn) controller = kNoController;
    // Sustain, All Sound Off and All Notes Off are never mapped: they read as the next controller.
    if (controller == 64 || controller == 120 || controller == 123) ++controller;
    mapControl_[static_cast<std::size_t>(map)] = controller;
}

void ControllerRouter::setMapParameter(int map, int parameter) {
    if (map < 0 || map >= kNumControllerMaps) return;
    if (parameter >= kNoParameter || parameter < 0) parameter = kNoParameter;
    mapParameter_[static_cast<std::size_t>(map)] = parameter;
}

void ControllerRouter::controlChange(int controller, int value) {
    if (controller == 0) {
        VoiceAllocator::controlChange(controller, value);
        // Bank select: the same program number in bank value % 4.
        host_.selectProgramFromMidi((value % 4) * kProgramsPerBank + host_.currentProgram() % kProgramsPerBank);
        return;
    }
    VoiceAllocator::controlChange(controller, value);
    if (controller == 64 || controller == 120 || controller == 123) return;

    for (int i = 0; i < kNumControllerMaps; ++i) {
        int before = mapControl_[static_cast<std::size_t>(i)];
        if (before == kLearn) host_.setParameterFromMidi(kFirstMapParameter + i, controlValue(controller));
        if (before == controller && mapParameter_[static_cast<std::size_t>(i)] != kNoParameter)
            host_.setParameterFromMidi(mapParameter_[static_cast<std::size_t>(i)], static_cast<float>(value) / 127.0f);
    }
}

void ControllerRouter::programChange(int program) {
    host_.selectProgramFromMidi((host_.currentProgram() / kProgramsPerBank) * kProgramsPerBank + (program & 0x7F));
}

}  // namespace tolvane
