// A picture of a sound: the level over time (waveform extremes and the RMS level in dB) above a
// spectrogram with a logarithmic frequency axis, one column of takes after another, and the figures
// of the first take underneath. Drawn with Cairo.
#pragma once

#include <string>
#include <vector>

#include <cairo.h>

#include "tools/analyse/SoundCheck.h"

namespace tolvane::analyse {

struct ProgramSound {
    int program = 0;
    std::string name;
    const ProgramBrief* brief = nullptr;
    std::vector<Take> takes;
    std::vector<Stereo> audio;
    std::vector<Measures> measures;
};

constexpr int kPictureWidth = 960;
constexpr int kPictureHeight = 420;

// Draws the picture into the rectangle (x, y, kPictureWidth, kPictureHeight) of the context.
void drawSoundPicture(cairo_t* cr, const ProgramSound& sound);

// Writes the picture of one program as a PNG; false with a reason when the file cannot be written.
bool writeSoundPicture(const ProgramSound& sound, const std::string& path, std::string& error);

// Contact sheet: the pictures of all programs, scaled, `columns` to a row, with their names.
bool writeContactSheet(const std::vector<ProgramSound>& sounds, int columns, const std::string& path,
                       std::string& error);

}  // namespace tolvane::analyse
