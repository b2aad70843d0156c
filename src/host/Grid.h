#pragma once

#include "runtime/Event.h"
#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <cstddef>
#include <cstdint>
#include <span>
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

/// The texts of a row's cells, UTF-8: their bytes one after the other, without anything between them.
struct RowTexts {
  std::string_view bytes;              ///< of all texts
  std::span<const std::uint32_t> ends; ///< where the text of each cell ends in them; cells beyond are empty

  /// The text of a cell, counted from 0; empty beyond the row.
  std::string_view operator[](int column) const {
    const auto cell = static_cast<std::size_t>(column);
    if (cell >= ends.size())
      return {};
    const std::uint32_t start = cell == 0 ? 0 : ends[cell - 1];
    return bytes.substr(start, ends[cell] - start);
  }
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

  /// The texts of a row. They are valid until the grid changes.
  virtual RowTexts texts(int row) const = 0;

  /// Sets the texts of `first` and of the cells to the right of it. A single text may be one of the grid's own. Error 9
  /// where there are more texts than cells.
  virtual void setTexts(GridCell first, std::span<const std::string_view> texts) = 0;

  /// The same for one cell.
  std::string_view text(GridCell cell) const;
  void setText(GridCell cell, std::string_view text) { setTexts(cell, {&text, 1}); }

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

inline std::string_view Grid::text(GridCell cell) const {
  const RowTexts row = texts(cell.row);
  if (cell.column < 0 || cell.column >= size().columns)
    throw RuntimeError(ErrorNumber::subscriptOutOfRange, "Grid");
  return row[cell.column];
}

} // namespace imex::host
