#include "harness/fuzz.h"
#include "import_service/Fault.h"
#include "import_service/RequestReader.h"
#include "platform/soap/PugiSoapEnvelope.h"

#include <string>
#include <utility>
#include <vector>

// What reaches the import service over a network is a request or a fault. A request that the component's own envelope
// makes of these bytes is read as the lines, the user and the choices that went into it; the bytes in place of an
// element of it are a request or a fault as well.

namespace {

using namespace imex;

constexpr std::string_view kPlace = "PLACE-OF-THE-BYTES";

/// The bytes as lines of text, without what XML cannot carry.
std::vector<std::string> linesOf(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    lines.emplace_back(bytes.substr(0, end));
    bytes = end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
  }
  return lines;
}

host::SoapNode& add(host::SoapNode& parent, std::string_view name, std::string_view value = {}) {
  return parent.create(name, value, "", "", "");
}

/// A request of the instant road with these lines; those that XML cannot carry are taken out of them.
std::string requestOf(std::vector<std::string>& lines) {
  platform::PugiSoapEnvelope envelope;
  envelope.setMethod("importCustomersInstant", "urn:ImportExportService");
  add(envelope.header(), "userID", "agent1");
  host::SoapNode& wrapper = add(add(envelope.parameters(), "PARAM_ELEMENT"), "IMPORTEXPORTWRAPPER");
  host::SoapNode& information = add(wrapper, "REQUESTINFORMATION");
  const std::vector<std::pair<std::string_view, std::string_view>> values = {
      {"IMPORTEXPORT", "IMPORT"}, {"DATATYPE", "CUSTOMER"},  {"SCHEDULE", "INSTANT"},   {"DATAORIGIN", "AGENT"},
      {"DELIMITER", "PIPE"},      {"USERNAME", "Ann Agent"}, {"ALLOWWARNINGS", "TRUE"}, {"ALLOWTRUNCATION", "FALSE"}};
  for (const auto& [name, value] : values)
    add(information, name, value);
  host::SoapNode& list = add(wrapper, "LINES");
  std::vector<std::string> sent;
  constexpr std::int32_t kUnsupportedText = 1008;
  for (const std::string& line : lines) {
    if (fuzz::unless({kUnsupportedText}, [&] { return &add(list, "LINE", line + "|"); }))
      sent.push_back(line);
  }
  lines = std::move(sent);
  return envelope.serialise();
}

/// Reads bytes as a request; anything but a request or a fault ends the program.
void readAny(std::string bytes) {
  try {
    (void)import_service::readRequest(std::move(bytes));
  } catch (const import_service::Fault& fault) {
    fuzz::require(*fault.what() != '\0', "a fault says something");
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text(data, size);
  readAny(std::string(bytes));

  std::vector<std::string> lines = linesOf(bytes);
  const import_service::ImportRequest request = import_service::readRequest(requestOf(lines));
  fuzz::require(request.lines == lines, "the lines arrive");
  fuzz::require(request.methodName == "importCustomersInstant" && request.space == "urn:ImportExportService",
                "the method arrives");
  fuzz::require(request.userId == "agent1" && request.userName == "Ann Agent" && request.formatKey() == "CUSTOMERAGENT",
                "user and format arrive");
  fuzz::require(request.delimiter == '|' && request.allowWarnings && !request.allowTruncation, "the choices arrive");

  std::vector<std::string> place = {std::string(kPlace)};
  std::string mixed = requestOf(place);
  mixed.replace(mixed.find(kPlace), kPlace.size(), bytes);
  readAny(std::move(mixed));
  return 0;
}
