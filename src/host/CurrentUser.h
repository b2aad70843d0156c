#pragma once

#include "runtime/export.h"

#include <string>

namespace imex::host {

/// The user who is logged in to the host.
class IMEX_EXPORT CurrentUser {
 public:
  virtual ~CurrentUser() = default;

  /// The name that is sent with an import.
  virtual std::string name() const = 0;

  /// The identifier by which the import service knows the user.
  virtual std::string id() const = 0;
};

} // namespace imex::host
