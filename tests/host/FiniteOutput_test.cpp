// Whatever the parameters, automation and MIDI, what the host receives is a finite number within the
// limiter's range of +-4, and a voice that ran away does not silence the instrument.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "params/ParameterIds.h"
#include "params/ParameterTable.h"
#include "support/AudioAnalysis.h"
#include "support/HostSession.h"
#include "support/PluginFixture.h"

namespace tolvane {
namespace {

using testing::PluginFixture;
using Midi = std::vector<std::array<unsigned char, 3>>;

constexpr float kLimit = 4.0f;

// The first sample that is not finite or lies beyond the limiter's range, as text; empty if none.
std::string firstBadSample(const std::vector<float>& left, const std::vector<float>& right) {
    for (std::size_t i = 0; i < left.size(); ++i)
        for (float x : {left[i], right[i]})
            if (!(std::fabs(x) <= kLimit)) return "sample " + std::to_string(i) + " is " + std::to_string(x);
    return {};
}

void setParameter(PluginFixture& f, int index, float value) { f.effect->setParameter(f.effect, index, value); }

// A high-pass filter at full resonance whose cutoff a fast LFO sweeps by tens of notes per block, on a
// low key, with the effect mixed in. Such a sweep pumps energy into the barely damped resonance; it
// used to run to infinity within seconds, and the NaN then stayed in the effect's delay lines and
// silenced every later note. The voice must keep sounding, bounded, and a later note must play.
TEST(FiniteOutput, FastSweptHighPassAtFullResonanceStaysFiniteAndLaterNotesPlay) {
    for (float rate : {22050.0f, 44100.0f, 192000.0f}) {
        for (int type : {5, 6, 7}) {  // high-pass 12, 18 and 24 dB/oct
            PluginFixture f;
            f.dispatch(vst2::effSetSampleRate, 0, 0, nullptr, rate);
            setParameter(f, 30, (type + 0.5f) / 16.0f);  // Filter Type
            setParameter(f, 33, 0.5f);                    // Filter Cutoff Frequency
            setParameter(f, 34, 1.0f);                    // Filter Resonance
            setParameter(f, 36, 6.5f / 16.0f);            // Filter Mod A Connection: LFO1 -> Frequency
            setParameter(f, 37, 0.92f);                   // Filter Mod A Depth: +70 %
            setParameter(f, 59, 0.95f);                   // LFO1 Speed: about 34 Hz
            setParameter(f, 67, 0.5f);                    // Effect Mix Level
            const std::string where = std::to_string(static_cast<int>(rate)) + " Hz, type " + std::to_string(type);

            f.render(static_cast<int>(4.0f * rate), {{0x90, 24, 100}});
            ASSERT_EQ(firstBadSample(f.left, f.right), "") << where;
            EXPECT_GT(testing::rms(f.left, static_cast<std::size_t>(3.0f * rate), f.left.size()), 0.01)
                << where << ": the held note still sounds";

            f.render(static_cast<int>(rate), {{0x80, 24, 0}});
            ASSERT_EQ(firstBadSample(f.left, f.right), "") << where;
            f.render(static_cast<int>(0.5f * rate), {{0x90, 60, 100}});
            ASSERT_EQ(firstBadSample(f.left, f.right), "") << where;
            EXPECT_GT(testing::rms(f.left, 0, f.left.size()), 0.01) << where << ": the next note plays";
        }
    }
}

// Random programs with every parameter at either end of its range or anywhere between, changed again
// while notes play, with random MIDI of every kind (controllers reach the controller maps, which the
// random values also set), in host buffers of odd sizes, at five sample rates. One plug-in per rate runs
// through all its programs, so anything that builds up over time has the whole run to do so.
TEST(FiniteOutput, RandomProgramsAutomationAndMidiStayFiniteAndBounded) {
    constexpr int kProgramsPerRate = 500;
    const int bufferSizes[] = {1, 17, 64, 100, 333, 512};
    std::mt19937 rng(20261123);
    auto uniform = [&] { return static_cast<float>(rng() % 1000001) / 1000000.0f; };
    // Continuous values mostly at either end; options and switches at any of their positions.
    const ParameterTable table;
    auto extreme = [&](int index) {
        if (const int options = table.steps(index); options > 0)
            return (static_cast<float>(rng() % static_cast<unsigned>(options)) + 0.5f) / static_cast<float>(options);
        const unsigned pick = rng() % 5;
        return pick < 2 ? 0.0f : (pick < 4 ? 1.0f : uniform());
    };
    auto randomMidi = [&] {
        Midi midi;
        const int count = static_cast<int>(rng() % 6);
        for (int i = 0; i < count; ++i) {
            const auto byte = [&] { return static_cast<unsigned char>(rng() % 128); };
            const unsigned char extremeByte = rng() % 2 ? 127 : 0;
            // Half the messages on channel 1, the others on any channel.
            const auto status = [&](unsigned kind) { return static_cast<unsigned char>(kind | (rng() % 2 ? 0 : rng() % 16)); };
            switch (rng() % 8) {
                case 0:
                case 1:
                case 2: midi.push_back({status(0x90), byte(), static_cast<unsigned char>(1 + rng() % 127)}); break;
                case 3: midi.push_back({status(0x80), byte(), byte()}); break;
                case 4: midi.push_back({status(0xB0), byte(), rng() % 2 ? extremeByte : byte()}); break;
                case 5: midi.push_back({status(0xE0), extremeByte, extremeByte}); break;
                case 6: midi.push_back({status(rng() % 2 ? 0xD0 : 0xA0), byte(), extremeByte}); break;
                default: midi.push_back({status(0xC0), byte(), 0}); break;
            }
        }
        return midi;
    };

    long samplesChecked = 0, buffersRendered = 0, buffersAudible = 0, buffersAtTheLimit = 0;
    for (float rate : {22050.0f, 44100.0f, 48000.0f, 96000.0f, 192000.0f}) {
        PluginFixture f;
        f.dispatch(vst2::effSetSampleRate, 0, 0, nullptr, rate);
        for (int program = 0; program < kProgramsPerRate; ++program) {
            if (rng() % 10 == 0) f.dispatch(vst2::effSetProgram, 0, static_cast<vst2::intptr>(rng() % 512));
            for (int index = 0; index < kNumParameters; ++index) setParameter(f, index, extreme(index));
            if (rng() % 4 != 0) setParameter(f, 125, 0.0f);  // MIDI Input Channel: mostly omni, so that notes play
            // Now and then seconds of the same program, so that slow build-ups have time.
            const bool longStretch = program % 50 == 0;
            const int buffers = longStretch ? 40 : 4;
            for (int b = 0; b < buffers; ++b) {
                const int automated = longStretch ? 0 : static_cast<int>(rng() % 6);
                for (int k = 0; k < automated; ++k) {
                    const int index = static_cast<int>(rng() % kNumParameters);
                    setParameter(f, index, extreme(index));
                }
                f.render(longStretch ? 4096 : bufferSizes[rng() % 6], randomMidi());
                const std::string bad = firstBadSample(f.left, f.right);
                ASSERT_EQ(bad, "") << rate << " Hz, program " << program << ", buffer " << b;
                samplesChecked += static_cast<long>(f.left.size());
                float peak = 0.0f;
                for (std::size_t i = 0; i < f.left.size(); ++i) peak = std::max({peak, std::fabs(f.left[i]), std::fabs(f.right[i])});
                ++buffersRendered;
                buffersAudible += peak > 0.01f;
                buffersAtTheLimit += peak > 3.6f;
            }
        }
    }
    std::printf("[ info ] %ld stereo samples in %ld buffers over %d random programs; %ld buffers audible, %ld in the "
                "limiter's knee\n",
                samplesChecked, buffersRendered, 5 * kProgramsPerRate, buffersAudible, buffersAtTheLimit);
    EXPECT_GT(buffersAudible, buffersRendered / 4) << "the random programs mostly make sound";
}

}  // namespace
}  // namespace tolvane
