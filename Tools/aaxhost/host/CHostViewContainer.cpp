#include "Tools/aaxhost/host/CHostViewContainer.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <fmt/format.h>

CHostViewContainer::CHostViewContainer(CHostLog& inLog) : mLog(inLog) {}

void CHostViewContainer::SetView(std::int32_t inType, void* inView) noexcept
{
    mType = inType;
    mView = inView;
}

void CHostViewContainer::SetResizeHandler(ResizeHandler inHandler) { mResizeHandler = std::move(inHandler); }

ACFRESULT CHostViewContainer::QueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (const ACFRESULT fault = mLog.Record("QueryInterface", NameOfUid(iid)))
        return fault;
    if (!(iid == IID_IACFUnknown || iid == IID_IAAXViewContainerV1) || !mLog.Offers(iid))
        return ACF_E_NOINTERFACE;
    *out = static_cast<AAX_IACFViewContainer*>(this);
    AddRef();
    return ACF_OK;
}

acfUInt32 CHostViewContainer::AddRef() { return static_cast<acfUInt32>(++mReferences); }

acfUInt32 CHostViewContainer::Release() { return static_cast<acfUInt32>(--mReferences); }

std::int32_t CHostViewContainer::GetType() { return mLog.Record("GetType", {}) == kAAX_Success ? mType : 0; }

void* CHostViewContainer::GetPtr() { return mLog.Record("GetPtr", {}) == kAAX_Success ? mView : nullptr; }

AAX_Result CHostViewContainer::GetModifiers(std::uint32_t* modifiers)
{
    if (const AAX_Result fault = mLog.Record("GetModifiers", {}))
        return fault;
    if (modifiers == nullptr)
        return kAAX_ErrorNullArgument;
    *modifiers = mModifiers;
    return kAAX_Success;
}

AAX_Result CHostViewContainer::SetViewSize(AAX_Point& size)
{
    if (const AAX_Result fault =
            mLog.Record("SetViewSize", fmt::format("{} by {}", size.mHorizontal, size.mVertical)))
        return fault;
    mRequestedSize = size;
    return mResizeHandler ? mResizeHandler(size) : kAAX_Success;
}

AAX_Result CHostViewContainer::HandleParameterMouseDown(AAX_CParamID id, std::uint32_t modifiers)
{
    return RecordMouse("HandleParameterMouseDown", id, modifiers);
}

AAX_Result CHostViewContainer::HandleParameterMouseDrag(AAX_CParamID id, std::uint32_t modifiers)
{
    return RecordMouse("HandleParameterMouseDrag", id, modifiers);
}

AAX_Result CHostViewContainer::HandleParameterMouseUp(AAX_CParamID id, std::uint32_t modifiers)
{
    return RecordMouse("HandleParameterMouseUp", id, modifiers);
}

AAX_Result CHostViewContainer::RecordMouse(const char* inName, AAX_CParamID inID, std::uint32_t inModifiers)
{
    return mLog.Record(inName, fmt::format("{}, 0x{:X}", Quoted(inID), inModifiers));
}
