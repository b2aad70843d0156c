#include "controls/ImExFileEdit/savedLine.h"

#include "controls/ImExFileEdit/lastCharacter.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

std::string saved(std::string line, std::string_view delimiter = "|") {
  removeLineBreaks(line, delimiter);
  return line;
}

TEST(SavedLine, lineWithoutBreaksStays) {
  EXPECT_EQ("", saved(""));
  EXPECT_EQ("a|b|", saved("a|b|"));
  EXPECT_EQ("a\rb\nc|", saved("a\rb\nc|")) << "a lone CR or LF is no line break";
  EXPECT_EQ("a\n\rb", saved("a\n\rb"));
}

TEST(SavedLine, everyBreakBecomesTheDelimiterAndTheLastCharacterGoes) {
  EXPECT_EQ("a|b|c", saved("a|b|c\r\n"));
  EXPECT_EQ("a|b|", saved("a\r\nb|c"));
  EXPECT_EQ("a|b|c", saved("a\r\nb\r\nc\r\n"));
  EXPECT_EQ("a||b", saved("a\r\n\r\nb|"));
  EXPECT_EQ("", saved("\r\n"));
  EXPECT_EQ("\ra\t", saved("\ra\r\n|", "\t"));
}

TEST(SavedLine, lastCharacterMayHaveSeveralBytes) {
  EXPECT_EQ("a|b", saved("a\r\nbé"));
  EXPECT_EQ("a§b", saved("a\r\nb§", "§"));
  EXPECT_EQ("a§", saved("a\r\n😀", "§"));
}

TEST(SavedLine, breakAcrossADelimiterThatIsABreakItselfEnds) {
  EXPECT_EQ("a\n", saved("a\r\nb", "\n"));
}

TEST(SavedLine, blankIsSpacesAlone) {
  EXPECT_TRUE(isBlank(""));
  EXPECT_TRUE(isBlank("   "));
  EXPECT_FALSE(isBlank(" a "));
  EXPECT_FALSE(isBlank("\t"));
  EXPECT_FALSE(isBlank("\xC2\xA0"));
}

TEST(LastCharacter, isRemovedWithAllItsBytes) {
  const auto shortened = [](std::string text) {
    removeLastCharacter(text);
    return text;
  };
  EXPECT_EQ("", shortened(""));
  EXPECT_EQ("", shortened("a"));
  EXPECT_EQ("a", shortened("aé"));
  EXPECT_EQ("é", shortened("é😀"));
  EXPECT_EQ("", shortened("😀"));
  EXPECT_EQ("", shortened("\x80")) << "not UTF-8";
}

} // namespace

} // namespace imex::test
