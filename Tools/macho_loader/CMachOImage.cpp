#include "Tools/macho_loader/CMachOImage.h"

#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/MachOFormat.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <set>

namespace
{
// The image's code asks for its own image without any context. Any thread.
std::mutex gImagesMutex;
std::vector<CMachOImage*> gImages;

/** Names in C have one underscore less than the linker's; a name of the linker itself has none. */
std::string_view NameInC(std::string_view inLinkerName)
{
    return inLinkerName.starts_with('_') ? inLinkerName.substr(1) : inLinkerName;
}

void* FindImport(const LibraryTable& inLibraries, const std::string& inLibrary, std::string_view inLinkerName)
{
    const auto library = inLibraries.find(inLibrary);
    if (library == inLibraries.end())
        return nullptr;
    const auto symbol = library->second.find(NameInC(inLinkerName));
    return symbol != library->second.end() ? symbol->second : nullptr;
}

void StorePointer(std::span<std::uint8_t> outPlace, std::uint64_t inPointer)
{
    std::memcpy(outPlace.data(), &inPointer, sizeof(inPointer));
}
} // namespace

CMachOImage::CMachOImage(const CMachOFile& inFile, const LibraryTable& inLibraries)
    : mFile(inFile),
      mMemory(inFile.LowestAddress(), inFile.MemorySize()),
      mExports(inFile.Exports()),
      mSymbols(inFile.Symbols())
{
    Map();
    Rebase();
    Bind(inLibraries);
    ConnectThreadLocals();
    mUnwindTable = std::make_unique<CUnwindTable>(mFile, mMemory);
    Protect();
    const std::lock_guard lock(gImagesMutex);
    gImages.push_back(this);
}

CMachOImage::~CMachOImage()
{
    while (!mTerminators.empty())
    {
        const auto [function, argument] = mTerminators.back();
        mTerminators.pop_back();
        function(argument); // may add further ones
    }
    const std::lock_guard lock(gImagesMutex);
    std::erase(gImages, this);
}

CMachOImage* CMachOImage::Containing(const void* inAddress)
{
    const std::lock_guard lock(gImagesMutex);
    const auto found = std::ranges::find_if(gImages, [inAddress](const CMachOImage* inImage)
                                            { return inImage->mMemory.Contains(inAddress); });
    return found != gImages.end() ? *found : nullptr;
}

void CMachOImage::Map()
{
    for (const SMachOSegment& segment : mFile.Segments())
    {
        const auto content = mFile.Content(segment);
        std::ranges::copy(content, mMemory.At(segment.mAddress, segment.mSize).begin());
    }
}

void CMachOImage::Rebase()
{
    for (const std::uint64_t address : mFile.Rebases())
    {
        const auto place = mMemory.At(address, sizeof(std::uint64_t));
        StorePointer(place, ReadAt<std::uint64_t>(place, 0) + mMemory.Slide());
    }
}

std::string CMachOImage::LibraryOf(const SMachOBinding& inBinding) const
{
    const auto ordinal = static_cast<std::size_t>(inBinding.mLibraryOrdinal);
    if (inBinding.mLibraryOrdinal > 0 && ordinal <= mFile.Libraries().size())
        return mFile.Libraries()[ordinal - 1];
    return inBinding.mLibraryOrdinal == 0 ? "the image itself" : "any library";
}

void CMachOImage::Bind(const LibraryTable& inLibraries)
{
    std::set<std::string> missing;
    for (const SMachOBinding& binding : mFile.Bindings())
    {
        const auto place = mMemory.At(binding.mAddress, sizeof(std::uint64_t));
        const auto own = mExports.find(binding.mSymbol);
        void* target = nullptr;
        if (binding.mIsCoalesced && own != mExports.end())
            target = mMemory.Base() + own->second;
        else if (!binding.mIsCoalesced)
            target = FindImport(inLibraries, LibraryOf(binding), binding.mSymbol);

        if (target != nullptr)
            StorePointer(place, reinterpret_cast<std::uint64_t>(target) +
                                    static_cast<std::uint64_t>(binding.mAddend));
        else if (!binding.mIsCoalesced && binding.mMayBeMissing)
            StorePointer(place, 0);
        else if (!binding.mIsCoalesced)
            missing.insert(binding.mSymbol + " of " + LibraryOf(binding));
    }
    if (missing.empty())
        return;
    std::string message = Path() + ": imports that nothing here offers:";
    for (const std::string& import : missing)
        message += "\n  " + import;
    throw CMachOError(message);
}

void CMachOImage::ConnectThreadLocals()
{
    const SMachOSection* first = nullptr;
    std::uint64_t templateEnd = 0;
    for (const SMachOSection& section : mFile.Sections())
    {
        if (section.mType == macho::kThreadLocalVariables)
            mThreadLocals.Connect(mMemory.At(section.mAddress, section.mSize));
        // The initial values lie in front, the zeroes right behind them.
        if (section.mType == macho::kThreadLocalData || section.mType == macho::kThreadLocalZeroes)
        {
            first = first == nullptr ? &section : first;
            templateEnd = section.mAddress + section.mSize;
        }
    }
    if (first != nullptr)
        mThreadLocals.SetTemplate(mMemory.At(first->mAddress, templateEnd - first->mAddress));
}

void CMachOImage::Protect()
{
    for (const SMachOSegment& segment : mFile.Segments())
    {
        const bool isConstant = segment.mName == "__DATA_CONST"; // once the fixups are done
        mMemory.Protect(mMemory.At(segment.mAddress, segment.mSize),
                        isConstant ? std::uint32_t{macho::kRead} : segment.mProtection);
    }
}

void CMachOImage::RunInitializers()
{
    using Initializer = void (*)(int, const char**, const char**, const char**, void*);
    const auto run = [](Initializer inInitializer)
    {
        const char* none[] = {nullptr};
        inInitializer(0, none, none, none, nullptr);
    };
    for (const SMachOSection& section : mFile.Sections())
    {
        CByteReader reader(mMemory.At(section.mAddress, section.mSize));
        while (section.mType == macho::kInitializerPointers && !reader.AtEnd())
            run(reader.Read<Initializer>());
        while (section.mType == macho::kInitializerOffsets && !reader.AtEnd())
            run(reinterpret_cast<Initializer>(mMemory.Base() + reader.Read<std::uint32_t>()));
    }
}

void CMachOImage::AddTerminator(void (*inFunction)(void*), void* inArgument)
{
    const std::lock_guard lock(gImagesMutex);
    mTerminators.emplace_back(inFunction, inArgument);
}

void* CMachOImage::FindSymbol(std::string_view inName) const
{
    std::string linkerName(1, '_');
    linkerName += inName;
    const auto found = mExports.find(linkerName);
    return found != mExports.end() ? mMemory.Base() + found->second : nullptr;
}

std::pair<std::string, void*> CMachOImage::NearestSymbol(const void* inAddress) const
{
    const std::uint64_t address = reinterpret_cast<std::uint64_t>(inAddress) - mMemory.Slide();
    const auto after = std::ranges::upper_bound(mSymbols, address, {}, &SMachOSymbol::mAddress);
    if (after == mSymbols.begin())
        return {};
    const SMachOSymbol& symbol = *std::prev(after);
    return {std::string(NameInC(symbol.mName)), mMemory.From(symbol.mAddress).data()};
}
