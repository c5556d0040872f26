#pragma once
#include "Tools/macho_loader/ByteAppend.h"

class CImageMemory;
class CMachOFile;

/**
 * Tells this machine's unwinder how to leave an image's functions, as long as the object lives.
 *
 * macOS unwinds by the compact table and looks into the DWARF table only where that says so. The unwinder
 * here knows DWARF only, so the same facts are written down in that form.
 */
class CUnwindTable
{
public:
    /** @param inMemory the image, already bound: it holds the addresses of the handlers. Throws CMachOError.
     */
    CUnwindTable(const CMachOFile& inFile, const CImageMemory& inMemory);
    CUnwindTable(const CUnwindTable&) = delete;
    CUnwindTable& operator=(const CUnwindTable&) = delete;
    ~CUnwindTable();

private:
    ByteVector mTable; // stays where it is: the unwinder keeps its address
};
