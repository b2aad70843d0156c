#include "RequestTest.h"
#include "module/ImExModule.h"
#include "request/ImExRequest.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace imex::test {
namespace {

const std::string kNotDisplayed = "SerializationFailed: The server responded, but the results could not be displayed.";
const std::string kFailed = "Import failed for this line due to errors and/or warnings on line(s): ";
const std::string kSucceeded = "Import successful for this line.";

class ImExRequestReply : public RequestTest {
 protected:
  void SetUp() override { configure("BALLASTS", "HALVIK"); }

  /// The names of the format's columns as they are now, with "Comments" behind.
  static Texts headersWithComments() {
    Texts result = texts(ImExModule::getFormatColumns("BALLASTSHALVIK"));
    result.emplace_back("Comments");
    return result;
  }

  /// The status message of a failing line in an answer whose lines of these numbers fail.
  std::string statusOf(const std::vector<int>& failing) {
    std::vector<Verdict> verdicts;
    for (const int number : failing)
      verdicts.push_back({false, "A|B|", std::to_string(number), {"e"}});
    shown.clear();
    request.Deserialize(*answer("", verdicts));
    return shown.at(0).messages.at(0);
  }
};

/// An answer of one line with this many texts, half of them warnings.
std::shared_ptr<FakeNode> answerWithTexts(int count) {
  const auto errors = static_cast<std::size_t>(count / 2);
  const auto warnings = static_cast<std::size_t>(count) - errors;
  return answer("", {{false, "A|B|", "1", Texts(errors, "e"), Texts(warnings, "w")}});
}

// --- Deserialize ----------------------------------------------------------------------------------------------------

TEST_F(ImExRequestReply, theEvents_comeInOrderAroundThePage) {
  Texts order;
  request.MessageReceived.connect(
      [&](auto&&) { order.emplace_back(isPageWritten() ? "received after the page" : "received"); });
  request.showErrors.connect(
      [&](auto&&...) { order.emplace_back(isPageWritten() ? "shown after the page" : "shown"); });

  request.Deserialize(*answer("done", {{true, "A|B|", "1"}}));

  EXPECT_EQ(order, (Texts{"received", "shown after the page"}));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
}

TEST_F(ImExRequestReply, MessageReceived_bringsTheReadReply) {
  request.Deserialize(*answer("1 line", {{false, "A|B|", "1", {"e"}, {"w"}}}));

  ASSERT_EQ(replies.size(), 1u);
  EXPECT_EQ(replies[0]->reply(), "1 line");
  EXPECT_TRUE(replies[0]->hasErrors());
  EXPECT_EQ(replies[0]->intTotalErrorsAndWarnings, 2);
  EXPECT_EQ(replies[0]->ImExFormats()->count(), 1u);
  EXPECT_FALSE(replies[0]->IsSuccessful());
}

TEST_F(ImExRequestReply, everyAnswer_getsAReplyOfItsOwn) {
  request.Deserialize(*answer("first", {{true, "A|B|", "1"}}));
  request.Deserialize(*answer("second", {}));

  ASSERT_EQ(replies.size(), 2u);
  EXPECT_EQ(replies[0]->reply(), "first");
  EXPECT_EQ(replies[0]->ImExFormats()->count(), 1u);
  EXPECT_EQ(replies[1]->reply(), "second");
  EXPECT_EQ(replies[1]->ImExFormats()->count(), 0u);
}

TEST_F(ImExRequestReply, anAnswerWithoutLines_isShownEmpty) {
  request.Deserialize(*answer("nothing", {}));

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_TRUE(shown[0].lines.empty());
  EXPECT_TRUE(shown[0].messages.empty());
  EXPECT_EQ(shown[0].count, 0);
  EXPECT_TRUE(isPageWritten());
}

TEST_F(ImExRequestReply, aThousandTexts_areShown) {
  request.Deserialize(*answerWithTexts(1000));

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  EXPECT_EQ(shown.at(0).messages.size(), 1001u);
  EXPECT_TRUE(isPageWritten());
}

TEST_F(ImExRequestReply, aThousandAndOneTexts_areOnlyOnThePage) {
  request.Deserialize(*answerWithTexts(1001));

  EXPECT_EQ(events, (Texts{"MessageReceived"}));
  EXPECT_TRUE(isPageWritten());
}

TEST_F(ImExRequestReply, theCountOfTexts_isThatOfAllLines) {
  std::vector<Verdict> verdicts(500, Verdict{false, "A|B|", "1", {"e"}, {"w"}});
  request.Deserialize(*answer("", verdicts));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));

  events.clear();
  verdicts.push_back({false, "A|B|", "1", {"e"}});
  request.Deserialize(*answer("", verdicts));
  EXPECT_EQ(events, (Texts{"MessageReceived"}));
}

TEST_F(ImExRequestReply, linesWithoutTexts_doNotCount) {
  request.Deserialize(*answer("", std::vector<Verdict>(2000, Verdict{true, "A|B|", "1"})));

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  EXPECT_EQ(shown.at(0).count, 2000);
}

TEST_F(ImExRequestReply, anErrorInTheAnswer_isRecordedAndPassedOn) {
  EXPECT_EQ(raisedNumber([&] { request.Deserialize(*answer("", {{true, "A|B|", "40000"}})); }), 6);

  EXPECT_EQ(events, (Texts{}));
  EXPECT_FALSE(isPageWritten());
  EXPECT_EQ(steps(),
            (Texts{"> ImExRequest Deserialize()", "> ImExReply processReply()",
                   "! ImExReply processReply 6 ImEx: Overflow", "! ImExRequest Deserialize 6 ImEx: Overflow"}));
  expectedErrors = host.trace->errors();
}

TEST_F(ImExRequestReply, anErrorOfAMessageReceivedHandler_isRecordedAndPassedOn) {
  request.MessageReceived.connect([](auto&&) { throw RuntimeError(1234, "Panel", "no panel"); });

  const auto error = raised([&] { request.Deserialize(*answer("", {})); });

  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 1234);
  EXPECT_EQ(error->source(), "Panel");
  EXPECT_EQ(error->description(), "no panel");
  EXPECT_FALSE(isPageWritten());
  expectedErrors = {"! ImExRequest Deserialize 1234 Panel: no panel"};
}

TEST_F(ImExRequestReply, theSteps_areTraced) {
  request.Deserialize(*answer("", {{true, "A|B|", "1"}}));

  EXPECT_EQ(steps(), (Texts{"> ImExRequest Deserialize()", "> ImExReply processReply()", "< ImExReply processReply()",
                            "> ImExRequest mergeLineResults()", "> ImExModule Parse()", "< ImExModule Parse()",
                            "> ImExRequest writeResultsReport()", "< ImExRequest writeResultsReport()",
                            "< ImExRequest mergeLineResults()", "< ImExRequest Deserialize()"}));
}

TEST_F(ImExRequestReply, theStepsBeyondAThousandTexts_areTraced) {
  request.Deserialize(*answerWithTexts(1001));

  EXPECT_EQ(steps(), (Texts{"> ImExRequest Deserialize()", "> ImExReply processReply()", "< ImExReply processReply()",
                            "> ImExRequest writeResultsReport()", "< ImExRequest writeResultsReport()",
                            "< ImExRequest Deserialize()"}));
}

// --- The messages of the lines --------------------------------------------------------------------------------------

TEST_F(ImExRequestReply, everyLine_hasItsStatusThenErrorsThenWarnings) {
  request.Deserialize(*answer("", {{true, "A|B|", "1"},
                                   {false, "C|D|", "2", {"no city", "no zip"}, {"will be updated"}},
                                   {true, "E|F|", "3", {}, {"short"}}}));

  EXPECT_EQ(shown.at(0).messages,
            (Texts{"1: " + kSucceeded, "2: " + kFailed + "2,2,3", "2: Error : no city", "2: Error : no zip",
                   "2: Warning : will be updated", "3: " + kSucceeded, "3: Warning : short"}));
}

TEST_F(ImExRequestReply, rowNumbers_areTheServicesLineNumbers) {
  request.Deserialize(*answer("", {{true, "A|B|", "7"}, {true, "C|D|", "7"}, {true, "E|F|", "0"}}));

  EXPECT_EQ(shown.at(0).messages, (Texts{"7: " + kSucceeded, "7: " + kSucceeded, "0: " + kSucceeded}));
}

TEST_F(ImExRequestReply, texts_areKeptWhole) {
  request.Deserialize(*answer("", {{true, "A|B|", "1", {" <b>é</b> "}, {""}}}));

  EXPECT_EQ(shown.at(0).messages, (Texts{"1: " + kSucceeded, "1: Error :  <b>é</b> ", "1: Warning : "}));
}

TEST_F(ImExRequestReply, aFailedLineWithoutTexts_namesNoLine) {
  request.Deserialize(*answer("", {{false, "A|B|", "1"}}));

  EXPECT_EQ(shown.at(0).messages, (Texts{"1: " + kFailed}));
}

TEST_F(ImExRequestReply, aLineWithErrorsAndWarnings_isInTheFailureListTwice) {
  request.Deserialize(*answer("", {{false, "A|B|", "3", {"e"}, {"w"}}}));

  EXPECT_EQ(shown.at(0).messages.at(0), "3: " + kFailed + "3,3");
}

TEST_F(ImExRequestReply, aLineWithWarningsOnly_isInTheFailureListUnlessTheyAreAllowed) {
  const auto node = answer("", {{false, "A|B|", "1", {}, {"w"}}, {false, "C|D|", "2", {"e"}, {"w"}}});
  request.Deserialize(*node);
  EXPECT_EQ(shown.at(0).messages.at(0), "1: " + kFailed + "1,2,2");

  request.AllowWarnings(true);
  request.Deserialize(*node);
  EXPECT_EQ(shown.at(1).messages.at(0), "1: " + kFailed + "2");
}

TEST_F(ImExRequestReply, aSuccessfulLineWithErrors_isInTheFailureListAllTheSame) {
  request.Deserialize(*answer("", {{true, "A|B|", "1", {"e"}}, {false, "C|D|", "2"}}));

  EXPECT_EQ(shown.at(0).messages, (Texts{"1: " + kSucceeded, "1: Error : e", "2: " + kFailed + "1"}));
}

TEST_F(ImExRequestReply, theFailureList_growsToFiftyCharacters) {
  std::vector<int> failing(20);
  std::iota(failing.begin(), failing.end(), 1);
  EXPECT_EQ(statusOf(failing), "1: " + kFailed + "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20");

  failing.push_back(21);
  const std::string full = "1: " + kFailed + "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20 and others.";
  EXPECT_EQ(statusOf(failing), full);

  failing.push_back(22);
  failing.push_back(23);
  EXPECT_EQ(statusOf(failing), full);
}

TEST_F(ImExRequestReply, theFailureListOfFortyNineCharacters_takesOneMoreNumber) {
  EXPECT_EQ(statusOf({1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 10}),
            "1000: " + kFailed + "1000,1001,1002,1003,1004,1005,1006,1007,1008,1009,10");
  EXPECT_EQ(statusOf({1000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 10, 11}),
            "1000: " + kFailed + "1000,1001,1002,1003,1004,1005,1006,1007,1008,1009,10 and others.");
}

TEST_F(ImExRequestReply, theFailureListOfFiftyCharacters_takesNoMore) {
  EXPECT_EQ(statusOf({10000, 1001, 1002, 1003, 1004, 1005, 1006, 1007, 1008, 1009, 10}),
            "10000: " + kFailed + "10000,1001,1002,1003,1004,1005,1006,1007,1008,1009 and others.");
}

// --- showErrors -----------------------------------------------------------------------------------------------------

TEST_F(ImExRequestReply, showErrors_bringsItsSevenArguments) {
  const Texts headers = headersWithComments();

  request.Deserialize(*answer("", {{true, "A|B|", "1"}, {true, "C||D", "2"}, {true, "", "3"}}));

  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].fileName, importPath());
  EXPECT_EQ(shown[0].lines, (std::vector<Texts>{{"A", "B", ""}, {"C", "", "D"}, {""}}));
  EXPECT_EQ(shown[0].messages, (Texts{"1: " + kSucceeded, "2: " + kSucceeded, "3: " + kSucceeded}));
  EXPECT_EQ(shown[0].count, 3);
  EXPECT_EQ(shown[0].columns, kBallastColumns + 1);
  EXPECT_EQ(texts(shown[0].headers), headers);
  EXPECT_EQ(shown[0].delimiterAscii, 124);
}

TEST_F(ImExRequestReply, lines_areSplitByTheDelimiterOfTheRequest) {
  request.Delimiter("TAB");

  request.Deserialize(*answer("", {{true, "A|B\tC", "1"}}));

  EXPECT_EQ(shown.at(0).lines, (std::vector<Texts>{{"A|B", "C"}}));
  EXPECT_EQ(shown.at(0).delimiterAscii, 9);
}

TEST_F(ImExRequestReply, everyMerge_addsOneCommentsToTheCataloguesOwnList) {
  const Texts once = headersWithComments();

  request.Deserialize(*answer("", {}));
  EXPECT_EQ(texts(ImExModule::getFormatColumns("BALLASTSHALVIK")), once);
  EXPECT_EQ(shown.at(0).headers, ImExModule::getFormatColumns("BALLASTSHALVIK"));

  Texts twice = once;
  twice.emplace_back("Comments");
  ImExRequest other;
  other.DataOrigin("HALVIK");
  other.DataType("BALLASTS");
  other.Directory(host.folder / "out/");
  other.Deserialize(*answer("", {}));
  EXPECT_EQ(texts(ImExModule::getFormatColumns("BALLASTSHALVIK")), twice);
}

TEST_F(ImExRequestReply, everyMerge_leavesTheColumnCount) {
  request.Deserialize(*answer("", {}));
  request.Deserialize(*answer("", {}));

  EXPECT_EQ(shown.at(1).columns, kBallastColumns + 1);
  EXPECT_EQ(request.tabCount(), kBallastColumns);
  EXPECT_EQ(ImExModule::getFormatColumnCount("BALLASTSHALVIK"), kBallastColumns);
}

TEST_F(ImExRequestReply, aThousandAndOneTexts_addNoComments) {
  const Texts before = texts(ImExModule::getFormatColumns("BALLASTSHALVIK"));

  request.Deserialize(*answerWithTexts(1001));

  EXPECT_EQ(texts(ImExModule::getFormatColumns("BALLASTSHALVIK")), before);
}

TEST_F(ImExRequestReply, whatAHandlerWrites_doesNotReachTheSettings) {
  request.showErrors.connect([](std::string& fileName, RowsPtr& lines, ErrorBeansPtr& rows, Integer& count,
                                Integer& columns, StringsPtr& headers, Integer& delimiterAscii) {
    fileName = "other.txt";
    lines = nullptr;
    rows = nullptr;
    count = 1000;
    columns = 2000;
    headers = nullptr;
    delimiterAscii = 59;
  });
  const Texts headers = headersWithComments();

  request.Deserialize(*answer("", {{true, "A|B|", "1"}}));

  EXPECT_EQ(request.CheckedFileName(), importPath());
  EXPECT_EQ(request.rowCount(), 0);
  EXPECT_EQ(request.tabCount(), kBallastColumns);
  EXPECT_EQ(request.DelimiterAscii(), 124);
  EXPECT_EQ(texts(ImExModule::getFormatColumns("BALLASTSHALVIK")), headers);
}

TEST_F(ImExRequestReply, handlers_seeWhatAnEarlierHandlerWrote) {
  std::string seen;
  request.showErrors.connect([](std::string& fileName, auto&&...) { fileName = "other.txt"; });
  request.showErrors.connect([&](std::string& fileName, auto&&...) { seen = fileName; });

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(seen, "other.txt");
}

TEST_F(ImExRequestReply, Deserialize_leavesRowCount) {
  request.rowCount(7);

  request.Deserialize(*answer("", {{true, "A|B|", "1"}}));

  EXPECT_EQ(request.rowCount(), 7);
}

// --- Failures of the merge ------------------------------------------------------------------------------------------

TEST_F(ImExRequestReply, aLineTooLongToSplit_isReportedBeforeThePage) {
  request.Deserialize(*answer("", {{true, std::string(40000, 'X'), "1"}}));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed}));
  EXPECT_FALSE(isPageWritten());
  expectedErrors = {"! ImExModule launchInternetExplorer 6 ImEx: Overflow",
                    "! ImExRequest mergeLineResults 6 ImEx: Overflow"};
}

TEST_F(ImExRequestReply, aFormatWithoutColumnNames_isReportedBeforeThePage) {
  configure("CATALOGUE", "NOBODY");
  host.trace->lines.clear();

  request.Deserialize(*answer("", {{true, "A|B|", "1"}}));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed}));
  EXPECT_FALSE(isPageWritten());
  const Texts errors = host.trace->errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_TRUE(errors.back().starts_with("! ImExRequest mergeLineResults 91 ")) << errors.back();
  expectedErrors = errors;
}

TEST_F(ImExRequestReply, moreLinesThanSixteenBitsCount_areReported) {
  request.Deserialize(*answer("", std::vector<Verdict>(32768, Verdict{true, "A|B|", "1"})));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed}));
  expectedErrors = {"! ImExRequest mergeLineResults 6 ImEx: Overflow"};
}

TEST_F(ImExRequestReply, anErrorOfAShowErrorsHandler_isReported) {
  request.showErrors.connect([](auto&&...) { throw RuntimeError(1234, "Editor", "no editor"); });

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors", kNotDisplayed}));
  expectedErrors = {"! ImExRequest mergeLineResults 1234 Editor: no editor"};
}

TEST_F(ImExRequestReply, aFailedMerge_hasNoExitLine) {
  request.showErrors.connect([](auto&&...) { throw RuntimeError(1234, "Editor", "no editor"); });

  request.Deserialize(*answer("", {}));

  EXPECT_EQ(traceOf("mergeLineResults()"), (Texts{"> ImExRequest mergeLineResults()"}));
  EXPECT_EQ(traceOf("Deserialize()"), (Texts{"> ImExRequest Deserialize()", "< ImExRequest Deserialize()"}));
  expectedErrors = {"! ImExRequest mergeLineResults 1234 Editor: no editor"};
}

TEST_F(ImExRequestReply, aPageThatFails_isReportedOnceAndTheLinesAreShownAllTheSame) {
  request.Directory(host.folder / "nowhere/");

  request.Deserialize(*answer("", {{true, "A|B|", "1"}}));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed, "showErrors"}));
  EXPECT_EQ(shown.at(0).count, 1);
  const Texts errors = host.trace->errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_TRUE(errors[0].starts_with("! ImExRequest writeResultsReport 76 ")) << errors[0];
  expectedErrors = errors;
}

TEST_F(ImExRequestReply, aPageThatFailsBeyondAThousandTexts_isReportedOnce) {
  request.Directory(host.folder / "nowhere/");

  request.Deserialize(*answerWithTexts(1001));

  EXPECT_EQ(events, (Texts{"MessageReceived", kNotDisplayed}));
  EXPECT_EQ(host.trace->errors().size(), 1u);
  expectedErrors = host.trace->errors();
}

} // namespace
} // namespace imex::test
