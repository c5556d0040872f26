#include "Interfaces/AAX/AAX_UIDs.h"
#include "Tools/aaxhost/check/CRenderThread.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/host/CHostString.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace
{
/** The name of a recorded call: what stands before the first bracket. */
std::string NameOfCall(const std::string& inLine) { return inLine.substr(0, inLine.find('(')); }

SFinding HostRefuses(CCheckContext& ioContext)
{
    (void)ioContext.Module();
    std::set<std::string> names;
    for (const std::string& line : ioContext.Log().Calls())
        names.insert(NameOfCall(line));
    ioContext.CloseModule();
    for (const std::string& name : names)
    {
        CHostLog log;
        log.FailCall(name, 1, kAAX_ErrorUnsupported);
        const auto module = CModule::Open(ioContext.ModulePath(), log);
        if (!module)
            continue; // to refuse is right, and so is to do without
        if (const int live = (*module)->LiveObjects(); live != 0)
            return SFinding::Failed(fmt::format("After a host refused {}, {} of the module {} left.", name,
                                                Counted(live, "object"), live == 1 ? "is" : "are"));
    }
    const int live = ioContext.Module().LiveObjects();
    return live == 0
               ? SFinding::Passed()
               : SFinding::Failed(fmt::format("After a host refused each of {}, {} of the module {} left.",
                                              Counted(std::ssize(names), "call"), Counted(live, "object"),
                                              live == 1 ? "is" : "are"));
}

SFinding MissingInterfaces(CCheckContext& ioContext)
{
    for (const acfUID& id : {IID_IAAXControllerV1, IID_IAAXAutomationDelegateV1, IID_IAAXTransportV1})
    {
        CHostLog log;
        const auto module = CModule::Open(ioContext.ModulePath(), log);
        if (!module)
            return SFinding::Failed(module.Problem().mSentence);
        log.SwitchOff(id);
        ioContext.UnwrapWhereAlone(**module);
        const auto instance = CInstance::Create(**module, kCheckRate);
        if (!instance)
            continue; // to refuse is right
        const auto call = (*instance)->MakeRenderCall();
        call->mFrames = 256;
        (*instance)->Render(*call);
    }
    return SFinding::Passed();
}

SFinding NullArguments(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    AAX_IACFEffectParameters& parameters = instance->Parameters();
    // Each has to come back; what it answers is its own affair.
    (void)parameters.GetNumberOfParameters(nullptr);
    (void)parameters.GetParameterName("00000", nullptr);
    (void)parameters.GetParameterNormalizedValue("00000", nullptr);
    (void)parameters.GetParameterDefaultNormalizedValue("00000", nullptr);
    (void)parameters.GetParameterValueString("00000", nullptr, 8);
    (void)parameters.GetParameterStringFromValue("00000", 0.5, nullptr, 8);
    (void)parameters.GetParameterIndex("00000", nullptr);
    (void)parameters.GetNumberOfChunks(nullptr);
    (void)parameters.GetChunkIDFromIndex(0, nullptr);
    double value = 0.0;
    (void)parameters.GetParameterNormalizedValue(nullptr, &value);
    (void)parameters.UpdateParameterNormalizedValue(nullptr, 0.5, 0);
    return SFinding::Passed();
}

SFinding MissingNodes(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    SRenderCall& call = rig.Call();
    for (const SRenderCall::SNode& node : call.mNodes)
        if (void** const slot = call.Slot(node.mField))
            *slot = nullptr;
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("without transport and MIDI nodes");
    return SFinding::Passed();
}

SFinding HiddenStreams(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    for (const SRenderCall::SNode& node : rig.Call().mNodes)
        node.mNode->HideStream(true);
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("with nodes that give no stream");
    return SFinding::Passed();
}

SFinding UnusualRates(CCheckContext& ioContext)
{
    for (const double rate : ioContext.Rates({8000.0, 22050.0, 32000.0, 384000.0}, &IsUnusualRate))
    {
        CRig rig(ioContext, rate);
        rig.Play(0.05);
        if (!rig.NonFinite().empty()) // no session runs at these, so it breaks none
            return SFinding::Warning(
                fmt::format("At {} Hz the output has {} in 0.05 seconds.", rate, rig.NonFinite()));
    }
    return SFinding::Passed();
}

SFinding TimerWithoutSound(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    constexpr int calls = 200;
    for (int i = 0; i < calls; ++i)
        (void)instance->Parameters().TimerWakeup(); // a host goes on whatever it answers
    return DeliverAll(*instance)
               ? SFinding::Passed()
               : SFinding::Failed(fmt::format(
                     "{} timer calls alone start an endless exchange with the host: {} in {} cycles, and {} "
                     "wait.",
                     calls,
                     Counted(static_cast<std::int64_t>(instance->Host().Automation().ValueRequests()),
                             "request"),
                     kMostCycles, instance->Host().Automation().PendingRequests()));
}

SFinding InitialisedTwice(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Play(0.05);
    (void)rig.Instance().Parameters().Initialize(rig.Instance().Host().Unknown()); // may be refused
    rig.Play(0.05);
    rig.ExpectFinite("after a second initialisation");
    return SFinding::Passed();
}

SFinding EverythingAtOnce(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    CInstance& instance = rig.Instance();
    const auto ids = AutomatableParameters(instance);
    rig.Feed(Noise(0.25F));
    CSequence notes(41); // the render thread's
    CRenderThread render(
        [&]
        {
            rig.Send(0, notes.Below(2) == 0 ? 0x90 : 0x80, static_cast<std::uint8_t>(notes.Below(128)), 90);
            rig.RenderBlock(static_cast<std::int32_t>(1 + notes.Below(512)));
        });
    CSequence sequence(43);
    const int fewestRounds = ioContext.Scaled(30, 1000);
    const int fewestBlocks = ioContext.Scaled(50, 2000); // on a busy machine only a few fall into the rounds
    constexpr int roundsAnInstance = 15;                 // some take a second to be made
    int round = 0;
    for (; round < fewestRounds || render.BlocksDone() < fewestBlocks; ++round)
    {
        if (!ids.empty())
            (void)instance.SetParameter(ids[sequence.Below(static_cast<std::uint32_t>(ids.size()))],
                                        sequence.Fraction()); // what matters is what is rendered
        (void)instance.RunCycle();
        (void)instance.Parameters().TimerWakeup();
        (void)instance.ListParameters();
        if (round >= fewestRounds || round % roundsAnInstance != 0)
            continue;
        (void)ioContext.MakeInstance(); // goes at once
        render.WaitForBlocks(2);
    }
    render.WaitForBlocks(2);
    render.Stop();
    rig.ExpectFinite(fmt::format("while everything goes on at once, in {} rounds", round));
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> RobustnessChecks()
{
    static constexpr SCheck kChecks[] = {
        {"robustness.host-refuses", "A host that refuses a call during the description is survived.", 3,
         &HostRefuses, EAlone::Nothing},
        {"robustness.missing-interfaces", "A host without controller, automation or transport is survived.",
         3, &MissingInterfaces},
        {"robustness.null-arguments", "Calls with missing arguments come back.", 3, &NullArguments},
        {"robustness.missing-nodes", "Render calls without transport and MIDI nodes are survived.", 2,
         &MissingNodes},
        {"robustness.hidden-streams", "MIDI nodes that give no stream are survived.", 3, &HiddenStreams},
        {"robustness.unusual-rates", "Rates of 8 and of 384 kHz do no harm.", 5, &UnusualRates},
        {"robustness.timer", "Timer calls without rendering do no harm.", 2, &TimerWithoutSound},
        {"robustness.initialised-twice", "A second initialisation does no harm.", 6, &InitialisedTwice},
        {"robustness.everything", "Rendering, parameters, timer and new instances go on at once.", 5,
         &EverythingAtOnce},
    };
    return kChecks;
}
