#include "controls/ImExFileEdit/RecordRows.h"

#include "RowsGrid.h"
#include "support/raised.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

using Fit = RecordRows::Fit;

TEST(RecordRows, recordsFillOneRowAfterTheOther) {
  RowsGrid grid({{}, {}}, 3);
  RecordRows rows(grid, "|");
  EXPECT_EQ(Fit::whole, rows.show("a|b"));
  EXPECT_EQ(Fit::whole, rows.show("c|d"));
  EXPECT_EQ((Texts{"", "", ""}), grid.row(0));
  EXPECT_EQ((Texts{"1", "a", "b"}), grid.row(1));
  EXPECT_EQ((Texts{"2", "c", "d"}), grid.row(2));
}

TEST(RecordRows, shortRecordLeavesTheRestOfItsRow) {
  RowsGrid grid({{"x", "x", "x", "x"}, {"y", "y", "y", "y"}}, 4);
  RecordRows rows(grid, "|");
  EXPECT_EQ(Fit::whole, rows.show("a|b"));
  EXPECT_EQ(Fit::whole, rows.show(""));
  EXPECT_EQ((Texts{"1", "a", "b", "x"}), grid.row(1));
  EXPECT_EQ((Texts{"2", "", "y", "y"}), grid.row(2)) << "an empty record is one empty field";
}

TEST(RecordRows, surplusFieldsAreCutOff) {
  RowsGrid grid({{}, {}, {}}, 3);
  RecordRows rows(grid, "|");
  EXPECT_EQ(Fit::cut, rows.show("a|b|c|d"));
  EXPECT_EQ(Fit::cut, rows.show("a|b|")) << "an empty one too";
  EXPECT_EQ(Fit::whole, rows.show("a|b"));
  EXPECT_EQ((Texts{"1", "a", "b"}), grid.row(1));
  EXPECT_EQ((Texts{"2", "a", "b"}), grid.row(2));
}

TEST(RecordRows, gridWithoutFieldsTakesTheNumbersAlone) {
  RowsGrid grid({{}}, 1);
  EXPECT_EQ(Fit::cut, RecordRows(grid, "|").show(""));
  EXPECT_EQ(Texts{"1"}, grid.row(1));
}

TEST(RecordRows, delimiterMayHaveSeveralBytes) {
  RowsGrid grid({{}}, 4);
  EXPECT_EQ(Fit::whole, RecordRows(grid, "\u00A6").show("a|\u00A6\u00C2b\u00A6"));
  EXPECT_EQ((Texts{"1", "a|", "\u00C2b", ""}), grid.row(1));
}

} // namespace

} // namespace imex::test
