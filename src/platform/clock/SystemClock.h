#pragma once

#include "host/Clock.h"

namespace imex::platform {

/// The machine's clock, in the time zone of the environment.
class SystemClock : public host::Clock {
 public:
  host::LocalTime now() const override;
};

} // namespace imex::platform
