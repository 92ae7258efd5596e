// The vocabulary the factory programs are written in.
//
// A program stores normalised values (0..1), but a sound designer thinks in seconds, hertz, cents,
// semitones and options. Each helper here is the inverse of the value mapping of its parameter, so
// `attack(0.4)` is the normalised value whose attack time is 0.4 s and `option(3, 16)` is the value
// that selects option 3 of 16. Everything is constexpr: the bank is built by the compiler and stays
// read-only data. The few transcendental functions this needs (ln, exp, sqrt) are evaluated here in
// double precision with series that converge to full precision over the ranges a program uses.
#pragma once

#include "params/InitProgram.h"
#include "params/ParameterIds.h"

namespace tolvane::design {

// ---- constexpr maths --------------------------------------------------------------------------------

constexpr double kLn2 = 0.69314718055994530942;

// ln x for x > 0: x = m 2^k with m in [1, 2), then ln m = 2 atanh((m - 1)/(m + 1)) by its series.
constexpr double ln(double x) {
    if (x <= 0.0) return -1.0e300;
    int k = 0;
    while (x >= 2.0) { x *= 0.5; ++k; }
    while (x < 1.0) { x *= 2.0; --k; }
    const double z = (x - 1.0) / (x + 1.0), z2 = z * z;
    double term = z, sum = 0.0;
    for (int n = 1; n < 60; n += 2) {
        sum += term / n;
        term *= z2;
    }
    return 2.0 * sum + k * kLn2;
}

// e^x by its Taylor series after halving x until it is small, then squaring back.
constexpr double exp(double x) {
    int halvings = 0;
    while (x > 0.5 || x < -0.5) { x *= 0.5; ++halvings; }
    double term = 1.0, sum = 1.0;
    for (int n = 1; n < 30; ++n) {
        term *= x / n;
        sum += term;
    }
    for (int i = 0; i < halvings; ++i) sum *= sum;
    return sum;
}

constexpr double sqrt(double x) {
    if (x <= 0.0) return 0.0;
    double y = x > 1.0 ? x : 1.0;
    for (int i = 0; i < 100; ++i) y = 0.5 * (y + x / y);
    return y;
}

constexpr double log10(double x) { return ln(x) / ln(10.0); }
constexpr double clamp01(double v) { return v < 0.0 ? 0.0 : (v > 1.0 ? 1.0 : v); }

// Normalised value whose exponential mapping min (max/min)^v gives x.
constexpr float exponential(double x, double min, double max) {
    return static_cast<float>(clamp01(ln(x / min) / ln(max / min)));
}

// Normalised value whose curve mapping min + (max - min)(e^(k v) - 1)/(e^k - 1) gives x.
constexpr float curve(double x, double min, double max, double k) {
    return static_cast<float>(clamp01(ln(1.0 + (x - min) * (exp(k) - 1.0) / (max - min)) / k));
}

constexpr double hzToNote(double hz) { return 69.0 + 12.0 * ln(hz / 440.0) / kLn2; }

// ---- options and switches ---------------------------------------------------------------------------

// Option k of an n-option parameter, stored in the middle of its step.
constexpr float option(int k, int n) { return (static_cast<float>(k) + 0.5f) / static_cast<float>(n); }
constexpr float kOn = 1.0f;
constexpr float kOff = 0.0f;

enum Shape { Sine = 0, Triangle = 1, Sawtooth = 2, Pulse = 3 };
enum Grade { Low = 0, Middle = 1, High = 2 };
constexpr float wave(Shape shape, Grade grade = High) { return option(3 * shape + grade, 12); }

// The four modulators of the fixed routes and of the amplifier.
enum Modulator { Env1 = 0, Env2 = 1, Lfo1 = 2, Lfo2 = 3 };
// Oscillator route targets are bits: 1 frequency, 2 pulse width, 4 FM depth (OSC2 only).
enum OscTarget { ToNothing = 0, ToPitch = 1, ToPwm = 2, ToPitchPwm = 3, ToFm = 4 };
constexpr float osc1Route(Modulator m, int targets) { return option(4 * targets + m, 16); }
constexpr float osc2Route(Modulator m, int targets) { return option(4 * targets + m, 32); }
// Filter route targets: 1 cutoff, 2 resonance.
enum FilterTarget { ToCutoff = 1, ToResonance = 2, ToCutoffResonance = 3 };
constexpr float filterRoute(Modulator m, FilterTarget t) { return option(4 * t + m, 16); }
// Amplifier: which envelope shapes the level and which LFO makes the tremolo.
constexpr float ampRoute(Modulator envelope, Modulator lfo) {
    return option((envelope == Env2 ? 1 : 0) + (lfo == Lfo2 ? 2 : 0), 4);
}

enum FilterKind { LP6 = 0, LP12, LP18, LP24, HP6, HP12, HP18, HP24, BP12 = 8, BP24 = 10, BR12 = 12, BR24 = 14 };
constexpr float filter(FilterKind kind) { return option(kind, 16); }
enum ClipCurve { HardClip = 0, MiddleClip, SoftClip };
constexpr float clipCurve(ClipCurve c) { return option(c, 3); }

enum AttackCurve { FastAttack = 0, LinearAttack, SlowAttack };
enum DecayCurve { LinearDecay = 0, MiddleDecay, FastDecay };
constexpr float attackCurve(AttackCurve c) { return option(c, 3); }
constexpr float decayCurve(DecayCurve c) { return option(c, 3); }

// LFO waveforms are a set of bits; the LFO outputs their mean.
enum LfoShape { LfoSine = 1, LfoTriangle = 2, LfoSaw = 4, LfoSquare = 8, LfoSampleHold = 16, LfoRandom = 32 };
constexpr float lfoWave(int shapes) { return option(shapes, 64); }
// Mode bits: Mono (one LFO for all voices), Trigger (restarted by each note), Tempo Sync.
enum LfoModeBits { Poly = 0, Mono = 1, Trigger = 2, TempoSync = 4 };
constexpr float lfoMode(int bits) { return option(bits, 8); }
constexpr float lfoHz(double hz) { return exponential(hz, 0.02, 50.0); }
// Tempo-synced LFO rates, by cycle length.
enum LfoDivision { LfoQuarter = 18, LfoEighth = 21, LfoSixteenth = 24, LfoThirtySecond = 27 };
constexpr float lfoSync(LfoDivision d) { return option(d, 31); }

// ---- times, pitches, levels -------------------------------------------------------------------------

constexpr float attack(double seconds) { return exponential(seconds, 0.002, 20.0); }
constexpr float decay(double seconds) { return exponential(seconds, 0.004, 40.0); }
constexpr float release(double seconds) { return exponential(seconds, 0.004, 40.0); }
constexpr float sustain(double level) { return static_cast<float>(clamp01(level)); }

// Oscillator pitch in whole semitones (-48..48; the mapping truncates toward zero).
constexpr float semitones(int n) {
    return n == 0 ? 0.5f : static_cast<float>((n > 0 ? n + 49.0 : n + 48.0) / 97.0);
}
// Oscillator detune, -100..+100 cents.
constexpr float cents(double c) { return static_cast<float>(clamp01((c / 100.0 + 1.0) * 0.5)); }
// Key follow in percent, 0..200 (100 % plays in tune across the keyboard).
constexpr float keyFollow(double percent) { return static_cast<float>(clamp01(percent / 200.0)); }

// Modulation depth -1..+1 (the control squares its travel: small depths sit near the middle).
constexpr float depth(double d) {
    d = d < -1.0 ? -1.0 : (d > 1.0 ? 1.0 : d);
    return static_cast<float>(d >= 0.0 ? 0.5 * (1.0 + sqrt(d)) : 0.5 * (1.0 - sqrt(-d)));
}
// Depths that move an oscillator by a number of semitones (24 at full depth) or the cutoff by a
// number of notes (64 at full depth) at full modulator output.
constexpr float pitchDepth(double semis) { return depth(semis / 24.0); }
constexpr float cutoffDepth(double notes) { return depth(notes / 64.0); }

// Mixer channel and output levels, 0..2 on a curve (1.0 is unity).
constexpr float level(double gain) { return curve(gain, 0.0, 2.0, 2.0); }

// Filter cutoff as the note (or frequency) at the pivot key 64 (E4); with full key follow the cutoff
// moves with the key, so a cutoff of note 76 sits an octave above whatever key is played.
constexpr float cutoffNote(double note) { return static_cast<float>(clamp01((note - 24.0) / 128.0)); }
constexpr float cutoffHz(double hz) { return cutoffNote(hzToNote(hz)); }
constexpr float saturation(double level) { return exponential(level, 0.1, 4.0); }
// Noise colour by the corner of its low-pass (about 440 Hz dark .. 22 kHz white).
constexpr float noiseColorHz(double hz) {
    return static_cast<float>(clamp01((136.0 - hzToNote(hz)) / 67.0));
}

// Effect.
constexpr float delaySeconds(double s) { return exponential(s, 0.001, 1.0); }
enum DelayDivision { DelaySixteenth = 6, DelayEighth = 9, DelayDottedEighth = 11, DelayQuarter = 12,
                     DelayDottedQuarter = 14 };
constexpr float delaySync(DelayDivision d) { return option(d, 22); }
constexpr float feedback(double gain) { return static_cast<float>(clamp01((gain + 1.0) * 0.5)); }
constexpr float parallelFeedback = 0.25f;
constexpr float crossFeedback = 0.75f;
constexpr float overdrive(double drive) { return exponential(drive, 0.01, 10.0); }
constexpr float cutHz(double hz) { return exponential(hz, 20.0, 22000.0); }
constexpr float modSpeedHz(double hz) { return exponential(hz, 0.02, 50.0); }

// Voices and performance.
constexpr float voices(int n) { return (static_cast<float>(n) - 0.5f) / 64.0f; }
constexpr float voiceDetuneCents(double c) { return static_cast<float>(clamp01(c / 100.0)); }
constexpr float portamento(double seconds) { return curve(seconds, -0.01, 16.0, 5.0); }

// ---- assignable modulation slots --------------------------------------------------------------------

enum SlotSource {
    NoSource = 0, ModWheel = 1, SrcEnv1 = 128, SrcEnv2, SrcLfo1, SrcLfo2, SrcKey, SrcVelocity, SrcBend,
    SrcChannelPressure, SrcPolyPressure, SrcConstant,
};
enum SlotDestination {
    NoDestination = 0, DstPw1, DstPitch1, DstFm2, DstPw2, DstPitch2, DstMix1, DstMix2, DstMixRing, DstMixNoise,
    DstSaturation, DstCutoff, DstResonance, DstAmplifier, DstEnv1Attack, DstEnv1Decay, DstEnv1Sustain,
    DstEnv1Release, DstEnv2Attack, DstEnv2Decay, DstEnv2Sustain, DstEnv2Release, DstLfo1Speed, DstLfo1Phase,
    DstLfo2Speed, DstLfo2Phase,
};

// Slot amounts in the destination's units: an oscillator pitch moves 24 semitones and the cutoff 64
// notes per unit of slot output.
constexpr double slotSemitones(double semis) { return semis / 24.0; }
constexpr double slotNotes(double notes) { return notes / 64.0; }

// The 144 values of a program, starting from the init program; a design writes only what differs.
struct Patch {
    float values[kNumProgramValues] = {};

    constexpr Patch() {
        for (int i = 0; i < kNumProgramValues; ++i) values[i] = kInitProgramValues[i];
    }
    constexpr float& operator[](int index) { return values[index]; }
    constexpr float operator[](int index) const { return values[index]; }

    // Slot n (1..8): source times depth into a destination, scaled by a second source when one is
    // given (a unipolar scaler at sensitivity 1 multiplies by its value: an envelope fades the
    // modulation in, the modulation wheel sets its amount).
    constexpr void slot(int n, SlotSource source, SlotDestination destination, double amount,
                        SlotSource scaler = NoSource, double sensitivity = 0.0) {
        const int i = n - 1;
        values[param::ModSource1 + i] = option(source, 138);
        values[param::ModDestination1 + i] = option(destination, 26);
        values[param::ModDepth1 + i] = depth(amount);
        values[param::ModSensSource1 + i] = option(scaler, 137);
        values[param::ModSens1 + i] = static_cast<float>(clamp01(sensitivity));
    }
};

// ---- recurring building blocks ----------------------------------------------------------------------

// Envelopes, times in seconds. ENV1 shapes the amplifier unless a program routes ENV2 there.
constexpr void env1(Patch& p, double a, double d, double s, double r) {
    p[param::Env1Attack] = attack(a);
    p[param::Env1Decay] = decay(d);
    p[param::Env1Sustain] = sustain(s);
    p[param::Env1Release] = release(r);
}
constexpr void env2(Patch& p, double a, double d, double s, double r) {
    p[param::Env2Attack] = attack(a);
    p[param::Env2Decay] = decay(d);
    p[param::Env2Sustain] = sustain(s);
    p[param::Env2Release] = release(r);
}

// One voice, legato, gliding over `glideSeconds` (0: no glide).
constexpr void monoLegato(Patch& p, double glideSeconds) {
    p[param::NumberOfVoices] = voices(1);
    p[param::Legato] = kOn;
    p[param::Portamento] = glideSeconds > 0.0 ? portamento(glideSeconds) : 0.0f;
}

// Chorus: a short delay swung by the effect's modulation, spread across the sides, blended dry.
constexpr void chorus(Patch& p, double delayMs, double modDepth, double mix, double speedHz = 0.7) {
    p[param::EffectDelayTime] = delaySeconds(delayMs / 1000.0);
    p[param::EffectModDepth] = static_cast<float>(modDepth);
    p[param::EffectModSpeed] = modSpeedHz(speedHz);
    p[param::EffectDiffusion] = 0.85f;
    p[param::EffectFeedback] = feedback(0.0);
    p[param::EffectMix] = static_cast<float>(mix);
}

// Echo: repeats every `seconds` (spread by the diffusion), each `fb` of the one before.
constexpr void echo(Patch& p, double seconds, double fb, double mix, bool cross, double diffusion) {
    p[param::EffectDelayTime] = delaySeconds(seconds);
    p[param::EffectFeedback] = feedback(fb);
    p[param::EffectFeedbackConnection] = cross ? crossFeedback : parallelFeedback;
    p[param::EffectDiffusion] = static_cast<float>(diffusion);
    p[param::EffectMix] = static_cast<float>(mix);
}
constexpr void syncedEcho(Patch& p, DelayDivision division, double fb, double mix, bool cross, double diffusion) {
    echo(p, 0.1, fb, mix, cross, diffusion);
    p[param::DelayTempoSync] = kOn;
    p[param::EffectDelayTime] = delaySync(division);
}

// The effect as an overdrive insert: wet only, the shortest delay, no feedback.
constexpr void overdriveInsert(Patch& p, double drive) {
    p[param::EffectMix] = 1.0f;
    p[param::EffectDelayTime] = 0.0f;
    p[param::EffectFeedback] = feedback(0.0);
    p[param::EffectDiffusion] = 0.0f;
    p[param::EffectOverdrive] = overdrive(drive);
}

}  // namespace tolvane::design
