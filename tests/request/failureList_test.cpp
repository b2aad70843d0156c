#include "request/failureList.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace imex::test {
namespace {

std::string listOf(std::initializer_list<int> numbers) {
  FailureList list;
  for (const int number : numbers)
    list.add(number);
  return list.text();
}

TEST(FailureList, theNumberThatFillsIt_isTheLastToBeAsked) {
  FailureList list;
  for (int i = 0; i < 10; ++i)
    EXPECT_TRUE(list.add(1000));
  ASSERT_EQ(list.text().size(), 49u);
  EXPECT_TRUE(list.add(7));
  EXPECT_FALSE(list.add(8));
  EXPECT_FALSE(list.add(9));
  EXPECT_EQ(list.text(), "1000,1000,1000,1000,1000,1000,1000,1000,1000,1000,7 and others.");
}

TEST(FailureList, aFreshList_isEmpty) {
  EXPECT_EQ(FailureList().text(), "");
}

TEST(FailureList, oneNumber_standsAlone) {
  EXPECT_EQ(listOf({3}), "3");
}

TEST(FailureList, severalNumbers_areJoinedByCommasInOrder) {
  EXPECT_EQ(listOf({3, 17, 18, 2}), "3,17,18,2");
}

TEST(FailureList, aNumberAddedTwice_isListedTwice) {
  EXPECT_EQ(listOf({5, 5}), "5,5");
}

TEST(FailureList, negativeNumbersAndZero_areNumbersToo) {
  EXPECT_EQ(listOf({0, -1}), "0,-1");
}

TEST(FailureList, fortyNineCharacters_takeOneMoreNumber) {
  const std::string text = listOf({1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009});
  ASSERT_EQ(text.size(), 49u);

  EXPECT_EQ(listOf({1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 7}), text + ",7");
}

TEST(FailureList, fiftyCharacters_endInOthers) {
  const std::string text = listOf({10000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009});
  ASSERT_EQ(text.size(), 50u);

  EXPECT_EQ(listOf({10000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 7}), text + " and others.");
}

TEST(FailureList, fiftyOneCharacters_endInOthers) {
  const std::string text = listOf({10000, 10001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009});
  ASSERT_EQ(text.size(), 51u);

  EXPECT_EQ(listOf({10000, 10001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 7}), text + " and others.");
}

TEST(FailureList, aFullListWithoutAnotherNumber_hasNoOthers) {
  EXPECT_EQ(listOf({10000, 10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008}),
            "10000,10001,10002,10003,10004,10005,10006,10007,10008");
}

TEST(FailureList, numbersAfterOthers_areIgnored) {
  EXPECT_EQ(listOf({10000, 10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008, 1, 2, 3}),
            "10000,10001,10002,10003,10004,10005,10006,10007,10008 and others.");
}

TEST(FailureList, theNumbersFromOneOn_growUntilTheListIsFull) {
  FailureList list;
  for (int number = 1; number <= 1000; ++number)
    list.add(number);

  EXPECT_EQ(list.text(), "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20 and others.");
}

} // namespace
} // namespace imex::test
