#include "Tests/doubles/FailingMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{
constexpr int kAlwaysThere = -1;
// Only the thread that makes memory run out reads and writes these.
thread_local int gLeft = kAlwaysThere;
thread_local bool gHasFailed = false;

void* Allocate(std::size_t inSize) noexcept
{
    if (gLeft == 0)
    {
        gHasFailed = true;
        return nullptr;
    }
    if (gLeft > 0)
        --gLeft;
    return std::malloc(inSize != 0 ? inSize : 1);
}

void* AllocateOrThrow(std::size_t inSize)
{
    void* const memory = Allocate(inSize);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
} // namespace

CFailingMemory::CFailingMemory(int inWorking) noexcept
{
    gHasFailed = false;
    gLeft = inWorking;
}

CFailingMemory::~CFailingMemory() { (void)Stop(); }

bool CFailingMemory::Stop() noexcept
{
    gLeft = kAlwaysThere;
    return gHasFailed;
}

void* operator new(std::size_t inSize) { return AllocateOrThrow(inSize); }
void* operator new[](std::size_t inSize) { return AllocateOrThrow(inSize); }
void* operator new(std::size_t inSize, const std::nothrow_t&) noexcept { return Allocate(inSize); }
void* operator new[](std::size_t inSize, const std::nothrow_t&) noexcept { return Allocate(inSize); }
void operator delete(void* inMemory) noexcept { std::free(inMemory); }
void operator delete[](void* inMemory) noexcept { std::free(inMemory); }
void operator delete(void* inMemory, std::size_t) noexcept { std::free(inMemory); }
void operator delete[](void* inMemory, std::size_t) noexcept { std::free(inMemory); }
