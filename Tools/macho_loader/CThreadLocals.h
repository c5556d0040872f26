#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include <pthread.h>

/** The thread-local variables of one image: each thread gets a copy of a template at its first access. */
class CThreadLocals
{
public:
    /** Throws CMachOError when the system has no key left. */
    CThreadLocals();
    CThreadLocals(const CThreadLocals&) = delete;
    CThreadLocals& operator=(const CThreadLocals&) = delete;
    /** Frees the variables of all threads. */
    ~CThreadLocals();

    /** @param inTemplate in the image's memory, copied when a thread needs it. */
    void SetTemplate(std::span<const std::uint8_t> inTemplate) { mTemplate = inTemplate; }
    /** Makes the image's accessors come here. @param ioDescriptors one for each variable, in a row. */
    void Connect(std::span<std::uint8_t> ioDescriptors);
    /** @return the calling thread's variable. Aborts without memory. */
    void* Address(std::uint64_t inOffset);

    /** What a descriptor's first field holds: finds the variable, and keeps all registers but one. */
    static void* Accessor();

private:
    struct SFree
    {
        void operator()(void* inMemory) const;
    };

    std::span<const std::uint8_t> mTemplate;
    pthread_key_t mKey = 0;
    std::mutex mBlocksMutex;
    std::vector<std::unique_ptr<void, SFree>> mBlocks;
};
