#pragma once
#include <filesystem>
#include <string>

/** A folder of its own for the files of one test, gone with this object. Unlike CTemporaryFolder it starts no
 * process that would remove it after a kill. */
class CTestFolder
{
public:
    /** Throws std::filesystem::filesystem_error and std::runtime_error. */
    CTestFolder();
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;
    ~CTestFolder();

    /** No link is in it. */
    const std::filesystem::path& Path() const { return mPath; }
    std::string File(const std::string& inName) const { return mPath / inName; }

private:
    std::filesystem::path mPath;
};
