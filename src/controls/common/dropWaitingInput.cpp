#include "controls/common/dropWaitingInput.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace imex {

namespace {

bool isOfTheUser(QEvent::Type type) {
  switch (type) {
  case QEvent::KeyPress:
  case QEvent::KeyRelease:
  case QEvent::Shortcut:
  case QEvent::ShortcutOverride:
  case QEvent::InputMethod:
  case QEvent::MouseButtonPress:
  case QEvent::MouseButtonRelease:
  case QEvent::MouseButtonDblClick:
  case QEvent::Wheel:
  case QEvent::ContextMenu:
  case QEvent::TouchBegin:
  case QEvent::TouchUpdate:
  case QEvent::TouchEnd:
  case QEvent::NativeGesture:
  case QEvent::TabletPress:
  case QEvent::TabletMove:
  case QEvent::TabletRelease:
  case QEvent::DragEnter:
  case QEvent::DragMove:
  case QEvent::Drop:
    return true;
  default:
    return false;
  }
}

/// Keeps the user's input from every object of the application while it lives.
class InputDropper : public QObject {
 public:
  InputDropper() { QCoreApplication::instance()->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &m_nobody || !isOfTheUser(event->type()))
      return false;
    if (event->type() == QEvent::KeyRelease) // the application's other filters come after this one
      QCoreApplication::sendEvent(&m_nobody, event);
    return true;
  }

 private:
  QObject m_nobody;
};

} // namespace

void dropWaitingInput() {
  const InputDropper dropper;
  QCoreApplication::processEvents();
}

} // namespace imex
