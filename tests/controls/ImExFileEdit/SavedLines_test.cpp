#include "controls/ImExFileEdit/SavedLines.h"

#include "RowsGrid.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

Texts linesOf(const host::Grid& grid, int fields, const std::string& delimiter = "|") {
  SavedLines lines(grid, fields, delimiter);
  Texts all;
  std::string_view line;
  while (lines.next(line))
    all.emplace_back(line);
  return all;
}

TEST(SavedLines, fieldsAreJoinedWithoutTheRowNumbers) {
  const RowsGrid grid({{"1", "a", "b"}, {"2", "", "c"}, {"3", "d", ""}}, 3);
  EXPECT_EQ((Texts{"a|b", "|c", "d|"}), linesOf(grid, 2));
}

TEST(SavedLines, rowsWithoutTextAreLeftOut) {
  const RowsGrid grid({{"1", "", ""}, {"2"}, {}, {"", "a"}, {"5", " "}}, 3);
  EXPECT_EQ((Texts{"a|", " |"}), linesOf(grid, 2));
}

TEST(SavedLines, gridWithoutRecordsHasNone) {
  EXPECT_EQ(Texts{}, linesOf(RowsGrid({}, 3), 2));
}

TEST(SavedLines, columnsBeyondTheSavedOnesAreLeftOut) {
  const RowsGrid grid({{"1", "a", "b", "a message"}, {"2", "", "", "another"}}, 4);
  EXPECT_EQ(Texts{"a|b"}, linesOf(grid, 2));
  EXPECT_EQ(Texts{"a"}, linesOf(grid, 1));
  EXPECT_EQ(Texts{}, linesOf(grid, 0));
  EXPECT_EQ(Texts{}, linesOf(grid, -1));
}

TEST(SavedLines, fieldsBeyondTheColumnsAreEmpty) {
  EXPECT_EQ((Texts{"a||", "b|c|"}), linesOf(RowsGrid({{"1", "a"}, {"2", "b", "c"}}, 3), 3));
}

TEST(SavedLines, delimiterMayHaveSeveralBytes) {
  const RowsGrid grid({{"1", "a", "b", ""}, {"2", "", "", "c\r\n"}}, 4);
  EXPECT_EQ((Texts{"a\u00A6b\u00A6", "\u00A6\u00A6c"}), linesOf(grid, 3, "\u00A6"));
}

// Short texts are copied as pieces of 16 bytes.
TEST(SavedLines, textsAboutThePiecesSizeAreWhole) {
  for (const std::size_t first : {1U, 14U, 15U, 16U, 17U, 31U, 32U, 33U}) {
    for (const std::size_t last : {0U, 1U, 15U, 16U, 17U, 40U}) {
      const std::string a(first, 'a');
      const std::string b(last, 'b');
      for (const std::string delimiter : {"|", "\u00A6"}) {
        const RowsGrid grid({{"1", a, b}, {"", b, a, b}}, 4);
        EXPECT_EQ((Texts{a + delimiter + b + delimiter, b + delimiter + a + delimiter + b}),
                  linesOf(grid, 3, delimiter))
            << first << ' ' << last;
      }
    }
  }
}

TEST(SavedLines, lineBreaksAreTakenOutOfTheLineThatHasThem) {
  const RowsGrid grid({{"1", "a\r\nb", "c"}, {"2", "d", "e"}}, 3);
  EXPECT_EQ((Texts{"a|b|", "d|e"}), linesOf(grid, 2));
}

} // namespace

} // namespace imex::test
