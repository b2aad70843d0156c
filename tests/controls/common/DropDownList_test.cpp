#include "controls/common/DropDownList.h"

#include "support/QtTest.h"
#include "support/raised.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace imex {

namespace {

using test::raisedNumber;

/// A list of three texts in a window, with nothing chosen.
class DropDownListTest : public testing::Test {
 protected:
  DropDownListTest() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(&list);
    layout->addWidget(&other);
    for (const char* text : {"Customers", "Products", "Invoices"})
      list.append(QLatin1String(text));
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    list.setFocus();
  }

  ~DropDownListTest() override {
    list.setParent(nullptr);
    other.setParent(nullptr);
  }

  void turnWheel() {
    const QPointF place = list.rect().center();
    QWheelEvent event(place, list.mapToGlobal(place), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&list, &event);
  }

  void clickItem(int row) {
    QTest::mouseClick(&list, Qt::LeftButton);
    QAbstractItemView& view = *list.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(view.window()));
    const QPoint place = view.visualRect(view.model()->index(row, 0)).center();
    QTest::mouseMove(view.viewport(), place);
    // The popup leaves the click that opened it out of account until the mouse has had time to move.
    ASSERT_TRUE(QTest::qWaitFor([&] {
      if (view.isVisible())
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
      return !view.isVisible();
    }));
  }

  QWidget window;
  DropDownList list;
  QComboBox other;
  QSignalSpy chosen{&list, &DropDownList::chosen};
};

TEST_F(DropDownListTest, firstTextIsNotChosenByItself) {
  EXPECT_EQ(-1, list.listIndex());
  EXPECT_EQ(QString(), list.currentText());
  EXPECT_EQ(3, list.count());
  EXPECT_EQ(0, chosen.count());
}

TEST_F(DropDownListTest, addingKeepsTheChosenText) {
  list.setListIndex(1);
  list.insert(0, QStringLiteral("Ballasts"));
  list.append(QStringLiteral("Commissions"));
  EXPECT_EQ(2, list.listIndex());
  EXPECT_EQ(QStringLiteral("Products"), list.currentText());
  EXPECT_EQ(QStringLiteral("Ballasts"), list.itemText(0));
  EXPECT_EQ(QStringLiteral("Commissions"), list.itemText(4));
  EXPECT_EQ(1, chosen.count());
}

TEST_F(DropDownListTest, codeAlwaysMakesItsChoiceKnown) {
  list.setListIndex(2);
  list.setListIndex(2);
  list.setListIndex(-1);
  EXPECT_EQ(3, chosen.count());
  EXPECT_EQ(-1, list.listIndex());
}

TEST_F(DropDownListTest, positionOutsideIsRefused) {
  list.setListIndex(1);
  for (const int index : {-2, 3, 32767}) {
    EXPECT_EQ(9, raisedNumber([&] { list.setListIndex(index); })) << index;
  }
  EXPECT_EQ(1, list.listIndex());
  EXPECT_EQ(1, chosen.count());
}

TEST_F(DropDownListTest, keysChooseOnceEach) {
  list.setListIndex(0);
  chosen.clear();
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(1, list.listIndex());
  EXPECT_EQ(1, chosen.count());
  QTest::keyClick(&list, Qt::Key_I);
  EXPECT_EQ(QStringLiteral("Invoices"), list.currentText());
  EXPECT_EQ(2, chosen.count());
}

TEST_F(DropDownListTest, mouseChoosesOnceAlsoTheSameText) {
  clickItem(1);
  EXPECT_EQ(1, list.listIndex());
  EXPECT_EQ(1, chosen.count());
  clickItem(1);
  EXPECT_EQ(1, list.listIndex());
  EXPECT_EQ(2, chosen.count());
}

TEST_F(DropDownListTest, wheelOverAListWithoutTheFocusScrollsPast) {
  list.setListIndex(0);
  list.clearFocus();
  turnWheel();
  EXPECT_EQ(0, list.listIndex());
  EXPECT_EQ(1, chosen.count());
}

TEST_F(DropDownListTest, wheelChooses) {
  list.setListIndex(0);
  list.setFocus();
  turnWheel();
  EXPECT_EQ(1, list.listIndex());
  EXPECT_EQ(2, chosen.count());
}

TEST_F(DropDownListTest, errorOfAHandlerLeavesTheEventOrReachesTheCaller) {
  QObject::connect(&list, &DropDownList::chosen, &list, [] { throw RuntimeError(57, "handler", "went wrong"); });
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(std::vector<int>{57}, test::takeEscapedNumbers());
  EXPECT_EQ(57, raisedNumber([&] { list.setListIndex(2); }));
  EXPECT_EQ(2, list.listIndex());
}

TEST_F(DropDownListTest, lockedListIsTheCodesAlone) {
  list.setListIndex(0);
  list.setLocked(true);
  chosen.clear();
  EXPECT_TRUE(list.isEnabled());
  EXPECT_TRUE(list.hasFocus());
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_F4, Qt::Key_Space, Qt::Key_P})
    QTest::keyClick(&list, key);
  QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
  QTest::mouseClick(&list, Qt::LeftButton);
  turnWheel();
  list.showPopup();
  EXPECT_FALSE(list.view()->isVisible());
  EXPECT_EQ(0, list.listIndex());
  EXPECT_EQ(0, chosen.count());

  list.setListIndex(2);
  EXPECT_EQ(2, list.listIndex());
  EXPECT_EQ(1, chosen.count());
}

TEST_F(DropDownListTest, focusEntersAndLeavesALockedList) {
  list.setLocked(true);
  QTest::keyClick(&list, Qt::Key_Tab);
  EXPECT_TRUE(other.hasFocus());
  QTest::mouseClick(&list, Qt::LeftButton);
  EXPECT_TRUE(list.hasFocus());
  QTest::keyClick(&list, Qt::Key_Tab);
  QTest::keyClick(&other, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(list.hasFocus());
}

TEST_F(DropDownListTest, unlockingGivesTheListBack) {
  list.setLocked(true);
  list.setLocked(false);
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(0, list.listIndex());
}

TEST_F(DropDownListTest, lockedListLooksReadOnly) {
  list.setListIndex(0);
  other.setFocus();
  const QImage open = list.grab().toImage();
  list.setLocked(true);
  EXPECT_NE(open, list.grab().toImage());
  list.setLocked(false);
  EXPECT_EQ(open, list.grab().toImage());
}

} // namespace

} // namespace imex
