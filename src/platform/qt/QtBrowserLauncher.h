#pragma once

#include "host/BrowserLauncher.h"
#include "runtime/export.h"

namespace imex::platform {

/// Opens pages with the desktop's program for them. Error 57 where the desktop refuses.
class IMEX_EXPORT QtBrowserLauncher : public host::BrowserLauncher {
 public:
  void show(std::string_view path, int option) override;
};

} // namespace imex::platform
