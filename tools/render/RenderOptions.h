// Command-line options of tolvane2-render.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/render/WavWriter.h"

namespace tolvane {

struct RenderOptions {
    std::string pluginPath;  // empty: Tolvane2.so next to the executable
    std::string lv2BundlePath;  // not empty: render this LV2 bundle instead of a VST 2.x module
    std::string midiPath;    // empty: the built-in demo phrase
    std::string outputPath = "demo.wav";
    double sampleRate = 44100.0;
    int blockSize = 512;
    int program = -1;  // -1: leave the plug-in's current program
    std::string loadPath;    // a program, bank or controller-map file applied before the overrides
    std::vector<std::pair<int, float>> parameters;  // applied in the order given
    double tempo = 120.0;                           // 0: the host reports no tempo
    double lengthSeconds = -1.0;                    // below 0: to the end of the MIDI plus the release tail
    WavFormat format = WavFormat::Pcm24;
    std::string screenshotPath;  // not empty: draw the editor into this PNG instead of rendering audio
    int page = 1;                // the editor page of the screenshot
    bool help = false;
};

constexpr double kReleaseTailSeconds = 2.0;

// Parses the arguments after the program name. Answers false with a message on a bad option.
bool parseRenderOptions(const std::vector<std::string>& args, RenderOptions& options, std::string& error);
std::string renderUsage();

}  // namespace tolvane
