#pragma once

#include <string>

namespace imex::host {

/// One line of an import, as it is sent.
struct LineObject {
  std::string value;
};

} // namespace imex::host
