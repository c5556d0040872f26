#pragma once
#include "Interfaces/ACF/ACFPtr.h"

/**
 * Has the host make one of its components.
 *
 * @return empty when the host is null, has no component factory or refuses.
 */
template <class Interface>
ACFPtr<Interface> AAX_CreateHostComponent(IACFUnknown* inHost, const acfUID& inComponent, const acfIID& inIid)
{
    ACFPtr<Interface> component;
    const auto factory = ACFPtr<IACFComponentFactory>::Query(inHost, IID_IACFComponentFactory);
    if (factory)
        (void)factory->CreateComponent(inComponent, nullptr, inIid,
                                       component.Receive()); // a refusal leaves it empty
    return component;
}
