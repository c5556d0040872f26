#include "Platform/ImageImports.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/AaxAdapter_Product.h"
#include "Source/guard/WatchedFunctions.h"
#include "Source/plugins/CVst2Plugin.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <span>

/**
 * The render callback that counts what is called meanwhile. The images of the module and of the plug-in hold
 * the addresses of the functions that they import. Those of the watched functions are replaced by functions
 * that count and then call the originals.
 *
 * NOTE: The guard does not see what a library does by itself that one of the two calls, nor a system call
 * that goes through no function.
 */
namespace
{
/** One image whose imports are replaced, from the first render call until the module goes. */
class CGuardedImage
{
public:
    explicit CGuardedImage(EGuardOwner inOwner) noexcept : mOwner(inOwner) {}
    CGuardedImage(const CGuardedImage&) = delete;
    CGuardedImage& operator=(const CGuardedImage&) = delete;
    ~CGuardedImage()
    {
        // The plug-in stays loaded when this code is not.
        RestoreImports(mCode, std::span(mPatches).first(mCount));
    }

    void Watch(const void* inCode) noexcept
    {
        const std::span<const SWatchedFunction> functions = WatchedFunctions();
        for (const SWatchedFunction& function : functions)
            mPatches[mCount++] = {function.mName, function.mReplacements[static_cast<std::size_t>(mOwner)],
                                  nullptr};
        const std::span patches = std::span(mPatches).first(mCount);
        if (!FindImports(inCode, patches))
            return;
        for (std::size_t i = 0; i < patches.size(); ++i)
            SetOriginal(mOwner, i, patches[i].mOriginal);
        mCode = inCode;
        ReplaceImports(inCode, patches);
    }

private:
    EGuardOwner mOwner;
    const void* mCode = nullptr;
    std::array<SImportPatch, CCallCounts::kMostFunctions> mPatches{};
    std::size_t mCount = 0;
};

/** All of it, made by the first render call; says what was counted when the module is unloaded. */
class CRenderGuard
{
public:
    CRenderGuard() = default;
    CRenderGuard(const CRenderGuard&) = delete;
    CRenderGuard& operator=(const CRenderGuard&) = delete;
    ~CRenderGuard()
    {
        if (GuardCounts().RenderCalls() != 0)
            (void)std::fputs(ReportOf(GuardCounts()).c_str(), stderr); // there is nobody else to tell
    }

    /** The first instance with a plug-in shows where the plug-in's image is: all instances share it. */
    void Prepare(AAX_SInstrumentRenderInfo* const inBegin[], const void* inEnd) noexcept
    {
        if (mIsWatching.load(std::memory_order_acquire))
            return;
        for (AAX_SInstrumentRenderInfo* const* record = inBegin; record < inEnd; ++record)
            if (const AEffect* const effect = EffectOf(**record); effect != nullptr)
            {
                if (mIsTaken.exchange(true))
                    return; // another render thread is at it
                mModule.Watch(reinterpret_cast<const void*>(&GuardedRenderCallback));
                mPlugin.Watch(reinterpret_cast<const void*>(effect->dispatcher));
                mIsWatching.store(true, std::memory_order_release);
                return;
            }
    }

private:
    static const AEffect* EffectOf(const AAX_SInstrumentRenderInfo& inRecord) noexcept
    {
        AAX_CInstrumentParameters** const slot = inRecord.mPrivateData;
        if (slot == nullptr || *slot == nullptr)
            return nullptr;
        // This module makes no others.
        const auto plugins = static_cast<AaxAdapter_Parameters*>(*slot)->Host().Plugins();
        return !plugins.empty() ? plugins.front()->GetEffect() : nullptr;
    }

    CGuardedImage mModule{EGuardOwner::kModule};
    CGuardedImage mPlugin{EGuardOwner::kPlugin};
    std::atomic<bool> mIsTaken = false;    // by the render thread that was first
    std::atomic<bool> mIsWatching = false; // stored (release) when all is replaced, loaded (acquire) by all
};

// Render threads use it; it goes with the module.
CRenderGuard gRenderGuard;

void GuardedRenderAudio(AAX_SInstrumentRenderInfo* const inBegin[], const void* inEnd)
{
    gRenderGuard.Prepare(inBegin, inEnd);
    GuardCounts().AddRenderCall();
    CCallCounts::Begin();
    AAX_CInstrumentParameters::StaticRenderAudio(inBegin, inEnd);
    CCallCounts::End();
}
} // namespace

RenderCallback GuardedRenderCallback() noexcept
{
    return reinterpret_cast<RenderCallback>(&GuardedRenderAudio);
}
