#pragma once
#include "Tools/macho_loader/CMachOImage.h"

#include <stdexcept>
#include <string>

/** @return the path of a bundle that the cross build made for tests, such as "scripted_plugin.vst". */
inline std::string TestBundle(const std::string& inName)
{
    return std::string(AAXADAPTER_MACOS_BUILD) + "/test_bundles/" + inName;
}

/** @return the file in a bundle folder "Name.extension" that is loaded. */
inline std::string ExecutableIn(const std::string& inBundle)
{
    const std::size_t nameStart = inBundle.rfind('/') + 1;
    return inBundle + "/Contents/MacOS/" + inBundle.substr(nameStart, inBundle.rfind('.') - nameStart);
}

/** @return a function that the image exports. Throws std::runtime_error when it does not. */
template <class Function>
Function* ImportFrom(const CMachOImage& inImage, const char* inName)
{
    void* const symbol = inImage.FindSymbol(inName);
    if (symbol == nullptr)
        throw std::runtime_error(inImage.Path() + " exports no " + inName);
    return reinterpret_cast<Function*>(symbol);
}

/** Ends an object of an image through its own operation. */
struct SReleaseSubject
{
    template <class Subject>
    void operator()(Subject* inSubject) const
    {
        inSubject->Release();
    }
};
