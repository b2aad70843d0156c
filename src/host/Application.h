#pragma once

#include "runtime/export.h"

#include <string>

namespace imex::host {

/// The host application.
class IMEX_EXPORT Application {
 public:
  virtual ~Application() = default;

  /// The application directory, without a separator at its end. Its "docs" folder holds the format files.
  virtual std::string path() const = 0;

  /// The application's title, as its windows show it.
  virtual std::string displayName() const { return "Corvana"; }
};

} // namespace imex::host
