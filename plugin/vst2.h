// The VST 2.4 plug-in interface as this project uses it: the record that a library hands to its host,
// the numbers of the calls in both directions and the structures that travel with them. Declared from
// the published interface; every layout is that of a 64-bit host (natural alignment) and is checked below.
#pragma once

#include <cstddef>
#include <cstdint>

using VstInt32 = std::int32_t;
using VstInt16 = std::int16_t;
using VstIntPtr = std::intptr_t;

struct AEffect;

using AudioMasterCallback = VstIntPtr (*) (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                                           void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*) (AEffect* effect, VstInt32 opcode, VstInt32 index,
                                             VstIntPtr value, void* ptr, float opt);
using AEffectProcessProc = void (*) (AEffect* effect, float** inputs, float** outputs, VstInt32 frames);
using AEffectProcessDoubleProc = void (*) (AEffect* effect, double** inputs, double** outputs,
                                           VstInt32 frames);
using AEffectSetParameterProc = void (*) (AEffect* effect, VstInt32 index, float value);
using AEffectGetParameterProc = float (*) (AEffect* effect, VstInt32 index);

// Four characters as one number, the first in the highest byte.
constexpr VstInt32 fourCharacterCode (char a, char b, char c, char d)
{
    return static_cast<VstInt32> ((static_cast<std::uint32_t> (static_cast<unsigned char> (a)) << 24) |
                                  (static_cast<std::uint32_t> (static_cast<unsigned char> (b)) << 16) |
                                  (static_cast<std::uint32_t> (static_cast<unsigned char> (c)) << 8) |
                                  static_cast<std::uint32_t> (static_cast<unsigned char> (d)));
}

inline constexpr VstInt32 kEffectMagic = fourCharacterCode ('V', 's', 't', 'P');
inline constexpr VstInt32 kVstVersion = 2400;

// What a library answers its host with, one per instance. Owned by the instance.
struct AEffect
{
    VstInt32 magic;                   // kEffectMagic
    AEffectDispatcherProc dispatcher; // every call of AEffectOpcode
    AEffectProcessProc process;       // deprecated accumulating process
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 numInputs;
    VstInt32 numOutputs;
    VstInt32 flags; // bits of AEffectFlags
    VstIntPtr hostReserved1;
    VstIntPtr hostReserved2;
    VstInt32 initialDelay;  // latency in samples
    VstInt32 realQualities; // deprecated
    VstInt32 offQualities;  // deprecated
    float ioRatio;          // deprecated, 1.0
    void* object;           // the instance behind the record
    void* user;             // free for the host
    VstInt32 uniqueID;
    VstInt32 version;
    AEffectProcessProc processReplacing;
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};
static_assert (offsetof (AEffect, numPrograms) == 40 && offsetof (AEffect, object) == 96);
static_assert (sizeof (AEffect) == 192);

enum AEffectFlags : VstInt32
{
    effFlagsHasEditor = 1 << 0,
    effFlagsHasClip = 1 << 1, // deprecated
    effFlagsHasVu = 1 << 2,   // deprecated
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9,
    effFlagsCanDoubleReplacing = 1 << 12
};

// Host to plug-in. Numbers left out belong to calls that were withdrawn from the interface.
enum AEffectOpcode : VstInt32
{
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,
    effGetProgram = 3,
    effSetProgramName = 4,
    effGetProgramName = 5,
    effGetParamLabel = 6,
    effGetParamDisplay = 7,
    effGetParamName = 8,
    effSetSampleRate = 10,
    effSetBlockSize = 11,
    effMainsChanged = 12,
    effEditGetRect = 13,
    effEditOpen = 14,
    effEditClose = 15,
    effEditIdle = 19,
    effIdentify = 22, // deprecated; answers effIdentifyAnswer
    effGetChunk = 23,
    effSetChunk = 24,
    effProcessEvents = 25,
    effCanBeAutomated = 26,
    effString2Parameter = 27,
    effGetProgramNameIndexed = 29,
    effCopyProgram = 30, // deprecated
    effGetInputProperties = 33,
    effGetOutputProperties = 34,
    effGetPlugCategory = 35,
    effProcessVarIo = 41,
    effSetSpeakerArrangement = 42,
    effSetBlockSizeAndSampleRate = 43, // deprecated
    effSetBypass = 44,
    effGetEffectName = 45,
    effGetVendorString = 47,
    effGetProductString = 48,
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51,
    effGetTailSize = 52,
    effGetParameterProperties = 56,
    effGetVstVersion = 58,
    effEditKeyDown = 59,
    effEditKeyUp = 60,
    effSetEditKnobMode = 61,
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effGetSpeakerArrangement = 69,
    effStartProcess = 71,
    effStopProcess = 72,
    effSetPanLaw = 74,
    effBeginLoadBank = 75,
    effBeginLoadProgram = 76,
    effSetProcessPrecision = 77,
    effGetNumMidiInputChannels = 78,
    effGetNumMidiOutputChannels = 79
};
inline constexpr VstInt32 effIdentifyAnswer = fourCharacterCode ('N', 'v', 'E', 'f');

// Plug-in to host.
enum AudioMasterOpcode : VstInt32
{
    audioMasterAutomate = 0,
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterWantMidi = 6, // deprecated
    audioMasterGetTime = 7,
    audioMasterProcessEvents = 8,
    audioMasterIOChanged = 13,
    audioMasterSizeWindow = 15,
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetInputLatency = 18,
    audioMasterGetOutputLatency = 19,
    audioMasterGetCurrentProcessLevel = 23,
    audioMasterGetAutomationState = 24,
    audioMasterGetVendorString = 32,
    audioMasterGetProductString = 33,
    audioMasterGetVendorVersion = 34,
    audioMasterCanDo = 37,
    audioMasterGetLanguage = 38,
    audioMasterGetDirectory = 41,
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43,
    audioMasterEndEdit = 44
};

// Longest texts of the interface, in characters without the terminating zero.
inline constexpr int kVstMaxProgNameLen = 24;
inline constexpr int kVstMaxParamStrLen = 8;
inline constexpr int kVstMaxVendorStrLen = 64;
inline constexpr int kVstMaxProductStrLen = 64;
inline constexpr int kVstMaxEffectNameLen = 32;

enum VstPlugCategory : VstInt32
{
    kPlugCategUnknown = 0,
    kPlugCategEffect = 1,
    kPlugCategSynth = 2
};

inline constexpr VstInt32 kVstMidiType = 1;  // VstEvent::type of a VstMidiEvent
inline constexpr VstInt32 kVstSysExType = 6; // VstEvent::type of a system exclusive event

// The part that all events share.
struct VstEvent
{
    VstInt32 type;
    VstInt32 byteSize;    // bytes after this field and the one before
    VstInt32 deltaFrames; // samples from the start of the block
    VstInt32 flags;
    char data[16];
};

struct VstMidiEvent
{
    VstInt32 type; // kVstMidiType
    VstInt32 byteSize;
    VstInt32 deltaFrames;
    VstInt32 flags;
    VstInt32 noteLength;
    VstInt32 noteOffset;
    char midiData[4]; // one to three MIDI bytes, the fourth is 0
    char detune;      // cents
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};
static_assert (sizeof (VstEvent) == 32 && sizeof (VstMidiEvent) == 32);

// The events of one block, in ascending order of deltaFrames. The array really holds numEvents pointers.
struct VstEvents
{
    VstInt32 numEvents;
    VstIntPtr reserved;
    VstEvent* events[2];
};
static_assert (offsetof (VstEvents, events) == 16);

enum VstTimeInfoFlags : VstInt32
{
    kVstTransportChanged = 1 << 0,
    kVstTransportPlaying = 1 << 1,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstTimeSigValid = 1 << 13
};

struct VstTimeInfo
{
    double samplePos;  // samples since the start of the piece
    double sampleRate; // Hz
    double nanoSeconds;
    double ppqPos;      // quarter notes
    double tempo;       // quarter notes per minute
    double barStartPos; // quarter notes
    double cycleStartPos;
    double cycleEndPos;
    VstInt32 timeSigNumerator;
    VstInt32 timeSigDenominator;
    VstInt32 smpteOffset;
    VstInt32 smpteFrameRate;
    VstInt32 samplesToNextClock;
    VstInt32 flags; // bits of VstTimeInfoFlags
};
static_assert (sizeof (VstTimeInfo) == 88);

enum VstPinPropertiesFlags : VstInt32
{
    kVstPinIsActive = 1 << 0,
    kVstPinIsStereo = 1 << 1
};

struct VstPinProperties
{
    char label[64];
    VstInt32 flags; // bits of VstPinPropertiesFlags
    VstInt32 arrangementType;
    char shortLabel[8];
    char future[48];
};
static_assert (sizeof (VstPinProperties) == 128);

struct VstKeyCode
{
    VstInt32 character;
    unsigned char virt;     // a VstVirtualKey, 0 for a plain character
    unsigned char modifier; // bits of VstModifierKey
};

// Editor rectangle in pixels, origin top left.
struct ERect
{
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};
