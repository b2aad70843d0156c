#include "desk/FileStamp.h"

#include "controls/common/text.h"
#include "platform/files/DiskFiles.h"

#include <QFileInfo>

namespace imex::desk {

FileStamp FileStamp::of(const QString& path) {
  const QFileInfo file(toQt(platform::nativePath(toCore(path)).string()));
  FileStamp stamp;
  stamp.m_exists = file.exists();
  if (stamp.m_exists) {
    stamp.m_size = file.size();
    stamp.m_changed = file.lastModified();
  }
  return stamp;
}

} // namespace imex::desk
