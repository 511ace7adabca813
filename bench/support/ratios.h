// SPDX-License-Identifier: MIT
// For bench/ only: runs a workload beside its peers in one process and prints the ratios.
//
// A workload is a family of Google Benchmark benchmarks named "<workload>/<who>", where <who> is
// "korvel" for the library and the peer's own name for each peer. With `goal`, a program states
// what ratio korvel/peer it aims at; the closing table shows ratio and goal side by side. Nothing
// is asserted: machines are noisy, a reader judges.
#ifndef KORVEL_BENCH_SUPPORT_RATIOS_H
#define KORVEL_BENCH_SUPPORT_RATIOS_H

#include <string_view>

#include <benchmark/benchmark.h>

namespace korvel::bench {

// States that `workload` should take at most `ratio` times what `peer` takes.
// Returns true, so that a namespace-scope constant can hold the call.
bool goal(std::string_view workload, std::string_view peer, double ratio);

// Runs all registered benchmarks (repeated and interleaved), then prints one line per workload
// and peer: median korvel time, median peer time, ratio, goal. Returns the exit code.
int runAndPrintRatios(int argc, char **argv);

}  // namespace korvel::bench

#define KORVEL_BENCH_MAIN() \
  int main(int argc, char **argv) { return korvel::bench::runAndPrintRatios(argc, argv); }

#endif
