#pragma once

#include <string>

namespace imex::host {

/// One line of an import, as it is sent.
struct LineObject {
  std::string value; ///< with the delimiter at its end, without a line end
};

} // namespace imex::host
