#pragma once

#include "platform/qt/QtGrid.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace imex::host {

inline std::ostream& operator<<(std::ostream& stream, GridCell cell) {
  return stream << '(' << cell.row << ", " << cell.column << ')';
}

inline std::ostream& operator<<(std::ostream& stream, GridSize size) {
  return stream << size.rows << " x " << size.columns;
}

} // namespace imex::host

namespace imex::test {

using host::GridCell;
using host::GridSize;

/// A grid of 6 rows and 4 columns on the screen, with its name in every cell: "r2c3". It keeps the events of the cells
/// with the cell that was current then: "leave 1,1", "enter 1,2".
class GridTest : public testing::Test {
 protected:
  GridTest() {
    cells.setSize({6, 4});
    for (int row = 0; row < 6; ++row)
      for (int column = 0; column < 4; ++column)
        cells.setText({row, column}, "r" + std::to_string(row) + "c" + std::to_string(column));
    cells.leaveCell.connect([this] { note("leave"); });
    cells.enterCell.connect([this] { note("enter"); });
    grid.resize(600, 400);
    grid.show();
    grid.activateWindow();
    grid.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&grid));
    QApplication::processEvents();
  }

  void note(const std::string& what) {
    const GridCell cell = cells.current();
    events.push_back(what + ' ' + std::to_string(cell.row) + ',' + std::to_string(cell.column));
  }

  std::vector<std::string> takeEvents() { return std::exchange(events, {}); }

  /// The middle of a cell in the view's own area.
  QPoint middle(GridCell cell) const {
    return grid.visualRect(grid.model()->index(cell.row - 1, cell.column - 1)).center();
  }

  void click(GridCell cell, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(grid.viewport(), button, Qt::NoModifier, middle(cell));
  }

  platform::QtGrid grid;
  host::Grid& cells = grid.cells();
  host::GridLayout& layout = cells.layout();
  std::vector<std::string> events;
};

using Events = std::vector<std::string>;

} // namespace imex::test
