#include "Tools/macho_loader/doubles/CBundleStore.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CMachOLoader.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
[[noreturn]] void AbortCall(const char* inReason)
{
    (void)std::fprintf(stderr, "CoreFoundation: %s\n", inReason);
    std::abort();
}

const char* KindName(SCoreObject::EKind inKind)
{
    switch (inKind)
    {
    case SCoreObject::EKind::kString: return "string";
    case SCoreObject::EKind::kUrl: return "url";
    case SCoreObject::EKind::kBundle: return "bundle";
    }
    return "";
}

/** @return the path that the bundle's property list tells; empty when it tells none. */
std::string ExecutableOf(const std::string& inFolder)
{
    std::ifstream file(inFolder + "/Contents/Info.plist");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const std::string opening = "<string>";
    const std::size_t key = text.find("<key>CFBundleExecutable</key>");
    const std::size_t value = text.find(opening, key);
    if (key == std::string::npos || value == std::string::npos)
        return {};
    const std::size_t start = value + opening.size();
    return inFolder + "/Contents/MacOS/" + text.substr(start, text.find('<', start) - start);
}
} // namespace

SCoreObject& CBundleStore::Make(SCoreObject::EKind inKind, const std::string& inText)
{
    auto object = std::make_unique<SCoreObject>();
    object->mKind = inKind;
    object->mText = inText;
    object->mName = KindName(inKind) + std::to_string(++mMade[inKind]);
    SCoreObject& made = *object;
    mObjects[object.get()] = std::move(object);
    return made;
}

SCoreObject* CBundleStore::OpenBundle(const std::string& inFolder)
{
    const auto known = std::ranges::find_if(mObjects,
                                            [&](const auto& inEntry)
                                            {
                                                const SCoreObject& object = *inEntry.second;
                                                return object.mKind == SCoreObject::EKind::kBundle &&
                                                       object.mText == inFolder;
                                            });
    if (known != mObjects.end())
    {
        ++known->second->mReferences;
        return known->second.get();
    }
    return std::filesystem::is_directory(inFolder) ? &Make(SCoreObject::EKind::kBundle, inFolder) : nullptr;
}

SCoreObject& CBundleStore::Get(const void* inObject) const
{
    const auto found = mObjects.find(inObject);
    if (found == mObjects.end())
        AbortCall("no object, or one that is gone");
    return *found->second;
}

SCoreObject& CBundleStore::Get(const void* inObject, SCoreObject::EKind inKind) const
{
    SCoreObject& object = Get(inObject);
    if (object.mKind != inKind)
        AbortCall("an object of another kind");
    return object;
}

void CBundleStore::Release(SCoreObject& ioObject)
{
    if (--ioObject.mReferences == 0)
        mObjects.erase(&ioObject);
}

bool CBundleStore::LoadExecutable(SCoreObject& ioBundle)
{
    if (ioBundle.mImage != nullptr)
        return true;
    try
    {
        ioBundle.mImage = &mLoader.Load(ExecutableOf(ioBundle.mText));
    }
    catch (const CMachOError& error)
    {
        (void)std::fprintf(stderr, "CoreFoundation: %s\n", error.what());
    }
    return ioBundle.mImage != nullptr;
}

void CBundleStore::UnloadExecutable(SCoreObject& ioBundle)
{
    if (ioBundle.mImage != nullptr)
        mLoader.Unload(*std::exchange(ioBundle.mImage, nullptr));
}
