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

TEST(Wording, printable_spellsOutWhatALogMustNotHave) {
  EXPECT_EQ(printable("plain \xC3\x89 \xF0\x9F\x98\x80 ~ "), "plain \xC3\x89 \xF0\x9F\x98\x80 ~ ");
  EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\u{0}b");
  EXPECT_EQ(printable("\x1F \x7E\x7F\xC2\x80\xC2\x9F\xC2\xA0"), "\\u{1F} \x7E\\u{7F}\\u{80}\\u{9F}\xC2\xA0");
  EXPECT_EQ(printable("\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xAE\xE2\x80\xAF"),
            "\xE2\x80\xA7\\u{2028}\\u{202E}\xE2\x80\xAF");
  EXPECT_EQ(printable("\xFF\xC3"), "\\x{FF}\\x{C3}");
}

} // namespace imex::import_service::test
