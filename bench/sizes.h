#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>

namespace imex::bench {

inline std::size_t sizeOf(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

// Each piece of work is done for three numbers of lines, so that the table shows how its cost grows.
#define IMEX_BENCHMARK(name, function)                                                                                 \
  [[maybe_unused]] const auto* const registered_##function = benchmark::RegisterBenchmark(name, function)              \
                                                                 ->Arg(1000)                                           \
                                                                 ->Arg(8000)                                           \
                                                                 ->Arg(32767)                                          \
                                                                 ->Unit(benchmark::kMillisecond)                       \
                                                                 ->UseRealTime()

} // namespace imex::bench
