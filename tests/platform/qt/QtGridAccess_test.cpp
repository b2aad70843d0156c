#include "GridTest.h"

#include <QAccessible>
#include <QAccessibleInterface>

namespace {

using namespace imex::test;

/// What a screen reader is told of the grid.
class QtGridAccess : public GridTest {
 protected:
  QtGridAccess() { grid.setAccessibleName(QStringLiteral("Rows of the file")); }

  QAccessibleInterface& view() { return *QAccessible::queryAccessibleInterface(&grid); }
  QAccessibleTableInterface& table() { return *view().tableInterface(); }

  std::string textAt(int row, int column, QAccessible::Text text) {
    return table().cellAt(row, column)->text(text).toStdString();
  }
};

TEST_F(QtGridAccess, isATableOfItsRecordCells) {
  EXPECT_EQ(QAccessible::Table, view().role());
  EXPECT_EQ(QStringLiteral("Rows of the file"), view().text(QAccessible::Name));
  ASSERT_NE(nullptr, view().tableInterface());
  EXPECT_EQ(5, table().rowCount());
  EXPECT_EQ(3, table().columnCount());
  EXPECT_EQ("r1c1", textAt(0, 0, QAccessible::Name));
  EXPECT_EQ("r5c3", textAt(4, 2, QAccessible::Name));
}

TEST_F(QtGridAccess, fixedCells_areTheHeaders) {
  EXPECT_EQ(QStringLiteral("r0c2"), table().columnDescription(1));
  EXPECT_EQ(QStringLiteral("r3c0"), table().rowDescription(2));
  // The headers are the first row and the first column of the table's children.
  constexpr int kInRow = 4;
  EXPECT_EQ(QAccessible::ColumnHeader, view().child(2)->role());
  EXPECT_EQ(QStringLiteral("r0c2"), view().child(2)->text(QAccessible::Name));
  EXPECT_EQ(QAccessible::RowHeader, view().child(3 * kInRow)->role());
  EXPECT_EQ(QStringLiteral("r3c0"), view().child(3 * kInRow)->text(QAccessible::Name));
}

TEST_F(QtGridAccess, aRowsMessage_isToldWithEachOfItsCells) {
  cells.setText({2, 3}, "First error.\r\nSecond error.\r\n");
  EXPECT_EQ("", textAt(1, 0, QAccessible::Description));
  grid.setMessageColumn(3);
  for (int column = 0; column < 3; ++column)
    EXPECT_EQ("First error.\nSecond error.", textAt(1, column, QAccessible::Description)) << column;
  cells.setText({1, 3}, "");
  EXPECT_EQ("", textAt(0, 0, QAccessible::Description));
  grid.setMessageColumn(-1);
  EXPECT_EQ("", textAt(1, 0, QAccessible::Description));
}

TEST_F(QtGridAccess, aMessageColumnThatIsNotThere_isNone) {
  grid.setMessageColumn(4);
  EXPECT_EQ("", textAt(1, 0, QAccessible::Description));
}

TEST_F(QtGridAccess, theCurrentCell_isTheOneWithTheFocus) {
  QTest::keyClick(&grid, Qt::Key_Down);
  ASSERT_NE(nullptr, view().focusChild());
  EXPECT_EQ(QStringLiteral("r2c1"), view().focusChild()->text(QAccessible::Name));
  EXPECT_TRUE(table().cellAt(1, 0)->state().focused);
  EXPECT_FALSE(table().cellAt(0, 0)->state().focused);
  cells.setCurrent({4, 3});
  EXPECT_EQ(QStringLiteral("r4c3"), view().focusChild()->text(QAccessible::Name));
}

TEST_F(QtGridAccess, aMoveByTheScreenReader_isAMoveOfTheUser) {
  grid.selectionModel()->setCurrentIndex(grid.model()->index(2, 1), QItemSelectionModel::NoUpdate);
  EXPECT_EQ((GridCell{3, 2}), cells.current());
  EXPECT_EQ((Events{"leave 1,1", "enter 3,2"}), events);
}

} // namespace
