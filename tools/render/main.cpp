// tolvane2-render: renders a MIDI file, or the built-in demo phrase, through a VST 2.x instrument
// into a WAV file, and reports level and speed.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

#include "params/FileStorage.h"
#include "params/ProgramFiles.h"
#include "tools/render/ApplyFile.h"
#include "tools/render/DemoPhrase.h"
#include "tools/render/Lv2Render.h"
#if defined(TOLVANE_SCREENSHOT)
#include "tools/render/EditorScreenshot.h"
#endif
#include "tools/render/MidiFile.h"
#include "tools/render/RenderOptions.h"
#include "tools/render/VstHost.h"
#include "tools/render/WavWriter.h"

namespace tolvane {
namespace {

// Longest rendering made without an explicit --length: guards against MIDI files with absurd times.
constexpr double kLongestDefaultSeconds = 3600.0;

std::string executableFolder(const char* argv0) {
    std::vector<char> path(4096, 0);
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
    std::string self = length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string(argv0);
    const std::size_t slash = self.rfind('/');
    return slash == std::string::npos ? "." : self.substr(0, slash);
}

std::string decibels(double level) {
    if (!(level > 0.0)) return "-inf dBFS";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f dBFS", 20.0 * std::log10(level));
    return text;
}

const char* formatName(WavFormat format) {
    switch (format) {
        case WavFormat::Pcm16: return "16-bit PCM";
        case WavFormat::Pcm24: return "24-bit PCM";
        case WavFormat::Float32: return "32-bit float";
    }
    return "";
}

bool applyFile(VstHost& host, const std::string& path, int program, std::string& error) {
    return applyFileValues(
        path, program, [&host](int i, float v, std::string& e) { return host.setParameter(i, v, e); }, error);
}

int fail(const std::string& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "tolvane2-render: %s\n", message.c_str());
    return 1;
}

// The editor of the built-in synthesizer, with the chosen program, file and parameter values, as a PNG.
int screenshot(const RenderOptions& options) {
#if defined(TOLVANE_SCREENSHOT)
    std::string error;
    VstHost host;
    if (!host.create(createSynthInProcess, error)) return fail(error);
    if (options.program >= 0 && !host.setProgram(options.program, error)) return fail(error);
    if (!options.loadPath.empty() && !applyFile(host, options.loadPath, options.program, error)) return fail(error);
    for (const auto& [index, value] : options.parameters)
        if (!host.setParameter(index, value, error)) return fail(error);
    EditorPicture picture;
    if (!drawEditorOffscreen(host.effect(), options.page, picture, options.screenshotPath, error)) return fail(error);
    std::printf("Wrote %s: the editor's page %d, %d x %d\n", options.screenshotPath.c_str(), options.page,
                picture.width, picture.height);
    return 0;
#else
    (void)options;
    return fail("this build has no offscreen drawing (Cairo was not found)");
#endif
}

// What to play: the MIDI file's channel messages or the demo phrase, and how long that lasts.
struct Music {
    MidiFile midi;  // empty for the demo phrase
    std::vector<MidiMessage> messages;
    double seconds = 0.0;
};

bool loadMusic(const RenderOptions& options, Music& music, std::string& error) {
    if (options.midiPath.empty()) {
        music.messages = demoPhrase();
        music.seconds = demoPhraseSeconds();
        return true;
    }
    if (!music.midi.load(options.midiPath, error)) return false;
    music.messages = music.midi.events();
    music.seconds = music.midi.lengthSeconds();
    std::printf("MIDI file: %s, format %d, %d track%s, %zu channel messages, %.3f s\n", options.midiPath.c_str(),
                music.midi.format(), music.midi.trackCount(), music.midi.trackCount() == 1 ? "" : "s",
                music.messages.size(), music.seconds);
    return true;
}

// Loads the plug-in, starts it, and applies the program, the file and the parameter values.
bool preparePlugin(VstHost& host, const RenderOptions& options, const Music& music, const std::string& pluginPath,
                   std::string& error) {
    if (::access(pluginPath.c_str(), F_OK) != 0) {
        error = "plug-in not found: " + pluginPath;
        return false;
    }
    host.setTempo(options.tempo);
    if (!options.midiPath.empty())
        host.setTimeSignature(music.midi.timeSignatureNumerator(), music.midi.timeSignatureDenominator());
    if (!host.loadModule(pluginPath, error)) return false;
    const vst2::AEffect* effect = host.effect();
    std::printf("Plug-in: %s by %s (%s), %d programs, %d parameters, %d inputs, %d outputs\n",
                host.effectName().c_str(), host.vendorName().c_str(), pluginPath.c_str(), effect->numPrograms,
                effect->numParams, effect->numInputs, effect->numOutputs);
    if (!(effect->flags & vst2::effFlagsIsSynth))
        std::printf("Note: the plug-in does not declare itself an instrument\n");

    if (!host.start(options.sampleRate, options.blockSize, error)) return false;
    if (options.program >= 0 && !host.setProgram(options.program, error)) return false;
    if (!options.loadPath.empty()) {
        if (effect->numParams < kNumParameters) {
            error = "--load needs a plug-in with this synthesizer's parameters";
            return false;
        }
        if (!applyFile(host, options.loadPath, options.program, error)) return false;
    }
    for (const auto& [index, value] : options.parameters)
        if (!host.setParameter(index, value, error)) return false;
    return true;
}

// The level of what went to the file.
struct Levels {
    double peak = 0.0;
    double sumOfSquares = 0.0;
    std::uint64_t nonFinite = 0;

    void add(const float* left, const float* right, int frames) {
        for (int i = 0; i < frames; ++i) {
            for (const float sample : {left[i], right[i]}) {
                if (!std::isfinite(sample)) {
                    ++nonFinite;
                    continue;
                }
                const double magnitude = std::fabs(static_cast<double>(sample));
                peak = std::max(peak, magnitude);
                sumOfSquares += magnitude * magnitude;
            }
        }
    }
};

// Renders into the WAV file, measuring the level as the audio goes to the file.
bool renderToFile(VstHost& host, const RenderOptions& options, const Music& music, std::uint64_t totalFrames,
                  Levels& levels, std::string& error) {
    WavWriter writer;
    if (!writer.open(options.outputPath, static_cast<int>(options.sampleRate), options.format, error)) return false;
    std::string writeError;
    const bool rendered = host.render(
        music.messages, totalFrames,
        [&](const float* left, const float* right, int frames) {
            levels.add(left, right, frames);
            return writer.write(left, right, static_cast<std::size_t>(frames), writeError);
        },
        error);
    if (!rendered) {
        if (!writeError.empty()) error = writeError;
        return false;
    }
    return writer.finish(error);
}

void printReport(const RenderOptions& options, std::uint64_t totalFrames, const Levels& levels, double cpuSeconds) {
    const double audioSeconds = static_cast<double>(totalFrames) / options.sampleRate;
    const double rms =
        totalFrames > 0 ? std::sqrt(levels.sumOfSquares / (2.0 * static_cast<double>(totalFrames))) : 0.0;
    std::printf("Wrote %s: %s, %.0f Hz, stereo\n", options.outputPath.c_str(), formatName(options.format),
                options.sampleRate);
    std::printf("Duration: %.3f s (%llu frames)\n", audioSeconds, static_cast<unsigned long long>(totalFrames));
    std::printf("Peak: %s\n", decibels(levels.peak).c_str());
    std::printf("RMS: %s\n", decibels(rms).c_str());
    if (cpuSeconds > 0.0)
        std::printf("CPU real-time factor: %.1fx (%.3f s of processing for %.3f s of audio)\n",
                    audioSeconds / cpuSeconds, cpuSeconds, audioSeconds);
    else
        std::printf("CPU real-time factor: not measurable (no processing time recorded)\n");
    if (levels.peak > 1.0 && options.format != WavFormat::Float32) std::printf("Warning: the output clipped\n");
}

int run(int argc, char** argv) {
    RenderOptions options;
    std::string error;
    if (!parseRenderOptions(std::vector<std::string>(argv + 1, argv + argc), options, error)) {
        std::fprintf(stderr, "tolvane2-render: %s\n%s", error.c_str(), "Try tolvane2-render --help\n");
        return 2;
    }
    if (options.help) {
        std::fputs(renderUsage().c_str(), stdout);
        return 0;
    }
    if (!options.screenshotPath.empty()) return screenshot(options);

    Music music;
    if (!loadMusic(options, music, error)) return fail(error);
    double seconds = options.lengthSeconds;
    if (seconds < 0.0) {
        seconds = music.seconds + kReleaseTailSeconds;
        if (seconds > kLongestDefaultSeconds)
            return fail("the MIDI file lasts " + std::to_string(music.seconds) + " s; give --length to render that much");
    }
    const auto totalFrames = static_cast<std::uint64_t>(std::llround(seconds * options.sampleRate));
    if (!options.lv2BundlePath.empty()) return renderLv2(options, music.messages, totalFrames);

    const std::string pluginPath =
        options.pluginPath.empty() ? executableFolder(argv[0]) + "/Tolvane2.so" : options.pluginPath;
    VstHost host;
    if (!preparePlugin(host, options, music, pluginPath, error)) return fail(error);
    Levels levels;
    if (!renderToFile(host, options, music, totalFrames, levels, error)) return fail(error);
    host.close();
    printReport(options, totalFrames, levels, host.processingCpuSeconds());
    return 0;
}

}  // namespace
}  // namespace tolvane

int main(int argc, char** argv) { return tolvane::run(argc, argv); }
