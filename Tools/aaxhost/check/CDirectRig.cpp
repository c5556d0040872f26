#include "Tools/aaxhost/check/CDirectRig.h"

#include "Tools/aaxhost/check/StateSteps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fmt/format.h>
#include <utility>

namespace
{
/** Its bytes as far as a MIDI file has a place for them; none of another event. */
std::vector<std::uint8_t> BytesOf(const VstEvent& inEvent)
{
    if (inEvent.type == kVstSysExType)
    {
        const auto& dump = reinterpret_cast<const VstMidiSysexEvent&>(inEvent);
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(dump.sysexDump);
        const bool isWhole =
            bytes != nullptr && dump.dumpBytes >= 2 && bytes[0] == 0xF0 && bytes[dump.dumpBytes - 1] == 0xF7;
        return isWhole ? std::vector(bytes, bytes + dump.dumpBytes) : std::vector<std::uint8_t>();
    }
    const auto& event = reinterpret_cast<const VstMidiEvent&>(inEvent);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(event.midiData);
    if (inEvent.type != kVstMidiType || bytes[0] < 0x80 || bytes[0] >= 0xF0)
        return {};
    const int kind = bytes[0] & 0xF0;
    return {bytes, bytes + (kind == 0xC0 || kind == 0xD0 ? 2 : 3)};
}
} // namespace

SServices ServicesOf(CCheckContext& ioContext)
{
    return {.mWholeTime = ioContext.HasFeature("TIME"),
            .mAnswers = ioContext.HasFeature("HOST_ANSWERS"),
            .mIdleTime = ioContext.HasFeature("IDLE"),
            .mSizes = ioContext.HasFeature("RESIZE"),
            .mTakesMidi = ioContext.HasFeature("MIDI_OUTPUT")};
}

SStart StartOf(CCheckContext& ioContext)
{
    const auto instance = ioContext.MakeInstance();
    return {static_cast<std::size_t>(instance->InputChannels()), Values(*instance)};
}

CDirectRig::CDirectRig(CCheckContext& ioContext, const SServices& inServices, const SStart& inStart)
    : mServices(inServices),
      mTakesMidi(ioContext.TakesMidi()),
      mInputs(inStart.mInputs),
      mTransport(ioContext.Log()),
      mSource(Silence()),
      // Which version the product answers inside the entry function is not known; this one suits nearly all.
      mPlugin(kHostVersion, [this](const SHostCall& inCall) { return Answer(inCall); })
{
    const std::string path = ioContext.Module().PluginPath();
    mFolder = path.substr(0, path.rfind('/') + 1); // a folder's text ends with the slash
    std::srand(1);                                 // some plug-ins draw from the C library's numbers
    const std::string refusal = mPlugin.Open(path, static_cast<float>(kCheckRate));
    if (!refusal.empty())
        throw SCheckEnd{SFinding::Skipped(
            fmt::format("The wrapped plug-in could not be loaded by itself to compare: {}.", refusal))};
    if (mServices.mAnswers)
        (void)mPlugin.Dispatch(effStartProcess); // the interface gives the result no meaning
    SetValues(inStart.mValues);
    mRecording.resize(mPlugin.OutputCount());
    Transport().mSampleRate = kCheckRate;
    Transport().mPlaying = true;
    const std::lock_guard lock(mReporting);
    mJustSent.clear(); // there was no block yet
}

void CDirectRig::SetValues(const std::vector<double>& inValues)
{
    const auto count = static_cast<std::size_t>(std::max(mPlugin.Effect().numParams, 0));
    for (std::size_t i = 0; i < std::min(inValues.size(), count); ++i)
    {
        const auto index = static_cast<std::int32_t>(i);
        const auto value = static_cast<float>(inValues[i]);
        if (!std::isnan(value) && mPlugin.GetParameter(index) != value)
            mPlugin.SetParameter(index, value);
    }
}

void CDirectRig::Send(std::uint32_t inOffset, std::uint8_t inStatus, std::uint8_t inFirst,
                      std::uint8_t inSecond)
{
    if (mTakesMidi)
        mEvents.push_back({static_cast<std::int32_t>(inOffset), {inStatus, inFirst, inSecond}});
}

void CDirectRig::SendExclusive(std::span<const std::uint8_t> inMessage)
{
    mDump.assign(inMessage.begin(), inMessage.end());
    mDumpEvent.type = kVstSysExType;
    mDumpEvent.byteSize = sizeof(mDumpEvent);
    mDumpEvent.dumpBytes = static_cast<std::int32_t>(mDump.size());
    mDumpEvent.sysexDump = mDump.data();
    mDumpList = {1, 0, {reinterpret_cast<VstEvent*>(&mDumpEvent), nullptr}};
    (void)mPlugin.Dispatch(effProcessEvents, 0, 0, &mDumpList); // answered with anything
}

void CDirectRig::Render(std::int32_t inFrames)
{
    WriteTime();
    for (std::size_t channel = 0; channel < std::min(mInputs, mPlugin.InputCount()); ++channel)
        for (std::int32_t i = 0; i < inFrames; ++i)
            mPlugin.Input(channel)[static_cast<std::size_t>(i)] = mSource(mPosition + i, channel);
    mIsRendering = true;
    mPlugin.SendEvents(mEvents);
    SpoilStack();
    (void)mPlugin.Process(inFrames); // without the function there is silence
    mIsRendering = false;
    mEvents.clear();
    for (std::size_t channel = 0; channel < mRecording.size(); ++channel)
    {
        const auto output = mPlugin.Output(channel).first(static_cast<std::size_t>(inFrames));
        mRecording[channel].insert(mRecording[channel].end(), output.begin(), output.end());
    }
    KeepSent(inFrames);
    mPosition += inFrames;
    if (Transport().mPlaying)
        Transport().mSamplePosition += inFrames;
    Beat();
}

void CDirectRig::RenderSeconds(double inSeconds, std::int32_t inBlock)
{
    for (std::int64_t left = std::llround(inSeconds * kCheckRate); left > 0; left -= inBlock)
        Render(static_cast<std::int32_t>(std::min<std::int64_t>(left, inBlock)));
}

void CDirectRig::Beat()
{
    if (mPosition < mNextTimer)
        return;
    mNextTimer = mPosition + std::llround(kCheckRate / kTimersPerSecond);
    if (mWantsIdle.exchange(false) && mPlugin.Dispatch(effIdle) != 0)
        mWantsIdle = true;
}

void CDirectRig::WriteTime()
{
    const STransportState& state = Transport();
    VstTimeInfo& time = mPlugin.Time();
    time.samplePos = static_cast<double>(state.mSamplePosition);
    time.tempo = state.mTempo;
    time.flags = state.mPlaying ? kVstTransportPlaying : 0;
    if (mServices.mWholeTime)
        return WriteWholeTime(time);
    // The least that a module tells: in single precision, within a bar of 4/4.
    time.tempo = static_cast<double>(static_cast<float>(state.mTempo));
    const double bars = state.mTempo * time.samplePos / (kCheckRate * 240.0);
    time.ppqPos = (bars - std::floor(bars)) * 4.0;
}

void CDirectRig::WriteWholeTime(VstTimeInfo& outTime)
{
    const STransportState& state = Transport();
    constexpr double ticksPerQuarter = CHostTransport::kTicksPerQuarter;
    std::int64_t tick = 0;
    std::int32_t bar = 0;
    std::int32_t beat = 0;
    std::int64_t displayTicks = 0;
    (void)mTransport.GetCurrentTickPosition(&tick); // of its own: both answer
    (void)mTransport.GetBarBeatPosition(&bar, &beat, &displayTicks, state.mSamplePosition);
    outTime.nanoSeconds = static_cast<double>(mPosition) * (1e9 / kCheckRate);
    outTime.ppqPos = static_cast<double>(tick) / ticksPerQuarter;
    outTime.timeSigNumerator = state.mMeterNumerator;
    outTime.timeSigDenominator = state.mMeterDenominator;
    outTime.barStartPos = (bar - 1) * 4.0 * state.mMeterNumerator / state.mMeterDenominator;
    outTime.flags |= kVstNanosValid | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
    if (state.mLoopStartTick < state.mLoopEndTick)
    {
        outTime.cycleStartPos = static_cast<double>(state.mLoopStartTick) / ticksPerQuarter;
        outTime.cycleEndPos = static_cast<double>(state.mLoopEndTick) / ticksPerQuarter;
        outTime.flags |= kVstCyclePosValid | (state.mLooping ? kVstTransportCycleActive : 0);
    }
    if (mPosition == 0)
        outTime.flags |= kVstTransportChanged;
}

std::optional<VstIntPtr> CDirectRig::Answer(const SHostCall& inCall)
{
    switch (inCall.mOpcode)
    {
    case audioMasterProcessEvents:
        if (!mServices.mTakesMidi || inCall.mPointer == nullptr)
            return std::nullopt;
        return TakeEvents(*static_cast<const VstEvents*>(inCall.mPointer));
    case audioMasterNeedIdle:
        if (!mServices.mIdleTime)
            return std::nullopt;
        mWantsIdle = true;
        return 1;
    case audioMasterSizeWindow:
        if (!mServices.mSizes)
            return std::nullopt;
        return TakeSize(inCall.mIndex, inCall.mValue);
    default: return mServices.Answer(inCall, kCheckRate, mIsRendering, mFolder);
    }
}

VstIntPtr CDirectRig::TakeEvents(const VstEvents& inEvents)
{
    const VstEvent* const* const list = inEvents.events;
    const std::lock_guard lock(mReporting);
    for (std::int32_t i = 0; i < inEvents.numEvents; ++i)
        if (auto bytes = list[i] != nullptr ? BytesOf(*list[i]) : std::vector<std::uint8_t>(); !bytes.empty())
            mJustSent.push_back({list[i]->deltaFrames, std::move(bytes)});
    return 1;
}

void CDirectRig::KeepSent(std::int32_t inFrames)
{
    const std::lock_guard lock(mReporting);
    for (SSent& sent : mJustSent)
        sent.mFrame = std::clamp(sent.mFrame, 0, inFrames - 1);
    std::ranges::stable_sort(mJustSent, {}, &SSent::mFrame);
    for (SSent& sent : mJustSent)
        mSent.push_back({static_cast<double>(mPosition + sent.mFrame) / kCheckRate, std::move(sent.mBytes)});
    mJustSent.clear();
}

VstIntPtr CDirectRig::TakeSize(std::int32_t inWidth, VstIntPtr inHeight)
{
    constexpr std::int32_t most = 16384; // pixels; more is a plug-in's mistake
    if (inWidth < 1 || inHeight < 1 || inWidth > most || inHeight > most)
        return 0;
    const std::lock_guard lock(mReporting);
    mSizeWish = {inWidth, static_cast<int>(inHeight)};
    return 1;
}

std::optional<SViewSize> CDirectRig::TakeSizeWish()
{
    const std::lock_guard lock(mReporting);
    return std::exchange(mSizeWish, std::nullopt);
}
