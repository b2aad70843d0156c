#include "runtime/text.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace imex::test {
namespace {

using namespace std::string_literals;

struct Characters {
  std::string text;
  std::size_t count;
};

std::ostream& operator<<(std::ostream& stream, const Characters& row) {
  return stream << testing::PrintToString(row.text);
}

class Length : public testing::TestWithParam<Characters> {};

/// The characters that are valid bytes of no sequence: each is one character and is kept.
const std::string kBrokenBytes[] = {
    "\x80",             // a continuation without a start
    "\xBF",             //
    "\xC0\x80",         // an overlong form of U+0000
    "\xC1\xBF",         //
    "\xC3",             // cut after the start
    "\xE2\x82",         // cut before the last byte
    "\xE0\x9F\xBF",     // overlong
    "\xED\xA0\x80",     // a surrogate
    "\xF0\x9F\x98",     // cut before the last byte
    "\xF0\x8F\xBF\xBF", // overlong
    "\xF4\x90\x80\x80", // past U+10FFFF
    "\xF8\x88\x80\x80\x80",
    "\xFE",
    "\xFF",
};

/// Every code point that is a character.
template <class Visit>
void forEachCharacter(Visit&& visit) {
  for (char32_t value = 0; value <= 0x10FFFF; ++value) {
    if (value < 0xD800 || value > 0xDFFF)
      visit(value);
  }
}

std::string utf8(char32_t value) {
  std::string text;
  appendUtf8(text, value);
  return text;
}

} // namespace

TEST_P(Length, countsCharactersAndNotBytes) {
  EXPECT_EQ(length(GetParam().text), GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(text, Length,
                         testing::Values(Characters{"", 0}, Characters{"abc", 3}, Characters{"a b\t", 4},
                                         Characters{"\0\0"s, 2}, Characters{"caf\u00E9", 4}, Characters{"\u20AC 5", 3},
                                         Characters{"\U0001F600", 1}, Characters{"\u00E9\u20AC\U0001F600z", 4},
                                         // A letter with a combining accent is two characters.
                                         Characters{"e\u0301", 2}));

TEST(length, everyByteOfNoValidSequence_isACharacter) {
  for (const std::string& bytes : kBrokenBytes) {
    EXPECT_EQ(length(bytes), bytes.size()) << testing::PrintToString(bytes);
    EXPECT_EQ(length("a" + bytes + "z"), bytes.size() + 2) << testing::PrintToString(bytes);
  }
}

TEST(upperCase, ofAsciiLetters_isTheirCapitals) {
  EXPECT_EQ(upperCase("abcdefghijklmnopqrstuvwxyz"), "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  EXPECT_EQ(upperCase("ABC 019 @[`{|}~_-."), "ABC 019 @[`{|}~_-.");
  EXPECT_EQ(upperCase(""), "");
}

TEST(upperCase, ofAccentedLetters_isTheirCapitals) {
  EXPECT_EQ(upperCase("\u00E9"), "\u00C9");
  EXPECT_EQ(upperCase("\u00E0\u00E5\u00E6\u00E7\u00F1\u00F6\u00F8\u00FE"),
            "\u00C0\u00C5\u00C6\u00C7\u00D1\u00D6\u00D8\u00DE");
  EXPECT_EQ(upperCase("cr\u00E8me br\u00FBl\u00E9e"), "CR\u00C8ME BR\u00DBL\u00C9E");
}

TEST(upperCase, aLetterWhoseCapitalFormIsTwoLetters_stays) {
  EXPECT_EQ(upperCase("stra\u00DFe"), "STRA\u00DFE");
  EXPECT_EQ(upperCase("\u0149"), "\u0149"); // n with apostrophe
  EXPECT_EQ(upperCase("\uFB01"), "\uFB01"); // the ligature fi
  EXPECT_EQ(upperCase("\u01F0"), "\u01F0"); // j with caron
}

TEST(upperCase, aLetterThatHasAOneLetterCapitalAsWell_takesThat) {
  EXPECT_EQ(upperCase("\u1FB3\u1F80"), "\u1FBC\u1F88"); // alpha with iota subscript
}

TEST(upperCase, ofADigraph_isTheCapitalDigraph) {
  EXPECT_EQ(upperCase("\u01C6"), "\u01C4"); // dz with caron
  EXPECT_EQ(upperCase("\u01C5"), "\u01C4"); // its title-case form
}

TEST(upperCase, mayLeadOutOfTheBlockOfTheLetter) {
  EXPECT_EQ(upperCase("\u00FF"), "\u0178"); // y with diaeresis
  EXPECT_EQ(upperCase("\u00B5"), "\u039C"); // micro sign, Greek capital mu
  EXPECT_EQ(upperCase("\u0131"), "I");      // dotless i
  EXPECT_EQ(upperCase("\u017F"), "S");      // long s
}

TEST(upperCase, mayTakeMoreOrFewerBytes) {
  EXPECT_EQ(upperCase("\u0250"), "\u2C6F");
  EXPECT_EQ(upperCase("\u2C65"), "\u023A");
}

TEST(upperCase, worksInEveryScript) {
  EXPECT_EQ(upperCase("\u03B1\u03C9\u03C3\u03C2"), "\u0391\u03A9\u03A3\u03A3");
  EXPECT_EQ(upperCase("\u0436\u0450"), "\u0416\u0400");
  EXPECT_EQ(upperCase("\u0561"), "\u0531");
  EXPECT_EQ(upperCase("\U00010428"), "\U00010400");
  EXPECT_EQ(upperCase("\u4E2D\u05D0\U0001F600"), "\u4E2D\u05D0\U0001F600");
}

TEST(upperCase, ofWhatHasNoCapital_isItself) {
  EXPECT_EQ(upperCase("\u00D7\u00F7\u00AA\u00BA\u1E9E"), "\u00D7\u00F7\u00AA\u00BA\u1E9E");
}

TEST(upperCase, keepsBytesOfNoValidSequence) {
  for (const std::string& bytes : kBrokenBytes)
    EXPECT_EQ(upperCase("a" + bytes + "z"), "A" + bytes + "Z") << testing::PrintToString(bytes);
}

TEST(upperCase, keepsZeroBytes) {
  EXPECT_EQ(upperCase("a\0b"s), "A\0B"s);
}

TEST(upperCase, ofEveryCharacter_isOneCharacterThatIsACapitalItself) {
  forEachCharacter([](char32_t value) {
    const std::string capital = upperCase(utf8(value));
    ASSERT_EQ(length(capital), 1u) << static_cast<unsigned>(value);
    ASSERT_TRUE(codePointAt(capital, 0).valid) << static_cast<unsigned>(value);
    ASSERT_EQ(upperCase(capital), capital) << static_cast<unsigned>(value);
  });
}

TEST(equalsIgnoringCase, textsThatDifferInCaseOnly_areEqual) {
  EXPECT_TRUE(equalsIgnoringCase("CustomerAgent", "CUSTOMERAGENT"));
  EXPECT_TRUE(equalsIgnoringCase("\u00C9t\u00E9", "\u00E9T\u00C9"));
  EXPECT_TRUE(equalsIgnoringCase("", ""));
}

TEST(equalsIgnoringCase, otherTexts_areDifferent) {
  EXPECT_FALSE(equalsIgnoringCase("agent", "agents"));
  EXPECT_FALSE(equalsIgnoringCase("agent", ""));
  EXPECT_FALSE(equalsIgnoringCase("e", "\u00E9"));
  EXPECT_FALSE(equalsIgnoringCase("\u00DF", "ss"));
}

TEST(trimmed, takesBlanksTabsAndLineEndsFromBothEnds) {
  EXPECT_EQ(trimmed(" \t\r\na b\t c \r\n"), "a b\t c");
  EXPECT_EQ(trimmed("a"), "a");
  EXPECT_EQ(trimmed(" \t\r\n"), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("\xC2\xA0"
                    "a"),
            "\xC2\xA0"
            "a")
      << "a no-break space is no blank here";
}

TEST(without, leavesTheOtherCharactersInOrder) {
  EXPECT_EQ(without("1,234.50", ","), "1234.50");
  EXPECT_EQ(without("a\"b'c\"", "\"'"), "abc");
  EXPECT_EQ(without("caf\u00E9 \u20AC", " c"), "af\u00E9\u20AC");
  EXPECT_EQ(without("abc", ""), "abc");
  EXPECT_EQ(without("aaa", "a"), "");
  EXPECT_EQ(without("", "a"), "");
}

TEST(character, isTheOneWithTheCode) {
  EXPECT_EQ(character(9), "\t");
  EXPECT_EQ(character(124), "|");
  EXPECT_EQ(character(0), "\0"s);
  EXPECT_EQ(character(127), "\x7F");
  EXPECT_EQ(character(128), "\u0080");
  EXPECT_EQ(character(233), "\u00E9");
  EXPECT_EQ(character(0x7FF), "\u07FF");
  EXPECT_EQ(character(0x800), "\u0800");
  EXPECT_EQ(character(0xD7FF), "\uD7FF");
  EXPECT_EQ(character(0xE000), "\uE000");
  EXPECT_EQ(character(0xFFFF), "\uFFFF");
  EXPECT_EQ(character(0x10000), "\U00010000");
  EXPECT_EQ(character(0x10FFFF), "\U0010FFFF");
}

TEST(character, ofACodeThatHasNone_isError5) {
  for (const long code : {-1L, -124L, 0xD800L, 0xDC00L, 0xDFFFL, 0x110000L, std::numeric_limits<long>::max(),
                          std::numeric_limits<long>::min()})
    EXPECT_EQ(raisedNumber([&] { character(code); }), 5) << code;
}

TEST(codePointAt, readsBackEveryCharacter) {
  forEachCharacter([](char32_t value) {
    const std::string text = "x" + utf8(value) + "x";
    const CodePoint found = codePointAt(text, 1);
    ASSERT_TRUE(found.valid) << static_cast<unsigned>(value);
    ASSERT_EQ(found.value, value);
    ASSERT_EQ(found.bytes, text.size() - 2);
  });
}

TEST(codePointAt, aByteOfNoValidSequence_isThatByte) {
  for (const std::string& bytes : kBrokenBytes) {
    const CodePoint found = codePointAt(bytes, 0);
    EXPECT_FALSE(found.valid) << testing::PrintToString(bytes);
    EXPECT_EQ(found.value, static_cast<unsigned char>(bytes[0])) << testing::PrintToString(bytes);
    EXPECT_EQ(found.bytes, 1u) << testing::PrintToString(bytes);
  }
}

} // namespace imex::test
