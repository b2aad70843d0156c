#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace imex::fuzz {

/// What is imported, and how.
struct Import {
  std::string_view dataType;
  std::string_view dataOrigin;
  std::string_view delimiter;
  bool isCentral;
  std::size_t size = 0; ///< that the file has at least; 0 where it is what the input says, once

  bool isLineItems() const { return dataType.ends_with("LINEITEM"); }
  bool isOnBothRoads() const { return !isLineItems() && (dataType != "CUSTOMER" || dataOrigin != "HALVIK"); }
};

/// The import that a byte stands for: "0" to "8" are the formats with tabs, and so on.
Import importOf(std::uint8_t choice);

/// The bytes as often as it takes to reach a size.
std::string repeated(std::string_view bytes, std::size_t size);

enum class Way { send, instant, lineItems };

/// What came of an import.
struct Outcome {
  bool isSent = false;
  std::vector<std::string> lines;  ///< as they were sent
  std::vector<std::string> boxes;  ///< with their styles and titles
  std::vector<std::string> errors; ///< that were recorded
  std::vector<std::string> events; ///< with their arguments
  std::string page;                ///< the results page
  std::vector<std::string> items;  ///< the records of line items

  bool operator==(const Outcome&) const = default;
};

/// Runs one import of a file of these bytes. The service accepts every line that it is sent, with one warning for the
/// first.
Outcome run(const Import& import, Way way, std::string_view bytes, bool isTracing);

} // namespace imex::fuzz
