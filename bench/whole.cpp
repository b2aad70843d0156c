// The whole import: the file is read, checked and sent, the answer read, and the results page written.

#include "BenchHost.h"
#include "Reference.h"
#include "Sink.h"
#include "sizes.h"
#include "works.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>

namespace imex::bench {

namespace {

Sink& sink(std::size_t lineCount) {
  static std::map<std::size_t, std::unique_ptr<Sink>> sinks;
  std::unique_ptr<Sink>& made = sinks[lineCount];
  if (!made)
    made = std::make_unique<Sink>(Reference::of(lineCount).answer);
  return *made;
}

/// The same bytes there and back.
void wholeLimit(benchmark::State& state) {
  const std::string body = buildRequest(Reference::of(sizeOf(state)).lines);
  const std::string head = requestHead(body.size());
  Sink& server = sink(sizeOf(state));
  for (auto _ : state)
    exchangeRaw(server.port(), head, body);
}

template <class Call>
void importWith(benchmark::State& state, Call call) {
  const Reference& reference = Reference::of(sizeOf(state));
  const BenchHost host(sink(sizeOf(state)).address());
  for (auto _ : state) {
    ImExRequest request;
    BenchHost::fill(request, reference);
    std::size_t records = 0;
    request.MessageReceived.connect([&](const auto& reply) { records = reply->ImExFormats()->count(); });
    call(request);
    if (records != sizeOf(state))
      state.SkipWithError("records are missing");
  }
}

void wholeSend(benchmark::State& state) {
  importWith(state, [](ImExRequest& request) { request.send(); });
}

void wholeInstant(benchmark::State& state) {
  importWith(state, [](ImExRequest& request) { request.Serialize(); });
}

IMEX_BENCHMARK("import/limit", wholeLimit);
IMEX_BENCHMARK("import/send road", wholeSend);
IMEX_BENCHMARK("import/instant road", wholeInstant);

} // namespace

} // namespace imex::bench
