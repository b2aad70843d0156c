#pragma once

#include "host/Grid.h"
#include "platform/qt/GridTexts.h"

#include <QAbstractTableModel>

#include <span>
#include <string_view>
#include <vector>

namespace imex::platform {

/// The cells of a grid as a table for Qt's views and for screen readers. Row 0 of the grid is the table's horizontal
/// header and column 0 its vertical one, so a cell (r, c) of the grid is the item (r - 1, c - 1).
///
/// Cells and sizes that it is given are good: the caller has checked them. Changes of texts are not told to the views
/// one by one; the caller does that for many at a time, with tellChanges().
class GridModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit GridModel(host::GridSize size, QObject* parent = nullptr);

  host::GridSize size() const { return {m_texts.rows(), m_texts.columns()}; }
  void setSize(host::GridSize size);
  void removeGridRow(int row);
  void clear();

  std::string_view text(host::GridCell cell) const { return m_texts.text(cell.row, cell.column); }
  host::RowTexts texts(int row) const { return m_texts.texts(row); }
  void setTexts(host::GridCell first, std::span<const std::string_view> texts) {
    m_texts.setTexts(first.row, first.column, texts);
  }

  /// Tells the views that texts may have changed in this part of the grid, ends included.
  void tellChanges(host::GridCell first, host::GridCell last);

  bool isMarked(host::GridCell cell) const;
  void setMarked(host::GridCell cell, bool isMarked);

  void setLeft(int column);
  Qt::Alignment alignment(host::GridCell cell) const;

  /// The column of the messages, -1 for none.
  int messageColumn() const { return m_messageColumn; }
  void setMessageColumn(int column) { m_messageColumn = column; }

  /// Whether this is a message: a cell of that column that has text.
  bool isMessage(host::GridCell cell) const { return cell.column == m_messageColumn && !text(cell).empty(); }

  /// What the row's message says, for a screen reader at any of the row's cells; empty where there is none.
  QString rowMessage(int row) const;

  static host::GridCell cellOf(const QModelIndex& index) { return {index.row() + 1, index.column() + 1}; }

  /// An invalid one for a fixed cell.
  QModelIndex indexOf(host::GridCell cell) const { return index(cell.row - 1, cell.column - 1); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  void resizeRows(int rows);

  GridTexts m_texts;
  std::vector<host::GridCell> m_marks; ///< few: usually the current cell alone
  std::vector<bool> m_isLeft;          ///< by column
  int m_messageColumn = -1;
};

} // namespace imex::platform
