#pragma once
#include <string>

/**
 * A folder of its own for this user only, gone with this object, and with the process that made it however
 * that ends (Watcher.h). Main thread only.
 */
class CTemporaryFolder
{
public:
    /** Throws std::filesystem::filesystem_error. */
    CTemporaryFolder();
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;
    ~CTemporaryFolder();

    const std::string& Path() const { return mPath; }

private:
    std::string mPath;
};
