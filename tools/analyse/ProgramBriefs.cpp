// The briefs of bank A: category, test note and the takes each program is judged on.
#include <cstddef>

#include "tools/analyse/SoundCheck.h"

namespace tolvane::analyse {
namespace {

using C = Category;
constexpr bool kPoly = true, kSingle = false, kPitched = true, kUnpitched = false;

const ProgramBrief kBriefs[64] = {
    {C::Pad, 60, kPoly, kPitched, 100, 0, "Two detuned pulses through a soft 12 dB low-pass, slow swell, gentle echo"},
    {C::Pad, 48, kPoly, kPitched, 100, 0, "Dark, big sawtooth pad that opens slowly and breathes"},
    {C::Pad, 60, kPoly, kPitched, 100, 0, "Large choir-like pad in a long stereo echo"},
    {C::Pad, 60, kPoly, kPitched, 100, 0, "Swirling pulse-and-saw pad, the filter circling, voices drifting apart"},
    {C::Pad, 60, kPoly, kPitched, 100, 0, "Bright, airy shimmer with a breath of noise and a wide echo"},
    {C::Strings, 60, kPoly, kPitched, 100, 0, "Warm string ensemble from two slowly modulated pulses"},
    {C::Strings, 60, kPoly, kPitched, 100, 0, "Pulse strings with pulse-width movement and a delayed vibrato"},
    {C::Strings, 60, kPoly, kPitched, 100, 0, "Strings whose timbre slowly sweeps through hard sync"},
    {C::Strings, 60, kPoly, kPitched, 100, 0, "Sawtooth strings through a high-pass that sweeps up and down"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Pumped reed organ: narrow pulse and an octave, a little air"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Thick detuned unison sawtooth lead with a synced echo"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Cutting mono lead: a synced pulse that sweeps down at each note"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Fat, warm mono lead with a filter snap and glide"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Classic analogue lead: saw and square, resonant, delayed vibrato"},
    {C::Brass, 60, kSingle, kPitched, 100, 0, "Solo brass line with a filter swell, a slight scoop and vibrato"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Sine drawbar organ whose 2 2/3' percussion dies in a third of a second"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Brighter drawbar organ with high partials and percussion"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Drawbar organ (8', 4', 2 2/3') with a key click, through a fast rotary-like chorus"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Organ with a breathy chiff of noise at the start of each note"},
    {C::Organ, 60, kPoly, kPitched, 100, 0, "Keyboard harmonica: reedy, slightly breathy, polyphonic"},
    {C::Keys, 60, kPoly, kPitched, 100, 0, "Bright, hard FM piano with a metallic strike"},
    {C::Keys, 60, kPoly, kPitched, 100, 0, "Soft electric piano with a gentle tine bark"},
    {C::Keys, 60, kPoly, kPitched, 100, 0, "Warm, rounded synth piano that darkens as it decays"},
    {C::Keys, 60, kPoly, kPitched, 100, 0, "Nasal, funky clavinet through a snapping band-pass"},
    {C::Keys, 60, kPoly, kPitched, 100, 0, "Plucked, bright, thin harpsichord with a coupled octave"},
    {C::Pluck, 60, kPoly, kPitched, 100, 0, "Soft guitar-like pluck from a modulated pulse"},
    {C::Pluck, 60, kPoly, kPitched, 100, 0, "Bright, snappy pulse pluck with a synced stereo echo"},
    {C::Keys, 72, kPoly, kPitched, 100, 0, "Vibraphone with a rotating-speaker tremolo"},
    {C::Pluck, 72, kPoly, kPitched, 100, 0, "Kalimba: woody pluck with a slightly inharmonic overtone"},
    {C::Bell, 84, kPoly, kUnpitched, 100, 0, "Clear, long-ringing inharmonic bell"},
    {C::Brass, 60, kPoly, kPitched, 100, 0, "Polyphonic synth brass section for stabs and chords"},
    {C::Lead, 72, kPoly, kPitched, 100, 0, "Two sawtooths an octave apart, bright and open"},
    {C::Brass, 60, kPoly, kPitched, 100, 0, "Brass with a bubbling resonant filter"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Vocal-like mono lead with a formant band-pass and vibrato"},
    {C::Lead, 72, kSingle, kPitched, 100, 0, "Breathy flute-like wind with audible breath"},
    {C::Brass, 60, kPoly, kPitched, 100, 0, "Brass in parallel fifths"},
    {C::Brass, 60, kPoly, kPitched, 100, 0, "Soft horn in a large echoing space"},
    {C::Effect, 60, kPoly, kPitched, 100, 0, "Chordal synth with a minor seventh on top and orbiting echoes"},
    {C::Effect, 60, kPoly, kPitched, 100, 0, "A held note chopped into sixteenths, with a pitch warp at the start"},
    {C::Percussion, 72, kSingle, kUnpitched, 110, 0, "Ticking metallic click with a dotted echo"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Punchy, round, short house bass"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Squelchy, driven acid bass with slide"},
    {C::Bass, 36, kSingle, kPitched, 100, 40, "Resonant bass whose squelch follows velocity"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Saturated, gritty bass"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Punchy FM bass"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Round, rubbery bass with a little boing"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Sync zap bass"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Fat square-wave bass"},
    {C::Bass, 36, kSingle, kPitched, 100, 0, "Pure sub bass without a click"},
    {C::Kick, 36, kSingle, kUnpitched, 110, 50, "Basic synth kick"},
    {C::Kick, 36, kSingle, kUnpitched, 110, 0, "Deep, boomy kick with a clicky attack"},
    {C::Kick, 36, kSingle, kUnpitched, 110, 0, "Kick with an audible noise layer"},
    {C::Snare, 38, kSingle, kUnpitched, 110, 0, "Snare: short tonal body and bright noise"},
    {C::Tom, 45, kSingle, kUnpitched, 110, 0, "Tom tuned across the keys"},
    {C::Clap, 39, kSingle, kUnpitched, 110, 0, "Hand clap: band-passed noise bursts and a short tail"},
    {C::Hat, 42, kSingle, kUnpitched, 110, 0, "Closed hi-hat"},
    {C::Hat, 46, kSingle, kUnpitched, 110, 0, "Open hi-hat"},
    {C::Percussion, 60, kSingle, kUnpitched, 110, 50, "Tuned hand drum whose strike follows velocity"},
    {C::Percussion, 48, kSingle, kUnpitched, 110, 0, "Frame drum: low body and a noise slap"},
    {C::Effect, 60, kSingle, kUnpitched, 110, 0, "Metallic slash that decays like a hit"},
    {C::Effect, 48, kPoly, kUnpitched, 100, 0, "Slowly evolving, noisy drone"},
    {C::Effect, 60, kSingle, kUnpitched, 100, 0, "Random formant talking"},
    {C::Effect, 60, kPoly, kUnpitched, 100, 0, "Bright, pulsing, distant ring-modulated drone"},
    {C::Pad, 60, kPoly, kPitched, 100, 0, "Pad with an endless echo tail"},
};

}  // namespace

const char* categoryName(Category c) {
    switch (c) {
        case C::Pad: return "pad";
        case C::Strings: return "strings";
        case C::Organ: return "organ";
        case C::Lead: return "lead";
        case C::Brass: return "brass";
        case C::Keys: return "keys";
        case C::Pluck: return "pluck";
        case C::Bell: return "bell";
        case C::Bass: return "bass";
        case C::Kick: return "kick";
        case C::Snare: return "snare";
        case C::Clap: return "clap";
        case C::Tom: return "tom";
        case C::Hat: return "hat";
        case C::Percussion: return "percussion";
        case C::Effect: return "effect";
    }
    return "";
}

const ProgramBrief& programBrief(int program) {
    if (program < 0) program = 0;
    if (program > 63) program = 63;
    return kBriefs[program];
}

// Drums and hits are the programs played at the hit velocity of 110.
bool isOneShot(const ProgramBrief& brief) { return brief.velocity >= 110; }

}  // namespace tolvane::analyse
