#include "Examples/synth/CMidiQueue.h"

#include <algorithm>

void CMidiQueue::Push(SQueuedMessage inMessage) noexcept
{
    if (mEnd == kCapacity)
        return;
    inMessage.mOffset = std::max(inMessage.mOffset, 0);
    std::size_t place = mEnd++;
    for (; place > mFirst && mMessages[place - 1].mOffset > inMessage.mOffset; --place)
        mMessages[place] = mMessages[place - 1];
    mMessages[place] = inMessage;
}

const SQueuedMessage* CMidiQueue::PopDue(std::int32_t inOffset) noexcept
{
    return mFirst < mEnd && mMessages[mFirst].mOffset <= inOffset ? &mMessages[mFirst++] : nullptr;
}

void CMidiQueue::Advance(std::int32_t inFrames) noexcept
{
    const std::size_t left = mEnd - mFirst;
    for (std::size_t i = 0; i < left; ++i)
    {
        mMessages[i] = mMessages[mFirst + i];
        mMessages[i].mOffset -= inFrames;
    }
    mFirst = 0;
    mEnd = left;
}

void CMidiQueue::Clear() noexcept
{
    mFirst = 0;
    mEnd = 0;
}
