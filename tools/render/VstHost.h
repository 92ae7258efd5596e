// A small offline host for VST 2.x instruments.
//
// The host loads a plug-in module (or takes an entry function directly), answers the plug-in's
// callback, opens it, applies a program and parameter values, and renders a list of timed MIDI
// messages block by block: before each processing call it hands over the messages that fall in the
// block with their frame offsets. Time information (position, tempo, time signature) follows the
// rendering; with no tempo the host answers get-time with nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/Vst2.h"
#include "tools/render/MidiMessage.h"

namespace tolvane {

class VstHost {
public:
    static constexpr vst2::intptr kHostVersion = 2400;

    // Receives each rendered block; answering false stops the rendering.
    using AudioSink = std::function<bool(const float* left, const float* right, int frames)>;

    VstHost() = default;
    ~VstHost();  // closes the plug-in, then unloads the module
    VstHost(const VstHost&) = delete;
    VstHost& operator=(const VstHost&) = delete;

    // Loads a module and creates the plug-in through VSTPluginMain (or main).
    bool loadModule(const std::string& path, std::string& error);
    // Creates the plug-in through an entry function and opens it (effOpen).
    bool create(vst2::EntryProc entry, std::string& error);

    vst2::AEffect* effect() const { return effect_; }
    std::string effectName() const;
    std::string vendorName() const;

    // Host tempo in beats per minute; 0 or below means the host has no tempo.
    void setTempo(double bpm) { tempo_ = bpm; }
    void setTimeSignature(int numerator, int denominator);

    // Sample rate, block size, then mains on.
    bool start(double sampleRate, int blockSize, std::string& error);
    bool setProgram(int program, std::string& error);
    bool setParameter(int index, float value, std::string& error);

    // Renders totalFrames frames from the current position. Messages are placed at the frame nearest
    // their time; messages at or after the end are not sent.
    bool render(const std::vector<MidiMessage>& messages, std::uint64_t totalFrames, const AudioSink& sink,
                std::string& error);

    // CPU time of the process (all threads) spent inside the plug-in's event and processing calls.
    double processingCpuSeconds() const { return cpuSeconds_; }
    bool pluginWantsMidi() const { return wantsMidi_; }

    // Mains off and effClose; the effect must not be used afterwards. Called by the destructor.
    void close();

private:
    static vst2::intptr VST_CALL hostCallback(vst2::AEffect* effect, vst2::int32 opcode, vst2::int32 index,
                                              vst2::intptr value, void* ptr, float opt);
    vst2::intptr answer(vst2::AEffect* effect, vst2::int32 opcode, vst2::int32 index, vst2::intptr value,
                        void* ptr, float opt);
    vst2::intptr dispatch(vst2::int32 opcode, vst2::int32 index = 0, vst2::intptr value = 0, void* ptr = nullptr,
                          float opt = 0.0f);
    void updateTimeInfo(bool transportChanged);

    void* module_ = nullptr;
    vst2::AEffect* effect_ = nullptr;
    bool running_ = false;  // mains on
    bool wantsMidi_ = false;

    double sampleRate_ = 44100.0;
    int blockSize_ = 512;
    double tempo_ = 120.0;
    int sigNumerator_ = 4;
    int sigDenominator_ = 4;
    std::uint64_t position_ = 0;  // frames rendered so far
    double ppqPosition_ = 0.0;    // quarter notes rendered so far
    vst2::VstTimeInfo timeInfo_{};
    double cpuSeconds_ = 0.0;
};

}  // namespace tolvane
