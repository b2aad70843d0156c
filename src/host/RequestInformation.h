#pragma once

#include "runtime/Boolean.h"

#include <string>

namespace imex::host {

/// What an import request says about itself, in the order in which it is filled and sent.
struct RequestInformation {
  std::string importExport; ///< "IMPORT"
  std::string dataType;     ///< "CUSTOMER", "PRODUCT", "INVOICE", "COMMISSION", "BALLASTS"
  std::string schedule;     ///< "INSTANT"
  std::string dataOrigin;   ///< "AGENT", "HALVIK"
  std::string delimiter;    ///< the word "TAB" or "PIPE"
  std::string userName;     ///< host::CurrentUser::name()
  Boolean allowWarnings;    ///< whether lines pass that carry only warnings
  Boolean allowTruncation;  ///< whether values that are too long are cut
};

} // namespace imex::host
