#pragma once
#include <cstddef>

/** @return bytes that this process has from the allocator; 0 where the system does not tell. */
std::size_t HeapInUse();
