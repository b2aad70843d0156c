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

/// A line of the file as it is sent: in capitals, product lines of the agent without any quote characters, followed by
/// the delimiter.
std::string lineAsSent(std::string_view line, std::string_view dataType, std::string_view dataOrigin,
                       Integer delimiterAscii);

} // namespace imex
