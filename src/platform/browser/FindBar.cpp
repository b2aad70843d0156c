#include "platform/browser/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

namespace imex::platform {

FindBar::FindBar(QWidget* parent) : QWidget(parent), m_field(new QLineEdit), m_result(new QLabel) {
  auto* label = new QLabel(QStringLiteral("&Find:"));
  label->setBuddy(m_field);
  m_field->setObjectName(QStringLiteral("findText"));
  m_field->setAccessibleName(QStringLiteral("Find in the document"));
  m_result->setObjectName(QStringLiteral("findResult"));
  m_result->setTextFormat(Qt::PlainText);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 4, 0, 0);
  layout->addWidget(label);
  layout->addWidget(m_field, 1);
  addButton("findPrevious", QStringLiteral("P&revious"), QStringLiteral("Previous place (Shift+Enter)"),
            &FindBar::previous);
  addButton("findNext", QStringLiteral("&Next"), QStringLiteral("Next place (Enter)"), &FindBar::next);
  layout->addWidget(m_result, 1);
  addButton("findClose", QStringLiteral("Close"), QStringLiteral("Close the find bar (Esc)"), &FindBar::closed);
  connect(m_field, &QLineEdit::textChanged, this, &FindBar::next);
  hide();
}

void FindBar::addButton(const char* name, const QString& caption, const QString& meaning, void (FindBar::*pressed)()) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  button->setToolTip(meaning);
  button->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
  button->setAccessibleDescription(meaning);
  button->setAutoDefault(false); // Enter belongs to the field
  connect(button, &QPushButton::clicked, this, pressed);
  layout()->addWidget(button);
}

void FindBar::open() {
  show();
  m_field->setFocus(Qt::ShortcutFocusReason);
  m_field->selectAll();
  next();
}

void FindBar::tell(int matches, int marked) {
  if (text().isEmpty())
    m_result->clear();
  else if (matches == 0)
    m_result->setText(QStringLiteral("Not found"));
  else
    m_result->setText(QStringLiteral("%1 of %2").arg(marked).arg(matches));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Escape:
    Q_EMIT closed();
    break;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    Q_EMIT wanted(text(), event->modifiers().testFlag(Qt::ShiftModifier));
    break;
  default:
    QWidget::keyPressEvent(event);
  }
}

} // namespace imex::platform
