// Binary interface of VST 2.x plug-ins, declared from the published layout.
// Used by the plug-in shell and by the offline renderer (which hosts plug-ins).
#pragma once

#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define VST_CALL __cdecl
#else
#define VST_CALL
#endif

namespace vst2 {

using int32 = std::int32_t;
using intptr = std::intptr_t;

struct AEffect;

using HostCallback = intptr(VST_CALL*)(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr,
                                       float opt);
using DispatcherProc = intptr(VST_CALL*)(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr,
                                         float opt);
using ProcessProc = void(VST_CALL*)(AEffect* effect, float** inputs, float** outputs, int32 frames);
using ProcessDoubleProc = void(VST_CALL*)(AEffect* effect, double** inputs, double** outputs, int32 frames);
using SetParameterProc = void(VST_CALL*)(AEffect* effect, int32 index, float value);
using GetParameterProc = float(VST_CALL*)(AEffect* effect, int32 index);
using EntryProc = AEffect*(VST_CALL*)(HostCallback host);

constexpr int32 fourCC(char a, char b, char c, char d) {
    return static_cast<int32>((static_cast<std::uint32_t>(static_cast<unsigned char>(a)) << 24) |
                              (static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 16) |
                              (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 8) |
                              static_cast<std::uint32_t>(static_cast<unsigned char>(d)));
}

constexpr int32 kEffectMagic = fourCC('V', 's', 't', 'P');

struct AEffect {
    int32 magic;
    DispatcherProc dispatcher;
    ProcessProc process;  // accumulating
    SetParameterProc setParameter;
    GetParameterProc getParameter;
    int32 numPrograms;
    int32 numParams;
    int32 numInputs;
    int32 numOutputs;
    int32 flags;
    intptr reserved1;
    intptr reserved2;
    int32 initialDelay;
    int32 realQualities;
    int32 offQualities;
    float ioRatio;
    void* object;
    void* user;
    int32 uniqueID;
    int32 version;
    ProcessProc processReplacing;
    ProcessDoubleProc processDoubleReplacing;
    char future[56];
};

// AEffect flags
enum : int32 {
    effFlagsHasEditor = 1,
    effFlagsHasClip = 2,
    effFlagsHasVu = 4,
    effFlagsCanMono = 8,
    effFlagsCanReplacing = 16,
    effFlagsProgramChunks = 32,
    effFlagsIsSynth = 256,
    effFlagsNoSoundInStop = 512,
    effFlagsExtIsAsync = 1024,
    effFlagsExtHasBuffer = 2048,
    effFlagsCanDoubleReplacing = 4096,
};

// Opcodes the host sends to the plug-in.
enum PluginOpcode : int32 {
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,
    effGetProgram = 3,
    effSetProgramName = 4,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effGetVu = 9,
    effSetSampleRate = 10,
    effSetBlockSize = 11,
    effMainsChanged = 12,
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditIdle = 19,
    effIdentify = 22,
    effGetChunk = 23,
    effSetChunk = 24,
    effProcessEvents = 25,
    effCanBeAutomated = 26,
    effString2Parameter = 27,
    effGetNumProgramCategories = 28,
    effGetProgramNameIndexed = 29,
    effCopyProgram = 30,
    effConnectInput = 31,
    effConnectOutput = 32,
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effSetBlockSizeAndSampleRate = 43,
    effGetEffectName = 45,
    effGetVendorString = 47,
    effGetProductString = 48,
    effGetVendorVersion = 49,
    effCanDo = 51,
    effKeysRequired = 57,
    effGetVstVersion = 58,
    effEditKeyDown = 59,
    effEditKeyUp = 60,
    effSetEditKnobMode = 61,
    effGetCurrentMidiProgram = 63,
};

// Opcodes the plug-in sends to the host.
enum HostOpcode : int32 {
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,
    audioMasterTempoAt = 10,
    audioMasterGetNumAutomatableParameters = 11,
    audioMasterGetParameterQuantization = 12,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44,
    audioMasterOpenFileSelector = 45,
};

enum : int32 { kPlugCategSynth = 2 };
enum : int32 { kVstTempoValid = 1 << 10 };
enum : int32 { kVstMidiType = 1, kVstSysExType = 6 };
enum : int32 { kVstPinIsActive = 1, kVstPinIsStereo = 2, kVstPinUseSpeaker = 4 };

struct VstEvent {
    int32 type;
    int32 byteSize;
    int32 deltaFrames;
    int32 flags;
    char data[16];
};

struct VstMidiEvent {
    int32 type;
    int32 byteSize;
    int32 deltaFrames;
    int32 flags;
    int32 noteLength;
    int32 noteOffset;
    char midiData[4];
    char detune;
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};

struct VstEvents {
    int32 numEvents;
    intptr reserved;
    VstEvent* events[2];  // variable length in practice
};

struct VstTimeInfo {
    double samplePos;
    double sampleRate;
    double nanoSeconds;
    double ppqPos;
    double tempo;
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    int32 timeSigNumerator;
    int32 timeSigDenominator;
    int32 smpteOffset;
    int32 smpteFrameRate;
    int32 samplesToNextClock;
    int32 flags;
};

struct VstPinProperties {
    char label[64];
    int32 flags;
    int32 arrangementType;
    char shortLabel[8];
    char future[48];
};

struct ERect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

struct VstKeyCode {
    int32 character;
    unsigned char virt;
    unsigned char modifier;
};

static_assert(sizeof(VstMidiEvent) == 32, "VstMidiEvent must be 32 bytes");
static_assert(sizeof(VstPinProperties) == 64 + 4 + 4 + 8 + 48, "VstPinProperties layout");
static_assert(sizeof(ERect) == 8, "ERect layout");

}  // namespace vst2
