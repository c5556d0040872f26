#include "Examples/synth/CMidiQueue.h"

#include <algorithm>

void CMidiQueue::Push(SQueuedMessage inMessage) noexcept
{
    if (mEnd == kCapacity)
        return;
    inMessage.offset = std::max(inMessage.offset, 0);
    std::size_t place = mEnd++;
    for (; place > mFirst && mMessages[place - 1].offset > inMessage.offset; --place)
        mMessages[place] = mMessages[place - 1];
    mMessages[place] = inMessage;
}

const SQueuedMessage* CMidiQueue::PopDue(std::int32_t inOffset) noexcept
{
    return mFirst < mEnd && mMessages[mFirst].offset <= inOffset ? &mMessages[mFirst++] : nullptr;
}

void CMidiQueue::Advance(std::int32_t inFrames) noexcept
{
    const std::size_t left = mEnd - mFirst;
    for (std::size_t i = 0; i < left; ++i)
    {
        mMessages[i] = mMessages[mFirst + i];
        mMessages[i].offset -= inFrames;
    }
    mFirst = 0;
    mEnd = left;
}

void CMidiQueue::Clear() noexcept
{
    mFirst = 0;
    mEnd = 0;
}
