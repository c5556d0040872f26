#include "Tests/integration/CHostRoutine.h"

#include <algorithm>
#include <array>

CHostRoutine::CHostRoutine(CInstance& inInstance) : mInstance(inInstance), mCall(inInstance.MakeRenderCall())
{
}

void CHostRoutine::Note(AAX_Result inResult)
{
    if (inResult != kAAX_Success)
        mFailures.insert(inResult);
}

void CHostRoutine::Render(std::int32_t inFrames, std::uint32_t inPackets)
{
    for (std::size_t channel = 0; channel < mCall->mInputs.size(); ++channel)
        std::ranges::fill(mCall->Input(channel), kInputLevel);
    if (CHostMidiNode* const node = mCall->FindNode(AAX_eMIDINodeType_LocalInput); node != nullptr)
    {
        node->Clear();
        for (std::uint32_t i = 0; i < inPackets; ++i)
            node->Add(i, std::array<std::uint8_t, 3>{0x90, static_cast<std::uint8_t>(i % 128), 100});
    }
    mCall->mFrames = inFrames;
    mInstance.Render(*mCall);
}

void CHostRoutine::MoveParameters(double inValue)
{
    for (const SParameterInfo& parameter : mInstance.ListParameters())
    {
        Note(mInstance.SetParameter(parameter.mID, inValue));
        Note(mInstance.UpdateParameter(parameter.mID, 1.0 - inValue));
    }
    Note(mInstance.FinishUpdates());
    Note(mInstance.Parameters().TimerWakeup());
}

void CHostRoutine::Save()
{
    mSaved.clear();
    AAX_IACFEffectParameters& parameters = mInstance.Parameters();
    std::int32_t count = 0;
    Note(parameters.GetNumberOfChunks(&count));
    for (std::int32_t i = 0; i < count; ++i)
    {
        AAX_CTypeID id = 0;
        std::uint32_t size = 0;
        Note(parameters.GetChunkIDFromIndex(i, &id));
        const AAX_Result sized = parameters.GetChunkSize(id, &size);
        Note(sized);
        if (sized != kAAX_Success)
            continue;
        SSaved saved{id, CStateChunk(size)};
        const AAX_Result written = parameters.GetChunk(id, &saved.mChunk.Record());
        Note(written);
        if (written == kAAX_Success)
            mSaved.push_back(std::move(saved));
    }
}

void CHostRoutine::Load()
{
    for (const SSaved& saved : mSaved)
    {
        Note(mInstance.Parameters().SetChunk(saved.mId, &saved.mChunk.Record()));
        AAX_CBoolean isEqual = 0;
        Note(mInstance.Parameters().CompareActiveChunk(&saved.mChunk.Record(), &isEqual));
    }
    Note(mInstance.RunCycle());
}

void CHostRoutine::ShowEditor()
{
    if (!mInstance.OpenGUI())
        return;
    AAX_IACFEffectGUI& gui = *mInstance.GUI();
    AAX_Point size;
    for (int i = 0; i < 2; ++i)
    {
        Note(gui.SetViewContainer(&mInstance.Host().ViewContainer()));
        Note(gui.GetViewSize(&size));
        Note(gui.TimerWakeup());
        Note(mInstance.RunCycle());
        Note(gui.SetViewContainer(nullptr));
    }
    mInstance.CloseGUI();
}

void CHostRoutine::Everything()
{
    Render(64, 3);
    MoveParameters(0.75);
    Save();
    ShowEditor();
    Load();
    Render(1, 0);
    Render(SRenderCall::kBufferFrames, 400);
}
