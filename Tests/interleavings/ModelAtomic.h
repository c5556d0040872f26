#pragma once
#include "Tests/interleavings/CExecution.h"

#include <atomic>
#include <thread>
#include <vector>

/**
 * Has the sources that are included behind this header use atomics of which an execution says what they see.
 * What those sources include themselves has to be included before, but for the house's own headers.
 */
namespace std // where the sources look for them
{
template <class T>
class model_atomic
{
public:
    static constexpr bool is_always_lock_free = atomic<T>::is_always_lock_free;

    constexpr model_atomic() noexcept = default;
    constexpr model_atomic(T inValue) noexcept : mFirst(inValue) {}
    model_atomic(const model_atomic&) = delete;
    model_atomic& operator=(const model_atomic&) = delete;

    T load(memory_order inOrder = memory_order_seq_cst) const
    {
        if (CExecution::Current() == nullptr) // what lived in an execution ends
            return Newest();
        Enter();
        return Value(CExecution::Current()->Load(mPlace, {SOperation::EKind::Load, this, inOrder}));
    }
    void store(T inValue, memory_order inOrder = memory_order_seq_cst)
    {
        Enter();
        CExecution::Current()->Store(mPlace, {SOperation::EKind::Store, this, inOrder});
        mLater.push_back(inValue);
    }
    T exchange(T inValue, memory_order inOrder = memory_order_seq_cst)
    {
        return Change([=](T) { return inValue; }, inOrder);
    }
    T fetch_add(T inNumber, memory_order inOrder = memory_order_seq_cst)
    {
        return Change([=](T inBefore) { return static_cast<T>(inBefore + inNumber); }, inOrder);
    }
    T fetch_sub(T inNumber, memory_order inOrder = memory_order_seq_cst)
    {
        return Change([=](T inBefore) { return static_cast<T>(inBefore - inNumber); }, inOrder);
    }
    bool compare_exchange_strong(T& ioExpected, T inValue, memory_order inOrder = memory_order_seq_cst,
                                 memory_order inOrderElse = memory_order_seq_cst)
    {
        return compare_exchange_weak(ioExpected, inValue, inOrder, inOrderElse);
    }
    bool compare_exchange_weak(T& ioExpected, T inValue, memory_order inOrder = memory_order_seq_cst,
                               memory_order /*inOrderElse*/ = memory_order_seq_cst)
    {
        Enter();
        const SOperation operation{SOperation::EKind::Exchange, this, inOrder};
        CExecution::Current()->BeginExchange(mPlace, operation);
        const T before = Newest();
        const bool isExpected = memcmp(&before, &ioExpected, sizeof(T)) == 0;
        CExecution::Current()->EndExchange(mPlace, operation, isExpected);
        if (isExpected)
            mLater.push_back(inValue);
        ioExpected = before;
        return isExpected;
    }

private:
    template <class Operation>
    T Change(Operation inOperation, memory_order inOrder)
    {
        Enter();
        const SOperation operation{SOperation::EKind::Exchange, this, inOrder};
        CExecution::Current()->BeginExchange(mPlace, operation);
        const T before = Newest();
        CExecution::Current()->EndExchange(mPlace, operation, true);
        mLater.push_back(inOperation(before));
        return before;
    }
    void Enter() const
    {
        if (!CExecution::Current()->Enter(mPlace))
            return;
        mFirst = Newest();
        mLater.clear();
    }
    T Value(uint32_t inNumber) const { return inNumber == 0 ? mFirst : mLater[inNumber - 1]; }
    T Newest() const { return mLater.empty() ? mFirst : mLater.back(); }

    mutable SPlace mPlace;
    mutable T mFirst{};
    mutable vector<T> mLater;
};

namespace model_thread
{
inline thread::id get_id()
{
    return thread::id(static_cast<thread::native_handle_type>(CExecution::Current()->Thread() + 1));
}
inline void yield() { CExecution::Current()->Yield(); }
} // namespace model_thread
} // namespace std

#define atomic model_atomic
#define this_thread model_thread
