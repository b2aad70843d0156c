#include "desk/NoticeBar.h"

#include <QHBoxLayout>

namespace imex::desk {

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent), m_text(new QLabel), m_yes(new QPushButton(QStringLiteral("&Yes"))),
      m_no(new QPushButton(QStringLiteral("Not no&w"))) {
  setObjectName(QStringLiteral("noticeBar"));
  setFrameShape(QFrame::StyledPanel);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  setAutoFillBackground(true);
  m_text->setForegroundRole(QPalette::ToolTipText);
  m_text->setTextFormat(Qt::PlainText);
  m_text->setWordWrap(true);
  m_yes->setObjectName(QStringLiteral("yes"));
  m_no->setObjectName(QStringLiteral("no"));
  connect(m_yes, &QPushButton::clicked, this, &NoticeBar::accepted);
  connect(m_no, &QPushButton::clicked, this, &QWidget::hide);

  auto* layout = new QHBoxLayout(this);
  layout->addWidget(m_text, 1);
  layout->addWidget(m_yes);
  layout->addWidget(m_no);
  hide();
}

void NoticeBar::ask(const QString& question) {
  show(question, true);
}

void NoticeBar::tell(const QString& text) {
  show(text, false);
}

void NoticeBar::show(const QString& text, bool hasButtons) {
  m_text->setText(text);
  m_yes->setAccessibleDescription(text);
  m_yes->setVisible(hasButtons);
  m_no->setVisible(hasButtons);
  QFrame::show();
}

} // namespace imex::desk
