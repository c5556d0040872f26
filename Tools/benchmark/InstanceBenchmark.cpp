#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/benchmark/Benchmarks.h"
#include "Tools/benchmark/CBenchRig.h"
#include "Tools/benchmark/CEmptyPluginCalls.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <string>

namespace
{
/** An environment variable that is there for as long as this object. */
class CSetting
{
public:
    CSetting(const char* inName, std::int64_t inValue) : mName(inName)
    {
        setenv(inName, std::to_string(inValue).c_str(), 1);
    }
    CSetting(const CSetting&) = delete;
    CSetting& operator=(const CSetting&) = delete;
    ~CSetting() { unsetenv(mName); }

private:
    const char* mName;
};

/** audioMasterGetTime, each instance in its turn. */
void AskForTime(benchmark::State& ioState)
{
    const int instances = static_cast<int>(ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin, instances);
    const CEmptyPluginCalls plugin(rig.Bundle().SourceVst());
    int next = 0;
    for (auto _ : ioState)
    {
        benchmark::DoNotOptimize(plugin.AskForTime(next));
        next = next + 1 < instances ? next + 1 : 0;
    }
}

void UpdateParameter(benchmark::State& ioState)
{
    const CSetting parameters(kEmptyPluginParameters, ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    const std::string last =
        rig.Instance().ListParameters().at(static_cast<std::size_t>(ioState.range(0)) - 1).mID;
    double value = 0.0;
    for (auto _ : ioState)
    {
        value = value < 0.5 ? 0.75 : 0.25;
        (void)rig.Instance().UpdateParameter(last, value); // cannot fail with a name from the list
    }
}

void GenerateCoefficients(benchmark::State& ioState)
{
    const CSetting parameters(kEmptyPluginParameters, ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    for (auto _ : ioState)
        (void)rig.Instance().FinishUpdates(); // succeeded when the instance was made
}

void Describe(benchmark::State& ioState)
{
    const CModuleBundle bundle(kPlainModule, kEmptyPlugin);
    for (auto _ : ioState)
    {
        CHostLog log;
        const auto module = CModule::Open(bundle.Path().string(), log);
        if (!module)
            return ioState.SkipWithError(module.Problem().mSentence.c_str());
    }
}

void CreateAndDelete(benchmark::State& ioState)
{
    const CSetting parameters(kEmptyPluginParameters, ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    for (auto _ : ioState)
    {
        const auto instance = CInstance::Create(rig.Module(), CBenchRig::kRate);
        if (!instance)
            return ioState.SkipWithError(instance.Problem().mSentence.c_str());
    }
}

constexpr AAX_CTypeID kPluginChunk = AAX_FourCharCode("0001");

/** A plug-in's chunk of so many bytes, into memory that is there. */
void SaveState(benchmark::State& ioState)
{
    const CSetting bytes(kEmptyPluginChunkBytes, ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    std::uint32_t size = 0;
    if (rig.Instance().Parameters().GetChunkSize(kPluginChunk, &size) != kAAX_Success)
        return ioState.SkipWithError("there is no chunk");
    CStateChunk chunk(size);
    for (auto _ : ioState)
        if (rig.Instance().Parameters().GetChunk(kPluginChunk, &chunk.Record()) != kAAX_Success)
            return ioState.SkipWithError("the chunk was not saved");
    ioState.SetBytesProcessed(ioState.iterations() * ioState.range(0));
}

void LoadState(benchmark::State& ioState)
{
    const CSetting bytes(kEmptyPluginChunkBytes, ioState.range(0));
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    AAX_IACFEffectParameters& instance = rig.Instance().Parameters();
    std::uint32_t size = 0;
    if (instance.GetChunkSize(kPluginChunk, &size) != kAAX_Success)
        return ioState.SkipWithError("there is no chunk");
    CStateChunk chunk(size);
    if (instance.GetChunk(kPluginChunk, &chunk.Record()) != kAAX_Success)
        return ioState.SkipWithError("the chunk was not saved");
    for (auto _ : ioState)
        if (instance.SetChunk(kPluginChunk, &chunk.Record()) != kAAX_Success)
            return ioState.SkipWithError("the chunk was not loaded");
    ioState.SetBytesProcessed(ioState.iterations() * ioState.range(0));
}

/** What one copy of as many bytes costs, to compare the two with. */
void CopyBytes(benchmark::State& ioState)
{
    const std::vector<char> from(static_cast<std::size_t>(ioState.range(0)), 'x');
    std::vector<char> to(from.size());
    for (auto _ : ioState)
    {
        std::memcpy(to.data(), from.data(), from.size());
        benchmark::DoNotOptimize(to.data());
    }
    ioState.SetBytesProcessed(ioState.iterations() * ioState.range(0));
}
} // namespace

void RegisterInstanceBenchmarks()
{
    benchmark::RegisterBenchmark("callback", &AskForTime)->ArgName("instances")->Arg(1)->Arg(64)->Arg(1000);
    benchmark::RegisterBenchmark("update", &UpdateParameter)->ArgName("parameters")->Arg(1)->Arg(1000);
    benchmark::RegisterBenchmark("coefficients", &GenerateCoefficients)
        ->ArgName("parameters")
        ->Arg(1)
        ->Arg(1000);
    benchmark::RegisterBenchmark("describe", &Describe);
    benchmark::RegisterBenchmark("create and delete", &CreateAndDelete)
        ->ArgName("parameters")
        ->Arg(1)
        ->Arg(1000);
    for (const std::int64_t bytes : {1 << 10, 1 << 20, 64 << 20})
    {
        benchmark::RegisterBenchmark("state/save", &SaveState)->ArgName("bytes")->Arg(bytes);
        benchmark::RegisterBenchmark("state/load", &LoadState)->ArgName("bytes")->Arg(bytes);
        benchmark::RegisterBenchmark("state/plain copy", &CopyBytes)->ArgName("bytes")->Arg(bytes);
    }
}
