#include "Platform/AutoreleasePool.h"

// Entry points of the Objective-C runtime library; the compiler knows them, no header of the system declares
// them.
extern "C" void* objc_autoreleasePoolPush(void);
extern "C" void objc_autoreleasePoolPop(void* inPool);

CPlatformAutoreleasePool::CPlatformAutoreleasePool() noexcept : mPool(objc_autoreleasePoolPush()) {}

CPlatformAutoreleasePool::~CPlatformAutoreleasePool() { objc_autoreleasePoolPop(mPool); }
