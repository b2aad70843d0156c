#include "controls/common/DropDownList.h"

#include "controls/common/ownEvent.h"
#include "runtime/RuntimeError.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOption>
#include <QStylePainter>
#include <QWheelEvent>

namespace imex {

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) {
  connect(this, &QComboBox::activated, this, [this] { runAsEvent([this] { Q_EMIT chosen(); }); });
}

void DropDownList::append(const QString& text) {
  insert(count(), text);
}

void DropDownList::insert(int position, const QString& text) {
  const bool hasChoice = currentIndex() >= 0;
  insertItem(position, text);
  if (!hasChoice)
    setCurrentIndex(-1); // QComboBox chooses the first text that it is given
}

void DropDownList::setListIndex(int index) {
  if (index < -1 || index >= count())
    throw RuntimeError(ErrorNumber::subscriptOutOfRange, "DropDownList");
  setCurrentIndex(index);
  Q_EMIT chosen();
}

void DropDownList::setLocked(bool locked) {
  m_isLocked = locked;
  update();
}

void DropDownList::showPopup() {
  if (!m_isLocked)
    QComboBox::showPopup();
}

void DropDownList::keyPressEvent(QKeyEvent* event) {
  if (m_isLocked)
    event->ignore();
  else
    QComboBox::keyPressEvent(event);
}

void DropDownList::mousePressEvent(QMouseEvent* event) {
  if (!m_isLocked)
    QComboBox::mousePressEvent(event);
}

void DropDownList::wheelEvent(QWheelEvent* event) {
  // Without the focus, the wheel was meant for the form that scrolls past.
  if (m_isLocked || !hasFocus())
    event->ignore();
  else
    QComboBox::wheelEvent(event);
}

/// A locked list looks like a field that can only be read.
void DropDownList::paintEvent(QPaintEvent* event) {
  if (!m_isLocked) {
    QComboBox::paintEvent(event);
    return;
  }
  QStylePainter painter(this);
  QStyleOptionFrame frame;
  frame.initFrom(this);
  frame.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, this);
  frame.state |= QStyle::State_Sunken | QStyle::State_ReadOnly;
  frame.palette.setBrush(QPalette::Base, frame.palette.window());
  painter.drawPrimitive(QStyle::PE_PanelLineEdit, frame);

  QStyleOptionComboBox text;
  initStyleOption(&text);
  painter.drawControl(QStyle::CE_ComboBoxLabel, text);
}

} // namespace imex
