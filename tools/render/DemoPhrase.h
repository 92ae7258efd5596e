// The built-in demo phrase: ten bars of 4/4 at 120 beats per minute on MIDI channel 1, a held chord
// and bass note per bar under a melody, for a pad or lead program.
#pragma once

#include <vector>

#include "tools/render/MidiMessage.h"

namespace tolvane {

constexpr double kDemoTempo = 120.0;

// Note-on and note-off messages in time order; at equal times note-offs come first.
std::vector<MidiMessage> demoPhrase();
// Time of the last note-off.
double demoPhraseSeconds();

}  // namespace tolvane
