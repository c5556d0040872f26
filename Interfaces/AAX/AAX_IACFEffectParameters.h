#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFInterfaces.h"

class AAX_IParameter;
class AAX_IString;

/**
 * An instance's data model as the host drives it. The order of the declarations is the order of the slots;
 * the second version continues the table. Values are normalized, 0 to 1.
 */
class AAX_IACFEffectParameters : public IACFUnknown
{
public:
    virtual AAX_Result Initialize(IACFUnknown* hostContext) = 0;
    virtual AAX_Result Uninitialize() = 0;
    virtual AAX_Result NotificationReceived(AAX_CTypeID type, const void* data, std::uint32_t size) = 0;
    virtual AAX_Result GetNumberOfParameters(std::int32_t* count) const = 0;
    virtual AAX_Result GetMasterBypassParameter(AAX_IString* id) const = 0;
    virtual AAX_Result GetParameterIsAutomatable(AAX_CParamID id, AAX_CBoolean* automatable) const = 0;
    virtual AAX_Result GetParameterNumberOfSteps(AAX_CParamID id, std::int32_t* steps) const = 0;
    virtual AAX_Result GetParameterName(AAX_CParamID id, AAX_IString* name) const = 0;
    virtual AAX_Result GetParameterNameOfLength(AAX_CParamID id, AAX_IString* name,
                                                std::int32_t length) const = 0;
    virtual AAX_Result GetParameterDefaultNormalizedValue(AAX_CParamID id, double* value) const = 0;
    virtual AAX_Result SetParameterDefaultNormalizedValue(AAX_CParamID id, double value) = 0;
    virtual AAX_Result GetParameterType(AAX_CParamID id, AAX_EParameterType* type) const = 0;
    virtual AAX_Result GetParameterOrientation(AAX_CParamID id, std::int32_t* orientation) const = 0;
    virtual AAX_Result GetParameter(AAX_CParamID id, AAX_IParameter** parameter) = 0;
    virtual AAX_Result GetParameterIndex(AAX_CParamID id, std::int32_t* index) const = 0;
    virtual AAX_Result GetParameterIDFromIndex(std::int32_t index, AAX_IString* id) const = 0;
    virtual AAX_Result GetParameterValueInfo(AAX_CParamID id, std::int32_t selector,
                                             std::int32_t* value) const = 0;
    virtual AAX_Result GetParameterValueFromString(AAX_CParamID id, double* value,
                                                   const AAX_IString& text) const = 0;
    virtual AAX_Result GetParameterStringFromValue(AAX_CParamID id, double value, AAX_IString* text,
                                                   std::int32_t maxLength) const = 0;
    virtual AAX_Result GetParameterValueString(AAX_CParamID id, AAX_IString* text,
                                               std::int32_t maxLength) const = 0;
    virtual AAX_Result GetParameterNormalizedValue(AAX_CParamID id, double* value) const = 0;
    virtual AAX_Result SetParameterNormalizedValue(AAX_CParamID id, double value) = 0;
    virtual AAX_Result SetParameterNormalizedRelative(AAX_CParamID id, double delta) = 0;
    virtual AAX_Result TouchParameter(AAX_CParamID id) = 0;
    virtual AAX_Result ReleaseParameter(AAX_CParamID id) = 0;
    virtual AAX_Result UpdateParameterTouch(AAX_CParamID id, AAX_CBoolean touched) = 0;
    virtual AAX_Result UpdateParameterNormalizedValue(AAX_CParamID id, double value,
                                                      AAX_EUpdateSource source) = 0;
    virtual AAX_Result UpdateParameterNormalizedRelative(AAX_CParamID id, double delta) = 0;
    virtual AAX_Result GenerateCoefficients() = 0;
    virtual AAX_Result ResetFieldData(AAX_CFieldIndex field, void* data, std::uint32_t size) const = 0;
    virtual AAX_Result GetNumberOfChunks(std::int32_t* count) const = 0;
    virtual AAX_Result GetChunkIDFromIndex(std::int32_t index, AAX_CTypeID* id) const = 0;
    virtual AAX_Result GetChunkSize(AAX_CTypeID id, std::uint32_t* size) const = 0;
    virtual AAX_Result GetChunk(AAX_CTypeID id, AAX_SPlugInChunk* chunk) const = 0;
    virtual AAX_Result SetChunk(AAX_CTypeID id, const AAX_SPlugInChunk* chunk) = 0;
    virtual AAX_Result CompareActiveChunk(const AAX_SPlugInChunk* chunk, AAX_CBoolean* isEqual) const = 0;
    virtual AAX_Result GetNumberOfChanges(std::int32_t* count) const = 0;
    virtual AAX_Result TimerWakeup() = 0;
    virtual AAX_Result GetCurveData(AAX_CTypeID curve, const float* x, std::uint32_t count,
                                    float* y) const = 0;
    virtual AAX_Result GetCustomData(AAX_CTypeID type, std::uint32_t size, void* data,
                                     std::uint32_t* written) const = 0;
    virtual AAX_Result SetCustomData(AAX_CTypeID type, std::uint32_t size, const void* data) = 0;
    virtual AAX_Result DoMIDITransfers() = 0;
};

class AAX_IACFEffectParameters_V2 : public AAX_IACFEffectParameters
{
public:
    virtual AAX_Result RenderAudio_Hybrid(AAX_SHybridRenderInfo* info) = 0;
    virtual AAX_Result UpdateMIDINodes(AAX_CFieldIndex field, AAX_CMidiPacket& packet) = 0;
    virtual AAX_Result UpdateControlMIDINodes(AAX_CTypeID node, AAX_CMidiPacket& packet) = 0;
};
