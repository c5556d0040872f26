#include "Tests/support/CTestFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

namespace fs = std::filesystem;

CTestFolder::CTestFolder()
{
    std::string name = fs::canonical(fs::temp_directory_path()) / "test_XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    mPath = name;
}

CTestFolder::~CTestFolder()
{
    std::error_code ignored; // a temporary folder that stays harms nobody
    fs::remove_all(mPath, ignored);
}
