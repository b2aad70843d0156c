#include "runtime/Boolean.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace imex::test {

static_assert(sizeof(Boolean) == 2);
static_assert(std::is_convertible_v<bool, Boolean>);
static_assert(std::is_convertible_v<Boolean, bool>);
// A number or a pointer is no truth value: a slip such as `Boolean found = position;` does not compile.
static_assert(!std::is_constructible_v<Boolean, int>);
static_assert(!std::is_constructible_v<Boolean, const char*>);

TEST(Boolean, startsFalse) {
  const Boolean value;
  EXPECT_FALSE(value);
  EXPECT_EQ(value.bits(), 0);
}

TEST(Boolean, trueHasAllBitsSet) {
  const Boolean value = true;
  EXPECT_TRUE(value);
  EXPECT_EQ(value.bits(), -1);
}

TEST(Boolean, falseHasNoBitSet) {
  const Boolean value = false;
  EXPECT_FALSE(value);
  EXPECT_EQ(value.bits(), 0);
}

TEST(Boolean, takesTheValueThatIsAssigned) {
  Boolean value = true;
  value = false;
  EXPECT_EQ(value.bits(), 0);
  value = !value;
  EXPECT_EQ(value.bits(), -1);
}

TEST(Boolean, comparesAsATruthValue) {
  EXPECT_TRUE(Boolean(true) == Boolean(true));
  EXPECT_TRUE(Boolean(true) == true);
  EXPECT_FALSE(Boolean(true) == Boolean(false));
}

} // namespace imex::test
