#include "desk/DocumentsPage.h"

#include <QRegularExpression>
#include <QVBoxLayout>

namespace imex::desk {

DocumentsPage::DocumentsPage(QWidget* parent) : QWidget(parent), m_heading(new QLabel), m_viewer(new ImExDocView) {
  m_heading->setTextFormat(Qt::PlainText);
  m_heading->setWordWrap(true);
  m_heading->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_heading->setText(QStringLiteral("No document. Press Specifications or Import Results on the Import page."));
  m_viewer->setObjectName(QStringLiteral("documentView"));
  connect(m_viewer, &ImExDocView::closed, this, &DocumentsPage::closed);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(m_heading);
  layout->addWidget(m_viewer, 1);
  setFocusProxy(m_viewer);
}

void DocumentsPage::show(QString& path) {
  m_viewer->showDoc(path);
  m_heading->setText(path.section(QRegularExpression(QStringLiteral("[/\\\\]")), -1));
  m_heading->setToolTip(path);
}

} // namespace imex::desk
