// W2: build the request from the lines and post it.

#include "BenchHost.h"
#include "Reference.h"
#include "Sink.h"
#include "host/ServiceCall.h"
#include "host/Services.h"
#include "platform/soap/SoapTransportFactory.h"
#include "request/importLines.h"
#include "runtime/text.h"
#include "sizes.h"
#include "soap/GsoapClient.h"
#include "works.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace imex::bench {

namespace {

constexpr int kTab = 9;
constexpr std::string_view kSpace = "urn:ImportExportService";

constexpr std::string_view kSmallAnswer =
    R"(<?xml version="1.0" encoding="UTF-8"?><SOAP-ENV:Envelope )"
    R"(xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/"><SOAP-ENV:Body>)"
    R"(<ns1:importCustomersInstantResponse xmlns:ns1="urn:ImportExportService"><result>ok</result>)"
    "</ns1:importCustomersInstantResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>";

host::SoapNode& create(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

/// The request of the instant road.
void fillEnvelope(host::SoapEnvelope& envelope, const std::vector<std::string_view>& lines) {
  envelope.setEncodingStyle("http://xml.apache.org/xml-soap/literalxml");
  envelope.setMethod("importCustomersInstant", kSpace);
  create(envelope.header(), "userID", "agent1");
  host::SoapNode& wrapper = create(create(envelope.parameters(), "PARAM_ELEMENT"), "IMPORTEXPORTWRAPPER");
  host::SoapNode& list = create(wrapper, "LINES");
  host::SoapNode& information = create(wrapper, "REQUESTINFORMATION");
  create(information, "IMPORTEXPORT", "IMPORT");
  create(information, "DATATYPE", "CUSTOMER");
  create(information, "SCHEDULE", "INSTANT");
  create(information, "DATAORIGIN", "AGENT");
  create(information, "DELIMITER", "TAB");
  create(information, "USERNAME", "Ann Agent");
  create(information, "ALLOWWARNINGS", "TRUE");
  create(information, "ALLOWTRUNCATION", "FALSE");
  SentLines sent("CUSTOMER", "AGENT", kTab);
  for (const std::string_view line : lines)
    create(list, "LINE", sent.asSent(line));
}

Sink& sink() {
  static Sink server(kSmallAnswer);
  return server;
}

void requestLimit(benchmark::State& state) {
  const std::string body = buildRequest(Reference::of(sizeOf(state)).lines);
  const std::string head = requestHead(body.size());
  for (auto _ : state)
    exchangeRaw(sink().port(), head, body);
}

/// The texts are finished before the clock starts: capitals and delimiter are no work of this library.
void requestGsoap(benchmark::State& state) {
  std::vector<std::string> texts;
  SentLines sent("CUSTOMER", "AGENT", kTab);
  for (const std::string_view line : Reference::of(sizeOf(state)).lines)
    texts.emplace_back(sent.asSent(line));
  std::vector<char*> lines;
  for (std::string& text : texts)
    lines.push_back(text.data());
  for (auto _ : state) {
    if (!postWithGsoap(sink().address(), lines))
      state.SkipWithError("gSOAP failed");
  }
}

void post(host::HttpTransport& transport, const host::SoapEnvelope& envelope) {
  transport.NoProxy();
  transport.SOAPAction(kSpace);
  transport.send(sink().address(), envelope.serialise());
  if (transport.Receive("UTF-8").size() != kSmallAnswer.size())
    throw std::logic_error("not the sink's answer");
}

void requestOurs(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  platform::SoapTransportFactory factory;
  for (auto _ : state) {
    const auto envelope = factory.createEnvelope();
    fillEnvelope(*envelope, reference.lines);
    post(*factory.createTransport(), *envelope);
  }
}

/// The other road: line objects first, and from them the envelope.
void requestSendRoad(benchmark::State& state) {
  const Reference& reference = Reference::of(sizeOf(state));
  const BenchHost host(sink().address());
  for (auto _ : state) {
    const host::ImportBean bean{std::make_shared<host::RequestInformation>(), std::make_shared<host::DataContainer>()};
    SentLines sent("CUSTOMER", "AGENT", kTab);
    for (const std::string_view line : reference.lines)
      bean.dataContainer->lines.add({std::string(sent.asSent(line))});
    host::services().serviceCall->call({.space = kSpace,
                                        .methodName = "importData",
                                        .beanType = "HXImportBean",
                                        .bean = bean,
                                        .address = sink().address(),
                                        .timeout = 0,
                                        .userId = "agent1"});
  }
}

IMEX_BENCHMARK("W2/limit", requestLimit);
IMEX_BENCHMARK("W2/gSOAP", requestGsoap);
IMEX_BENCHMARK("W2/ours", requestOurs);
IMEX_BENCHMARK("W2/ours, send road", requestSendRoad);

} // namespace

std::string buildRequest(const std::vector<std::string_view>& lines) {
  const auto envelope = platform::SoapTransportFactory().createEnvelope();
  fillEnvelope(*envelope, lines);
  return envelope->serialise();
}

} // namespace imex::bench
