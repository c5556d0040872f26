#include "Libs/AAXLibrary/source/AAX_VHostServices.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_CallHost.h"

AAX_VHostServices::AAX_VHostServices(IACFUnknown* inHost)
{
    ACFPtr<IACFComponentFactory> factory;
    if (inHost == nullptr || ACFFailed(inHost->QueryInterface(IID_IACFComponentFactory, factory.Receive())))
        return;
    if (!factory)
        throw ACF_E_POINTER;
    (void)factory->CreateComponent(AAXCompID_HostServices, nullptr, IID_IAAXHostServicesV1,
                                   mServices.Receive()); // a refusal leaves it empty
}

AAX_Result AAX_VHostServices::Assert(const char* inFile, std::int32_t inLine, const char* inNote)
{
    return AAX_CallHost(mServices.Get(), &AAX_IACFHostServices::Assert, inFile, inLine, inNote);
}

AAX_Result AAX_VHostServices::Trace(std::int32_t inPriority, const char* inMessage)
{
    return AAX_CallHost(mServices.Get(), &AAX_IACFHostServices::Trace, inPriority, inMessage);
}
