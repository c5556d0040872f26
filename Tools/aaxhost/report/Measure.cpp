#include "Tools/aaxhost/report/Measure.h"

#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/report/PluginOfModule.h"
#include "Tools/aaxhost/report/measure/Parts.h"
#include "Tools/support/ChildRun.h"

#include <chrono>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportStem, mName, mChannels)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportParameter, mID, mName, mDefault, mText, mSteps, mAutomatable)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportIdentity, mProblem, mName, mManufacturer, mEffectID, mVersion,
                                   mManufacturerCode, mProductCode, mPluginCode, mInputs, mOutputs, mAuxStems,
                                   mMidiNodes, mLatency, mFeatures, mParameters)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSignal, mTitle, mSeconds, mLowest, mHighest, mSpectrum, mLevel,
                                   mIsImpulse, mColumns, mRows, mSpectrogram)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSignals, mProblem, mRate, mSignals, mImpulse)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportAutomation, mProblem, mParameter, mSeconds, mSent, mRendered)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportCost, mProblem, mBlocks, mModule, mBare, mBareProblem)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportTexts, mName, mUnit, mDefault, mAtZero, mAtHalf, mAtOne)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportParameterTexts, mProblem, mParameters)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSweptParameter, mID, mName, mLevels, mIsAudible)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSweep, mProblem, mValues, mParameters, mAutomatable, mSpread,
                                   mIsPlayed, mSettling, mCut)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportLatencyPoint, mRate, mBlock, mReported, mMeasured)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportLatency, mProblem, mPoints, mCut)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportEditor, mProblem, mWidth, mHeight, mPngBase64)

namespace
{
constexpr double kLimitSeconds = 60.0; // a part that takes longer is left out
constexpr double kPartSeconds = 1.5;   // of one that does more the longer it may

/** Runs one part in a process of its own; what goes wrong there becomes its problem. */
template <class Part, class Work>
Part Measured(Work inWork)
{
    const auto work = [&]
    {
        Part part;
        try
        {
            part = inWork();
        }
        catch (const SCheckEnd& end)
        {
            part.mProblem = end.mFinding.mReason;
        }
        catch (...)
        {
            part.mProblem = "An exception left the module.";
        }
        return nlohmann::json(part).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    };
    const SChildEnd end = RunInChild(work, kLimitSeconds);
    Part part;
    switch (end.mKind)
    {
    case SChildEnd::EKind::Finished: return nlohmann::json::parse(end.mText).get<Part>();
    case SChildEnd::EKind::Signal:
        part.mProblem = fmt::format("The plug-in crashed: {}.", NameOfSignal(end.mNumber));
        break;
    case SChildEnd::EKind::Limit: part.mProblem = "The plug-in hung."; break;
    case SChildEnd::EKind::Exit: part.mProblem = "The plug-in ended the process."; break;
    case SChildEnd::EKind::NotStarted: part.mProblem = "No process could be started."; break;
    }
    return part;
}
} // namespace

SReportMaterial TakeMaterial(const std::string& inModule)
{
    const auto begin = std::chrono::steady_clock::now();
    SReportMaterial material;
    material.mIdentity = Measured<SReportIdentity>([&] { return MeasureIdentity(inModule); });
    material.mSignals = Measured<SReportSignals>([&] { return MeasureSignals(inModule); });
    material.mAutomation = Measured<SReportAutomation>([&] { return MeasureAutomation(inModule); });
    material.mCost = Measured<SReportCost>([&] { return MeasureCost(inModule); });
    material.mEditor = Measured<SReportEditor>([&] { return PictureEditor(inModule); });
    material.mSweep = Measured<SReportSweep>([&] { return MeasureSweep(inModule, kPartSeconds); });
    material.mLatency = Measured<SReportLatency>([&] { return MeasureLatency(inModule, kPartSeconds); });
    material.mTexts = Measured<SReportParameterTexts>([&] { return ReadTexts(inModule); });
    material.mPlugin = ProbePluginOf(inModule);
    material.mSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    return material;
}
