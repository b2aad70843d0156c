#include "request/ImExRequest.h"

#include "host/CurrentUser.h"
#include "host/ServiceCall.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "host/TransportFactory.h"
#include "module/tracing.h"
#include "request/importLines.h"
#include "runtime/text.h"

#include <limits>
#include <memory>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

constexpr std::string_view kSecuredSpace = "urn:ImportExportService";
constexpr std::string_view kUnsecuredSpace = "urn:UnsecuredImportExportService";
constexpr std::string_view kLiteralXml = "http://xml.apache.org/xml-soap/literalxml";

constexpr std::string_view kProxyServer = "localhost"; // only the port of the proxy is a setting
constexpr std::int32_t kTimeoutOfLine = 1000;
constexpr std::int32_t kNoTimeout = 0;

constexpr std::string_view kEnvironmentError = "An environment error has been detected.";
constexpr std::string_view kSendingError = "An error has occurred while sending the data.";

host::Settings& settings() {
  return host::required(host::services().settings);
}

host::CurrentUser& currentUser() {
  return host::required(host::services().currentUser);
}

/// An element without a namespace or a type.
host::SoapNode& createElement(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

std::string_view word(Boolean flag) {
  return flag ? "TRUE" : "FALSE";
}

std::string exchangeFailure(const std::string& dataType, const std::string& description) {
  const std::string lineBreak(kLineBreak);
  return "Exception while attempting to import " + dataType + ". " + lineBreak + description + ". " + lineBreak;
}

/// The sum, or the greatest value where it does not fit: the counter is informative and must not stop an import.
std::int32_t addSaturated(std::int32_t a, std::int32_t b) {
  return a > std::numeric_limits<std::int32_t>::max() - b ? std::numeric_limits<std::int32_t>::max() : a + b;
}

} // namespace

// --- The road of send() ---------------------------------------------------------------------------------------------

void ImExRequest::send() {
  const host::ImportBean bean{requestInformation(), std::make_shared<host::DataContainer>()};
  const std::string origin = DataOrigin();
  const bool sendsLines = areLinesSent(m_dataType, origin, Road::send);
  m_lineTimeout = settings().timeout();
  SentLines sent(m_dataType, origin, m_delimiterAscii);
  const FileReading reading = readImportFile([&](std::string_view line) {
    if (sendsLines)
      bean.dataContainer->lines.add({std::string(sent.asSent(line))});
    m_lineTimeout = addSaturated(m_lineTimeout, kTimeoutOfLine);
  });
  if (!reading.errors->isEmpty())
    askToCorrect(*reading.errors);
  else if (reading.isComplete)
    callService(bean);
}

std::shared_ptr<host::RequestInformation> ImExRequest::requestInformation() {
  auto information = std::make_shared<host::RequestInformation>();
  information->importExport = ImportExport();
  information->dataType = DataType();
  information->schedule = Schedule();
  information->dataOrigin = DataOrigin();
  information->delimiter = Delimiter();
  information->userName = currentUser().name();
  information->allowWarnings = AllowWarnings();
  information->allowTruncation = AllowTruncation();
  return information;
}

/// Ballasts go to the unsecured service within the host's time-out, and their answer is not read; all else goes to the
/// secured one without a limit. Both on purpose.
void ImExRequest::callService(const host::ImportBean& bean) {
  const bool ballasts = isBallasts();
  const std::string address = ballasts ? settings().unsecuredAddress() : settings().securedAddress();
  const std::string userId = currentUser().id();
  const host::ServiceRequest request{
      .space = ballasts ? kUnsecuredSpace : kSecuredSpace,
      .methodName = "importData",
      .beanType = "HXImportBean",
      .bean = bean,
      .address = address,
      .timeout = ballasts ? settings().timeout() : kNoTimeout,
      .userId = userId,
  };
  const std::shared_ptr<host::SoapNode> result = host::required(host::services().serviceCall).call(request);
  if (ballasts)
    return;
  if (!result)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, kSource);
  Deserialize(*result);
}

// --- The instant road -----------------------------------------------------------------------------------------------

bool ImExRequest::selectInstantMethod(host::SoapEnvelope& envelope) {
  return traced(
      {kSource, "selectInstantMethod"},
      [&] {
        const std::string_view method = instantMethod(m_dataType, DataOrigin());
        if (method.empty())
          return false;
        envelope.setMethod(method, isBallasts() ? kUnsecuredSpace : kSecuredSpace);
        return true;
      },
      Reraise{});
}

bool ImExRequest::buildRequestInformation(host::SoapNode& node) {
  return traced(
      {kSource, "buildRequestInformation"},
      [&] {
        createElement(node, "IMPORTEXPORT", ImportExport());
        createElement(node, "DATATYPE", DataType());
        createElement(node, "SCHEDULE", Schedule());
        createElement(node, "DATAORIGIN", DataOrigin());
        createElement(node, "DELIMITER", Delimiter());
        createElement(node, "USERNAME", currentUser().name());
        createElement(node, "ALLOWWARNINGS", word(AllowWarnings()));
        createElement(node, "ALLOWTRUNCATION", word(AllowTruncation()));
        return true;
      },
      [&](const CaughtError&) {
        SerializationFailed.raise("Unable to create a request to process.");
        return false;
      });
}

/// Proxy, time-out and action; then the exchange, and the answer's first parameter to Deserialize().
void ImExRequest::exchange(host::HttpTransport& transport, host::SoapEnvelope& envelope) {
  const std::string proxyPort = settings().proxyPort();
  if (proxyPort.empty())
    transport.NoProxy();
  else
    transport.SetProxy(kProxyServer, proxyPort);
  transport.Timeout(settings().timeout());
  transport.SOAPAction(isBallasts() ? kUnsecuredSpace : kSecuredSpace);
  envelope.post(transport, isBallasts() ? settings().unsecuredAddress() : settings().securedAddress());
  envelope.take(transport.takeAnswer("UTF-8"), "");
  Deserialize(envelope.parameter(0));
}

void ImExRequest::sendLines(host::HttpTransport& transport, host::SoapEnvelope& envelope, host::SoapNode& lines) {
  SentLines sent(m_dataType, DataOrigin(), m_delimiterAscii);
  const FileReading reading =
      addImportLines([&](std::string_view line) { createElement(lines, "LINE", sent.asSent(line)); });
  if (!reading.errors->isEmpty())
    askToCorrect(*reading.errors);
  else if (reading.isComplete)
    exchange(transport, envelope);
}

void ImExRequest::Serialize() {
  // What an error means to the user, and its label in the trace log, depend on how far this has come.
  Procedure procedure{.source = kSource, .name = "Serialize"};
  std::string_view failure = kEnvironmentError;
  traced(
      procedure,
      [&] {
        auto& factory = host::required(host::services().transportFactory);
        const auto transport = factory.createTransport();
        const auto envelope = factory.createEnvelope();
        envelope->setEncodingStyle(kLiteralXml);
        if (!selectInstantMethod(*envelope)) {
          SerializationFailed.raise(std::string(kSendingError));
          throw LeaveEarly();
        }
        createElement(envelope->header(), "userID", currentUser().id());
        host::SoapNode& parameter = createElement(envelope->parameters(), "PARAM_ELEMENT");
        host::SoapNode& wrapper = createElement(parameter, "IMPORTEXPORTWRAPPER");
        host::SoapNode& lines = createElement(wrapper, "LINES");
        host::SoapNode& information = createElement(wrapper, "REQUESTINFORMATION");

        failure = kSendingError;
        if (!buildRequestInformation(information))
          throw LeaveEarly();

        failure = {};
        procedure.errorName = "Serialize()"; // trace readers expect this label from here on
        sendLines(*transport, *envelope, lines);
      },
      [&](const CaughtError& error) {
        SerializationFailed.raise(failure.empty() ? exchangeFailure(m_dataType, error.description)
                                                  : std::string(failure));
      });
}

} // namespace imex
