#pragma once

#include "host/LineObject.h"
#include "runtime/Collection.h"

namespace imex::host {

/// The lines of an import, in file order.
struct DataContainer {
  Collection<LineObject> lines; ///< without keys
};

} // namespace imex::host
