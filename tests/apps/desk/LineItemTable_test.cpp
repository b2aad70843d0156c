#include "desk/LineItemTable.h"

#include "DeskTest.h"
#include "records/ImportProjectLineItemBean.h"

#include <QAbstractItemModelTester>
#include <QUndoStack>

namespace imex::desk::test {

namespace {

using Texts = std::vector<std::string>;

std::vector<LineItem> items(int count) {
  std::vector<LineItem> result;
  for (int i = 1; i <= count; ++i) {
    ImportProjectLineItemBean bean;
    const std::string number = std::to_string(i);
    bean.quantity(number);
    bean.AType("T" + number);
    bean.Brand("B" + number);
    bean.CatalogNumber("C" + number);
    bean.Column1Price(number + ".1");
    bean.Column1Commission("0.1" + number);
    bean.Column2Price(number + ".2");
    bean.Column2Commission("0.2" + number);
    bean.Column3Price(number + ".3");
    bean.Column3Commission("0.3" + number);
    result.emplace_back(bean);
  }
  return result;
}

TEST(DeskLineItemTable, showsARecordInItsColumns) {
  LineItemTable table(10);
  table.append(items(1));
  ASSERT_EQ(1, table.rowCount());
  EXPECT_EQ((Texts{"1", "T1", "B1", "C1", "1.1", "0.11", "1.2", "0.21", "1.3", "0.31"}), rowTexts(table, 0));
  Texts titles;
  for (int column = 0; column < table.columnCount(); ++column)
    titles.push_back(table.headerData(column, Qt::Horizontal).toString().toStdString());
  EXPECT_EQ((Texts{"Quantity", "Type", "Brand", "Catalog Number", "Column 1 Price", "Column 1 Commission",
                   "Column 2 Price", "Column 2 Commission", "Column 3 Price", "Column 3 Commission"}),
            titles);
}

TEST(DeskLineItemTable, ordersHaveOnePriceColumn) {
  LineItemTable table(6);
  table.append(items(1));
  EXPECT_EQ((Texts{"1", "T1", "B1", "C1", "1.1", "0.11"}), rowTexts(table, 0));
}

TEST(DeskLineItemTable, insertsAreUndoneAndRedoneOneByOne) {
  LineItemTable table(10);
  const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::Warning);
  QUndoStack stack;
  stack.push(new InsertLineItems(table, items(7)));
  stack.push(new InsertLineItems(table, items(1)));
  EXPECT_EQ(8, table.rowCount());
  EXPECT_EQ(QStringLiteral("insert of 1 line"), stack.undoText());
  stack.undo();
  EXPECT_EQ(7, table.rowCount());
  EXPECT_EQ(QStringLiteral("insert of 7 lines"), stack.undoText());
  stack.undo();
  EXPECT_EQ(0, table.rowCount());
  EXPECT_FALSE(stack.canUndo());
  stack.redo();
  ASSERT_EQ(7, table.rowCount());
  EXPECT_EQ("C7", rowTexts(table, 6)[3]);
}

} // namespace

} // namespace imex::desk::test
