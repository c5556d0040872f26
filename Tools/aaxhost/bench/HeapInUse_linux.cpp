#include "Tools/aaxhost/bench/HeapInUse.h"

#include <malloc.h>

std::size_t HeapInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
