#include "RequestTest.h"
#include "module/ImExModule.h"
#include "request/ImExRequest.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace imex::test {
namespace {

constexpr const char* kProductMessage =
    "The following fields are required when importing products using the agent format:\r\n"
    "Catalog Number, Brand Name, Product Type, ";
constexpr const char* kCustomerMessage =
    "The following fields are required when importing customers using the agent format:\r\n"
    "Firm name, Address 1, City, State, Zip, Phone Number, Customer Type.";
constexpr const char* kDistributorMessage = "Distributor import not allowed on Central Server.\r\n"
                                            "Please contact Corvana Support for more Information.";
constexpr const char* kLimitMessage = "The file you are attempting to edit exceeds the maximum size of lines (32,767). "
                                      "Please edit the file and try again.";

constexpr int kPipe = 124;
constexpr int kTab = 9;

const std::string kLongLine(40000, 'x');

// A row of `count` filled fields, with some of them, counted from 1, given another value.
StringsPtr row(int count, const std::vector<std::pair<int, std::string>>& others = {}) {
  auto fields = std::make_shared<Strings>();
  for (int i = 1; i <= count; ++i)
    fields->add("f" + std::to_string(i));
  for (const auto& [position, text] : others)
    fields->item(position) = text;
  return fields;
}

std::string lineOf(const StringsPtr& fields) {
  return join(texts(fields), "|");
}

// --- The number of fields -------------------------------------------------------------------------------------------

class ImExRequestChecks : public RequestTest {
 protected:
  void SetUp() override { configure("BALLASTS", "HALVIK"); }

  Texts check(std::string_view line, int expectedFields) {
    return texts(request.simpleClientValidation(line, kPipe, expectedFields));
  }
};

TEST_F(ImExRequestChecks, anEmptyLine_passesUntouched) {
  configure("CUSTOMER", "AGENT");

  EXPECT_EQ(check("", 13), (Texts{}));
  EXPECT_EQ(traceOf("Parse()"), (Texts{}));
}

TEST_F(ImExRequestChecks, aLineOfBlanks_isNotEmpty) {
  EXPECT_EQ(check(" ", 2), (Texts{delimiterFinding(2)}));
}

TEST_F(ImExRequestChecks, theNumberOfFields_mustBeTheExpectedOne) {
  EXPECT_EQ(check("a|b", 3), (Texts{delimiterFinding(3)}));
  EXPECT_EQ(check("a|b|c", 3), (Texts{}));
  EXPECT_EQ(check("a|b|c|d", 3), (Texts{delimiterFinding(3)}));
}

TEST_F(ImExRequestChecks, theFinding_namesTheExpectedNumberOfFields) {
  EXPECT_EQ(check("a", 2),
            (Texts{"The file you are attempting to import is not properly delimited. It should contain 2 of your "
                   "chosen delimiter in each row of the file.\r\nOpening the file within the editor and saving will "
                   "correct the error."}));
  EXPECT_EQ(check("a", 0), (Texts{delimiterFinding(0)}));
  EXPECT_EQ(check("a", -1), (Texts{delimiterFinding(-1)}));
  EXPECT_EQ(check("a", 32767), (Texts{delimiterFinding(32767)}));
}

TEST_F(ImExRequestChecks, aTrailingDelimiter_isOneMoreField) {
  EXPECT_EQ(check("a|b|", 2), (Texts{delimiterFinding(2)}));
  EXPECT_EQ(check("a|b|", 3), (Texts{}));
}

TEST_F(ImExRequestChecks, theGivenDelimiter_isTheOneThatCounts) {
  EXPECT_EQ(texts(request.simpleClientValidation("a|b\tc", kTab, 2)), (Texts{}));
  EXPECT_EQ(texts(request.simpleClientValidation("a|b\tc", kPipe, 2)), (Texts{}));
  EXPECT_EQ(texts(request.simpleClientValidation("a|b", kTab, 2)), (Texts{delimiterFinding(2)}));
}

TEST_F(ImExRequestChecks, quotes_doNotProtectADelimiter) {
  EXPECT_EQ(check("\"a|b\"", 1), (Texts{delimiterFinding(1)}));
}

TEST_F(ImExRequestChecks, simpleClientValidation_tracesItselfAroundTheSplitting) {
  (void)check("a", 1);

  EXPECT_EQ(host.trace->lines.front(), "> ImExRequest simpleClientValidation()");
  EXPECT_EQ(host.trace->lines.back(), "< ImExRequest simpleClientValidation()");
  EXPECT_EQ(traceOf("Parse()"), (Texts{"> ImExModule Parse()", "< ImExModule Parse()"}));
}

TEST_F(ImExRequestChecks, aLineTooLongToSplit_isRecordedShownAndWithoutFindings) {
  EXPECT_EQ(check(kLongLine, 2), (Texts{}));

  expectedErrors = {"! ImExModule launchInternetExplorer 6 ImEx: Overflow",
                    "! ImExRequest simpleClientValidation 6 ImEx: Overflow"};
  expectedBoxes = {{"Unable to validate the format of the file being imported.", 48, "Error Number: 6 - Overflow"}};
}

TEST_F(ImExRequestChecks, anErrorOfTheTraceLog_isAnErrorOfTheCheck) {
  host.trace->onTrace = [] { throw RuntimeError(1009, "TraceLog", "The trace is full"); };

  EXPECT_EQ(check("a", 2), (Texts{}));

  expectedErrors = {"! ImExRequest simpleClientValidation 1009 TraceLog: The trace is full"};
  expectedBoxes = {
      {"Unable to validate the format of the file being imported.", 48, "Error Number: 1009 - The trace is full"}};
}

TEST_F(ImExRequestChecks, anErrorPast16Bits_leavesTheValidatorsAsAnOverflow) {
  host.trace->onTrace = [] { throw RuntimeError(70000, "TraceLog", "The trace is full"); };

  EXPECT_EQ(raisedNumber([&] { request.validateAgentCustomer(nullptr); }), 6);
  EXPECT_EQ(raisedNumber([&] { request.validateAgentProduct(nullptr); }), 6);
}

TEST_F(ImExRequestChecks, aFindingMadeBeforeAnError_isReturned) {
  host.trace->onTrace = [this] {
    // The entry of the check, the entry and the exit of the splitting; its own exit is the fourth.
    if (host.trace->lines.size() == 3)
      throw RuntimeError(1009, "TraceLog", "The trace is full");
  };

  EXPECT_EQ(check("a", 2), (Texts{delimiterFinding(2)}));

  expectedErrors = {"! ImExRequest simpleClientValidation 1009 TraceLog: The trace is full"};
  expectedBoxes = {
      {"Unable to validate the format of the file being imported.", 48, "Error Number: 1009 - The trace is full"}};
}

TEST_F(ImExRequestChecks, aLineAsLongAsSixteenBitsCount_isChecked) {
  EXPECT_EQ(check(kLongLine.substr(0, 32767), 2), (Texts{delimiterFinding(2)}));
}

TEST_F(ImExRequestChecks, theLengthOfALine_isInCharacters) {
  std::string line;
  for (int i = 0; i < 32767; ++i)
    line += "é";

  EXPECT_EQ(check(line, 1), (Texts{}));
}

// --- Which rows get their fields checked ----------------------------------------------------------------------------

TEST_F(ImExRequestChecks, agentCustomers_areCheckedForTheirFields) {
  configure("CUSTOMER", "AGENT");

  EXPECT_EQ(check(lineOf(row(13, {{2, ""}})), 13), (Texts{kCustomerMessage}));
  EXPECT_EQ(check(lineOf(row(13)), 13), (Texts{}));
}

TEST_F(ImExRequestChecks, agentProducts_areCheckedForTheirFields) {
  configure("PRODUCT", "AGENT");

  EXPECT_EQ(check(lineOf(row(11, {{1, ""}})), 11), (Texts{kProductMessage}));
  EXPECT_EQ(check(lineOf(row(11)), 11), (Texts{}));
}

TEST_F(ImExRequestChecks, otherTypesAndLayouts_haveNoFurtherCheck) {
  const std::string emptyFields(12, '|');
  for (const auto& [dataType, dataOrigin] :
       std::vector<std::pair<std::string, std::string>>{{"CUSTOMER", "HALVIK"},
                                                        {"PRODUCT", "HALVIK"},
                                                        {"INVOICE", "AGENT"},
                                                        {"COMMISSION", "AGENT"},
                                                        {"BALLASTS", "HALVIK"},
                                                        {"PROJECTLINEITEM", "AGENT"},
                                                        {"customer", "AGENT"},
                                                        {"CUSTOMER", "agent"},
                                                        {"Product", "AGENT"},
                                                        {"", ""}}) {
    configure(dataType, dataOrigin);
    EXPECT_EQ(check(emptyFields, 13), (Texts{})) << dataType << dataOrigin;
  }
  expectedErrors = host.trace->errors(); // of the formats that do not exist
}

TEST_F(ImExRequestChecks, aWrongNumberOfFields_isTheOnlyFinding) {
  configure("CUSTOMER", "AGENT");

  EXPECT_EQ(check("|||", 13), (Texts{delimiterFinding(13)}));
}

// --- Products -------------------------------------------------------------------------------------------------------

TEST_F(ImExRequestChecks, productFields_oneByOne) {
  EXPECT_EQ(texts(request.validateAgentProduct(row(11))), (Texts{}));
  for (const int required : {1, 3, 11}) {
    EXPECT_EQ(texts(request.validateAgentProduct(row(11, {{required, ""}}))), (Texts{kProductMessage})) << required;
    EXPECT_EQ(texts(request.validateAgentProduct(row(11, {{required, " "}}))), (Texts{})) << required;
  }
  for (const int optional : {2, 4, 5, 6, 7, 8, 9, 10})
    EXPECT_EQ(texts(request.validateAgentProduct(row(11, {{optional, ""}}))), (Texts{})) << optional;
}

TEST_F(ImExRequestChecks, productRowsShorterThanElevenFields_lackTheProductType) {
  for (int count = 0; count <= 10; ++count)
    EXPECT_EQ(texts(request.validateAgentProduct(row(count))), (Texts{kProductMessage})) << count;
  EXPECT_EQ(texts(request.validateAgentProduct(row(11))), (Texts{}));
  EXPECT_EQ(texts(request.validateAgentProduct(row(12))), (Texts{}));
}

TEST_F(ImExRequestChecks, aProductRowWithSeveralFaults_hasOneMessage) {
  EXPECT_EQ(texts(request.validateAgentProduct(row(11, {{1, ""}, {3, ""}, {11, ""}}))), (Texts{kProductMessage}));
}

// --- Customers ------------------------------------------------------------------------------------------------------

TEST_F(ImExRequestChecks, customerFields_oneByOne) {
  EXPECT_EQ(texts(request.validateAgentCustomer(row(13))), (Texts{}));
  for (const int required : {2, 3, 6, 7, 8, 11, 13}) {
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{required, ""}}))), (Texts{kCustomerMessage})) << required;
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{required, " "}}))), (Texts{})) << required;
  }
  for (const int optional : {1, 4, 5, 9, 10, 12})
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{optional, ""}}))), (Texts{})) << optional;
}

TEST_F(ImExRequestChecks, customerRowsShorterThanThirteenFields_lackARequiredField) {
  for (int count = 0; count <= 12; ++count)
    EXPECT_EQ(texts(request.validateAgentCustomer(row(count))), (Texts{kCustomerMessage})) << count;
  EXPECT_EQ(texts(request.validateAgentCustomer(row(13))), (Texts{}));
  EXPECT_EQ(texts(request.validateAgentCustomer(row(14))), (Texts{}));
}

TEST_F(ImExRequestChecks, aCustomerRowWithSeveralFaults_hasOneMessage) {
  EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{2, ""}, {8, ""}, {13, ""}}))), (Texts{kCustomerMessage}));
}

TEST_F(ImExRequestChecks, distributors_passOffTheCentralServer) {
  for (const std::string type : {"d", "D"})
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{13, type}}))), (Texts{})) << type;
}

TEST_F(ImExRequestChecks, distributors_areRefusedOnTheCentralServer) {
  request.isCentralizedAgent = true;

  for (const std::string type : {"d", "D"})
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{13, type}}))), (Texts{kDistributorMessage})) << type;
}

TEST_F(ImExRequestChecks, otherCustomerTypes_passOnTheCentralServer) {
  request.isCentralizedAgent = true;

  for (const std::string type : {"Dist", "dd", "d ", " d", "c"})
    EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{13, type}}))), (Texts{})) << type;
}

TEST_F(ImExRequestChecks, missingFieldsOfADistributor_comeFirst) {
  request.isCentralizedAgent = true;

  EXPECT_EQ(texts(request.validateAgentCustomer(row(13, {{2, ""}, {13, "D"}}))), (Texts{kCustomerMessage}));
}

TEST_F(ImExRequestChecks, theCentralServerFlag_isNotAskedForProducts) {
  request.isCentralizedAgent = true;

  EXPECT_EQ(texts(request.validateAgentProduct(row(11, {{11, "D"}}))), (Texts{}));
}

TEST_F(ImExRequestChecks, noRowAtAll_isRecordedAndWithoutFindings) {
  EXPECT_EQ(texts(request.validateAgentCustomer(nullptr)), (Texts{}));
  EXPECT_EQ(texts(request.validateAgentProduct(nullptr)), (Texts{}));

  expectedErrors = {"! ImExRequest validateAgentCustomer 91 ImExRequest: Object variable not set",
                    "! ImExRequest validateAgentProduct 91 ImExRequest: Object variable not set"};
}

TEST_F(ImExRequestChecks, theFieldChecks_traceTheirName) {
  (void)request.validateAgentCustomer(row(13));
  (void)request.validateAgentProduct(row(11));

  EXPECT_EQ(host.trace->lines, (Texts{"> ImExRequest validateAgentCustomer()", "< ImExRequest validateAgentCustomer()",
                                      "> ImExRequest validateAgentProduct()", "< ImExRequest validateAgentProduct()"}));
}

TEST_F(ImExRequestChecks, theFieldChecks_leaveTheRowAlone) {
  const StringsPtr fields = row(13, {{13, "D"}});
  const Texts before = texts(fields);

  (void)request.validateAgentCustomer(fields);
  (void)request.validateAgentProduct(fields);

  EXPECT_EQ(texts(fields), before);
}

// --- Whether a file may be edited -----------------------------------------------------------------------------------

class ImExRequestEditCheck : public RequestTest {
 protected:
  const Box kUnreadableBox{std::string(kUnreadable), 48, "Corvana Maintenance"};
  const Box kLimitBox{kLimitMessage, 48, "Corvana Maintenance"};
};

TEST_F(ImExRequestEditCheck, anEmptyFile_mayBeEdited) {
  importFile("");
  request.rowCount(7);

  EXPECT_TRUE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 0);
}

TEST_F(ImExRequestEditCheck, rowCount_becomesTheNumberOfAllLines) {
  importFile("a\r\n\r\nb\r\n\r\n\r\nlast");

  EXPECT_TRUE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 6);
}

TEST_F(ImExRequestEditCheck, oneLineLessThanTheLimit_mayBeEdited) {
  importFile(repeated("a", 32766));

  EXPECT_TRUE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 32766);
}

TEST_F(ImExRequestEditCheck, asManyLinesAsTheLimit_mayBeEdited) {
  importFile(repeated("a", 32767));

  EXPECT_TRUE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 32767);
}

TEST_F(ImExRequestEditCheck, oneLineMoreThanTheLimit_isRefused) {
  importFile(repeated("a", 32768));

  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kLimitBox};
}

TEST_F(ImExRequestEditCheck, emptyLines_countTowardsTheLimit) {
  importFile(repeated("", 32767));
  EXPECT_TRUE(request.checkFileForEdit());

  importFile(repeated("", 32768));
  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kLimitBox};
}

TEST_F(ImExRequestEditCheck, aLastLineWithoutAnEnd_countsTowardsTheLimit) {
  importFile(repeated("a", 32767) + "b");

  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kLimitBox};
}

TEST_F(ImExRequestEditCheck, aVeryLongLine_isALine) {
  importFile(repeated(kLongLine, 3));

  EXPECT_TRUE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 3);
}

TEST_F(ImExRequestEditCheck, aMissingFile_isRefused) {
  request.CheckedFileName(host.folder / "nowhere.txt");

  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, aFolder_isRefused) {
  request.CheckedFileName(host.folder / "out");

  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, noFileName_isRefused) {
  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, anErrorAfterTheFileWasFound_isRecordedAndRefused) {
  importFile("a\r\nb\r\n");
  failReading(2, 0, RuntimeError(ErrorNumber::permissionDenied, "Disk"));

  EXPECT_FALSE(request.checkFileForEdit());
  expectedErrors = {"! ImExRequest checkFileForEdit 70 Disk: Permission denied"};
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, anErrorInTheMiddleOfTheFile_isRecordedAndRefused) {
  importFile(repeated(std::string(100, 'x'), 20000));
  failReading(2, 3, RuntimeError(ErrorNumber::deviceIoError, "Disk"));

  EXPECT_FALSE(request.checkFileForEdit());
  expectedErrors = {"! ImExRequest checkFileForEdit 57 Disk: Device I/O error"};
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, aRefusal_leavesRowCount) {
  request.rowCount(7);
  request.CheckedFileName(host.folder / "nowhere.txt");
  EXPECT_FALSE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 7) << "a missing file";

  importFile(repeated("a", 32768));
  EXPECT_FALSE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 7) << "too many lines";

  importFile(repeated(std::string(100, 'x'), 20000));
  failReading(2, 3, RuntimeError(ErrorNumber::deviceIoError, "Disk"));
  EXPECT_FALSE(request.checkFileForEdit());
  EXPECT_EQ(request.rowCount(), 7) << "an error in the middle";

  expectedErrors = {"! ImExRequest checkFileForEdit 57 Disk: Device I/O error"};
  expectedBoxes = {kUnreadableBox, kLimitBox, kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, aTakenFileNumberOne_isRefused) {
  importFile("a\r\n");
  const ImExModule::InputFile held(host.folder / "out/other.txt", 1);

  EXPECT_FALSE(request.checkFileForEdit());
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, checkFileForEdit_tracesItselfAroundTheProbe) {
  importFile("a\r\n");

  EXPECT_TRUE(request.checkFileForEdit());

  const std::string probe = "ImExModule checkFileExists(fileName = " + importPath() + ")";
  EXPECT_EQ(host.trace->lines.front(), "> ImExRequest checkFileForEdit()");
  EXPECT_EQ(host.trace->lines.at(1), "> " + probe);
  EXPECT_EQ(host.trace->lines.at(2), "< " + probe);
  EXPECT_EQ(host.trace->lines.back(), "< ImExRequest checkFileForEdit()");
}

TEST_F(ImExRequestEditCheck, aRefusal_leavesInTheMiddleAndWritesNoExitLine) {
  EXPECT_FALSE(request.checkFileForEdit());
  EXPECT_EQ(traceOf("checkFileForEdit()"), (Texts{"> ImExRequest checkFileForEdit()"}));
  EXPECT_EQ(host.trace->errors(), Texts{});
  expectedBoxes = {kUnreadableBox};
}

TEST_F(ImExRequestEditCheck, aRefusal_leavesWithoutAnExitLine) {
  EXPECT_FALSE(request.checkFileForEdit());
  importFile(repeated("a", 32768));
  EXPECT_FALSE(request.checkFileForEdit());

  EXPECT_EQ(traceOf("checkFileForEdit()"), Texts(2, "> ImExRequest checkFileForEdit()"));
  expectedBoxes = {kUnreadableBox, kLimitBox};
}

TEST_F(ImExRequestEditCheck, settings_otherThanRowCountStay) {
  configure("CUSTOMER", "AGENT");
  importFile("a\r\n");

  EXPECT_TRUE(request.checkFileForEdit());

  EXPECT_EQ(request.tabCount(), kCustomerColumns);
  EXPECT_EQ(request.CheckedFileName(), importPath());
  EXPECT_EQ(events, (Texts{}));
}

} // namespace
} // namespace imex::test
