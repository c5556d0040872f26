#pragma once

/** Each makes its benchmarks known to the library; called once, before it reads the command line. */
void RegisterRenderBenchmarks();
void RegisterInstanceBenchmarks();
