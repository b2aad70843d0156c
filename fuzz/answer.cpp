#include "harness/MemoryHost.h"
#include "harness/fuzz.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "records/ImExReply.h"
#include "request/ImExRequest.h"

#include <string>

// What the service puts into its result element becomes as many records as it has, with all of their texts counted, or
// a clear error. What is read goes on to the results page and, where there are not too many texts, to the editor: a
// row and the same texts for each record.

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

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

/// What became of an answer: how often the events came, and how many messages and rows the editor was given.
struct Shown {
  int received = 0;
  int failed = 0;
  int shown = 0;
  std::size_t rows = 0;
  std::size_t messages = 0;
};

/// Each record has its status and its spacer on the page, and one message more than it has texts in the editor. Either
/// the editor is given them or the user is told why not.
void showAnswer(host::SoapNode& node, std::size_t records, std::size_t texts) {
  constexpr std::size_t kMostInEditor = 1000;
  fuzz::MemoryHost host;
  host.loadCatalogue();
  host.errors->isTaking = false;
  ImExRequest request;
  request.DataOrigin("AGENT");
  request.DataType("CUSTOMER");
  request.Delimiter("PIPE");
  Shown shown;
  request.MessageReceived.connect([&](const std::shared_ptr<ImExReply>&) { ++shown.received; });
  request.SerializationFailed.connect([&](const std::string&) { ++shown.failed; });
  request.showErrors.connect(
      [&](std::string&, RowsPtr& lines, ErrorBeansPtr& errors, Integer& rows, Integer&, StringsPtr&, Integer&) {
        ++shown.shown;
        shown.rows = lines->count();
        shown.messages = errors->count();
        fuzz::require(std::cmp_equal(lines->count(), int{rows}), "the rows are counted");
      });
  request.Deserialize(node);
  const std::string& page = host.files.written["validationresults.html"].bytes;
  fuzz::require(shown.received == 1, "the answer is told of once");
  fuzz::require(shown.shown + shown.failed == (texts > kMostInEditor ? 0 : 1), "the editor is given it, or not");
  if (shown.shown == 1)
    fuzz::require(shown.rows == records && shown.messages == records + texts, "the editor is given all of it");
  if (shown.failed == 0) {
    fuzz::require(page.ends_with("</table></html>\r\n"), "the page is whole");
    fuzz::require(countOf(page, "<tr><td nowrap>\r\n \r\n</tr></td>\r\n") >= records, "each record is on the page");
  }
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
  showAnswer(node, reply.ImExFormats()->count(), texts);
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
