#include "desk/RowsModel.h"

#include "DeskTest.h"

#include <QAbstractItemModelTester>

namespace imex::desk::test {

namespace {

using Texts = std::vector<std::string>;

StringsPtr strings(std::initializer_list<std::string> texts) {
  return std::make_shared<Strings>(texts);
}

RowsPtr twoRows() {
  auto rows = std::make_shared<Collection<StringsPtr>>();
  rows->add(strings({"a", "b"}));
  rows->add(strings({"c"}));
  return rows;
}

void addMessage(ErrorBeansPtr& messages, int row, const std::string& text) {
  const auto bean = std::make_shared<ImportExportErrorBean>();
  bean->RowNumber(row);
  bean->RowError(text);
  messages->add(bean);
}

class DeskRowsModel : public testing::Test {
 protected:
  Texts headers() const {
    Texts texts;
    for (int column = 0; column < model.columnCount(); ++column)
      texts.push_back(model.headerData(column, Qt::Horizontal).toString().toStdString());
    return texts;
  }

  RowsModel model;
  const QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Warning};
};

TEST_F(DeskRowsModel, shortLineHasEmptyFields) {
  model.show(twoRows(), strings({"One", "Two"}), 2, nullptr);
  EXPECT_EQ((Texts{"One", "Two"}), headers());
  ASSERT_EQ(2, model.rowCount());
  EXPECT_EQ((Texts{"a", "b"}), rowTexts(model, 0));
  EXPECT_EQ((Texts{"c", ""}), rowTexts(model, 1));
}

TEST_F(DeskRowsModel, messagesStandInTheLastColumn) {
  ErrorBeansPtr messages = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
  addMessage(messages, 2, "first");
  addMessage(messages, 2, "second");
  // The catalogue's list grows with each answer.
  model.show(twoRows(), strings({"One", "Two", "Comments", "Comments"}), 3, messages);
  EXPECT_EQ((Texts{"One", "Two", "Messages"}), headers());
  EXPECT_EQ((Texts{"a", "b", ""}), rowTexts(model, 0));
  EXPECT_EQ((Texts{"c", "", "first; second"}), rowTexts(model, 1));
  EXPECT_EQ(QStringLiteral("first\nsecond"), model.messages(1));
  EXPECT_EQ(QStringLiteral("first\nsecond"), model.index(1, 2).data(Qt::ToolTipRole).toString());
  EXPECT_EQ(QString(), model.messages(0));
  EXPECT_EQ(1, model.rowsWithMessages());
}

TEST_F(DeskRowsModel, unknownFormatHasColumnsWithoutNames) {
  model.show(twoRows(), nullptr, 2, nullptr);
  EXPECT_EQ((Texts{"", ""}), headers());
  EXPECT_EQ((Texts{"a", "b"}), rowTexts(model, 0));
}

TEST_F(DeskRowsModel, noLines) {
  model.show(nullptr, strings({"One"}), 1, nullptr);
  EXPECT_EQ(0, model.rowCount());
  EXPECT_EQ(Texts{"One"}, headers());
}

} // namespace

} // namespace imex::desk::test
