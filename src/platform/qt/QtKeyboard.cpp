#include "platform/qt/QtKeyboard.h"

#include "runtime/RuntimeError.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QWidget>

#include <array>
#include <utility>
#include <vector>

namespace imex::platform {

namespace {

constexpr std::array<std::pair<std::string_view, Qt::Key>, 4> kNames{{
    {"{Right}", Qt::Key_Right},
    {"{Left}", Qt::Key_Left},
    {"{Down}", Qt::Key_Down},
    {"{Up}", Qt::Key_Up},
}};

std::vector<Qt::Key> parsed(std::string_view keys) {
  std::vector<Qt::Key> result;
  while (!keys.empty()) {
    std::size_t size = 0;
    for (const auto& [name, key] : kNames)
      if (keys.starts_with(name)) {
        result.push_back(key);
        size = name.size();
      }
    if (size == 0)
      throw RuntimeError(ErrorNumber::invalidProcedureCall, "QtKeyboard");
    keys.remove_prefix(size);
  }
  return result;
}

/// Each key goes to what has the focus by then, as a typed one would.
void type(Qt::Key key) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QWidget* receiver = QApplication::focusWidget();
    if (receiver == nullptr)
      receiver = QApplication::activeWindow();
    if (receiver == nullptr)
      return;
    QKeyEvent event(type, key, Qt::NoModifier);
    QCoreApplication::sendEvent(receiver, &event);
  }
}

} // namespace

QtKeyboard::QtKeyboard() {
  qApp->installEventFilter(this);
}

bool QtKeyboard::isDown(host::VirtualKey key) const {
  return key == host::VirtualKey::tab ? m_isTabDown : m_isShiftDown;
}

void QtKeyboard::sendKeys(std::string_view keys) {
  const std::vector<Qt::Key> all = parsed(keys);
  const QScopedValueRollback sending(m_isSending, true);
  for (const Qt::Key key : all)
    type(key);
}

/// Only looks on. A key event is seen once for each object that it is offered to, which does no harm.
bool QtKeyboard::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
  case QEvent::KeyPress:
  case QEvent::KeyRelease:
  case QEvent::ShortcutOverride:
    if (!m_isSending) {
      const auto& key = static_cast<const QKeyEvent&>(*event);
      m_isShiftDown = key.modifiers().testFlag(Qt::ShiftModifier);
      if (!key.isAutoRepeat())
        watch(key.key(), event->type() != QEvent::KeyRelease);
    }
    break;
  case QEvent::ApplicationDeactivate:
  case QEvent::ApplicationStateChange:
    m_isTabDown = false;
    m_isShiftDown = false;
    break;
  default:
    break;
  }
  return false;
}

void QtKeyboard::watch(int key, bool isDown) {
  if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
    m_isTabDown = isDown;
  if (key == Qt::Key_Backtab) // is Tab with Shift
    m_isShiftDown = m_isShiftDown || isDown;
  else if (key == Qt::Key_Shift)
    m_isShiftDown = isDown;
}

} // namespace imex::platform
