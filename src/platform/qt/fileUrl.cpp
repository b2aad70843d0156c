#include "platform/qt/fileUrl.h"

#include <QByteArray>

namespace imex::platform {

QUrl fileUrl(const std::filesystem::path& path) {
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path.string()).toPercentEncoding("/"));
}

} // namespace imex::platform
