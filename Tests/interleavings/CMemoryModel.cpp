#include "Tests/interleavings/CMemoryModel.h"

#include <algorithm>

namespace
{
bool Acquires(std::memory_order inOrder)
{
    return inOrder != std::memory_order_relaxed && inOrder != std::memory_order_release;
}

bool Releases(std::memory_order inOrder)
{
    return inOrder == std::memory_order_release || inOrder == std::memory_order_acq_rel ||
           inOrder == std::memory_order_seq_cst;
}

bool IsConsistent(const SOperation& inOperation) { return inOperation.mOrder == std::memory_order_seq_cst; }

std::uint32_t& Known(View& ioView, std::size_t inPlace)
{
    if (ioView.size() <= inPlace)
        ioView.resize(inPlace + 1);
    return ioView[inPlace];
}

void Add(View& ioView, const View& inOther)
{
    for (std::size_t place = 0; place < inOther.size(); ++place)
        Known(ioView, place) = std::max(Known(ioView, place), inOther[place]);
}
} // namespace

bool SOperation::Meets(const SOperation& inOther) const noexcept
{
    return (Writes() || inOther.Writes()) &&
           (mPlace == inOther.mPlace || (IsConsistent(*this) && IsConsistent(inOther)));
}

std::size_t CMemoryModel::NewPlace()
{
    mPlaces.emplace_back(1);
    return mPlaces.size() - 1;
}

std::uint32_t CMemoryModel::OldestSeen(std::size_t inThread, const SOperation& inOperation,
                                       std::size_t inPlace)
{
    if (IsConsistent(inOperation))
        Add(mThreads[inThread], mConsistent);
    return Known(mThreads[inThread], inPlace);
}

std::uint32_t CMemoryModel::Newest(std::size_t inPlace) const
{
    return static_cast<std::uint32_t>(mPlaces[inPlace].size() - 1);
}

void CMemoryModel::Read(std::size_t inThread, const SOperation& inOperation, std::size_t inPlace,
                        std::uint32_t inValue)
{
    View& view = mThreads[inThread];
    Known(view, inPlace) = std::max(Known(view, inPlace), inValue);
    if (Acquires(inOperation.mOrder))
        Add(view, mPlaces[inPlace][inValue]);
}

void CMemoryModel::Write(std::size_t inThread, const SOperation& inOperation, std::size_t inPlace,
                         bool inReadsBefore)
{
    View& view = mThreads[inThread];
    View handedOn = inReadsBefore ? mPlaces[inPlace].back() : View();
    Known(view, inPlace) = Newest(inPlace) + 1;
    if (IsConsistent(inOperation))
    {
        Add(view, mConsistent);
        Add(mConsistent, view);
    }
    if (Releases(inOperation.mOrder))
        Add(handedOn, view);
    mPlaces[inPlace].push_back(std::move(handedOn));
}

void CMemoryModel::Join(std::size_t inThread, std::size_t inOther)
{
    Add(mThreads[inThread], mThreads[inOther]);
}
