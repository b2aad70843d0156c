#include "runtime/Integer.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace imex::test {

static_assert(sizeof(Integer) == 2);
static_assert(std::is_convertible_v<Integer, int>);
// Truth values, characters and fractions are no whole numbers.
static_assert(!std::is_constructible_v<Integer, bool>);
static_assert(!std::is_constructible_v<Integer, char>);
static_assert(!std::is_constructible_v<Integer, double>);

TEST(Integer, startsAtZero) {
  EXPECT_EQ(int{Integer()}, 0);
}

TEST(Integer, holdsEveryNumberOf16Bits) {
  for (int number = -32768; number <= 32767; ++number)
    ASSERT_EQ(int{Integer(number)}, number);
}

TEST(Integer, pastItsLimits_overflows) {
  EXPECT_EQ(raisedNumber([] { Integer(32768); }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(-32769); }), 6);
  EXPECT_EQ(raisedNumber([] { (void)Integer(std::numeric_limits<int>::max()); }), 6);
  EXPECT_EQ(raisedNumber([] { (void)Integer(std::numeric_limits<int>::min()); }), 6);
}

TEST(Integer, judgesEveryTypeByItsValue) {
  EXPECT_EQ(int{Integer(std::size_t{32767})}, 32767);
  EXPECT_EQ(raisedNumber([] { Integer(std::size_t{32768}); }), 6);
  EXPECT_EQ(raisedNumber([] { (void)Integer(std::numeric_limits<std::size_t>::max()); }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(std::uint16_t{65535}); }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(std::int64_t{1} << 32); }), 6);
  EXPECT_EQ(int{Integer(std::int64_t{-32768})}, -32768);
  EXPECT_EQ(int{Integer(std::int8_t{-128})}, -128);
}

TEST(Integer, overflow_saysSo) {
  const std::optional<RuntimeError> error = raised([] { Integer(40000); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "Overflow");
}

TEST(Integer, addsWithinItsLimits) {
  EXPECT_EQ(int{Integer(32766) + 1}, 32767);
  EXPECT_EQ(int{Integer(-32767) + -1}, -32768);
  EXPECT_EQ(int{Integer(20000) + Integer(-30000)}, -10000);
  Integer sum = 1;
  sum += 2;
  ++sum;
  EXPECT_EQ(int{sum}, 4);
}

TEST(Integer, aSumPastItsLimits_overflows) {
  EXPECT_EQ(raisedNumber([] { Integer(32767) + 1; }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(-32768) + -1; }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(32767) + Integer(32767); }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(1) + 40000; }), 6);
  EXPECT_EQ(raisedNumber([] { Integer(-1) + 32768; }), 6);
}

TEST(Integer, afterAFailedSum_isUnchanged) {
  Integer counter = 32767;
  EXPECT_EQ(raisedNumber([&] { ++counter; }), 6);
  EXPECT_EQ(int{counter}, 32767);
  EXPECT_EQ(raisedNumber([&] { counter += 1; }), 6);
  EXPECT_EQ(int{counter}, 32767);
  EXPECT_EQ(raisedNumber([&] { counter = 70000; }), 6);
  EXPECT_EQ(int{counter}, 32767);
}

TEST(Integer, comparesByValue) {
  EXPECT_TRUE(Integer(7) == Integer(7));
  EXPECT_TRUE(Integer(7) == 7);
  EXPECT_TRUE(Integer(7) == std::size_t{7});
  EXPECT_FALSE(Integer(-1) == std::uint16_t{65535});
  EXPECT_FALSE(Integer(-1) == std::numeric_limits<std::size_t>::max());
  // A number that does not fit is different, not an error.
  EXPECT_FALSE(Integer(7) == 70007);
}

TEST(Integer, ordersAsItsValue) {
  EXPECT_TRUE(Integer(-32768) < Integer(32767));
  EXPECT_TRUE(Integer(3) < 4);
  EXPECT_TRUE(Integer(500) >= 500);
}

TEST(Integer, asText_isDecimal) {
  EXPECT_EQ(toText(Integer(0)), "0");
  EXPECT_EQ(toText(Integer(-32768)), "-32768");
  EXPECT_EQ(toText(Integer(32767)), "32767");
}

} // namespace imex::test
