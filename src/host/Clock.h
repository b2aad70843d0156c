#pragma once

#include "runtime/export.h"

namespace imex::host {

/// A moment of local time, to the minute.
struct LocalTime {
  int year;   ///< four digits
  int month;  ///< 1 to 12
  int day;    ///< 1 to 31
  int hour;   ///< 0 to 23
  int minute; ///< 0 to 59
};

/// The host's clock.
class IMEX_EXPORT Clock {
 public:
  virtual ~Clock() = default;

  /// The moment at which it is called.
  virtual LocalTime now() const = 0;
};

} // namespace imex::host
