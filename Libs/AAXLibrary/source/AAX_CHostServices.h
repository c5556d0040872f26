#pragma once
#include "Interfaces/AAX/AAX_Types.h"

class IACFUnknown;

/**
 * The host's services, one for the module, from start to shutdown.
 *
 * Threads: `Set` on the host's loader thread while nothing else uses the services.
 */
class AAX_CHostServices
{
public:
    /**
     * With a host takes over its services, unless there are some already; with null gives them back.
     * Throws what the constructor of `AAX_VHostServices` throws; there are then no services.
     */
    static void Set(IACFUnknown* inHost);

    /** Both answer kAAX_ErrorNullObject where there are no services. */
    [[nodiscard]] static AAX_Result Assert(const char* inFile, std::int32_t inLine, const char* inNote);
    /** Formats like printf; a message is cut to 511 characters. */
    [[nodiscard, gnu::format(printf, 2, 3)]] static AAX_Result Trace(std::int32_t inPriority,
                                                                     const char* inFormat, ...);
};
