#include "Tools/macho_loader/doubles/CCallLog.h"

#include <utility>

std::vector<std::string> CCallLog::Take() { return std::exchange(mLines, {}); }

void CCallLog::Refuse(const std::string& inFunction, int inWhich)
{
    mRefusedFunction = inFunction;
    mCallsUntilRefusal = inWhich;
}

bool CCallLog::IsRefused(const std::string& inFunction)
{
    if (mCallsUntilRefusal == 0 || inFunction != mRefusedFunction)
        return false;
    --mCallsUntilRefusal;
    return mCallsUntilRefusal == 0;
}
