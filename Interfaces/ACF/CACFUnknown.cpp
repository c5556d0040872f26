#include "Interfaces/ACF/CACFUnknown.h"

namespace
{
// Counted up and down by whichever thread makes and releases objects, read by the host's loader thread.
std::atomic<std::int32_t> gActiveObjects{0};
} // namespace

ACFRESULT CACFUnknown::COwnUnknown::QueryInterface(const acfIID& iid, void** out)
{
    return mOwner.InternalQueryInterface(iid, out);
}

CACFUnknown::CACFUnknown(IACFUnknown* inOuter) noexcept : mOwnUnknown(*this)
{
    mController = inOuter != nullptr ? inOuter : &mOwnUnknown;
    gActiveObjects.fetch_add(1, std::memory_order_relaxed);
}

CACFUnknown::~CACFUnknown() { gActiveObjects.fetch_sub(1, std::memory_order_relaxed); }

ACFRESULT CACFUnknown::InitializeInstance() { return ACF_OK; }

void CACFUnknown::FinalRelease() {}

void CACFUnknown::ReclaimMemory() { delete this; }

ACFRESULT CACFUnknown::InternalQueryInterface(const acfIID& iid, void** out)
{
    if (out == nullptr)
        return ACF_E_POINTER;
    *out = nullptr;
    if (!(iid == IID_IACFUnknown))
        return ACF_E_NOINTERFACE;
    *out = static_cast<IACFUnknown*>(&mOwnUnknown);
    InternalAddRef();
    return ACF_OK;
}

acfUInt32 CACFUnknown::InternalAddRef() { return mReferences.fetch_add(1, std::memory_order_relaxed) + 1; }

acfUInt32 CACFUnknown::InternalRelease()
{
    const acfUInt32 left = mReferences.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0)
    {
        FinalRelease();
        ReclaimMemory();
    }
    return left;
}

std::int32_t CACFUnknown::GetActiveObjectCount() noexcept
{
    return gActiveObjects.load(std::memory_order_relaxed);
}
