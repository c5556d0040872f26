#pragma once
#include "Interfaces/ACF/ACFInterfaces.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <initializer_list>
#include <memory>
#include <vector>

/** Tells one of the host's own objects from a foreign one; no module knows it. */
inline constexpr acfIID kIID_HostOwnObject = {
    0x5B8C1A40, 0x3D2E, 0x4F71, {0x9A, 0x06, 0x21, 0xC4, 0x7E, 0x88, 0xB3, 0x5D}};

/** What stands behind `kIID_HostOwnObject`, so that a host object handed back can be recognised. */
class IHostOwnObject
{
public:
    virtual ~IHostOwnObject() = default;
};

/**
 * An object that the module has the host make: starts without references, deletes itself with the last one.
 *
 * Threads: the module's main thread.
 */
template <class Interface>
class CCountedObject : public Interface, public IHostOwnObject
{
public:
    CCountedObject(CHostLog& inLog, std::initializer_list<acfIID> inIids) : mLog(inLog), mIids(inIids)
    {
        mLog.ObjectMade();
    }
    CCountedObject(const CCountedObject&) = delete;
    CCountedObject& operator=(const CCountedObject&) = delete;
    ~CCountedObject() override { mLog.ObjectGone(); }

    ACFRESULT QueryInterface(const acfIID& iid, void** out) override
    {
        if (out == nullptr)
            return ACF_E_POINTER;
        *out = nullptr;
        if (iid == kIID_HostOwnObject)
        {
            *out = static_cast<IHostOwnObject*>(this); // not counted: it is used and forgotten at once
            return ACF_OK;
        }
        if (const ACFRESULT fault = mLog.Record("QueryInterface", NameOfUid(iid)); fault != ACF_OK)
            return fault;
        if (!Answers(iid))
            return ACF_E_NOINTERFACE;
        *out = static_cast<Interface*>(this);
        AddRef();
        return ACF_OK;
    }
    acfUInt32 AddRef() override { return ++mReferences; }
    acfUInt32 Release() override
    {
        const acfUInt32 left = --mReferences;
        if (left == 0)
            delete this;
        return left;
    }

    bool Answers(const acfIID& iid) const
    {
        if (!mLog.Offers(iid))
            return false;
        if (iid == IID_IACFUnknown)
            return true;
        for (const acfIID& own : mIids)
            if (own == iid)
                return true;
        return false;
    }

protected:
    CHostLog& mLog;

private:
    std::vector<acfIID> mIids;
    acfUInt32 mReferences = 0;
};

/** @return the host's own object behind that unknown; null when it is null, foreign or of another class. */
template <class Object>
Object* FindHostObject(IACFUnknown* inUnknown)
{
    void* found = nullptr;
    if (inUnknown == nullptr || inUnknown->QueryInterface(kIID_HostOwnObject, &found) != ACF_OK)
        return nullptr;
    return dynamic_cast<Object*>(static_cast<IHostOwnObject*>(found));
}
