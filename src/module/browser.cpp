#include "module/ImExModule.h"

#include "host/BrowserLauncher.h"
#include "host/Services.h"
#include "module/tracing.h"

namespace imex::ImExModule {

Integer launchInternetExplorer(const std::string& url) {
  return traced(
      {"ImExModule", "launchInternetExplorer"},
      [&] {
        host::required(host::services().browserLauncher).show(url, 0);
        return Integer(0);
      },
      Ignore{});
}

} // namespace imex::ImExModule
