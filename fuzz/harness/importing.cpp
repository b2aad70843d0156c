#include "harness/importing.h"

#include "harness/MemoryHost.h"
#include "harness/fuzz.h"
#include "host/HttpTransport.h"
#include "host/TransportFactory.h"
#include "module/ImExModule.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "request/ImExRequest.h"

#include <array>
#include <memory>
#include <utility>

namespace imex::fuzz {

namespace {

constexpr std::string_view kFile = "import.txt";
constexpr std::string_view kPage = "validationresults.html";

struct Format {
  std::string_view dataType;
  std::string_view dataOrigin;
};

constexpr std::array<Format, 9> kFormats = {{{"CUSTOMER", "AGENT"},
                                             {"CUSTOMER", "HALVIK"},
                                             {"PRODUCT", "AGENT"},
                                             {"INVOICE", "AGENT"},
                                             {"COMMISSION", "AGENT"},
                                             {"BALLASTS", "HALVIK"},
                                             {"PROJECTLINEITEM", "AGENT"},
                                             {"QUOTELINEITEM", "AGENT"},
                                             {"ORDERLINEITEM", "AGENT"}}};

/// Beyond a line of 32,767 characters and 500 line items; beyond 32,767 lines of a field or two.
constexpr std::array<std::size_t, 8> kSizes = {0, 33'000, 0, 132'000, 0, 0, 0, 0};

/// The message in which the service accepts these lines.
std::string acceptance(const std::vector<std::string>& lines) {
  platform::PugiSoapEnvelope envelope;
  envelope.setMethod("answer", "urn:answer");
  const auto add = [](host::SoapNode& parent, std::string_view name, std::string_view value = {}) -> host::SoapNode& {
    return parent.create(name, value, "", "", "");
  };
  host::SoapNode& result = add(envelope.parameters(), "return");
  add(result, "reply", "Done.");
  add(result, "hasErrors", "false");
  add(result, "hasWarnings", "true");
  host::SoapNode& results = add(result, "importExportResultBean");
  int number = 0;
  for (const std::string& line : lines) {
    host::SoapNode& item = add(results, "item");
    add(item, "isIuccessful", "true");
    add(item, "line", line);
    add(item, "lineNumber", std::to_string(++number));
    add(item, "errors");
    host::SoapNode& warnings = add(item, "warnings");
    if (number == 1)
      add(warnings, "item", "will be updated");
  }
  return envelope.serialise();
}

/// Takes the lines out of a message and accepts them.
class AcceptingTransport : public host::HttpTransport {
 public:
  explicit AcceptingTransport(Outcome& outcome) : m_outcome(outcome) {}

  void SetProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void Timeout(std::int32_t) override {}
  void SOAPAction(std::string_view) override {}
  void send(std::string_view, std::string_view text) override {
    platform::PugiSoapEnvelope message;
    message.parse(text, "");
    m_outcome.isSent = true;
    host::SoapNode* lines = message.parameter(0).child("IMPORTEXPORTWRAPPER")->child("LINES");
    lines->forEachChild([&](host::SoapNode& line) { m_outcome.lines.push_back(line.text()); });
  }
  std::string Receive(std::string_view) override { return acceptance(m_outcome.lines); }

 private:
  Outcome& m_outcome;
};

class AcceptingFactory : public host::TransportFactory {
 public:
  explicit AcceptingFactory(Outcome& outcome) : m_outcome(outcome) {}

  std::unique_ptr<host::HttpTransport> createTransport() override {
    return std::make_unique<AcceptingTransport>(m_outcome);
  }
  std::unique_ptr<host::SoapEnvelope> createEnvelope() override {
    return std::make_unique<platform::PugiSoapEnvelope>();
  }

 private:
  Outcome& m_outcome;
};

class AcceptingService : public host::ServiceCall {
 public:
  explicit AcceptingService(Outcome& outcome) : m_outcome(outcome) {}

  std::shared_ptr<host::SoapNode> call(const host::ServiceRequest& request) override {
    for (const host::LineObject& line : request.bean.dataContainer->lines)
      m_outcome.lines.push_back(line.value);
    const auto answer = std::make_shared<platform::PugiSoapEnvelope>();
    answer->parse(acceptance(m_outcome.lines), ""); // the first to say so where XML cannot carry a line
    m_outcome.isSent = true;
    return {answer, &answer->parameter(0)};
  }

 private:
  Outcome& m_outcome;
};

std::string joined(const StringsPtr& texts) {
  std::string result;
  if (texts) {
    for (const std::string& text : *texts)
      result += text + '\n';
  }
  return result;
}

void keepEvents(ImExRequest& request, Outcome& outcome) {
  request.MessageReceived.connect(
      [&](const std::shared_ptr<ImExReply>& reply) { outcome.events.push_back("MessageReceived " + reply->reply()); });
  request.SerializationFailed.connect(
      [&](const std::string& message) { outcome.events.push_back("SerializationFailed " + message); });
  request.editImportFile.connect(
      [&](std::string&, Integer& rows, Integer& columns, std::string&, StringsPtr& headers, Integer&) {
        outcome.events.push_back("editImportFile " + toText(rows) + ' ' + toText(columns) + ' ' + joined(headers));
      });
  request.showErrors.connect([&](std::string&, RowsPtr& lines, ErrorBeansPtr& errors, Integer& rows, Integer& columns,
                                 StringsPtr& headers, Integer&) {
    outcome.events.push_back("showErrors " + toText(rows) + ' ' + toText(columns) + ' ' + joined(headers));
    for (const StringsPtr& line : *lines)
      outcome.events.push_back(joined(line));
    for (const auto& error : *errors)
      outcome.events.push_back(toText(error->RowNumber()) + ' ' + error->RowError());
  });
}

template <class Record>
void keepItems(const CollectionPtr<std::shared_ptr<Record>>& records, Outcome& outcome) {
  if (!records)
    return;
  for (const auto& record : *records) {
    outcome.items.push_back(record->quantity() + '\n' + record->AType() + '\n' + record->Brand() + '\n' +
                            record->CatalogNumber() + '\n' + record->Column1Price() + '\n' +
                            record->Column3Commission());
  }
}

void readLineItems(ImExRequest& request, Outcome& outcome) {
  if (request.DataType() == "PROJECTLINEITEM")
    keepItems(request.serializeProjectLineItemFile(), outcome);
  else if (request.DataType() == "QUOTELINEITEM")
    keepItems(request.serializeQuoteLineItemFile(), outcome);
  else
    keepItems(request.serializeOrderLineItemFile(), outcome);
}

/// An error that send() lets out is what XML cannot carry.
void runOn(ImExRequest& request, Way way, Outcome& outcome) {
  constexpr std::int32_t kUnsupportedText = 1008;
  if (way == Way::send) {
    if (!unless({kUnsupportedText}, [&] { return request.send(), true; }))
      outcome.lines.clear();
  } else if (way == Way::instant) {
    request.Serialize();
  } else {
    readLineItems(request, outcome);
  }
}

} // namespace

Import importOf(std::uint8_t choice) {
  const unsigned number = (choice + 256U - '0') % 256U;
  const Format& format = kFormats[number % kFormats.size()];
  const unsigned rest = number / kFormats.size();
  return {format.dataType, format.dataOrigin, rest % 2 == 0 ? "TAB" : "PIPE", rest / 2 % 2 == 1,
          kSizes.at(rest / 4 % kSizes.size())};
}

std::string repeated(std::string_view bytes, std::size_t size) {
  std::string result(bytes);
  while (!bytes.empty() && result.size() < size)
    result += bytes;
  return result;
}

Outcome run(const Import& import, Way way, std::string_view bytes, bool isTracing) {
  Outcome outcome;
  MemoryHost host;
  AcceptingFactory factory(outcome);
  AcceptingService service(outcome);
  host.services.transportFactory = &factory;
  host.services.serviceCall = &service;
  host.install();
  host.loadCatalogue();
  host.errors->isTaking = isTracing;
  host.files.files[std::string(kFile)] = bytes;

  ImExRequest request;
  keepEvents(request, outcome);
  request.DataOrigin(std::string(import.dataOrigin));
  request.DataType(std::string(import.dataType));
  request.Delimiter(std::string(import.delimiter));
  request.CheckedFileName(std::string(kFile));
  request.isCentralizedAgent = import.isCentral;
  runOn(request, way, outcome);

  require(ImExModule::openFiles().freeNumber() == 1, "no file is open");
  require(host.files.files[std::string(kFile)] == bytes && !host.files.written.contains(kFile),
          "the file is as it was");
  outcome.boxes = host.boxes.lines;
  outcome.errors = host.errors->lines;
  outcome.page = host.files.written[std::string(kPage)].bytes;
  return outcome;
}

} // namespace imex::fuzz
