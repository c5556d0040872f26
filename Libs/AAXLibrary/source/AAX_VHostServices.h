#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/ACF/ACFPtr.h"

/** The host's services for a module; calls without them answer kAAX_ErrorNullObject. */
class AAX_VHostServices
{
public:
    /** Throws ACF_E_POINTER, an integer, when the host says that it has a component factory and gives none.
     */
    explicit AAX_VHostServices(IACFUnknown* inHost);

    [[nodiscard]] AAX_Result Assert(const char* inFile, std::int32_t inLine, const char* inNote);
    [[nodiscard]] AAX_Result Trace(std::int32_t inPriority, const char* inMessage);

private:
    ACFPtr<AAX_IACFHostServices> mServices;
};
