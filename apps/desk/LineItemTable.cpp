#include "desk/LineItemTable.h"

#include "controls/common/text.h"
#include "desk/panels.h"

#include <utility>

namespace imex::desk {

namespace {

constexpr std::array<const char*, LineItem::kColumns> kTitles = {"Quantity",       "Type",
                                                                 "Brand",          "Catalog Number",
                                                                 "Column 1 Price", "Column 1 Commission",
                                                                 "Column 2 Price", "Column 2 Commission",
                                                                 "Column 3 Price", "Column 3 Commission"};

bool isNumber(int column) {
  constexpr int kFirstPrice = 4;
  return column == 0 || column >= kFirstPrice;
}

} // namespace

LineItem::LineItem(const LineItemRecord& record)
    : texts{record.quantity(),     record.AType(),
            record.Brand(),        record.CatalogNumber(),
            record.Column1Price(), record.Column1Commission(),
            record.Column2Price(), record.Column2Commission(),
            record.Column3Price(), record.Column3Commission()} {}

LineItemTable::LineItemTable(int columnCount, QObject* parent)
    : QAbstractTableModel(parent), m_columnCount(columnCount) {}

int LineItemTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

int LineItemTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_columnCount;
}

QVariant LineItemTable::data(const QModelIndex& index, int role) const {
  if (role == Qt::TextAlignmentRole)
    return QVariant(Qt::AlignVCenter | (isNumber(index.column()) ? Qt::AlignRight : Qt::AlignLeft));
  if (role != Qt::DisplayRole)
    return {};
  const LineItem& item = m_items[static_cast<std::size_t>(index.row())];
  return toQt(item.texts[static_cast<std::size_t>(index.column())]);
}

QVariant LineItemTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation == Qt::Vertical)
    return QAbstractTableModel::headerData(section, orientation, role);
  return QString::fromLatin1(kTitles[static_cast<std::size_t>(section)]);
}

void LineItemTable::append(const std::vector<LineItem>& items) {
  if (items.empty())
    return;
  const int first = rowCount();
  beginInsertRows({}, first, first + static_cast<int>(items.size()) - 1);
  m_items.insert(m_items.end(), items.begin(), items.end());
  endInsertRows();
}

void LineItemTable::removeLast(std::size_t count) {
  if (count == 0)
    return;
  beginRemoveRows({}, rowCount() - static_cast<int>(count), rowCount() - 1);
  m_items.resize(m_items.size() - count);
  endRemoveRows();
}

InsertLineItems::InsertLineItems(LineItemTable& table, std::vector<LineItem> items)
    : m_table(table), m_items(std::move(items)) {
  setText(QStringLiteral("insert of ") + countOfLines(static_cast<qsizetype>(m_items.size())));
}

} // namespace imex::desk
