#include "controls/common/ownEvent.h"

#include "support/QtTest.h"

#include <gtest/gtest.h>

namespace imex {

namespace {

TEST(OwnEvent, runsAtOnce) {
  int runs = 0;
  runAsEvent([&] { ++runs; });
  EXPECT_EQ(1, runs);
}

TEST(OwnEvent, errorEndsInTheApplication) {
  bool ranOn = false;
  runAsEvent([] { throw RuntimeError(57, "handler", "went wrong"); });
  ranOn = true;
  EXPECT_TRUE(ranOn);
  EXPECT_EQ(std::vector<int>{57}, test::takeEscapedNumbers());
}

TEST(OwnEvent, eventsNest) {
  std::vector<int> order;
  runAsEvent([&] {
    order.push_back(1);
    runAsEvent([&] {
      order.push_back(2);
      throw RuntimeError(57, "handler", "went wrong");
    });
    order.push_back(3);
  });
  EXPECT_EQ((std::vector<int>{1, 2, 3}), order);
  EXPECT_EQ(std::vector<int>{57}, test::takeEscapedNumbers());
}

} // namespace

} // namespace imex
