#include "Tools/macho_loader/CMachOLoader.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/LibSystem.h"
#include "Tools/macho_loader/MachOFormat.h"

#include <algorithm>
#include <utility>

CMachOLoader::CMachOLoader(LibraryTable inFrameworks) : mLibraries(std::move(inFrameworks))
{
    mLibraries[kLibSystemName] = LibSystemSymbols();
}

CMachOLoader::~CMachOLoader() { UnloadAll(); }

CMachOImage& CMachOLoader::Load(const std::string& inPath)
{
    const auto known =
        std::ranges::find_if(mImages, [&](const auto& inImage) { return inImage->Path() == inPath; });
    if (known != mImages.end())
        return **known;
    const CMachOFile file(inPath);
    if (file.Type() != macho::kBundle && file.Type() != macho::kDylib)
        throw CMachOError(inPath + ": neither a bundle nor a library");
    CMachOImage& image = *mImages.emplace_back(std::make_unique<CMachOImage>(file, mLibraries));
    image.RunInitializers();
    return image;
}

void CMachOLoader::Unload(const CMachOImage& inImage)
{
    const auto found =
        std::ranges::find_if(mImages, [&](const auto& inOther) { return inOther.get() == &inImage; });
    if (found == mImages.end())
        return;
    const std::unique_ptr<CMachOImage> image =
        std::move(*found); // its terminators may load and unload others
    mImages.erase(found);
}

void CMachOLoader::UnloadAll()
{
    while (!mImages.empty())
        Unload(*mImages.back());
}

bool CMachOLoader::IsLoaded(const std::string& inPath) const
{
    return std::ranges::any_of(
        mImages, [&](const auto& inImage) { return inImage->Path() == inPath; });
}
