#include "Tools/macho_loader/doubles/CMacSystem.h"
#include "Tools/macho_loader/doubles/FrameworkSymbols.h"

#include <string>

namespace
{
using EKind = SCoreObject::EKind;

CBundleStore& Objects() { return CMacSystem::Current().Objects(); }

/** Logs a call that makes an object. @return the object, null for null. */
SCoreObject* Made(const std::string& inCall, SCoreObject* inObject)
{
    CMacSystem::Current().Calls().Add(inCall + " -> " + (inObject != nullptr ? inObject->mName : "null"));
    return inObject;
}

bool IsRefused(const char* inFunction) { return CMacSystem::Current().Calls().IsRefused(inFunction); }

const void* StringCreateWithCString(const void*, const char* inText, std::uint32_t inEncoding)
{
    constexpr std::uint32_t kUtf8 = 0x08000100;
    const bool fails = IsRefused("CFStringCreateWithCString") || inText == nullptr || inEncoding != kUtf8;
    return Made(std::string("CFStringCreateWithCString ") + (inText != nullptr ? inText : "null"),
                fails ? nullptr : &Objects().Make(EKind::kString, inText));
}

const void* UrlCreateWithFileSystemPath(const void*, const void* inPath, long inStyle,
                                        unsigned char inIsFolder)
{
    constexpr long kPosix = 0;
    const SCoreObject& path = Objects().Get(inPath, EKind::kString);
    const bool fails = IsRefused("CFURLCreateWithFileSystemPath") || inStyle != kPosix;
    return Made("CFURLCreateWithFileSystemPath " + path.mName + (inIsFolder != 0 ? " folder" : ""),
                fails ? nullptr : &Objects().Make(EKind::kUrl, path.mText));
}

void* BundleCreate(const void*, const void* inUrl)
{
    const SCoreObject& url = Objects().Get(inUrl, EKind::kUrl);
    const bool fails = IsRefused("CFBundleCreate");
    return Made("CFBundleCreate " + url.mName, fails ? nullptr : Objects().OpenBundle(url.mText));
}

unsigned char BundleLoadExecutable(void* inBundle)
{
    SCoreObject& bundle = Objects().Get(inBundle, EKind::kBundle);
    CMacSystem::Current().Calls().Add("CFBundleLoadExecutable " + bundle.mName);
    return !IsRefused("CFBundleLoadExecutable") && Objects().LoadExecutable(bundle) ? 1 : 0;
}

void BundleUnloadExecutable(void* inBundle)
{
    SCoreObject& bundle = Objects().Get(inBundle, EKind::kBundle);
    CMacSystem::Current().Calls().Add("CFBundleUnloadExecutable " + bundle.mName);
    Objects().UnloadExecutable(bundle);
}

void* BundleGetFunctionPointerForName(void* inBundle, const void* inName)
{
    SCoreObject& bundle = Objects().Get(inBundle, EKind::kBundle);
    const std::string& name = Objects().Get(inName, EKind::kString).mText;
    CMacSystem::Current().Calls().Add("CFBundleGetFunctionPointerForName " + bundle.mName + " " + name);
    // The real one loads the executable when that has not been done.
    if (IsRefused("CFBundleGetFunctionPointerForName") || !Objects().LoadExecutable(bundle))
        return nullptr;
    return bundle.mImage->FindSymbol(name);
}

void Release(const void* inObject)
{
    SCoreObject& object = Objects().Get(inObject);
    CMacSystem::Current().Calls().Add("CFRelease " + object.mName);
    Objects().Release(object);
}
} // namespace

SymbolTable CoreFoundationSymbols()
{
    return {
        {"CFStringCreateWithCString", AddressOf(StringCreateWithCString)},
        {"CFURLCreateWithFileSystemPath", AddressOf(UrlCreateWithFileSystemPath)},
        {"CFBundleCreate", AddressOf(BundleCreate)},
        {"CFBundleLoadExecutable", AddressOf(BundleLoadExecutable)},
        {"CFBundleUnloadExecutable", AddressOf(BundleUnloadExecutable)},
        {"CFBundleGetFunctionPointerForName", AddressOf(BundleGetFunctionPointerForName)},
        {"CFRelease", AddressOf(Release)},
    };
}
