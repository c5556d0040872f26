#include "Tools/aaxhost/direct/SServices.h"

#include "Tools/vst2driver/CDrivenPlugin.h"

std::optional<VstIntPtr> SServices::Answer(const SHostCall& inCall, double inRate, bool inIsRendering,
                                           std::string& inFolder) const
{
    if (!mAnswers)
        return std::nullopt;
    return AnswerQuestion(inCall, {.mSampleRate = static_cast<float>(inRate),
                                   .mBlockSize = CDrivenPlugin::kMaxFrames,
                                   .mIsRendering = inIsRendering,
                                   .mDirectory = inFolder.data(),
                                   .mTakesMidi = mTakesMidi,
                                   .mResizesEditor = mSizes,
                                   .mGivesIdleTime = mIdleTime});
}
