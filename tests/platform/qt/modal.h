#pragma once

#include <QApplication>
#include <QMetaObject>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace imex::test {

/// Runs `action` with the next modal dialog, once that is on the screen and waits for the user.
template <class Dialog, class Action>
void withNextDialog(Action action) {
  QMetaObject::invokeMethod(
      qApp,
      [action] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        ASSERT_NE(nullptr, dialog);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog));
        action(*dialog);
      },
      Qt::QueuedConnection);
}

} // namespace imex::test
