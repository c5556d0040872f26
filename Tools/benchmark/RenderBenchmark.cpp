#include "Tools/aaxhost/bench/Noise.h"
#include "Tools/benchmark/Benchmarks.h"
#include "Tools/benchmark/CBenchRig.h"
#include "Tools/benchmark/CEmptyPluginCalls.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <array>
#include <benchmark/benchmark.h>
#include <string>

namespace
{
struct SSubject
{
    const char* mName;
    std::filesystem::path mPlugin;
    bool mNeedsOptions;
    std::int64_t mMostInstances = 512;

    const std::filesystem::path& Module() const { return mNeedsOptions ? kOptionsModule : kPlainModule; }
};

const std::array<SSubject, 5> kSubjects{SSubject{"Empty", kEmptyPlugin, false},
                                        SSubject{"ExampleSynth", kSynthPlugin, false},
                                        SSubject{"Kars", InstalledPlugin("Kars"), true},
                                        SSubject{"MVerb", InstalledPlugin("MVerb"), true, 64} /* 6 MB each */,
                                        SSubject{"3BandSplitter", InstalledPlugin("3BandSplitter"), true}};

/** The plug-in's own processReplacing, called directly with buffers prepared beforehand. */
void RenderBare(benchmark::State& ioState, const SSubject& inSubject)
{
    CDrivenPlugin plugin(inSubject.mNeedsOptions ? kOptionsEntryVersion : 0);
    const std::string refusal = plugin.Open(inSubject.mPlugin, static_cast<float>(CBenchRig::kRate));
    if (!refusal.empty())
        return ioState.SkipWithError(refusal.c_str());
    for (std::size_t channel = 0; channel < plugin.InputCount(); ++channel)
        FillWithNoise(plugin.Input(channel));
    for (auto _ : ioState)
        plugin.Process(static_cast<std::int32_t>(ioState.range(0)));
}

/** The same plug-in through the module's process procedure: frames, packets, instances. */
void RenderModule(benchmark::State& ioState, const SSubject& inSubject)
{
    CBenchRig rig(inSubject.Module(), inSubject.mPlugin, static_cast<int>(ioState.range(2)));
    rig.SetBlock(static_cast<std::int32_t>(ioState.range(0)), static_cast<std::size_t>(ioState.range(1)));
    rig.Render(); // sizes what grows with the first block
    for (auto _ : ioState)
        rig.Render();
    ioState.SetItemsProcessed(ioState.iterations() * ioState.range(2));
}
} // namespace

void RegisterRenderBenchmarks()
{
    for (const SSubject& subject : kSubjects)
    {
        if (subject.mPlugin.empty())
            continue;
        const std::string name = std::string("render/") + subject.mName;
        auto* const bare = benchmark::RegisterBenchmark((name + "/bare").c_str(), &RenderBare, subject);
        auto* const module = benchmark::RegisterBenchmark((name + "/module").c_str(), &RenderModule, subject);
        bare->ArgName("frames");
        module->ArgNames({"frames", "packets", "instances"});
        for (const std::int64_t frames : {16, 32, 64, 128, 256, 512, 1024})
        {
            bare->Arg(frames);
            module->Args({frames, 0, 1});
        }
        for (const std::int64_t packets : {1, 10, 100, 300})
            module->Args({64, packets, 1});
        for (std::int64_t instances = 8; instances <= subject.mMostInstances; instances *= 8)
            module->Args({64, 0, instances});
    }
}
