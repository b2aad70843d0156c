#pragma once

#include "runtime/Event.h"
#include "runtime/export.h"

#include <string_view>

namespace imex::host {

/// Rows and columns of a grid, the fixed ones included.
struct GridSize {
  int rows;    ///< at least 1
  int columns; ///< at least 1

  /// The same size.
  bool operator==(const GridSize&) const = default;
};

/// A cell, counted from 0.
struct GridCell {
  int row;    ///< 0 is the fixed one
  int column; ///< 0 is the fixed one

  /// The same cell.
  bool operator==(const GridCell&) const = default;
};

/// How a grid lays its cells out. Widths and heights are in twips, a twentieth of a point: 1440 to the inch, 15 to the
/// pixel of an ordinary screen. Error 9 for a row or a column outside, error 5 for a negative measure; the layout then
/// stays as it was.
class IMEX_EXPORT GridLayout {
 public:
  virtual ~GridLayout() = default;

  /// The width of a column.
  virtual int columnWidth(int column) const = 0;
  virtual void setColumnWidth(int column, int twips) = 0;

  /// The height of a row.
  virtual int rowHeight(int row) const = 0;
  virtual void setRowHeight(int row, int twips) = 0;

  /// Every row, the fixed one too, from now on as high as given. The same as a call for each row, but quick.
  virtual void setAllRowHeights(int twips) = 0;

  /// The top edge of a row in the view, which changes as the user scrolls: the fixed row is at 0, a row that is
  /// scrolled out above has a negative top.
  virtual int rowTop(int row) const = 0;

  /// Aligns the cells of a column to the left and the vertical centre, as they are not before that: numbers go right.
  virtual void alignLeft(int column) = 0;

  /// Whether texts that are too wide for their cell are broken into lines. False at first.
  virtual void setTextWrap(bool isWrapped) = 0;

  /// Scrolls until this cell is the first one beside the fixed row and column, as far as the grid's size allows.
  virtual void showFirst(GridCell cell) = 0;
};

/// A matrix of texts with a fixed row 0 (the header) and a fixed column 0 (the row numbers), which the user cannot
/// enter, and with one current cell. Error 9 for a cell outside; the grid then stays as it was.
class IMEX_EXPORT Grid {
 public:
  virtual ~Grid() = default;

  /// Empties every cell. Size, layout and current cell stay.
  virtual void clear() = 0;

  /// Rows and columns, the fixed ones included; one of each at least.
  virtual GridSize size() const = 0;

  /// Adds or removes rows at the bottom and columns at the right. Texts of the cells that remain stay, new cells are
  /// empty, and a current cell that is gone moves to the nearest one that is left. Error 5 for less than one row or
  /// column.
  virtual void setSize(GridSize size) = 0;

  /// The text of a cell, UTF-8. It is valid until the grid changes.
  virtual std::string_view text(GridCell cell) const = 0;
  virtual void setText(GridCell cell, std::string_view text) = 0;

  /// Removes a row; those below move up with their texts and heights. The current cell keeps its position, or moves
  /// into the new last row where that is gone. Error 9 for the fixed row.
  virtual void removeRow(int row) = 0;

  /// The current cell; it is never in the fixed row or column where there are others.
  virtual GridCell current() const = 0;

  /// Makes a cell the current one and scrolls it into view. Moves by code raise neither event below. Error 9 for a
  /// fixed cell too.
  virtual void setCurrent(GridCell cell) = 0;

  /// Sets or clears the mark of the current cell, by which the user tells where keys go. It belongs to the cell and
  /// stays with it when another one becomes current.
  virtual void setEmphasis(bool isMarked) = 0;

  /// The layout of the cells, which lives as long as the grid.
  virtual GridLayout& layout() = 0;

  /// The user moves with keys or the mouse: leaveCell with the old cell still current, then enterCell with the new one.
  Event<> leaveCell;
  Event<> enterCell;
};

} // namespace imex::host
