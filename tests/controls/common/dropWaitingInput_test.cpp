#include "controls/common/dropWaitingInput.h"

#include "platform/qt/QtKeyboard.h"
#include "support/QtTest.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <gtest/gtest.h>

#include <vector>

namespace imex {

namespace {

/// Keeps the types of the events that reach it.
class Listener : public QObject {
 public:
  bool event(QEvent* event) override {
    seen.push_back(event->type());
    onEvent();
    return true;
  }

  std::vector<QEvent::Type> seen;
  std::function<void()> onEvent = [] {};
};

class DropWaitingInput : public testing::Test {
 protected:
  void post(QEvent::Type type) { QCoreApplication::postEvent(&listener, new QEvent(type)); }

  Listener listener;
};

const std::vector<QEvent::Type> kInput = {QEvent::KeyPress,
                                          QEvent::Shortcut,
                                          QEvent::ShortcutOverride,
                                          QEvent::InputMethod,
                                          QEvent::MouseButtonPress,
                                          QEvent::MouseButtonRelease,
                                          QEvent::MouseButtonDblClick,
                                          QEvent::Wheel,
                                          QEvent::ContextMenu,
                                          QEvent::TouchBegin,
                                          QEvent::TouchUpdate,
                                          QEvent::TouchEnd,
                                          QEvent::NativeGesture,
                                          QEvent::TabletPress,
                                          QEvent::TabletMove,
                                          QEvent::TabletRelease,
                                          QEvent::DragEnter,
                                          QEvent::DragMove,
                                          QEvent::Drop};

TEST_F(DropWaitingInput, whatTheUserDidIsDropped) {
  for (const QEvent::Type type : kInput)
    post(type);
  QCoreApplication::postEvent(&listener, new QKeyEvent(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier));
  dropWaitingInput();
  EXPECT_EQ(std::vector<QEvent::Type>{}, listener.seen);
  QCoreApplication::processEvents();
  EXPECT_EQ(std::vector<QEvent::Type>{}, listener.seen) << "it does not wait any longer";
}

TEST_F(DropWaitingInput, restIsDeliveredInItsOrder) {
  post(QEvent::User);
  post(QEvent::MouseButtonPress);
  post(QEvent::Close);
  dropWaitingInput();
  EXPECT_EQ((std::vector<QEvent::Type>{QEvent::User, QEvent::Close}), listener.seen);
}

TEST_F(DropWaitingInput, laterInputIsDelivered) {
  dropWaitingInput();
  for (const QEvent::Type type : kInput)
    post(type);
  QCoreApplication::processEvents();
  EXPECT_EQ(kInput, listener.seen);
}

TEST_F(DropWaitingInput, errorOfAHandlerDoesNotKeepItDropping) {
  listener.onEvent = [] { throw RuntimeError(57, "handler", "went wrong"); };
  post(QEvent::User);
  dropWaitingInput();
  EXPECT_EQ(std::vector<int>{57}, test::takeEscapedNumbers());
  listener.onEvent = [] {};
  post(QEvent::Wheel);
  QCoreApplication::processEvents();
  EXPECT_EQ((std::vector<QEvent::Type>{QEvent::User, QEvent::Wheel}), listener.seen);
}

TEST_F(DropWaitingInput, keyThatComesUpIsNoLongerHeld) {
  const platform::QtKeyboard keyboard;
  for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Tab}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&listener, &press);
    QCoreApplication::postEvent(&listener, new QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier));
  }
  ASSERT_TRUE(keyboard.isDown(host::VirtualKey::tab));
  dropWaitingInput();
  EXPECT_FALSE(keyboard.isDown(host::VirtualKey::shift));
  EXPECT_FALSE(keyboard.isDown(host::VirtualKey::tab));
  EXPECT_EQ((std::vector<QEvent::Type>{QEvent::KeyPress, QEvent::KeyPress}), listener.seen);
}

} // namespace

} // namespace imex
