#pragma once
#include "Interfaces/ACF/ACFInterfaces.h"

#include <atomic>
#include <cstdint>

/**
 * Base of every reference-counted object that this module gives to a host.
 *
 * An object starts with no references: whoever receives it adds the first, and the object reclaims itself
 * when the last is released. Without an outer object the object is its own controlling unknown; with one,
 * every reference and query goes to the outer.
 *
 * A class that mixes this base with a host-facing interface forwards the interface's three unknown operations
 * to `GetUnknown()`.
 *
 * Threads: counting is safe on any thread.
 */
class CACFUnknown
{
public:
    explicit CACFUnknown(IACFUnknown* inOuter = nullptr) noexcept; // not owned; outlives this object
    CACFUnknown(const CACFUnknown&) = delete;
    CACFUnknown& operator=(const CACFUnknown&) = delete;

    /** A second phase of construction; the base has none and answers ACF_OK. */
    virtual ACFRESULT InitializeInstance();
    /** Called once when the last reference is gone, before the object is reclaimed. */
    virtual void FinalRelease();
    /** Deletes the object. */
    virtual void ReclaimMemory();

    /** Answers IID_IACFUnknown with the object's own unknown, everything else with ACF_E_NOINTERFACE. */
    virtual ACFRESULT InternalQueryInterface(const acfIID& iid, void** out);
    virtual acfUInt32 InternalAddRef();
    virtual acfUInt32 InternalRelease();

    virtual ~CACFUnknown();

    /** The controlling unknown: the outer object's, or this object's own. Not counted. */
    IACFUnknown* GetUnknown() const noexcept { return mController; }

    /** How many of these objects live in the module; 0 means that it may be unloaded. */
    static std::int32_t GetActiveObjectCount() noexcept;

private:
    /** The unknown of an object that no other controls: turns the three calls into the Internal ones. */
    class COwnUnknown : public IACFUnknown
    {
    public:
        explicit COwnUnknown(CACFUnknown& inOwner) noexcept : mOwner(inOwner) {}
        ACFRESULT QueryInterface(const acfIID& iid, void** out) override;
        acfUInt32 AddRef() override { return mOwner.InternalAddRef(); }
        acfUInt32 Release() override { return mOwner.InternalRelease(); }

    private:
        CACFUnknown& mOwner;
    };

    COwnUnknown mOwnUnknown;
    IACFUnknown* mController = nullptr;
    std::atomic<acfUInt32> mReferences{0};
};
