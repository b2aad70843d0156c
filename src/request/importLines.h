#pragma once

#include "runtime/Integer.h"

#include <string>
#include <string_view>

namespace imex {

/// The two ways to the import service. They do not send the same files.
enum class Road {
  send,    ///< through the host's service call
  instant, ///< through an envelope of the request's own
};

/// Whether lines of this type and layout are sent on the road. Customers in the manufacturer's layout go on the
/// instant road alone, on purpose.
bool areLinesSent(std::string_view dataType, std::string_view dataOrigin, Road road);

/// The service's method that takes such lines on the instant road; empty where none does.
std::string_view instantMethod(std::string_view dataType, std::string_view dataOrigin);

/// Makes the lines of one file as they are sent: in capitals, product lines of the agent without any quote characters,
/// each followed by the delimiter. They are made in one place of memory.
class SentLines {
 public:
  SentLines(std::string_view dataType, std::string_view dataOrigin, Integer delimiterAscii);

  /// The text is valid until the next call.
  std::string_view asSent(std::string_view line);

 private:
  bool m_isWithoutQuotes;
  std::string m_delimiter;
  std::string m_line;
};

} // namespace imex
