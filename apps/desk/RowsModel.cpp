#include "desk/RowsModel.h"

#include "controls/common/text.h"

#include <utility>

namespace imex::desk {

void RowsModel::show(RowsPtr lines, const StringsPtr& headers, int columnCount, const ErrorBeansPtr& messages) {
  beginResetModel();
  m_lines = std::move(lines);
  m_headers.assign(static_cast<std::size_t>(columnCount), QString());
  for (std::size_t i = 0; headers && i < m_headers.size() && i < headers->count(); ++i)
    m_headers[i] = toQt(headers->item(i + 1));
  m_messages.clear();
  if (messages) {
    for (const auto& message : *messages) {
      QString& text = m_messages[message->RowNumber() - 1];
      text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + toQt(message->RowError());
    }
    if (!m_headers.empty())
      m_headers.back() = QStringLiteral("Messages");
  }
  endResetModel();
}

QString RowsModel::messages(int row) const {
  const auto found = m_messages.find(row);
  return found == m_messages.end() ? QString() : found->second;
}

int RowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !m_lines ? 0 : static_cast<int>(m_lines->count());
}

int RowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  const bool isMessage = !m_messages.empty() && index.column() == columnCount() - 1;
  if (isMessage && role == Qt::ToolTipRole)
    return messages(index.row());
  if (role != Qt::DisplayRole)
    return {};
  if (isMessage)
    return messages(index.row()).replace(u'\n', QLatin1String("; "));
  const StringsPtr& fields = m_lines->item(index.row() + 1);
  const auto column = static_cast<std::size_t>(index.column());
  return column < fields->count() ? toQt(fields->item(column + 1)) : QString();
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation == Qt::Vertical)
    return QAbstractTableModel::headerData(section, orientation, role);
  return m_headers[static_cast<std::size_t>(section)];
}

} // namespace imex::desk
