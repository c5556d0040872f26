#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Source/AAX_SInstrumentSetupInfo.h"

#include <cstddef>
#include <cstdint>

class AAX_CInstrumentParameters;
class AAX_IMIDINode;

/** Which field of the render record the host fills with what; the description declares each. */
enum EInstrumentField : AAX_CFieldIndex
{
    kInstrumentField_AudioInputs = 0,
    kInstrumentField_AudioOutputs = 1,
    kInstrumentField_NumSamples = 2,
    kInstrumentField_Clock = 3,
    kInstrumentField_InputNode = 4,
    kInstrumentField_GlobalNode = 5,
    kInstrumentField_TransportNode = 6,
    kInstrumentField_AdditionalInputNodes = 7,
    kInstrumentField_PrivateData = 22,
    kInstrumentField_Meters = 23,
    kInstrumentField_OutputNode = 24 // only where it is needed
};

/**
 * What the host hands to a render call of one instance, one pointer per field.
 *
 * A node field points at four bytes of private data where the description asked for no node.
 */
struct AAX_SInstrumentRenderInfo
{
    float** mAudioInputs;      // the described input channels
    float** mAudioOutputs;     // the described main channels, then those of the auxiliary stems
    std::int32_t* mNumSamples; // frames of this call
    std::int64_t* mClock;
    AAX_IMIDINode* mInputNode;
    AAX_IMIDINode* mGlobalNode;
    AAX_IMIDINode* mTransportNode;
    AAX_IMIDINode* mAdditionalInputMIDINodes[kMaxAdditionalMIDINodes];
    AAX_CInstrumentParameters** mPrivateData; // the slot that `ResetFieldData` filled
    float** mMeters;
    AAX_IMIDINode* mOutputNode; // there only where one was described
};
static_assert(offsetof(AAX_SInstrumentRenderInfo, mInputNode) == kInstrumentField_InputNode * sizeof(void*));
static_assert(offsetof(AAX_SInstrumentRenderInfo, mPrivateData) ==
              kInstrumentField_PrivateData * sizeof(void*));
static_assert(offsetof(AAX_SInstrumentRenderInfo, mMeters) == kInstrumentField_Meters * sizeof(void*));
