// tolvane2-analyse: renders the test phrase of factory programs through the plug-in module and
// prints what a designer checks by ear; draws one picture per program and a contact sheet.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "tools/analyse/SoundCheck.h"
#include "tools/analyse/SoundPicture.h"
#include "tools/render/VstHost.h"
#include "tools/render/WavWriter.h"

namespace tolvane {
namespace {

struct Options {
    std::string plugin;
    int first = 0, last = 63;
    std::string pictures;  // folder for one PNG per program; empty for none
    std::string sheet;     // contact sheet PNG; empty for none
    std::string wavs;      // folder for one WAV per take; empty for none
    double rate = 44100.0;
};

void usage() {
    std::puts(
        "usage: tolvane2-analyse [--plugin MODULE] [--program N | --programs A-B] [--pictures DIR]\n"
        "                        [--sheet FILE.png] [--wav DIR] [--rate HZ]\n"
        "Renders each program's test phrase (bank A, programs numbered from 0) and prints per take:\n"
        "onset, level 1 s after note-on re peak, release to -40 dB, pitch against the key, spectral\n"
        "centroid, noisiness (spectral flatness), stereo width, peak and loudest 100 ms RMS.");
}

std::string executableFolder() {
    std::vector<char> path(4096, 0);
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
    std::string self = length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string(".");
    const std::size_t slash = self.rfind('/');
    return slash == std::string::npos ? "." : self.substr(0, slash);
}

bool parse(int argc, char** argv, Options& o) {
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        auto value = [&]() -> const char* { return i + 1 < argc ? argv[++i] : nullptr; };
        const char* v = nullptr;
        if (a == "--help" || a == "-h") return false;
        if ((a == "--plugin" || a == "--program" || a == "--programs" || a == "--pictures" || a == "--sheet" || a == "--wav" ||
             a == "--rate") && !(v = value())) {
            std::fprintf(stderr, "%s needs a value\n", a.c_str());
            return false;
        }
        if (a == "--plugin") o.plugin = v;
        else if (a == "--program") o.first = o.last = std::atoi(v);
        else if (a == "--programs") {
            if (std::sscanf(v, "%d-%d", &o.first, &o.last) != 2) return false;
        } else if (a == "--pictures") o.pictures = v;
        else if (a == "--sheet") o.sheet = v;
        else if (a == "--wav") o.wavs = v;
        else if (a == "--rate") o.rate = std::atof(v);
        else {
            std::fprintf(stderr, "unknown option %s\n", a.c_str());
            return false;
        }
    }
    if (o.first < 0 || o.last > 63 || o.first > o.last || o.rate < 8000.0) return false;
    if (o.plugin.empty()) o.plugin = executableFolder() + "/Tolvane2.so";
    return true;
}

bool renderTake(VstHost& host, int program, const analyse::Take& take, double rate, analyse::Stereo& out,
                std::string& error) {
    if (!host.setProgram(program, error)) return false;
    std::vector<MidiMessage> messages;
    for (const analyse::Note& n : take.notes) {
        MidiMessage on;
        on.seconds = analyse::kNoteOnSeconds;
        on.bytes[0] = 0x90;
        on.bytes[1] = static_cast<std::uint8_t>(n.key);
        on.bytes[2] = static_cast<std::uint8_t>(n.velocity);
        on.size = 3;
        messages.push_back(on);
    }
    for (const analyse::Note& n : take.notes) {
        MidiMessage off;
        off.seconds = analyse::kNoteOnSeconds + take.holdSeconds;
        off.bytes[0] = 0x80;
        off.bytes[1] = static_cast<std::uint8_t>(n.key);
        off.size = 3;
        messages.push_back(off);
    }
    const auto frames = static_cast<std::uint64_t>((analyse::kNoteOnSeconds + take.holdSeconds + take.tailSeconds) * rate);
    out.left.clear();
    out.right.clear();
    out.sampleRate = rate;
    return host.render(messages, frames,
                       [&](const float* l, const float* r, int count) {
                           out.left.insert(out.left.end(), l, l + count);
                           out.right.insert(out.right.end(), r, r + count);
                           return true;
                       },
                       error);
}

int run(const Options& o) {
    VstHost host;
    std::string error;
    if (!host.loadModule(o.plugin, error) || !host.start(o.rate, 512, error)) {
        std::fprintf(stderr, "tolvane2-analyse: %s\n", error.c_str());
        return 1;
    }
    host.setTempo(120.0);
    if (!o.pictures.empty()) ::mkdir(o.pictures.c_str(), 0755);
    if (!o.wavs.empty()) ::mkdir(o.wavs.c_str(), 0755);
    std::printf("%-4s %-22s %-7s %6s %8s %8s %8s %9s %7s %5s %5s %7s %7s\n", "prog", "name", "take", "onset",
                "@1s dB", "rel40 s", "dec40 s", "cents", "centr", "noise", "width", "peak", "rms100");
    std::vector<analyse::ProgramSound> sounds;
    for (int p = o.first; p <= o.last; ++p) {
        analyse::ProgramSound sound;
        sound.program = p;
        sound.brief = &analyse::programBrief(p);
        char name[64] = {};
        vst2::AEffect* e = host.effect();
        e->dispatcher(e, vst2::effGetProgramNameIndexed, p, 0, name, 0.0f);
        sound.name = name;
        sound.takes = analyse::testPhrase(*sound.brief);
        for (const analyse::Take& take : sound.takes) {
            analyse::Stereo audio;
            if (!renderTake(host, p, take, o.rate, audio, error)) {
                std::fprintf(stderr, "tolvane2-analyse: program %d: %s\n", p, error.c_str());
                return 1;
            }
            const analyse::Measures m = analyse::measure(audio, take);
            char cents[16] = "-";
            if (take.expectedHz > 0.0 && m.pitchHz > 0.0) std::snprintf(cents, sizeof cents, "%+.1f", m.pitchCents);
            else if (take.expectedHz > 0.0) std::snprintf(cents, sizeof cents, "none");
            std::printf("%-4d %-22.22s %-7s %6.3f %8.1f %8.2f %8.2f %9s %7.0f %5.2f %5.2f %7.1f %7.1f\n", p,
                        sound.name.c_str(), take.label.c_str(), m.onsetSeconds, m.levelAfter1sDb, m.release40Seconds,
                        m.decay40Seconds, cents, m.centroidHz, m.noisiness, m.stereoWidth, m.peakDb, m.loudestRmsDb);
            if (!o.wavs.empty()) {
                char file[64];
                std::snprintf(file, sizeof file, "/A%02d-%s.wav", p + 1, take.label.c_str());
                WavWriter wav;
                if (!wav.open(o.wavs + file, static_cast<int>(o.rate), WavFormat::Pcm24, error) ||
                    !wav.write(audio.left.data(), audio.right.data(), audio.left.size(), error) || !wav.finish(error)) {
                    std::fprintf(stderr, "tolvane2-analyse: %s\n", error.c_str());
                    return 1;
                }
            }
            sound.audio.push_back(std::move(audio));
            sound.measures.push_back(m);
        }
        std::fflush(stdout);
        if (!o.pictures.empty()) {
            char file[64];
            std::snprintf(file, sizeof file, "/A%02d.png", p + 1);
            if (!analyse::writeSoundPicture(sound, o.pictures + file, error)) {
                std::fprintf(stderr, "tolvane2-analyse: %s\n", error.c_str());
                return 1;
            }
        }
        if (!o.sheet.empty()) sounds.push_back(std::move(sound));
    }
    if (!o.sheet.empty() && !analyse::writeContactSheet(sounds, 8, o.sheet, error)) {
        std::fprintf(stderr, "tolvane2-analyse: %s\n", error.c_str());
        return 1;
    }
    return 0;
}

}  // namespace
}  // namespace tolvane

int main(int argc, char** argv) {
    tolvane::Options options;
    if (!tolvane::parse(argc, argv, options)) {
        tolvane::usage();
        return 2;
    }
    return tolvane::run(options);
}
