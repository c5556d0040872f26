#include "Tools/macho_loader/CThreadLocals.h"

#include "Tools/macho_loader/CByteReader.h"

#include <cstdlib>
#include <cstring>

namespace
{
constexpr std::size_t kAlignment = 64; // more than any variable's

/** What the compiler lays out for a variable; the linker fills in the offset. */
struct SDescriptor
{
    void* mAccessor;
    CThreadLocals* mOwner;
    std::uint64_t mOffset;
};
static_assert(sizeof(SDescriptor) == 24);
} // namespace

extern "C" void MachOThreadLocalAccessor(); // below; takes a descriptor in rdi
extern "C" void* MachOThreadLocalAddress(SDescriptor* inDescriptor)
{
    return inDescriptor->mOwner->Address(inDescriptor->mOffset);
}

// The caller expects every register but rax kept, those of vectors too.
asm(R"(
    .text
    .globl MachOThreadLocalAccessor
    .type MachOThreadLocalAccessor, @function
MachOThreadLocalAccessor:
    pushq %rbp
    movq %rsp, %rbp
    pushq %rdi
    pushq %rsi
    pushq %rdx
    pushq %rcx
    pushq %r8
    pushq %r9
    pushq %r10
    pushq %r11
    subq $1024, %rsp
    andq $-64, %rsp
    fxsave64 512(%rsp)
    call MachOThreadLocalAddress@PLT
    fxrstor64 512(%rsp)
    leaq -64(%rbp), %rsp
    popq %r11
    popq %r10
    popq %r9
    popq %r8
    popq %rcx
    popq %rdx
    popq %rsi
    popq %rdi
    popq %rbp
    ret
    .size MachOThreadLocalAccessor, .-MachOThreadLocalAccessor
)");

void CThreadLocals::SFree::operator()(void* inMemory) const { std::free(inMemory); }

CThreadLocals::CThreadLocals()
{
    if (pthread_key_create(&mKey, nullptr) != 0)
        throw CMachOError("no key for thread-local variables");
}

CThreadLocals::~CThreadLocals() { (void)pthread_key_delete(mKey); } // fails for foreign keys only

void CThreadLocals::Connect(std::span<std::uint8_t> ioDescriptors)
{
    for (std::size_t start = 0; start < ioDescriptors.size(); start += sizeof(SDescriptor))
    {
        auto descriptor = ReadAt<SDescriptor>(ioDescriptors, start);
        descriptor.mAccessor = Accessor();
        descriptor.mOwner = this;
        std::memcpy(&ioDescriptors[start], &descriptor, sizeof(descriptor));
    }
}

void* CThreadLocals::Address(std::uint64_t inOffset)
{
    void* block = pthread_getspecific(mKey);
    if (block == nullptr)
    {
        block = std::aligned_alloc(kAlignment, (mTemplate.size() / kAlignment + 1) * kAlignment);
        if (block == nullptr || pthread_setspecific(mKey, block) != 0)
            std::abort();
        std::memcpy(block, mTemplate.data(), mTemplate.size());
        const std::lock_guard lock(mBlocksMutex);
        mBlocks.emplace_back(block);
    }
    return static_cast<std::uint8_t*>(block) + inOffset;
}

void* CThreadLocals::Accessor() { return reinterpret_cast<void*>(&MachOThreadLocalAccessor); }
