#pragma once

#include "runtime/export.h"

#include <cstdint>
#include <string>

namespace imex::host {

/// The host's settings. They are asked for afresh at every use.
class IMEX_EXPORT Settings {
 public:
  virtual ~Settings() = default;

  /// The address of the import service for every data type but ballasts.
  virtual std::string securedAddress() const = 0;

  /// The address of the import service for ballasts.
  virtual std::string unsecuredAddress() const = 0;

  /// The greatest time that an exchange may take, in milliseconds; 0 is without limit.
  virtual std::int32_t timeout() const = 0;

  /// The port of the proxy on this machine; empty for a direct connection.
  virtual std::string proxyPort() const = 0;

  /// The component's installation directory, without a separator at its end. Its "docs" folder holds the
  /// specification pages of the formats.
  virtual std::string installationDirectory() const = 0;
};

} // namespace imex::host
