#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/ImpulseArrival.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace
{
void NeedInputs(const CRig& inRig)
{
    if (inRig.Inputs() == 0)
        throw SCheckEnd{SFinding::Skipped("The plug-in has no inputs.")};
}

SFinding SilenceStaysQuiet(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.RenderSeconds(1.0);
    (void)rig.TakePeak();
    rig.RenderSeconds(ioContext.Scaled(1, 10));
    rig.ExpectFinite("with silence at the inputs");
    const float peak = rig.TakePeak();
    constexpr float quiet = 0.001F; // -60 dB
    if (peak <= quiet)
        return SFinding::Passed();
    return SFinding::Warning(fmt::format("Without input or notes the plug-in makes a sound of its own, of {} "
                                         "at its peak; below {} it would be silence.",
                                         InDecibels(static_cast<double>(peak)),
                                         InDecibels(static_cast<double>(quiet))));
}

SFinding ReturnsToSilence(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    NeedInputs(rig);
    rig.RenderSeconds(0.5);
    const float idle = rig.TakePeak();
    rig.Feed(Noise(0.5F));
    rig.RenderSeconds(0.5);
    const float loud = rig.TakePeak();
    rig.Feed(Silence());
    const int seconds = ioContext.Scaled(10, 60);
    const float silent = std::max({0.0001F, 0.001F * loud, 2.0F * idle});
    float peak = loud;
    for (int second = 0; second < seconds && peak > silent; ++second)
    {
        rig.RenderSeconds(1.0);
        peak = rig.TakePeak();
    }
    if (peak <= silent)
        return SFinding::Passed();
    return SFinding::Warning(
        fmt::format("{} seconds after the input ended the plug-in still sounds, at {} where it had {}; "
                    "below {} it would be silence.",
                    seconds, InDecibels(static_cast<double>(peak)), InDecibels(static_cast<double>(loud)),
                    InDecibels(static_cast<double>(silent))));
}

SFinding FullScale(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    NeedInputs(rig);
    const double rate = rig.Rate();
    for (const auto& [name, source] :
         {std::pair<const char*, SignalSource>{"noise", Noise(1.0F)},
          {"a sine", Sine(997.0, 1.0F, rate)},
          {"a square", [](std::int64_t frame, std::size_t) { return frame / 50 % 2 == 0 ? 1.0F : -1.0F; }},
          {"a constant", Constant(1.0F)}})
    {
        rig.Feed(source);
        rig.RenderSeconds(0.3);
        rig.ExpectFinite(fmt::format("with {} at full scale", name));
    }
    return SFinding::Passed();
}

SFinding BeyondFullScale(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    NeedInputs(rig);
    rig.Feed(Noise(100.0F)); // +40 dB: channels in front of it may be that hot
    rig.RenderSeconds(0.3);
    rig.ExpectFinite("with noise 40 dB above full scale");
    return SFinding::Passed();
}

SFinding Denormals(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    NeedInputs(rig);
    rig.Feed(Noise(1e-39F));
    rig.RenderSeconds(0.3);
    rig.ExpectFinite("with denormal numbers of up to 1e-39 at the inputs");
    return SFinding::Passed();
}

/** Feeds what no host should give, then noise. */
SFinding Survives(CCheckContext& ioContext, float inPoison, const char* inWhat)
{
    CRig rig(ioContext);
    NeedInputs(rig);
    constexpr std::int32_t poisoned = 64; // frames
    rig.Feed(Constant(inPoison));
    rig.Render(poisoned);
    rig.Feed(Noise(0.25F));
    rig.RenderSeconds(1.0);
    rig.ForgetNonFinite();
    rig.RenderSeconds(0.5);
    return rig.NonFinite().empty()
               ? SFinding::Passed()
               : SFinding::Warning(fmt::format("After {} frames of {} at the inputs and a second of noise "
                                               "the output has {} in the half second after it.",
                                               poisoned, inWhat, rig.NonFinite()));
}

SFinding Infinities(CCheckContext& ioContext)
{
    return Survives(ioContext, std::numeric_limits<float>::infinity(), "infinite samples");
}

SFinding NotNumbers(CCheckContext& ioContext)
{
    return Survives(ioContext, std::numeric_limits<float>::quiet_NaN(), "samples that are no numbers");
}

SFinding FiniteSound(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Play(1.0);
    rig.ExpectFinite("with ordinary material");
    return SFinding::Passed();
}

SFinding Level(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    rig.Play(1.0);
    const float peak = rig.TakePeak();
    constexpr float loud = 8.0F; // +18 dB over full scale from material at -12 dB
    return peak <= loud
               ? SFinding::Passed()
               : SFinding::Warning(fmt::format(
                     "Material at {} comes out at {}, more than {} above full scale.", InDecibels(0.25),
                     InDecibels(static_cast<double>(peak)), InDecibels(static_cast<double>(loud))));
}

/** The impulse response of the first channels, from the impulse on; what sounds anyway is taken off. */
std::vector<double> ImpulseResponse(CCheckContext& ioContext, std::int64_t inFrames)
{
    constexpr std::int64_t settled = 8192;
    CRig hit(ioContext);
    NeedInputs(hit);
    CRig idle(ioContext);
    hit.Feed(Impulse(settled, 0.5F));
    for (CRig* rig : {&hit, &idle})
    {
        rig->Record();
        rig->RenderFrames(settled + inFrames, 512);
    }
    std::vector<double> response;
    for (std::int64_t i = 0; i < inFrames; ++i)
    {
        const auto frame = static_cast<std::size_t>(settled + i);
        response.push_back(static_cast<double>(hit.Recording()[0][frame] - idle.Recording()[0][frame]));
    }
    return response;
}

SFinding Latency(CCheckContext& ioContext)
{
    CRig first(ioContext);
    first.RenderSeconds(0.1); // some know it only then
    const std::int32_t reported = first.Instance().Host().Controller().State().mSignalLatency;
    if (reported < 0)
        return SFinding::Failed(fmt::format("The reported latency is {}.", InSamples(reported, kCheckRate)));
    const auto response = ImpulseResponse(ioContext, std::max(8192, reported + 4096));
    const auto arrival = FindImpulse(response);
    if (!arrival)
        return SFinding::Skipped("The plug-in lets no impulse through.");
    const auto [begin, top, peak] = *arrival;
    // A filter with a linear phase rings before its peak; everything else begins at the latency.
    if (std::abs(top - reported) <= 1 || std::abs(begin - reported) <= 1)
        return SFinding::Passed();
    if (reported > 0)
        return SFinding::Failed(fmt::format(
            "The plug-in reports a latency of {}, and an impulse arrives after {}, with its peak after {}.",
            InSamples(reported, kCheckRate), InSamples(begin, kCheckRate), InSamples(top, kCheckRate)));
    double energy = 0.0;
    for (const double sample : response)
        energy += sample * sample;
    // One clear impulse that comes late is a delay; a reverberation or an echo is meant to come late.
    return peak * peak > 0.9 * energy
               ? SFinding::Warning(fmt::format("No latency is reported, yet an impulse comes out after {}, "
                                               "with {:.0f} % of its energy in one sample.",
                                               InSamples(top, kCheckRate), 100.0 * peak * peak / energy))
               : SFinding::Passed(
                     "The plug-in spreads an impulse, so its start says nothing about a latency.");
}

SFinding LateLatency(CCheckContext& ioContext)
{
    constexpr double seconds = 0.3;
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    const std::int32_t atStart = direct.Plugin().Effect().initialDelay;
    direct.Play(seconds);
    const std::int32_t latency = direct.Plugin().Effect().initialDelay;
    if (latency == atStart)
        return SFinding::Passed();
    CRig rig(ioContext);
    rig.Play(seconds);
    const std::int32_t told = rig.Instance().Host().Controller().State().mSignalLatency;
    constexpr double longest = 10.0; // seconds; beyond that it is a plug-in's mistake
    if (told == latency || latency < 0 || latency > longest * kCheckRate)
        return SFinding::Passed(fmt::format("It becomes {} with the first blocks, and the host is told {}.",
                                            InSamples(latency, kCheckRate), told));
    return SFinding::Failed(
        fmt::format("The plug-in's latency becomes {} while it renders, and the host "
                    "is told {}: its track is out of time. The feature LATENCY tells the host.",
                    InSamples(latency, kCheckRate), told));
}

/** Peaks of each output, while there is noise in the first input alone and in the second. */
using Peaks = std::array<std::vector<float>, 2>;

template <class Rig>
Peaks PeaksOfOneByOne(Rig& ioRig)
{
    constexpr std::int32_t block = 512;
    Peaks peaks;
    std::size_t begin = 0;
    for (std::size_t only = 0; only < peaks.size(); ++only)
    {
        const SignalSource noise = Noise(0.5F);
        ioRig.Feed([=](std::int64_t frame, std::size_t channel)
                   { return channel == only ? noise(frame, channel) : 0.0F; });
        ioRig.RenderSeconds(0.2, block);
        for (const std::vector<float>& output : ioRig.Recording())
        {
            float peak = 0.0F;
            for (std::size_t i = begin; i < output.size(); ++i)
                peak = std::max(peak, std::abs(output[i]));
            peaks[only].push_back(peak);
        }
        begin = ioRig.Recording().front().size();
    }
    return peaks;
}

/** Whether one is heard and the other is not, or much softer; so far is no plug-in from itself by chance. */
bool AreOfOtherLoudness(float inFirst, float inSecond)
{
    constexpr float audible = 0.001F; // -60 dB
    constexpr float much = 8.0F;      // 18 dB
    return std::max(inFirst, inSecond) > std::max(audible, much * std::min(inFirst, inSecond));
}

SFinding DifferentChannels(CCheckContext& ioContext)
{
    CRig rig(ioContext);
    if (rig.Inputs() < 2 || rig.Outputs() < 2)
        return SFinding::Skipped("The plug-in has not two inputs and two outputs.");
    rig.Record();
    const Peaks module = PeaksOfOneByOne(rig);
    rig.ExpectFinite("with sound in one channel only");
    // It has to come out where it does of the plug-in called directly.
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    const Peaks plugin = PeaksOfOneByOne(direct);
    for (std::size_t only = 0; only < module.size(); ++only)
        for (std::size_t i = 0; i < std::min(module[only].size(), plugin[only].size()); ++i)
            if (AreOfOtherLoudness(module[only][i], plugin[only][i]))
                return SFinding::Failed(fmt::format(
                    "With sound in input {} only, output {} of the module has a peak of {}, and that of the "
                    "plug-in called directly one of {}.",
                    only + 1, i + 1, InDecibels(static_cast<double>(module[only][i])),
                    InDecibels(static_cast<double>(plugin[only][i]))));
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> SignalChecks()
{
    static constexpr SCheck kChecks[] = {
        {"rendering.finite", "No sample is infinite or not a number with ordinary material.", 1,
         &FiniteSound},
        {"rendering.silence", "Silence at the inputs and no notes give silence.", 1, &SilenceStaysQuiet},
        {"rendering.returns-to-silence", "The sound ends after the input has ended.", 3, &ReturnsToSilence},
        {"rendering.full-scale", "Noise, sine, square and constant at full scale give finite samples.", 2,
         &FullScale},
        {"rendering.beyond-full-scale", "Noise 40 dB above full scale gives finite samples.", 4,
         &BeyondFullScale},
        {"rendering.denormals", "Denormal numbers at the inputs give finite samples.", 2, &Denormals},
        {"rendering.infinities", "The sound recovers from infinite samples at the inputs.", 4, &Infinities},
        {"rendering.not-a-number", "The sound recovers from samples that are no numbers.", 4, &NotNumbers},
        {"rendering.level", "Ordinary material does not come out far above full scale.", 2, &Level},
        {"rendering.one-channel",
         "Sound in one input channel only comes out where it does of the plug-in called directly.", 2,
         &DifferentChannels},
        {"rendering.latency", "The reported latency is the one that an impulse shows.", 2, &Latency},
        {"rendering.late-latency", "A latency that the plug-in knows late is the one that the host is told.",
         2, &LateLatency},
    };
    return kChecks;
}
