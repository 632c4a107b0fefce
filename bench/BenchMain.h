#pragma once

/** Registers the benchmarks of a program; each program defines its own. */
void registerBenchmarks();
