#include "import_service/wording.h"

#include <gtest/gtest.h>

namespace imex::import_service::test {

TEST(wording, aValueOfFortyCharacters_isShownWhole) {
  const std::string forty(40, 'X');
  EXPECT_EQ(inQuotes(forty), '"' + forty + '"');
  EXPECT_EQ(inQuotes(""), "\"\"");
}

TEST(wording, aLongerValue_isShownByItsFirstFortyCharacters) {
  EXPECT_EQ(inQuotes(std::string(41, 'X')), '"' + std::string(40, 'X') + "...\"");
  std::string accented;
  for (int i = 0; i < 41; ++i)
    accented += "É";
  EXPECT_EQ(inQuotes(accented), '"' + accented.substr(0, 80) + "...\"");
}

TEST(wording, aCount_hasItsNounInSingularForOneOnly) {
  EXPECT_EQ(counted(0, "line"), "0 lines");
  EXPECT_EQ(counted(1, "line"), "1 line");
  EXPECT_EQ(counted(2, "line"), "2 lines");
}

TEST(wording, aList_hasCommasBetweenItsItems) {
  EXPECT_EQ(listed({}), "");
  EXPECT_EQ(listed({"a"}), "a");
  EXPECT_EQ(listed({"a", "b", "c"}), "a, b, c");
}

TEST(wording, aJsonArray_escapesWhatJsonAsksFor) {
  EXPECT_EQ(jsonArray({}), "[]");
  EXPECT_EQ(jsonArray({"C\"1", "A\\B", "É\t"}), R"(["C\"1","A\\B","É\t"])");
  EXPECT_EQ(jsonArray({"\xFF"}), "[\"\xEF\xBF\xBD\"]");
}

} // namespace imex::import_service::test
