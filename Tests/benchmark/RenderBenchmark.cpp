#include "Tests/integration/BarePlugin.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/CModule.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace
{
constexpr float kRate = 48000.0F; // Hz

struct SSubject
{
    const char* mName;
    std::filesystem::path mPlugin;
    bool mNeedsOptions;
};

const std::array<SSubject, 5> kSubjects{
    SSubject{"ExampleSynth", kSynthPlugin, false}, SSubject{"ExampleDelay", kDelayPlugin, false},
    SSubject{"Kars", InstalledPlugin("Kars"), true}, SSubject{"MVerb", InstalledPlugin("MVerb"), true},
    SSubject{"3BandSplitter", InstalledPlugin("3BandSplitter"), true}};

/** The plug-in's own processReplacing, called directly with buffers prepared beforehand. */
void RenderBare(benchmark::State& ioState, const SSubject& inSubject)
{
    CBarePlugin plugin(inSubject.mPlugin, inSubject.mNeedsOptions ? kOptionsEntryVersion : 0, kRate);
    AEffect& effect = plugin.Effect();
    std::vector<std::vector<float>> buffers(static_cast<std::size_t>(effect.numInputs + effect.numOutputs),
                                            std::vector<float>(CBarePlugin::kMaxFrames));
    std::vector<float*> pointers;
    for (auto& buffer : buffers)
        pointers.push_back(buffer.data());
    float** const outputs = pointers.data() + effect.numInputs;
    for (auto _ : ioState)
        effect.processReplacing(&effect, pointers.data(), outputs,
                                static_cast<std::int32_t>(ioState.range(0)));
}

/** The same plug-in through the module's process procedure. */
void RenderModule(benchmark::State& ioState, const SSubject& inSubject)
{
    const CModuleBundle bundle(inSubject.mNeedsOptions ? kOptionsModule : kPlainModule, inSubject.mPlugin);
    CHostLog log;
    auto module = CModule::Open(bundle.Path().string(), log);
    if (!module)
        return ioState.SkipWithError(module.Problem().mSentence.c_str());
    auto instance = CInstance::Create(**module, static_cast<double>(kRate));
    if (!instance)
        return ioState.SkipWithError(instance.Problem().mSentence.c_str());
    const std::unique_ptr<SRenderCall> call = (*instance)->MakeRenderCall();
    call->mFrames = static_cast<std::int32_t>(ioState.range(0));
    CHostMidiNode* const node = call->FindNode(AAX_eMIDINodeType_LocalInput);
    for (std::int64_t i = 0; node != nullptr && i < ioState.range(1); ++i)
        node->Add(0, std::array<std::uint8_t, 3>{0xB0, 1, static_cast<std::uint8_t>(i % 128)});
    (*instance)->Render(*call); // sizes what grows with the first block
    void* const contexts[] = {call->Context()};
    const AAX_CProcessProc process = (*instance)->ProcessProc();
    for (auto _ : ioState)
        process(contexts, contexts + 1);
}
} // namespace

int main(int argc, char** argv)
{
    for (const SSubject& subject : kSubjects)
    {
        if (subject.mPlugin.empty())
            continue;
        const std::string name = subject.mName;
        for (const std::int64_t frames : {16, 64, 256, 1024})
        {
            benchmark::RegisterBenchmark((name + "/bare").c_str(), &RenderBare, subject)->Args({frames, 0});
            benchmark::RegisterBenchmark((name + "/module").c_str(), &RenderModule, subject)
                ->Args({frames, 0});
        }
        benchmark::RegisterBenchmark((name + "/module").c_str(), &RenderModule, subject)->Args({64, 100});
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
