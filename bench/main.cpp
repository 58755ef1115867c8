// Measures one row or more:
//
//   contextdata_bench --list                   the names of all rows
//   contextdata_bench --count ROW              entries, and allocations of the answer and of the bound; under callgrind also
//                                              the instructions of each, as dumps of these names
//   contextdata_bench --benchmark_filter=...   times by Google Benchmark

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "bench/Row.h"

namespace {

/// Of the whole process, which has one thread while it counts.
std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

std::size_t allocationsOf(const std::function<std::size_t()>& action) {
  const std::size_t before = allocations;
  action();
  return allocations - before;
}

int count(const std::string& name) {
  for (const bench::Row& row : bench::allRows()) {
    if (row.name != name) continue;
    const bench::Measured measured = row.make();
    // What is made once, at the first request, is no part of the answer's price.
    const std::size_t entries = measured.answer();
    measured.bound();
    std::printf("%s entries %zu allocations %zu %zu\n", name.c_str(), entries, allocationsOf(measured.answer),
                allocationsOf(measured.bound));
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    measured.answer();
    CALLGRIND_DUMP_STATS_AT("answer");
    measured.bound();
    CALLGRIND_DUMP_STATS_AT("bound");
    CALLGRIND_STOP_INSTRUMENTATION;
    return EXIT_SUCCESS;
  }
  std::fprintf(stderr, "there is no row %s\n", name.c_str());
  return EXIT_FAILURE;
}

void time(benchmark::State& state, const bench::Row& row, bool isAnswer) {
  const bench::Measured measured = row.make();
  const auto& action = isAnswer ? measured.answer : measured.bound;
  for (auto _ : state) benchmark::DoNotOptimize(action());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--count") == 0) return count(argv[2]);
  if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
    for (const bench::Row& row : bench::allRows()) std::puts(row.name.c_str());
    return EXIT_SUCCESS;
  }
  for (const bench::Row& row : bench::allRows())
    for (const bool isAnswer : {true, false})
      benchmark::RegisterBenchmark((row.name + (isAnswer ? "/answer" : "/bound")).c_str(),
                                   [row, isAnswer](benchmark::State& state) { time(state, row, isAnswer); });
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
  benchmark::RunSpecifiedBenchmarks();
}
