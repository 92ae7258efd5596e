#include "tools/render/Lv2Render.h"

#include <cstdio>
#include <string>

#if defined(TOLVANE_HAVE_LILV)
#include <algorithm>
#include <cmath>

#include "params/FileStorage.h"
#include "params/ProgramFiles.h"
#include "tools/render/ApplyFile.h"
#include "tools/render/Lv2Host.h"
#include "tools/render/WavWriter.h"
#endif

namespace tolvane {
namespace {

int fail(const std::string& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "tolvane2-render: %s\n", message.c_str());
    return 1;
}

#if defined(TOLVANE_HAVE_LILV)

std::string decibels(double level) {
    if (!(level > 0.0)) return "-inf dBFS";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f dBFS", 20.0 * std::log10(level));
    return text;
}

// A file through the control ports (parameter index = port index).
bool applyFile(Lv2Host& host, const std::string& path, int program, std::string& error) {
    return applyFileValues(
        path, program, [&host](int i, float v, std::string& e) { return host.setControl(i, v, e); }, error);
}

// The preset whose URI ends in the program number (three digits), as the bundle names them.
bool applyProgramPreset(Lv2Host& host, int program, std::string& error) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, "-%03d", program);
    for (const std::string& uri : host.presetUris())
        if (uri.size() > 4 && uri.compare(uri.size() - 4, 4, suffix) == 0) return host.applyPreset(uri, error);
    error = "the bundle has no preset for program " + std::to_string(program);
    return false;
}

#endif

}  // namespace

int renderLv2(const RenderOptions& options, const std::vector<MidiMessage>& messages, std::uint64_t totalFrames) {
#if defined(TOLVANE_HAVE_LILV)
    std::string error;
    Lv2Host host;
    host.setTempo(options.tempo);
    if (!host.load(options.lv2BundlePath, options.sampleRate, options.blockSize, error)) return fail(error);
    std::printf("Plug-in: %s (%s, LV2 bundle %s), %zu presets, %d control ports\n", host.pluginName().c_str(),
                host.pluginUri().c_str(), options.lv2BundlePath.c_str(), host.presetUris().size(),
                host.controlPortCount());
    // A VST instance starts on program 0, an LV2 instance on its ports' defaults (the init program): the
    // first preset is selected unless --program says otherwise, so that both formats render the same.
    const int program = options.program >= 0 ? options.program : 0;
    if (!applyProgramPreset(host, program, error)) return fail(error);
    if (!options.loadPath.empty()) {
        if (host.controlPortCount() < kNumParameters) return fail("--load needs a plug-in with this synthesizer's parameters");
        if (!applyFile(host, options.loadPath, options.program, error)) return fail(error);
    }
    for (const auto& [index, value] : options.parameters)
        if (!host.setControl(index, value, error)) return fail(error);

    WavWriter writer;
    if (!writer.open(options.outputPath, static_cast<int>(options.sampleRate), options.format, error)) return fail(error);
    double peak = 0.0;
    double sumOfSquares = 0.0;
    std::string writeError;
    const bool rendered = host.render(
        messages, totalFrames,
        [&](const float* left, const float* right, int frames) {
            for (int i = 0; i < frames; ++i)
                for (const float sample : {left[i], right[i]})
                    if (std::isfinite(sample)) {
                        peak = std::max(peak, std::fabs(static_cast<double>(sample)));
                        sumOfSquares += static_cast<double>(sample) * sample;
                    }
            return writer.write(left, right, static_cast<std::size_t>(frames), writeError);
        },
        error);
    if (!rendered) return fail(writeError.empty() ? error : writeError);
    if (!writer.finish(error)) return fail(error);
    const double cpuSeconds = host.processingCpuSeconds();
    host.close();

    const double audioSeconds = static_cast<double>(totalFrames) / options.sampleRate;
    const double rms = totalFrames > 0 ? std::sqrt(sumOfSquares / (2.0 * static_cast<double>(totalFrames))) : 0.0;
    std::printf("Wrote %s: %.0f Hz, stereo, %.3f s (%llu frames)\n", options.outputPath.c_str(), options.sampleRate,
                audioSeconds, static_cast<unsigned long long>(totalFrames));
    std::printf("Peak: %s\n", decibels(peak).c_str());
    std::printf("RMS: %s\n", decibels(rms).c_str());
    if (cpuSeconds > 0.0)
        std::printf("CPU real-time factor: %.1fx (%.3f s of processing for %.3f s of audio)\n",
                    audioSeconds / cpuSeconds, cpuSeconds, audioSeconds);
    if (peak > 1.0 && options.format != WavFormat::Float32) std::printf("Warning: the output clipped\n");
    return 0;
#else
    (void)options;
    (void)messages;
    (void)totalFrames;
    return fail("this build has no LV2 host (lilv was not found when it was configured)");
#endif
}

}  // namespace tolvane
