#include "params/FactoryBank.h"

#include "params/InitProgram.h"

namespace tolvane {
namespace {

constexpr const char* kDesignedNames[kNumDesignedPrograms] = {
    "Lavender Myst", "Blue Dragon", "Valhalla", "Spiral Nebula", "Aurora", "Warm Pulse Strings",
    "PWM Vivrato Strings", "Slow Sync Strings", "HP Sweeping Strings", "Harmonium", "Saw Unison Lead",
    "PWM Sync Lead", "Phat Lead", "V-Analog Lead", "Brass Solo", "Percussive Organ", "Perc Bright Organ 1",
    "Purple Hammond", "Noisy Attack Organ", "Polyphonic Pianika", "Hard FM Piano", "Mild E.Piano",
    "Warm Percussive Piano", "BP Percussive Clav", "Harpsichord", "Warm PWM Guitar", "Bright PWM Pluck",
    "Leslie Vibe", "Thumb Piano", "Chime", "Synth Brass", "Bright Octave Saw", "BubbleBrass", "Ethno Voice",
    "Husky Wind", "5th Brass", "Spacy Horn", "7th Orbit", "Warp Sixteen", "Clock-work", "Groovy House Bass",
    "303 Hardcore", "Reso Vel Bass", "Dirty Driven Bass", "FM Bass", "Fat Rubber Bass", "Sync Bass",
    "Fat Square", "Attackless Subbass", "Bass Drum Base", "House BD", "Noizy BD", "Noisy Snare",
    "Pseudoreal Tom", "Noiz Clap", "Closed Synhat", "Open Synhat", "Velo Tabla", "Ethnic Drum", "Katana Hit",
    "Magnetosphere", "Chaotic Conversation", "Quasar 3C 273", "Infinity",
};

constexpr char kInitName[] = "InitProg";

// "Lavender Myst", the sound the plug-in starts with: two detuned pulses through a 12 dB low-pass,
// slow envelopes, a gentle delay.
constexpr float kLavenderMyst[kNumProgramValues] = {
    /*   0 */ 0.875f, 0.0f, 0.358f, 0.51f, 0.497f, 0.5f, 0.03125f, 0.5f,
    /*   8 */ 0.5f, 0.65625f, 0.819f, 0.03f, 0.875f, 0.0f, 0.725f, 0.504f,
    /*  16 */ 0.503f, 0.5f, 0.015625f, 0.52f, 0.5f, 0.359375f, 0.777f, 0.004f,
    /*  24 */ 0.4f, 0.455f, 0.0f, 0.0f, 1.0f, 1.0f, 0.09375f, 0.609197f,
    /*  32 */ 0.833333f, 0.485f, 1.0f, 0.5f, 0.28125f, 0.869f, 0.5f, 0.96875f,
    /*  40 */ 0.583f, 0.263f, 0.875f, 0.5f, 0.7f, 0.843287f, 0.5f, 0.812469f,
    /*  48 */ 0.5f, 0.034f, 0.816072f, 0.530253f, 0.833f, 0.814316f, 0.5f, 0.837f,
    /*  56 */ 0.706018f, 0.023438f, 0.0625f, 0.592067f, 0.0f, 0.507812f, 0.0625f, 0.628071f,
    /*  64 */ 0.0f, 1.0f, 0.0f, 0.384f, 0.773885f, 0.243f, 0.89f, 0.75f,
    /*  72 */ 0.678296f, 0.376985f, 1.0f, 0.452495f, 0.08f, 0.117188f, 0.0f, 0.0f,
    /*  80 */ 0.03f, 0.0f, 0.683f, 0.459f, 0.541f, 0.5f, 0.5f, 0.5f,
    /*  88 */ 0.5f, 0.5f, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /*  96 */ 0.0f, 0.0f, 0.0f, 0.01087f, 0.01087f, 0.003623f, 0.003623f, 0.003623f,
    /* 104 */ 0.003623f, 0.003623f, 0.003623f, 0.00365f, 0.00365f, 0.00365f, 0.00365f, 0.00365f,
    /* 112 */ 0.00365f, 0.00365f, 0.00365f, 0.096154f, 0.211538f, 0.019231f, 0.019231f, 0.019231f,
    /* 120 */ 0.019231f, 0.019231f, 0.019231f, 0.5f, 0.1f, 0.029412f, 0.0f, 0.0f,
    /* 128 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 136 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
};

struct Bank {
    ProgramRecord records[kNumPrograms];
};

constexpr void setName(ProgramRecord& record, const char* name) {
    for (int i = 0; i < kMaxProgramNameLength && name[i] != '\0'; ++i) record.name[i] = name[i];
}

constexpr void setValues(ProgramRecord& record, const float (&values)[kNumProgramValues]) {
    for (int i = 0; i < kNumProgramValues; ++i) record.values[i] = values[i];
}

// Built by the compiler, so the bank is read-only data and needs no start-up work.
// Programs 1..63 start from the init values until their sound data is designed.
constexpr Bank makeBank() {
    Bank bank{};
    for (int p = 0; p < kNumPrograms; ++p) {
        ProgramRecord& record = bank.records[p];
        setName(record, p < kNumDesignedPrograms ? kDesignedNames[p] : kInitName);
        setValues(record, p == 0 ? kLavenderMyst : kInitProgramValues);
    }
    return bank;
}

constexpr Bank kFactoryBank = makeBank();

}  // namespace

const ProgramRecord& factoryProgram(int index) {
    if (index < 0) index = 0;
    if (index >= kNumPrograms) index = kNumPrograms - 1;
    return kFactoryBank.records[index];
}

}  // namespace tolvane
