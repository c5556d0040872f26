#include "Tests/integration/HostedModule.h"

#include "Tools/aaxhost/player/InstanceState.h"

#include <cmath>
#include <future>
#include <random>
#include <span>

namespace
{
SAudio MakeNoise()
{
    std::minstd_rand random(1);
    SAudio audio;
    audio.mRate = static_cast<int>(kHostedRate);
    audio.mChannels.assign(2, std::vector<float>(kHostedFrames));
    for (std::vector<float>& channel : audio.mChannels)
        for (float& sample : channel)
            sample = static_cast<float>(random()) / static_cast<float>(std::minstd_rand::max()) - 0.5F;
    return audio;
}
} // namespace

SRenderJob MakeHostedJob()
{
    static const SAudio noise = MakeNoise();
    SRenderJob job;
    job.mFrames = kHostedFrames;
    job.mRate = kHostedRate;
    job.mBlockFrames = 480;
    job.mInput = &noise;
    job.mMidi = {
        {0.01, {0x90, 60, 100}, 3}, {0.02, {0x90, 64, 90}, 3}, {0.05, {0x90, 67, 80}, 3},
        {0.20, {0x80, 64, 0}, 3},   {0.30, {0xB0, 1, 64}, 3},
    };
    job.mAutomation = {{"00003", Expect(CAutomationCurve::Parse("0.1,0.3\n0.3,0.7\n"))}};
    return job;
}

Channels RenderAll(CInstance& ioInstance, const SRenderJob& inJob)
{
    Channels rendered(static_cast<std::size_t>(ioInstance.OutputChannels()));
    const auto keep = [&](std::span<const float* const> inChannels, std::int32_t inFrames) -> COutcome<SDone>
    {
        for (std::size_t i = 0; i < inChannels.size(); ++i)
            rendered.at(i).insert(rendered[i].end(), inChannels[i], inChannels[i] + inFrames);
        return SDone{};
    };
    (void)Expect(RenderOffline(ioInstance, inJob, keep)); // throws on a problem
    return rendered;
}

double LoudnessOf(const Channels& inChannels)
{
    double sum = 0.0;
    for (const std::vector<float>& channel : inChannels)
        for (const float sample : channel)
            sum += std::abs(static_cast<double>(sample));
    return sum;
}

std::string StateOf(const CModule& inModule, CInstance& ioInstance)
{
    std::string state;
    for (const CStateChunk& chunk : Expect(TakeState(inModule, ioInstance)).mChunks)
        for (const std::byte byte : chunk.Data())
            state.push_back(static_cast<char>(byte));
    return state;
}

CHostedModule::CHostedModule(const CHostLog& inLog, COutcome<std::unique_ptr<CModule>> inModule)
    : mModule(Expect(std::move(inModule))),
      mDescribing(inLog.Calls()),
      mInstance(Expect(CInstance::Create(*mModule, kHostedRate)))
{
}

STwoProducts UseTogether(CHostedModule& ioFirst, CHostedModule& ioSecond)
{
    STwoProducts both{{ioFirst.Describing(), ioSecond.Describing()}, {}};
    auto second = std::async(std::launch::async, [&] { return ioSecond.Render(); });
    both.mSound[0] = ioFirst.Render();
    both.mSound[1] = second.get();
    return both;
}
