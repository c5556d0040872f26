#include "Libs/AAXLibrary/source/AAX_CHostServices.h"

#include "Libs/AAXLibrary/source/AAX_VHostServices.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace
{
constexpr std::size_t kMessageSize = 512;

// Set and cleared on the host's loader thread only. A plain pointer: when the module is unloaded without a
// shutdown the host's services may be gone, so that nothing may touch them then.
AAX_VHostServices* gHostServices = nullptr;
} // namespace

void AAX_CHostServices::Set(IACFUnknown* inHost)
{
    if (inHost == nullptr)
        delete std::exchange(gHostServices, nullptr);
    else if (gHostServices == nullptr)
        gHostServices = new AAX_VHostServices(inHost); // deleted by the call with null
}

AAX_Result AAX_CHostServices::Assert(const char* inFile, std::int32_t inLine, const char* inNote)
{
    return gHostServices != nullptr ? gHostServices->Assert(inFile, inLine, inNote) : kAAX_ErrorNullObject;
}

AAX_Result AAX_CHostServices::Trace(std::int32_t inPriority, const char* inFormat, ...)
{
    if (gHostServices == nullptr)
        return kAAX_ErrorNullObject;
    std::array<char, kMessageSize> message{};
    std::va_list arguments;
    va_start(arguments, inFormat);
    std::vsnprintf(message.data(), message.size(), inFormat, arguments);
    va_end(arguments);
    return gHostServices->Trace(inPriority, message.data());
}
