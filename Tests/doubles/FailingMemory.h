#pragma once

/**
 * Has memory run out on this thread while it lives: allocations of the language fail, `inWorking` of them
 * later. The program that links this takes the place of operator new. One at a time.
 */
class CFailingMemory
{
public:
    explicit CFailingMemory(int inWorking) noexcept;
    CFailingMemory(const CFailingMemory&) = delete;
    CFailingMemory& operator=(const CFailingMemory&) = delete;
    ~CFailingMemory();
    /** Memory is there again. @return whether an allocation has failed. */
    bool Stop() noexcept;
};
