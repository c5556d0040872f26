#include "Source/features/CFeaturedParameters.h"

#include "Interfaces/AAX/AAX_IParameter.h"
#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductFeatures.h"

#include <cstddef>
#include <memory>
#include <vector>

// The plug-in's programs, as a parameter of the host.

void CFeaturedParameters::AddLastParameters()
{
    std::unique_ptr<AAX_IParameter> programs =
        kProductFeatures.mPrograms && Plugin() != nullptr ? mPrograms.Attach(*Plugin()) : nullptr;
    if (programs == nullptr)
        return;
    mParameterManager.AddParameter(programs.release());
    if (Plugin()->GotChunk())
        FilterParameterIDOnSave(CPrograms::kID); // it is saved with the plug-in's chunk
}

void CFeaturedParameters::ChooseProgram(double inValue)
{
    KeepUpdate(CPrograms::kID, inValue);
    mPrograms.Take(inValue);
    if (Host().IsListenerThread()) // else with the next beat
        GiveChosenProgram();
}

void CFeaturedParameters::GiveChosenProgram()
{
    const std::optional<long> program = mPrograms.TakeChoice();
    if (!program)
        return;
    bool isNew = false;
    {
        const CClearedFlag notReady = IgnoredReports();
        isNew = mPrograms.Choose(*program);
    }
    if (isNew)
        UpdateParameters();
}

void CFeaturedParameters::FollowPrograms()
{
    if (!mPrograms.AreThere())
        return;
    mPrograms.TimerBeat();
    GiveChosenProgram();
    const std::optional<double> value = mPrograms.TakeReport();
    if (!value)
        return;
    (void)SetParameterNormalizedValue(CPrograms::kID, *value); // the host may refuse
    UpdateParameters();
}

void CFeaturedParameters::RestoreControls(AAX_CChunkDataParser& ioSaved)
{
    double saved = 0.0;
    if (mPrograms.AreThere() && !Plugin()->GotChunk() && ioSaved.FindDouble(CPrograms::kID, &saved))
        mPrograms.Restore(saved);
    AaxAdapter_Parameters::RestoreControls(ioSaved);
}

void CFeaturedParameters::MirrorPluginValues() const
{
    AaxAdapter_Parameters::MirrorPluginValues();
    if (!mPrograms.AreThere())
        return;
    // As of the base: what is saved has to be brought up to date first.
    auto& parameters = const_cast<AAX_CParameterManager&>(mParameterManager);
    if (AAX_IParameter* const programs = parameters.GetParameterByID(CPrograms::kID))
        programs->UpdateNormalizedValue(mPrograms.Value());
}

AAX_Result CFeaturedParameters::CompareActiveChunk(const AAX_SPlugInChunk* inChunk,
                                                   AAX_CBoolean* outIsEqual) const
{
    const bool isSaved = mPrograms.AreThere() && !Plugin()->GotChunk();
    if (!isSaved || inChunk == nullptr || inChunk->mChunkID != kAAX_ControlsChunkID || inChunk->mSize < 0)
        return AaxAdapter_Parameters::CompareActiveChunk(inChunk, outIsEqual);
    return AAX_Contained(
        [&, this]
        {
            AAX_CChunkDataParser saved;
            saved.LoadChunk(inChunk);
            double program = 0.0;
            if (saved.FindDouble(CPrograms::kID, &program))
                return AaxAdapter_Parameters::CompareActiveChunk(inChunk, outIsEqual);
            // A song of a product without this feature has no program, and differs in nothing by that.
            saved.AddDouble(CPrograms::kID, static_cast<double>(mPrograms.Current()));
            const auto size = static_cast<std::size_t>(saved.GetChunkDataSize());
            std::vector<AAX_SPlugInChunk> whole(1 + size / sizeof(AAX_SPlugInChunk) + 1);
            whole.front().mChunkID = inChunk->mChunkID;
            const AAX_Result result = saved.GetChunkData(whole.data());
            return result == kAAX_Success
                       ? AaxAdapter_Parameters::CompareActiveChunk(whole.data(), outIsEqual)
                       : result;
        });
}
