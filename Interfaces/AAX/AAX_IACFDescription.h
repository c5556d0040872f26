#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFInterfaces.h"

/**
 * What a host offers to a module that describes itself. The order of the declarations is the order of the
 * slots.
 *
 * Objects are handed to other calls as their `IACFUnknown*`. All texts are NUL-terminated and copied by the
 * host.
 */

/** The collection is itself the plug-in definition that the registration returns. */
class AAX_IACFCollection : public IACFPluginDefinition
{
public:
    virtual AAX_Result AddEffect(const char* effectID, IACFUnknown* effectDescriptor) = 0;
    virtual AAX_Result SetManufacturerName(const char* name) = 0;
    virtual AAX_Result AddPackageName(const char* name) = 0;
    virtual AAX_Result SetPackageVersion(std::uint32_t version) = 0;
    virtual AAX_Result SetProperties(IACFUnknown* propertyMap) = 0;
};

class AAX_IACFEffectDescriptor : public IACFUnknown
{
public:
    virtual AAX_Result AddComponent(IACFUnknown* componentDescriptor) = 0;
    virtual AAX_Result AddName(const char* name) = 0;
    virtual AAX_Result AddCategory(std::uint32_t category) = 0;
    virtual AAX_Result AddCategoryBypassParameter(std::uint32_t category, AAX_CParamID id) = 0;
    virtual AAX_Result AddProcPtr(void* proc, AAX_CProcPtrID procID) = 0;
    virtual AAX_Result SetProperties(IACFUnknown* propertyMap) = 0;
    virtual AAX_Result AddResourceInfo(std::int32_t type, const char* info) = 0;
    virtual AAX_Result AddMeterDescription(AAX_CTypeID meterID, const char* name,
                                           IACFUnknown* propertyMap) = 0;
};

class AAX_IACFComponentDescriptor : public IACFUnknown
{
public:
    virtual AAX_Result Clear() = 0;
    virtual AAX_Result AddReservedField(AAX_CFieldIndex field, std::uint32_t type) = 0;
    virtual AAX_Result AddAudioIn(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddAudioOut(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddAudioBufferLength(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddSampleRate(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddClock(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddSideChainIn(AAX_CFieldIndex field) = 0;
    virtual AAX_Result AddDataInPort(AAX_CFieldIndex field, std::uint32_t size, std::int32_t type) = 0;
    virtual AAX_Result AddAuxOutputStem(AAX_CFieldIndex field, std::int32_t stemFormat, const char* name) = 0;
    virtual AAX_Result AddPrivateData(AAX_CFieldIndex field, std::int32_t size, std::uint32_t options) = 0;
    virtual AAX_Result AddDmaInstance(AAX_CFieldIndex field, std::int32_t mode) = 0;
    virtual AAX_Result AddMIDINode(AAX_CFieldIndex field, AAX_EMIDINodeType type, const char* name,
                                   std::uint32_t channelMask) = 0;
    virtual AAX_Result AddProcessProc_Native(AAX_CProcessProc process, IACFUnknown* propertyMap,
                                             AAX_CInstanceInitProc instanceInit,
                                             AAX_CBackgroundProc background, AAX_CSelector* outID) = 0;
    virtual AAX_Result AddProcessProc_TI(const char* dllName, const char* processName,
                                         IACFUnknown* propertyMap, const char* instanceInitName,
                                         const char* backgroundName, AAX_CSelector* outID) = 0;
    virtual AAX_Result AddMeters(AAX_CFieldIndex field, const AAX_CTypeID* meterIDs, std::uint32_t count) = 0;
};

class AAX_IACFPropertyMap : public IACFUnknown
{
public:
    virtual AAX_CBoolean GetProperty(AAX_EProperty property, AAX_CPropertyValue* value) const = 0;
    virtual AAX_Result AddProperty(AAX_EProperty property, AAX_CPropertyValue value) = 0;
    virtual AAX_Result RemoveProperty(AAX_EProperty property) = 0;
};
