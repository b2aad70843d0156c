#pragma once

#include "runtime/export.h"

#include <string_view>

namespace imex::host {

/// Tells the user that something long is going on. One object serves one operation: it is made before it, and what it
/// shows goes away with it.
class IMEX_EXPORT ProgressDisplay {
 public:
  virtual ~ProgressDisplay() = default;

  /// Shows a title, a message and a third text, which may be empty. They are on the screen when the call returns,
  /// because the operation that follows keeps the thread busy.
  virtual void show(std::string_view title, std::string_view message, std::string_view third) = 0;
};

} // namespace imex::host
