#include "Platform/AutoreleasePool.h"

CPlatformAutoreleasePool::CPlatformAutoreleasePool() noexcept = default;

CPlatformAutoreleasePool::~CPlatformAutoreleasePool()
{
    mPool = nullptr; // there are no such pools here
}
