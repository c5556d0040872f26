#pragma once
#include <cstddef>

/** @return how often this process has allocated with operator new, plug-ins included. */
std::size_t AllocationCount();
