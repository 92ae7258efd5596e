// A small offline host for LV2 instruments (through lilv): loads a bundle, instantiates its plug-in,
// sets control ports, applies presets, saves and restores state the way a session does (as Turtle
// text), and renders a list of timed MIDI messages block by block with the same frame placement as
// VstHost, so that the two formats can be compared sample for sample.
//
// The plug-in is expected to have control inputs, one atom event input and two audio outputs; a
// transport position with the tempo is sent at the start of each rendering when a tempo is set.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/render/MidiMessage.h"

namespace tolvane {

class Lv2Host {
public:
    using AudioSink = std::function<bool(const float* left, const float* right, int frames)>;

    Lv2Host();
    ~Lv2Host();
    Lv2Host(const Lv2Host&) = delete;
    Lv2Host& operator=(const Lv2Host&) = delete;

    // Loads the bundle folder and instantiates its first plug-in, activated, at this rate and block size.
    bool load(const std::string& bundlePath, double sampleRate, int blockSize, std::string& error);
    bool loaded() const;

    std::string pluginName() const;
    std::string pluginUri() const;
    int controlPortCount() const;

    // Host tempo in beats per minute; 0 or below sends no transport position.
    void setTempo(double bpm) { tempo_ = bpm; }

    // Sets the control port with this index (parameter ports are numbered from 0).
    bool setControl(int port, float value, std::string& error);
    float control(int port) const;

    // Presets of the bundle, by URI; applying one restores it into the instance as a host does.
    std::vector<std::string> presetUris() const;
    bool applyPreset(const std::string& uri, std::string& error);

    // The instance's state (ports and properties) as a host saves it in a session, and back.
    bool saveState(std::string& turtle, std::string& error);
    bool restoreState(const std::string& turtle, std::string& error);

    // Renders totalFrames frames from the current position (see VstHost::render).
    bool render(const std::vector<MidiMessage>& messages, std::uint64_t totalFrames, const AudioSink& sink,
                std::string& error);

    // The instance's handle, as instance access hands it to an editor.
    void* instanceHandle() const;
    double processingCpuSeconds() const { return cpuSeconds_; }

    // Deactivates and frees the instance; called by the destructor.
    void close();

private:
    struct World;
    std::unique_ptr<World> world_;
    double sampleRate_ = 44100.0;
    int blockSize_ = 512;
    double tempo_ = 120.0;
    double cpuSeconds_ = 0.0;
};

}  // namespace tolvane
