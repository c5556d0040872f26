#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <functional>
#include <utility>

/**
 * Passes a call on to the host unchanged.
 *
 * @param inTarget   the host's interface, or null where the host has none
 * @param inCall     which of its operations
 * @return what the host answers, or `kMissing` without an interface.
 */
template <AAX_Result kMissing = kAAX_ErrorNullObject, class Interface, class Call, class... Arguments>
[[nodiscard]] AAX_Result AAX_CallHost(Interface* inTarget, Call inCall, Arguments&&... inArguments)
{
    if (inTarget == nullptr)
        return kMissing;
    return std::invoke(inCall, *inTarget, std::forward<Arguments>(inArguments)...);
}
