#pragma once

#include "records/LineItemRecord.h"

#include <QAbstractTableModel>
#include <QUndoCommand>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace imex::desk {

/// One line item of a document, its texts in the order of the table's columns. The records of an import are copied,
/// because each read of one of them is traced.
struct LineItem {
  static constexpr std::size_t kColumns = 10;

  LineItem() = default;
  explicit LineItem(const LineItemRecord& record);

  std::array<std::string, kColumns> texts;
};

/// The table of a document's line items.
class LineItemTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Shows the first `columnCount` columns: an order has one price column and six in all, the others have ten.
  explicit LineItemTable(int columnCount, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

  void append(const std::vector<LineItem>& items);
  void removeLast(std::size_t count);

 private:
  int m_columnCount;
  std::vector<LineItem> m_items;
};

/// An insert of line items at the end of a table, to be undone as a whole: "insert of 7 lines".
class InsertLineItems : public QUndoCommand {
 public:
  /// The table outlives the command.
  InsertLineItems(LineItemTable& table, std::vector<LineItem> items);

  void redo() override { m_table.append(m_items); }
  void undo() override { m_table.removeLast(m_items.size()); }

 private:
  LineItemTable& m_table;
  std::vector<LineItem> m_items;
};

} // namespace imex::desk
