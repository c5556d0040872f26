#include "Tools/aaxhost/report/Measure.h"

#include "Tools/aaxhost/bench/ModuleBench.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/aaxhost/report/Spectrum.h"
#include "Tools/aaxhost/window/CEditorView.h"
#include "Tools/aaxhost/window/SPicture.h"
#include "Tools/support/ChildRun.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

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
constexpr int kMeasureStrictness = 5;
constexpr double kLimitSeconds = 60.0; // a part that takes longer is left out
constexpr std::size_t kColumns = 240;  // of a waveform
constexpr std::size_t kSpectrumPoints = 160;
constexpr std::size_t kImpulseSamples = 240;
constexpr std::size_t kAutomationPoints = 96;

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

SReportIdentity Identity(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    const CModule& module = context.Module();
    const SProductIdentity product = IdentityOf(module);
    SReportIdentity identity;
    identity.mName = product.mName;
    identity.mManufacturer = module.Description().mManufacturerName;
    identity.mEffectID = product.mEffectID;
    identity.mVersion = fmt::format("{}", module.Description().mPackageVersion);
    identity.mManufacturerCode = NameOfFourCharCode(product.mManufacturerID);
    identity.mProductCode = NameOfFourCharCode(product.mProductID);
    identity.mPluginCode = NameOfFourCharCode(product.mPlugInID);
    const auto instance = context.MakeInstance();
    identity.mInputs = instance->InputChannels();
    identity.mOutputs = instance->MainOutputChannels();
    for (const SAuxStem& stem : instance->Component().mAuxStems)
        identity.mAuxStems.push_back({stem.mName, AAX_StemChannelCount(stem.mFormat)});
    for (const SField& field : instance->Component().mFields)
        if (field.mKind == EFieldKind::MidiNode && field.mNodeType == AAX_eMIDINodeType_LocalInput)
            identity.mMidiNodes.push_back(field.mName);
    identity.mLatency = instance->Host().Controller().State().mSignalLatency;
    for (const SParameterInfo& info : instance->ListParameters())
        identity.mParameters.push_back(
            {info.mID, info.mName, info.mDefault, info.mValueText, info.mSteps, info.mAutomatable});
    return identity;
}

SReportSignal Signal(const std::string& inTitle, const std::vector<float>& inSamples, double inRate)
{
    SReportSignal signal;
    signal.mTitle = inTitle;
    signal.mSeconds = static_cast<double>(inSamples.size()) / inRate;
    for (std::size_t column = 0; column < kColumns; ++column)
    {
        const auto begin =
            inSamples.begin() + static_cast<std::ptrdiff_t>(column * inSamples.size() / kColumns);
        const auto end =
            inSamples.begin() + static_cast<std::ptrdiff_t>((column + 1) * inSamples.size() / kColumns);
        double lowest = 0.0;
        double highest = 0.0;
        for (auto sample = begin; sample != end; ++sample)
            if (std::isfinite(*sample))
            {
                lowest = std::min(lowest, static_cast<double>(*sample));
                highest = std::max(highest, static_cast<double>(*sample));
            }
        signal.mLowest.push_back(lowest);
        signal.mHighest.push_back(highest);
    }
    // From the loud part on: the beginning may be silent.
    signal.mSpectrum =
        SpectrumOf(std::span(inSamples).subspan(inSamples.size() / 8), inRate, kSpectrumPoints);
    return signal;
}

/** The spectrum of the answer to an impulse, 0 dB where as much comes out as went in. */
std::vector<double> ResponseSpectrum(const std::vector<float>& inResponse, float inImpulse, double inRate)
{
    // In the middle of the window, and against the level that a window-long sine would have.
    constexpr std::size_t half = 16384;
    constexpr float sine = half / 2.0F;
    std::vector<float> samples(2 * half, 0.0F);
    for (std::size_t i = 0; i < std::min(half, inResponse.size()); ++i)
        samples[half + i] = inResponse[i] * sine / inImpulse;
    return SpectrumOf(samples, inRate, kSpectrumPoints);
}

std::vector<float> FirstOutput(const CRig& inRig)
{
    return inRig.Recording().empty() ? std::vector<float>() : inRig.Recording().front();
}

SReportSignals Signals(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    SReportSignals signals;
    signals.mRate = kCheckRate;
    const auto render = [&](const std::string& title, const SignalSource& source, bool note)
    {
        CRig rig(context);
        rig.RenderSeconds(0.1);
        rig.Record();
        rig.Feed([&, start = rig.Position()](std::int64_t frame, std::size_t channel)
                 { return source(frame - start, channel); });
        if (note)
            rig.Send(0, 0x90, 60, 100);
        rig.RenderSeconds(1.0);
        rig.Send(0, 0x80, 60, 64);
        rig.Feed(Silence());
        rig.RenderSeconds(0.5);
        constexpr float silent = 1e-6F;
        if (rig.TakePeak() > silent)
            signals.mSignals.push_back(Signal(title, FirstOutput(rig), kCheckRate));
        return FirstOutput(rig);
    };
    if (!context.IsInstrument() && context.MakeInstance()->InputChannels() > 0)
    {
        (void)render("Sine of 1 kHz at -6 dB for one second", Sine(1000.0, 0.5F, kCheckRate), false);
        (void)render("White noise at -12 dB for one second", Noise(0.25F), false);
        const std::string title = "Impulse at -6 dB";
        const auto impulse = render(title, Impulse(0, 0.5F), false);
        if (!signals.mSignals.empty() && signals.mSignals.back().mTitle == title)
            signals.mSignals.back().mSpectrum = ResponseSpectrum(impulse, 0.5F, kCheckRate);
        for (std::size_t i = 0; i < std::min(kImpulseSamples, impulse.size()); ++i)
            signals.mImpulse.push_back(std::isfinite(impulse[i]) ? static_cast<double>(impulse[i]) : 0.0);
    }
    if (context.TakesMidi())
        (void)render("Note C4 held for one second", Silence(), true);
    return signals;
}

/** The level of the first output over some time in dB. */
double RenderLevel(CRig& ioRig, std::int64_t inFrames)
{
    ioRig.ClearRecording();
    ioRig.Record();
    ioRig.RenderFrames(inFrames, 512);
    double energy = 0.0;
    for (const float sample : FirstOutput(ioRig))
        energy += std::isfinite(sample) ? static_cast<double>(sample) * static_cast<double>(sample) : 0.0;
    return std::max(-120.0, 10.0 * std::log10(std::max(energy / static_cast<double>(inFrames), 1e-12)));
}

/** The parameter between whose ends the level changes most: of most plug-ins the volume or the mix. */
std::string MostAudible(CRig& ioRig, const std::vector<std::string>& inIDs)
{
    constexpr std::size_t most = 40;
    std::string best = inIDs.front();
    double widest = -1.0;
    for (std::size_t i = 0; i < std::min(most, inIDs.size()); ++i)
    {
        const double before = ValueOf(ioRig.Instance(), inIDs[i]);
        double levels[2] = {};
        for (int end = 0; end < 2; ++end)
        {
            (void)ioRig.Instance().UpdateParameter(inIDs[i], end); // a refusal shows as a level that stays
            (void)RenderLevel(ioRig, 2048);
            levels[end] = RenderLevel(ioRig, 4096);
        }
        (void)ioRig.Instance().UpdateParameter(inIDs[i], before); // where it was
        if (std::abs(levels[1] - levels[0]) > widest + 0.5)
        {
            widest = std::abs(levels[1] - levels[0]);
            best = inIDs[i];
        }
    }
    return best;
}

SReportAutomation Automation(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    CRig rig(context);
    CInstance& instance = rig.Instance();
    const auto ids = AutomatableParameters(instance);
    if (ids.empty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no parameters to automate.")};
    SReportAutomation automation;
    rig.Feed(Noise(0.25F));
    rig.Send(0, 0x90, 60, 100);
    rig.RenderSeconds(0.3);
    const std::string id = MostAudible(rig, ids);
    automation.mParameter = NameOfParameter(instance, id);
    constexpr std::int32_t block = 512;
    constexpr int blocksAPoint = 2;
    for (std::size_t point = 0; point < kAutomationPoints; ++point)
    {
        const double phase = static_cast<double>(point) / (kAutomationPoints - 1);
        const double value = 1.0 - std::abs(2.0 * phase - 1.0); // up and down again
        (void)instance.UpdateParameter(id, value);              // a refusal shows as a level that stays
        (void)instance.FinishUpdates();
        automation.mSent.push_back(value);
        automation.mRendered.push_back(RenderLevel(rig, std::int64_t{blocksAPoint} * block));
    }
    automation.mSeconds = kAutomationPoints * blocksAPoint * block / kCheckRate;
    return automation;
}

SReportCost Cost(const std::string& inModule)
{
    SReportCost cost;
    const auto results = MeasureBlocks({.mModule = inModule});
    if (!results)
    {
        cost.mProblem = results.Problem().mSentence;
        return cost;
    }
    for (const SBlockCost& block : results->mBlocks)
    {
        cost.mBlocks.push_back(block.mFrames);
        cost.mModule.push_back(block.mModule);
        if (block.mBare)
            cost.mBare.push_back(*block.mBare);
    }
    if (cost.mBare.empty() && !results->mNotes.empty())
        cost.mBareProblem = results->mNotes.front();
    return cost;
}

std::string Base64(const std::string& inBytes)
{
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < inBytes.size(); i += 3)
    {
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j)
            bits = bits << 8 | (i + j < inBytes.size() ? static_cast<std::uint8_t>(inBytes[i + j]) : 0U);
        for (std::size_t j = 0; j < 4; ++j)
            text += j > inBytes.size() - i ? '=' : kDigits[bits >> (18 - 6 * j) & 63U];
    }
    return text;
}

SReportEditor Editor(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    SReportEditor editor;
    const auto window = CHostWindow::Create("editor");
    if (!window)
        throw SCheckEnd{SFinding::Skipped(window.Problem().mSentence)};
    const auto instance = context.MakeInstance();
    const auto view = CEditorView::Open(*instance, **window);
    if (!view)
        throw SCheckEnd{SFinding::Failed(view.Problem().mSentence)};
    (*window)->MoveTo(0, 0);
    for (int beat = 0; beat < 40; ++beat) // time to draw everything once
        if (const auto ticked = (*view)->Tick(); !ticked)
            throw SCheckEnd{SFinding::Failed(ticked.Problem().mSentence)};
    if ((*view)->Size().IsEmpty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no editor.")};
    const auto picture = (*window)->TakePicture();
    if (!picture)
        throw SCheckEnd{SFinding::Skipped(picture.Problem().mSentence)};
    const fs::path file = fs::path(std::getenv("HOME")) / "editor.png";
    // The home folder of this process is a fresh one of its own.
    const auto written = WritePng(file.string(), *picture);
    if (!written)
        throw SCheckEnd{SFinding::Skipped(written.Problem().mSentence)};
    std::ifstream stream(file, std::ios::binary);
    editor.mPngBase64 = Base64({std::istreambuf_iterator<char>(stream), {}});
    editor.mWidth = picture->mWidth;
    editor.mHeight = picture->mHeight;
    return editor;
}
} // namespace

SReportMaterial MeasureModule(const std::string& inModule)
{
    SReportMaterial material;
    material.mIdentity = Measured<SReportIdentity>([&] { return Identity(inModule); });
    material.mSignals = Measured<SReportSignals>([&] { return Signals(inModule); });
    material.mAutomation = Measured<SReportAutomation>([&] { return Automation(inModule); });
    material.mCost = Measured<SReportCost>([&] { return Cost(inModule); });
    material.mEditor = Measured<SReportEditor>([&] { return Editor(inModule); });
    return material;
}
