#pragma once

#include "import_service/Fault.h"
#include "import_service/Formats.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imex::import_service::test {

/// A request to build: by default one for customers on the instant road, delimited by pipes.
struct RequestParts {
  std::string method = "importCustomersInstant";
  std::string space = "urn:ImportExportService";
  std::string userId = "agent1";
  std::string importExport = "IMPORT";
  std::string dataType = "CUSTOMER";
  std::string schedule = "INSTANT";
  std::string dataOrigin = "AGENT";
  std::string delimiter = "PIPE";
  std::string userName = "ANN AGENT";
  std::string allowWarnings = "FALSE";
  std::string allowTruncation = "FALSE";
  std::vector<std::string> lines; ///< without the delimiter at the end
};

/// The request as it goes over the wire, in the form that its method asks for.
std::string requestXml(const RequestParts& parts);

/// `text` with the first `from` replaced. Fails the running test where there is none.
std::string replaced(std::string text, std::string_view from, std::string_view to);

/// What lies between <name> and </name>, for every such pair, in order.
std::vector<std::string> elements(std::string_view xml, std::string_view name);

/// The one of them; fails the running test where there is not exactly one.
std::string element(std::string_view xml, std::string_view name);

/// Customers: code (key, 4 characters), name (required, 10), credit limit (number, 6). Invoices: number and line (both
/// key), amount (number). Ballasts: catalog number (key, 5).
Formats smallFormats();

/// The fault that `action` raises, or nothing. Exceptions of another type pass through and fail the test.
template <class Action>
std::optional<Fault> faultOf(Action&& action) {
  try {
    std::forward<Action>(action)();
  } catch (const Fault& fault) {
    return fault;
  }
  return std::nullopt;
}

/// The text of the fault that `action` raises; empty where it raises none.
template <class Action>
std::string faultText(Action&& action) {
  const std::optional<Fault> fault = faultOf(std::forward<Action>(action));
  return fault ? fault->what() : "";
}

} // namespace imex::import_service::test
