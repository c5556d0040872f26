#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <optional>
#include <string>
#include <vector>

/** What a module told the host about itself, in the order in which it was told. */

struct SProperty
{
    AAX_EProperty mProperty = 0;
    AAX_CPropertyValue mValue = 0;
};
using PropertyList = std::vector<SProperty>;

enum class EFieldKind
{
    Reserved,
    AudioIn,
    AudioOut,
    AudioBufferLength,
    SampleRate,
    Clock,
    SideChainIn,
    DataInPort,
    PrivateData,
    DmaInstance,
    MidiNode,
    Meters
};
const char* NameOfFieldKind(EFieldKind inKind) noexcept;

/** One slot of the render record. Which numbers mean something depends on the kind. */
struct SField
{
    AAX_CFieldIndex mIndex = 0;
    EFieldKind mKind = EFieldKind::Reserved;
    std::uint32_t mSize = 0;                                    // bytes: private data, data port
    std::uint32_t mOptions = 0;                                 // private data
    std::int32_t mType = 0;                                     // data port, DMA mode, reserved field
    AAX_EMIDINodeType mNodeType = AAX_eMIDINodeType_LocalInput; // MIDI node
    std::string mName;                                          // MIDI node
    std::uint32_t mMask = 0;                                    // MIDI node
    std::vector<AAX_CTypeID> mMeterIDs;                         // meters
};

struct SAuxStem
{
    AAX_CFieldIndex mIndex = 0;
    std::int32_t mFormat = 0;
    std::string mName;
};

struct SProcessProc
{
    AAX_CProcessProc mProcess = nullptr;
    AAX_CInstanceInitProc mInstanceInit = nullptr;
    AAX_CBackgroundProc mBackground = nullptr;
    PropertyList mProperties;
};

struct SComponent
{
    std::vector<SField> mFields;
    std::vector<SAuxStem> mAuxStems;
    std::vector<SProcessProc> mProcs;
};

struct SProcPtr
{
    void* mProc = nullptr;
    AAX_CProcPtrID mID = 0;
};

struct SMeterDescription
{
    AAX_CTypeID mID = 0;
    std::string mName;
    PropertyList mProperties;
};

struct SBypassParameter
{
    std::uint32_t mCategory = 0;
    std::string mParameterID;
};

struct SResource
{
    std::int32_t mType = 0;
    std::string mInfo;
};

struct SEffect
{
    std::string mID; // as given to the collection
    std::vector<std::string> mNames;
    std::vector<std::uint32_t> mCategories;
    std::vector<SBypassParameter> mBypassParameters;
    std::vector<SComponent> mComponents;
    std::vector<SProcPtr> mProcPtrs;
    std::vector<SResource> mResources;
    std::vector<SMeterDescription> mMeters;
    PropertyList mProperties;
};

struct SDescription
{
    std::vector<SEffect> mEffects;
    std::string mManufacturerName;
    std::vector<std::string> mPackageNames;
    std::uint32_t mPackageVersion = 0;
    PropertyList mProperties;
};

/** Formats of a component's main stems. */
struct SMainStems
{
    std::int32_t mInput = AAX_eStemFormat_None;
    std::int32_t mOutput = AAX_eStemFormat_None;
    bool operator==(const SMainStems&) const = default;
};
/** Of its first render procedure; none where it has no such. */
SMainStems MainStemsOf(const SComponent& inComponent);

std::optional<AAX_CPropertyValue> FindProperty(const PropertyList& inProperties, AAX_EProperty inProperty);
/** Null when the effect registered no such procedure. */
void* FindProcPtr(const SEffect& inEffect, AAX_CProcPtrID inID);
