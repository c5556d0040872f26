#include "Platform/PluginImage.h"

#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace
{
struct SRelease
{
    void operator()(const void* inObject) const { CFRelease(inObject); }
};
using CFStringHolder = std::unique_ptr<std::remove_pointer_t<CFStringRef>, SRelease>;
using CFURLHolder = std::unique_ptr<std::remove_pointer_t<CFURLRef>, SRelease>;

CFStringHolder MakeString(const char* inUtf8Text) noexcept
{
    return CFStringHolder(CFStringCreateWithCString(nullptr, inUtf8Text, kCFStringEncodingUTF8));
}

/** A bundle is released on request only: dropping the object keeps the reference, and with it the executable.
 */
class CBundleImage final : public IPluginImage
{
public:
    explicit CBundleImage(CFBundleRef inBundle) noexcept : mBundle(inBundle) {}

    bool LoadExecutable() noexcept override
    {
        return mBundle != nullptr && CFBundleLoadExecutable(mBundle) != 0;
    }

    void* FindSymbol(const char* inName) const noexcept override
    {
        const CFStringHolder name = mBundle != nullptr ? MakeString(inName) : CFStringHolder();
        return name != nullptr ? CFBundleGetFunctionPointerForName(mBundle, name.get()) : nullptr;
    }

    void Unload() noexcept override
    {
        if (mBundle != nullptr)
        {
            CFBundleUnloadExecutable(mBundle);
            CFRelease(mBundle);
            mBundle = nullptr;
        }
    }

private:
    CFBundleRef mBundle = nullptr;
};
} // namespace

std::unique_ptr<IPluginImage> OpenPluginImage(const char* inUtf8Path)
{
    CFStringHolder path = inUtf8Path != nullptr ? MakeString(inUtf8Path) : CFStringHolder();
    if (path == nullptr)
    {
        return nullptr;
    }
    constexpr Boolean kIsFolder = 0;
    const CFURLHolder url(
        CFURLCreateWithFileSystemPath(nullptr, path.get(), kCFURLPOSIXPathStyle, kIsFolder));
    path.reset();
    const CFBundleRef bundle = url != nullptr ? CFBundleCreate(nullptr, url.get()) : nullptr;
    return bundle != nullptr ? std::make_unique<CBundleImage>(bundle) : nullptr;
}

const char* PlatformEntrySymbol() noexcept { return nullptr; }
