#include "Tools/support/CStage.h"

#include <atomic>
#include <new>

#include <sys/mman.h>

namespace
{
using Stage = std::atomic<const char*>; // a literal lies at the same place in a forked process

Stage* gShared = nullptr; // written by the main thread before it forks, then only read
} // namespace

CStage::CStage(const char* inWhat) noexcept
    : mBefore(gShared != nullptr ? gShared->exchange(inWhat, std::memory_order_relaxed) : nullptr)
{
}

CStage::~CStage()
{
    if (gShared != nullptr)
        gShared->store(mBefore, std::memory_order_relaxed);
}

void CStage::Share()
{
    void* const page =
        mmap(nullptr, sizeof(Stage), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (page != MAP_FAILED)
        gShared = new (page) Stage(nullptr); // in the page, which stays as long as the process
}

const char* CStage::Current() noexcept
{
    return gShared != nullptr ? gShared->load(std::memory_order_relaxed) : nullptr;
}
