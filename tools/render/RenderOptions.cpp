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

bool parseRenderOptions(const std::vector<std::string>& args, RenderOptions& options, std::string& error) {
    options = RenderOptions{};
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string name = args[i];
        std::string value;
        bool hasValue = false;
        // Both "--rate 48000" and "--rate=48000".
        const std::size_t equals = name.find('=');
        if (name.rfind("--", 0) == 0 && equals != std::string::npos) {
            value = name.substr(equals + 1);
            name = name.substr(0, equals);
            hasValue = true;
        }
        auto takeValue = [&]() {
            if (hasValue) return true;
            if (i + 1 >= args.size()) {
                error = name + " needs a value";
                return false;
            }
            value = args[++i];
            return true;
        };
        auto refuse = [&](const std::string& what) {
            error = "invalid value \"" + value + "\" for " + name + ": " + what;
            return false;
        };

        if (name == "--help" || name == "-h") {
            options.help = true;
        } else if (name == "--no-tempo") {
            options.tempo = 0.0;
        } else if (name == "--plugin") {
            if (!takeValue()) return false;
            if (value.empty()) return refuse("expected a path");
            options.pluginPath = value;
        } else if (name == "--lv2") {
            if (!takeValue()) return false;
            if (value.empty()) return refuse("expected a bundle folder");
            options.lv2BundlePath = value;
        } else if (name == "--midi") {
            if (!takeValue()) return false;
            if (value.empty()) return refuse("expected a path");
            options.midiPath = value;
        } else if (name == "--out") {
            if (!takeValue()) return false;
            if (value.empty()) return refuse("expected a path");
            options.outputPath = value;
        } else if (name == "--rate") {
            double rate = 0.0;
            if (!takeValue()) return false;
            if (!parseNumber(value, rate) || rate < 1000.0 || rate > 768000.0 || rate != std::floor(rate))
                return refuse("expected a whole number of hertz from 1000 to 768000");
            options.sampleRate = rate;
        } else if (name == "--block") {
            long frames = 0;
            if (!takeValue()) return false;
            if (!parseInteger(value, frames) || frames < 1 || frames > 65536)
                return refuse("expected a block size from 1 to 65536");
            options.blockSize = static_cast<int>(frames);
        } else if (name == "--program") {
            long program = 0;
            if (!takeValue()) return false;
            if (!parseInteger(value, program) || program < 0 || program > 0x7FFFFFFF)
                return refuse("expected a program number from 0");
            options.program = static_cast<int>(program);
        } else if (name == "--param") {
            if (!takeValue()) return false;
            const std::size_t split = value.find('=');
            long index = 0;
            double normalised = 0.0;
            if (split == std::string::npos || !parseInteger(value.substr(0, split), index) || index < 0 ||
                index > 0x7FFFFFFF || !parseNumber(value.substr(split + 1), normalised) || normalised < 0.0 ||
                normalised > 1.0)
                return refuse("expected INDEX=VALUE with a value from 0 to 1");
            options.parameters.emplace_back(static_cast<int>(index), static_cast<float>(normalised));
        } else if (name == "--tempo") {
            double bpm = 0.0;
            if (!takeValue()) return false;
            if (!parseNumber(value, bpm) || bpm <= 0.0 || bpm > 1000.0)
                return refuse("expected beats per minute above 0 and up to 1000");
            options.tempo = bpm;
        } else if (name == "--length") {
            double seconds = 0.0;
            if (!takeValue()) return false;
            if (!parseNumber(value, seconds) || seconds <= 0.0) return refuse("expected seconds above 0");
            options.lengthSeconds = seconds;
        } else if (name == "--format") {
            if (!takeValue()) return false;
            if (value == "16")
                options.format = WavFormat::Pcm16;
            else if (value == "24")
                options.format = WavFormat::Pcm24;
            else if (value == "float")
                options.format = WavFormat::Float32;
            else
                return refuse("expected 16, 24 or float");
        }
        else if (name == "--screenshot") {
            if (!takeValue()) return false;
            if (value.empty()) return refuse("expected a path");
            options.screenshotPath = value;
        } else if (name == "--page") {
            if (!takeValue()) return false;
            if (value != "1" && value != "2") return refuse("expected 1 or 2");
            options.page = value == "1" ? 1 : 2;
        } else if (name == "--load") {
            if (!takeValue()) return false;
            options.loadPath = value;
        } else {
            error = "unknown option " + args[i];
            return false;
        }
        if (hasValue && (name == "--help" || name == "-h" || name == "--no-tempo")) {
            error = name + " takes no value";
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
