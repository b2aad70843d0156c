#include "platform/clock/SystemClock.h"

#include <ctime>

namespace imex::platform {

host::LocalTime SystemClock::now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&seconds, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min};
}

} // namespace imex::platform
