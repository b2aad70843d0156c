#include "platform/soap/SoapServiceCall.h"

#include <memory>
#include <string>

namespace imex::platform {

namespace {

constexpr std::string_view kLiteralXml = "http://xml.apache.org/xml-soap/literalxml";
constexpr std::string_view kProxyServer = "localhost"; // only the port of the proxy is a setting

host::SoapNode& create(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

std::string_view word(bool flag) {
  return flag ? "true" : "false";
}

void addInformation(host::SoapNode& parameter, const host::RequestInformation& information) {
  host::SoapNode& node = create(parameter, "REQUESTINFORMATION");
  create(node, "IMPORTEXPORT", information.importExport);
  create(node, "DATATYPE", information.dataType);
  create(node, "SCHEDULE", information.schedule);
  create(node, "DATAORIGIN", information.dataOrigin);
  create(node, "DELIMITER", information.delimiter);
  create(node, "USERNAME", information.userName);
  create(node, "ALLOWWARNINGS", word(information.allowWarnings));
  create(node, "ALLOWTRUNCATION", word(information.allowTruncation));
}

void addLines(host::SoapNode& parameter, const host::DataContainer& container) {
  host::SoapNode& node = create(parameter, "LINES");
  for (const host::LineObject& line : container.lines)
    create(node, "LINE", line.value);
}

void fill(host::SoapEnvelope& envelope, const host::ServiceRequest& request) {
  if (!request.bean.requestInformation || !request.bean.dataContainer)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, "SoapServiceCall");
  envelope.setEncodingStyle(kLiteralXml);
  envelope.setMethod(request.methodName, request.space);
  create(envelope.header(), "userID", request.userId);
  host::SoapNode& parameter = create(envelope.parameters(), request.beanType);
  addInformation(parameter, *request.bean.requestInformation);
  addLines(parameter, *request.bean.dataContainer);
}

} // namespace

SoapServiceCall::SoapServiceCall(host::TransportFactory& factory, const host::Settings& settings)
    : m_factory(factory), m_settings(settings) {}

std::shared_ptr<host::SoapNode> SoapServiceCall::call(const host::ServiceRequest& request) {
  const std::shared_ptr<host::SoapEnvelope> envelope = m_factory.createEnvelope();
  fill(*envelope, request);
  const std::unique_ptr<host::HttpTransport> transport = m_factory.createTransport();
  prepare(*transport, request);
  envelope->post(*transport, request.address);
  envelope->take(transport->takeAnswer("UTF-8"), "");
  if (envelope->parameters().count() == 0)
    return nullptr;
  return {envelope, &envelope->parameter(0)};
}

void SoapServiceCall::prepare(host::HttpTransport& transport, const host::ServiceRequest& request) const {
  const std::string proxyPort = m_settings.proxyPort();
  if (proxyPort.empty())
    transport.NoProxy();
  else
    transport.SetProxy(kProxyServer, proxyPort);
  transport.Timeout(request.timeout);
  transport.SOAPAction(request.space);
}

} // namespace imex::platform
