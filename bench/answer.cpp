// W3: the answer into records.

#include "Reference.h"
#include "platform/soap/SoapTransportFactory.h"
#include "records/ImExReply.h"
#include "sizes.h"
#include "works.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <pugixml.hpp>
#include <rapidxml/rapidxml.hpp>

namespace imex::bench {

ImExReply readAnswer(std::string answer) {
  const auto envelope = platform::SoapTransportFactory().createEnvelope();
  envelope->take(std::move(answer), "");
  ImExReply reply;
  reply.processReply(envelope->parameter(0));
  return reply;
}

namespace {

/// The record that each of them makes.
ImExFormatPtr record(bool isSuccessful, std::string_view line, int number) {
  auto format = std::make_shared<ImExFormat>();
  format->ActionSuccessful(isSuccessful);
  format->Line(std::string(line));
  format->LineNumber(number);
  return format;
}

using Records = std::vector<ImExFormatPtr>;

/// Reads the bytes of the answer and makes the records of what was known before.
void answerLimit(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const std::string path = Reference::write("answer" + std::to_string(sizeOf(state)) + ".xml", reference.answer);
  constexpr std::size_t kBlock = std::size_t{64} * 1024;
  const auto buffer = std::make_unique<char[]>(kBlock);
  for (auto _ : state) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (::read(file, buffer.get(), kBlock) > 0)
      benchmark::ClobberMemory();
    ::close(file);
    Records records;
    int number = 0;
    for (const std::string_view line : reference.lines) {
      records.push_back(record(true, line, ++number));
      if (std::cmp_less(number, reference.errorTexts))
        records.back()->addError("The customer type is not one that is known to the service.");
    }
    benchmark::DoNotOptimize(records.data());
  }
}

Records recordsOf(const rapidxml::xml_node<>& results) {
  Records records;
  for (const auto* item = results.first_node(); item != nullptr; item = item->next_sibling()) {
    const auto* line = item->first_node("line");
    records.push_back(record(std::strcmp(item->first_node("isIuccessful")->value(), "true") == 0,
                             {line->value(), line->value_size()}, std::atoi(item->first_node("lineNumber")->value())));
    for (const auto* text = item->first_node("errors")->first_node(); text != nullptr; text = text->next_sibling())
      records.back()->addError(text->value());
    for (const auto* text = item->first_node("warnings")->first_node(); text != nullptr; text = text->next_sibling())
      records.back()->addWarning(text->value());
  }
  return records;
}

void answerRapidxml(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  for (auto _ : state) {
    state.PauseTiming();
    std::string text = reference.answer; // as it was received; it is parsed in place
    state.ResumeTiming();
    rapidxml::xml_document<> document;
    document.parse<0>(text.data());
    const auto* results =
        document.first_node()->first_node()->first_node()->first_node()->first_node("importExportResultBean");
    if (recordsOf(*results).size() != sizeOf(state))
      state.SkipWithError("records are missing");
  }
}

void answerPugixml(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  for (auto _ : state) {
    state.PauseTiming();
    std::string received = reference.answer;
    state.ResumeTiming();
    pugi::xml_document document;
    document.load_buffer_inplace(received.data(), received.size(), pugi::parse_default | pugi::parse_ws_pcdata,
                                 pugi::encoding_utf8);
    const pugi::xml_node results =
        document.first_child().first_child().first_child().first_child().child("importExportResultBean");
    Records records;
    for (const pugi::xml_node& item : results) {
      records.push_back(record(std::strcmp(item.child_value("isIuccessful"), "true") == 0, item.child_value("line"),
                               std::atoi(item.child_value("lineNumber"))));
      for (const pugi::xml_node& text : item.child("errors"))
        records.back()->addError(text.child_value());
      for (const pugi::xml_node& text : item.child("warnings"))
        records.back()->addWarning(text.child_value());
    }
    if (records.size() != sizeOf(state))
      state.SkipWithError("records are missing");
  }
}

void answerOurs(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  for (auto _ : state) {
    state.PauseTiming();
    std::string text = reference.answer;
    state.ResumeTiming();
    if (readAnswer(std::move(text)).ImExFormats()->count() != sizeOf(state))
      state.SkipWithError("records are missing");
  }
}

IMEX_BENCHMARK("W3/limit", answerLimit);
IMEX_BENCHMARK("W3/rapidxml", answerRapidxml);
IMEX_BENCHMARK("W3/pugixml", answerPugixml);
IMEX_BENCHMARK("W3/ours", answerOurs);

} // namespace

} // namespace imex::bench
