#include "tools/render/RenderOptions.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace tolvane {

namespace {

bool parseNumber(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    return errno == 0 && end == text.c_str() + text.size() && std::isfinite(value);
}

bool parseInteger(const std::string& text, long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtol(text.c_str(), &end, 10);
    return errno == 0 && end == text.c_str() + text.size();
}

}  // namespace

std::string renderUsage() {
    return "Usage: tolvane2-render [options]\n"
           "Renders a MIDI file, or the built-in demo phrase, through a VST 2.x instrument to a WAV file.\n"
           "\n"
           "  --plugin PATH        plug-in module (default: Tolvane2.so next to this program)\n"
           "  --lv2 BUNDLE         render the LV2 build instead: the bundle folder (e.g. build/Tolvane2.lv2);\n"
           "                       --program then selects one of its presets (default: the first)\n"
           "  --midi FILE.mid      Standard MIDI File of format 0 or 1 (default: the demo phrase)\n"
           "  --out FILE.wav       output file (default: demo.wav)\n"
           "  --rate HZ            sample rate (default: 44100)\n"
           "  --block N            host block size in frames (default: 512)\n"
           "  --program N          program number to select before rendering\n"
           "  --load FILE          apply a program (.prog/.prg), bank (.bank/.bnk) or controller-map (.cmap)\n"
           "                       file of this synthesizer after the program, before the --param values\n"
           "  --param INDEX=VALUE  set a parameter to a value from 0 to 1 (repeatable)\n"
           "  --tempo BPM          host tempo (default: 120)\n"
           "  --no-tempo           the host reports no tempo\n"
           "  --length SECONDS     output length (default: to the end of the MIDI plus a 2 s release tail)\n"
           "  --format 16|24|float sample format (default: 24)\n"
           "  --screenshot FILE.png  draw the editor (718 x 310) with the chosen program, file and parameter\n"
           "                       values into a PNG instead of rendering audio (the built-in synthesizer)\n"
           "  --page 1|2           the editor page of the screenshot (default: 1)\n"
           "  --help               show this text\n";
}

namespace {

bool parsePath(const std::string& value, std::string& path) {
    path = value;
    return !value.empty();
}

// What an option does with its value: stores it and answers nullptr, or answers what it expected.
using ApplyOption = const char* (*)(const std::string& value, RenderOptions& options);

struct OptionRule {
    const char* name;
    bool takesValue;
    ApplyOption apply;
};

const OptionRule kOptionRules[] = {
    {"--help", false, [](const std::string&, RenderOptions& o) -> const char* { o.help = true; return nullptr; }},
    {"-h", false, [](const std::string&, RenderOptions& o) -> const char* { o.help = true; return nullptr; }},
    {"--no-tempo", false, [](const std::string&, RenderOptions& o) -> const char* { o.tempo = 0.0; return nullptr; }},
    {"--plugin", true, [](const std::string& v, RenderOptions& o) -> const char* {
         return parsePath(v, o.pluginPath) ? nullptr : "expected a path";
     }},
    {"--lv2", true, [](const std::string& v, RenderOptions& o) -> const char* {
         return parsePath(v, o.lv2BundlePath) ? nullptr : "expected a bundle folder";
     }},
    {"--midi", true, [](const std::string& v, RenderOptions& o) -> const char* {
         return parsePath(v, o.midiPath) ? nullptr : "expected a path";
     }},
    {"--out", true, [](const std::string& v, RenderOptions& o) -> const char* {
         return parsePath(v, o.outputPath) ? nullptr : "expected a path";
     }},
    {"--screenshot", true, [](const std::string& v, RenderOptions& o) -> const char* {
         return parsePath(v, o.screenshotPath) ? nullptr : "expected a path";
     }},
    {"--load", true, [](const std::string& v, RenderOptions& o) -> const char* { o.loadPath = v; return nullptr; }},
    {"--rate", true, [](const std::string& v, RenderOptions& o) -> const char* {
         double rate = 0.0;
         if (!parseNumber(v, rate) || rate < 1000.0 || rate > 768000.0 || rate != std::floor(rate))
             return "expected a whole number of hertz from 1000 to 768000";
         o.sampleRate = rate;
         return nullptr;
     }},
    {"--block", true, [](const std::string& v, RenderOptions& o) -> const char* {
         long frames = 0;
         if (!parseInteger(v, frames) || frames < 1 || frames > 65536) return "expected a block size from 1 to 65536";
         o.blockSize = static_cast<int>(frames);
         return nullptr;
     }},
    {"--program", true, [](const std::string& v, RenderOptions& o) -> const char* {
         long program = 0;
         if (!parseInteger(v, program) || program < 0 || program > 0x7FFFFFFF) return "expected a program number from 0";
         o.program = static_cast<int>(program);
         return nullptr;
     }},
    {"--param", true, [](const std::string& v, RenderOptions& o) -> const char* {
         const std::size_t split = v.find('=');
         long index = 0;
         double normalised = 0.0;
         if (split == std::string::npos || !parseInteger(v.substr(0, split), index) || index < 0 ||
             index > 0x7FFFFFFF || !parseNumber(v.substr(split + 1), normalised) || normalised < 0.0 ||
             normalised > 1.0)
             return "expected INDEX=VALUE with a value from 0 to 1";
         o.parameters.emplace_back(static_cast<int>(index), static_cast<float>(normalised));
         return nullptr;
     }},
    {"--tempo", true, [](const std::string& v, RenderOptions& o) -> const char* {
         double bpm = 0.0;
         if (!parseNumber(v, bpm) || bpm <= 0.0 || bpm > 1000.0) return "expected beats per minute above 0 and up to 1000";
         o.tempo = bpm;
         return nullptr;
     }},
    {"--length", true, [](const std::string& v, RenderOptions& o) -> const char* {
         double seconds = 0.0;
         if (!parseNumber(v, seconds) || seconds <= 0.0) return "expected seconds above 0";
         o.lengthSeconds = seconds;
         return nullptr;
     }},
    {"--format", true, [](const std::string& v, RenderOptions& o) -> const char* {
         if (v == "16") o.format = WavFormat::Pcm16;
         else if (v == "24") o.format = WavFormat::Pcm24;
         else if (v == "float") o.format = WavFormat::Float32;
         else return "expected 16, 24 or float";
         return nullptr;
     }},
    {"--page", true, [](const std::string& v, RenderOptions& o) -> const char* {
         if (v != "1" && v != "2") return "expected 1 or 2";
         o.page = v == "1" ? 1 : 2;
         return nullptr;
     }},
};

const OptionRule* findOption(const std::string& name) {
    for (const OptionRule& rule : kOptionRules)
        if (name == rule.name) return &rule;
    return nullptr;
}

}  // namespace

bool parseRenderOptions(const std::vector<std::string>& args, RenderOptions& options, std::string& error) {
    options = RenderOptions{};
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string name = args[i];
        std::string value;
        // Both "--rate 48000" and "--rate=48000".
        const std::size_t equals = name.find('=');
        const bool valueAttached = name.rfind("--", 0) == 0 && equals != std::string::npos;
        if (valueAttached) {
            value = name.substr(equals + 1);
            name = name.substr(0, equals);
        }
        const OptionRule* rule = findOption(name);
        if (!rule) {
            error = "unknown option " + args[i];
            return false;
        }
        if (valueAttached && !rule->takesValue) {
            error = name + " takes no value";
            return false;
        }
        if (rule->takesValue && !valueAttached) {
            if (i + 1 >= args.size()) {
                error = name + " needs a value";
                return false;
            }
            value = args[++i];
        }
        if (const char* expected = rule->apply(value, options)) {
            error = "invalid value \"" + value + "\" for " + name + ": " + expected;
            return false;
        }
    }
    if (!options.lv2BundlePath.empty() && (!options.pluginPath.empty() || !options.screenshotPath.empty())) {
        error = "--lv2 renders the LV2 bundle and takes no --plugin or --screenshot";
        return false;
    }
    if (!options.screenshotPath.empty() && !options.pluginPath.empty()) {
        error = "--screenshot draws the built-in synthesizer and takes no --plugin";
        return false;
    }
    return true;
}

}  // namespace tolvane
