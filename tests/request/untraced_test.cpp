// A request without a trace log, or with one that keeps errors alone: it does the same, in fewer steps.

#include "RequestTest.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace imex::test {
namespace {

/// Keeps errors, and must not be told of anything else.
class ErrorLog : public RecordingTraceLog {
 public:
  void Trace(std::string_view, std::string_view procedure, std::string_view, std::int32_t) override {
    ADD_FAILURE() << procedure;
  }
  bool takesTraces() const override { return false; }
};

class ImExRequestUntraced : public RequestTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    configure("CUSTOMER", "AGENT");
    if (GetParam())
      host.services.createTraceLog = [log = std::make_shared<ErrorLog>()] { return log; };
    else
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
