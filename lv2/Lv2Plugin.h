// The LV2 adapter: one plug-in instance as an LV2 host sees it, over the same plug-in object the VST 2.x
// module uses.
//
// The adapter plays the VST host towards the plug-in object. Control ports are read at the start of every
// run; a port whose value the host changed since the last run is applied at once on the audio thread,
// like a mapped controller. Events of the atom input are cut into stretches at each transport position
// (whose tempo the object then reads through get-time): MIDI events go to the object with their frame
// offsets, then the stretch is rendered. The object renders in 64-sample blocks and keeps what a run does
// not take, exactly as under a VST host, so the same MIDI and parameters give the same samples.
//
// Changes the plug-in makes itself (the editor, controller maps, learning, program change by MIDI) reach
// the host as port writes of the editor window, which reaches this object through instance access; the
// host's echo of such a write is not applied a second time.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include "host/SynthPlugin.h"
#include "lv2/Lv2Ports.h"

namespace tolvane {

// The editor window's side of the port writes (host GUI thread).
class Lv2PortWriter {
public:
    virtual ~Lv2PortWriter() = default;
    virtual void writeParameter(int index, float value) = 0;
    virtual void touchParameter(int index, bool grabbed) = 0;
};

class Lv2Plugin {
public:
    // MIDI events handed to the object per stretch; a run with more is cut into more stretches.
    static constexpr int kMaxEventsPerStretch = 512;

    // Needs the host's URID map; answers null with the reason in error without it.
    static std::unique_ptr<Lv2Plugin> create(double sampleRate, const LV2_Feature* const* features,
                                             std::string& error);
    ~Lv2Plugin();
    Lv2Plugin(const Lv2Plugin&) = delete;
    Lv2Plugin& operator=(const Lv2Plugin&) = delete;

    void connectPort(std::uint32_t port, void* data);
    void activate();
    void deactivate();
    void run(std::uint32_t frames);

    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle);
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

    SynthPlugin& plugin() { return *plugin_; }

    // The editor window attaches while it is open (GUI thread); only one at a time.
    bool attachWriter(Lv2PortWriter* writer);
    void detachWriter(Lv2PortWriter* writer);
    // The window wrote this port: the host's echo of it is not a change to apply.
    void noteEditorWrite(int index);

private:
    struct Uris {
        LV2_URID atomBlank, atomObject, atomFloat, atomDouble, atomInt, atomLong, atomChunk, atomSequence;
        LV2_URID midiEvent, timePosition, timeBeatsPerMinute;
        LV2_URID state, ports, program;
    };
    // Enough room for the list header and kMaxEventsPerStretch pointers (same layout as the VST list).
    struct EventList {
        vst2::int32 numEvents;
        vst2::intptr reserved;
        vst2::VstEvent* events[kMaxEventsPerStretch];
    };

    Lv2Plugin(LV2_URID_Map* map, double sampleRate);

    static vst2::intptr VST_CALL hostCallback(vst2::AEffect* effect, vst2::int32 opcode, vst2::int32 index,
                                              vst2::intptr value, void* ptr, float opt);
    void readControlPorts();
    void readPosition(const LV2_Atom_Object* object);
    void renderStretch(std::uint32_t begin, std::uint32_t end);

    Uris uris_{};
    std::unique_ptr<SynthPlugin> plugin_;

    std::array<const float*, kNumParameters> controls_{};
    const LV2_Atom_Sequence* events_ = nullptr;
    float* outputs_[2] = {nullptr, nullptr};

    // The port values last seen by a run (written by the audio thread, read by save). A session keeps
    // them beside the state. After a restore, the next run compares the restored ports with them: a port
    // the plug-in had seen at that value is taken as it is (the state holds the sound, also where the
    // plug-in changed itself after the host set the port); a port the host changed after the plug-in last
    // looked (set and saved without a run in between) is applied.
    std::array<std::atomic<float>, kNumParameters> lastPortValue_{};
    std::atomic<bool> adoptPorts_{false};
    std::array<float, kNumParameters> restoredSeen_{};
    bool haveRestoredSeen_ = false;
    std::array<std::atomic<bool>, kNumParameters> editorWrote_{};

    EventList eventList_{};
    std::array<vst2::VstMidiEvent, kMaxEventsPerStretch> midiEvents_{};
    vst2::VstTimeInfo timeInfo_{};
    bool tempoKnown_ = false;

    std::atomic<Lv2PortWriter*> writer_{nullptr};
};

}  // namespace tolvane
