#include "Tools/macho_loader/CMachOImage.h"
#include "Tools/macho_loader/CThreadLocals.h"
#include "Tools/macho_loader/LibSystemParts.h"

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

// Of the C library here: runs a function when the calling thread ends.
extern "C" int __cxa_thread_atexit_impl(void (*inFunction)(void*), void* inArgument, void* inModule);

namespace
{
/** @return 0 when the address is in no image: this machine's own modules don't exist for an image. */
int DescribeAddress(const void* inAddress, Dl_info* outInfo)
{
    const CMachOImage* const image = CMachOImage::Containing(inAddress);
    if (image == nullptr)
        return 0;
    static thread_local std::string name; // read by the caller until it asks again
    const auto symbol = image->NearestSymbol(inAddress);
    name = symbol.first;
    outInfo->dli_fname = image->Path().c_str();
    outInfo->dli_fbase = image->Base();
    outInfo->dli_sname = symbol.second != nullptr ? name.c_str() : nullptr;
    outInfo->dli_saddr = symbol.second;
    return 1;
}

int AtImageExit(void (*inFunction)(void*), void* inArgument, void* inImage)
{
    CMachOImage* const image = CMachOImage::Containing(inImage);
    if (image == nullptr)
        return -1;
    image->AddTerminator(inFunction, inArgument);
    return 0;
}

void AtThreadExit(void (*inFunction)(void*), void* inArgument)
{
    static char module; // some address of this program, which stays loaded
    (void)__cxa_thread_atexit_impl(inFunction, inArgument, &module); // the caller has no way to be told
}

[[noreturn]] void BindLazily()
{
    (void)std::fputs("an image calls a function that was not bound\n", stderr);
    std::abort();
}

// The C++ library asks for functions that newer systems may have.
void* OpenNothing(const char*, int) { return nullptr; }
void* FindNothing(void*, const char*) { return nullptr; }
} // namespace

SymbolTable LoaderSymbols()
{
    return {
        {"dladdr", AddressOf(DescribeAddress)},      {"dlopen", AddressOf(OpenNothing)},
        {"dlsym", AddressOf(FindNothing)},           {"__cxa_atexit", AddressOf(AtImageExit)},
        {"_tlv_atexit", AddressOf(AtThreadExit)},    {"_tlv_bootstrap", CThreadLocals::Accessor()},
        {"dyld_stub_binder", AddressOf(BindLazily)},
    };
}
