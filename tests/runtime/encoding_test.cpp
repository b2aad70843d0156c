#include "runtime/encoding.h"
#include "runtime/text.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

using namespace std::string_literals;

/// The first and the last sequence of every row of the table of well-formed UTF-8.
const std::string kValidSequences[] = {
    "\0"s,
    "\x7F",
    "\xC2\x80",
    "\xDF\xBF",
    "\xE0\xA0\x80",
    "\xE0\xBF\xBF",
    "\xE1\x80\x80",
    "\xEC\xBF\xBF",
    "\xED\x80\x80",
    "\xED\x9F\xBF",
    "\xEE\x80\x80",
    "\xEF\xBF\xBF",
    "\xF0\x90\x80\x80",
    "\xF0\xBF\xBF\xBF",
    "\xF1\x80\x80\x80",
    "\xF3\xBF\xBF\xBF",
    "\xF4\x80\x80\x80",
    "\xF4\x8F\xBF\xBF",
};

/// Sequences one step beyond those rows.
const std::string kInvalidSequences[] = {
    "\x80",
    "\xBF",
    "\xC0\x80",
    "\xC1\xBF",
    "\xC2\x7F",
    "\xC2\xC0",
    "\xDF\x00"s,
    "\xE0\x80\x80",
    "\xE0\x9F\xBF",
    "\xE0\xC0\x80",
    "\xE1\x7F\x80",
    "\xE1\x80\x7F",
    "\xEC\xC0\x80",
    "\xEC\x80\xC0",
    "\xED\xA0\x80",
    "\xED\xBF\xBF",
    "\xEE\x7F\x80",
    "\xEF\xBF\xC0",
    "\xF0\x80\x80\x80",
    "\xF0\x8F\xBF\xBF",
    "\xF0\xC0\x80\x80",
    "\xF1\x7F\x80\x80",
    "\xF1\x80\x7F\x80",
    "\xF3\xBF\xBF\xC0",
    "\xF4\x90\x80\x80",
    "\xF4\xBF\xBF\xBF",
    "\xF5\x80\x80\x80",
    "\xFE",
    "\xFF",
};

/// The same judgement by decoding: shape, shortest form, no surrogate, within Unicode.
bool isUtf8(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size();) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    const unsigned first = byte(i);
    const std::size_t size = first < 0x80 ? 1 : first >> 5 == 6 ? 2 : first >> 4 == 14 ? 3 : first >> 3 == 30 ? 4 : 0;
    if (size == 0 || i + size > bytes.size())
      return false;
    unsigned value = size == 1 ? first : first & (0xFFu >> (size + 1));
    for (std::size_t k = 1; k < size; ++k) {
      if ((byte(i + k) & 0xC0) != 0x80)
        return false;
      value = value << 6 | (byte(i + k) & 0x3F);
    }
    const unsigned least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (value < least[size] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
      return false;
    i += size;
  }
  return true;
}

bool isJudgedValid(std::string_view bytes) {
  Utf8Validator validator;
  validator.feed(bytes);
  return validator.isComplete();
}

/// The characters of the bytes 0x80 to 0x9F; from 0xA0 on a byte is the character of its own code.
constexpr std::array<char32_t, 32> kMiddleCharacters = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t characterOfByte(unsigned byte) {
  return byte >= 0x80 && byte <= 0x9F ? kMiddleCharacters[byte - 0x80] : static_cast<char32_t>(byte);
}

std::string utf8(char32_t value) {
  std::string text;
  appendUtf8(text, value);
  return text;
}

std::string allBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte)
    bytes += static_cast<char>(byte);
  return bytes;
}

} // namespace

TEST(Utf8Validator, noBytes_areValid) {
  EXPECT_TRUE(Utf8Validator().isComplete());
  EXPECT_TRUE(isJudgedValid(""));
}

TEST(Utf8Validator, theFirstAndLastSequencesOfEachLength_areValid) {
  for (const std::string& sequence : kValidSequences) {
    EXPECT_TRUE(isJudgedValid(sequence)) << testing::PrintToString(sequence);
    EXPECT_TRUE(isJudgedValid("a" + sequence + sequence + "z")) << testing::PrintToString(sequence);
  }
}

TEST(Utf8Validator, sequencesBeyondThose_areInvalid) {
  for (const std::string& sequence : kInvalidSequences) {
    EXPECT_FALSE(isJudgedValid(sequence)) << testing::PrintToString(sequence);
    EXPECT_FALSE(isJudgedValid("a" + sequence + "z")) << testing::PrintToString(sequence);
  }
}

TEST(Utf8Validator, aCutSequence_isValidSoFarButNotComplete) {
  for (const std::string& sequence : kValidSequences) {
    for (std::size_t size = 1; size < sequence.size(); ++size) {
      Utf8Validator validator;
      EXPECT_TRUE(validator.feed(sequence.substr(0, size))) << testing::PrintToString(sequence) << ' ' << size;
      EXPECT_FALSE(validator.isComplete()) << testing::PrintToString(sequence) << ' ' << size;
    }
  }
}

TEST(Utf8Validator, aSequenceInPieces_isJudgedAsAWhole) {
  for (const std::string& sequence : kValidSequences) {
    for (std::size_t cut = 0; cut <= sequence.size(); ++cut) {
      Utf8Validator validator;
      EXPECT_TRUE(validator.feed(sequence.substr(0, cut)));
      EXPECT_TRUE(validator.feed(""));
      EXPECT_TRUE(validator.feed(sequence.substr(cut)));
      EXPECT_TRUE(validator.isComplete()) << testing::PrintToString(sequence) << ' ' << cut;
    }
  }
  for (const std::string& sequence : kInvalidSequences) {
    Utf8Validator validator;
    bool valid = true;
    for (const char byte : sequence)
      valid = validator.feed(std::string_view(&byte, 1));
    EXPECT_FALSE(valid) << testing::PrintToString(sequence);
    EXPECT_FALSE(validator.isComplete()) << testing::PrintToString(sequence);
  }
}

TEST(Utf8Validator, afterAnInvalidByte_staysInvalid) {
  Utf8Validator validator;
  EXPECT_FALSE(validator.feed("a\xFF"));
  EXPECT_FALSE(validator.feed("plain text"));
  EXPECT_FALSE(validator.isComplete());
}

TEST(Utf8Validator, agreesWithDecodingOnAllPairsOfBytes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(isJudgedValid(bytes), isUtf8(bytes)) << testing::PrintToString(bytes);
    }
  }
}

TEST(Utf8Validator, agreesWithDecodingOnLongerSequences) {
  const std::string followers = "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xE1";
  for (int first = 0xC0; first < 256; ++first) {
    for (const char second : followers) {
      for (const char third : followers) {
        for (const char fourth : followers) {
          const std::string bytes = {static_cast<char>(first), second, third, fourth};
          ASSERT_EQ(isJudgedValid(bytes), isUtf8(bytes)) << testing::PrintToString(bytes);
          ASSERT_EQ(isJudgedValid(bytes.substr(0, 3)), isUtf8(bytes.substr(0, 3))) << testing::PrintToString(bytes);
        }
      }
    }
  }
}

TEST(Windows1252, everyByteStandsForItsCharacter) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    std::string text;
    appendWindows1252(text, std::string(1, static_cast<char>(byte)));
    EXPECT_EQ(text, utf8(characterOfByte(byte))) << byte;
  }
}

TEST(Windows1252, all256Bytes_comeBackAsTheyWere) {
  std::string text;
  appendWindows1252(text, allBytes());
  EXPECT_EQ(length(text), 256u);
  EXPECT_EQ(encode(text, Encoding::windows1252), allBytes());
}

TEST(Windows1252, isAppendedToWhatIsThere) {
  std::string text = "5 ";
  appendWindows1252(text, "\x80");
  EXPECT_EQ(text, "5 \u20AC");
}

TEST(Windows1252, holdsExactlyItsCharacters) {
  std::vector<bool> expected(0x11000, false);
  for (unsigned byte = 0; byte < 256; ++byte)
    expected[characterOfByte(byte)] = true;
  for (char32_t value = 0; value < expected.size(); ++value) {
    if (value >= 0xD800 && value <= 0xDFFF)
      continue;
    ASSERT_EQ(canEncode(utf8(value), Encoding::windows1252), expected[value]) << static_cast<unsigned>(value);
  }
}

TEST(canEncode, looksAtEveryCharacter) {
  EXPECT_TRUE(canEncode("caf\u00E9 \u20AC 5", Encoding::windows1252));
  EXPECT_FALSE(canEncode("caf\u00E9 \u20AC 5 \u0416", Encoding::windows1252));
  EXPECT_FALSE(canEncode("\u0416 and more", Encoding::windows1252));
  EXPECT_TRUE(canEncode("", Encoding::windows1252));
}

TEST(canEncode, whatIsNoUtf8_hasNoPlaceInWindows1252) {
  for (const char* text : {"\xFF", "caf\xC3", "\x80"}) {
    EXPECT_FALSE(canEncode(text, Encoding::windows1252)) << text;
    EXPECT_EQ(raisedNumber([&] { encode(text, Encoding::windows1252); }), 5) << text;
  }
}

TEST(canEncode, utf8HoldsEveryCharacter) {
  for (const Encoding encoding : {Encoding::utf8, Encoding::utf8WithMark}) {
    EXPECT_TRUE(canEncode("caf\u00E9 \u20AC \u0416 \U0001F600", encoding));
    EXPECT_TRUE(canEncode("\u0080\U0010FFFF", encoding));
  }
}

TEST(encode, inUtf8_isTheTextWithoutAMark) {
  const std::string text = "caf\u00E9 \u20AC \U0001F600";
  EXPECT_EQ(encode(text, Encoding::utf8), text);
  EXPECT_EQ(encode(text, Encoding::utf8WithMark), text);
}

TEST(encode, inWindows1252_isOneByteACharacter) {
  EXPECT_EQ(encode("caf\u00E9 \u20AC 5", Encoding::windows1252), "caf\xE9 \x80 5");
  EXPECT_EQ(encode("", Encoding::windows1252), "");
}

TEST(encode, aCharacterThatTheEncodingLacks_isError5) {
  EXPECT_EQ(raisedNumber([] { encode("a\u0416", Encoding::windows1252); }), 5);
  EXPECT_EQ(raisedNumber([] { encode("\U0001F600", Encoding::windows1252); }), 5);
  // The byte 0x80 is the euro sign, so U+0080 has none.
  EXPECT_EQ(raisedNumber([] { encode("\u0080", Encoding::windows1252); }), 5);
}

} // namespace imex::test
