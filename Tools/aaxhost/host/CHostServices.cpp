#include "Tools/aaxhost/host/CHostServices.h"

#include "Interfaces/AAX/AAX_UIDs.h"

#include <fmt/format.h>

CHostServices::CHostServices(CHostLog& inLog) : CCountedObject(inLog, {IID_IAAXHostServicesV1}) {}

AAX_Result CHostServices::Assert(const char* file, std::int32_t line, const char* note)
{
    return mLog.Record("Assert", fmt::format("{}, {}, {}", Quoted(file), line, Quoted(note)));
}

AAX_Result CHostServices::Trace(std::int32_t priority, const char* message)
{
    return mLog.Record("Trace", fmt::format("{}, {}", priority, Quoted(message)));
}
