#pragma once
#include "Tools/macho_loader/CMachOImage.h"
#include "Tools/macho_loader/SymbolTable.h"

#include <memory>
#include <string>
#include <vector>

/**
 * Loads Mach-O bundles for x86-64 into this process, to test them: it trusts its files.
 *
 * Every import must be known: the C library's come from LibSystem.h, the frameworks' from whoever makes the
 * loader. An import is looked for in the library that the file names, as on a Mac.
 */
class CMachOLoader
{
public:
    /** @param inFrameworks what the images may import beside the C library. */
    explicit CMachOLoader(LibraryTable inFrameworks);
    CMachOLoader(const CMachOLoader&) = delete;
    CMachOLoader& operator=(const CMachOLoader&) = delete;
    ~CMachOLoader();

    /**
     * @param inPath absolute, without symbolic links: the image's code is told this path as its own.
     * @return the image, which was there already when the path was loaded before. Throws CMachOError.
     */
    CMachOImage& Load(const std::string& inPath);
    /** At once, however often it was loaded. */
    void Unload(const CMachOImage& inImage);
    /** The last one loaded first; also done at the end. */
    void UnloadAll();
    bool IsLoaded(const std::string& inPath) const;

private:
    LibraryTable mLibraries;
    std::vector<std::unique_ptr<CMachOImage>> mImages;
};
