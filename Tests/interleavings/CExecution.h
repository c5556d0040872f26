#pragma once
#include "Tests/interleavings/CMemoryModel.h"
#include "Tests/interleavings/Interleavings.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/** One choice of many on the way through an execution. */
struct SChoice
{
    std::size_t mTaken = 0;
    std::size_t mOf = 1;
};

/** What an atomic knows of its place in the present execution. */
struct SPlace
{
    std::uint64_t mExecution = 0; // 0: of none
    std::size_t mNumber = 0;
};

/** One run of the threads, by choices that were made before and first choices behind them. */
class CExecution
{
public:
    /** @param ioChoices those to take; gets the ones that are made anew. */
    CExecution(std::vector<SChoice>& ioChoices, const std::function<SThreads()>& inMake);
    CExecution(const CExecution&) = delete;
    CExecution& operator=(const CExecution&) = delete;
    ~CExecution();

    /** @return what is wrong, with all operations; empty where nothing is. */
    std::string Run();

    // For the atomics, on a thread of the execution.
    /** @return null outside of one. */
    static CExecution* Current();
    /** @return whether the place is new: its present value is its first then. */
    bool Enter(SPlace& ioPlace);
    /** @return the number of the value that is read. */
    std::uint32_t Load(const SPlace& inPlace, const SOperation& inOperation);
    void Store(const SPlace& inPlace, const SOperation& inOperation);
    /** The newest value is read; `EndExchange` says whether one is written. */
    void BeginExchange(const SPlace& inPlace, const SOperation& inOperation);
    void EndExchange(const SPlace& inPlace, const SOperation& inOperation, bool inWrites);
    /** Nothing comes of going on before another thread has stored something. */
    void Yield();
    /** 0 for the one that made the threads. */
    std::size_t Thread() const noexcept { return mThread; }

private:
    struct SFiber;

    void MakeFiber();
    static void RunFiber(unsigned inNumber);
    std::size_t Choose(std::size_t inOf);
    /** @return 0 where none can go on. */
    std::size_t ChooseThread();
    void Resume(std::size_t inThread);
    void LetOthersGo();
    void Await(const SOperation& inOperation);
    void Note(const SPlace& inPlace, const char* inWhat, std::uint32_t inValue);

    std::vector<SChoice>& mChoices;
    std::size_t mChoice = 0;
    std::size_t mThread = 0;
    SThreads mThreads;
    std::vector<std::unique_ptr<SFiber>> mFibers; // behind one for the maker
    std::vector<bool> mSleeps;                    // to run it next would be an order that was run
    bool mIsKnown = false;                        // the order was run
    CMemoryModel mMemory;
    std::string mOperations;
};
