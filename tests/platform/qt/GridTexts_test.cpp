#include "platform/qt/GridTexts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using imex::platform::GridTexts;

TEST(GridTexts, newCells_areEmpty) {
  const GridTexts texts(3, 2);
  EXPECT_EQ(3, texts.rows());
  EXPECT_EQ(2, texts.columns());
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 2; ++column)
      EXPECT_EQ("", texts.text(row, column));
}

TEST(GridTexts, cellsThatWerePassedOver_areEmpty) {
  GridTexts texts(1, 5);
  texts.setText(0, 1, "b");
  texts.setText(0, 3, "d");
  EXPECT_EQ("", texts.text(0, 0));
  EXPECT_EQ("b", texts.text(0, 1));
  EXPECT_EQ("", texts.text(0, 2));
  EXPECT_EQ("d", texts.text(0, 3));
  EXPECT_EQ("", texts.text(0, 4));
}

TEST(GridTexts, aTextThatGrowsOrShrinks_leavesItsNeighbours) {
  GridTexts texts(2, 3);
  for (int column = 0; column < 3; ++column) {
    texts.setText(0, column, "abc");
    texts.setText(1, column, "xyz");
  }
  texts.setText(0, 1, "a much longer text");
  texts.setText(1, 1, "");
  EXPECT_EQ("abc", texts.text(0, 0));
  EXPECT_EQ("a much longer text", texts.text(0, 1));
  EXPECT_EQ("abc", texts.text(0, 2));
  EXPECT_EQ("xyz", texts.text(1, 0));
  EXPECT_EQ("", texts.text(1, 1));
  EXPECT_EQ("xyz", texts.text(1, 2));
}

TEST(GridTexts, aTextOfItsOwn_canBeGiven) {
  GridTexts texts(1, 3);
  texts.setText(0, 0, "first");
  texts.setText(0, 1, texts.text(0, 0));
  texts.setText(0, 0, texts.text(0, 1).substr(1));
  texts.setText(0, 2, texts.text(0, 0));
  EXPECT_EQ("irst", texts.text(0, 0));
  EXPECT_EQ("first", texts.text(0, 1));
  EXPECT_EQ("irst", texts.text(0, 2));
}

TEST(GridTexts, bytesOfAnyValue_areKept) {
  GridTexts texts(1, 2);
  const std::string bytes("\0\r\n\xFF\0", 5);
  texts.setText(0, 0, bytes);
  texts.setText(0, 1, "x");
  EXPECT_EQ(bytes, texts.text(0, 0));
}

TEST(GridTexts, textsLargerThanABlock_areKept) {
  GridTexts texts(2, 3);
  const std::string large(3'000'000, 'L');
  texts.setText(0, 0, "small");
  texts.setText(0, 1, large);
  texts.setText(1, 0, "next");
  texts.setText(0, 2, large);
  EXPECT_EQ("small", texts.text(0, 0));
  EXPECT_EQ(large, texts.text(0, 1));
  EXPECT_EQ(large, texts.text(0, 2));
  EXPECT_EQ("next", texts.text(1, 0));
}

using Views = std::vector<std::string_view>;

TEST(GridTexts, severalTexts_areSetFromACellOn) {
  GridTexts texts(2, 5);
  texts.setTexts(1, 1, Views{"b", "", "d"});
  const std::vector<std::string> expected{"", "b", "", "d", ""};
  for (int column = 0; column < 5; ++column) {
    EXPECT_EQ(expected[static_cast<std::size_t>(column)], texts.text(1, column));
    EXPECT_EQ("", texts.text(0, column));
  }
}

TEST(GridTexts, severalTexts_replaceThoseThatAreThereAndNoOther) {
  GridTexts texts(1, 5);
  texts.setTexts(0, 0, Views{"a", "b", "c"});
  texts.setTexts(0, 1, Views{"longer", "", "new"});
  const std::vector<std::string> expected{"a", "longer", "", "new", ""};
  for (int column = 0; column < 5; ++column)
    EXPECT_EQ(expected[static_cast<std::size_t>(column)], texts.text(0, column));
  texts.setTexts(0, 0, Views{});
  EXPECT_EQ("a", texts.text(0, 0));
}

TEST(GridTexts, aRow_isItsTextsWithoutAnythingBetween) {
  GridTexts texts(2, 4);
  texts.setTexts(0, 0, Views{"ab", "", "c"});
  EXPECT_EQ("abc", texts.texts(0).bytes);
  EXPECT_EQ((std::vector<std::uint32_t>{2, 2, 3}),
            std::vector<std::uint32_t>(texts.texts(0).ends.begin(), texts.texts(0).ends.end()));
  EXPECT_EQ("ab", texts.texts(0)[0]);
  EXPECT_EQ("", texts.texts(0)[1]);
  EXPECT_EQ("c", texts.texts(0)[2]);
  EXPECT_EQ("", texts.texts(0)[3]);
  EXPECT_EQ("", texts.texts(1).bytes);
  EXPECT_TRUE(texts.texts(1).ends.empty());
}

TEST(GridTexts, removingColumns_forgetsTheirTexts) {
  GridTexts texts(2, 3);
  texts.setText(1, 0, "stays");
  texts.setText(1, 2, "goes");
  texts.setSize(2, 2);
  texts.setSize(2, 3);
  EXPECT_EQ("stays", texts.text(1, 0));
  EXPECT_EQ("", texts.text(1, 2));
}

TEST(GridTexts, rowsAddedAfterSomeWereRemoved_areEmpty) {
  GridTexts texts(4, 2);
  for (int row = 0; row < 4; ++row)
    texts.setText(row, 1, std::to_string(row));
  texts.removeRow(1);
  texts.setSize(2, 2);
  texts.setSize(6, 2);
  const std::vector<std::string> expected{"0", "2", "", "", "", ""};
  for (int row = 0; row < 6; ++row)
    EXPECT_EQ(expected[static_cast<std::size_t>(row)], texts.text(row, 1));
}

constexpr int kRows = 32'768;
constexpr int kColumns = 21;

std::size_t fillWithNineCharacters(GridTexts& texts) {
  std::size_t size = 0;
  for (int row = 0; row < kRows; ++row)
    for (int column = 1; column < kColumns; ++column) {
      texts.setText(row, column, "ninechars");
      size += 9;
    }
  return size;
}

TEST(GridTexts, aWholeFile_takesItsBytesAndFourForACell) {
  GridTexts texts(2, 2);
  texts.setSize(kRows, kColumns);
  const std::size_t size = fillWithNineCharacters(texts);
  constexpr std::size_t kForRows = kRows * std::size_t{16};
  constexpr std::size_t kForCells = std::size_t{kRows} * kColumns * 4;
  constexpr std::size_t kBlocks = 512 * 1024; // the first small ones, and what is free in the last
  EXPECT_LE(texts.byteCount(), (size + kForCells + kForRows) * 17 / 16 + kBlocks);
  EXPECT_LT(texts.byteCount(), std::size_t{kRows} * kColumns * sizeof(std::string) / 2);
}

TEST(GridTexts, editsWithoutEnd_takeNoMoreThanTwiceTheTexts) {
  GridTexts texts(100, 10);
  for (int row = 0; row < 100; ++row)
    for (int column = 0; column < 10; ++column)
      texts.setText(row, column, std::string(1000, 'x'));
  const std::size_t filled = texts.byteCount();
  for (int i = 0; i < 20'000; ++i)
    texts.setText(i % 100, i % 10, std::string(1000, static_cast<char>('a' + i % 26)));
  EXPECT_LE(texts.byteCount(), 2 * filled + 1024 * 1024);
  EXPECT_EQ(std::string(1000, static_cast<char>('a' + 19'999 % 26)), texts.text(99, 9));
}

TEST(GridTexts, clearing_givesTheMemoryBack) {
  GridTexts texts(kRows, kColumns);
  const std::size_t empty = texts.byteCount();
  fillWithNineCharacters(texts);
  texts.clear();
  EXPECT_EQ(empty, texts.byteCount());
  EXPECT_EQ("", texts.text(kRows - 1, kColumns - 1));
}

/// The same operations on the plainest form there is.
class GridTextsAgainstStrings : public testing::TestWithParam<unsigned> {
 protected:
  int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }

  std::string someText() {
    const int size = upTo(9) == 0 ? upTo(40'000) : upTo(12);
    return std::string(static_cast<std::size_t>(size), static_cast<char>('a' + upTo(25)));
  }

  void change() {
    const int rows = texts.rows();
    const int columns = texts.columns();
    const int choice = upTo(99);
    if (choice < 60)
      set(upTo(rows - 1), upTo(columns - 1), someText());
    else if (choice < 90)
      fillRow(upTo(rows - 1));
    else if (choice < 94 && rows > 1)
      removeRow(upTo(rows - 1));
    else if (choice < 99)
      resize(1 + upTo(30), upTo(2) == 0 ? 1 + upTo(9) : columns);
    else
      clear();
  }

  void set(int row, int column, const std::string& text) {
    texts.setText(row, column, text);
    strings[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = text;
  }

  void fillRow(int row) {
    const int first = upTo(texts.columns() - 1);
    auto& line = strings[static_cast<std::size_t>(row)];
    std::vector<std::string_view> given;
    for (int column = first; column < texts.columns() - upTo(1); ++column)
      given.push_back(line[static_cast<std::size_t>(column)] = someText());
    texts.setTexts(row, first, given);
  }

  void removeRow(int row) {
    texts.removeRow(row);
    strings.erase(strings.begin() + row);
  }

  void resize(int rows, int columns) {
    texts.setSize(rows, columns);
    strings.resize(static_cast<std::size_t>(rows));
    for (auto& row : strings)
      row.resize(static_cast<std::size_t>(columns));
  }

  void clear() {
    texts.clear();
    for (auto& row : strings)
      row.assign(row.size(), {});
  }

  void compare() const {
    ASSERT_EQ(static_cast<int>(strings.size()), texts.rows());
    std::size_t size = 0;
    for (int row = 0; row < texts.rows(); ++row)
      for (int column = 0; column < texts.columns(); ++column) {
        const std::string& expected = strings[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
        ASSERT_EQ(expected, texts.text(row, column)) << "at " << row << ", " << column;
        size += expected.size();
      }
    ASSERT_LE(texts.byteCount(), 2 * size + 1024 * 1024);
  }

  GridTexts texts{5, 4};
  std::vector<std::vector<std::string>> strings{5, std::vector<std::string>(4)};

 private:
  std::mt19937 m_random{GetParam()};
};

TEST_P(GridTextsAgainstStrings, randomOperations_giveTheSameTexts) {
  for (int i = 0; i < 1500; ++i) {
    change();
    ASSERT_NO_FATAL_FAILURE(compare()) << "after operation " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, GridTextsAgainstStrings, testing::Range(1u, 9u));

} // namespace
