#pragma once

#include <QDateTime>
#include <QString>

namespace imex::desk {

/// How a file stood at one moment, by which a change that another program made later is noticed.
class FileStamp {
 public:
  FileStamp() = default;

  /// The file as it stands now. A missing one has a stamp too.
  static FileStamp of(const QString& path);

  bool exists() const { return m_exists; }

  bool operator==(const FileStamp&) const = default;

 private:
  bool m_exists = false;
  qint64 m_size = 0;
  QDateTime m_changed;
};

} // namespace imex::desk
