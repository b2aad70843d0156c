#pragma once

#include "host/Grid.h"
#include "platform/qt/GridCells.h"
#include "platform/qt/GridMeasures.h"
#include "platform/qt/GridModel.h"
#include "platform/qt/TextMeasure.h"
#include "platform/qt/twips.h"

#include <QPoint>
#include <QTableView>

#include <optional>

class QKeyEvent;

namespace imex::platform {

class GridDelegate;

/// A host::Grid as a widget: a table whose headers are the fixed row and the fixed column. It starts with two rows and
/// two columns.
///
///     grid->cells().setSize({lines + 1, fields + 1});
///     grid->cells().setText({1, 1}, "Ann");
///
/// Keys and mouse. The cursor keys, Home, End and the Page keys, also with Ctrl, and a press of the left mouse button
/// move the current cell; cells().leaveCell and enterCell are raised once for a move, and not for a key that cannot
/// move. So is a move by a screen reader. All else is for whoever connects to the signals: the grid itself edits
/// nothing, selects nothing, and lets keys that mean nothing to it go on to its parent. Columns run from left to right
/// in every layout direction, as they do in a file; Right is always the next column.
///
/// Errors that a handler of an event or of a signal raises leave the grid's event handling; a move is then done up to
/// where it failed.
///
/// Texts are drawn in one line, cut with dots where they are too long, or in as many lines as they have breaks. The
/// font is the widget's, without kerning and ligatures.
class QtGrid : public QTableView {
  Q_OBJECT

 public:
  explicit QtGrid(QWidget* parent = nullptr);
  ~QtGrid() override;

  /// The grid's cells, which live as long as the grid.
  host::Grid& cells() { return m_cells; }
  const host::Grid& cells() const { return m_cells; }

  /// Says which column has the messages about the rows, or with -1 that none has, as at first. A message is told apart
  /// by a bar and a tint, and a screen reader says it with every cell of its row. A column that the grid does not have
  /// is none.
  void setMessageColumn(int column);

  /// Measures texts in the font of the cells. It changes with the widget's font.
  const TextMeasure& measure() const { return m_measure; }

  /// The cell at a point, which counts in pixels from the top left corner of cell (0, 0), fixed cells included. Nothing
  /// where there is none.
  std::optional<host::GridCell> cellAt(QPoint point);

 Q_SIGNALS:
  // Connect directly.

  /// A key goes down, before the grid does anything about it. A handler that accepts the event keeps it from the grid
  /// and from all others: from moving, and for Tab from leaving the grid. It comes not accepted.
  void keyPressed(QKeyEvent& event);

  /// A mouse button goes down, on a cell or on a fixed cell, before the grid moves. `point` is as in cellAt(); times
  /// twipsPerPixel() it is in the twips of the layout. Of a double click on the current cell the second press
  /// raises nothing here.
  void mousePressed(QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

  /// The left button was pressed twice on the current cell.
  void cellDoubleClicked();

  /// The grid gained or lost the keyboard.
  void focusChanged(bool hasFocus);

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 protected Q_SLOTS:
  void updateGeometries() override;

 private:
  friend class GridCells;

  // Construction
  void setUpView();
  void setUpHeaders();

  // What the cells ask for; all is checked
  void resizeCells(host::GridSize size);
  void removeRow(int row);
  void makeCurrent(host::GridCell cell);
  void setWidth(int column, int twips);
  void setHeight(int row, int twips);
  void setHeights(int twips);
  int topOf(int row);
  void setWrap(bool isWrapped);
  void scrollToFirst(host::GridCell cell);

  // What is told to the view later, for many changes at a time
  void noteChanges(host::GridCell first, host::GridCell last);
  void refreshSoon();
  void refresh();
  void applyHeights();

  // Measures
  void applyFont();
  void followScreen();
  void applyWidths();
  void applyWidth(int column);
  void applyHeaderHeight();
  int pixels(int twips) const { return pixelsOf(twips, m_twipsPerPixel); }
  int usualHeight() const;

  // Moves
  host::GridCell nearest(host::GridCell cell) const;
  std::optional<host::GridCell> target(const QKeyEvent& event);
  host::GridCell pageTarget(CursorAction action);
  void userMoves(host::GridCell cell);
  void takeCurrent(host::GridCell cell);
  void viewMoved(const QModelIndex& index);
  void sectionMoved(int section, int pixels);
  QPoint gridPoint(const QWidget& part, QPoint point) const;

  GridModel* m_model;       ///< a child
  GridDelegate* m_delegate; ///< a child
  GridCells m_cells;
  TextMeasure m_measure;
  double m_twipsPerPixel;
  GridMeasures m_widths;
  GridMeasures m_heights;
  host::GridCell m_current{1, 1};
  bool m_isOwnChange = false; ///< what the view and its headers tell is the doing of this class

  host::GridCell m_firstChange; ///< texts from here ...
  host::GridCell m_lastChange;  ///< ... to here may have changed
  bool m_hasChanges = false;
  int m_firstHeight = 0; ///< heights from this row on ...
  int m_lastHeight = -1; ///< ... to this one are still to be applied
  bool m_isRefreshDue = false;
  bool m_areHeightsGiven = false; ///< so they do not follow the font any more
};

} // namespace imex::platform
