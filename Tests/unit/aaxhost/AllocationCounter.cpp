#include "Tests/unit/aaxhost/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

// A file of its own: inlined next to its callers, the pair looks mismatched to the compiler.

namespace
{
std::atomic<int> gAllocations{0}; // counted on whichever thread allocates
} // namespace

int CountAllocations() noexcept { return gAllocations.load(std::memory_order_relaxed); }

void* operator new(std::size_t inSize, const std::nothrow_t&) noexcept
{
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(inSize > 0 ? inSize : 1);
}

void* operator new(std::size_t inSize)
{
    if (void* memory = operator new(inSize, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* inMemory) noexcept { std::free(inMemory); }
void operator delete(void* inMemory, std::size_t) noexcept { std::free(inMemory); }
