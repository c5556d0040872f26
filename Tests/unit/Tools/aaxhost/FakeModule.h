#pragma once
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

/** The module file that fake_module.cpp makes. */
inline std::string FakeModuleFile() { return FAKE_MODULE_FILE; }

/** Makes the fake module misbehave as long as it lives. */
class CFakeFault
{
public:
    explicit CFakeFault(const char* inName) { setenv("FAKE_MODULE_FAULT", inName, 1); }
    CFakeFault(const CFakeFault&) = delete;
    CFakeFault& operator=(const CFakeFault&) = delete;
    ~CFakeFault() { unsetenv("FAKE_MODULE_FAULT"); }
};

/** A folder of its own for the files of one test, gone afterwards. */
class CTestFolder
{
public:
    CTestFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "aaxhost-XXXXXX").string();
        mPath = mkdtemp(pattern.data());
    }
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;
    ~CTestFolder() { std::filesystem::remove_all(mPath); }

    std::string File(const std::string& inName) const { return (mPath / inName).string(); }

private:
    std::filesystem::path mPath;
};
