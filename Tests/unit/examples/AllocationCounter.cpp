#include "Tests/unit/examples/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{
std::atomic<std::size_t> gAllocations = 0; // any thread
} // namespace

std::size_t AllocationCount() { return gAllocations.load(); }

void* operator new(std::size_t inSize)
{
    ++gAllocations;
    void* const memory = std::malloc(inSize);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* inMemory) noexcept { std::free(inMemory); }
void operator delete(void* inMemory, std::size_t /*inSize*/) noexcept { std::free(inMemory); }
