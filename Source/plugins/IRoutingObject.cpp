#include "Source/plugins/IRoutingObject.h"

#include "Source/plugins/CopyBounded.h"

#include <algorithm>
#include <cstddef>

namespace
{
// The last but one character of the field is never used, so one more than the 254 that are kept.
constexpr std::size_t kUsedNameField = 255;

bool SetVolume(std::vector<float>& ioVolumes, float inVolume, long inChannel, long inChannelCount)
{
    const bool exists = inChannel >= 0 && inChannel < inChannelCount &&
                        static_cast<std::size_t>(inChannel) < ioVolumes.size();
    if (exists)
        ioVolumes[static_cast<std::size_t>(inChannel)] = inVolume;
    return exists;
}
} // namespace

IRoutingObject::~IRoutingObject() = default;

void IRoutingObject::SetInput(IRoutingObject* inNode, bool inRemove)
{
    if (inNode == nullptr)
        return;
    const auto found = std::find(mInputs.begin(), mInputs.end(), inNode);
    if (found == mInputs.end())
        mInputs.push_back(inNode);
    else if (inRemove)
        mInputs.erase(found);
}

bool IRoutingObject::SetOutput(IRoutingObject* inTarget, float inVolume, const char* inName)
{
    if (inTarget == nullptr)
        return false;
    const auto found =
        std::find_if(mOutputs.begin(), mOutputs.end(),
                     [inTarget](const SOutputObject& inLink) { return inLink.mTarget == inTarget; });
    if (found == mOutputs.end())
    {
        if (ThisOutputLeadsToDeadLock(inTarget))
            return false;
        SOutputObject& link = mOutputs.emplace_back();
        link.mTarget = inTarget;
        link.mVolume = inVolume;
        link.mHasName = inName != nullptr;
        CopyBounded(link.mName, inName);
        inTarget->SetInput(this, false);
        return true;
    }
    if (inVolume >= 0.0F)
    {
        found->mVolume = inVolume;
        if (inName != nullptr)
        {
            CopyBounded(found->mName, inName);
            found->mHasName = true;
        }
        return true;
    }
    mOutputs.erase(found);
    inTarget->SetInput(this, true);
    return true;
}

void IRoutingObject::PostProcess() {}

void IRoutingObject::SetRoutingObjectName(const char* inName)
{
    CopyBounded(std::span(mName).first(kUsedNameField), inName);
}

const char* IRoutingObject::GetRoutingObjectName() const { return mName.data(); }

void IRoutingObject::CreateMyOutputs(long inBlockSize)
{
    DeleteMyOutputs();
    mBlockSize = inBlockSize;

    const auto buffers = static_cast<std::size_t>(std::max(mInputChannelCount, mOutputChannelCount));
    const auto blockSize = static_cast<std::size_t>(std::max(inBlockSize, 0L));
    const std::size_t reserved = std::max(static_cast<std::size_t>(mReservedChannels), buffers) - buffers;
    const std::size_t scratch = reserved > 0 ? 1 : 0;
    mSamples.assign((buffers + scratch) * blockSize, 0.0F);
    for (std::size_t channel = 0; channel < buffers; ++channel)
        mChannelBuffers.push_back(mSamples.data() + channel * blockSize);
    mChannelBuffers.insert(mChannelBuffers.end(), reserved, mSamples.data() + buffers * blockSize);
    mChannelBuffers.push_back(nullptr);

    mInputVolumes.assign(static_cast<std::size_t>(mInputChannelCount), 1.0F);
    mOutputVolumes.assign(static_cast<std::size_t>(mOutputChannelCount), 1.0F);
    mInputLevels.assign(static_cast<std::size_t>(mInputChannelCount), 0.0F);
    mOutputLevels.assign(static_cast<std::size_t>(mOutputChannelCount), 0.0F);
    mChannelFlags.assign(buffers, false);
}

void IRoutingObject::DeleteMyOutputs()
{
    mChannelBuffers.clear();
    mSamples.clear();
    mInputVolumes.clear();
    mOutputVolumes.clear();
    mInputLevels.clear();
    mOutputLevels.clear();
    mChannelFlags.clear();
}

bool IRoutingObject::ThisOutputLeadsToDeadLock(const IRoutingObject* inTarget) const
{
    return inTarget == this ||
           std::any_of(
               mInputs.begin(), mInputs.end(),
               [inTarget](const IRoutingObject* inInput)
               { return inInput == inTarget || inInput->ThisOutputLeadsToDeadLock(inTarget); });
}

bool IRoutingObject::SetInputChannelVolume(float inVolume, long inChannel)
{
    return SetVolume(mInputVolumes, inVolume, inChannel, mInputChannelCount);
}

bool IRoutingObject::SetOutputChannelVolume(float inVolume, long inChannel)
{
    return SetVolume(mOutputVolumes, inVolume, inChannel, mOutputChannelCount);
}

void IRoutingObject::Log(const char* /*inText*/) const {}

void IRoutingObject::LogData() const {}

void IRoutingObject::SetChannelCounts(long inInputs, long inOutputs)
{
    mInputChannelCount = std::max(inInputs, 0L);
    mOutputChannelCount = std::max(inOutputs, 0L);
}
