#include "platform/qt/GridModel.h"

#include "platform/qt/cellText.h"

#include <algorithm>
#include <charconv>

namespace imex::platform {

namespace {

bool isNumber(std::string_view text) {
  constexpr std::size_t kLongest = 40; // characters that one would write a number with
  if (text.size() > kLongest)
    return false;
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end;
}

} // namespace

GridModel::GridModel(host::GridSize size, QObject* parent)
    : QAbstractTableModel(parent), m_texts(size.rows, size.columns), m_isLeft(static_cast<std::size_t>(size.columns)) {}

// --- Size -----------------------------------------------------------------------------------------------------------

void GridModel::setSize(host::GridSize size) {
  std::erase_if(m_marks, [&](host::GridCell cell) { return cell.row >= size.rows || cell.column >= size.columns; });
  if (size.columns == m_texts.columns()) {
    resizeRows(size.rows);
    return;
  }
  beginResetModel();
  m_texts.setSize(size.rows, size.columns);
  m_isLeft.resize(static_cast<std::size_t>(size.columns));
  endResetModel();
}

void GridModel::resizeRows(int rows) {
  const int before = m_texts.rows();
  const int columns = m_texts.columns();
  if (rows > before) {
    beginInsertRows({}, before - 1, rows - 2);
    m_texts.setSize(rows, columns);
    endInsertRows();
  } else if (rows < before) {
    beginRemoveRows({}, rows - 1, before - 2);
    m_texts.setSize(rows, columns);
    endRemoveRows();
  }
}

void GridModel::removeGridRow(int row) {
  beginRemoveRows({}, row - 1, row - 1);
  m_texts.removeRow(row);
  std::erase_if(m_marks, [&](host::GridCell cell) { return cell.row == row; });
  for (host::GridCell& cell : m_marks)
    cell.row -= cell.row > row ? 1 : 0;
  endRemoveRows();
}

void GridModel::clear() {
  m_texts.clear();
}

// --- Marks and alignment --------------------------------------------------------------------------------------------

bool GridModel::isMarked(host::GridCell cell) const {
  return std::find(m_marks.begin(), m_marks.end(), cell) != m_marks.end();
}

void GridModel::setMarked(host::GridCell cell, bool isMarked) {
  std::erase(m_marks, cell);
  if (isMarked)
    m_marks.push_back(cell);
}

void GridModel::setLeft(int column) {
  m_isLeft[static_cast<std::size_t>(column)] = true;
}

Qt::Alignment GridModel::alignment(host::GridCell cell) const {
  const bool isLeft = m_isLeft[static_cast<std::size_t>(cell.column)] || !isNumber(text(cell));
  return Qt::AlignVCenter | (isLeft ? Qt::AlignLeft : Qt::AlignRight);
}

QString GridModel::rowMessage(int row) const {
  const bool hasColumn = m_messageColumn > 0 && m_messageColumn < m_texts.columns();
  return hasColumn ? shownText(text({row, m_messageColumn})) : QString();
}

// --- The table ------------------------------------------------------------------------------------------------------

void GridModel::tellChanges(host::GridCell first, host::GridCell last) {
  if (last.row > 0 && last.column > 0)
    Q_EMIT dataChanged(indexOf({std::max(first.row, 1), std::max(first.column, 1)}), indexOf(last));
  if (first.row == 0 && last.column > 0)
    Q_EMIT headerDataChanged(Qt::Horizontal, std::max(first.column, 1) - 1, last.column - 1);
  if (first.column == 0 && last.row > 0)
    Q_EMIT headerDataChanged(Qt::Vertical, std::max(first.row, 1) - 1, last.row - 1);
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_texts.rows() - 1;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_texts.columns() - 1;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  const host::GridCell cell = cellOf(index);
  switch (role) {
  case Qt::DisplayRole:
    return shownText(text(cell));
  case Qt::TextAlignmentRole:
    return QVariant::fromValue(alignment(cell));
  case Qt::AccessibleDescriptionRole:
    return rowMessage(cell.row);
  default:
    return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const host::GridCell cell =
      orientation == Qt::Horizontal ? host::GridCell{0, section + 1} : host::GridCell{section + 1, 0};
  switch (role) {
  case Qt::DisplayRole:
    return shownText(text(cell));
  case Qt::TextAlignmentRole:
    return QVariant::fromValue(alignment(cell));
  case Qt::AccessibleDescriptionRole:
    return orientation == Qt::Vertical ? rowMessage(cell.row) : QString();
  default:
    return {};
  }
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

} // namespace imex::platform
