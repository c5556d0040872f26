#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Tools/aaxhost/host/CCountedObject.h"

/** The host services: what a module asserts and traces goes into the log. */
class CHostServices final : public CCountedObject<AAX_IACFHostServices>
{
public:
    explicit CHostServices(CHostLog& inLog);

    AAX_Result Assert(const char* file, std::int32_t line, const char* note) override;
    AAX_Result Trace(std::int32_t priority, const char* message) override;
};
