#pragma once

#include "request/ImExRequest.h"

#include <QAbstractTableModel>
#include <QString>

#include <unordered_map>
#include <vector>

namespace imex::desk {

/// The lines of an import file with the messages about them. Each line is kept as its list of fields.
class RowsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Nothing to show.
  explicit RowsModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  /// Shows these lines. Null lists are empty ones; of `headers` only the first `columnCount` count. With messages, the
  /// last column shows them.
  void show(RowsPtr lines, const StringsPtr& headers, int columnCount, const ErrorBeansPtr& messages);

  /// The messages about a row, counted from 0, one a line.
  QString messages(int row) const;

  /// How many rows have messages.
  qsizetype rowsWithMessages() const { return static_cast<qsizetype>(m_messages.size()); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

 private:
  RowsPtr m_lines;
  std::vector<QString> m_headers;              ///< one a column
  std::unordered_map<int, QString> m_messages; ///< by row, counted from 0
};

} // namespace imex::desk
