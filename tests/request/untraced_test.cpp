// A request without a trace log, or with one that keeps errors alone: it does the same, in fewer steps.

#include "RequestTest.h"
#include "support/ErrorLog.h"
#include "traceLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace imex::test {
namespace {

class ImExRequestUntraced : public RequestTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    configure("CUSTOMER", "AGENT");
    if (GetParam())
      ErrorLog::installed(host);
    else
      installNoLog();
  }

  void installNoLog() {
    host.services.createTraceLog = nullptr;
    host.install();
  }

  Texts sentLines() const { return host.serviceCall.calls.empty() ? Texts{"(none)"} : host.serviceCall.calls[0].lines; }
};

TEST_P(ImExRequestUntraced, goodLines_areSent) {
  host.serviceCall.result = answer("fine", {});
  importFile(repeated(customerLine("caf\u00E9"), 2) + "\r\n" + customerLine());

  request.send();

  const std::string capitals = "|CAF\u00C9|";
  EXPECT_EQ(sentLines().size(), 3U);
  EXPECT_NE(sentLines()[1].find(capitals), std::string::npos) << sentLines()[1];
  EXPECT_EQ(request.rowCount(), 3);
}

TEST_P(ImExRequestUntraced, theFirstBadLine_endsTheReading) {
  importFile(customerLine() + "\r\n" + "a|b\r\n" + "c\r\n");

  request.send();

  EXPECT_EQ(host.serviceCall.calls.size(), 0U);
  EXPECT_EQ(request.rowCount(), 2);
  expectedBoxes = {questionBox(delimiterFinding(13))};
}

TEST_P(ImExRequestUntraced, aRequiredFieldThatIsEmpty_isFound) {
  importFile(customerLine("") + "\r\n");

  request.send();

  expectedBoxes = {questionBox("The following fields are required when importing customers using the agent format:\r\n"
                               "Firm name, Address 1, City, State, Zip, Phone Number, Customer Type.")};
}

TEST_P(ImExRequestUntraced, aDistributor_isFoundOnTheCentralServer) {
  host.serviceCall.result = answer("fine", {});
  importFile(customerLine("Firm", "d") + "\r\n");

  request.send();
  EXPECT_EQ(sentLines().size(), 1U);

  request.isCentralizedAgent = true;
  request.send();
  EXPECT_EQ(host.serviceCall.calls.size(), 1U);
  expectedBoxes = {questionBox("Distributor import not allowed on Central Server.\r\n"
                               "Please contact Corvana Support for more Information.")};
}

TEST_P(ImExRequestUntraced, aLineTooLongToSplit_isShownAndLeftToTheService) {
  host.serviceCall.result = answer("fine", {});
  importFile(customerLine(std::string(32767, 'x')) + "\r\n");

  request.send();

  EXPECT_EQ(sentLines().size(), 1U);
  expectedBoxes = {{"Unable to validate the format of the file being imported.", 48, "Error Number: 6 - Overflow"}};
}

TEST_P(ImExRequestUntraced, moreLinesThan16BitsCount_areNotSent) {
  importFile(repeated(customerLine(), 32768));

  request.send();

  EXPECT_EQ(host.serviceCall.calls.size(), 0U);
  EXPECT_EQ(events, (Texts{"SerializationFailed: " + std::string(kUnreadable)}));
}

INSTANTIATE_TEST_SUITE_P(Logs, ImExRequestUntraced, testing::Bool(),
                         [](const auto& hasLog) { return hasLog.param ? "ErrorsAlone" : "None"; });

// --- The errors and the traces themselves ---------------------------------------------------------------------------

class ImExRequestErrorRecords : public RequestTest {
 protected:
  /// The error records of one sending, in a log of this kind.
  Texts errorsOfSending(const std::shared_ptr<RecordingTraceLog>& log) {
    host.services.createTraceLog = [log] { return log; };
    host.install();
    configure("INVOICE", "HALVIK"); // no format of the catalogue, so every look-up of its columns is an error
    request.tabCount(2);
    log->lines.clear();
    request.send();
    return log->errors();
  }
};

TEST_F(ImExRequestErrorRecords, areTheSameForALogThatKeepsErrorsAlone) {
  host.serviceCall.result = answer("fine", {});
  importFile("a|b\r\nc|d\r\ne|f\r\n");

  const Texts whole = errorsOfSending(std::make_shared<RecordingTraceLog>());
  EXPECT_EQ(errorsOfSending(std::make_shared<ErrorLog>()), whole);

  constexpr int kSettings = 2; // what is told to the service, and what the lines are sent as
  constexpr int kLines = 3;
  constexpr int kAnswer = 1;
  EXPECT_EQ(std::count(whole.begin(), whole.end(), kUnknownFormat), kSettings + kLines + kAnswer);
  EXPECT_EQ(whole.back(), "! ImExRequest mergeLineResults 91 ImExRequest: Object variable not set");
  EXPECT_EQ(host.serviceCall.calls.size(), 2U);
}

/// A request whose events nobody answers, so that the trace is its own alone.
class ImExRequestWholeTrace : public RequestTest {
 protected:
  ImExRequestWholeTrace() {
    quiet.DataOrigin("AGENT");
    quiet.DataType("CUSTOMER");
    quiet.Delimiter("PIPE");
    quiet.CheckedFileName(importPath());
    quiet.Directory(host.folder / "out/");
    host.trace->lines.clear();
  }

  ImExRequest quiet;
};

TEST_F(ImExRequestWholeTrace, ofASendingOfOneLine) {
  importFile(customerLine() + "\r\n");
  host.serviceCall.error = RuntimeError(ErrorNumber::deviceIoError, "Service");

  EXPECT_EQ(raisedNumber([&] { quiet.send(); }), 57);

  const Texts toldToTheService = kKey;
  const Texts sentAs = kKey;
  EXPECT_EQ(host.trace->lines,
            concatenated({toldToTheService,
                          sentAs,
                          {"> ImExRequest readImportFile()"},
                          pair("ImExModule checkFileExists(fileName = " + importPath() + ")"),
                          pair("ImExRequest DelimiterAscii()"),
                          pair("ImExRequest tabCount()"),
                          {"> ImExRequest simpleClientValidation()"},
                          pair("ImExModule Parse()"),
                          kKey,
                          pair("ImExRequest validateAgentCustomer()"),
                          {"< ImExRequest simpleClientValidation()", "< ImExRequest readImportFile()"}}));
}

TEST_F(ImExRequestWholeTrace, ofAnAnswerAboutOneLine) {
  quiet.Deserialize(*answer("done", {{false, "a|b", "1", {"bad"}, {"odd"}}}));

  const Texts number = pair("ImExFormat LineNumber()");
  const Texts line = pair("ImExFormat Line()");
  const Texts verdict = pair("ImExFormat ActionSuccessful()");
  EXPECT_EQ(host.trace->lines, concatenated({{"> ImExRequest Deserialize()", "> ImExReply processReply()"},
                                             pair("ImExReply reply()"),
                                             pair("ImExReply hasErrors()"),
                                             pair("ImExReply hasWarnings()"),
                                             verdict,
                                             line,
                                             number,
                                             {"< ImExReply processReply()", "> ImExRequest mergeLineResults()"},
                                             number, // in the list of failures, for the warning and for the error
                                             number,
                                             number,
                                             verdict,
                                             kErrorRecord,
                                             kErrorRecord,
                                             kErrorRecord,
                                             line,
                                             kSplit,
                                             kKey,
                                             {"> ImExRequest writeResultsReport()"},
                                             pair("ImExRequest Directory()"),
                                             number,
                                             line,
                                             verdict,
                                             {"< ImExRequest writeResultsReport()"},
                                             pair("ImExRequest tabCount()"),
                                             pair("ImExRequest DelimiterAscii()"),
                                             {"< ImExRequest mergeLineResults()", "< ImExRequest Deserialize()"}}));
}

// --- Rows that nobody takes -----------------------------------------------------------------------------------------

class ImExRequestWithoutViewer : public RequestTest {
 protected:
  void SetUp() override {
    configure("CUSTOMER", "AGENT");
    host.services.createTraceLog = nullptr;
    host.install();
    alone.DataOrigin("AGENT");
    alone.DataType("CUSTOMER");
    alone.Delimiter("PIPE");
    alone.Directory(host.folder / "out/");
    alone.SerializationFailed.connect([this](const std::string& message) { failures.push_back(message); });
  }

  /// A request whose showErrors has no handler.
  ImExRequest alone;
  Texts failures;
};

TEST_F(ImExRequestWithoutViewer, thePageIsWrittenAllTheSame) {
  const auto node = answer("done", {{true, "a|b", "1"}, {false, "c|d", "2", {"bad"}, {"odd"}}});
  request.Deserialize(*node);
  const std::string expected = page();
  alone.Deserialize(*node);
  EXPECT_EQ(page(), expected);
  EXPECT_EQ(failures, (Texts{}));
}

TEST_F(ImExRequestWithoutViewer, aLineThatCannotBeSplit_isAFailureAllTheSame) {
  const auto longest = answer("done", {{true, std::string(32767, 'x'), "1"}});
  alone.Deserialize(*longest);
  EXPECT_EQ(failures, (Texts{}));
  const auto longer = answer("done", {{true, std::string(32768, 'x'), "1"}});
  alone.Deserialize(*longer);
  EXPECT_EQ(failures, (Texts{"The server responded, but the results could not be displayed."}));
}

} // namespace
} // namespace imex::test
