// W1: check the file, the number of fields and the seven required ones of each line.

#include "BenchHost.h"
#include "Reference.h"
#include "module/ImExModule.h"
#include "request/LineCheck.h"
#include "sizes.h"
#include "works.h"

#include <benchmark/benchmark.h>

#include <array>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace imex::bench {

std::size_t checkFile(const Reference& reference) {
  constexpr int kTab = 9;
  constexpr int kColumns = 20;
  const LineCheck check(kTab, kColumns, requiredFields("CUSTOMER", "AGENT"));
  ImExModule::InputFile file(reference.path);
  std::size_t count = 0;
  std::string_view line;
  while (file.readLine(line)) {
    if (!check.passes(line))
      return 0;
    ++count;
  }
  return count;
}

namespace {

/// The same check as somebody would write it with the standard library.
bool isGood(std::string_view line) {
  if (line.ends_with('\r'))
    line.remove_suffix(1);
  std::array<std::string_view, 20> fields;
  std::size_t count = 0;
  for (;;) {
    const std::size_t end = line.find('\t');
    if (count == fields.size())
      return false;
    fields[count++] = line.substr(0, end);
    if (end == std::string_view::npos)
      break;
    line.remove_prefix(end + 1);
  }
  if (count != fields.size())
    return false;
  for (const std::size_t position : {1U, 2U, 5U, 6U, 7U, 10U, 12U}) {
    if (fields[position].empty())
      return false;
  }
  return true;
}

void checkLimit(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  constexpr std::size_t kBlock = std::size_t{64} * 1024;
  const auto buffer = std::make_unique<char[]>(kBlock);
  for (auto _ : state) {
    const int file = ::open(reference.path.c_str(), O_RDONLY | O_CLOEXEC);
    while (::read(file, buffer.get(), kBlock) > 0)
      benchmark::ClobberMemory();
    ::close(file);
  }
}

void checkGetline(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  for (auto _ : state) {
    std::ifstream file(reference.path, std::ios::binary);
    std::string line;
    std::size_t count = 0;
    while (std::getline(file, line))
      count += isGood(line) ? 1 : 0;
    if (count != sizeOf(state))
      state.SkipWithError("a line failed");
  }
}

void checkOurs(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const BenchHost host;
  for (auto _ : state) {
    if (checkFile(reference) != sizeOf(state))
      state.SkipWithError("a line failed");
  }
}

IMEX_BENCHMARK("W1/limit", checkLimit);
IMEX_BENCHMARK("W1/getline", checkGetline);
IMEX_BENCHMARK("W1/ours", checkOurs);

} // namespace

} // namespace imex::bench
