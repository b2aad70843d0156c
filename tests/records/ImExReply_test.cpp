#include "records/ImExReply.h"

#include "support/TestHost.h"
#include "support/raised.h"
#include "support/texts.h"

#include <gtest/gtest.h>

namespace imex::test {
namespace {

using Nodes = std::vector<std::shared_ptr<FakeNode>>;

std::shared_ptr<FakeNode> leaf(std::string name, std::string text) {
  return std::make_shared<FakeNode>(std::move(name), std::move(text));
}

std::shared_ptr<FakeNode> branch(std::string name, Nodes children) {
  return std::make_shared<FakeNode>(std::move(name), std::move(children));
}

/// A result element around hand-made line results.
std::shared_ptr<FakeNode> resultOf(Nodes lines, const std::string& hasErrors = "false",
                                   const std::string& hasWarnings = "false") {
  return branch("return", {leaf("reply", "done"), leaf("hasErrors", hasErrors), leaf("hasWarnings", hasWarnings),
                           branch("importExportResultBean", std::move(lines))});
}

std::shared_ptr<FakeNode> lineResult(const std::string& successful, const std::string& lineNumber) {
  return branch("item", {leaf("isIuccessful", successful), leaf("line", "a|b"), leaf("lineNumber", lineNumber)});
}

Nodes manyTexts(int count) {
  const auto text = leaf("item", "text");
  return Nodes(static_cast<std::size_t>(count), text);
}

class ImExReplyTest : public testing::Test {
 protected:
  TestHost host;
  ImExReply reply;
};

TEST_F(ImExReplyTest, freshReply_isEmpty) {
  EXPECT_EQ(reply.cImExFormats, nullptr);
  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 0);
  EXPECT_FALSE(reply.IsSuccessful());
  EXPECT_FALSE(reply.hasErrors());
  EXPECT_FALSE(reply.hasWarnings());
  EXPECT_EQ(reply.reply(), "");
}

TEST_F(ImExReplyTest, ImExFormatsOfAFreshReply_isAnEmptyListAndTheSameAtTheNextRead) {
  const ImExFormatsPtr first = reply.ImExFormats();

  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->isEmpty());
  EXPECT_EQ(reply.ImExFormats(), first);
  EXPECT_EQ(reply.cImExFormats, first);
}

TEST_F(ImExReplyTest, values_areKeptAsTheyAreAssigned) {
  reply.IsSuccessful(true);
  reply.hasErrors(true);
  reply.hasWarnings(true);
  reply.reply(" thanks ");

  EXPECT_TRUE(reply.IsSuccessful());
  EXPECT_TRUE(reply.hasErrors());
  EXPECT_TRUE(reply.hasWarnings());
  EXPECT_EQ(reply.reply(), " thanks ");
}

TEST_F(ImExReplyTest, everyAccessor_tracesItsName) {
  reply.IsSuccessful(true);
  (void)reply.IsSuccessful();
  reply.hasErrors(true);
  (void)reply.hasErrors();
  reply.hasWarnings(true);
  (void)reply.hasWarnings();
  reply.reply("a");
  (void)reply.reply();

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImExReply IsSuccessful()", "< ImExReply IsSuccessful()", "> ImExReply IsSuccessful()",
                   "< ImExReply IsSuccessful()", "> ImExReply hasErrors()", "< ImExReply hasErrors()",
                   "> ImExReply hasErrors()", "< ImExReply hasErrors()", "> ImExReply hasWarnings()",
                   "< ImExReply hasWarnings()", "> ImExReply hasWarnings()", "< ImExReply hasWarnings()",
                   "> ImExReply reply()", "< ImExReply reply()", "> ImExReply reply()", "< ImExReply reply()"}));
}

TEST_F(ImExReplyTest, anAccessorThatFails_isRecordedAndKeepsWhatWasThere) {
  reply.reply("old");
  host.trace->lines.clear();
  host.trace->onTrace = [] { throw RuntimeError(1009, "TraceLog", "The trace is full"); };

  reply.reply("new");
  EXPECT_EQ(reply.reply(), "old");

  EXPECT_EQ(host.trace->lines, (Texts{"! ImExReply reply 1009 TraceLog: The trace is full",
                                      "! ImExReply reply 1009 TraceLog: The trace is full"}));
}

TEST_F(ImExReplyTest, processReply_takesEveryElementOfTheAnswer) {
  reply.processReply(
      *answer("2 lines read", {{true, "A|B|", "1"}, {false, "C|D|", "2", {"no city", "no zip"}, {"will be updated"}}}));

  EXPECT_EQ(reply.reply(), "2 lines read");
  EXPECT_TRUE(reply.hasErrors());
  EXPECT_TRUE(reply.hasWarnings());
  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 3);
  ASSERT_EQ(reply.ImExFormats()->count(), 2u);
  ImExFormat& first = *reply.ImExFormats()->item(1);
  EXPECT_TRUE(first.ActionSuccessful());
  EXPECT_EQ(first.Line(), "A|B|");
  EXPECT_EQ(first.LineNumber(), 1);
  EXPECT_EQ(texts(first.errors()), (Texts{}));
  EXPECT_EQ(texts(first.Warnings()), (Texts{}));
  ImExFormat& second = *reply.ImExFormats()->item(2);
  EXPECT_FALSE(second.ActionSuccessful());
  EXPECT_EQ(second.Line(), "C|D|");
  EXPECT_EQ(second.LineNumber(), 2);
  EXPECT_EQ(texts(second.errors()), (Texts{"no city", "no zip"}));
  EXPECT_EQ(texts(second.Warnings()), (Texts{"will be updated"}));
}

TEST_F(ImExReplyTest, processReply_leavesIsSuccessfulFalse) {
  reply.processReply(*answer("all good", {{true, "A|B|", "1"}}));

  EXPECT_FALSE(reply.IsSuccessful());
}

TEST_F(ImExReplyTest, processReply_keepsTheServicesOrderAndItsLineNumbers) {
  reply.processReply(*answer("", {{true, "c", "3"}, {true, "a", "1"}, {true, "c again", "3"}}));

  std::vector<std::string> lines;
  for (const ImExFormatPtr& format : *reply.ImExFormats())
    lines.push_back(toText(format->LineNumber()) + " " + format->Line());
  EXPECT_EQ(lines, (Texts{"3 c", "1 a", "3 c again"}));
}

TEST_F(ImExReplyTest, processReply_keepsTheWhiteSpaceOfTexts) {
  reply.processReply(*answer(" \t done\n", {{false, "  A|B \r\n", "1", {" e "}, {"\tw"}}}));

  EXPECT_EQ(reply.reply(), " \t done\n");
  ImExFormat& format = *reply.ImExFormats()->item(1);
  EXPECT_EQ(format.Line(), "  A|B \r\n");
  EXPECT_EQ(texts(format.errors()), (Texts{" e "}));
  EXPECT_EQ(texts(format.Warnings()), (Texts{"\tw"}));
}

TEST_F(ImExReplyTest, processReplyWithoutLineResults_isAnEmptyListAndATotalOfZero) {
  reply.processReply(*answer("nothing to do", {}));

  EXPECT_EQ(reply.reply(), "nothing to do");
  EXPECT_TRUE(reply.ImExFormats()->isEmpty());
  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 0);
}

TEST_F(ImExReplyTest, processReplyWithoutTheListOfResults_isAnEmptyList) {
  FakeNode node("return", {leaf("reply", "r"), leaf("hasErrors", "false"), leaf("hasWarnings", "false")});

  reply.processReply(node);

  EXPECT_TRUE(reply.ImExFormats()->isEmpty());
}

TEST_F(ImExReplyTest, missingErrorsAndWarnings_areNone) {
  reply.processReply(*resultOf({lineResult("true", "1")}));

  ImExFormat& format = *reply.ImExFormats()->item(1);
  EXPECT_TRUE(format.errors()->isEmpty());
  EXPECT_TRUE(format.Warnings()->isEmpty());
  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 0);
}

TEST_F(ImExReplyTest, emptyTexts_countLikeOthers) {
  reply.processReply(*answer("", {{false, "", "1", {"", ""}, {""}}}));

  EXPECT_EQ(texts(reply.ImExFormats()->item(1)->errors()), (Texts{"", ""}));
  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 3);
}

TEST_F(ImExReplyTest, processReply_startsTheTotalAnew) {
  reply.processReply(*answer("", {{false, "a", "1", {"e", "e", "e"}}}));
  reply.processReply(*answer("", {{false, "b", "2", {"e"}}}));

  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 1);
  EXPECT_EQ(reply.ImExFormats()->count(), 2u);
}

TEST_F(ImExReplyTest, processReply_tracesItselfAndTheValuesInOrder) {
  reply.processReply(*answer("r", {{true, "a", "1"}}));

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImExReply processReply()", "> ImExReply reply()", "< ImExReply reply()",
                   "> ImExReply hasErrors()", "< ImExReply hasErrors()", "> ImExReply hasWarnings()",
                   "< ImExReply hasWarnings()", "> ImExFormat ActionSuccessful()", "< ImExFormat ActionSuccessful()",
                   "> ImExFormat Line()", "< ImExFormat Line()", "> ImExFormat LineNumber()",
                   "< ImExFormat LineNumber()", "< ImExReply processReply()"}));
}

struct BooleanText {
  const char* text;
  bool value;
};

class ImExReplyBooleans : public ImExReplyTest, public testing::WithParamInterface<BooleanText> {};

TEST_P(ImExReplyBooleans, areReadFromTheirTextInAnyCase) {
  const auto [text, value] = GetParam();

  reply.processReply(*resultOf({lineResult(text, "1")}, text, text));

  EXPECT_EQ(reply.hasErrors(), value);
  EXPECT_EQ(reply.hasWarnings(), value);
  EXPECT_EQ(reply.ImExFormats()->item(1)->ActionSuccessful(), value);
}

INSTANTIATE_TEST_SUITE_P(texts, ImExReplyBooleans,
                         testing::Values(BooleanText{"true", true}, BooleanText{"TRUE", true},
                                         BooleanText{"True", true}, BooleanText{"tRuE", true}, BooleanText{"1", true},
                                         BooleanText{"false", false}, BooleanText{"FALSE", false},
                                         BooleanText{"fAlSe", false}, BooleanText{"0", false}),
                         [](const auto& row) { return std::string("text_") + row.param.text; });

TEST_F(ImExReplyTest, anyOtherTextForABoolean_isATypeMismatch) {
  for (const std::string text : {"maybe", "", "2", "-1", "01", "yes", "tru", "falsehood", "true false"}) {
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({}, text, "false")); }), 13) << text;
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({}, "false", text)); }), 13) << text;
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({lineResult(text, "1")})); }), 13) << text;
  }
}

TEST_F(ImExReplyTest, aMissingBoolean_isATypeMismatch) {
  FakeNode node("return", {leaf("reply", "r"), leaf("hasErrors", "false")});

  EXPECT_EQ(raisedNumber([&] { reply.processReply(node); }), 13);
}

TEST_F(ImExReplyTest, aLineNumberIsPlainDigits) {
  for (const std::string text : {"", " ", "1.5", "1,0", "$1", "1e2", "one", "1 2", "0x1", "+1"})
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({lineResult("true", text)})); }), 13) << text;

  reply.processReply(*resultOf({lineResult("true", " \r\n 12\t")}));

  EXPECT_EQ(reply.ImExFormats()->item(1)->LineNumber(), 12) << "layout around the number does not count";
}

TEST_F(ImExReplyTest, lineNumbersToTheEndsOfSixteenBits_areKept) {
  reply.processReply(*resultOf({lineResult("true", "32767"), lineResult("true", "-32768"), lineResult("true", "0")}));

  EXPECT_EQ(reply.ImExFormats()->item(1)->LineNumber(), 32767);
  EXPECT_EQ(reply.ImExFormats()->item(2)->LineNumber(), -32768);
  EXPECT_EQ(reply.ImExFormats()->item(3)->LineNumber(), 0);
}

TEST_F(ImExReplyTest, aLineNumberPastSixteenBits_isAnOverflow) {
  for (const std::string text : {"32768", "40000", "-32769", "99999999999999999999"})
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({lineResult("true", text)})); }), 6) << text;
}

TEST_F(ImExReplyTest, aLineNumberThatIsNoNumber_isATypeMismatch) {
  for (const std::string text : {"", "one", "1x", "0x1F"})
    EXPECT_EQ(raisedNumber([&] { ImExReply().processReply(*resultOf({lineResult("true", text)})); }), 13) << text;
}

TEST_F(ImExReplyTest, textsToTheEndOfSixteenBits_areCounted) {
  const auto line = branch("item", {leaf("isIuccessful", "false"), leaf("line", "a"), leaf("lineNumber", "1"),
                                    branch("errors", manyTexts(32766)), branch("warnings", manyTexts(1))});

  reply.processReply(*resultOf({line}));

  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 32767);
  EXPECT_EQ(reply.ImExFormats()->count(), 1u);
}

TEST_F(ImExReplyTest, oneTextMoreThanSixteenBitsCount_isAnOverflow) {
  const auto line = branch("item", {leaf("isIuccessful", "false"), leaf("line", "a"), leaf("lineNumber", "1"),
                                    branch("errors", manyTexts(32767)), branch("warnings", manyTexts(1))});

  EXPECT_EQ(raisedNumber([&] { reply.processReply(*resultOf({line})); }), 6);

  EXPECT_EQ(reply.intTotalErrorsAndWarnings, 32767);
  EXPECT_EQ(host.trace->errors(), (Texts{"! ImExReply processReply 6 ImEx: Overflow"}));
}

TEST_F(ImExReplyTest, anErrorInALaterResult_leavesTheVerdictsBeforeIt) {
  const auto node =
      resultOf({lineResult("true", "1"), lineResult("true", "2"), lineResult("maybe", "3"), lineResult("true", "4")},
               "true", "false");

  EXPECT_EQ(raisedNumber([&] { reply.processReply(*node); }), 13);

  EXPECT_EQ(reply.reply(), "done");
  EXPECT_TRUE(reply.hasErrors());
  ASSERT_EQ(reply.ImExFormats()->count(), 2u);
  EXPECT_EQ(reply.ImExFormats()->item(2)->LineNumber(), 2);
}

TEST_F(ImExReplyTest, anError_isRecordedAndPassedOnWithoutAnExitLine) {
  const auto error = raised([&] { reply.processReply(*resultOf({}, "maybe", "false")); });

  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 13);
  EXPECT_EQ(error->source(), "ImExReply");
  EXPECT_EQ(error->description(), "Type mismatch");
  EXPECT_EQ(host.trace->lines, (Texts{"> ImExReply processReply()", "> ImExReply reply()", "< ImExReply reply()",
                                      "! ImExReply processReply 13 ImExReply: Type mismatch"}));
}

} // namespace
} // namespace imex::test
