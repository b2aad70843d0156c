#pragma once

#include "controls/ImExDocView/ImExDocView.h"

#include <QLabel>
#include <QWidget>

namespace imex::desk {

/// The viewer with a specification page or the results page, under the document's name.
class DocumentsPage : public QWidget {
  Q_OBJECT

 public:
  explicit DocumentsPage(QWidget* parent = nullptr);

  /// Shows the document at a path, which may have either separator. Errors of the viewer pass through; what is shown
  /// then stays.
  void show(QString& path);

 Q_SIGNALS:
  /// The user is done with the document.
  void closed();

 private:
  QLabel* m_heading;
  ImExDocView* m_viewer;
};

} // namespace imex::desk
