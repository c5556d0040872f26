#pragma once
#include <cstddef>
#include <cstdint>

/**
 * The VST 2 plug-in interface in its 64-bit form: records, opcodes and flags, under their published names.
 *
 * Only what a host and a plug-in exchange stands here. Pointer-sized integers are `VstIntPtr` on every
 * platform, so that one declaration of the host callback serves Linux and macOS alike.
 */
struct AEffect;

using VstIntPtr = long long;
static_assert(sizeof(VstIntPtr) == sizeof(void*), "the interface is used in its 64-bit form only");

using audioMasterCallback = VstIntPtr (*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                          VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                            VstIntPtr value, void* ptr, float opt);
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs, std::int32_t frames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          std::int32_t frames);
using AEffectSetParameterProc = void (*)(AEffect* effect, std::int32_t index, float value);
using AEffectGetParameterProc = float (*)(AEffect* effect, std::int32_t index);

/** The function that a plug-in exports: "VSTPluginMain", in older ones "main_macho" or "main". */
using VstPluginEntryProc = AEffect* (*)(audioMasterCallback);

/** "VstP": the value of `AEffect::magic`. */
inline constexpr std::int32_t kEffectMagic = 0x56737450;

struct AEffect
{
    std::int32_t magic;
    AEffectDispatcherProc dispatcher;
    AEffectProcessProc process; // accumulating form of old hosts
    AEffectSetParameterProc setParameter;
    AEffectGetParameterProc getParameter;
    std::int32_t numPrograms;
    std::int32_t numParams;
    std::int32_t numInputs;
    std::int32_t numOutputs;
    std::int32_t flags;
    void* resvd1;
    void* resvd2;
    std::int32_t initialDelay; // samples
    std::int32_t realQualities;
    std::int32_t offQualities;
    float ioRatio;
    void* object; // the plug-in's own
    void* user;
    std::int32_t uniqueID;
    std::int32_t version;
    AEffectProcessProc processReplacing;
    AEffectProcessDoubleProc processDoubleReplacing;
    char future[56];
};
static_assert(sizeof(AEffect) == 192);
static_assert(offsetof(AEffect, dispatcher) == 8 && offsetof(AEffect, numPrograms) == 40);
static_assert(offsetof(AEffect, flags) == 56 && offsetof(AEffect, resvd1) == 64);
static_assert(offsetof(AEffect, initialDelay) == 80 && offsetof(AEffect, object) == 96);
static_assert(offsetof(AEffect, uniqueID) == 112 && offsetof(AEffect, processReplacing) == 120);

enum VstAEffectFlags : std::int32_t
{
    effFlagsHasEditor = 1 << 0,
    effFlagsCanReplacing = 1 << 4,
    effFlagsProgramChunks = 1 << 5,
    effFlagsIsSynth = 1 << 8,
    effFlagsNoSoundInStop = 1 << 9
};

/** Host to plug-in. Arguments not named are 0, null or 0.0. */
enum AEffectOpcodes : std::int32_t
{
    effOpen = 0,
    effClose = 1,
    effSetProgram = 2,      // value: program
    effGetProgram = 3,      // returns the program
    effSetProgramName = 4,  // ptr: text
    effGetProgramName = 5,  // ptr: text buffer
    effGetParamLabel = 6,   // index: parameter, ptr: text buffer
    effGetParamDisplay = 7, // index: parameter, ptr: text buffer
    effGetParamName = 8,    // index: parameter, ptr: text buffer
    effSetSampleRate = 10,  // opt: Hz
    effSetBlockSize = 11,   // value: largest number of frames in a block
    effMainsChanged = 12,   // value: 1 on, 0 off
    effEditGetRect = 13,    // ptr: ERect**
    effEditOpen = 14,       // ptr: parent window
    effEditClose = 15,
    effEditIdle = 19,
    effGetChunk = 23,              // index: 0 bank, 1 program; ptr: void**; returns the size in bytes
    effSetChunk = 24,              // index: 0 bank, 1 program; value: size in bytes; ptr: data
    effProcessEvents = 25,         // ptr: VstEvents*
    effCanBeAutomated = 26,        // index: parameter; returns 1 when it can
    effGetProgramNameIndexed = 29, // index: program, ptr: text buffer
    effGetInputProperties = 33,    // index: pin, ptr: VstPinProperties*; returns 1 when filled
    effGetOutputProperties = 34,   // index: pin, ptr: VstPinProperties*; returns 1 when filled
    effGetPlugCategory = 35,
    effSetSpeakerArrangement = 42, // value, ptr: VstSpeakerArrangement* of the inputs, of the outputs
    effSetBypass = 44,             // value: 1 on, 0 off
    effGetEffectName = 45,         // ptr: text buffer
    effGetVendorString = 47,       // ptr: text buffer
    effGetProductString = 48,      // ptr: text buffer
    effGetVendorVersion = 49,
    effVendorSpecific = 50,
    effCanDo = 51, // ptr: text; returns 1 yes, 0 unknown, -1 no
    effGetTailSize = 52,
    effIdle = 53,
    effGetParameterProperties = 56, // index: parameter, ptr: VstParameterProperties*; returns 1 when filled
    effGetVstVersion = 58,
    effGetMidiProgramName = 62,     // ptr: MidiProgramName*
    effGetMidiProgramCategory = 64, // ptr: MidiProgramCategory*
    effBeginSetProgram = 67,
    effEndSetProgram = 68,
    effStartProcess = 71,
    effStopProcess = 72
};

/** Plug-in to host, through the `audioMasterCallback` given to the entry function. */
enum AudioMasterOpcodes : std::int32_t
{
    audioMasterAutomate = 0, // index: parameter, opt: value
    audioMasterVersion = 1,
    audioMasterCurrentId = 2,
    audioMasterIdle = 3,
    audioMasterPinConnected = 4,
    audioMasterWantMidi = 6,
    audioMasterGetTime = 7,       // value: wanted fields; returns VstTimeInfo*
    audioMasterProcessEvents = 8, // ptr: VstEvents*
    audioMasterIOChanged = 13,
    audioMasterNeedIdle = 14,
    audioMasterSizeWindow = 15, // index: width, value: height
    audioMasterGetSampleRate = 16,
    audioMasterGetBlockSize = 17,
    audioMasterGetCurrentProcessLevel = 23, // returns one of VstProcessLevels
    audioMasterGetAutomationState = 24,     // returns one of VstAutomationStates
    audioMasterGetVendorString = 32,        // ptr: text buffer
    audioMasterGetProductString = 33,       // ptr: text buffer
    audioMasterGetVendorVersion = 34,
    audioMasterCanDo = 37, // ptr: text; returns 1 yes, 0 unknown, -1 no
    audioMasterGetLanguage = 38,
    audioMasterGetDirectory = 41, // returns a text
    audioMasterUpdateDisplay = 42,
    audioMasterBeginEdit = 43, // index: parameter
    audioMasterEndEdit = 44    // index: parameter
};

/** Longest texts that the interface allows, without the terminator; plug-ins write more all the same. */
enum VstStringConstants : std::int32_t
{
    kVstMaxParamStrLen = 8,
    kVstMaxProgNameLen = 24,
    kVstMaxEffectNameLen = 32,
    kVstMaxVendorStrLen = 64,
    kVstMaxProductStrLen = 64
};

enum VstProcessLevels : std::int32_t
{
    kVstProcessLevelUser = 1,
    kVstProcessLevelRealtime = 2
};

enum VstAutomationStates : std::int32_t
{
    kVstAutomationOff = 1
};

enum VstHostLanguage : std::int32_t
{
    kVstLangEnglish = 1
};

enum VstTimeInfoFlags : std::int32_t
{
    kVstTransportChanged = 1 << 0,
    kVstTransportPlaying = 1 << 1,
    kVstTransportCycleActive = 1 << 2,
    kVstNanosValid = 1 << 8,
    kVstPpqPosValid = 1 << 9,
    kVstTempoValid = 1 << 10,
    kVstBarsValid = 1 << 11,
    kVstCyclePosValid = 1 << 12,
    kVstTimeSigValid = 1 << 13
};

struct VstTimeInfo
{
    double samplePos;
    double sampleRate; // Hz
    double nanoSeconds;
    double ppqPos; // quarter notes
    double tempo;  // beats per minute
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    std::int32_t timeSigNumerator;
    std::int32_t timeSigDenominator;
    std::int32_t smpteOffset;
    std::int32_t smpteFrameRate;
    std::int32_t samplesToNextClock;
    std::int32_t flags; // VstTimeInfoFlags
};
static_assert(sizeof(VstTimeInfo) == 88 && offsetof(VstTimeInfo, flags) == 84);

enum VstEventTypes : std::int32_t
{
    kVstMidiType = 1,
    kVstSysExType = 6
};

/** What every event starts with; `type` says which record it really is. */
struct VstEvent
{
    std::int32_t type;
    std::int32_t byteSize;
    std::int32_t deltaFrames; // from the start of the block
    std::int32_t flags;
    char data[16];
};
static_assert(sizeof(VstEvent) == 32);

struct VstMidiEvent
{
    std::int32_t type; // kVstMidiType
    std::int32_t byteSize;
    std::int32_t deltaFrames; // from the start of the block
    std::int32_t flags;
    std::int32_t noteLength;
    std::int32_t noteOffset;
    char midiData[4]; // status byte first
    char detune;      // cents
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};
static_assert(sizeof(VstMidiEvent) == 32 && offsetof(VstMidiEvent, midiData) == 24);

struct VstMidiSysexEvent
{
    std::int32_t type; // kVstSysExType
    std::int32_t byteSize;
    std::int32_t deltaFrames; // from the start of the block
    std::int32_t flags;
    std::int32_t dumpBytes;
    VstIntPtr reserved1;
    char* sysexDump; // from the first byte, 0xF0, to the last, 0xF7
    VstIntPtr reserved2;
};
static_assert(sizeof(VstMidiSysexEvent) == 48 && offsetof(VstMidiSysexEvent, sysexDump) == 32);

/** The kinds of arrangements of speakers that have no speakers of their own to name. */
enum VstSpeakerArrangementType : std::int32_t
{
    kSpeakerArrMono = 0,
    kSpeakerArrStereo = 1
};
/** Of one speaker. */
enum VstSpeakerType : std::int32_t
{
    kSpeakerM = 0,
    kSpeakerL = 1,
    kSpeakerR = 2
};

struct VstSpeakerProperties
{
    float azimuth;
    float elevation;
    float radius;
    float reserved;
    char name[64];
    std::int32_t type; // VstSpeakerType
    char future[28];
};
static_assert(sizeof(VstSpeakerProperties) == 112);

struct VstSpeakerArrangement
{
    std::int32_t type; // VstSpeakerArrangementType
    std::int32_t numChannels;
    VstSpeakerProperties speakers[8];
};
static_assert(sizeof(VstSpeakerArrangement) == 904);

/** A list of events; the array really holds `numEvents` pointers. */
struct VstEvents
{
    std::int32_t numEvents;
    VstIntPtr reserved;
    VstEvent* events[2];
};
static_assert(offsetof(VstEvents, events) == 16);

enum VstPinPropertiesFlags : std::int32_t
{
    kVstPinIsActive = 1 << 0,
    kVstPinIsStereo = 1 << 1,
    kVstPinUseSpeaker = 1 << 2
};

struct VstPinProperties
{
    char label[64];
    std::int32_t flags; // VstPinPropertiesFlags
    std::int32_t arrangementType;
    char shortLabel[8];
    char future[48];
};
static_assert(sizeof(VstPinProperties) == 128);

enum VstParameterFlags : std::int32_t
{
    kVstParameterIsSwitch = 1 << 0,
    kVstParameterUsesIntegerMinMax = 1 << 1
};

struct VstParameterProperties
{
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[64];
    std::int32_t flags; // VstParameterFlags
    std::int32_t minInteger;
    std::int32_t maxInteger;
    std::int32_t stepInteger;
    std::int32_t largeStepInteger;
    char shortLabel[8];
    std::int16_t displayIndex;
    std::int16_t category;
    std::int16_t numParametersInCategory;
    std::int16_t reserved;
    char categoryLabel[24];
    char future[16];
};
static_assert(sizeof(VstParameterProperties) == 152 && offsetof(VstParameterProperties, shortLabel) == 96);

/** Editor rectangle in pixels. */
struct ERect
{
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};
static_assert(sizeof(ERect) == 8);

enum MidiProgramNameFlags : std::int32_t
{
    kMidiIsOmni = 1
};

struct MidiProgramName
{
    std::int32_t thisProgramIndex;
    char name[64];
    char midiProgram;
    char midiBankMsb;
    char midiBankLsb;
    char reserved;
    std::int32_t parentCategoryIndex;
    std::int32_t flags; // MidiProgramNameFlags
};
static_assert(sizeof(MidiProgramName) == 80);

struct MidiProgramCategory
{
    std::int32_t thisCategoryIndex;
    char name[64];
    std::int32_t parentCategoryIndex;
    std::int32_t flags;
};
static_assert(sizeof(MidiProgramCategory) == 76);
