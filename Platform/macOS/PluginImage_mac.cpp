#include "Platform/PluginImage.h"

#include <map>
#include <mutex>
#include <type_traits>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>

namespace
{
struct SRelease
{
    void operator()(const void* inObject) const { CFRelease(inObject); }
};
using CFStringHolder = std::unique_ptr<std::remove_pointer_t<CFStringRef>, SRelease>;
using CFURLHolder = std::unique_ptr<std::remove_pointer_t<CFURLRef>, SRelease>;
using CFBundleHolder = std::unique_ptr<std::remove_pointer_t<CFBundleRef>, SRelease>;

// There is one bundle object for a path, and unloading its executable unloads it for everybody.
/** Held while an executable is loaded or unloaded, and by whoever reads or writes the counts. */
std::mutex gLoading;
/** Images that have loaded a bundle's executable and not given it up. One that ends without that stays
 * counted, and with it stays its reference: the bundle's address is not another one's. */
std::map<CFBundleRef, int> gUsers;

CFStringHolder MakeString(const char* inUtf8Text) noexcept
{
    return CFStringHolder(CFStringCreateWithCString(nullptr, inUtf8Text, kCFStringEncodingUTF8));
}

/** A bundle is released on request only: dropping the object keeps the reference, and with it the executable.
 */
class CBundleImage final : public IPluginImage
{
public:
    /** @param ioUsers   the bundle's count. */
    CBundleImage(CFBundleHolder inBundle, int& ioUsers) noexcept
        : mBundle(inBundle.release()), mUsers(ioUsers)
    {
    }

    bool LoadExecutable() noexcept override
    {
        const std::lock_guard lock(gLoading);
        if (!mIsUser && mBundle != nullptr && CFBundleLoadExecutable(mBundle) != 0)
        {
            mIsUser = true;
            ++mUsers;
        }
        return mIsUser;
    }

    void* FindSymbol(const char* inName) const noexcept override
    {
        // The system would load the executable for the question, and nobody would count as its user.
        const CFStringHolder name = mIsUser ? MakeString(inName) : CFStringHolder();
        return name != nullptr ? CFBundleGetFunctionPointerForName(mBundle, name.get()) : nullptr;
    }

    void Unload() noexcept override
    {
        if (mBundle == nullptr)
            return;
        {
            const std::lock_guard lock(gLoading);
            mUsers -= std::exchange(mIsUser, false) ? 1 : 0;
            if (mUsers == 0)
                CFBundleUnloadExecutable(mBundle);
        }
        CFRelease(std::exchange(mBundle, nullptr));
    }

private:
    CFBundleRef mBundle = nullptr;
    int& mUsers;
    bool mIsUser = false;
};
} // namespace

std::unique_ptr<IPluginImage> OpenPluginImage(const char* inUtf8Path)
{
    CFStringHolder path = inUtf8Path != nullptr ? MakeString(inUtf8Path) : CFStringHolder();
    if (path == nullptr)
        return nullptr;
    constexpr Boolean kIsFolder = 0;
    const CFURLHolder url(
        CFURLCreateWithFileSystemPath(nullptr, path.get(), kCFURLPOSIXPathStyle, kIsFolder));
    path.reset();
    CFBundleHolder bundle(url != nullptr ? CFBundleCreate(nullptr, url.get()) : nullptr);
    if (bundle == nullptr)
        return nullptr;
    const std::lock_guard lock(gLoading);
    int& users = gUsers[bundle.get()]; // stays where it is
    return std::make_unique<CBundleImage>(std::move(bundle), users);
}

std::vector<std::string> PluginExecutables(const std::string& /*inUtf8Path*/) { return {}; }

const char* PlatformEntrySymbol() noexcept { return nullptr; }
