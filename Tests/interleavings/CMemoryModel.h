#pragma once
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/** What an atomic operation does with its place in memory. */
struct SOperation
{
    enum class EKind
    {
        Load,
        Store,
        Exchange // reads the newest value, and may write one
    };
    EKind mKind = EKind::Load;
    const void* mPlace = nullptr;
    std::memory_order mOrder = std::memory_order_seq_cst;

    bool Writes() const noexcept { return mKind != EKind::Load; }
    bool Meets(const SOperation& inOther) const noexcept;
};

/** How many of a place's stores a thread knows, by the number of the place. */
using View = std::vector<std::uint32_t>;

/**
 * The memory of one execution: of each place the values that were stored, by their numbers, and what each
 * thread knows of them. The values themselves are with the atomics.
 */
class CMemoryModel
{
public:
    explicit CMemoryModel(std::size_t inThreads) : mThreads(inThreads + 1) {}

    /** Of the number of the value, 0 for the first, that a load sees: the oldest. The newest is the last
     * stored. */
    std::uint32_t OldestSeen(std::size_t inThread, const SOperation& inOperation, std::size_t inPlace);
    std::uint32_t Newest(std::size_t inPlace) const;
    void Read(std::size_t inThread, const SOperation& inOperation, std::size_t inPlace,
              std::uint32_t inValue);
    /** @param inReadsBefore an exchange, which hands on what the value that it takes has handed on. */
    void Write(std::size_t inThread, const SOperation& inOperation, std::size_t inPlace, bool inReadsBefore);
    std::size_t NewPlace();
    /** One thread knows what another knows, as by its start or its end. */
    void Join(std::size_t inThread, std::size_t inOther);

private:
    std::vector<std::vector<View>> mPlaces; // what each value hands on to who acquires it
    std::vector<View> mThreads;
    View mConsistent; // what all sequentially consistent stores knew
};
