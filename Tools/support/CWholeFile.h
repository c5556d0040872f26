#pragma once
#include "Tools/support/COutcome.h"

#include <cstddef>
#include <span>
#include <string>

/**
 * A file that appears whole or not at all: what stood under its name stays until Keep, and stays for good
 * where Keep is not reached, also when the process is killed. Nothing is left behind then.
 *
 * It replaces the target of a link and not the link, keeps the permissions of the file that it replaces, and
 * refuses to replace one that may not be written. What is no file on a disk (a pipe, a device, the standard
 * output) is written at once.
 *
 * Main thread only.
 */
class CWholeFile
{
public:
    /** Refuses what can be known before anything is written: no such folder, a folder, no permission. */
    static COutcome<CWholeFile> Open(const std::string& inPath);
    CWholeFile(CWholeFile&& ioOther) noexcept;
    CWholeFile& operator=(CWholeFile&& ioOther) noexcept;
    ~CWholeFile(); // gone, unless it was kept

    /** For libraries that write by it; it is this object's to close. */
    int Descriptor() const { return mFile; }
    COutcome<SDone> Write(std::span<const std::byte> inBytes);
    /** Flushes and gives it its name. Whoever writes by the descriptor has to have flushed. Only once. */
    COutcome<SDone> Keep();

private:
    CWholeFile() = default;
    SProblem Problem(int inError) const;
    int OpenBeside();
    bool TakePermissions();
    void Drop() noexcept;

    std::string mPath;          // as it was given
    std::string mTarget;        // what is replaced; empty: it is written at once
    std::string mTemporaryName; // empty: it has none
    int mFile = -1;
};

/** The whole of it at once. */
COutcome<SDone> WriteWholeFile(const std::string& inPath, std::span<const std::byte> inBytes);

/** Before long work: whether the file could be written now. An empty path asks for nothing. */
COutcome<SDone> CheckWritable(const std::string& inPath);
