#include "Tools/fuzz/CFuzzedInstance.h"

#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/fuzz/FuzzChunk.h"

#include <array>
#include <cmath>

namespace
{
template <class Interface>
ACFPtr<Interface> MakeObject(const SEffect& inEffect, AAX_CProcPtrID inProc, const acfIID& inIid)
{
    const ACFPtr<IACFUnknown> object(reinterpret_cast<AAX_CFactoryProc>(FindProcPtr(inEffect, inProc))());
    return ACFPtr<Interface>::Query(object.Get(), inIid);
}
} // namespace

// No call below has a result that could be wrong here: it comes back, and that is all.

CFuzzedInstance::CFuzzedInstance(const SEffect& inEffect, CHostLog& inLog, EAnswers inAnswers)
    : mEffect(inEffect),
      mLog(inLog),
      mHost(inLog),
      mParameters(MakeObject<AAX_IACFEffectParameters>(inEffect, kAAX_ProcPtrEffectParameters,
                                                       IID_IAAXEffectParametersV1))
{
    mHost.SetSampleRate(48000.0);
    mHost.Automation().SetAnswers(inAnswers);
    mHost.SetEffectParameters(mParameters.Get());
}

CFuzzedInstance::~CFuzzedInstance() { mHost.SetEffectParameters(nullptr); }

void CFuzzedInstance::Step(CFuzzInput& ioInput)
{
    if (!mParameters)
        return UseEditor(ioInput);
    switch (ioInput.Choice(9))
    {
    case 0: return Begin(ioInput);
    case 1: return Render(ioInput);
    case 2: return AskParameter(ioInput);
    case 3: return ChangeParameter(ioInput);
    case 4: return AskAnythingElse(ioInput);
    case 5: return Save(ioInput);
    case 6: return Load(ioInput);
    case 7: return UseEditor(ioInput);
    default: return LetGo(ioInput);
    }
}

void CFuzzedInstance::Begin(CFuzzInput& ioInput)
{
    switch (ioInput.Choice(4))
    {
    case 0: (void)mParameters->Initialize(nullptr); break;
    case 1: (void)mParameters->Uninitialize(); break;
    default: (void)mParameters->Initialize(mHost.Unknown()); break;
    }
}

void CFuzzedInstance::Render(CFuzzInput& ioInput)
{
    const SComponent& component = mEffect.mComponents.front();
    if (mCall == nullptr)
        mCall = std::make_unique<SRenderCall>(component, 2, 2, mLog, mHost.Transport());
    for (SRenderCall::SBlock& block : mCall->mBlocks)
        if (block.mKind == EFieldKind::PrivateData && ioInput.Yes())
            (void)mParameters->ResetFieldData(block.mField, block.mWords.data(), block.mSize);
    const std::uint8_t nodes = ioInput.Byte();
    for (std::size_t i = 0; i < mCall->mNodes.size(); ++i)
    {
        SRenderCall::SNode& node = mCall->mNodes[i];
        node.mNode->Clear();
        node.mNode->HideStream((nodes & 1U) != 0);
        *mCall->Slot(node.mField) = (nodes >> (i + 1) & 1U) != 0 ? nullptr : node.mNode.get();
        for (std::uint8_t packets = ioInput.Byte() % 8; packets > 0; --packets)
            node.mNode->Add(static_cast<std::uint32_t>(ioInput.Number(2)), ioInput.Bytes(4));
    }
    mCall->mFrames = static_cast<std::int32_t>(ioInput.Number(2) % (SRenderCall::kBufferFrames + 1));
    void* const contexts[] = {mCall->Context()};
    component.mProcs.front().mProcess(contexts, contexts + 1);
}

const char* CFuzzedInstance::Id(CFuzzInput& ioInput)
{
    switch (ioInput.Choice(8))
    {
    case 0: return nullptr;
    case 1:
    {
        const auto bytes = ioInput.Bytes(ioInput.Byte());
        mId.assign(bytes.begin(), bytes.end());
        return mId.c_str();
    }
    case 2: return "MasterBypassID";
    case 3: return "Gain";
    case 4: return "00001";
    case 5: return "00002";
    default: return "00000";
    }
}

void CFuzzedInstance::AskParameter(CFuzzInput& ioInput)
{
    AAX_IACFEffectParameters& parameters = *mParameters.Get();
    const char* const id = Id(ioInput);
    const bool hasPlaces = ioInput.Yes();
    CHostString text;
    CHostString* const toText = hasPlaces ? &text : nullptr;
    double value = ioInput.Value();
    std::int32_t number = static_cast<std::int32_t>(ioInput.Number(4));
    AAX_CBoolean yes = 0;
    (void)parameters.GetNumberOfParameters(hasPlaces ? &number : nullptr);
    (void)parameters.GetMasterBypassParameter(toText);
    (void)parameters.GetParameterIsAutomatable(id, hasPlaces ? &yes : nullptr);
    (void)parameters.GetParameterNumberOfSteps(id, hasPlaces ? &number : nullptr);
    (void)parameters.GetParameterName(id, toText);
    (void)parameters.GetParameterNameOfLength(id, toText, static_cast<std::int8_t>(ioInput.Byte()));
    (void)parameters.GetParameterDefaultNormalizedValue(id, hasPlaces ? &value : nullptr);
    (void)parameters.GetParameterIndex(id, hasPlaces ? &number : nullptr);
    (void)parameters.GetParameterIDFromIndex(static_cast<std::int8_t>(ioInput.Byte()), toText);
    (void)parameters.GetParameterValueInfo(id, number, hasPlaces ? &number : nullptr);
    (void)parameters.GetParameterStringFromValue(id, ioInput.Value(), toText, ioInput.Byte());
    (void)parameters.GetParameterValueFromString(id, hasPlaces ? &value : nullptr, text);
    (void)parameters.GetParameterValueString(id, toText, ioInput.Byte());
    (void)parameters.GetParameterNormalizedValue(id, hasPlaces ? &value : nullptr);
}

void CFuzzedInstance::ChangeParameter(CFuzzInput& ioInput)
{
    AAX_IACFEffectParameters& parameters = *mParameters.Get();
    const char* const id = Id(ioInput);
    const double value = ioInput.Value();
    switch (ioInput.Choice(11))
    {
    case 0: (void)parameters.SetParameterDefaultNormalizedValue(id, value); break;
    case 1: (void)parameters.SetParameterNormalizedRelative(id, value); break;
    case 2: (void)parameters.TouchParameter(id); break;
    case 3: (void)parameters.ReleaseParameter(id); break;
    case 4: (void)parameters.UpdateParameterTouch(id, ioInput.Byte()); break;
    case 5: (void)parameters.UpdateParameterNormalizedRelative(id, value); break;
    case 6: (void)parameters.UpdateParameterNormalizedValue(id, value, ioInput.Byte()); break;
    case 7: (void)parameters.GenerateCoefficients(); break;
    case 8: (void)mHost.DeliverUpdates(parameters); break;
    case 10: Automate(ioInput); break;
    default: (void)parameters.SetParameterNormalizedValue(id, value); break;
    }
}

void CFuzzedInstance::Automate(CFuzzInput& ioInput)
{
    AAX_IACFEffectParameters& parameters = *mParameters.Get();
    double value = 0.5;
    for (std::uint8_t steps = ioInput.Byte() % 16; steps > 0; --steps)
    {
        const char* const id = Id(ioInput);
        switch (ioInput.Choice(4))
        {
        case 0: value = ioInput.Value(); break;
        case 1:
            value = std::nextafter(value, 2.0);
            break; // as an answer that is off by one in the last place
        case 2: (void)parameters.SetParameterNormalizedValue(id, value); continue;
        default: break; // the same again
        }
        (void)parameters.UpdateParameterNormalizedValue(id, value, 0);
    }
    if (ioInput.Yes())
        (void)mHost.DeliverUpdates(parameters);
}

void CFuzzedInstance::AskAnythingElse(CFuzzInput& ioInput)
{
    AAX_IACFEffectParameters& parameters = *mParameters.Get();
    const auto type = static_cast<AAX_CTypeID>(ioInput.Number(4));
    std::array<std::uint8_t, 16> data{};
    std::int32_t number = 0;
    std::uint32_t written = 0;
    float point = 0.5F;
    switch (ioInput.Choice(8))
    {
    case 0:
        (void)parameters.NotificationReceived(type, ioInput.Yes() ? data.data() : nullptr, data.size());
        break;
    case 1: (void)parameters.GetNumberOfChanges(ioInput.Yes() ? &number : nullptr); break;
    case 2: (void)parameters.TimerWakeup(); break;
    case 3: (void)parameters.GetCurveData(type, &point, 1, &point); break;
    case 4:
        (void)parameters.GetCustomData(type, data.size(), data.data(), ioInput.Yes() ? &written : nullptr);
        break;
    case 5: (void)parameters.SetCustomData(type, data.size(), data.data()); break;
    case 6: (void)parameters.DoMIDITransfers(); break;
    default:
        (void)parameters.ResetFieldData(ioInput.Byte(), ioInput.Yes() ? data.data() : nullptr, data.size());
        break;
    }
}

AAX_CTypeID CFuzzedInstance::ChunkId(CFuzzInput& ioInput)
{
    switch (ioInput.Choice(4))
    {
    case 0: return static_cast<AAX_CTypeID>(ioInput.Number(4));
    case 1: return 0;
    case 2: return AAX_FourCharCode("elck");
    default: return AAX_FourCharCode("0001");
    }
}

void CFuzzedInstance::Save(CFuzzInput& ioInput)
{
    AAX_IACFEffectParameters& parameters = *mParameters.Get();
    const AAX_CTypeID id = ChunkId(ioInput);
    std::int32_t count = 0;
    AAX_CTypeID listed = 0;
    std::uint32_t size = 0;
    (void)parameters.GetNumberOfChunks(ioInput.Yes() ? &count : nullptr);
    (void)parameters.GetChunkIDFromIndex(static_cast<std::int8_t>(ioInput.Byte()),
                                         ioInput.Yes() ? &listed : nullptr);
    if (ioInput.Yes() && parameters.GetChunkSize(id, &size) == kAAX_Success)
        mAnnouncedSizes[id] = size;
    // The room is what was announced last, however long ago.
    if (const auto announced = mAnnouncedSizes.find(id); announced != mAnnouncedSizes.end() && ioInput.Yes())
    {
        CFuzzChunk chunk(announced->second);
        (void)parameters.GetChunk(id, &chunk.Record());
    }
}

void CFuzzedInstance::Load(CFuzzInput& ioInput)
{
    const AAX_CTypeID id = ChunkId(ioInput);
    CFuzzChunk chunk(ioInput.Bytes(ioInput.Byte()));
    chunk.Record().mChunkID = id;
    (void)mParameters->CompareActiveChunk(&chunk.Record(), nullptr);
    AAX_CBoolean isEqual = 0;
    (void)mParameters->CompareActiveChunk(ioInput.Yes() ? &chunk.Record() : nullptr, &isEqual);
    (void)mParameters->SetChunk(id, ioInput.Yes() ? &chunk.Record() : nullptr);
}

void CFuzzedInstance::MakeEditor()
{
    mGUI = MakeObject<AAX_IACFEffectGUI>(mEffect, kAAX_ProcPtrEffectGUI, IID_IAAXEffectGUIV1);
}

void CFuzzedInstance::UseEditor(CFuzzInput& ioInput)
{
    if (!mGUI)
        MakeEditor();
    AAX_IACFEffectGUI& gui = *mGUI.Get();
    AAX_Point size;
    AAX_Rect rectangle;
    CHostString text;
    const bool hasPlaces = ioInput.Yes();
    switch (ioInput.Choice(13))
    {
    case 0: (void)gui.Initialize(nullptr); break;
    case 1: (void)gui.Uninitialize(); break;
    case 2: (void)gui.NotificationReceived(static_cast<AAX_CTypeID>(ioInput.Number(4)), nullptr, 0); break;
    case 3: (void)gui.SetViewContainer(nullptr); break;
    case 4: (void)gui.GetViewSize(hasPlaces ? &size : nullptr); break;
    case 5: (void)gui.Draw(hasPlaces ? &rectangle : nullptr); break;
    case 6: (void)gui.TimerWakeup(); break;
    case 7: (void)gui.ParameterUpdated(Id(ioInput)); break;
    case 8: (void)gui.GetCustomLabel(ioInput.Byte(), hasPlaces ? &text : nullptr); break;
    case 9: (void)gui.SetControlHighlightInfo(Id(ioInput), 1, ioInput.Byte()); break;
    case 10: mGUI.Reset(); break;
    case 11: (void)gui.Initialize(mHost.Unknown()); break;
    default: (void)gui.SetViewContainer(&mHost.ViewContainer()); break;
    }
}

void CFuzzedInstance::LetGo(CFuzzInput& ioInput)
{
    switch (ioInput.Choice(4))
    {
    case 0: mHost.SetEffectParameters(nullptr); break;
    case 1: mHost.SetEffectParameters(mParameters.Get()); break;
    case 2:
    {
        acfIID iid = IID_IAAXEffectParametersV1;
        iid.Data1 ^= static_cast<std::uint32_t>(ioInput.Number(4));
        const auto other = ACFPtr<IACFUnknown>::Query(mParameters.Get(), iid);
        break;
    }
    default:
        mCall.reset(); // it refers to the instance
        mHost.SetEffectParameters(nullptr);
        mParameters.Reset();
        break;
    }
}
