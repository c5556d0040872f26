#include "Tools/benchmark/Benchmarks.h"

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    RegisterRenderBenchmarks();
    RegisterInstanceBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
