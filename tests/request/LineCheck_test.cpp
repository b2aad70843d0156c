#include "request/LineCheck.h"

#include "RequestTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace imex::test {
namespace {

constexpr int kPipe = 124;

std::string fields(int count, const std::vector<int>& empty = {}) {
  std::string line;
  for (int i = 1; i <= count; ++i) {
    const bool isEmpty = std::find(empty.begin(), empty.end(), i) != empty.end();
    line += (i == 1 ? "" : "|") + (isEmpty ? std::string() : "field " + std::to_string(i));
  }
  return line;
}

bool passesAsCustomer(const std::string& line) {
  return LineCheck(kPipe, kCustomerColumns, requiredFields("CUSTOMER", "AGENT")).passes(line);
}

TEST(LineCheck, theNumberOfFields_mustBeTheExpectedOne) {
  for (int expected = 1; expected <= 130; ++expected) {
    const LineCheck check(kPipe, expected, 0);
    EXPECT_FALSE(check.passes(fields(expected - 1))) << expected;
    EXPECT_TRUE(check.passes(fields(expected))) << expected;
    EXPECT_FALSE(check.passes(fields(expected + 1))) << expected;
  }
}

TEST(LineCheck, eachRequiredFieldOfACustomer_mustBeFilled) {
  EXPECT_TRUE(passesAsCustomer(fields(13)));
  for (int empty = 1; empty <= 13; ++empty) {
    const bool isRequired = std::set{2, 3, 6, 7, 8, 11, 13}.contains(empty);
    EXPECT_EQ(passesAsCustomer(fields(13, {empty})), !isRequired) << empty;
  }
}

TEST(LineCheck, eachRequiredFieldOfAProduct_mustBeFilled) {
  const LineCheck check(kPipe, kProductColumns, requiredFields("PRODUCT", "AGENT"));
  EXPECT_TRUE(check.passes(fields(11)));
  for (int empty = 1; empty <= 11; ++empty)
    EXPECT_EQ(check.passes(fields(11, {empty})), !std::set({1, 3, 11}).contains(empty)) << empty;
}

TEST(LineCheck, otherLayouts_requireNothing) {
  EXPECT_EQ(requiredFields("CUSTOMER", "HALVIK"), 0U);
  EXPECT_EQ(requiredFields("INVOICE", "AGENT"), 0U);
  EXPECT_EQ(requiredFields("customer", "AGENT"), 0U);
}

TEST(LineCheck, aFormatWithoutARequiredField_neverPasses) {
  EXPECT_FALSE(LineCheck(kPipe, 12, requiredFields("CUSTOMER", "AGENT")).passes(fields(12)));
  EXPECT_FALSE(LineCheck(kPipe, 5, requiredFields("CUSTOMER", "AGENT")).passes(fields(5)));
}

TEST(LineCheck, longLinesEmptyOnesAndOtherDelimiters_areForTheCheckItself) {
  EXPECT_TRUE(LineCheck(kPipe, 1, 0).passes(std::string(32767, 'x')));
  EXPECT_FALSE(LineCheck(kPipe, 1, 0).passes(std::string(32768, 'x')));
  EXPECT_FALSE(LineCheck(kPipe, 1, 0).passes(""));
  EXPECT_TRUE(LineCheck(127, 1, 0).passes("x"));
  EXPECT_FALSE(LineCheck(128, 1, 0).passes("x"));
  EXPECT_FALSE(LineCheck(-1, 1, 0).passes("x"));
  EXPECT_FALSE(LineCheck(kPipe, 0, 0).passes("x"));
  EXPECT_FALSE(LineCheck(kPipe, -1, 0).passes("x"));
}

// What it lets pass, the check itself lets pass; and of lines of a usual length it lets pass all of those.
class LineCheckAndValidation : public RequestTest, public testing::WithParamInterface<const char*> {};

TEST_P(LineCheckAndValidation, agree) {
  configure(GetParam(), "AGENT");
  const int columns = request.tabCount();
  const LineCheck check(kPipe, columns, requiredFields(GetParam(), "AGENT"));
  std::mt19937 random(11);
  for (int round = 0; round < 3000; ++round) {
    std::string line;
    const int count = random() % 8 == 0 ? static_cast<int>(random() % 20) + 1 : columns;
    for (int i = 0; i < count; ++i)
      line += (i == 0 ? "" : "|") + std::string(random() % 12 == 0 ? 0 : 1 + random() % 40, 'x');
    if (line.empty())
      continue;
    const bool passes = request.simpleClientValidation(line, kPipe, columns)->isEmpty();
    ASSERT_EQ(check.passes(line), passes) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Types, LineCheckAndValidation, testing::Values("CUSTOMER", "PRODUCT", "INVOICE"),
                         [](const auto& type) { return std::string(type.param); });

} // namespace
} // namespace imex::test
