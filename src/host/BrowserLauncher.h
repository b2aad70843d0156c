#pragma once

#include "runtime/export.h"

#include <string_view>

namespace imex::host {

/// Opens pages in the user's web browser.
class IMEX_EXPORT BrowserLauncher {
 public:
  virtual ~BrowserLauncher() = default;

  /// Shows the page at `path` in a browser window and returns at once. `option` is 0.
  virtual void show(std::string_view path, int option) = 0;
};

} // namespace imex::host
