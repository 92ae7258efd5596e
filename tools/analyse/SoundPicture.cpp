#include "tools/analyse/SoundPicture.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>

#include "tools/analyse/Fft.h"

namespace tolvane::analyse {
namespace {

constexpr double kLowHz = 30.0, kHighHz = 18000.0;
constexpr double kFloorDb = -100.0, kTopDb = -10.0;
constexpr int kTitle = 26, kWave = 120, kSpectrum = 210, kGap = 8;

// Dark blue through purple and orange to pale yellow.
void heat(double t, double& r, double& g, double& b) {
    t = std::clamp(t, 0.0, 1.0);
    r = std::clamp(1.6 * t - 0.1, 0.0, 1.0);
    g = std::clamp(1.8 * t * t - 0.15, 0.0, 1.0);
    b = std::clamp(0.15 + 1.2 * t - 1.6 * t * t + 1.2 * std::max(0.0, t - 0.8), 0.0, 1.0);
}

void text(cairo_t* cr, double x, double y, double size, const char* s, double grey = 0.92) {
    cairo_set_source_rgb(cr, grey, grey, grey);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, s);
}

const char* noteName(int key, char* buffer, std::size_t size) {
    static const char* names[12] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    std::snprintf(buffer, size, "%s%d", names[key % 12], key / 12 - 1);
    return buffer;
}

void drawTake(cairo_t* cr, const Stereo& audio, const Take& take, double x0, double width, double top) {
    const std::size_t n = audio.left.size();
    const int columns = std::max(1, static_cast<int>(width));
    // Waveform extremes and RMS level per column.
    const double mid = top + kWave / 2.0;
    cairo_set_source_rgb(cr, 0.10, 0.11, 0.14);
    cairo_rectangle(cr, x0, top, width, kWave);
    cairo_fill(cr);
    std::vector<double> levels(static_cast<std::size_t>(columns), -200.0);
    cairo_set_line_width(cr, 1.0);
    cairo_set_source_rgb(cr, 0.45, 0.70, 0.95);
    for (int c = 0; c < columns; ++c) {
        const std::size_t a = n * static_cast<std::size_t>(c) / static_cast<std::size_t>(columns);
        const std::size_t b = std::max(a + 1, n * static_cast<std::size_t>(c + 1) / static_cast<std::size_t>(columns));
        double lo = 0.0, hi = 0.0, sum = 0.0;
        for (std::size_t i = a; i < b && i < n; ++i) {
            const double v = 0.5 * (audio.left[i] + audio.right[i]);
            lo = std::min(lo, v);
            hi = std::max(hi, v);
            sum += v * v;
        }
        levels[static_cast<std::size_t>(c)] = toDb(std::sqrt(sum / static_cast<double>(b - a)));
        cairo_move_to(cr, x0 + c + 0.5, mid - hi * (kWave / 2.0 - 2));
        cairo_line_to(cr, x0 + c + 0.5, mid - lo * (kWave / 2.0 - 2) + 1);
    }
    cairo_stroke(cr);
    // RMS in dB, 0 at the top, -60 at the bottom.
    cairo_set_source_rgb(cr, 1.0, 0.75, 0.25);
    for (int c = 0; c < columns; ++c) {
        const double y = top + std::clamp(-levels[static_cast<std::size_t>(c)] / 60.0, 0.0, 1.0) * (kWave - 1);
        if (c == 0) cairo_move_to(cr, x0, y);
        else cairo_line_to(cr, x0 + c, y);
    }
    cairo_stroke(cr);
    // Key down and key up.
    const double seconds = static_cast<double>(n) / audio.sampleRate;
    cairo_set_source_rgba(cr, 1.0, 1.0, 1.0, 0.35);
    for (double t : {kNoteOnSeconds, kNoteOnSeconds + take.holdSeconds}) {
        const double x = x0 + width * t / seconds;
        cairo_move_to(cr, x, top);
        cairo_line_to(cr, x, top + kWave + kGap + kSpectrum);
    }
    cairo_stroke(cr);
    char label[64];
    char name[16];
    std::snprintf(label, sizeof label, "%s %s", take.label.c_str(), noteName(take.notes[0].key, name, sizeof name));
    text(cr, x0 + 4, top + 12, 10, label, 0.8);

    // Spectrogram.
    const double specTop = top + kWave + kGap;
    cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns, kSpectrum);
    unsigned char* data = cairo_image_surface_get_data(image);
    const int stride = cairo_image_surface_get_stride(image);
    const std::size_t size = 2048;
    std::vector<std::complex<double>> frame(size);
    std::vector<double> power(size / 2);
    const double binHz = audio.sampleRate / static_cast<double>(size);
    for (int c = 0; c < columns; ++c) {
        const double centre = static_cast<double>(n) * (c + 0.5) / columns;
        double mean = 0.0;  // the frame's DC is left out: it is inaudible and smears the lowest rows
        for (std::size_t i = 0; i < size; ++i) {
            const double k = centre - size / 2.0 + static_cast<double>(i);
            if (k >= 0 && k < n)
                mean += 0.5 * (audio.left[static_cast<std::size_t>(k)] + audio.right[static_cast<std::size_t>(k)]);
        }
        mean /= static_cast<double>(size);
        for (std::size_t i = 0; i < size; ++i) {
            const double k = centre - size / 2.0 + static_cast<double>(i);
            const double w = 0.5 - 0.5 * std::cos(2.0 * kPi * static_cast<double>(i) / size);
            frame[i] = (k >= 0 && k < n) ? w * (0.5 * (audio.left[static_cast<std::size_t>(k)] +
                                                       audio.right[static_cast<std::size_t>(k)]) - mean)
                                         : 0.0;
        }
        fft(frame);
        for (std::size_t i = 0; i < power.size(); ++i) power[i] = std::norm(frame[i]) * (4.0 / (size * size * 0.25));
        for (int row = 0; row < kSpectrum; ++row) {
            const double fHi = kLowHz * std::pow(kHighHz / kLowHz, 1.0 - static_cast<double>(row) / kSpectrum);
            const double fLo = kLowHz * std::pow(kHighHz / kLowHz, 1.0 - static_cast<double>(row + 1) / kSpectrum);
            std::size_t a = static_cast<std::size_t>(fLo / binHz), b = static_cast<std::size_t>(fHi / binHz);
            b = std::min(power.size() - 1, std::max(a, b));
            double p = 0.0;
            for (std::size_t i = a; i <= b; ++i) p = std::max(p, power[i]);
            const double db = 10.0 * std::log10(p + 1e-30);
            double r, g, bl;
            heat((db - kFloorDb) / (kTopDb - kFloorDb), r, g, bl);
            unsigned char* px = data + row * stride + c * 4;
            px[0] = static_cast<unsigned char>(bl * 255);
            px[1] = static_cast<unsigned char>(g * 255);
            px[2] = static_cast<unsigned char>(r * 255);
        }
    }
    cairo_surface_mark_dirty(image);
    cairo_set_source_surface(cr, image, x0, specTop);
    cairo_paint(cr);
    cairo_surface_destroy(image);
}

}  // namespace

void drawSoundPicture(cairo_t* cr, const ProgramSound& sound) {
    cairo_save(cr);
    cairo_set_source_rgb(cr, 0.05, 0.05, 0.07);
    cairo_rectangle(cr, 0, 0, kPictureWidth, kPictureHeight);
    cairo_fill(cr);
    char title[160], key[16];
    std::snprintf(title, sizeof title, "A-%d  %s   (%s, test %s)", sound.program + 1, sound.name.c_str(),
                  sound.brief ? categoryName(sound.brief->category) : "",
                  noteName(sound.brief ? sound.brief->testNote : 60, key, sizeof key));
    text(cr, 8, 18, 15, title);

    double total = 0.0;
    for (const Stereo& a : sound.audio) total += static_cast<double>(a.left.size()) / a.sampleRate;
    const double usable = kPictureWidth - 16.0 - kGap * (sound.audio.size() - 1.0);
    double x = 8.0;
    for (std::size_t i = 0; i < sound.audio.size(); ++i) {
        const double w = usable * (static_cast<double>(sound.audio[i].left.size()) / sound.audio[i].sampleRate) / total;
        drawTake(cr, sound.audio[i], sound.takes[i], x, std::floor(w), kTitle);
        x += std::floor(w) + kGap;
    }
    // Frequency marks on the left edge of the spectrogram.
    const double specTop = kTitle + kWave + kGap;
    for (double f : {100.0, 1000.0, 10000.0}) {
        const double y = specTop + kSpectrum * (1.0 - std::log(f / kLowHz) / std::log(kHighHz / kLowHz));
        char label[16];
        std::snprintf(label, sizeof label, f >= 1000.0 ? "%.0fk" : "%.0f", f >= 1000.0 ? f / 1000.0 : f);
        text(cr, 10, y + 4, 9, label, 0.7);
    }
    if (!sound.measures.empty()) {
        const Measures& m = sound.measures[0];
        char line[256];
        std::snprintf(line, sizeof line,
                      "onset %.3f s   after 1 s %.1f dB   release to -40 dB %s   pitch %+.1f cent   centroid %.0f Hz",
                      m.onsetSeconds, m.levelAfter1sDb,
                      m.release40Seconds >= 0 ? (std::to_string(m.release40Seconds).substr(0, 4) + " s").c_str() : "> take",
                      m.pitchCents, m.centroidHz);
        text(cr, 8, specTop + kSpectrum + 20, 12, line, 0.85);
        std::snprintf(line, sizeof line, "noise %.2f   width %.2f   peak %.1f dBFS   loudest 100 ms %.1f dBFS",
                      m.noisiness, m.stereoWidth, m.peakDb, m.loudestRmsDb);
        text(cr, 8, specTop + kSpectrum + 38, 12, line, 0.85);
    }
    cairo_restore(cr);
}

namespace {

// Ends the drawing and writes the surface as PNG; both are released either way.
bool finishPng(cairo_surface_t* surface, cairo_t* cr, const std::string& path, std::string& error) {
    cairo_destroy(cr);
    const cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = path + ": " + cairo_status_to_string(status);
        return false;
    }
    return true;
}

}  // namespace

bool writeSoundPicture(const ProgramSound& sound, const std::string& path, std::string& error) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kPictureWidth, kPictureHeight);
    cairo_t* cr = cairo_create(surface);
    drawSoundPicture(cr, sound);
    return finishPng(surface, cr, path, error);
}

bool writeContactSheet(const std::vector<ProgramSound>& sounds, int columns, const std::string& path,
                       std::string& error) {
    const double scale = 0.4;
    const int cellW = static_cast<int>(kPictureWidth * scale), cellH = static_cast<int>(kPictureHeight * scale);
    const int rows = (static_cast<int>(sounds.size()) + columns - 1) / columns;
    const int header = 40;
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, columns * cellW + (columns + 1) * 6, header + rows * (cellH + 6) + 6);
    cairo_t* cr = cairo_create(surface);
    cairo_set_source_rgb(cr, 0.16, 0.16, 0.19);
    cairo_paint(cr);
    text(cr, 10, 27, 20, "Tolvane2 factory bank A: level over time (blue waveform, orange RMS dB) and spectrogram of each program's test phrase");
    for (std::size_t i = 0; i < sounds.size(); ++i) {
        const int col = static_cast<int>(i) % columns, row = static_cast<int>(i) / columns;
        cairo_save(cr);
        cairo_translate(cr, 6 + col * (cellW + 6), header + row * (cellH + 6));
        cairo_scale(cr, scale, scale);
        drawSoundPicture(cr, sounds[i]);
        cairo_restore(cr);
    }
    return finishPng(surface, cr, path, error);
}

}  // namespace tolvane::analyse
