#include "controls/ImExFileEdit/FieldReader.h"

#include "support/texts.h"

#include <gtest/gtest.h>

namespace imex::test {

namespace {

Texts split(std::string_view record, std::string_view delimiter = "|") {
  FieldReader reader(record, delimiter);
  Texts fields;
  std::string_view field;
  while (reader.next(field))
    fields.emplace_back(field);
  return fields;
}

TEST(FieldReader, everyDelimiterSeparates) {
  EXPECT_EQ((Texts{"a", "b", "c"}), split("a|b|c"));
  EXPECT_EQ((Texts{"a", "", "c"}), split("a||c"));
  EXPECT_EQ((Texts{"", "", ""}), split("||"));
  EXPECT_EQ((Texts{"", "a"}), split("|a"));
}

TEST(FieldReader, lastFieldEndsWithDelimiter_isFollowedByAnEmptyOne) {
  EXPECT_EQ((Texts{"a", "b", ""}), split("a|b|"));
}

TEST(FieldReader, recordWithoutDelimiterIsOneField) {
  EXPECT_EQ(Texts{"abc"}, split("abc"));
  EXPECT_EQ(Texts{"a\tb"}, split("a\tb"));
  EXPECT_EQ(Texts{""}, split(""));
}

TEST(FieldReader, nothingIsTrimmedOrQuoted) {
  EXPECT_EQ((Texts{"  a ", "\"b", "c\" "}), split("  a |\"b|c\" "));
  EXPECT_EQ((Texts{"a\nb\r", "c"}), split("a\nb\r|c"));
}

TEST(FieldReader, delimiterOfSeveralBytes) {
  EXPECT_EQ((Texts{"a", "b", ""}), split("a§b§", "§"));
}

TEST(FieldReader, delimiterMayBeTheCharacterZero) {
  EXPECT_EQ((Texts{"a", "b"}), split(std::string_view("a\0b", 3), std::string_view("\0", 1)));
}

} // namespace

} // namespace imex::test
