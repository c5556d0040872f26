#pragma once
#include "Interfaces/AAX/AAX_Types.h"

/** No exception, be it that memory has run out, may pass from a call of the host's back to the host. */

/** Runs what a host-facing call does. @return its result; kAAX_ErrorNullObject when it throws. */
template <class Call>
AAX_Result AAX_Contained(Call inCall) noexcept
{
    try
    {
        return inCall();
    }
    catch (...)
    {
        return kAAX_ErrorNullObject;
    }
}

/** A new object for a host, whose first reference takes ownership; null when it cannot be made. */
template <class Object>
Object* AAX_CreateContained() noexcept
{
    try
    {
        return new Object;
    }
    catch (...)
    {
        return nullptr;
    }
}
