#include "controls/ImExFileEdit/ErrorCursor.h"

#include "support/raised.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace imex::test {

namespace {

ErrorBeansPtr messages(const std::vector<std::pair<int, std::string>>& rows) {
  auto list = std::make_shared<Collection<std::shared_ptr<ImportExportErrorBean>>>();
  for (const auto& [row, text] : rows) {
    auto bean = std::make_shared<ImportExportErrorBean>();
    bean->RowNumber(row);
    bean->RowError(text);
    list->add(bean);
  }
  return list;
}

/// The messages of each row from 1 to `rows`, joined by "+".
Texts byRow(const ErrorBeansPtr& errors, int rows) {
  ErrorCursor cursor(errors);
  Texts result;
  for (int row = 1; row <= rows; ++row) {
    std::string joined;
    while (const auto text = cursor.next(row))
      joined += (joined.empty() ? "" : "+") + *text;
    result.push_back(joined);
  }
  return result;
}

TEST(ErrorCursor, rowsHaveTheirMessagesInOrder) {
  EXPECT_EQ((Texts{"a+b", "", "c"}), byRow(messages({{1, "a"}, {1, "b"}, {3, "c"}}), 3));
}

TEST(ErrorCursor, noMessages) {
  EXPECT_EQ((Texts{"", ""}), byRow(messages({}), 2));
}

TEST(ErrorCursor, messagesOfRowsThatAreNotThereAreLeftOut) {
  EXPECT_EQ((Texts{"", "b"}), byRow(messages({{-1, "x"}, {0, "x"}, {2, "b"}, {3, "x"}}), 2));
}

TEST(ErrorCursor, laterRowHidesAnEarlierOneBehindIt) {
  EXPECT_EQ((Texts{"", "", "c+d"}), byRow(messages({{3, "c"}, {1, "a"}, {3, "d"}}), 3));
  EXPECT_EQ((Texts{"a", "b", ""}), byRow(messages({{1, "a"}, {2, "b"}, {1, "late"}}), 3));
}

TEST(ErrorCursor, earlierRowsInBetweenArePassedOver) {
  EXPECT_EQ((Texts{"", "b+c"}), byRow(messages({{2, "b"}, {1, "a"}, {2, "c"}}), 2));
}

TEST(ErrorCursor, greatestRow) {
  ErrorCursor cursor(messages({{32767, "last"}}));
  EXPECT_EQ(std::nullopt, cursor.next(32766));
  EXPECT_EQ("last", cursor.next(32767));
  EXPECT_EQ(std::nullopt, cursor.next(32767));
}

TEST(ErrorCursor, nothingIsError91) {
  EXPECT_EQ(91, raisedNumber([] { ErrorCursor(nullptr); }));
  auto list = messages({{1, "a"}});
  list->add(nullptr);
  ErrorCursor cursor(list);
  EXPECT_EQ("a", cursor.next(1));
  EXPECT_EQ(91, raisedNumber([&] { (void)cursor.next(1); }));
}

} // namespace

} // namespace imex::test
