#include "Source/ParameterId.h"

#include <cstdint>
#include <cstdio>
#include <limits>

CParameterId::CParameterId(long inIndex) noexcept
{
    std::snprintf(mText.data(), mText.size(), "%05ld", inIndex);
}

long ParameterIndexFromId(const char* inId) noexcept
{
    if (inId == nullptr)
        return -1;
    long index = 0;
    for (const char* digit = inId; *digit != '\0'; ++digit)
    {
        if (*digit < '0' || *digit > '9')
            return -1;
        index = index * 10 + (*digit - '0');
        if (index > std::numeric_limits<std::int32_t>::max())
            return -1;
    }
    return index;
}
