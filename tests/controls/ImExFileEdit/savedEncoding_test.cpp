#include "controls/ImExFileEdit/savedEncoding.h"

#include "RowsGrid.h"
#include "support/raised.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

const std::string kMark = "\uFEFF";
const std::string kBytesOfMark = "\u00EF\u00BB\u00BF"; // in Windows-1252

/// The encoding in which rows of one field are saved.
Encoding savedEncoding(const Texts& fields, Encoding encoding) {
  std::vector<Texts> rows;
  for (const std::string& field : fields)
    rows.push_back({"1", field});
  const RowsGrid grid(rows, 2);
  return imex::savedEncoding({grid, 1, "|"}, encoding);
}

TEST(SavedEncoding, isThatOfTheFile) {
  for (const Encoding encoding : {Encoding::utf8, Encoding::utf8WithMark, Encoding::windows1252}) {
    EXPECT_EQ(encoding, savedEncoding({}, encoding));
    EXPECT_EQ(encoding, savedEncoding({"cafe"}, encoding));
    EXPECT_EQ(encoding, savedEncoding({"café", "5 €"}, encoding));
  }
}

TEST(SavedEncoding, firstTextThatBeginsLikeTheMark) {
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({kMark + "a"}, Encoding::utf8));
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({"", kMark + "a"}, Encoding::utf8)) << "the first that is saved";
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({kMark + "a"}, Encoding::utf8WithMark));
  EXPECT_EQ(Encoding::utf8, savedEncoding({"a", kMark + "a"}, Encoding::utf8));
  EXPECT_EQ(Encoding::utf8, savedEncoding({kBytesOfMark}, Encoding::utf8));
}

TEST(SavedEncoding, firstTextOfTheBytesOfTheMark) {
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({kBytesOfMark, "café"}, Encoding::windows1252));
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({"", kBytesOfMark, "café"}, Encoding::windows1252));
  EXPECT_EQ(Encoding::windows1252, savedEncoding({"café", kBytesOfMark}, Encoding::windows1252));
}

TEST(SavedEncoding, textsWhoseBytesAreUtf8) {
  EXPECT_EQ(Encoding::utf8WithMark, savedEncoding({"a", "\u00C3\u00A9"}, Encoding::windows1252));
  EXPECT_EQ(Encoding::windows1252, savedEncoding({"\u00C3\u00A9", "é"}, Encoding::windows1252));
  EXPECT_EQ(Encoding::windows1252, savedEncoding({"\u00C3", "\u00A9"}, Encoding::windows1252));
  EXPECT_EQ(Encoding::utf8, savedEncoding({"\u00C3\u00A9"}, Encoding::utf8));
}

TEST(SavedEncoding, characterThatItLacksIsError5) {
  EXPECT_EQ(5, raisedNumber([] { (void)savedEncoding({"café", "Łódź"}, Encoding::windows1252); }));
  EXPECT_EQ(Encoding::utf8, savedEncoding({"Łódź"}, Encoding::utf8));
}

TEST(SavedEncoding, columnsThatAreNotSavedDoNotCount) {
  const RowsGrid grid({{"Ł", "café", "Łódź"}}, 3);
  EXPECT_EQ(Encoding::windows1252, imex::savedEncoding({grid, 1, "|"}, Encoding::windows1252));
}

} // namespace

} // namespace imex::test
