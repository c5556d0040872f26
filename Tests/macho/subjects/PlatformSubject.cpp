#include "Tests/macho/subjects/PlatformSubject.h"

#include "Platform/AutoreleasePool.h"
#include "Platform/ModulePath.h"
#include "Platform/PluginImage.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/MouseModifiers.h"

#include <cstddef>
#include <memory>
#include <span>

namespace
{
void OpenPools(int inDepth, bool inThrows)
{
    const CPlatformAutoreleasePool pool;
    if (inDepth > 1)
        OpenPools(inDepth - 1, inThrows);
    else if (inThrows)
        throw inDepth;
}

class CPlatformSubject final : public IPlatformSubject
{
public:
    void Release() override { delete this; }

    bool OpenImage(const char* inPath) override
    {
        mImage = OpenPluginImage(inPath);
        return mImage != nullptr;
    }
    bool LoadExecutable() override { return mImage->LoadExecutable(); }
    void* FindSymbol(const char* inName) override { return mImage->FindSymbol(inName); }
    void UnloadImage() override { mImage->Unload(); }
    void DropImage() override { mImage.reset(); }

    bool LoadPlugin(const char* inPath) override
    {
        mPlugin = std::make_unique<CVst2Plugin>();
        return mPlugin->Load(inPath, &mHost);
    }
    const char* PluginName() override { return mPlugin != nullptr ? mPlugin->GetName() : ""; }
    void FreePlugin() override { mPlugin->FreeLib(); }
    void DestroyPlugin() override { mPlugin.reset(); }

    unsigned long MouseModifiers() override { return getMouseMods(); }
    void NestPools(int inDepth, bool inThrows) override
    {
        try
        {
            OpenPools(inDepth, inThrows);
        }
        catch (int)
        {
            // Asked for by the test, which looks at the pools.
        }
    }
    bool FindOwnPath(char* outPath, int inSize) override
    {
        return FindModulePath(reinterpret_cast<const void*>(&MakePlatformSubject),
                              std::span(outPath, static_cast<std::size_t>(inSize)));
    }

private:
    CVst2Host mHost;
    std::unique_ptr<IPluginImage> mImage;
    std::unique_ptr<CVst2Plugin> mPlugin;
};
} // namespace

extern "C" __attribute__((visibility("default"))) IPlatformSubject* MakePlatformSubject()
{
    return new CPlatformSubject; // the caller's, until Release()
}
