#include "runtime/bytes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace imex::test {
namespace {

constexpr auto kIsMark = [](auto c) { return (c == '<') | (c == '&'); };

TEST(FindByte, findsTheFirst_whereverItStands) {
  for (std::size_t size = 1; size <= 100; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, 'x');
      text[at] = '&';
      ASSERT_EQ(findByte(text, kIsMark), at) << size;
      text.back() = '<';
      ASSERT_EQ(findByte(text, kIsMark), at) << size;
    }
  }
}

TEST(FindByte, withoutOne_isTheSize) {
  for (std::size_t size = 0; size <= 100; ++size)
    ASSERT_EQ(findByte(std::string(size, 'x'), kIsMark), size);
}

TEST(FindByte, looksFromAPlaceOn) {
  const std::string text = "<" + std::string(40, 'x') + "<" + std::string(40, 'x');
  EXPECT_EQ(findByte(text, kIsMark, 0), 0U);
  EXPECT_EQ(findByte(text, kIsMark, 1), 41U);
  EXPECT_EQ(findByte(text, kIsMark, 41), 41U);
  EXPECT_EQ(findByte(text, kIsMark, 42), text.size());
  EXPECT_EQ(findByte(text, kIsMark, text.size()), text.size());
}

TEST(FindByte, comparesBytesAsNumbersWithoutASign) {
  for (int value = 0; value < 256; ++value) {
    const std::string text = std::string(50, 'x') + static_cast<char>(value);
    EXPECT_EQ(findByte(text, [](auto c) { return c > 'x'; }), value > 'x' ? 50U : 51U) << value;
    EXPECT_EQ(findByte(text, [](auto c) { return c < 0x20; }), value < 0x20 ? 50U : 51U) << value;
  }
}

TEST(FindByte, tellsControlCharactersAndBytesBeyondAscii) {
  for (int value = 0; value < 256; ++value) {
    const bool isWanted = value < 0x20 || value > 0x7F;
    EXPECT_EQ(isControlOrNonAscii(static_cast<unsigned char>(value)), isWanted) << value;
    for (const std::size_t at : {0U, 31U, 32U, 50U}) {
      std::string text(51, 'x');
      text[at] = static_cast<char>(value);
      EXPECT_EQ(findByte(text, [](auto c) { return isControlOrNonAscii(c); }), isWanted ? at : text.size()) << value;
    }
  }
}

TEST(FindNonAscii, findsTheFirst_whereverItStands) {
  for (std::size_t size = 0; size <= 200; ++size) {
    std::string text(size, '\x7F');
    ASSERT_EQ(findNonAscii(text), size);
    for (std::size_t at = 0; at < size; ++at) {
      text[at] = '\x80';
      ASSERT_EQ(findNonAscii(text), at) << size;
      ASSERT_EQ(findNonAscii(text, at), at) << size;
      ASSERT_EQ(findNonAscii(text, at + 1), size) << size;
      text[at] = '\x7F';
    }
  }
}

TEST(EqualBytes, hasABitForEachByteThatIsEqual) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::string text;
    std::uint64_t expected = 0;
    for (unsigned i = 0; i < kMaskSize; ++i) {
      const bool isTab = random() % 4 == 0;
      text += isTab ? '\t' : static_cast<char>(random() % 9);
      expected |= std::uint64_t{isTab} << i;
    }
    ASSERT_EQ(equalBytes(text.data(), '\t'), expected);
    for (std::size_t size = 0; size < kMaskSize; ++size) {
      const std::string part = text.substr(0, size); // nothing behind it may be read
      ASSERT_EQ(equalBytes(part.data(), size, '\t'), expected & ((std::uint64_t{1} << size) - 1)) << size;
    }
  }
}

} // namespace
} // namespace imex::test
