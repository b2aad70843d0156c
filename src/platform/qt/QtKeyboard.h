#pragma once

#include "host/Keyboard.h"
#include "runtime/export.h"

#include <QObject>

namespace imex::platform {

/// The keyboard as the application sees it. Made after the application object and away before it. A key counts as held
/// from its press to its release in any of the application's windows; all are let go when the application is no longer
/// the active one.
class IMEX_EXPORT QtKeyboard : public QObject, public host::Keyboard {
  Q_OBJECT

 public:
  QtKeyboard();

  bool isDown(host::VirtualKey key) const override;
  void sendKeys(std::string_view keys) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void watch(int key, bool isDown);

  bool m_isTabDown = false;
  bool m_isShiftDown = false;
  bool m_isSending = false; ///< what is typed by code holds no key down
};

} // namespace imex::platform
