#pragma once
#include "Tools/macho_loader/CImageMemory.h"
#include "Tools/macho_loader/CMachOFile.h"
#include "Tools/macho_loader/CThreadLocals.h"
#include "Tools/macho_loader/CUnwindTable.h"
#include "Tools/macho_loader/SymbolTable.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/**
 * A Mach-O file in this process, its code ready to be called.
 *
 * Its destructor runs what the image's code asked for at its end, and unmaps it; nothing of it may be in use
 * then, not even an exception of its own. Threads: Containing() and AddTerminator() on any, the rest on one
 * at a time.
 */
class CMachOImage
{
public:
    /** Does not run the image's own initializers yet. Throws CMachOError, with a list of all imports that no
     * library offers. */
    CMachOImage(const CMachOFile& inFile, const LibraryTable& inLibraries);
    CMachOImage(const CMachOImage&) = delete;
    CMachOImage& operator=(const CMachOImage&) = delete;
    ~CMachOImage();

    /** @return null when the address is in no image. */
    static CMachOImage* Containing(const void* inAddress);

    void RunInitializers();
    /** @param inFunction called with its argument when the image goes; the last one added first. */
    void AddTerminator(void (*inFunction)(void*), void* inArgument);

    const std::string& Path() const { return mFile.Path(); }
    void* Base() const { return mMemory.Base(); }
    /** @param inName in C. @return null when the image does not export it. */
    void* FindSymbol(std::string_view inName) const;
    /** @return the last symbol at or before an address, in C, and where it is; an empty name when there is
     * none. */
    std::pair<std::string, void*> NearestSymbol(const void* inAddress) const;

private:
    void Map();
    void Rebase();
    void Bind(const LibraryTable& inLibraries);
    std::string LibraryOf(const SMachOBinding& inBinding) const;
    void ConnectThreadLocals();
    void Protect();

    CMachOFile mFile;
    CImageMemory mMemory;
    CThreadLocals mThreadLocals;
    std::unique_ptr<CUnwindTable> mUnwindTable;
    std::map<std::string, std::uint64_t, std::less<>> mExports;
    std::vector<SMachOSymbol> mSymbols;
    std::vector<std::pair<void (*)(void*), void*>> mTerminators;
};
