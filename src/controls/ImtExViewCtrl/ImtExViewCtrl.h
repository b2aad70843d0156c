#pragma once

#include "runtime/export.h"

#include <QWidget>

#include <memory>

namespace imex {

namespace Ui {
class ImtExViewCtrl;
}

/// A list of import and export jobs: a row for each job, and fields to search for jobs above it. It is a layout only:
/// nothing fills the rows, and neither the fields nor the button do anything. A host places it on a form.
///
/// Errors. What fails while it is made is recorded with "ImExActionCtrl" as source, as trace readers expect it, and
/// shown in a box; the list then stays as far as it was laid out. The source of trace lines is the control's
/// objectName() at that time, which is "ImtExViewCtrl".
///
/// Keys. Tab goes through the fields, the button and the list. Child widgets: "MSFlexGrid1", "txtJobName", "Text2" to
/// "Text6", "Label1" to "Label6", "cmdSearch".
class IMEX_EXPORT ImtExViewCtrl : public QWidget {
  Q_OBJECT

 public:
  /// An empty list.
  explicit ImtExViewCtrl(QWidget* parent = nullptr);
  ~ImtExViewCtrl() override;

  /// The size of its layout.
  QSize sizeHint() const override;

 private:
  void UserControl_Initialize();

  std::unique_ptr<Ui::ImtExViewCtrl> m_ui;
};

} // namespace imex
