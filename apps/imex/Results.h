#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace imex::cli {

/// What became of one line of the file.
struct LineResult {
  int line = 0;
  bool successful = false;
  std::vector<std::string> errors;
  std::vector<std::string> warnings;
};

/// What became of an import or of a check.
struct Results {
  /// "accepted", "rejected" (the service reported a failing line), "refused" (the client did), "sent" (the answer is
  /// not read on this road), "failed" (the exchange did) or "unreadable" (the file).
  std::string outcome;
  std::optional<std::string> reply;  ///< the service's overall message
  std::optional<std::string> report; ///< the path of the results page
  std::vector<LineResult> lines;
};

/// The text with its first line as it is and the rest below, indented by the width of the label in front: no text of a
/// file or of a service can begin a line, and so look like one of the program's own.
std::string indented(const std::string& text, std::size_t width);

/// Prints one JSON object: {"outcome", "reply", "report", "lines": [{"line", "successful", "errors", "warnings"}]}.
/// "reply" and "report" are null where there is none. Bytes that are no valid text become U+FFFD.
void printJson(const Results& results);

/// Prints a line for each line and its texts below it, then the message and the page.
void printText(const Results& results);

} // namespace imex::cli
