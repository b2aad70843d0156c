#include "support/FakeTransport.h"

#include <algorithm>
#include <utility>

namespace imex::test {

namespace {

class FakeTransport : public host::HttpTransport {
 public:
  explicit FakeTransport(FakeTransportFactory& factory) : m_factory(factory) {}

  void SetProxy(std::string_view server, std::string_view port) override {
    m_factory.keep("SetProxy", {std::string(server), std::string(port)});
  }
  void NoProxy() override { m_factory.keep("NoProxy"); }
  void Timeout(std::int32_t milliseconds) override { m_factory.keep("Timeout", {std::to_string(milliseconds)}); }
  void SOAPAction(std::string_view action) override { m_factory.keep("SOAPAction", {std::string(action)}); }
  void send(std::string_view endpoint, std::string_view text) override {
    m_factory.keep("send", {std::string(endpoint)});
    m_factory.posted.emplace_back(text);
  }
  std::string Receive(std::string_view encoding) override {
    m_factory.keep("Receive", {std::string(encoding)});
    return m_factory.received;
  }

 private:
  FakeTransportFactory& m_factory;
};

class FakeEnvelope : public host::SoapEnvelope {
 public:
  explicit FakeEnvelope(FakeTransportFactory& factory)
      : m_factory(factory), m_header("Header"), m_parameters("Method") {
    const auto keep = [this](std::string_view name) { m_factory.keep("create", {std::string(name)}); };
    m_header.beforeCreate = keep;
    m_parameters.beforeCreate = keep;
  }

  void setEncodingStyle(std::string_view uri) override { m_factory.keep("setEncodingStyle", {std::string(uri)}); }
  void setMethod(std::string_view name, std::string_view space) override {
    m_factory.keep("setMethod", {std::string(name), std::string(space)});
  }
  host::SoapNode& header() override { return m_header; }
  host::SoapNode& parameters() override { return m_parameters; }
  std::string serialise() const override {
    m_factory.keep("serialise");
    return m_header.xml() + m_parameters.xml();
  }
  void parse(std::string_view data, std::string_view encoding) override {
    m_factory.keep("parse", {std::string(data), std::string(encoding)});
    m_answer = m_factory.result;
  }
  host::SoapNode& parameter(std::size_t position) override {
    m_factory.keep("parameter", {std::to_string(position)});
    if (!m_answer || position != 0)
      throw RuntimeError(ErrorNumber::subscriptOutOfRange);
    return *m_answer;
  }

 private:
  FakeTransportFactory& m_factory;
  FakeNode m_header;
  FakeNode m_parameters;
  std::shared_ptr<host::SoapNode> m_answer;
};

bool isCall(std::string_view kept, std::string_view call) {
  return kept.starts_with(call) && (kept.size() == call.size() || kept[call.size()] == ' ');
}

} // namespace

std::unique_ptr<host::HttpTransport> FakeTransportFactory::createTransport() {
  keep("createTransport");
  return std::make_unique<FakeTransport>(*this);
}

std::unique_ptr<host::SoapEnvelope> FakeTransportFactory::createEnvelope() {
  keep("createEnvelope");
  return std::make_unique<FakeEnvelope>(*this);
}

void FakeTransportFactory::keep(std::string_view call, const std::vector<std::string>& arguments) {
  std::string text(call);
  for (const std::string& argument : arguments)
    text += ' ' + argument;
  calls.push_back(text);
  before(text);
}

void FakeTransportFactory::failAt(std::string_view call, RuntimeError error) {
  before = [name = std::string(call), failure = std::move(error)](std::string_view kept) {
    if (isCall(kept, name))
      throw failure;
  };
}

bool FakeTransportFactory::wasCalled(std::string_view call) const {
  return std::any_of(calls.begin(), calls.end(), [&](const std::string& kept) { return isCall(kept, call); });
}

std::string envelopeText(std::string_view headerEntries, std::string_view parameters) {
  return "<Header>" + std::string(headerEntries) + "</Header><Method>" + std::string(parameters) + "</Method>";
}

} // namespace imex::test
