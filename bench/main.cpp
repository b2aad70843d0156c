#include "once.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

/// imex_bench [options of Google Benchmark]
/// imex_bench --once W1|W2|W3|W4     one piece of work, for a tool that counts instructions
/// imex_bench --serve LINES          a service with a prepared answer
/// imex_bench --raw PORT FILE        a client with a prepared request
int main(int argc, char** argv) {
  const auto is = [&](std::string_view option, int count) { return argc == count && argv[1] == option; };
  if (is("--once", 3))
    return imex::bench::doOnce(argv[2]) ? 0 : 64;
  if (is("--serve", 3)) {
    imex::bench::serve(static_cast<std::size_t>(std::atol(argv[2])));
    return 0;
  }
  if (is("--raw", 4)) {
    imex::bench::sendRaw(std::atoi(argv[2]), argv[3]);
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 64;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
