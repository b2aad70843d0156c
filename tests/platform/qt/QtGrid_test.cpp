#include "platform/qt/QtGrid.h"

#include "GridTest.h"
#include "support/raised.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <limits>

namespace {

using namespace imex::test;
using imex::platform::QtGrid;
using imex::platform::twipsPerPixel;

int twips(const QWidget& widget, int pixels) {
  return static_cast<int>(pixels * twipsPerPixel(widget));
}

// --- Cells ----------------------------------------------------------------------------------------------------------

class QtGridCells : public GridTest {};

TEST_F(QtGridCells, aNewGrid_hasTwoRowsAndTwoColumns) {
  QtGrid other;
  EXPECT_EQ((GridSize{2, 2}), other.cells().size());
  EXPECT_EQ((GridCell{1, 1}), other.cells().current());
  EXPECT_EQ("", other.cells().text({1, 1}));
}

TEST_F(QtGridCells, texts_areThoseOfTheTableAndItsHeaders) {
  EXPECT_EQ("r3c2", cells.text({3, 2}));
  const QAbstractItemModel& table = *grid.model();
  EXPECT_EQ(5, table.rowCount());
  EXPECT_EQ(3, table.columnCount());
  EXPECT_EQ(QStringLiteral("r3c2"), table.index(2, 1).data());
  EXPECT_EQ(QStringLiteral("r0c3"), table.headerData(2, Qt::Horizontal));
  EXPECT_EQ(QStringLiteral("r5c0"), table.headerData(4, Qt::Vertical));
}

TEST_F(QtGridCells, aCellOutside_isError9) {
  for (const GridCell cell : {GridCell{-1, 1}, GridCell{6, 1}, GridCell{1, -1}, GridCell{1, 4}}) {
    EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(cells.text(cell)); })) << cell;
    EXPECT_EQ(9, raisedNumber([&] { cells.setText(cell, "x"); })) << cell;
    EXPECT_EQ(9, raisedNumber([&] { cells.setCurrent(cell); })) << cell;
    EXPECT_EQ(9, raisedNumber([&] { layout.showFirst(cell); })) << cell;
  }
  for (const GridCell cell : {GridCell{0, 0}, GridCell{5, 3}})
    EXPECT_EQ(0, raisedNumber([&] { cells.setText(cell, "x"); })) << cell;
}

TEST_F(QtGridCells, severalTexts_areSetToTheRightOfACell) {
  const std::vector<std::string_view> texts{"a", "", "c"};
  cells.setTexts({2, 1}, texts);
  EXPECT_EQ("r2c0", cells.text({2, 0}));
  EXPECT_EQ("a", cells.text({2, 1}));
  EXPECT_EQ("", cells.text({2, 2}));
  EXPECT_EQ("c", cells.text({2, 3}));
  EXPECT_EQ("r3c1", cells.text({3, 1}));
  EXPECT_EQ("r2c0ac", cells.texts(2).bytes);
}

TEST_F(QtGridCells, moreTextsThanCells_areError9AndChangeNothing) {
  const std::vector<std::string_view> texts{"a", "b", "c"};
  EXPECT_EQ(9, raisedNumber([&] { cells.setTexts({2, 2}, texts); }));
  EXPECT_EQ(9, raisedNumber([&] { cells.setTexts({6, 0}, texts); }));
  EXPECT_EQ(9, raisedNumber([&] { cells.setTexts({2, -1}, texts); }));
  EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(cells.texts(6)); }));
  EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(cells.texts(-1)); }));
  EXPECT_EQ("r2c2", cells.text({2, 2}));
  EXPECT_EQ("r2c3", cells.text({2, 3}));
}

TEST_F(QtGridCells, aFixedCell_cannotBecomeCurrent) {
  cells.setCurrent({2, 2});
  for (const GridCell cell : {GridCell{0, 1}, GridCell{1, 0}, GridCell{0, 0}})
    EXPECT_EQ(9, raisedNumber([&] { cells.setCurrent(cell); })) << cell;
  EXPECT_EQ((GridCell{2, 2}), cells.current());
}

TEST_F(QtGridCells, aSizeWithoutARowOrAColumn_isError5) {
  EXPECT_EQ(5, raisedNumber([&] { cells.setSize({0, 4}); }));
  EXPECT_EQ(5, raisedNumber([&] { cells.setSize({6, 0}); }));
  EXPECT_EQ(5, raisedNumber([&] { cells.setSize({-1, 4}); }));
  EXPECT_EQ((GridSize{6, 4}), cells.size());
  EXPECT_EQ("r5c3", cells.text({5, 3}));
  cells.setSize({1, 1});
  EXPECT_EQ((GridSize{1, 1}), cells.size());
}

TEST_F(QtGridCells, sizesOfTheLargestFile_areTaken) {
  for (const int rows : {32'767, 32'768, 32'769}) {
    cells.setSize({rows, 26});
    cells.setText({rows - 1, 25}, "last");
    EXPECT_EQ("last", cells.text({rows - 1, 25}));
    EXPECT_EQ(9, raisedNumber([&] { cells.setText({rows, 25}, "x"); }));
  }
}

TEST_F(QtGridCells, aLargerGrid_keepsItsTextsAndAddsEmptyCells) {
  cells.setSize({7, 5});
  EXPECT_EQ("r5c3", cells.text({5, 3}));
  EXPECT_EQ("", cells.text({6, 3}));
  EXPECT_EQ("", cells.text({5, 4}));
}

TEST_F(QtGridCells, aSmallerGrid_movesACurrentCellThatIsGone) {
  cells.setCurrent({5, 3});
  cells.setSize({4, 4});
  EXPECT_EQ((GridCell{3, 3}), cells.current());
  cells.setSize({4, 2});
  EXPECT_EQ((GridCell{3, 1}), cells.current());
  cells.setSize({1, 2});
  EXPECT_EQ((GridCell{0, 1}), cells.current());
  cells.setSize({3, 3});
  EXPECT_EQ((GridCell{1, 1}), cells.current());
  EXPECT_EQ(Events{}, events);
}

TEST_F(QtGridCells, clearing_leavesSizeLayoutAndCurrentCell) {
  cells.setCurrent({3, 2});
  layout.setColumnWidth(1, 1500);
  cells.clear();
  EXPECT_EQ("", cells.text({0, 1}));
  EXPECT_EQ("", cells.text({5, 3}));
  EXPECT_EQ((GridSize{6, 4}), cells.size());
  EXPECT_EQ((GridCell{3, 2}), cells.current());
  EXPECT_EQ(1500, layout.columnWidth(1));
}

TEST_F(QtGridCells, aRemovedRow_letsThoseBelowMoveUpWithTheirHeights) {
  layout.setRowHeight(4, 900);
  cells.setCurrent({2, 2});
  cells.removeRow(3);
  EXPECT_EQ((GridSize{5, 4}), cells.size());
  EXPECT_EQ("r2c1", cells.text({2, 1}));
  EXPECT_EQ("r4c1", cells.text({3, 1}));
  EXPECT_EQ("r4c0", cells.text({3, 0}));
  EXPECT_EQ(900, layout.rowHeight(3));
  EXPECT_EQ(layout.rowHeight(0), layout.rowHeight(4));
  EXPECT_EQ((GridCell{2, 2}), cells.current());
  EXPECT_EQ(twips(grid, 60), layout.rowTop(4) - layout.rowTop(3));
}

TEST_F(QtGridCells, removingTheCurrentRow_keepsThePositionOrMovesToTheLastRow) {
  cells.setCurrent({4, 3});
  cells.removeRow(4);
  EXPECT_EQ((GridCell{4, 3}), cells.current());
  cells.removeRow(4);
  EXPECT_EQ((GridCell{3, 3}), cells.current());
  EXPECT_EQ(Events{}, events);
}

TEST_F(QtGridCells, removingTheFixedRowOrOneOutside_isError9) {
  for (const int row : {-1, 0, 6})
    EXPECT_EQ(9, raisedNumber([&] { cells.removeRow(row); })) << row;
  EXPECT_EQ((GridSize{6, 4}), cells.size());
  cells.removeRow(5);
  cells.removeRow(1);
  EXPECT_EQ((GridSize{4, 4}), cells.size());
}

TEST_F(QtGridCells, theOnlyRecordRow_canBeRemovedAndAdded) {
  cells.setSize({2, 4});
  cells.removeRow(1);
  EXPECT_EQ((GridSize{1, 4}), cells.size());
  EXPECT_EQ(0, cells.current().row);
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Events{}, events);
  cells.setSize({2, 4});
  EXPECT_EQ((GridCell{1, 1}), cells.current());
  EXPECT_EQ("", cells.text({1, 1}));
}

TEST_F(QtGridCells, aTextThatChanges_isTold) {
  int told = 0;
  QObject::connect(grid.model(), &QAbstractItemModel::dataChanged, &grid, [&] { ++told; });
  cells.setText({1, 1}, "a");
  cells.setText({2, 2}, "b");
  QApplication::processEvents();
  EXPECT_EQ(1, told);
}

// --- Moves ----------------------------------------------------------------------------------------------------------

class QtGridMoves : public GridTest {};

struct Move {
  const char* name;
  Qt::Key key;
  Qt::KeyboardModifiers modifiers;
  GridCell from;
  GridCell to;
};

void PrintTo(const Move& move, std::ostream* stream) {
  *stream << move.name;
}

class QtGridKeys : public GridTest, public testing::WithParamInterface<Move> {};

TEST_P(QtGridKeys, eachMove_raisesLeaveAndEnterOnce) {
  const Move& move = GetParam();
  cells.setCurrent(move.from);
  QTest::keyClick(&grid, move.key, move.modifiers);
  EXPECT_EQ(move.to, cells.current());
  const auto text = [](GridCell cell) { return std::to_string(cell.row) + ',' + std::to_string(cell.column); };
  const Events moved{"leave " + text(move.from), "enter " + text(move.to)};
  EXPECT_EQ(move.from == move.to ? Events{} : moved, events);
}

constexpr auto kNone = Qt::NoModifier;
constexpr auto kCtrl = Qt::ControlModifier;

INSTANTIATE_TEST_SUITE_P(
    All, QtGridKeys,
    testing::Values(
        Move{"right", Qt::Key_Right, kNone, {2, 2}, {2, 3}}, Move{"left", Qt::Key_Left, kNone, {2, 2}, {2, 1}},
        Move{"up", Qt::Key_Up, kNone, {2, 2}, {1, 2}}, Move{"down", Qt::Key_Down, kNone, {2, 2}, {3, 2}},
        Move{"shiftRight", Qt::Key_Right, Qt::ShiftModifier, {2, 2}, {2, 3}},
        Move{"keypadRight", Qt::Key_Right, Qt::KeypadModifier, {2, 2}, {2, 3}},
        Move{"home", Qt::Key_Home, kNone, {2, 3}, {2, 1}}, Move{"end", Qt::Key_End, kNone, {2, 1}, {2, 3}},
        Move{"ctrlHome", Qt::Key_Home, kCtrl, {4, 3}, {1, 1}}, Move{"ctrlEnd", Qt::Key_End, kCtrl, {2, 1}, {5, 3}},
        Move{"ctrlRight", Qt::Key_Right, kCtrl, {2, 1}, {2, 3}}, Move{"ctrlLeft", Qt::Key_Left, kCtrl, {2, 3}, {2, 1}},
        Move{"ctrlDown", Qt::Key_Down, kCtrl, {2, 2}, {5, 2}}, Move{"ctrlUp", Qt::Key_Up, kCtrl, {4, 2}, {1, 2}},
        Move{"pageDown", Qt::Key_PageDown, kNone, {1, 2}, {5, 2}},
        Move{"pageUp", Qt::Key_PageUp, kNone, {5, 2}, {1, 2}},
        Move{"ctrlPageDown", Qt::Key_PageDown, kCtrl, {2, 2}, {5, 2}},
        Move{"ctrlPageUp", Qt::Key_PageUp, kCtrl, {4, 2}, {1, 2}},
        Move{"rightAtTheEdge", Qt::Key_Right, kNone, {2, 3}, {2, 3}},
        Move{"leftAtTheEdge", Qt::Key_Left, kNone, {2, 1}, {2, 1}},
        Move{"upAtTheEdge", Qt::Key_Up, kNone, {1, 2}, {1, 2}},
        Move{"downAtTheEdge", Qt::Key_Down, kNone, {5, 2}, {5, 2}},
        Move{"homeAtTheEdge", Qt::Key_Home, kNone, {2, 1}, {2, 1}},
        Move{"pageDownAtTheEdge", Qt::Key_PageDown, kNone, {5, 2}, {5, 2}},
        Move{"ctrlEndAtTheEdge", Qt::Key_End, kCtrl, {5, 3}, {5, 3}},
        Move{"altRight", Qt::Key_Right, Qt::AltModifier, {2, 2}, {2, 2}},
        Move{"aCharacter", Qt::Key_R, kNone, {2, 2}, {2, 2}}, Move{"enter", Qt::Key_Return, kNone, {2, 2}, {2, 2}},
        Move{"delete", Qt::Key_Delete, kNone, {2, 2}, {2, 2}}, Move{"f2", Qt::Key_F2, kNone, {2, 2}, {2, 2}}),
    [](const auto& test) { return test.param.name; });

TEST_F(QtGridMoves, aPageIsWhatIsSeen) {
  cells.setSize({1000, 4});
  cells.setCurrent({1, 2});
  QTest::keyClick(&grid, Qt::Key_PageDown);
  const int row = cells.current().row;
  EXPECT_GT(row, 10);
  EXPECT_LT(row, 40);
  EXPECT_EQ(2, cells.current().column);
}

TEST_F(QtGridMoves, byCode_raiseNothing) {
  cells.setCurrent({3, 3});
  EXPECT_EQ((GridCell{3, 3}), cells.current());
  EXPECT_EQ(Events{}, events);
}

TEST_F(QtGridMoves, aClick_movesToTheCell) {
  click({3, 2});
  EXPECT_EQ((Events{"leave 1,1", "enter 3,2"}), takeEvents());
  click({3, 2});
  EXPECT_EQ(Events{}, takeEvents());
}

TEST_F(QtGridMoves, anotherButtonOrBesideTheCells_movesNothing) {
  click({3, 2}, Qt::RightButton);
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, kNone, QPoint(590, 390));
  EXPECT_EQ((GridCell{1, 1}), cells.current());
  EXPECT_EQ(Events{}, events);
}

TEST_F(QtGridMoves, dragging_movesNoFurther) {
  QTest::mousePress(grid.viewport(), Qt::LeftButton, kNone, middle({2, 2}));
  QTest::mouseMove(grid.viewport(), middle({4, 3}));
  QTest::mouseRelease(grid.viewport(), Qt::LeftButton, kNone, middle({4, 3}));
  EXPECT_EQ((Events{"leave 1,1", "enter 2,2"}), events);
  EXPECT_TRUE(grid.selectionModel()->selectedIndexes().isEmpty());
}

TEST_F(QtGridMoves, theView_followsTheCurrentCell) {
  cells.setSize({1000, 4});
  cells.setCurrent({900, 2});
  EXPECT_TRUE(grid.viewport()->rect().contains(middle({900, 2})));
  QTest::keyClick(&grid, Qt::Key_Home, kCtrl);
  EXPECT_TRUE(grid.viewport()->rect().contains(middle({1, 1})));
}

TEST_F(QtGridMoves, toAHiddenView_areSeenWhenItIsShown) {
  QtGrid other;
  other.cells().setSize({1000, 3});
  other.cells().setCurrent({700, 1});
  other.resize(300, 200);
  other.show();
  QApplication::processEvents();
  EXPECT_TRUE(other.viewport()->rect().contains(other.visualRect(other.model()->index(699, 0)).center()));
}

TEST_F(QtGridMoves, aRowThatAHandlerRemoves_isNotEntered) {
  cells.leaveCell.connect([this] { cells.setSize({3, 4}); });
  QTest::keyClick(&grid, Qt::Key_End, kCtrl);
  EXPECT_EQ((GridCell{2, 3}), cells.current());
  EXPECT_EQ((Events{"leave 1,1", "enter 2,3"}), events);
}

TEST_F(QtGridMoves, inARightToLeftProgram_rightIsStillTheNextColumn) {
  QWidget form;
  form.setLayoutDirection(Qt::RightToLeft);
  QtGrid other(&form);
  other.cells().setSize({3, 3});
  form.show();
  QTest::keyClick(&other, Qt::Key_Right);
  EXPECT_EQ((GridCell{1, 2}), other.cells().current());
  EXPECT_LT(other.visualRect(other.model()->index(0, 0)).x(), other.visualRect(other.model()->index(0, 1)).x());
}

// --- What the control hears -----------------------------------------------------------------------------------------

class QtGridSignals : public GridTest {
 protected:
  QtGridSignals() {
    QObject::connect(&grid, &QtGrid::mousePressed, &grid,
                     [this](QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
                       points.push_back(point);
                       buttons.push_back(button);
                       note("press" + std::to_string(modifiers.toInt()));
                     });
    QObject::connect(&grid, &QtGrid::cellDoubleClicked, &grid, [this] { note("double"); });
    QObject::connect(&grid, &QtGrid::focusChanged, &grid, [this](bool hasFocus) { note(hasFocus ? "in" : "out"); });
  }

  void acceptKeys() {
    QObject::connect(&grid, &QtGrid::keyPressed, &grid, [this](QKeyEvent& event) {
      keys.push_back(event.key());
      event.accept();
    });
  }

  std::vector<QPoint> points;
  std::vector<Qt::MouseButton> buttons;
  std::vector<int> keys;
};

TEST_F(QtGridSignals, everyKey_isHeardFirstAndCanBeKept) {
  acceptKeys();
  for (const auto key : {Qt::Key_A, Qt::Key_Return, Qt::Key_Delete, Qt::Key_Right, Qt::Key_Tab, Qt::Key_Backtab})
    QTest::keyClick(&grid, key);
  EXPECT_EQ((std::vector<int>{Qt::Key_A, Qt::Key_Return, Qt::Key_Delete, Qt::Key_Right, Qt::Key_Tab, Qt::Key_Backtab}),
            keys);
  EXPECT_EQ((GridCell{1, 1}), cells.current());
  EXPECT_TRUE(grid.hasFocus());
  EXPECT_EQ(Events{}, events);
}

TEST_F(QtGridSignals, aPress_isHeardBeforeTheMove) {
  click({2, 3});
  EXPECT_EQ((Events{"press0 1,1", "leave 1,1", "enter 2,3"}), events);
  EXPECT_EQ((std::vector{Qt::LeftButton}), buttons);
  EXPECT_EQ((GridCell{2, 3}), grid.cellAt(points.at(0)));
}

TEST_F(QtGridSignals, aPressWithShiftAndAnotherButton_isHeard) {
  QTest::mouseClick(grid.viewport(), Qt::RightButton, Qt::ShiftModifier, middle({2, 3}));
  EXPECT_EQ((std::vector{Qt::RightButton}), buttons);
  EXPECT_EQ((Events{"press" + std::to_string(Qt::KeyboardModifiers(Qt::ShiftModifier).toInt()) + " 1,1"}), events);
}

TEST_F(QtGridSignals, aPressOnARowNumber_isHeardInTheGridsOwnMeasures) {
  const QHeaderView& numbers = *grid.verticalHeader();
  const QPoint point(5, numbers.sectionViewportPosition(2) + 3);
  QTest::mouseClick(numbers.viewport(), Qt::LeftButton, kNone, point);
  ASSERT_EQ(1u, points.size());
  EXPECT_EQ((GridCell{3, 0}), grid.cellAt(points[0]));
  EXPECT_LT(twips(grid, points[0].x()), layout.columnWidth(0));
  EXPECT_EQ(layout.rowTop(3) + twips(grid, 3), twips(grid, points[0].y()));
  EXPECT_EQ((GridCell{1, 1}), cells.current());
}

TEST_F(QtGridSignals, aPressOnATitleOrTheCorner_isHeard) {
  QTest::mouseClick(grid.horizontalHeader()->viewport(), Qt::LeftButton, kNone, QPoint(20, 5));
  auto* corner = grid.findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
  ASSERT_NE(nullptr, corner);
  QTest::mouseClick(corner, Qt::LeftButton, kNone, QPoint(3, 3));
  ASSERT_EQ(2u, points.size());
  EXPECT_EQ((GridCell{0, 1}), grid.cellAt(points[0]));
  EXPECT_EQ((GridCell{0, 0}), grid.cellAt(points[1]));
  EXPECT_EQ(QPoint(3, 3), points[1]);
}

TEST_F(QtGridSignals, aDoubleClick_isHeardOnTheCellThatWasPressed) {
  click({2, 2});
  takeEvents();
  QTest::mouseDClick(grid.viewport(), Qt::LeftButton, kNone, middle({2, 2}));
  EXPECT_EQ("double 2,2", events.back());
  EXPECT_EQ(1, std::count(events.begin(), events.end(), "double 2,2"));
}

TEST_F(QtGridSignals, aDoubleClickBesideTheCells_isNone) {
  QTest::mouseDClick(grid.viewport(), Qt::LeftButton, kNone, QPoint(590, 390));
  EXPECT_EQ(0, std::count(events.begin(), events.end(), "double 1,1"));
}

TEST_F(QtGridSignals, theFocus_isHeard) {
  grid.clearFocus();
  EXPECT_EQ((Events{"out 1,1"}), takeEvents());
  click({1, 1});
  EXPECT_EQ((Events{"in 1,1", "press0 1,1"}), takeEvents());
}

TEST_F(QtGridSignals, aPressOnARowNumber_givesTheGridTheFocus) {
  grid.clearFocus();
  QTest::mouseClick(grid.verticalHeader()->viewport(), Qt::LeftButton, kNone, QPoint(5, 5));
  EXPECT_TRUE(grid.hasFocus());
}

TEST(QtGridTab, nobodyKeeps_leavesTheGridAndIsHeardOnce) {
  QWidget form;
  QVBoxLayout column(&form);
  QtGrid grid;
  QLineEdit line;
  column.addWidget(&grid);
  column.addWidget(&line);
  int heard = 0;
  QObject::connect(&grid, &QtGrid::keyPressed, &grid, [&](QKeyEvent&) { ++heard; });
  form.show();
  form.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_Tab);
  EXPECT_TRUE(line.hasFocus());
  QTest::keyClick(&line, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(grid.hasFocus());
  EXPECT_EQ(1, heard);
}

TEST(QtGridKeysForOthers, goOnToTheParent) {
  class Form : public QWidget {
   public:
    void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
    std::vector<int> keys;
  };
  Form form;
  QtGrid grid(&form);
  form.show();
  QTest::keyClick(&grid, Qt::Key_Escape);
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(std::vector<int>{Qt::Key_Escape}, form.keys);
}

// --- Layout ---------------------------------------------------------------------------------------------------------

class QtGridLayout : public GridTest {};

TEST_F(QtGridLayout, twipsAndPixels_followTheScreensResolution) {
  EXPECT_DOUBLE_EQ(1440.0 / grid.logicalDpiX(), twipsPerPixel(grid));
  layout.setColumnWidth(1, twips(grid, 80));
  EXPECT_EQ(80, grid.columnWidth(0));
  layout.setRowHeight(2, twips(grid, 40));
  EXPECT_EQ(twips(grid, 40), layout.rowTop(3) - layout.rowTop(2));
  EXPECT_EQ(40, grid.rowHeight(1));
}

TEST_F(QtGridLayout, measures_areKeptToTheTwip) {
  for (const int measure : {0, 1, 399, 400, 401, 32'767, 32'768}) {
    layout.setColumnWidth(1, measure);
    layout.setRowHeight(1, measure);
    EXPECT_EQ(measure, layout.columnWidth(1));
    EXPECT_EQ(measure, layout.rowHeight(1));
  }
}

TEST_F(QtGridLayout, theFixedColumnAndRow_areAsLargeAsTheyAreSet) {
  layout.setColumnWidth(0, 400);
  layout.setRowHeight(0, 450);
  QApplication::processEvents();
  EXPECT_EQ(400, layout.columnWidth(0));
  EXPECT_EQ(27, grid.verticalHeader()->width()); // 26 would cut
  EXPECT_EQ(30, grid.horizontalHeader()->height());
  EXPECT_EQ(450, layout.rowTop(1));
  EXPECT_EQ(0, layout.rowTop(0));
}

TEST_F(QtGridLayout, aRowOrColumnOutside_isError9) {
  for (const int row : {-1, 6}) {
    EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(layout.rowHeight(row)); }));
    EXPECT_EQ(9, raisedNumber([&] { layout.setRowHeight(row, 300); }));
    EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(layout.rowTop(row)); }));
  }
  for (const int column : {-1, 4}) {
    EXPECT_EQ(9, raisedNumber([&] { static_cast<void>(layout.columnWidth(column)); }));
    EXPECT_EQ(9, raisedNumber([&] { layout.setColumnWidth(column, 300); }));
    EXPECT_EQ(9, raisedNumber([&] { layout.alignLeft(column); }));
  }
  EXPECT_EQ(0, raisedNumber([&] {
              layout.setRowHeight(5, 300);
              layout.setColumnWidth(3, 300);
              layout.alignLeft(3);
            }));
}

TEST_F(QtGridLayout, aNegativeMeasure_isError5AndChangesNothing) {
  layout.setRowHeight(1, 300);
  layout.setColumnWidth(1, 300);
  EXPECT_EQ(5, raisedNumber([&] { layout.setRowHeight(1, -1); }));
  EXPECT_EQ(5, raisedNumber([&] { layout.setColumnWidth(1, -1); }));
  EXPECT_EQ(5, raisedNumber([&] { layout.setAllRowHeights(-1); }));
  EXPECT_EQ(300, layout.rowHeight(1));
  EXPECT_EQ(300, layout.columnWidth(1));
}

TEST_F(QtGridLayout, allHeights_areTheSameAsEachSetByItself) {
  layout.setRowHeight(3, 900);
  layout.setAllRowHeights(450);
  for (int row = 0; row < 6; ++row)
    EXPECT_EQ(450, layout.rowHeight(row));
  EXPECT_EQ(450 * 5, layout.rowTop(5));
  layout.setRowHeight(2, 600);
  EXPECT_EQ(450 * 5 + 150, layout.rowTop(5));
  cells.setSize({8, 4});
  EXPECT_EQ(450, layout.rowHeight(7));
  EXPECT_EQ(450 * 7 + 150, layout.rowTop(7));
}

TEST_F(QtGridLayout, aHeightThatWasJustSet_movesUpWithItsRow) {
  layout.setAllRowHeights(450);
  layout.setRowHeight(4, 900);
  cells.removeRow(3);
  EXPECT_EQ(900, layout.rowHeight(3));
  EXPECT_EQ(450, layout.rowHeight(4));
  EXPECT_EQ(450 * 3 + 900, layout.rowTop(4));
  EXPECT_EQ(2 * grid.rowHeight(1), grid.rowHeight(2)) << "the view's own rows begin below the fixed one";
  EXPECT_EQ(grid.rowHeight(1), grid.rowHeight(3));
}

TEST_F(QtGridLayout, heightsOfManyRowsOneByOne_areAllThere) {
  constexpr int kRows = 32'768;
  cells.setSize({kRows, 4});
  layout.setAllRowHeights(300);
  for (int row = 1; row < kRows; ++row)
    layout.setRowHeight(row, 2 * layout.rowHeight(0));
  EXPECT_EQ(300 + 600 * 50, layout.rowTop(51));
  layout.showFirst({kRows - 1, 1});
  EXPECT_EQ(grid.verticalScrollBar()->maximum(), grid.verticalScrollBar()->value());
}

TEST_F(QtGridLayout, tops_changeAsTheUserScrolls) {
  cells.setSize({1000, 4});
  layout.setAllRowHeights(300);
  EXPECT_EQ(300, layout.rowTop(1));
  layout.showFirst({11, 1});
  EXPECT_EQ(0, layout.rowTop(0));
  EXPECT_EQ(300, layout.rowTop(11));
  EXPECT_EQ(300 - 10 * 300, layout.rowTop(1));
}

TEST_F(QtGridLayout, showingFirst_scrollsBothWays) {
  cells.setSize({1000, 40});
  layout.showFirst({500, 20});
  EXPECT_EQ(QPoint(0, 0), grid.visualRect(grid.model()->index(499, 19)).topLeft());
  layout.showFirst({1, 1});
  EXPECT_EQ(QPoint(0, 0), grid.visualRect(grid.model()->index(0, 0)).topLeft());
  EXPECT_EQ((GridCell{1, 1}), cells.current());
}

TEST_F(QtGridLayout, aColumnThatTheUserWidens_hasItsNewWidth) {
  layout.setColumnWidth(1, twips(grid, 80));
  QWidget* header = grid.horizontalHeader()->viewport();
  const int y = header->height() / 2;
  QTest::mousePress(header, Qt::LeftButton, kNone, QPoint(79, y));
  QTest::mouseMove(header, QPoint(99, y));
  QTest::mouseRelease(header, Qt::LeftButton, kNone, QPoint(99, y));
  EXPECT_EQ(twips(grid, 100), layout.columnWidth(1));
}

TEST_F(QtGridLayout, numbers_goRightUntilTheirColumnIsAlignedLeft) {
  cells.setText({1, 2}, "-12.5");
  cells.setText({2, 2}, "12 boxes");
  const auto alignment = [&](int row) {
    return grid.model()->index(row - 1, 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
  };
  EXPECT_EQ(Qt::AlignRight | Qt::AlignVCenter, alignment(1));
  EXPECT_EQ(Qt::AlignLeft | Qt::AlignVCenter, alignment(2));
  layout.alignLeft(2);
  EXPECT_EQ(Qt::AlignLeft | Qt::AlignVCenter, alignment(1));
}

TEST_F(QtGridLayout, theMeasure_followsTheFontAndStaysWithoutKerning) {
  QFont large = grid.font();
  large.setPixelSize(40);
  large.setKerning(true);
  grid.setFont(large);
  EXPECT_EQ(40, grid.measure().font().pixelSize());
  EXPECT_FALSE(grid.font().kerning());
}

} // namespace
