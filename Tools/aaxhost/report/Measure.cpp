#include "Tools/aaxhost/report/Measure.h"

#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/report/measure/Parts.h"
#include "Tools/support/ChildRun.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportStem, mName, mChannels)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportParameter, mID, mName, mDefault, mText, mSteps, mAutomatable)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportIdentity, mProblem, mName, mManufacturer, mEffectID, mVersion,
                                   mManufacturerCode, mProductCode, mPluginCode, mInputs, mOutputs, mAuxStems,
                                   mMidiNodes, mLatency, mParameters)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSignal, mTitle, mSeconds, mLowest, mHighest, mSpectrum)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportSignals, mProblem, mRate, mSignals, mImpulse)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportAutomation, mProblem, mParameter, mSeconds, mSent, mRendered)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportCost, mProblem, mBlocks, mModule, mBare, mBareProblem)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(SReportEditor, mProblem, mWidth, mHeight, mPngBase64)

namespace
{
constexpr double kLimitSeconds = 60.0; // a part that takes longer is left out

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

SReportMaterial MeasureModule(const std::string& inModule)
{
    SReportMaterial material;
    material.mIdentity = Measured<SReportIdentity>([&] { return MeasureIdentity(inModule); });
    material.mSignals = Measured<SReportSignals>([&] { return MeasureSignals(inModule); });
    material.mAutomation = Measured<SReportAutomation>([&] { return MeasureAutomation(inModule); });
    material.mCost = Measured<SReportCost>([&] { return MeasureCost(inModule); });
    material.mEditor = Measured<SReportEditor>([&] { return PictureEditor(inModule); });
    return material;
}
