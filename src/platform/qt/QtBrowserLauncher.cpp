#include "platform/qt/QtBrowserLauncher.h"

#include "platform/files/DiskFiles.h"
#include "platform/qt/fileUrl.h"
#include "runtime/RuntimeError.h"

#include <QDesktopServices>
#include <QUrl>

#include <cstdint>
#include <filesystem>
#include <string>

namespace imex::platform {

void QtBrowserLauncher::show(std::string_view path, int /*option*/) {
  const QUrl page = fileUrl(std::filesystem::absolute(nativePath(path)));
  if (!QDesktopServices::openUrl(page))
    throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::deviceIoError), "QtBrowserLauncher",
                       "No program opens the page " + std::string(path));
}

} // namespace imex::platform
