#pragma once

/** Scope in which objects that the system's view framework releases later are collected; freed at its end. */
class CPlatformAutoreleasePool
{
public:
    CPlatformAutoreleasePool() noexcept;
    CPlatformAutoreleasePool(const CPlatformAutoreleasePool&) = delete;
    CPlatformAutoreleasePool& operator=(const CPlatformAutoreleasePool&) = delete;
    ~CPlatformAutoreleasePool();

private:
    void* mPool = nullptr; // stays null where the system has no such pools
};
