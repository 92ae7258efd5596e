#include "params/Version1Program.h"

#include <cstring>

#include "dsp/Mappings.h"

namespace tolvane {
namespace {

// The old layout mapped several times with curves where the current one is exponential, and the cutoff
// note over 24..136 instead of 24..152. A re-mapped value is the old value pushed through the old
// mapping and pulled back through the inverse of the new one, so that it sounds the same.
struct OldMappings {
    CurveMapping saturation{0.1f, 4.0f, 4.0f};
    CurveMapping attackTime{0.005f, 16.0f, 5.0f};
    CurveMapping decayTime{0.02f, 16.0f, 5.0f};
    CurveMapping rate{0.05f, 20.0f, 5.0f};
    CurveMapping delayTime{0.001f, 1.0f, 5.0f};
    CurveMapping overdrive{0.01f, 10.0f, 4.0f};
    CurveMapping cutFrequency{20.0f, 22000.0f, 5.0f};
    LinearMapping cutoffNote{24.0f, 136.0f};
};

// Built on first use: both sets of mappings need the fast maths tables, which are static data too.
const OldMappings& oldMappings() {
    static const OldMappings m;
    return m;
}

const ValueMappings& newMappings() {
    static const ValueMappings m;
    return m;
}

float option(int k, int n) { return optionValue(k, n); }

float remap(const ValueMapping& from, const ExponentialMapping& to, float v) {
    return to.inverse(from.map(v));
}

// Old oscillator waveform: 12 options ordered quality-major (q·4 + w, q = Low, Middle, High and
// w = Sine, Triangle, Sawtooth, Pulse); the current order is waveform-major (w·3 + q).
float oscillatorWaveform(float old) {
    int k = quantise(old, 12);
    int quality = k / 4;
    int wave = k % 4;
    return option(wave * 3 + quality, 12);
}

// Old LFO waveform: 12 options, six shapes (sine, triangle, sawtooth, square, sample-and-hold, random)
// run per voice, then the same six shared. The current LFO selects shapes as bits of a 64-option set and
// keeps the mode apart. The two stepped shapes ran at twice the old rate.
void lfo(float oldWave, float oldSpeed, float* out) {
    int k = quantise(oldWave, 12);
    int shape = k % 6;
    out[0] = option(1 << shape, 64);
    out[1] = option(k < 6 ? 0 : 1, 8);
    float hz = oldMappings().rate.map(oldSpeed);
    if (shape >= 4) hz *= 2.0f;
    out[2] = newMappings().rate.inverse(hz);
}

// Old filter: 36 options. 0..11 filter off and 12..23 on, each as four types by three saturation
// curves; 24..35 four more types, on, with the saturation level at full.
void filter(float oldMode, float oldSaturation, float* out) {
    int m = quantise(oldMode, 36);
    bool on = m >= 12;
    int type;
    int curve;
    if (m < 24) {
        type = (m % 12) / 3;
        curve = m % 3;
    } else if (m < 33) {
        type = 4 + (m - 24) / 3;
        curve = 0;
    } else {
        type = 7;
        curve = 2;
    }
    out[0] = on ? 1.0f : 0.0f;
    out[1] = option(type, 16);
    out[2] = m >= 24 ? 1.0f : remap(oldMappings().saturation, newMappings().saturation, oldSaturation);
    out[3] = option(curve, 3);
}

}  // namespace

ProgramRecord convertVersion1Program(const char (&name)[32], const float (&o)[70]) {
    const OldMappings& was = oldMappings();
    const ValueMappings& now = newMappings();

    ProgramRecord r;
    std::memset(&r, 0, sizeof r);
    std::memcpy(r.name, name, sizeof r.name);
    float* n = r.values;

    // Oscillator 1
    n[0] = oscillatorWaveform(o[0]);
    n[1] = 0.0f;
    for (int i = 0; i < 4; ++i) n[2 + i] = o[1 + i];
    n[6] = option(quantise(o[5], 16), 16);
    n[7] = o[6];
    n[8] = o[7];
    n[9] = option(quantise(o[8], 16), 16);
    n[10] = o[9];
    n[11] = o[10];

    // Oscillator 2: its modulation connections now choose among 32.
    n[12] = oscillatorWaveform(o[11]);
    n[13] = 0.0f;
    for (int i = 0; i < 4; ++i) n[14 + i] = o[12 + i];
    n[18] = option(quantise(o[16], 16), 32);
    n[19] = o[17];
    n[20] = o[18];
    n[21] = option(quantise(o[19], 16), 32);

    // Mixer and noise
    for (int i = 0; i < 7; ++i) n[22 + i] = o[20 + i];

    // Filter
    filter(o[27], o[28], &n[29]);
    float note = was.cutoffNote.map(o[29]);
    float cutoff = (note - 24.0f) / 128.0f;
    n[33] = cutoff < 0.0f ? 0.0f : (cutoff > 1.0f ? 1.0f : cutoff);
    n[34] = o[30];
    n[35] = o[31];
    n[36] = option(quantise(o[32], 16), 16);
    n[37] = o[33];
    n[38] = o[34];
    n[39] = option(quantise(o[35], 16), 16);
    n[40] = o[36];
    n[41] = o[37];

    // Amplifier
    n[42] = option(quantise(o[38], 4), 4);
    n[43] = o[39];
    n[44] = o[40];

    // Envelopes: the decay curve did not exist and starts in its middle position.
    n[45] = remap(was.attackTime, now.attackTime, o[41]);
    n[46] = o[42];
    n[47] = remap(was.decayTime, now.decayTime, o[43]);
    n[48] = option(1, 3);
    n[49] = o[44];
    n[50] = remap(was.decayTime, now.decayTime, o[45]);
    n[51] = remap(was.attackTime, now.attackTime, o[46]);
    n[52] = o[47];
    n[53] = remap(was.decayTime, now.decayTime, o[48]);
    n[54] = option(1, 3);
    n[55] = o[49];
    n[56] = remap(was.decayTime, now.decayTime, o[50]);

    // LFOs, with their start phase at 0
    lfo(o[51], o[52], &n[57]);
    n[60] = 0.0f;
    lfo(o[53], o[54], &n[61]);
    n[64] = 0.0f;

    // Effect: always on, no tempo sync, feedback without a modulation connection.
    n[65] = 1.0f;
    n[66] = 0.0f;
    n[67] = o[55];
    n[68] = remap(was.delayTime, now.delayTime, o[56]);
    n[69] = o[57];
    n[70] = o[58];
    n[71] = 0.0f;
    n[72] = remap(was.overdrive, now.overdrive, o[59]);
    n[73] = remap(was.cutFrequency, now.cutFrequency, o[60]);
    n[74] = remap(was.cutFrequency, now.cutFrequency, o[61]);
    n[75] = remap(was.rate, now.rate, o[62]);
    n[76] = o[63];
    n[77] = o[64];

    // Voices: the old voice mode held unison in bit 0 and legato in bit 1.
    int voiceMode = quantise(o[65], 4);
    n[78] = (voiceMode & 1) ? 1.0f : 0.0f;
    n[79] = (voiceMode & 2) ? 1.0f : 0.0f;
    n[80] = 0.02f;
    n[81] = o[67];
    n[82] = o[68];

    // The assignable modulation slots did not exist: depth centred, nothing assigned.
    for (int slot = 0; slot < 8; ++slot) {
        n[param::ModDepth1 + slot] = 0.5f;
        n[param::ModSens1 + slot] = 0.0f;
        n[param::ModSource1 + slot] = option(0, 138);
        n[param::ModSensSource1 + slot] = option(0, 137);
        n[param::ModDestination1 + slot] = option(0, 26);
    }

    n[123] = o[66];
    n[124] = option(2, 25);
    n[125] = o[69];
    // 126..143 stay 0.0.
    return r;
}

}  // namespace tolvane
