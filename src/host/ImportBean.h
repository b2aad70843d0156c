#pragma once

#include "host/DataContainer.h"
#include "host/RequestInformation.h"

#include <memory>

namespace imex::host {

/// An import as the service call takes it.
struct ImportBean {
  std::shared_ptr<RequestInformation> requestInformation; ///< what is asked for
  std::shared_ptr<DataContainer> dataContainer;           ///< the lines
};

} // namespace imex::host
