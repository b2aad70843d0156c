#include "harness/fuzz.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "records/ImExReply.h"

#include <string>

// What the service puts into its result element becomes as many records as it has, with all of their texts counted, or
// a clear error.

namespace {

using namespace imex;

constexpr std::string_view kBefore = R"(<?xml version="1.0" encoding="UTF-8"?>)"
                                     R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)"
                                     R"(<answer><return>)";
constexpr std::string_view kBehind = "</return></answer></s:Body></s:Envelope>";

std::size_t childrenOf(host::SoapNode* node) {
  return node == nullptr ? 0 : node->count();
}

std::size_t countTexts(host::SoapNode* results) {
  std::size_t count = 0;
  if (results != nullptr) {
    results->forEachChild([&](host::SoapNode& result) {
      count += childrenOf(result.child("errors")) + childrenOf(result.child("warnings"));
    });
  }
  return count;
}

bool readAnswer(std::string_view result) {
  platform::PugiSoapEnvelope envelope;
  envelope.parse(std::string(kBefore) + std::string(result) + std::string(kBehind), "");
  host::SoapNode& node = envelope.parameter(0);
  ImExReply reply;
  reply.processReply(node);
  host::SoapNode* results = node.child("importExportResultBean");
  fuzz::require(reply.ImExFormats()->count() == childrenOf(results), "each result is a record");
  fuzz::require(std::cmp_equal(countTexts(results), int{reply.intTotalErrorsAndWarnings}), "each text is counted");
  std::size_t texts = 0;
  for (const ImExFormatPtr& format : *reply.ImExFormats())
    texts += format->errors()->count() + format->Warnings()->count();
  fuzz::require(texts == countTexts(results), "each text is kept");
  return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::int32_t kOverflow = 6;
  constexpr std::int32_t kNoParameter = 9;
  constexpr std::int32_t kTypeMismatch = 13;
  constexpr std::int32_t kNotSoap = 1005;
  constexpr std::int32_t kFault = 1006;
  fuzz::unless({kOverflow, kNoParameter, kTypeMismatch, kNotSoap, kFault},
               [&] { return readAnswer(fuzz::text(data, size)); });
  return 0;
}
