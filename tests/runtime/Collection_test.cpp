#include "runtime/Collection.h"
#include "support/raised.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace imex::test {
namespace {

std::vector<std::string> itemsOf(const Strings& list) {
  return {list.begin(), list.end()};
}

/// An item that may be moved so many times and then refuses.
struct Stubborn {
  explicit Stubborn(int moves) : movesLeft(moves) {}
  Stubborn(Stubborn&& other) : movesLeft(other.movesLeft - 1) {
    if (movesLeft < 0)
      throw std::runtime_error("stays where it is");
  }
  Stubborn& operator=(Stubborn&&) = delete;
  int movesLeft;
};

} // namespace

TEST(Collection, startsEmpty) {
  const Strings list;
  EXPECT_EQ(list.count(), 0u);
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(itemsOf(list), (std::vector<std::string>{}));
}

TEST(Collection, positionsCountFromOne) {
  const Strings list{"first", "second", "third"};
  EXPECT_EQ(list.count(), 3u);
  EXPECT_FALSE(list.isEmpty());
  EXPECT_EQ(list.item(1), "first");
  EXPECT_EQ(list.item(3), "third");
}

TEST(Collection, aPositionOutside_isError9) {
  const Strings list{"first", "second"};
  EXPECT_EQ(raisedNumber([&] { list.item(0); }), 9);
  EXPECT_EQ(raisedNumber([&] { list.item(3); }), 9);
  EXPECT_EQ(raisedNumber([&] { list.item(-1); }), 9);
  EXPECT_EQ(raisedNumber([&] { list.item(std::numeric_limits<std::size_t>::max()); }), 9);
  EXPECT_EQ(raisedNumber([&] { list.item(std::numeric_limits<long long>::min()); }), 9);
  EXPECT_EQ(raisedNumber([] { Strings().item(1); }), 9);
}

TEST(Collection, keepsTheOrderOfAdding) {
  Strings list;
  list.add("b", "key of b");
  list.add("a");
  list.add("c", "key of c");
  EXPECT_EQ(itemsOf(list), (std::vector<std::string>{"b", "a", "c"}));
  EXPECT_EQ(list.item(2), "a");
}

TEST(Collection, findsAnItemByItsKey) {
  Strings list;
  list.add("no key");
  list.add("thirteen", "CUSTOMERAGENT");
  list.add("five", "CUSTOMERHALVIK");
  EXPECT_EQ(list.item("CUSTOMERAGENT"), "thirteen");
  EXPECT_EQ(list.item("CUSTOMERHALVIK"), "five");
  EXPECT_TRUE(list.contains("CUSTOMERAGENT"));
}

TEST(Collection, keysAreComparedWithoutCase) {
  Strings list;
  list.add("thirteen", "CustomerAgent");
  list.add("north", "\u00E9tage");
  EXPECT_EQ(list.item("CUSTOMERAGENT"), "thirteen");
  EXPECT_EQ(list.item("customeragent"), "thirteen");
  EXPECT_EQ(list.item("\u00C9TAGE"), "north");
  EXPECT_TRUE(list.contains("cUSTOMERaGENT"));
  EXPECT_FALSE(list.contains("CUSTOMER AGENT"));
}

TEST(Collection, anUnknownKey_isError5) {
  Strings list;
  list.add("item", "key");
  EXPECT_EQ(raisedNumber([&] { list.item("other"); }), 5);
  EXPECT_EQ(raisedNumber([&] { list.item(""); }), 5);
  EXPECT_FALSE(list.contains("other"));
}

TEST(Collection, aKeyIsNoPosition) {
  Strings list;
  list.add("item", "2");
  EXPECT_EQ(list.item("2"), "item");
  EXPECT_EQ(raisedNumber([&] { list.item("1"); }), 5);
}

TEST(Collection, aTakenKey_isError457AndLeavesTheListUnchanged) {
  Strings list;
  list.add("first", "key");
  EXPECT_EQ(raisedNumber([&] { list.add("second", "KEY"); }), 457);
  EXPECT_EQ(itemsOf(list), (std::vector<std::string>{"first"}));
  EXPECT_EQ(list.item("key"), "first");
}

TEST(Collection, anItemThatCannotBeAdded_leavesItsKeyFree) {
  Collection<Stubborn> list;
  EXPECT_THROW(list.add(Stubborn(0), "key"), std::runtime_error);
  EXPECT_EQ(list.count(), 0u);
  EXPECT_FALSE(list.contains("key"));
  list.add(Stubborn(5), "key");
  EXPECT_EQ(list.count(), 1u);
  EXPECT_TRUE(list.contains("key"));
}

TEST(Collection, anItemCanBeChangedInPlace) {
  Strings list{"first", "second"};
  list.item(2) = "changed";
  EXPECT_EQ(itemsOf(list), (std::vector<std::string>{"first", "changed"}));
}

TEST(Collection, mayHoldTheSameItemTwice) {
  const Strings list{"same", "same"};
  EXPECT_EQ(list.count(), 2u);
}

TEST(Collection, holdsMoreItemsThanA16BitCounter) {
  Collection<int> list;
  for (int i = 1; i <= 40000; ++i)
    list.add(i);
  EXPECT_EQ(list.count(), 40000u);
  EXPECT_EQ(list.item(40000), 40000);
}

TEST(Collection, isSharedThroughItsPointer) {
  const StringsPtr list = std::make_shared<Strings>();
  const StringsPtr same = list;
  same->add("added elsewhere");
  EXPECT_EQ(list->item(1), "added elsewhere");
}

} // namespace imex::test
