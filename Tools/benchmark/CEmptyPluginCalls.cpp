#include "Tools/benchmark/CEmptyPluginCalls.h"

#include <dlfcn.h>
#include <stdexcept>

void CEmptyPluginCalls::SImageCloser::operator()(void* inImage) const { dlclose(inImage); }

CEmptyPluginCalls::CEmptyPluginCalls(const std::filesystem::path& inFile)
    : mImage(dlopen(inFile.c_str(), RTLD_NOW | RTLD_NOLOAD))
{
    if (mImage == nullptr)
        throw std::runtime_error(inFile.string() + " is not loaded");
    const auto get = reinterpret_cast<GetEmptyPluginAccessProc>(dlsym(mImage.get(), kEmptyPluginAccess));
    if (get == nullptr)
        throw std::runtime_error(inFile.string() + " is not the empty plug-in");
    mAccess = get();
    mHost = mAccess->mHost();
}
