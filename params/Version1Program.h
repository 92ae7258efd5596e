// Conversion of version-1 programs (70 values, an older parameter layout) to the current 144 values.
#pragma once

#include "params/ProgramRecord.h"

namespace tolvane {

constexpr int kNumVersion1Values = 70;

// Where the values of interest sit in a version-1 record. Runs of values that kept their order are named by
// their first index: the oscillators' width, pitch, detune and key follow follow the waveform's successor, a
// connection is followed by its depth and velocity sensitivity, and so on.
namespace v1 {
enum Index : int {
    OldOsc1Waveform = 0, OldOsc1PulseWidth = 1, OldOsc1ModAConnection = 5, OldOsc1ModBConnection = 8,
    OldOsc2Waveform = 11, OldOsc2PulseWidth = 12, OldOsc2ModAConnection = 16, OldOsc2ModBConnection = 19,
    OldFilterMode = 27, OldFilterSaturation = 28, OldFilterCutoff = 29, OldFilterModAConnection = 32,
    OldFilterModBConnection = 35, OldAmpModConnection = 38,
    OldEnv1Attack = 41, OldEnv2Attack = 46,   // attack, attack curve, decay, sustain, release
    OldLfo1Waveform = 51, OldLfo2Waveform = 53, // waveform, speed
    OldEffectMix = 55,                          // mix, time, diffusion, feedback, overdrive, cuts, mod speed, depth
    OldNumberOfVoices = 64, OldVoiceMode = 65, OldMasterTune = 66, OldPortamento = 67, OldOutputVolume = 68,
    OldMidiChannel = 69,
};
}  // namespace v1

// old values: the 70 normalised values of a version-1 record, each 0.0 .. 1.0 (checked by the reader).
// The name field is copied as it is.
ProgramRecord convertVersion1Program(const char (&name)[32], const float (&old)[kNumVersion1Values]);

}  // namespace tolvane
