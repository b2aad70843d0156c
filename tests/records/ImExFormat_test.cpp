#include "records/ImExFormat.h"

#include "support/TestHost.h"
#include "support/texts.h"

#include <gtest/gtest.h>

namespace imex::test {
namespace {

class ImExFormatTest : public testing::Test {
 protected:
  /// Makes the nth trace call from here on fail.
  void failTrace(int nth) {
    host.trace->onTrace = [remaining = nth]() mutable {
      if (--remaining == 0)
        throw RuntimeError(1009, "TraceLog", "The trace is full");
    };
  }

  TestHost host;
  ImExFormat format;
};

TEST_F(ImExFormatTest, freshRecord_isEmpty) {
  EXPECT_EQ(format.cErrors, nullptr);
  EXPECT_EQ(format.cWarnings, nullptr);
  EXPECT_EQ(format.LineNumber(), 0);
  EXPECT_EQ(format.Line(), "");
  EXPECT_FALSE(format.ActionSuccessful());
}

TEST_F(ImExFormatTest, values_areKeptAsTheyAreAssigned) {
  format.LineNumber(32767);
  format.Line(" a|é|\t ");
  format.ActionSuccessful(true);

  EXPECT_EQ(format.LineNumber(), 32767);
  EXPECT_EQ(format.Line(), " a|é|\t ");
  EXPECT_TRUE(format.ActionSuccessful());
}

TEST_F(ImExFormatTest, errorsOfAFreshRecord_areAnEmptyListAndTheSameAtTheNextRead) {
  const StringsPtr first = format.errors();

  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->isEmpty());
  EXPECT_EQ(format.errors(), first);
  EXPECT_EQ(format.cErrors, first);
}

TEST_F(ImExFormatTest, WarningsOfAFreshRecord_areAnEmptyListAndTheSameAtTheNextRead) {
  const StringsPtr first = format.Warnings();

  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->isEmpty());
  EXPECT_EQ(format.Warnings(), first);
  EXPECT_EQ(format.cWarnings, first);
}

TEST_F(ImExFormatTest, addErrorOnAFreshRecord_makesTheListWithOneEntry) {
  format.addError("Zip is missing");

  ASSERT_NE(format.cErrors, nullptr);
  EXPECT_EQ(texts(format.cErrors), (Texts{"Zip is missing"}));
  EXPECT_EQ(format.cWarnings, nullptr);
}

TEST_F(ImExFormatTest, addWarningOnAFreshRecord_makesTheListWithOneEntry) {
  format.addWarning("Zip is short");

  ASSERT_NE(format.cWarnings, nullptr);
  EXPECT_EQ(texts(format.cWarnings), (Texts{"Zip is short"}));
  EXPECT_EQ(format.cErrors, nullptr);
}

TEST_F(ImExFormatTest, textsAreAppendedInOrder_equalOnesToo) {
  format.addError("b");
  format.addError("a");
  format.addError("b");
  format.addWarning("y");
  format.addWarning("");

  EXPECT_EQ(texts(format.errors()), (Texts{"b", "a", "b"}));
  EXPECT_EQ(texts(format.Warnings()), (Texts{"y", ""}));
}

TEST_F(ImExFormatTest, addError_appendsToTheListThatWasHandedOut) {
  const StringsPtr list = format.errors();

  format.addError("late");

  EXPECT_EQ(texts(list), (Texts{"late"}));
}

TEST_F(ImExFormatTest, everyAccessor_tracesItsName) {
  format.LineNumber(1);
  (void)format.LineNumber();
  format.Line("a");
  (void)format.Line();
  format.ActionSuccessful(true);
  (void)format.ActionSuccessful();

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImExFormat LineNumber()", "< ImExFormat LineNumber()", "> ImExFormat LineNumber()",
                   "< ImExFormat LineNumber()", "> ImExFormat Line()", "< ImExFormat Line()", "> ImExFormat Line()",
                   "< ImExFormat Line()", "> ImExFormat ActionSuccessful()", "< ImExFormat ActionSuccessful()",
                   "> ImExFormat ActionSuccessful()", "< ImExFormat ActionSuccessful()"}));
}

TEST_F(ImExFormatTest, listsAndTheirAdditions_areNotTraced) {
  (void)format.errors();
  (void)format.Warnings();
  format.addError("e");
  format.addWarning("w");

  EXPECT_EQ(host.trace->lines, (Texts{}));
}

TEST_F(ImExFormatTest, aReadThatFails_isRecordedAndGivesTheValueAllTheSame) {
  format.LineNumber(7);
  format.Line("a|b");
  format.ActionSuccessful(true);
  host.trace->lines.clear();

  failTrace(1);
  EXPECT_EQ(format.LineNumber(), 7);
  failTrace(1);
  EXPECT_EQ(format.Line(), "a|b");
  failTrace(1);
  EXPECT_TRUE(format.ActionSuccessful());

  EXPECT_EQ(host.trace->lines, (Texts{"! ImExFormat LineNumber 1009 TraceLog: The trace is full",
                                      "! ImExFormat Line 1009 TraceLog: The trace is full",
                                      "! ImExFormat ActionSuccessful 1009 TraceLog: The trace is full"}));
}

TEST_F(ImExFormatTest, aWriteThatFailsOnEntry_isRecordedAndLeavesTheOldValue) {
  format.Line("old");
  host.trace->lines.clear();

  failTrace(1);
  format.Line("new");
  host.trace->onTrace = [] {};

  EXPECT_EQ(host.trace->lines, (Texts{"! ImExFormat Line 1009 TraceLog: The trace is full"}));
  EXPECT_EQ(format.Line(), "old");
}

TEST_F(ImExFormatTest, aWriteThatFailsOnExit_keepsTheNewValue) {
  failTrace(2);
  format.Line("new");
  host.trace->onTrace = [] {};

  EXPECT_EQ(host.trace->lines, (Texts{"> ImExFormat Line()", "! ImExFormat Line 1009 TraceLog: The trace is full"}));
  EXPECT_EQ(format.Line(), "new");
}

TEST_F(ImExFormatTest, anErrorNumberPastSixteenBits_leavesTheAccessorAsOverflow) {
  host.trace->onTrace = [] { throw RuntimeError(70000, "TraceLog", "The trace is full"); };

  std::int32_t number = 0;
  try {
    (void)format.Line();
  } catch (const RuntimeError& error) {
    number = error.number();
  }

  EXPECT_EQ(number, 6);
  EXPECT_EQ(host.trace->lines, (Texts{}));
}

} // namespace
} // namespace imex::test
