#pragma once
#include "Interfaces/ACF/ACFTypes.h"

/**
 * The component model's interfaces. The order of the declarations is the order of the slots.
 *
 * None has a virtual destructor: objects are released, never deleted through these.
 */
class IACFUnknown
{
public:
    /** Stores a counted reference in `out`, or null with ACF_E_NOINTERFACE. */
    virtual ACFRESULT QueryInterface(const acfIID& iid, void** out) = 0;
    virtual acfUInt32 AddRef() = 0;
    virtual acfUInt32 Release() = 0;
};

class IACFClassFactory : public IACFUnknown
{
public:
    virtual ACFRESULT CreateInstance(IACFUnknown* host, IACFUnknown* outer, const acfIID& iid,
                                     void** out) = 0;
};

class IACFDefinition : public IACFUnknown
{
public:
    virtual ACFRESULT DefineAttribute(const acfUID& attribute, const acfUID& type, const void* data,
                                      acfUInt32 size) = 0;
    virtual ACFRESULT GetAttributeInfo(const acfUID& attribute, acfUID* type, acfUInt32* size) = 0;
    virtual ACFRESULT CopyAttribute(const acfUID& attribute, const acfUID& type, void* data,
                                    acfUInt32 size) = 0;
};

class IACFPluginDefinition : public IACFDefinition
{
public:
    virtual ACFRESULT InitializePlugin(const acfUID& plugin, acfUInt32 major, acfUInt32 minor,
                                       const acfWChar* name, const acfUID& vendor, const acfWChar* vendorName,
                                       acfUInt32 componentCount, acfBool cache) = 0;
};

class IACFComponentDefinition : public IACFDefinition
{
public:
    virtual ACFRESULT InitializeComponent(const acfUID& component, const acfUID& category, acfUInt32 major,
                                          acfUInt32 minor, const acfCLSID& cls, const acfWChar* name) = 0;
};

class IACFEnumDefinitions;

class IACFComponentFactory : public IACFUnknown
{
public:
    virtual ACFRESULT CreateComponent(const acfUID& component, IACFUnknown* outer, const acfIID& iid,
                                      void** out) = 0;
    virtual ACFRESULT CreateInstance(const acfCLSID& cls, IACFUnknown* outer, const acfIID& iid,
                                     void** out) = 0;
    virtual ACFRESULT GetClassFactory(const acfCLSID& cls, const acfIID& iid, void** out) = 0;
    virtual ACFRESULT FindDefinition(const acfUID& definition, const acfIID& iid, IACFDefinition** out) = 0;
    virtual ACFRESULT EnumDefinitions(const acfUID& category, IACFEnumDefinitions** out) = 0;
};

inline constexpr acfIID IID_IACFUnknown = {
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr acfIID IID_IACFClassFactory = {
    0x80996EEE, 0x7FCF, 0x11D6, {0xAC, 0xA8, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
inline constexpr acfIID IID_IACFDefinition = {
    0xE51741F1, 0x7FCF, 0x11D6, {0xAA, 0xC3, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
inline constexpr acfIID IID_IACFPluginDefinition = {
    0x00EEF015, 0x7FD0, 0x11D6, {0x84, 0x85, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
inline constexpr acfIID IID_IACFComponentDefinition = {
    0x1718A226, 0x7FD0, 0x11D6, {0xBD, 0x1D, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
inline constexpr acfIID IID_IACFEnumDefinitions = {
    0xC34189E3, 0x8398, 0x11D6, {0x84, 0x7E, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
inline constexpr acfIID IID_IACFComponentFactory = {
    0x382B6A96, 0x7FD0, 0x11D6, {0xBC, 0xFE, 0x00, 0x30, 0x65, 0x42, 0xA0, 0x24}};
