#include "platform/qt/QtKeyboard.h"

#include "GridTest.h"
#include "support/raised.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>

namespace {

using namespace imex::test;
using imex::host::VirtualKey;
using imex::platform::QtKeyboard;

class QtKeyboardKeys : public testing::Test {
 protected:
  QtKeyboardKeys() {
    line.show();
    line.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&line));
    line.setFocus();
  }

  bool isTabDown() const { return keyboard.isDown(VirtualKey::tab); }
  bool isShiftDown() const { return keyboard.isDown(VirtualKey::shift); }

  QtKeyboard keyboard;
  QLineEdit line;
};

TEST_F(QtKeyboardKeys, noneIsDownAtFirst) {
  EXPECT_FALSE(isTabDown());
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, tabIsDownFromPressToRelease) {
  QTest::keyPress(&line, Qt::Key_Tab);
  EXPECT_TRUE(isTabDown());
  EXPECT_FALSE(isShiftDown());
  QTest::keyPress(&line, Qt::Key_A);
  EXPECT_TRUE(isTabDown());
  QTest::keyRelease(&line, Qt::Key_Tab);
  EXPECT_FALSE(isTabDown());
}

TEST_F(QtKeyboardKeys, shiftIsDownFromPressToRelease) {
  QTest::keyPress(&line, Qt::Key_Shift);
  EXPECT_TRUE(isShiftDown());
  EXPECT_FALSE(isTabDown());
  QTest::keyRelease(&line, Qt::Key_Shift, Qt::ShiftModifier); // as some window systems tell it
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, shiftIsDownWithAKeyThatHasIt) {
  QTest::keyPress(&line, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_TRUE(isShiftDown());
  QTest::keyRelease(&line, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, backtabIsTabWithShift) {
  QTest::keyPress(&line, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(isTabDown());
  EXPECT_TRUE(isShiftDown());
  QTest::keyRelease(&line, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_FALSE(isTabDown());
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, backtabAlone_isTabWithShiftToo) {
  QTest::keyPress(&line, Qt::Key_Backtab);
  EXPECT_TRUE(isTabDown());
  EXPECT_TRUE(isShiftDown());
  QTest::keyRelease(&line, Qt::Key_Backtab);
  EXPECT_FALSE(isTabDown());
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, areDownForWhoeverHearsThePress) {
  class Listener : public QWidget {
   public:
    explicit Listener(const QtKeyboard& all) : keys(all) { setFocusPolicy(Qt::StrongFocus); }
    bool event(QEvent* event) override {
      if (event->type() == QEvent::KeyPress)
        wasDown = keys.isDown(VirtualKey::tab) && keys.isDown(VirtualKey::shift);
      return QWidget::event(event);
    }
    const QtKeyboard& keys;
    bool wasDown = false;
  };
  Listener listener(keyboard);
  QTest::keyClick(&listener, Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_TRUE(listener.wasDown);
}

TEST_F(QtKeyboardKeys, areLetGoWhenTheApplicationIsLeft) {
  QTest::keyPress(&line, Qt::Key_Tab, Qt::ShiftModifier);
  QEvent leaving(QEvent::ApplicationDeactivate);
  QApplication::sendEvent(qApp, &leaving);
  EXPECT_FALSE(isTabDown());
  EXPECT_FALSE(isShiftDown());
}

TEST_F(QtKeyboardKeys, aKeyThatIsRepeated_staysDown) {
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
  QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Tab, Qt::NoModifier, QString(), true);
  QApplication::sendEvent(&line, &press);
  QApplication::sendEvent(&line, &repeated);
  EXPECT_TRUE(isTabDown());
}

/// A widget that keeps the keys it hears.
class Hearing : public QWidget {
 public:
  explicit Hearing(QWidget* parent = nullptr) : QWidget(parent) { setFocusPolicy(Qt::StrongFocus); }

  void keyPressEvent(QKeyEvent* event) override { note("down", *event); }
  void keyReleaseEvent(QKeyEvent* event) override { note("up", *event); }

  void note(const std::string& what, const QKeyEvent& event) {
    const std::string key = QKeySequence(event.key()).toString().toStdString();
    heard.push_back(what + ' ' + key + ' ' + std::to_string(event.modifiers().toInt()));
  }

  Events heard;
};

class QtKeyboardSent : public testing::Test {
 protected:
  QtKeyboardSent() {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setFocus();
  }

  QtKeyboard keyboard;
  Hearing window;
};

TEST_F(QtKeyboardSent, keysArePressedAndReleasedAtOnceInOrder) {
  keyboard.sendKeys("{Right}{Left}{Down}{Up}");
  EXPECT_EQ((Events{"down Right 0", "up Right 0", "down Left 0", "up Left 0", "down Down 0", "up Down 0", "down Up 0",
                    "up Up 0"}),
            window.heard);
}

TEST_F(QtKeyboardSent, keysHaveNoModifierAndLeaveTheHeldOnesDown) {
  QTest::keyPress(&window, Qt::Key_Tab, Qt::ShiftModifier);
  window.heard.clear();
  keyboard.sendKeys("{Left}");
  EXPECT_EQ((Events{"down Left 0", "up Left 0"}), window.heard);
  EXPECT_TRUE(keyboard.isDown(VirtualKey::tab));
  EXPECT_TRUE(keyboard.isDown(VirtualKey::shift));
}

TEST_F(QtKeyboardSent, noKeys_areNone) {
  keyboard.sendKeys("");
  EXPECT_EQ(Events{}, window.heard);
}

TEST_F(QtKeyboardSent, anotherText_isError5AndTypesNothing) {
  for (const char* keys : {"Right", "{Right", "{right}", "{Right}x", "{Tab}", " {Right}"})
    EXPECT_EQ(5, raisedNumber([&] { keyboard.sendKeys(keys); })) << keys;
  EXPECT_EQ(Events{}, window.heard);
}

class QtKeyboardAndGrid : public GridTest {
 protected:
  QtKeyboard keyboard;
};

TEST_F(QtKeyboardAndGrid, sentKeys_moveTheCellWithItsEvents) {
  keyboard.sendKeys("{Right}{Left}");
  EXPECT_EQ((Events{"leave 1,1", "enter 1,2", "leave 1,2", "enter 1,1"}), events);
}

} // namespace
