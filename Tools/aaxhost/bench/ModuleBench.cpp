#include "Tools/aaxhost/bench/ModuleBench.h"

#include "Tools/aaxhost/bench/CFixedMidiNode.h"
#include "Tools/aaxhost/bench/CFixedTransport.h"
#include "Tools/aaxhost/bench/HeapInUse.h"
#include "Tools/aaxhost/bench/InterleavedTimes.h"
#include "Tools/aaxhost/bench/Noise.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <array>
#include <fmt/format.h>

namespace
{
constexpr double kRate = 48000.0; // Hz
constexpr std::int32_t kFrames = 64;
constexpr std::array<std::int32_t, 7> kBlocks{16, 32, 64, 128, 256, 512, 1024};
constexpr std::array<int, 5> kPackets{0, 1, 10, 100, 300};
constexpr int kMemoryInstances = 8;
constexpr double kLongestCreationMs = 20000.0; // of all the instances of one measurement

/** One instance with what it renders: noise, and as many controller changes as are wanted. */
struct SVoice
{
    std::unique_ptr<CInstance> mInstance;
    std::unique_ptr<SRenderCall> mCall;
    std::unique_ptr<CFixedTransport> mTransport;
    std::unique_ptr<CFixedMidiNode> mNode; // stands for every node of the call
    AAX_CProcessProc mProcess = nullptr;
    bool mHasMidiInput = false;

    void Render() const
    {
        void* const contexts[] = {mCall->Context()};
        mProcess(contexts, contexts + 1);
    }
};

/** Measures one module, part by part. */
class CModuleBench
{
public:
    explicit CModuleBench(const SBenchJob& inJob) : mJob(inJob) {}

    using Step = COutcome<SDone> (CModuleBench::*)();
    COutcome<SBenchResults> Run(std::span<const Step> inSteps, const BenchProgress& inProgress)
    {
        for (std::size_t step = 0; step < inSteps.size(); ++step)
        {
            inProgress(static_cast<double>(step) / static_cast<double>(inSteps.size()));
            if (const auto done = (this->*inSteps[step])(); !done)
                return done.Problem();
        }
        return mResults;
    }

    // The steps. The first goes ahead of all others.
    COutcome<SDone> Describe()
    {
        std::vector<double> times;
        for (int i = 0; i < 3; ++i)
        {
            mModule.reset();
            const auto before = Clock::now();
            auto module = CModule::Open(mJob.mModule, mLog);
            if (!module)
                return module.Problem();
            times.push_back(MillisecondsSince(before));
            mModule = std::move(*module);
        }
        mResults.mDescription = Median(times);
        mResults.mName = NameOfProduct(IdentityOf(*mModule));
        return SDone{};
    }

    COutcome<SDone> Create()
    {
        std::vector<double> creations;
        std::vector<double> deletions;
        for (int i = 0; i < 5; ++i)
        {
            auto before = Clock::now();
            auto instance = CInstance::Create(*mModule, kRate, {.mAnswers = mJob.mAnswers});
            if (!instance)
                return instance.Problem();
            creations.push_back(MillisecondsSince(before));
            before = Clock::now();
            *instance = nullptr;
            deletions.push_back(MillisecondsSince(before));
        }
        mResults.mCreation = Median(creations);
        mResults.mDeletion = Median(deletions);
        return SDone{};
    }

    COutcome<SDone> Memory()
    {
        if (HeapInUse() == 0)
        {
            mResults.mNotes.emplace_back("This system does not tell how much memory is in use.");
            return SDone{};
        }
        mLog.Clear();
        std::size_t before = HeapInUse();
        std::vector<std::unique_ptr<CInstance>> instances;
        for (int i = 0; i < kMemoryInstances; ++i)
        {
            auto instance = CInstance::Create(*mModule, kRate, {.mAnswers = mJob.mAnswers});
            if (!instance)
                return instance.Problem();
            instances.push_back(std::move(*instance));
        }
        mLog.Clear();
        mResults.mMemory = PerInstance(before);
        instances.clear();

        before = HeapInUse();
        std::vector<std::unique_ptr<CDrivenPlugin>> plugins;
        for (int i = 0; i < kMemoryInstances; ++i)
        {
            auto plugin = OpenBare();
            if (!plugin)
                return SDone{}; // what the blocks are measured with says why
            plugins.push_back(std::move(*plugin));
        }
        const double buffers = static_cast<double>(plugins.front()->BufferBytes());
        mResults.mBareMemory = PerInstance(before) - buffers;
        return SDone{};
    }

    COutcome<SDone> Blocks()
    {
        auto voice = MakeVoice();
        if (!voice)
            return voice.Problem();
        const auto plugin = OpenBare();
        if (!plugin)
            mResults.mNotes.push_back(plugin.Problem().mSentence);
        else
            HoldNote(*voice, **plugin);
        for (const std::int32_t frames : kBlocks)
        {
            voice->mCall->mFrames = frames;
            const auto module = [&] { voice->Render(); };
            SBlockCost& cost = mResults.mBlocks.emplace_back();
            cost.mFrames = frames;
            if (!plugin)
            {
                cost.mModule = MedianTime(module, mJob.mTurns);
                continue;
            }
            const auto times = MeasureInterleaved([&] { (*plugin)->Process(frames); }, module, mJob.mTurns);
            cost.mModule = times.mSecond;
            cost.mBare = times.mFirst;
            cost.mRatio = times.mRatio;
        }
        return SDone{};
    }

    COutcome<SDone> Packets()
    {
        auto voice = MakeVoice();
        if (!voice)
            return voice.Problem();
        if (!voice->mHasMidiInput)
        {
            mResults.mNotes.emplace_back("The module has no MIDI input.");
            return SDone{};
        }
        for (const int packets : kPackets)
        {
            voice->mNode->SetPackets(static_cast<std::size_t>(packets), kFrames);
            mResults.mPackets.push_back({packets, MedianTime([&] { voice->Render(); }, mJob.mTurns)});
        }
        return SDone{};
    }

    COutcome<SDone> Instances()
    {
        std::vector<SVoice> voices;
        std::vector<void*> contexts;
        for (int wanted = 1; wanted <= mJob.mMostInstances; wanted *= 8)
        {
            if (wanted * mResults.mCreation > kLongestCreationMs)
            {
                mResults.mNotes.push_back(
                    fmt::format("Making {} instances would take longer than {:.0f} seconds.", wanted,
                                kLongestCreationMs / 1000.0));
                break;
            }
            while (voices.size() < static_cast<std::size_t>(wanted))
            {
                auto voice = MakeVoice();
                if (!voice)
                    return voice.Problem();
                contexts.push_back(voice->mCall->Context());
                voices.push_back(std::move(*voice));
            }
            const AAX_CProcessProc process = voices.front().mProcess;
            const double time =
                MedianTime([&] { process(contexts.data(), contexts.data() + contexts.size()); }, 21);
            mResults.mInstances.push_back({wanted, time / wanted});
        }
        return SDone{};
    }

    COutcome<SDone> Parameters()
    {
        auto voice = MakeVoice();
        if (!voice)
            return voice.Problem();
        const auto parameters = voice->mInstance->ListParameters();
        mResults.mParameters = static_cast<int>(parameters.size());
        if (parameters.empty())
            return SDone{};
        CInstance& instance = *voice->mInstance;
        const SParameterInfo& parameter = parameters.front();
        double value = 0.0;
        // Each differs from the one before: an equal value would go no further than the comparison.
        const auto update = [&]
        {
            value = value < 0.5 ? 0.75 : 0.25;
            (void)instance.UpdateParameter(parameter.mID, value); // a refusal is a cost as well
        };
        mResults.mUpdate = MedianTime(update, mJob.mTurns);
        mResults.mCoefficients = MedianTime([&] { (void)instance.FinishUpdates(); }, mJob.mTurns);
        mLog.Clear();
        return SDone{};
    }

    COutcome<SDone> StateChunks()
    {
        auto voice = MakeVoice();
        if (!voice)
            return voice.Problem();
        std::vector<double> saves;
        std::vector<double> loads;
        for (int i = 0; i < 5; ++i)
        {
            auto before = Clock::now();
            const auto state = TakeState(*mModule, *voice->mInstance);
            if (!state)
                return state.Problem();
            saves.push_back(MillisecondsSince(before));
            mResults.mStateBytes = 0;
            for (const CStateChunk& chunk : state->mChunks)
                mResults.mStateBytes += chunk.Data().size();
            before = Clock::now();
            if (const auto given = GiveState(*mModule, *voice->mInstance, *state); !given)
                return given.Problem();
            (void)voice->mInstance->RunCycle(); // what the load asked for is a part of its cost
            loads.push_back(MillisecondsSince(before));
        }
        mResults.mSave = Median(saves);
        mResults.mLoad = Median(loads);
        return SDone{};
    }

private:
    /** Starts the same note in both, for what is silent without; the module may have no input for it. */
    static void HoldNote(const SVoice& inVoice, CDrivenPlugin& ioPlugin)
    {
        if (!inVoice.mHasMidiInput)
            return;
        inVoice.mNode->SetNote(60);
        inVoice.Render();
        inVoice.mNode->SetPackets(0, kFrames);
        ioPlugin.SendEvents(std::array{SPluginEvent{0, {0x90, 60, 100}}});
        ioPlugin.Process(kFrames);
    }

    COutcome<SVoice> MakeVoice()
    {
        auto instance = CInstance::Create(*mModule, kRate, {.mAnswers = mJob.mAnswers});
        if (!instance)
            return instance.Problem();
        SVoice voice;
        voice.mInstance = std::move(*instance);
        voice.mProcess = voice.mInstance->ProcessProc();
        voice.mCall = voice.mInstance->MakeRenderCall();
        voice.mCall->mFrames = kFrames;
        voice.mTransport = std::make_unique<CFixedTransport>();
        voice.mNode = std::make_unique<CFixedMidiNode>(*voice.mTransport);
        voice.mHasMidiInput = voice.mCall->FindNode(AAX_eMIDINodeType_LocalInput) != nullptr;
        for (const SRenderCall::SNode& node : voice.mCall->mNodes)
            *voice.mCall->Slot(node.mField) = static_cast<AAX_IMIDINode*>(voice.mNode.get());
        for (std::size_t channel = 0; channel < voice.mCall->mInputs.size(); ++channel)
            FillWithNoise(voice.mCall->Input(channel));
        return voice;
    }

    COutcome<std::unique_ptr<CDrivenPlugin>> OpenBare() const
    {
        // Which version the product answers inside the entry function is not known; this one suits nearly
        // all.
        auto plugin = std::make_unique<CDrivenPlugin>(kHostVersion);
        const std::string refusal = plugin->Open(mModule->PluginPath(), static_cast<float>(kRate));
        if (!refusal.empty())
            return SProblem{
                fmt::format("The wrapped plug-in could not be loaded by itself to compare: {}.", refusal)};
        for (std::size_t channel = 0; channel < plugin->InputCount(); ++channel)
            FillWithNoise(plugin->Input(channel));
        return plugin;
    }

    using Clock = std::chrono::steady_clock;
    static double MillisecondsSince(Clock::time_point inBefore)
    {
        return std::chrono::duration<double, std::milli>(Clock::now() - inBefore).count();
    }
    static double PerInstance(std::size_t inBefore)
    {
        return (static_cast<double>(HeapInUse()) - static_cast<double>(inBefore)) / kMemoryInstances;
    }

    const SBenchJob& mJob;
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    SBenchResults mResults;
};
} // namespace

COutcome<SBenchResults> MeasureModule(const SBenchJob& inJob, const BenchProgress& inProgress)
{
    using Bench = CModuleBench;
    constexpr Bench::Step steps[]{&Bench::Describe,   &Bench::Create,     &Bench::Memory,
                                  &Bench::Blocks,     &Bench::Packets,    &Bench::Instances,
                                  &Bench::Parameters, &Bench::StateChunks};
    return Bench(inJob).Run(steps, inProgress);
}

COutcome<SBenchResults> MeasureBlocks(const SBenchJob& inJob)
{
    constexpr CModuleBench::Step steps[]{&CModuleBench::Describe, &CModuleBench::Blocks};
    return CModuleBench(inJob).Run(steps, [](double) {});
}
