#include "Tests/interleavings/CExecution.h"

#include <algorithm>
#include <array>
#include <ucontext.h>
#include <utility>

namespace
{
constexpr std::size_t kStackBytes = std::size_t{256} * 1024;
constexpr std::size_t kMostThreads = 3;
constexpr std::size_t kMostOrders = 5'000'000;

std::array<std::array<char, kStackBytes>, kMostThreads> gStacks;
CExecution* gCurrent = nullptr;
std::uint64_t gExecutions = 0;
} // namespace

struct CExecution::SFiber
{
    ucontext_t mContext{};
    SOperation mNext; // before which it stands
    bool mHasEnded = false;
    bool mWaits = false;   // for a store of another
    bool mIsFresh = false; // has waited: its next load sees what is newest
};

CExecution::CExecution(std::vector<SChoice>& ioChoices, const std::function<SThreads()>& inMake)
    : mChoices(ioChoices), mMemory(kMostThreads)
{
    gCurrent = this;
    ++gExecutions;
    mFibers.push_back(std::make_unique<SFiber>());
    mThreads = inMake();
    mSleeps.resize(mThreads.mThreads.size() + 1);
    while (mFibers.size() <= mThreads.mThreads.size())
        MakeFiber();
}

void CExecution::MakeFiber()
{
    const std::size_t thread = mFibers.size();
    SFiber& fiber = *mFibers.emplace_back(std::make_unique<SFiber>());
    getcontext(&fiber.mContext);
    fiber.mContext.uc_stack.ss_sp = gStacks.at(thread - 1).data();
    fiber.mContext.uc_stack.ss_size = kStackBytes;
    fiber.mContext.uc_link = &mFibers[0]->mContext;
    makecontext(&fiber.mContext, reinterpret_cast<void (*)()>(RunFiber), 1, static_cast<unsigned>(thread));
    mMemory.Join(thread, 0);
}

CExecution::~CExecution() { gCurrent = nullptr; }

CExecution* CExecution::Current() { return gCurrent; }

void CExecution::RunFiber(unsigned inNumber)
{
    gCurrent->mThreads.mThreads[inNumber - 1]();
    gCurrent->mFibers[inNumber]->mHasEnded = true;
}

std::string CExecution::Run()
{
    for (std::size_t thread = 1; thread < mFibers.size(); ++thread)
        Resume(thread); // up to its first operation
    for (std::size_t thread = ChooseThread(); thread != 0; thread = ChooseThread())
        Resume(thread);
    for (std::size_t thread = 1; thread < mFibers.size(); ++thread)
    {
        if (!mFibers[thread]->mHasEnded)
            return "Each thread waits for another.\n" + mOperations;
        mMemory.Join(0, thread);
    }
    const std::string problem = mIsKnown ? std::string() : mThreads.mAfter();
    return problem.empty() ? problem : problem + '\n' + mOperations;
}

std::size_t CExecution::Choose(std::size_t inOf)
{
    if (inOf < 2 || mIsKnown)
        return 0;
    if (mChoice == mChoices.size())
        mChoices.push_back({0, inOf});
    return mChoices[mChoice++].mTaken;
}

std::size_t CExecution::ChooseThread()
{
    std::vector<std::size_t> ready;
    std::vector<std::size_t> awake;
    for (std::size_t thread = 1; thread < mFibers.size(); ++thread)
        if (!mFibers[thread]->mHasEnded && !mFibers[thread]->mWaits)
        {
            ready.push_back(thread);
            if (!mSleeps[thread])
                awake.push_back(thread);
        }
    if (ready.empty())
        return 0;
    mIsKnown = mIsKnown || awake.empty();
    if (mIsKnown)
        return ready.front(); // only to an end
    const std::size_t chosen = awake[Choose(awake.size())];
    for (const std::size_t thread : awake)
    {
        if (thread == chosen)
            break;
        mSleeps[thread] = true; // that goes first was tried
    }
    for (const std::size_t thread : ready)
        if (mFibers[thread]->mNext.Meets(mFibers[chosen]->mNext))
            mSleeps[thread] = false;
    return chosen;
}

void CExecution::Resume(std::size_t inThread)
{
    mThread = inThread;
    swapcontext(&mFibers[0]->mContext, &mFibers[inThread]->mContext);
    mThread = 0;
}

void CExecution::LetOthersGo() { swapcontext(&mFibers[mThread]->mContext, &mFibers[0]->mContext); }

void CExecution::Await(const SOperation& inOperation)
{
    if (mThread == 0)
        return;
    mFibers[mThread]->mNext = inOperation;
    LetOthersGo();
    if (inOperation.Writes())
        for (std::size_t thread = 1; thread < mFibers.size(); ++thread)
            if (thread != mThread)
                mFibers[thread]->mWaits = false;
}

void CExecution::Yield()
{
    mFibers[mThread]->mWaits = true;
    mFibers[mThread]->mIsFresh = true;
    LetOthersGo();
}

bool CExecution::Enter(SPlace& ioPlace)
{
    if (ioPlace.mExecution == gExecutions)
        return false;
    ioPlace = {gExecutions, mMemory.NewPlace()};
    return true;
}

std::uint32_t CExecution::Load(const SPlace& inPlace, const SOperation& inOperation)
{
    Await(inOperation);
    const std::uint32_t newest = mMemory.Newest(inPlace.mNumber);
    const std::uint32_t oldest = mMemory.OldestSeen(mThread, inOperation, inPlace.mNumber);
    const bool isFresh = mThread == 0 || std::exchange(mFibers[mThread]->mIsFresh, false);
    const auto value = isFresh ? newest : newest - static_cast<std::uint32_t>(Choose(newest - oldest + 1));
    mMemory.Read(mThread, inOperation, inPlace.mNumber, value);
    Note(inPlace, "loads", value);
    return value;
}

void CExecution::Store(const SPlace& inPlace, const SOperation& inOperation)
{
    Await(inOperation);
    mMemory.Write(mThread, inOperation, inPlace.mNumber, false);
    Note(inPlace, "stores", mMemory.Newest(inPlace.mNumber));
}

void CExecution::BeginExchange(const SPlace& inPlace, const SOperation& inOperation)
{
    Await(inOperation);
    mMemory.Read(mThread, inOperation, inPlace.mNumber, mMemory.Newest(inPlace.mNumber));
}

void CExecution::EndExchange(const SPlace& inPlace, const SOperation& inOperation, bool inWrites)
{
    if (inWrites)
        mMemory.Write(mThread, inOperation, inPlace.mNumber, true);
    Note(inPlace, inWrites ? "exchanges for" : "leaves", mMemory.Newest(inPlace.mNumber));
}

void CExecution::Note(const SPlace& inPlace, const char* inWhat, std::uint32_t inValue)
{
    if (mThread != 0)
        mOperations += "  thread " + std::to_string(mThread) + ' ' + inWhat + " value " +
                       std::to_string(inValue) + " of place " + std::to_string(inPlace.mNumber) + '\n';
}

STried TryAllOrders(const std::function<SThreads()>& inMake)
{
    STried tried;
    std::vector<SChoice> choices;
    do
    {
        CExecution execution(choices, inMake);
        tried.mProblem = execution.Run();
        if (!tried.mProblem.empty())
            return tried;
        if (++tried.mOrders == kMostOrders)
            return {tried.mOrders, "There are too many orders."};
        while (!choices.empty() && ++choices.back().mTaken == choices.back().mOf)
            choices.pop_back();
    } while (!choices.empty());
    return tried;
}
