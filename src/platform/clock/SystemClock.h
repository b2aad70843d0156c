#pragma once

#include "host/Clock.h"
#include "runtime/export.h"

namespace imex::platform {

/// The machine's clock, in the time zone of the environment.
class IMEX_EXPORT SystemClock : public host::Clock {
 public:
  host::LocalTime now() const override;
};

} // namespace imex::platform
