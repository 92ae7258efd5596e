#include "tools/render/Lv2Host.h"

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_map>

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/atom/forge.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/presets/presets.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/urid/urid.h>

namespace tolvane {
namespace {

double processCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Room for one block's event sequence: the header, a transport position and the MIDI events.
std::size_t sequenceBytes(std::size_t events) { return 256 + events * 32; }

}  // namespace

struct Lv2Host::World {
    LilvWorld* world = nullptr;
    const LilvPlugin* plugin = nullptr;
    LilvInstance* instance = nullptr;
    bool active = false;

    // URIDs: the host's own table.
    std::vector<std::string> uris;
    std::unordered_map<std::string, LV2_URID> ids;
    LV2_URID_Map map{this, &World::mapUri};
    LV2_URID_Unmap unmap{this, &World::unmapUri};
    LV2_Feature mapFeature{LV2_URID__map, &map};
    LV2_Feature unmapFeature{LV2_URID__unmap, &unmap};
    const LV2_Feature* features[3] = {&mapFeature, &unmapFeature, nullptr};

    // Ports.
    std::vector<float> values;  // one per port; control inputs are connected to theirs
    std::vector<bool> isControl;
    std::unordered_map<std::string, std::uint32_t> bySymbol;
    std::uint32_t eventsPort = UINT32_MAX;
    std::uint32_t outputPorts[2] = {UINT32_MAX, UINT32_MAX};
    std::vector<std::uint64_t> sequence;  // 8-byte aligned atom buffer
    std::vector<float> outputs[2];

    static LV2_URID mapUri(LV2_URID_Map_Handle handle, const char* uri) {
        auto* self = static_cast<World*>(handle);
        auto found = self->ids.find(uri);
        if (found != self->ids.end()) return found->second;
        self->uris.emplace_back(uri);
        const auto id = static_cast<LV2_URID>(self->uris.size());
        self->ids.emplace(uri, id);
        return id;
    }
    static const char* unmapUri(LV2_URID_Unmap_Handle handle, LV2_URID id) {
        auto* self = static_cast<World*>(handle);
        return id >= 1 && id <= self->uris.size() ? self->uris[id - 1].c_str() : nullptr;
    }
    LV2_URID id(const char* uri) { return mapUri(this, uri); }

    static const void* portValue(const char* symbol, void* user, std::uint32_t* size, std::uint32_t* type) {
        auto* self = static_cast<World*>(user);
        auto found = self->bySymbol.find(symbol);
        if (found == self->bySymbol.end() || !self->isControl[found->second]) {
            *size = 0;
            *type = 0;
            return nullptr;
        }
        *size = sizeof(float);
        *type = self->id(LV2_ATOM__Float);
        return &self->values[found->second];
    }
    static void setPortValue(const char* symbol, void* user, const void* value, std::uint32_t size,
                             std::uint32_t type) {
        auto* self = static_cast<World*>(user);
        auto found = self->bySymbol.find(symbol);
        if (found == self->bySymbol.end() || !self->isControl[found->second]) return;
        float v;
        if (type == self->id(LV2_ATOM__Float) && size == sizeof(float)) {
            std::memcpy(&v, value, sizeof v);
        } else if (type == self->id(LV2_ATOM__Double) && size == sizeof(double)) {
            double d;
            std::memcpy(&d, value, sizeof d);
            v = static_cast<float>(d);
        } else if (type == self->id(LV2_ATOM__Int) && size == sizeof(std::int32_t)) {
            std::int32_t i;
            std::memcpy(&i, value, sizeof i);
            v = static_cast<float>(i);
        } else {
            return;
        }
        self->values[found->second] = v;
    }

    ~World() {
        if (instance) {
            if (active) lilv_instance_deactivate(instance);
            lilv_instance_free(instance);
        }
        if (world) lilv_world_free(world);
    }
};

Lv2Host::Lv2Host() = default;
Lv2Host::~Lv2Host() { close(); }

bool Lv2Host::loaded() const { return world_ && world_->instance; }

bool Lv2Host::load(const std::string& bundlePath, double sampleRate, int blockSize, std::string& error) {
    close();
    if (!(sampleRate > 0.0) || blockSize <= 0) {
        error = "the sample rate and block size must be above 0";
        return false;
    }
    sampleRate_ = sampleRate;
    blockSize_ = blockSize;
    world_.reset(new World);
    World& w = *world_;
    w.world = lilv_world_new();
    std::string folder = bundlePath;
    if (folder.empty() || folder.back() != '/') folder += '/';
    LilvNode* bundle = lilv_new_file_uri(w.world, nullptr, folder.c_str());
    lilv_world_load_bundle(w.world, bundle);
    lilv_node_free(bundle);

    // The bundle's plug-in (the world holds nothing else).
    const LilvPlugins* plugins = lilv_world_get_all_plugins(w.world);
    LilvIter* first = lilv_plugins_begin(plugins);
    if (lilv_plugins_is_end(plugins, first)) {
        error = "no LV2 plug-in found in " + bundlePath;
        world_.reset();
        return false;
    }
    w.plugin = lilv_plugins_get(plugins, first);

    LilvNode* inputClass = lilv_new_uri(w.world, LV2_CORE__InputPort);
    LilvNode* outputClass = lilv_new_uri(w.world, LV2_CORE__OutputPort);
    LilvNode* controlClass = lilv_new_uri(w.world, LV2_CORE__ControlPort);
    LilvNode* audioClass = lilv_new_uri(w.world, LV2_CORE__AudioPort);
    LilvNode* atomClass = lilv_new_uri(w.world, LV2_ATOM__AtomPort);
    const std::uint32_t portCount = lilv_plugin_get_num_ports(w.plugin);
    std::vector<float> defaults(portCount, NAN);
    lilv_plugin_get_port_ranges_float(w.plugin, nullptr, nullptr, defaults.data());
    w.values.assign(portCount, 0.0f);
    w.isControl.assign(portCount, false);
    int audioOutputs = 0;
    bool unsupported = false;
    for (std::uint32_t i = 0; i < portCount; ++i) {
        const LilvPort* port = lilv_plugin_get_port_by_index(w.plugin, i);
        w.bySymbol[lilv_node_as_string(lilv_port_get_symbol(w.plugin, port))] = i;
        const bool input = lilv_port_is_a(w.plugin, port, inputClass);
        if (lilv_port_is_a(w.plugin, port, controlClass) && input) {
            w.isControl[i] = true;
            w.values[i] = std::isnan(defaults[i]) ? 0.0f : defaults[i];
        } else if (lilv_port_is_a(w.plugin, port, atomClass) && input && w.eventsPort == UINT32_MAX) {
            w.eventsPort = i;
        } else if (lilv_port_is_a(w.plugin, port, audioClass) && lilv_port_is_a(w.plugin, port, outputClass) &&
                   audioOutputs < 2) {
            w.outputPorts[audioOutputs++] = i;
        } else if (lilv_port_is_a(w.plugin, port, audioClass) && input) {
            unsupported = true;  // an effect: this host has no audio to give it
        }
    }
    for (LilvNode* node : {inputClass, outputClass, controlClass, audioClass, atomClass}) lilv_node_free(node);
    if (audioOutputs < 2 || w.eventsPort == UINT32_MAX || unsupported) {
        error = "the plug-in is not an instrument (an event input, two audio outputs, no audio inputs)";
        world_.reset();
        return false;
    }

    w.instance = lilv_plugin_instantiate(w.plugin, sampleRate, w.features);
    if (!w.instance) {
        error = "the plug-in could not be instantiated";
        world_.reset();
        return false;
    }
    w.sequence.assign(sequenceBytes(0) / 8, 0);
    for (auto& output : w.outputs) output.assign(static_cast<std::size_t>(blockSize), 0.0f);
    for (std::uint32_t i = 0; i < portCount; ++i) {
        if (w.isControl[i]) lilv_instance_connect_port(w.instance, i, &w.values[i]);
        else lilv_instance_connect_port(w.instance, i, nullptr);
    }
    lilv_instance_connect_port(w.instance, w.outputPorts[0], w.outputs[0].data());
    lilv_instance_connect_port(w.instance, w.outputPorts[1], w.outputs[1].data());
    lilv_instance_connect_port(w.instance, w.eventsPort, w.sequence.data());
    lilv_instance_activate(w.instance);
    w.active = true;
    return true;
}

std::string Lv2Host::pluginName() const {
    if (!world_ || !world_->plugin) return "";
    LilvNode* name = lilv_plugin_get_name(world_->plugin);
    std::string text = name ? lilv_node_as_string(name) : "";
    lilv_node_free(name);
    return text;
}

std::string Lv2Host::pluginUri() const {
    return world_ && world_->plugin ? lilv_node_as_uri(lilv_plugin_get_uri(world_->plugin)) : "";
}

int Lv2Host::controlPortCount() const {
    return world_ ? static_cast<int>(std::count(world_->isControl.begin(), world_->isControl.end(), true)) : 0;
}

bool Lv2Host::setControl(int port, float value, std::string& error) {
    if (!loaded() || port < 0 || static_cast<std::size_t>(port) >= world_->values.size() ||
        !world_->isControl[static_cast<std::size_t>(port)]) {
        error = "no control input port " + std::to_string(port);
        return false;
    }
    world_->values[static_cast<std::size_t>(port)] = value;
    return true;
}

float Lv2Host::control(int port) const {
    if (!loaded() || port < 0 || static_cast<std::size_t>(port) >= world_->values.size()) return 0.0f;
    return world_->values[static_cast<std::size_t>(port)];
}

std::vector<std::string> Lv2Host::presetUris() const {
    std::vector<std::string> uris;
    if (!loaded()) return uris;
    LilvNode* presetClass = lilv_new_uri(world_->world, LV2_PRESETS__Preset);
    LilvNodes* presets = lilv_plugin_get_related(world_->plugin, presetClass);
    LILV_FOREACH (nodes, i, presets) uris.emplace_back(lilv_node_as_uri(lilv_nodes_get(presets, i)));
    lilv_nodes_free(presets);
    lilv_node_free(presetClass);
    std::sort(uris.begin(), uris.end());
    return uris;
}

bool Lv2Host::applyPreset(const std::string& uri, std::string& error) {
    if (!loaded()) {
        error = "no plug-in loaded";
        return false;
    }
    LilvNode* preset = lilv_new_uri(world_->world, uri.c_str());
    lilv_world_load_resource(world_->world, preset);
    LilvState* state = lilv_state_new_from_world(world_->world, &world_->map, preset);
    lilv_node_free(preset);
    if (!state) {
        error = "no preset " + uri;
        return false;
    }
    lilv_state_restore(state, world_->instance, &World::setPortValue, world_.get(), 0, world_->features);
    lilv_state_free(state);
    return true;
}

bool Lv2Host::saveState(std::string& turtle, std::string& error) {
    if (!loaded()) {
        error = "no plug-in loaded";
        return false;
    }
    LilvState* state = lilv_state_new_from_instance(world_->plugin, world_->instance, &world_->map, nullptr, nullptr,
                                                    nullptr, nullptr, &World::portValue, world_.get(),
                                                    LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, world_->features);
    if (!state) {
        error = "the plug-in's state could not be saved";
        return false;
    }
    char* text = lilv_state_to_string(world_->world, &world_->map, &world_->unmap, state,
                                      "urn:tolvane2-render:session", nullptr);
    lilv_state_free(state);
    if (!text) {
        error = "the plug-in's state could not be written as text";
        return false;
    }
    turtle = text;
    lilv_free(text);
    return true;
}

bool Lv2Host::restoreState(const std::string& turtle, std::string& error) {
    if (!loaded()) {
        error = "no plug-in loaded";
        return false;
    }
    LilvState* state = lilv_state_new_from_string(world_->world, &world_->map, turtle.c_str());
    if (!state) {
        error = "the saved state could not be read";
        return false;
    }
    lilv_state_restore(state, world_->instance, &World::setPortValue, world_.get(), 0, world_->features);
    lilv_state_free(state);
    return true;
}

bool Lv2Host::render(const std::vector<MidiMessage>& messages, std::uint64_t totalFrames, const AudioSink& sink,
                     std::string& error) {
    if (!loaded()) {
        error = "no plug-in loaded";
        return false;
    }
    World& w = *world_;
    struct Placed {
        std::uint64_t frame;
        std::size_t index;
    };
    std::vector<Placed> order;
    for (std::size_t i = 0; i < messages.size(); ++i) {
        const double frame = std::floor(std::max(0.0, messages[i].seconds) * sampleRate_ + 0.5);
        if (frame < static_cast<double>(totalFrames)) order.push_back(Placed{static_cast<std::uint64_t>(frame), i});
    }
    std::stable_sort(order.begin(), order.end(), [](const Placed& a, const Placed& b) { return a.frame < b.frame; });
    std::size_t mostInBlock = 0;
    for (std::size_t firstInBlock = 0; firstInBlock < order.size();) {
        const std::uint64_t block = order[firstInBlock].frame / static_cast<std::uint64_t>(blockSize_);
        std::size_t last = firstInBlock;
        while (last < order.size() && order[last].frame / static_cast<std::uint64_t>(blockSize_) == block) ++last;
        mostInBlock = std::max(mostInBlock, last - firstInBlock);
        firstInBlock = last;
    }
    w.sequence.assign(sequenceBytes(mostInBlock) / 8, 0);
    lilv_instance_connect_port(w.instance, w.eventsPort, w.sequence.data());

    LV2_Atom_Forge forge;
    lv2_atom_forge_init(&forge, &w.map);
    const LV2_URID midiEvent = w.id(LV2_MIDI__MidiEvent);
    const LV2_URID position = w.id(LV2_TIME__Position);
    const LV2_URID beatsPerMinute = w.id(LV2_TIME__beatsPerMinute);

    std::size_t next = 0;
    std::uint64_t done = 0;
    while (done < totalFrames) {
        const auto frames = static_cast<std::uint32_t>(std::min<std::uint64_t>(blockSize_, totalFrames - done));
        lv2_atom_forge_set_buffer(&forge, reinterpret_cast<std::uint8_t*>(w.sequence.data()), w.sequence.size() * 8);
        LV2_Atom_Forge_Frame sequenceFrame;
        lv2_atom_forge_sequence_head(&forge, &sequenceFrame, 0);
        if (done == 0 && tempo_ > 0.0) {
            LV2_Atom_Forge_Frame objectFrame;
            lv2_atom_forge_frame_time(&forge, 0);
            lv2_atom_forge_object(&forge, &objectFrame, 0, position);
            lv2_atom_forge_key(&forge, beatsPerMinute);
            lv2_atom_forge_float(&forge, static_cast<float>(tempo_));
            lv2_atom_forge_pop(&forge, &objectFrame);
        }
        while (next < order.size() && order[next].frame < done + frames) {
            const MidiMessage& message = messages[order[next].index];
            lv2_atom_forge_frame_time(&forge, static_cast<std::int64_t>(order[next].frame - done));
            lv2_atom_forge_atom(&forge, message.size, midiEvent);
            lv2_atom_forge_write(&forge, message.bytes, message.size);
            ++next;
        }
        lv2_atom_forge_pop(&forge, &sequenceFrame);

        const double before = processCpuSeconds();
        lilv_instance_run(w.instance, frames);
        cpuSeconds_ += processCpuSeconds() - before;
        done += frames;
        if (!sink(w.outputs[0].data(), w.outputs[1].data(), static_cast<int>(frames))) {
            error = "rendering stopped while writing the audio";
            return false;
        }
    }
    return true;
}

void* Lv2Host::instanceHandle() const { return loaded() ? lilv_instance_get_handle(world_->instance) : nullptr; }

void Lv2Host::close() { world_.reset(); }

}  // namespace tolvane
