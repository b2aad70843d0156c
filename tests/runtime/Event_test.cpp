#include "runtime/Collection.h"
#include "runtime/Event.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace imex::test {

TEST(Event, withoutHandlers_doesNothing) {
  const Event<int> event;
  EXPECT_NO_THROW(event.raise(1));
}

TEST(Event, callsItsHandlersInTheOrderOfConnection) {
  Event<std::string> event;
  std::vector<std::string> calls;
  event.connect([&](const std::string& text) { calls.push_back("first " + text); });
  event.connect([&](const std::string& text) { calls.push_back("second " + text); });
  event.connect([&](const std::string& text) { calls.push_back("third " + text); });
  event.raise("a");
  event.raise("b");
  EXPECT_EQ(calls, (std::vector<std::string>{"first a", "second a", "third a", "first b", "second b", "third b"}));
}

TEST(Event, anArgumentByValue_isEachHandlersOwn) {
  Event<std::string> event;
  std::string last;
  event.connect([](std::string text) { text += " changed"; });
  event.connect([](std::string text) { const std::string taken = std::move(text); });
  event.connect([&](const std::string& text) { last = text; });
  std::string argument = "as it was";
  event.raise(argument);
  EXPECT_EQ(last, "as it was");
  EXPECT_EQ(argument, "as it was");
}

TEST(Event, anArgumentByReference_isOneObjectForAll) {
  Event<std::string&> event;
  event.connect([](std::string& text) { text += "b"; });
  event.connect([](std::string& text) { text += "c"; });
  std::string argument = "a";
  event.raise(argument);
  EXPECT_EQ(argument, "abc");
}

TEST(Event, aCollection_isShared) {
  Event<StringsPtr> event;
  event.connect([](const StringsPtr& list) { list->add("by the handler"); });
  const StringsPtr list = std::make_shared<Strings>();
  event.raise(list);
  ASSERT_EQ(list->count(), 1u);
  EXPECT_EQ(list->item(1), "by the handler");
}

TEST(Event, anErrorInAHandler_endsTheRaisingAndReachesTheCaller) {
  Event<> event;
  std::vector<std::string> calls;
  event.connect([&] { calls.push_back("first"); });
  event.connect([] { throw RuntimeError(ErrorNumber::diskFull); });
  event.connect([&] { calls.push_back("third"); });
  EXPECT_EQ(raisedNumber([&] { event.raise(); }), 61);
  EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
}

TEST(Event, handlersThatAreConnectedByAHandler_areCalledFromTheNextTimeOn) {
  Event<> event;
  std::vector<std::string> calls;
  bool connected = false;
  event.connect([&] {
    calls.push_back("first");
    // So many that the list of handlers has to move.
    for (int i = 0; !connected && i < 100; ++i)
      event.connect([&] { calls.push_back("late"); });
    connected = true;
  });
  event.connect([&] { calls.push_back("second"); });
  event.raise();
  EXPECT_EQ(calls, (std::vector<std::string>{"first", "second"}));
  calls.clear();
  event.raise();
  std::vector<std::string> expected{"first", "second"};
  expected.insert(expected.end(), 100, "late");
  EXPECT_EQ(calls, expected);
}

TEST(Event, mayBeRaisedByItsOwnHandler) {
  Event<int> event;
  std::vector<int> calls;
  event.connect([&](int depth) {
    calls.push_back(depth);
    if (depth < 3)
      event.raise(depth + 1);
  });
  event.raise(1);
  EXPECT_EQ(calls, (std::vector<int>{1, 2, 3}));
}

} // namespace imex::test
