// The LV2 build as a host sees it: the bundle read by lilv, the binary instantiated from it, its audio
// compared sample for sample with the VST 2.x module's for the same MIDI and parameters, its presets,
// its state through a session saved as text, and its editor's port writes through instance access.
#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/port-props/port-props.h>
#include <lv2/time/time.h>
#include <lv2/ui/ui.h>
#include <lv2/units/units.h>

#include "lv2/Lv2Plugin.h"
#include "params/ControllerRouter.h"
#include "params/FactoryBank.h"
#include "params/ParameterTable.h"
#include "support/XServerForTests.h"
#include "tools/render/DemoPhrase.h"
#include "tools/render/Lv2Host.h"
#include "tools/render/VstHost.h"

// Last: Xlib's macros would clash with names in the headers above.
#include <X11/Xlib.h>

namespace tolvane {
namespace {

constexpr double kRate = 44100.0;

struct Audio {
    std::vector<float> left, right;
};

struct Session {
    int program;                              // VST setProgram, LV2 preset
    std::vector<std::pair<int, float>> params;  // then these parameters / ports
    int block;
    double tempo;
};

std::vector<MidiMessage> phraseUntil(double seconds) {
    std::vector<MidiMessage> out;
    for (const MidiMessage& m : demoPhrase())
        if (m.seconds < seconds) out.push_back(m);
    return out;
}

MidiMessage message(double seconds, std::uint8_t status, std::uint8_t data1, std::uint8_t data2 = 0) {
    MidiMessage m;
    m.seconds = seconds;
    m.bytes[0] = status;
    m.bytes[1] = data1;
    m.bytes[2] = data2;
    m.size = static_cast<std::uint8_t>(channelDataLength(status) + 1);
    return m;
}

template <typename Host>
Audio render(Host& host, const std::vector<MidiMessage>& messages, double seconds) {
    Audio audio;
    std::string error;
    const bool ok = host.render(
        messages, static_cast<std::uint64_t>(seconds * kRate),
        [&](const float* l, const float* r, int n) {
            audio.left.insert(audio.left.end(), l, l + n);
            audio.right.insert(audio.right.end(), r, r + n);
            return true;
        },
        error);
    EXPECT_TRUE(ok) << error;
    return audio;
}

double rms(const std::vector<float>& samples, std::size_t from, std::size_t to) {
    double sum = 0.0;
    for (std::size_t i = from; i < to; ++i) sum += static_cast<double>(samples[i]) * samples[i];
    return to > from ? std::sqrt(sum / static_cast<double>(to - from)) : 0.0;
}

std::string presetUri(int program) {
    char suffix[8];
    std::snprintf(suffix, sizeof suffix, "%03d", program);
    return std::string("urn:brindlecot:tolvane2#preset-") + suffix;
}

class Lv2Build : public ::testing::Test {
protected:
    void loadVst(VstHost& vst, const Session& setup) {
        std::string error;
        vst.setTempo(setup.tempo);
        ASSERT_TRUE(vst.loadModule(TOLVANE_PLUGIN_PATH, error)) << error;
        ASSERT_TRUE(vst.start(kRate, setup.block, error)) << error;
        ASSERT_TRUE(vst.setProgram(setup.program, error)) << error;
        for (const auto& [index, value] : setup.params) ASSERT_TRUE(vst.setParameter(index, value, error)) << error;
    }
    void loadLv2(Lv2Host& lv2, const Session& setup) {
        std::string error;
        lv2.setTempo(setup.tempo);
        ASSERT_TRUE(lv2.load(TOLVANE_LV2_BUNDLE, kRate, setup.block, error)) << error;
        ASSERT_TRUE(lv2.applyPreset(presetUri(setup.program), error)) << error;
        for (const auto& [index, value] : setup.params) ASSERT_TRUE(lv2.setControl(index, value, error)) << error;
    }
};

// ---- the bundle, read by lilv

TEST_F(Lv2Build, BundleDescribesEachParameterAsAControlPort) {
    LilvWorld* world = lilv_world_new();
    LilvNode* bundle = lilv_new_file_uri(world, nullptr, TOLVANE_LV2_BUNDLE "/");
    lilv_world_load_bundle(world, bundle);
    LilvNode* uri = lilv_new_uri(world, "urn:brindlecot:tolvane2");
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri);
    ASSERT_NE(plugin, nullptr);
    ASSERT_EQ(lilv_plugin_get_num_ports(plugin), static_cast<std::uint32_t>(kNumParameters + 3));

    LilvNode* control = lilv_new_uri(world, LV2_CORE__ControlPort);
    LilvNode* input = lilv_new_uri(world, LV2_CORE__InputPort);
    LilvNode* integer = lilv_new_uri(world, LV2_CORE__integer);
    LilvNode* enumeration = lilv_new_uri(world, LV2_CORE__enumeration);
    ParameterTable table;
    std::vector<float> mins(kNumParameters + 3), maxs(kNumParameters + 3), defaults(kNumParameters + 3);
    lilv_plugin_get_port_ranges_float(plugin, mins.data(), maxs.data(), defaults.data());
    std::set<std::string> symbols;
    for (int i = 0; i < kNumParameters; ++i) {
        SCOPED_TRACE(i);
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin, static_cast<std::uint32_t>(i));
        EXPECT_TRUE(lilv_port_is_a(plugin, port, control) && lilv_port_is_a(plugin, port, input));
        LilvNode* name = lilv_port_get_name(plugin, port);
        EXPECT_STREQ(lilv_node_as_string(name), table.longName(i));
        lilv_node_free(name);
        const std::string symbol = lilv_node_as_string(lilv_port_get_symbol(plugin, port));
        EXPECT_TRUE(symbols.insert(symbol).second) << symbol;
        EXPECT_TRUE(!symbol.empty() && !std::isdigit(static_cast<unsigned char>(symbol[0])) &&
                    symbol.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string::npos)
            << symbol;
        EXPECT_EQ(mins[static_cast<std::size_t>(i)], 0.0f);
        EXPECT_EQ(maxs[static_cast<std::size_t>(i)], 1.0f);
        const float expectedDefault = i < kNumProgramValues ? factoryProgram(kNumPrograms - 1).values[i]
                                      : i < kFirstMapParameter + kNumControllerMaps ? 0.005f
                                                                                   : ControllerRouter::parameterValue(99);
        EXPECT_EQ(defaults[static_cast<std::size_t>(i)], expectedDefault);

        // Options: one scale point per option, each reading back as its option.
        const int steps = table.steps(i);
        const bool options = steps > 0 && (i < kFirstReserved || i >= kFirstMapParameter);
        EXPECT_EQ(lilv_port_has_property(plugin, port, integer), options);
        EXPECT_EQ(lilv_port_has_property(plugin, port, enumeration), options);
        LilvScalePoints* points = lilv_port_get_scale_points(plugin, port);
        EXPECT_EQ(points ? static_cast<int>(lilv_scale_points_size(points)) : 0, options ? steps : 0);
        std::set<int> chosen;
        LILV_FOREACH (scale_points, p, points) {
            const float v = lilv_node_as_float(lilv_scale_point_get_value(lilv_scale_points_get(points, p)));
            chosen.insert(std::min(steps - 1, static_cast<int>(static_cast<float>(steps) * v)));
        }
        EXPECT_EQ(static_cast<int>(chosen.size()), options ? steps : 0);
        lilv_scale_points_free(points);
    }
    for (LilvNode* n : {control, input, integer, enumeration, uri, bundle}) lilv_node_free(n);
    lilv_world_free(world);
}

// ---- audio: the LV2 build against the VST 2.x module

TEST_F(Lv2Build, RendersTheSameSamplesAsTheVstModule) {
    const std::vector<Session> setups = {
        {0, {}, 512, 120.0},
        {10, {{param::FilterCutoff, 0.3f}, {param::EffectMix, 0.8f}}, 100, 97.0},
        {3, {{param::Lfo1Mode, 0.6f}, {param::MapControl1 + 6, 0.2f}}, 64, 0.0},
        {40, {{param::Osc1Waveform, 0.9f}}, 1000, 140.0},
    };
    const std::vector<MidiMessage> phrase = phraseUntil(3.0);
    for (const Session& setup : setups) {
        SCOPED_TRACE("program " + std::to_string(setup.program) + ", block " + std::to_string(setup.block));
        VstHost vst;
        Lv2Host lv2;
        loadVst(vst, setup);
        loadLv2(lv2, setup);
        const Audio expected = render(vst, phrase, 3.5);
        const Audio actual = render(lv2, phrase, 3.5);
        ASSERT_GT(rms(expected.left, 0, expected.left.size()), 1e-3);  // something to compare
        EXPECT_TRUE(actual.left == expected.left && actual.right == expected.right);
    }
}

// One instance of each format goes through every program in turn: selecting a preset must set the
// ports to the program's values and, like setProgram, also start the engine afresh (no tail of the
// previous program's notes).
TEST_F(Lv2Build, EachPresetSetsThePortsAndSoundsAsTheProgram) {
    const std::vector<MidiMessage> notes = {message(0.0, 0x90, 60, 100), message(0.0, 0x90, 67, 90),
                                            message(0.15, 0x80, 60), message(0.15, 0x80, 67)};
    VstHost vst;
    Lv2Host lv2;
    loadVst(vst, Session{0, {}, 512, 120.0});
    loadLv2(lv2, Session{0, {}, 512, 120.0});
    ASSERT_EQ(lv2.presetUris().size(), static_cast<std::size_t>(kNumDesignedPrograms));
    std::string error;
    for (int program = 0; program < kNumDesignedPrograms; ++program) {
        SCOPED_TRACE(program);
        ASSERT_TRUE(vst.setProgram(program, error)) << error;
        ASSERT_TRUE(lv2.applyPreset(presetUri(program), error)) << error;
        for (int i = 0; i < kNumProgramValues; ++i) ASSERT_EQ(lv2.control(i), factoryProgram(program).values[i]) << i;
        const Audio expected = render(vst, notes, 0.2);
        const Audio actual = render(lv2, notes, 0.2);
        EXPECT_TRUE(actual.left == expected.left && actual.right == expected.right);
    }
}

// A session saved as text and restored into a fresh instance brings back the sound and what no port
// holds. The plug-in changed program itself (MIDI program change) after the host last set the ports, so
// the ports the session restores are older than the plug-in's state: the state must win. A port the host
// sets just before saving, which the plug-in has not run with yet, is newer than the state: it must win.
TEST_F(Lv2Build, SessionStateRestoresTheSoundIntoAFreshInstance) {
    std::string error;
    Lv2Host saved;
    loadLv2(saved, Session{5, {{param::FilterCutoff, 0.3f}, {param::MapControl1 + 6, 0.2f}}, 512, 120.0});
    std::vector<MidiMessage> before = phraseUntil(1.0);
    before.push_back(message(1.2, 0xC0, 7));
    render(saved, before, 1.5);
    SynthPlugin& original = static_cast<Lv2Plugin*>(saved.instanceHandle())->plugin();
    original.setProgramName("Session sound");
    ASSERT_TRUE(saved.setControl(param::FilterResonance, 0.9f, error)) << error;
    std::string session;
    ASSERT_TRUE(saved.saveState(session, error)) << error;
    EXPECT_EQ(saved.control(param::FilterCutoff), 0.3f);  // the ports still hold the older sound

    Lv2Host restored;
    ASSERT_TRUE(restored.load(TOLVANE_LV2_BUNDLE, kRate, 512, error)) << error;
    ASSERT_TRUE(restored.restoreState(session, error)) << error;
    SynthPlugin& copy = static_cast<Lv2Plugin*>(restored.instanceHandle())->plugin();
    char name[32] = {};
    copy.getProgramName(name);
    EXPECT_STREQ(name, "Session sound");
    EXPECT_EQ(copy.getProgram(), 7);
    ASSERT_TRUE(copy.getProgramNameIndexed(0, 7, name));
    EXPECT_STREQ(name, "Session sound");

    // The same sound set up directly: program 7, the controller map (which a program change keeps) and
    // the port set last.
    Lv2Host reference;
    loadLv2(reference, Session{7, {{param::MapControl1 + 6, 0.2f}, {param::FilterResonance, 0.9f}}, 512, 120.0});
    const std::vector<MidiMessage> phrase = phraseUntil(2.0);
    const Audio expected = render(reference, phrase, 2.5);
    const Audio actual = render(restored, phrase, 2.5);
    ASSERT_GT(rms(expected.left, 0, expected.left.size()), 1e-3);
    EXPECT_TRUE(actual.left == expected.left && actual.right == expected.right)
        << "the restored sound is program 7 with its controller map and the resonance port set last";
}

// A call shorter than the engine's 64-sample block may only deliver samples made before; the note-off it
// carries must still reach the voice, also when the next call brings events of its own.
TEST_F(Lv2Build, HostBuffersShorterThanABlockLoseNoEvents) {
    const std::vector<MidiMessage> notes = {message(0.0, 0x90, 60, 100), message(40.0 / kRate, 0x80, 60),
                                            message(70.0 / kRate, 0x90, 64, 100), message(0.3, 0x80, 64)};
    for (int block : {16, 32}) {
        SCOPED_TRACE(block);
        Lv2Host lv2;
        // Instant attack, full sustain, instant release, no effect: the note sounds until its note-off.
        loadLv2(lv2, Session{0,
                           {{param::Env1Attack, 0.0f}, {param::Env1Sustain, 1.0f}, {param::Env1Release, 0.0f},
                            {param::Env2Attack, 0.0f}, {param::Env2Sustain, 1.0f}, {param::Env2Release, 0.0f},
                            {param::EffectOn, 0.0f}},
                           block, 120.0});
        const Audio audio = render(lv2, notes, 1.0);
        EXPECT_GT(rms(audio.left, 0, 2048), 1e-4);
        EXPECT_LT(rms(audio.left, audio.left.size() - 4410, audio.left.size()), 1e-5);
    }
}

}  // namespace
}  // namespace tolvane
