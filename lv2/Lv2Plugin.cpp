#include "lv2/Lv2Plugin.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <lv2/atom/util.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>

#include "platform/linux/ZenityFileDialogs.h"

namespace tolvane {
namespace {

constexpr vst2::intptr kAnsweredHostVersion = 2400;

}  // namespace

std::unique_ptr<Lv2Plugin> Lv2Plugin::create(double sampleRate, const LV2_Feature* const* features,
                                             std::string& error) {
    LV2_URID_Map* map = nullptr;
    for (int i = 0; features && features[i]; ++i)
        if (std::strcmp(features[i]->URI, LV2_URID__map) == 0) map = static_cast<LV2_URID_Map*>(features[i]->data);
    if (!map) {
        error = "Tolvane2 needs the host's URID map (" LV2_URID__map ")";
        return nullptr;
    }
    if (!(sampleRate > 0.0) || !std::isfinite(sampleRate)) {
        error = "Tolvane2 needs a sample rate above 0";
        return nullptr;
    }
    return std::unique_ptr<Lv2Plugin>(new Lv2Plugin(map, sampleRate));
}

Lv2Plugin::Lv2Plugin(LV2_URID_Map* map, double sampleRate) {
    auto id = [map](const char* uri) { return map->map(map->handle, uri); };
    uris_.atomBlank = id(LV2_ATOM__Blank);
    uris_.atomObject = id(LV2_ATOM__Object);
    uris_.atomFloat = id(LV2_ATOM__Float);
    uris_.atomDouble = id(LV2_ATOM__Double);
    uris_.atomInt = id(LV2_ATOM__Int);
    uris_.atomLong = id(LV2_ATOM__Long);
    uris_.atomChunk = id(LV2_ATOM__Chunk);
    uris_.atomSequence = id(LV2_ATOM__Sequence);
    uris_.midiEvent = id(LV2_MIDI__MidiEvent);
    uris_.timePosition = id(LV2_TIME__Position);
    uris_.timeBeatsPerMinute = id(LV2_TIME__beatsPerMinute);
    uris_.state = id(lv2::kStateUri);
    uris_.ports = id(lv2::kSeenPortsUri);
    uris_.program = id(lv2::kProgramUri);

    for (auto& v : lastPortValue_) v.store(std::numeric_limits<float>::quiet_NaN(), std::memory_order_relaxed);
    for (auto& w : editorWrote_) w.store(false, std::memory_order_relaxed);
    for (int i = 0; i < kMaxEventsPerStretch; ++i) {
        vst2::VstMidiEvent& e = midiEvents_[static_cast<std::size_t>(i)];
        e.type = vst2::kVstMidiType;
        e.byteSize = sizeof(vst2::VstMidiEvent);
        eventList_.events[i] = reinterpret_cast<vst2::VstEvent*>(&e);
    }
    timeInfo_.sampleRate = sampleRate;

    plugin_.reset(new SynthPlugin(hostCallback, std::unique_ptr<FileDialogs>(new ZenityFileDialogs)));
    plugin_->effect()->user = this;
    plugin_->setSampleRate(static_cast<float>(sampleRate));
    // The ports' defaults are the init program's values. The instance starts as the editor's Init command
    // leaves it: the init sound in the edit buffer, so that what the host shows and what sounds agree, on
    // program A-1, so that MIDI program changes select among the designed programs of bank A.
    plugin_->runCommand(EditorCommand::Init);
}

Lv2Plugin::~Lv2Plugin() = default;

// What the plug-in object asks of its host, in LV2 terms: tempo from the last transport position,
// parameter reports and gestures to the open editor window, which writes them to the ports.
vst2::intptr VST_CALL Lv2Plugin::hostCallback(vst2::AEffect* effect, vst2::int32 opcode, vst2::int32 index,
                                              vst2::intptr /*value*/, void* /*ptr*/, float opt) {
    Lv2Plugin* self = effect ? static_cast<Lv2Plugin*>(effect->user) : nullptr;
    switch (opcode) {
        case vst2::audioMasterVersion: return kAnsweredHostVersion;
        case vst2::audioMasterWantMidi: return 1;
        case vst2::audioMasterGetTime:
            if (!self || !self->tempoKnown_) return 0;
            return reinterpret_cast<vst2::intptr>(&self->timeInfo_);
        case vst2::audioMasterAutomate:
            if (self && index >= 0 && index < kNumParameters)
                if (Lv2PortWriter* writer = self->writer_.load(std::memory_order_acquire)) {
                    self->noteEditorWrite(index);
                    writer->writeParameter(index, opt);
                }
            return 0;
        case vst2::audioMasterBeginEdit:
        case vst2::audioMasterEndEdit:
            if (self && index >= 0 && index < kNumParameters)
                if (Lv2PortWriter* writer = self->writer_.load(std::memory_order_acquire))
                    writer->touchParameter(index, opcode == vst2::audioMasterBeginEdit);
            return 0;
        default: return 0;
    }
}

void Lv2Plugin::connectPort(std::uint32_t port, void* data) {
    if (port < static_cast<std::uint32_t>(kNumParameters)) {
        controls_[port] = static_cast<const float*>(data);
    } else if (port == lv2::kEventsPort) {
        events_ = static_cast<const LV2_Atom_Sequence*>(data);
    } else if (port == lv2::kLeftPort || port == lv2::kRightPort) {
        outputs_[port - lv2::kLeftPort] = static_cast<float*>(data);
    }
}

void Lv2Plugin::activate() { plugin_->resume(); }

void Lv2Plugin::deactivate() { plugin_->suspend(); }

bool Lv2Plugin::attachWriter(Lv2PortWriter* writer) {
    Lv2PortWriter* none = nullptr;
    return writer_.compare_exchange_strong(none, writer, std::memory_order_acq_rel);
}

void Lv2Plugin::detachWriter(Lv2PortWriter* writer) {
    Lv2PortWriter* expected = writer;
    writer_.compare_exchange_strong(expected, nullptr, std::memory_order_acq_rel);
}

void Lv2Plugin::noteEditorWrite(int index) {
    if (index >= 0 && index < kNumParameters)
        editorWrote_[static_cast<std::size_t>(index)].store(true, std::memory_order_release);
}

// A port counts as changed when its value differs from the value it had at the last run. A change that
// only echoes what the plug-in already has (the editor wrote it, or the value is the current one) is
// taken note of and not applied again.
void Lv2Plugin::readControlPorts() {
    const SynthEditor& model = plugin_->synthEditor();
    const bool adopt = adoptPorts_.exchange(false, std::memory_order_acq_rel);
    for (int i = 0; i < kNumParameters; ++i) {
        const auto slot = static_cast<std::size_t>(i);
        const bool echo = editorWrote_[slot].exchange(false, std::memory_order_acquire);
        const float* port = controls_[slot];
        if (!port) continue;
        const float v = *port;
        if (std::isnan(v) || v == lastPortValue_[slot].load(std::memory_order_relaxed)) continue;
        const bool taken = adopt && !(haveRestoredSeen_ && v != restoredSeen_[slot]);
        if (!taken && !echo && v != model.value(i)) plugin_->setParameterOnAudioThread(i, v);
        // Published after the change is applied: a save that reads this value also finds the change.
        lastPortValue_[slot].store(v, std::memory_order_release);
    }
}

void Lv2Plugin::readPosition(const LV2_Atom_Object* object) {
    const LV2_Atom* bpm = nullptr;
    lv2_atom_object_get(object, uris_.timeBeatsPerMinute, &bpm, 0);
    if (!bpm) return;
    double tempo = -1.0;
    if (bpm->type == uris_.atomFloat) tempo = reinterpret_cast<const LV2_Atom_Float*>(bpm)->body;
    else if (bpm->type == uris_.atomDouble) tempo = reinterpret_cast<const LV2_Atom_Double*>(bpm)->body;
    else if (bpm->type == uris_.atomInt) tempo = reinterpret_cast<const LV2_Atom_Int*>(bpm)->body;
    else if (bpm->type == uris_.atomLong) tempo = static_cast<double>(reinterpret_cast<const LV2_Atom_Long*>(bpm)->body);
    if (!(tempo > 0.0) || !std::isfinite(tempo)) return;
    timeInfo_.tempo = tempo;
    timeInfo_.flags = vst2::kVstTempoValid;
    tempoKnown_ = true;
}

// Hands the collected MIDI events to the plug-in and renders frames [begin, end). An empty stretch keeps
// its events for the next one (their offsets are counted from the same frame). So does a stretch too short
// to start a new 64-sample block (it only delivers samples already made): its events belong to the next
// block, which starts in a later stretch, and are kept for it at offset 0 rather than handed over now,
// since the plug-in forgets events it has not used when it is given the next list.
void Lv2Plugin::renderStretch(std::uint32_t begin, std::uint32_t end) {
    if (end <= begin) return;
    const std::uint32_t frames = end - begin;
    if (eventList_.numEvents > 0) {
        if (frames <= plugin_->pendingSamples()) {
            for (int i = 0; i < eventList_.numEvents; ++i) midiEvents_[static_cast<std::size_t>(i)].deltaFrames = 0;
        } else {
            plugin_->processEvents(reinterpret_cast<const vst2::VstEvents*>(&eventList_));
            eventList_.numEvents = 0;
        }
    }
    float* outputs[2] = {outputs_[0] + begin, outputs_[1] + begin};
    plugin_->processReplacing(nullptr, outputs, static_cast<int>(frames));
}

void Lv2Plugin::run(std::uint32_t frames) {
    readControlPorts();
    if (!outputs_[0] || !outputs_[1]) return;
    std::uint32_t begin = 0;
    if (events_) {
        LV2_ATOM_SEQUENCE_FOREACH(events_, event) {
            std::uint32_t at = event->time.frames < 0 ? 0u : static_cast<std::uint32_t>(event->time.frames);
            if (at < begin) at = begin;  // out of order: played at once
            if (at > frames) at = frames;
            if (event->body.type == uris_.midiEvent) {
                // Channel messages only; system messages and longer ones are not the engine's.
                const auto* bytes = reinterpret_cast<const std::uint8_t*>(LV2_ATOM_BODY_CONST(&event->body));
                if (event->body.size == 0 || event->body.size > 3 || bytes[0] < 0x80 || bytes[0] >= 0xF0) continue;
                if (eventList_.numEvents == kMaxEventsPerStretch) {
                    renderStretch(begin, at);
                    begin = at;
                    if (eventList_.numEvents == kMaxEventsPerStretch) continue;  // all at one frame: the rest is dropped
                }
                vst2::VstMidiEvent& e = midiEvents_[static_cast<std::size_t>(eventList_.numEvents++)];
                e.deltaFrames = static_cast<vst2::int32>(at - begin);
                e.midiData[0] = static_cast<char>(bytes[0]);
                e.midiData[1] = static_cast<char>(event->body.size > 1 ? bytes[1] : 0);
                e.midiData[2] = static_cast<char>(event->body.size > 2 ? bytes[2] : 0);
                e.midiData[3] = 0;
            } else if (event->body.type == uris_.atomObject || event->body.type == uris_.atomBlank) {
                const auto* object = reinterpret_cast<const LV2_Atom_Object*>(&event->body);
                if (object->body.otype != uris_.timePosition) continue;
                // Events before the position play with the tempo they had.
                renderStretch(begin, at);
                if (at > begin) begin = at;
                readPosition(object);
            }
        }
    }
    renderStretch(begin, frames);
    // Events still held (at the very end of the run, or kept for the next block) play at its start.
    for (int i = 0; i < eventList_.numEvents; ++i) midiEvents_[static_cast<std::size_t>(i)].deltaFrames = 0;
}

// A session keeps the same bytes as the VST bank chunk: the current program, the sound being edited, the
// controller maps and the 512 programs, so that it also brings back what is not a port (names, banks).
LV2_State_Status Lv2Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle) {
    // The ports as the plug-in last saw them: 176 big-endian floats (NaN for a port not seen yet). Read
    // before the state, so that every value read here is already in it (save may run during a run).
    unsigned char seen[kNumParameters * 4];
    for (int i = 0; i < kNumParameters; ++i) {
        const float v = lastPortValue_[static_cast<std::size_t>(i)].load(std::memory_order_acquire);
        std::uint32_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        for (int b = 0; b < 4; ++b) seen[4 * i + b] = static_cast<unsigned char>(bits >> (24 - 8 * b));
    }
    const std::vector<unsigned char> bytes = plugin_->saveState(StateScope::Bank);
    const std::uint32_t flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    LV2_State_Status status = store(handle, uris_.state, bytes.data(), bytes.size(), uris_.atomChunk, flags);
    if (status != LV2_STATE_SUCCESS) return status;
    return store(handle, uris_.ports, seen, sizeof seen, uris_.atomChunk, flags);
}

// A session's state replaces everything; a preset names the program it selects, which is then selected
// as the host's program change does. A state that does not read changes nothing.
LV2_State_Status Lv2Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) {
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* state = retrieve(handle, uris_.state, &size, &type, &flags);
    if (state) {
        if (type != uris_.atomChunk || !plugin_->loadState(StateScope::Bank, state, size)) return LV2_STATE_ERR_BAD_TYPE;
        const auto* seen = static_cast<const unsigned char*>(retrieve(handle, uris_.ports, &size, &type, &flags));
        haveRestoredSeen_ = seen && type == uris_.atomChunk && size == sizeof(float) * kNumParameters;
        for (int i = 0; haveRestoredSeen_ && i < kNumParameters; ++i) {
            std::uint32_t bits = 0;
            for (int b = 0; b < 4; ++b) bits = (bits << 8) | seen[4 * i + b];
            std::memcpy(&restoredSeen_[static_cast<std::size_t>(i)], &bits, sizeof bits);
            lastPortValue_[static_cast<std::size_t>(i)].store(restoredSeen_[static_cast<std::size_t>(i)],
                                                             std::memory_order_relaxed);
        }
        adoptPorts_.store(true, std::memory_order_release);
        return LV2_STATE_SUCCESS;
    }
    const void* program = retrieve(handle, uris_.program, &size, &type, &flags);
    if (!program) return LV2_STATE_SUCCESS;
    std::int64_t number = -1;
    if (type == uris_.atomInt && size == sizeof(std::int32_t)) {
        std::int32_t value;
        std::memcpy(&value, program, sizeof value);
        number = value;
    } else if (type == uris_.atomLong && size == sizeof(std::int64_t)) {
        std::memcpy(&number, program, sizeof number);
    }
    if (number < 0 || number >= kNumPrograms) return LV2_STATE_ERR_BAD_TYPE;
    plugin_->setProgram(static_cast<int>(number));
    return LV2_STATE_SUCCESS;
}

}  // namespace tolvane
