#include "module/ImExModule.h"
#include "support/TestHost.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

using Lines = std::vector<std::string>;

constexpr int kTab = 9;
constexpr int kPipe = 124;

Lines fieldsOf(std::string_view line, int delimiter) {
  const StringsPtr fields = ImExModule::Parse(line, delimiter);
  return {fields->begin(), fields->end()};
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result += text;
  return result;
}

class Parse : public testing::Test {
 protected:
  TestHost host;
};

} // namespace

TEST_F(Parse, fields_standBetweenDelimiters) {
  EXPECT_EQ(fieldsOf("a|b|c", kPipe), (Lines{"a", "b", "c"}));
  EXPECT_EQ(fieldsOf("a\tb", kTab), (Lines{"a", "b"}));
}

TEST_F(Parse, aLineWithoutDelimiter_isOneField) {
  EXPECT_EQ(fieldsOf("abc", kPipe), (Lines{"abc"}));
  EXPECT_EQ(fieldsOf("a\tb\tc", kPipe), (Lines{"a\tb\tc"}));
  EXPECT_EQ(fieldsOf("a|b", kTab), (Lines{"a|b"}));
}

TEST_F(Parse, anEmptyLine_isOneEmptyField) {
  EXPECT_EQ(fieldsOf("", kPipe), (Lines{""}));
}

TEST_F(Parse, consecutiveDelimiters_yieldEmptyFields) {
  EXPECT_EQ(fieldsOf("a||c", kPipe), (Lines{"a", "", "c"}));
  EXPECT_EQ(fieldsOf("|||", kPipe), (Lines{"", "", "", ""}));
}

TEST_F(Parse, lastFieldEndsWithDelimiter_isEmpty) {
  EXPECT_EQ(fieldsOf("a|b|", kPipe), (Lines{"a", "b", ""}));
  EXPECT_EQ(fieldsOf("|", kPipe), (Lines{"", ""}));
}

TEST_F(Parse, nothingIsTrimmedQuotedOrEscaped) {
  EXPECT_EQ(fieldsOf(" a |\"b|c\"|\\|'d'\r\n", kPipe), (Lines{" a ", "\"b", "c\"", "\\", "'d'\r\n"}));
}

TEST_F(Parse, theDelimiter_isComparedExactly) {
  EXPECT_EQ(fieldsOf("1a2A3a4", 'a'), (Lines{"1", "2A3", "4"}));
}

TEST_F(Parse, theDelimiter_isACharacterAndNotAByte) {
  EXPECT_EQ(fieldsOf("caf\u00E9noir\u00E8", 0xE9), (Lines{"caf", "noir\u00E8"}));
  // Both letters begin with the byte 0xC3, the code of another one.
  EXPECT_EQ(fieldsOf("caf\u00E9 \u00E8", 0xC3), (Lines{"caf\u00E9 \u00E8"}));
  EXPECT_EQ(fieldsOf("5 \u20AC 6", 0x20AC), (Lines{"5 ", " 6"}));
}

TEST_F(Parse, everyCall_givesANewList) {
  const StringsPtr first = ImExModule::Parse("a|b", kPipe);
  first->add("c");
  EXPECT_EQ(fieldsOf("a|b", kPipe), (Lines{"a", "b"}));
}

TEST_F(Parse, anyLine_isItsFieldsJoined) {
  std::mt19937 random(7);
  const Lines pieces = {"|", "|", "a", "\t", "\u00E9", "\U0001F600", "field", " ", "\xE9"};
  for (int round = 0; round < 500; ++round) {
    std::string line;
    int delimiters = 0;
    for (auto count = random() % 30; count > 0; --count) {
      const std::string& piece = pieces[random() % pieces.size()];
      delimiters += piece == "|" ? 1 : 0;
      line += piece;
    }
    const Lines fields = fieldsOf(line, kPipe);
    ASSERT_EQ(static_cast<int>(fields.size()), delimiters + 1) << line;
    ASSERT_EQ(join(fields, "|"), line);
    for (const std::string& field : fields)
      ASSERT_EQ(field.find('|'), std::string::npos) << line;
  }
}

TEST_F(Parse, isTraced) {
  ImExModule::Parse("a|b", kPipe);
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule Parse()", "< ImExModule Parse()"}));
}

TEST_F(Parse, aLineOf32767Characters_fits) {
  EXPECT_EQ(fieldsOf(std::string(32767, 'x'), kPipe), (Lines{std::string(32767, 'x')}));
  const std::string accented = repeated("\u00E9", 32766);
  EXPECT_EQ(fieldsOf(accented + "|", kPipe), (Lines{accented, ""}));
}

TEST_F(Parse, exactly32767Delimiters_fit) {
  EXPECT_EQ(ImExModule::Parse(std::string(32767, '|'), kPipe)->count(), 32768u);
}

TEST_F(Parse, aLongerLine_overflows) {
  const std::string lines[] = {
      std::string(32768, 'x'),       std::string(32768, '|'),   "a|b|" + std::string(32764, 'x'),
      std::string(32767, 'x') + "|", repeated("\u00E9", 32768),
  };
  for (const std::string& line : lines) {
    host.trace->lines.clear();
    const std::optional<RuntimeError> error = raised([&] { ImExModule::Parse(line, kPipe); });
    ASSERT_TRUE(error) << line.substr(0, 10);
    EXPECT_EQ(error->number(), 6);
    EXPECT_EQ(error->description(), "Overflow");
    // The record's label is the one that trace readers expect.
    EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule Parse()",
                                        "! ImExModule launchInternetExplorer 6 " + error->source() + ": Overflow"}));
  }
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Parse, aDelimiterThatIsNoCharacter_isError5) {
  EXPECT_EQ(raisedNumber([] { ImExModule::Parse("a|b", -1); }), 5);
  ASSERT_EQ(host.trace->lines.size(), 2u);
  EXPECT_TRUE(host.trace->lines[1].starts_with("! ImExModule launchInternetExplorer 5 ")) << host.trace->lines[1];
}

} // namespace imex::test
