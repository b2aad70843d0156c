#include "RequestTest.h"
#include "module/ImExModule.h"
#include "request/ImExRequest.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace imex::test {
namespace {

const std::string kUnreadableEvent = "SerializationFailed: " + std::string(kUnreadable);
const Box kMissingFileBox{std::string(kUnreadable), 64, "Corvana Maintenance"};
const Box kNotEditableBox{std::string(kUnreadable), 48, "Corvana Maintenance"};

class ImExRequestSend : public RequestTest {
 protected:
  /// The lines of the one call that was made.
  Texts sentLines() const {
    return host.serviceCall.calls.size() == 1 ? host.serviceCall.calls.front().lines
                                              : Texts{std::to_string(host.serviceCall.calls.size()) + " calls"};
  }

  bool isNothingSent() const { return host.serviceCall.calls.empty(); }
};

// --- What is sent ---------------------------------------------------------------------------------------------------

TEST_F(ImExRequestSend, everyTypeAndLayout_sendsItsLinesOrNone) {
  struct Case {
    std::string dataType;
    std::string dataOrigin;
    std::string line;
    Texts sent;
  };
  const std::vector<Case> cases = {
      {"CUSTOMER",
       "AGENT",
       customerLine("Ann's \"Lamps\""),
       {"C1|ANN'S \"LAMPS\"|1 MAIN ST|||TOWN|GA|30012|||555-0100||DIST|"}},
      {"CUSTOMER", "HALVIK", "a|b|c|d|e", {}},
      {"PRODUCT", "AGENT", productLine("6\" x 4'"), {"6 X 4|DESC|BRAND|4|5|6|7|8|9|10|LAMP|"}},
      {"PRODUCT", "HALVIK", "a|b", {}},
      {"INVOICE", "AGENT", "a'|b|c|\"d", {"A'|B|C|\"D|"}},
      {"INVOICE", "HALVIK", "a|b", {}},
      {"COMMISSION", "AGENT", "a'|b|c", {"A'|B|C|"}},
      {"COMMISSION", "HALVIK", "a|b", {}},
      {"BALLASTS", "HALVIK", "a'|b", {"A'|B|"}},
      {"BALLASTS", "AGENT", "a|b", {}},
      {"PROJECTLINEITEM", "AGENT", "1|2|3|4|5|6|7|8|9|10", {}},
      {"QUOTELINEITEM", "AGENT", "1|2|3|4|5|6|7|8|9|10", {}},
      {"ORDERLINEITEM", "AGENT", "1|2|3|4|5|6", {}},
      {"customer", "AGENT", customerLine(), {}},
  };
  host.serviceCall.result = answer("", {});
  for (const Case& each : cases) {
    host.serviceCall.calls.clear();
    configure(each.dataType, each.dataOrigin);
    if (!ImExModule::isFormatCounted(each.dataType + each.dataOrigin))
      request.tabCount(2); // an unknown format has no count of its own
    importFile(each.line + "\r\n");

    request.send();

    EXPECT_EQ(sentLines(), each.sent) << each.dataType << each.dataOrigin;
  }
  for (const std::string& error : host.trace->errors()) // each unknown format, and its results that cannot be shown
    EXPECT_TRUE(error == kUnknownFormat || error.starts_with("! ImExRequest mergeLineResults 91 ")) << error;
  expectedErrors = host.trace->errors();
}

TEST_F(ImExRequestSend, aTabDelimitedLine_endsInATab) {
  configure("BALLASTS", "HALVIK", "TAB");
  importFile("a|x\tb\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|X\tB\t"}));
}

TEST_F(ImExRequestSend, lettersBeyondAscii_areSentAsCapitals) {
  configure("BALLASTS", "HALVIK");
  importFile("é|ñandú\r\nß|œuvre\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"É|ÑANDÚ|", "ß|ŒUVRE|"}));
}

TEST_F(ImExRequestSend, aFileInTheWindowsCodePage_isSentAsTheSameText) {
  configure("BALLASTS", "HALVIK");
  importFile("caf\xE9|\x80 5\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"CAFÉ|€ 5|"}));
}

TEST_F(ImExRequestSend, aByteOrderMark_isNotPartOfTheFirstLine) {
  configure("BALLASTS", "HALVIK");
  importFile("\xEF\xBB\xBF"
             "a|b\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|B|"}));
}

TEST_F(ImExRequestSend, lines_areSentInFileOrderWithoutTheEmptyOnes) {
  configure("BALLASTS", "HALVIK");
  importFile("\r\nb|2\r\n\r\n\r\na|1\r\nb|2\r\nlast|3");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"B|2|", "A|1|", "B|2|", "LAST|3|"}));
  EXPECT_EQ(request.rowCount(), 4);
}

TEST_F(ImExRequestSend, aFileOfEmptyLines_isSentWithoutLines) {
  configure("BALLASTS", "HALVIK");
  request.rowCount(9);
  importFile("\r\n\r\n\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{}));
  EXPECT_EQ(request.rowCount(), 0);
}

TEST_F(ImExRequestSend, anEmptyFile_isSentWithoutLines) {
  configure("INVOICE", "AGENT");
  host.serviceCall.result = answer("nothing", {});
  importFile("");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{}));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
}

TEST_F(ImExRequestSend, aLoneLineFeed_doesNotEndALine) {
  configure("BALLASTS", "HALVIK");
  importFile("a|b\nc\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|B\nC|"}));
}

TEST_F(ImExRequestSend, aLineTooLongToBeChecked_isLeftForTheServiceToJudge) {
  configure("BALLASTS", "HALVIK");
  const std::string line(40000, 'X');
  importFile("a|b\r\n" + line + "\r\nc|d\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|B|", line + "|", "C|D|"}));
  expectedErrors = {"! ImExModule launchInternetExplorer 6 ImEx: Overflow",
                    "! ImExRequest simpleClientValidation 6 ImEx: Overflow"};
  expectedBoxes = {{"Unable to validate the format of the file being imported.", 48, "Error Number: 6 - Overflow"}};
}

TEST_F(ImExRequestSend, asManyLinesAsSixteenBitsCount_areSent) {
  configure("BALLASTS", "HALVIK");
  importFile(repeated("a|b", 32767) + "\r\n");

  request.send();

  EXPECT_EQ(sentLines(), Texts(32767, "A|B|"));
  EXPECT_EQ(request.rowCount(), 32767);
}

TEST_F(ImExRequestSend, oneLineMoreThanSixteenBitsCount_isNotSent) {
  configure("BALLASTS", "HALVIK");
  importFile(repeated("a|b", 32768));

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{kUnreadableEvent}));
  expectedErrors = {"! ImExRequest readImportFile 6 ImEx: Overflow"};
}

TEST_F(ImExRequestSend, aTimeOutAtTheEndOfItsRange_doesNotStopTheImport) {
  configure("BALLASTS", "HALVIK");
  host.settings.milliseconds = std::numeric_limits<std::int32_t>::max();
  importFile("a|b\r\nc|d\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|B|", "C|D|"}));
}

// --- The service call -----------------------------------------------------------------------------------------------

TEST_F(ImExRequestSend, ballasts_goToTheUnsecuredServiceWithTheTimeOut) {
  configure("BALLASTS", "HALVIK");
  host.settings.milliseconds = 4321;
  importFile("a|b\r\n");

  request.send();

  ASSERT_EQ(host.serviceCall.calls.size(), 1u);
  const FakeServiceCall::Call& call = host.serviceCall.calls.front();
  EXPECT_EQ(call.space, "urn:UnsecuredImportExportService");
  EXPECT_EQ(call.methodName, "importData");
  EXPECT_EQ(call.beanType, "HXImportBean");
  EXPECT_EQ(call.address, "http://service.example/unsecured");
  EXPECT_EQ(call.timeout, 4321);
  EXPECT_EQ(call.userId, "agent1");
}

TEST_F(ImExRequestSend, everyOtherType_goesToTheSecuredServiceWithoutATimeOut) {
  host.serviceCall.result = answer("", {});
  for (const auto& [dataType, dataOrigin, line] :
       std::vector<std::tuple<std::string, std::string, std::string>>{{"CUSTOMER", "AGENT", customerLine()},
                                                                      {"CUSTOMER", "HALVIK", "a|b|c|d|e"},
                                                                      {"PRODUCT", "AGENT", productLine()},
                                                                      {"INVOICE", "AGENT", "a|b|c|d"},
                                                                      {"COMMISSION", "AGENT", "a|b|c"}}) {
    host.serviceCall.calls.clear();
    configure(dataType, dataOrigin);
    importFile(line + "\r\n");

    request.send();

    ASSERT_EQ(host.serviceCall.calls.size(), 1u) << dataType << dataOrigin;
    const FakeServiceCall::Call& call = host.serviceCall.calls.front();
    EXPECT_EQ(call.space, "urn:ImportExportService");
    EXPECT_EQ(call.methodName, "importData");
    EXPECT_EQ(call.beanType, "HXImportBean");
    EXPECT_EQ(call.address, "http://service.example/secured");
    EXPECT_EQ(call.timeout, 0);
    EXPECT_EQ(call.userId, "agent1");
  }
}

TEST_F(ImExRequestSend, ballastsInTheAgentLayout_areBallastsToo) {
  configure("BALLASTS", "AGENT");
  request.tabCount(2);
  importFile("a|b\r\n");

  request.send();

  ASSERT_EQ(host.serviceCall.calls.size(), 1u);
  EXPECT_EQ(host.serviceCall.calls.front().space, "urn:UnsecuredImportExportService");
  EXPECT_EQ(sentLines(), (Texts{}));
  expectedErrors = host.trace->errors();
}

TEST_F(ImExRequestSend, theRequestInformation_carriesTheSettings) {
  configure("CUSTOMER", "AGENT", "TAB");
  request.AllowWarnings(true);
  host.user.userName = "Zoë \"Z\" <zoe@example>";
  host.serviceCall.result = answer("", {});
  importFile("");

  request.send();

  ASSERT_EQ(host.serviceCall.calls.size(), 1u);
  const host::RequestInformation& information = host.serviceCall.calls.front().information;
  EXPECT_EQ(information.importExport, "IMPORT");
  EXPECT_EQ(information.dataType, "CUSTOMER");
  EXPECT_EQ(information.schedule, "INSTANT");
  EXPECT_EQ(information.dataOrigin, "AGENT");
  EXPECT_EQ(information.delimiter, "TAB");
  EXPECT_EQ(information.userName, "Zoë \"Z\" <zoe@example>");
  EXPECT_TRUE(information.allowWarnings);
  EXPECT_FALSE(information.allowTruncation);
}

TEST_F(ImExRequestSend, theTwoOptions_areTheirOwnInTheRequestInformation) {
  configure("CUSTOMER", "AGENT");
  request.AllowTruncation(true);
  host.serviceCall.result = answer("", {});
  importFile("");

  request.send();

  ASSERT_EQ(host.serviceCall.calls.size(), 1u);
  EXPECT_FALSE(host.serviceCall.calls.front().information.allowWarnings);
  EXPECT_TRUE(host.serviceCall.calls.front().information.allowTruncation);
}

TEST_F(ImExRequestSend, unknownCodes_areSentAsTheyAre) {
  configure("BALLASTS", "HALVIK");
  request.ImportExport("EXPORT");
  request.Schedule("nightly");
  importFile("");

  request.send();

  ASSERT_EQ(host.serviceCall.calls.size(), 1u);
  EXPECT_EQ(host.serviceCall.calls.front().information.importExport, "EXPORT");
  EXPECT_EQ(host.serviceCall.calls.front().information.schedule, "nightly");
}

TEST_F(ImExRequestSend, theServiceCall_isMadeWithTheFileClosed) {
  struct WatchingServiceCall : FakeServiceCall {
    std::shared_ptr<host::SoapNode> call(const host::ServiceRequest& serviceRequest) override {
      isClosed = isEverythingClosed();
      return FakeServiceCall::call(serviceRequest);
    }
    bool isClosed = false;
  } serviceCall;
  host.services.serviceCall = &serviceCall;
  host.install();
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\n");

  request.send();

  EXPECT_EQ(serviceCall.calls.size(), 1u);
  EXPECT_TRUE(serviceCall.isClosed);
}

TEST_F(ImExRequestSend, theStepsAreTraced_sendItselfIsNot) {
  configure("PRODUCT", "AGENT");
  host.serviceCall.result = answer("", {});
  importFile("\r\n" + productLine() + "\r\n");

  request.send();

  const std::string probe = "ImExModule checkFileExists(fileName = " + importPath() + ")";
  EXPECT_EQ(
      steps(),
      (Texts{"> ImExRequest readImportFile()", "> " + probe, "< " + probe, "> ImExRequest simpleClientValidation()",
             "> ImExModule Parse()", "< ImExModule Parse()", "> ImExRequest validateAgentProduct()",
             "< ImExRequest validateAgentProduct()", "< ImExRequest simpleClientValidation()",
             "< ImExRequest readImportFile()", "> ImExRequest Deserialize()", "> ImExReply processReply()",
             "< ImExReply processReply()", "> ImExRequest mergeLineResults()", "> ImExRequest writeResultsReport()",
             "< ImExRequest writeResultsReport()", "< ImExRequest mergeLineResults()", "< ImExRequest Deserialize()"}));
}

TEST_F(ImExRequestSend, aSecondSend_startsAnew) {
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\nc|d\r\n");
  request.send();
  host.serviceCall.calls.clear();

  importFile("e|f\r\n");
  request.send();

  EXPECT_EQ(sentLines(), (Texts{"E|F|"}));
  EXPECT_EQ(request.rowCount(), 1);
}

// --- The answer -----------------------------------------------------------------------------------------------------

TEST_F(ImExRequestSend, theAnswer_isDeserialized) {
  configure("INVOICE", "AGENT");
  host.serviceCall.result = answer("1 line", {{true, "A|B|C|D|", "1"}});
  importFile("a|b|c|d\r\n");

  request.send();

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  EXPECT_EQ(replies.at(0)->reply(), "1 line");
  EXPECT_TRUE(isPageWritten());
}

TEST_F(ImExRequestSend, theAnswerToBallasts_isNotRead) {
  struct Unreadable : FakeNode {
    using FakeNode::FakeNode;
    host::SoapNode* child(std::string_view) override { throw RuntimeError(ErrorNumber::internalError); }
    std::string text() const override { throw RuntimeError(ErrorNumber::internalError); }
  };
  configure("BALLASTS", "HALVIK");
  host.serviceCall.result = std::make_shared<Unreadable>("return");
  importFile("a|b\r\n");

  request.send();

  EXPECT_EQ(host.serviceCall.calls.size(), 1u);
  EXPECT_EQ(events, (Texts{}));
  EXPECT_FALSE(isPageWritten());
}

TEST_F(ImExRequestSend, anErrorPast16BitsWhileReading_reachesTheCallerAsAnOverflow) {
  configure("INVOICE", "AGENT");
  importFile("a|b|c|d\r\n");
  host.files.before = [reads = 0](std::string_view call, std::string_view) mutable {
    if (call == "read" && ++reads > 1)
      throw RuntimeError(70000, "Disk", "odd");
  };

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 6);

  EXPECT_TRUE(host.serviceCall.calls.empty());
  EXPECT_EQ(events, (Texts{}));
}

TEST_F(ImExRequestSend, anAnswerWithoutAResult_isError91) {
  configure("INVOICE", "AGENT");
  host.serviceCall.result = nullptr;
  importFile("a|b|c|d\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 91);

  EXPECT_EQ(events, (Texts{}));
  EXPECT_FALSE(isPageWritten());
}

TEST_F(ImExRequestSend, anErrorInTheAnswer_reachesTheCaller) {
  configure("INVOICE", "AGENT");
  host.serviceCall.result = answer("", {{true, "A|B|C|D|", "none"}});
  importFile("a|b|c|d\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 13);

  EXPECT_EQ(events, (Texts{}));
  EXPECT_FALSE(isPageWritten());
  ASSERT_EQ(host.trace->errors().size(), 2u);
  EXPECT_TRUE(host.trace->errors()[0].starts_with("! ImExReply processReply 13 "));
  EXPECT_TRUE(host.trace->errors()[1].starts_with("! ImExRequest Deserialize 13 "));
  expectedErrors = host.trace->errors();
}

// --- Files that are not sent ----------------------------------------------------------------------------------------

TEST_F(ImExRequestSend, aMissingFile_isABoxAndNothingElse) {
  configure("INVOICE", "AGENT");
  request.rowCount(9);

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  EXPECT_EQ(request.rowCount(), 0);
  EXPECT_EQ(traceOf("readImportFile()"), (Texts{"> ImExRequest readImportFile()"})) << "it is left in the middle";
  expectedBoxes = {kMissingFileBox};
}

TEST_F(ImExRequestSend, aFolder_isABoxAndNothingElse) {
  configure("INVOICE", "AGENT");
  request.CheckedFileName(host.folder / "out");

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {kMissingFileBox};
}

TEST_F(ImExRequestSend, aTakenFileNumberOne_isAMissingFile) {
  configure("INVOICE", "AGENT");
  importFile("a|b|c|d\r\n");
  const ImExModule::InputFile held(host.folder / "out/other.txt", 1);

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {kMissingFileBox};
}

TEST_F(ImExRequestSend, aFileThatDoesNotOpenAfterTheTest_isNotSent) {
  configure("INVOICE", "AGENT");
  importFile("a|b|c|d\r\n");
  failReading(2, 0, RuntimeError(ErrorNumber::permissionDenied, "Disk"));

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{kUnreadableEvent}));
  expectedErrors = {"! ImExRequest readImportFile 70 Disk: Permission denied"};
}

TEST_F(ImExRequestSend, aFileThatBreaksOffInTheMiddle_isNotSent) {
  configure("BALLASTS", "HALVIK");
  constexpr int kLines = 20000;
  importFile(repeated("a|" + std::string(100, 'b'), kLines));
  failReading(2, 3, RuntimeError(ErrorNumber::deviceIoError, "Disk"));

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{kUnreadableEvent}));
  EXPECT_GT(request.rowCount(), 0);
  EXPECT_LT(request.rowCount(), kLines);
  expectedErrors = {"! ImExRequest readImportFile 57 Disk: Device I/O error"};
}

// --- Lines that fail their check ------------------------------------------------------------------------------------

TEST_F(ImExRequestSend, aFailingLine_isAskedAboutAndNothingIsSent) {
  configure("CUSTOMER", "AGENT");
  importFile(customerLine() + "\r\nc2|Firm\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {{"The file you are attempting to import is not properly delimited. It should contain 13 of your "
                    "chosen delimiter in each row of the file.\r\nOpening the file within the editor and saving will "
                    "correct the error.\r\n\r\n Would you like to correct the file?",
                    36, "Corvana Maintenance"}};
}

TEST_F(ImExRequestSend, theFirstFailingLine_stopsTheReading) {
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\n\r\nc\r\nd\r\ne|f\r\n");

  request.send();

  EXPECT_EQ(request.rowCount(), 2);
  EXPECT_EQ(traceOf("simpleClientValidation()").size(), 4u);
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

TEST_F(ImExRequestSend, aMissingField_isAskedAboutInItsOwnWords) {
  configure("PRODUCT", "AGENT");
  importFile(productLine("") + "\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  expectedBoxes = {questionBox("The following fields are required when importing products using the agent format:\r\n"
                               "Catalog Number, Brand Name, Product Type, ")};
}

TEST_F(ImExRequestSend, aDistributorOnTheCentralServer_isAskedAbout) {
  configure("CUSTOMER", "AGENT");
  request.isCentralizedAgent = true;
  importFile(customerLine("Firm", "d") + "\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  expectedBoxes = {questionBox("Distributor import not allowed on Central Server.\r\n"
                               "Please contact Corvana Support for more Information.")};
}

TEST_F(ImExRequestSend, aDistributorElsewhere_isSent) {
  configure("CUSTOMER", "AGENT");
  host.serviceCall.result = answer("", {});
  importFile(customerLine("Firm", "d") + "\r\n");

  request.send();

  EXPECT_EQ(sentLines(), (Texts{"C1|FIRM|1 MAIN ST|||TOWN|GA|30012|||555-0100||D|"}));
}

TEST_F(ImExRequestSend, aLineOfATypeThatSendsNone_isCheckedAllTheSame) {
  configure("CUSTOMER", "HALVIK");
  importFile("a|b\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  expectedBoxes = {questionBox(delimiterFinding(kHalvikCustomerColumns))};
}

TEST_F(ImExRequestSend, theWrongDelimiter_failsTheFirstLine) {
  configure("BALLASTS", "HALVIK", "TAB");
  importFile("a|b\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

TEST_F(ImExRequestSend, theColumnCount_isFreshWhenTheLayoutWasSetLast) {
  configure("CUSTOMER", "AGENT");
  request.DataOrigin("HALVIK");
  importFile("a|b\r\n");

  request.send();

  expectedBoxes = {questionBox(delimiterFinding(kHalvikCustomerColumns))};
}

// --- Correcting the file --------------------------------------------------------------------------------------------

class ImExRequestCorrection : public ImExRequestSend {
 protected:
  ImExRequestCorrection() { host.messageBox.answer = host::Answer::yes; }
};

TEST_F(ImExRequestCorrection, yes_opensTheFileInTheEditor) {
  configure("CUSTOMER", "AGENT");
  importFile("c1|Firm\r\n\r\nmore\r\n");

  request.send();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{"editImportFile"}));
  ASSERT_EQ(edits.size(), 1u);
  EXPECT_EQ(edits[0].message, "File format incorrect.");
  EXPECT_EQ(edits[0].rows, 3); // a row for every line of the file, empty ones included
  EXPECT_EQ(edits[0].columns, kCustomerColumns);
  EXPECT_EQ(edits[0].fileName, importPath());
  EXPECT_EQ(edits[0].headers, ImExModule::getFormatColumns("CUSTOMERAGENT"));
  EXPECT_EQ(edits[0].delimiterAscii, 124);
  expectedBoxes = {questionBox(delimiterFinding(kCustomerColumns))};
}

TEST_F(ImExRequestCorrection, everyTypeAndLayout_opensWithItsColumns) {
  for (const auto& [dataType, dataOrigin, columns] :
       std::vector<std::tuple<std::string, std::string, int>>{{"CUSTOMER", "AGENT", kCustomerColumns},
                                                              {"CUSTOMER", "HALVIK", kHalvikCustomerColumns},
                                                              {"PRODUCT", "AGENT", kProductColumns},
                                                              {"INVOICE", "AGENT", kInvoiceColumns},
                                                              {"COMMISSION", "AGENT", kCommissionColumns},
                                                              {"BALLASTS", "HALVIK", kBallastColumns}}) {
    edits.clear();
    configure(dataType, dataOrigin, "TAB");
    importFile("one field\r\n");

    request.send();

    ASSERT_EQ(edits.size(), 1u) << dataType << dataOrigin;
    EXPECT_EQ(edits[0].columns, columns);
    EXPECT_EQ(edits[0].headers, ImExModule::getFormatColumns(dataType + dataOrigin));
    EXPECT_EQ(edits[0].delimiterAscii, 9);
    expectedBoxes.push_back(questionBox(delimiterFinding(columns)));
  }
}

TEST_F(ImExRequestCorrection, anUnknownFormat_opensWithoutColumnNames) {
  configure("INVOICE", "HALVIK");
  request.tabCount(3);
  importFile("a|b\r\n");

  request.send();

  ASSERT_EQ(edits.size(), 1u);
  EXPECT_EQ(edits[0].columns, 3);
  EXPECT_EQ(edits[0].headers, nullptr);
  for (const std::string& error : host.trace->errors())
    EXPECT_EQ(error, kUnknownFormat);
  expectedErrors = host.trace->errors();
  expectedBoxes = {questionBox(delimiterFinding(3))};
}

TEST_F(ImExRequestCorrection, theFileIsClosed_whenTheEditorIsAskedFor) {
  bool isClosed = false;
  request.editImportFile.connect([&](auto&&...) { isClosed = isEverythingClosed(); });
  configure("BALLASTS", "HALVIK");
  importFile("a\r\n");

  request.send();

  EXPECT_TRUE(isClosed);
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

TEST_F(ImExRequestCorrection, whatAHandlerWrites_doesNotReachTheSettings) {
  request.editImportFile.connect([](std::string& message, Integer& rows, Integer& columns, std::string& fileName,
                                    StringsPtr& headers, Integer& delimiterAscii) {
    message = "other";
    rows = 1000;
    columns = 2000;
    fileName = "other.txt";
    headers = nullptr;
    delimiterAscii = 59;
  });
  configure("BALLASTS", "HALVIK");
  importFile("a\r\n");
  const Texts columnsBefore = texts(ImExModule::getFormatColumns("BALLASTSHALVIK"));

  request.send();

  EXPECT_EQ(request.rowCount(), 1);
  EXPECT_EQ(request.tabCount(), 2);
  EXPECT_EQ(request.CheckedFileName(), importPath());
  EXPECT_EQ(request.DelimiterAscii(), 124);
  EXPECT_EQ(texts(ImExModule::getFormatColumns("BALLASTSHALVIK")), columnsBefore);
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

TEST_F(ImExRequestCorrection, handlers_seeWhatAnEarlierHandlerWrote) {
  int rows = 0;
  request.editImportFile.connect([](std::string&, Integer& count, auto&&...) { count = 1000; });
  request.editImportFile.connect([&](std::string&, Integer& count, auto&&...) { rows = count; });
  configure("BALLASTS", "HALVIK");
  importFile("a\r\n");

  request.send();

  EXPECT_EQ(rows, 1000);
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

TEST_F(ImExRequestCorrection, aFileOfTooManyLines_isNotOpened) {
  configure("BALLASTS", "HALVIK");
  importFile(repeated("a", 32768));

  request.send();

  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {questionBox(delimiterFinding(2)),
                   {"The file you are attempting to edit exceeds the maximum size of lines (32,767). Please edit the "
                    "file and try again.",
                    48, "Corvana Maintenance"}};
}

TEST_F(ImExRequestCorrection, aFileThatIsGoneByThen_isNotOpened) {
  configure("BALLASTS", "HALVIK");
  importFile("a\r\n");
  failReading(3, 0, RuntimeError(ErrorNumber::fileNotFound)); // tested, read, and gone when tested for the editor

  request.send();

  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {questionBox(delimiterFinding(2)), kNotEditableBox};
}

TEST_F(ImExRequestCorrection, anErrorOfAHandler_reachesTheCaller) {
  request.editImportFile.connect([](auto&&...) { throw RuntimeError(1234, "Editor", "No editor"); });
  configure("BALLASTS", "HALVIK");
  importFile("a\r\n");

  const auto error = raised([&] { request.send(); });

  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 1234);
  EXPECT_EQ(error->source(), "Editor");
  EXPECT_EQ(error->description(), "No editor");
  expectedBoxes = {questionBox(delimiterFinding(2))};
}

/// A process whose catalogue was never read.
class ImExRequestWithoutCatalogue : public testing::Test {
 protected:
  void SetUp() override {
    if (!ImExModule::workingDirectory().empty())
      GTEST_SKIP() << "the catalogue of this process was read by another test";
  }

  TestHost host;
  ImExRequest request;
};

TEST_F(ImExRequestWithoutCatalogue, agentCustomers_openWithoutColumnsForLackOfACount) {
  host.messageBox.answer = host::Answer::yes;
  request.DataOrigin("AGENT");
  request.DataType("CUSTOMER");
  request.Delimiter("PIPE");
  request.tabCount(5);
  request.CheckedFileName(host.folder.write("import.txt", "a|b\r\n"));
  int columns = -1;
  StringsPtr headers = std::make_shared<Strings>();
  request.editImportFile.connect(
      [&](std::string&, Integer&, Integer& count, std::string&, StringsPtr& names, Integer&) {
        columns = count;
        headers = names;
      });

  request.send();

  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{questionBox(delimiterFinding(5))}));
  EXPECT_EQ(columns, 0);
  EXPECT_EQ(headers, nullptr);
}

// --- Errors that reach the caller -----------------------------------------------------------------------------------

TEST_F(ImExRequestSend, anErrorOfTheServiceCall_reachesTheCaller) {
  configure("INVOICE", "AGENT");
  host.serviceCall.error = RuntimeError(1002, "Http", "Time-out after 30 s: http://service.example/secured");
  importFile("a|b|c|d\r\n");

  const auto error = raised([&] { request.send(); });

  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 1002);
  EXPECT_EQ(error->source(), "Http");
  EXPECT_EQ(error->description(), "Time-out after 30 s: http://service.example/secured");
  EXPECT_EQ(events, (Texts{}));
}

TEST_F(ImExRequestSend, anErrorNumberPastSixteenBits_reachesTheCallerAsItIs) {
  configure("INVOICE", "AGENT");
  host.serviceCall.error = RuntimeError(70000, "Http", "odd");
  importFile("a|b|c|d\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 70000);
}

TEST_F(ImExRequestSend, settingsOutliveAFailure) {
  configure("INVOICE", "AGENT");
  host.serviceCall.error = RuntimeError(1001, "Http", "no connection");
  importFile("a|b|c|d\r\n");
  EXPECT_EQ(raisedNumber([&] { request.send(); }), 1001);

  host.serviceCall.error.reset();
  host.serviceCall.calls.clear();
  host.serviceCall.result = answer("", {});
  request.send();

  EXPECT_EQ(sentLines(), (Texts{"A|B|C|D|"}));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
}

TEST_F(ImExRequestSend, anErrorOfTheUserObject_reachesTheCallerBeforeTheFileIsRead) {
  configure("INVOICE", "AGENT");
  host.user.onName = [] { throw RuntimeError(1234, "User", "nobody"); };
  bool isFileTouched = false;
  host.files.before = [&](auto, auto) { isFileTouched = true; };
  importFile("a|b|c|d\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 1234);

  EXPECT_FALSE(isFileTouched);
  EXPECT_TRUE(isNothingSent());
}

TEST_F(ImExRequestSend, withoutAServiceCall_theObjectCannotBeCreated) {
  host.services.serviceCall = nullptr;
  host.install();
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 429);
}

TEST_F(ImExRequestSend, withoutAUser_theObjectCannotBeCreated) {
  host.services.currentUser = nullptr;
  host.install();
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\n");

  EXPECT_EQ(raisedNumber([&] { request.send(); }), 429);
  EXPECT_TRUE(isNothingSent());
}

} // namespace
} // namespace imex::test
