#include "RequestTest.h"
#include "module/ImExModule.h"
#include "request/ImExRequest.h"
#include "support/FakeTransport.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace imex::test {
namespace {

const std::string kEnvironmentEvent = "SerializationFailed: An environment error has been detected.";
const std::string kSendingEvent = "SerializationFailed: An error has occurred while sending the data.";
const std::string kUnreadableEvent = "SerializationFailed: " + std::string(kUnreadable);

class ImExRequestSerialize : public RequestTest {
 protected:
  ImExRequestSerialize() {
    host.services.transportFactory = &transport;
    host.install();
    transport.result = answer("done", {});
  }

  void configureInvoices(std::string_view file = "a|b|c|d\r\n") {
    configure("INVOICE", "AGENT");
    importFile(file);
  }

  /// The one text that was posted.
  std::string posted() const {
    return transport.posted.size() == 1 ? transport.posted.front() : std::to_string(transport.posted.size()) + " texts";
  }

  bool isNothingSent() const { return !transport.wasCalled("send") && host.serviceCall.calls.empty(); }

  FakeTransportFactory transport;
};

std::string exceptionEvent(const std::string& dataType, const std::string& description) {
  return "SerializationFailed: Exception while attempting to import " + dataType + ". \r\n" + description + ". \r\n";
}

/// The posted text of a request with the usual settings and these "LINE" elements.
std::string postedText(const std::string& lines, const std::string& dataType, const std::string& dataOrigin) {
  return envelopeText("<userID>agent1</userID>",
                      "<PARAM_ELEMENT><IMPORTEXPORTWRAPPER><LINES>" + lines +
                          "</LINES><REQUESTINFORMATION><IMPORTEXPORT>IMPORT</IMPORTEXPORT><DATATYPE>" + dataType +
                          "</DATATYPE><SCHEDULE>INSTANT</SCHEDULE><DATAORIGIN>" + dataOrigin +
                          "</DATAORIGIN><DELIMITER>PIPE</DELIMITER><USERNAME>Ann Agent</USERNAME>"
                          "<ALLOWWARNINGS>FALSE</ALLOWWARNINGS><ALLOWTRUNCATION>FALSE</ALLOWTRUNCATION>"
                          "</REQUESTINFORMATION></IMPORTEXPORTWRAPPER></PARAM_ELEMENT>");
}

// --- The exchange ---------------------------------------------------------------------------------------------------

TEST_F(ImExRequestSerialize, theCalls_comeInOrder) {
  configureInvoices("a|b|c|d\r\n\r\ne|f|g|h\r\n");
  transport.received = "<the answer/>";

  request.Serialize();

  EXPECT_EQ(transport.calls, (Texts{"createTransport",
                                    "createEnvelope",
                                    "setEncodingStyle http://xml.apache.org/xml-soap/literalxml",
                                    "setMethod importInvoicesInstant urn:ImportExportService",
                                    "create userID",
                                    "create PARAM_ELEMENT",
                                    "create IMPORTEXPORTWRAPPER",
                                    "create LINES",
                                    "create REQUESTINFORMATION",
                                    "create IMPORTEXPORT",
                                    "create DATATYPE",
                                    "create SCHEDULE",
                                    "create DATAORIGIN",
                                    "create DELIMITER",
                                    "create USERNAME",
                                    "create ALLOWWARNINGS",
                                    "create ALLOWTRUNCATION",
                                    "create LINE",
                                    "create LINE",
                                    "NoProxy",
                                    "Timeout 30000",
                                    "SOAPAction urn:ImportExportService",
                                    "serialise",
                                    "send http://service.example/secured",
                                    "Receive UTF-8",
                                    "parse <the answer/> ",
                                    "parameter 0"}));
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

TEST_F(ImExRequestSerialize, thePostedText_carriesUserLinesAndRequestInformation) {
  configureInvoices("a|b|c|d\r\n\r\né|\"f\"|g|h\r\n");
  request.AllowWarnings(true);

  request.Serialize();

  EXPECT_EQ(posted(), envelopeText("<userID>agent1</userID>", "<PARAM_ELEMENT>"
                                                              "<IMPORTEXPORTWRAPPER>"
                                                              "<LINES>"
                                                              "<LINE>A|B|C|D|</LINE>"
                                                              "<LINE>É|\"F\"|G|H|</LINE>"
                                                              "</LINES>"
                                                              "<REQUESTINFORMATION>"
                                                              "<IMPORTEXPORT>IMPORT</IMPORTEXPORT>"
                                                              "<DATATYPE>INVOICE</DATATYPE>"
                                                              "<SCHEDULE>INSTANT</SCHEDULE>"
                                                              "<DATAORIGIN>AGENT</DATAORIGIN>"
                                                              "<DELIMITER>PIPE</DELIMITER>"
                                                              "<USERNAME>Ann Agent</USERNAME>"
                                                              "<ALLOWWARNINGS>TRUE</ALLOWWARNINGS>"
                                                              "<ALLOWTRUNCATION>FALSE</ALLOWTRUNCATION>"
                                                              "</REQUESTINFORMATION>"
                                                              "</IMPORTEXPORTWRAPPER>"
                                                              "</PARAM_ELEMENT>"));
}

TEST_F(ImExRequestSerialize, allowTruncation_isAWordOfItsOwn) {
  configureInvoices();
  request.AllowTruncation(true);

  request.Serialize();

  EXPECT_NE(posted().find("<ALLOWWARNINGS>FALSE</ALLOWWARNINGS><ALLOWTRUNCATION>TRUE</ALLOWTRUNCATION>"),
            std::string::npos)
      << posted();
}

TEST_F(ImExRequestSerialize, everyTypeAndLayout_hasItsMethodServiceAndLines) {
  struct Case {
    std::string dataType;
    std::string dataOrigin;
    std::string line;
    std::string method;
    std::string sent;
  };
  const std::string secured = "urn:ImportExportService";
  const std::vector<Case> cases = {
      {"CUSTOMER", "AGENT", customerLine("Ann's \"Lamps\""), "importCustomersInstant",
       "C1|ANN'S \"LAMPS\"|1 MAIN ST|||TOWN|GA|30012|||555-0100||DIST|"},
      {"CUSTOMER", "HALVIK", "a'|b|c|d|\"e", "importCustomersInstant", "A'|B|C|D|\"E|"},
      {"PRODUCT", "AGENT", productLine("6\" x 4'"), "importProductsInstant", "6 X 4|DESC|BRAND|4|5|6|7|8|9|10|LAMP|"},
      {"COMMISSION", "AGENT", "a'|b|c", "importCommissionsInstant", "A'|B|C|"},
      {"INVOICE", "AGENT", "a'|b|c|d", "importInvoicesInstant", "A'|B|C|D|"},
  };
  for (const Case& each : cases) {
    transport.calls.clear();
    transport.posted.clear();
    configure(each.dataType, each.dataOrigin);
    importFile(each.line + "\r\n");

    request.Serialize();

    EXPECT_EQ(transport.calls.at(3), "setMethod " + each.method + " urn:ImportExportService");
    EXPECT_TRUE(transport.wasCalled("SOAPAction urn:ImportExportService"));
    EXPECT_TRUE(transport.wasCalled("send http://service.example/secured"));
    EXPECT_EQ(posted(), postedText("<LINE>" + each.sent + "</LINE>", each.dataType, each.dataOrigin));
  }
}

TEST_F(ImExRequestSerialize, ballasts_goToTheUnsecuredService) {
  configure("BALLASTS", "HALVIK");
  importFile("a'|b\r\n");

  request.Serialize();

  EXPECT_EQ(transport.calls.at(3), "setMethod importBallastsInstant urn:UnsecuredImportExportService");
  EXPECT_TRUE(transport.wasCalled("Timeout 30000"));
  EXPECT_TRUE(transport.wasCalled("SOAPAction urn:UnsecuredImportExportService"));
  EXPECT_TRUE(transport.wasCalled("send http://service.example/unsecured"));
  EXPECT_EQ(posted(), postedText("<LINE>A'|B|</LINE>", "BALLASTS", "HALVIK"));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"})); // on this road their answer is read
}

TEST_F(ImExRequestSerialize, anEmptyFile_isPostedWithoutLines) {
  configureInvoices("\r\n\r\n");

  request.Serialize();

  EXPECT_EQ(posted(), postedText("", "INVOICE", "AGENT"));
  EXPECT_EQ(request.rowCount(), 0);
}

TEST_F(ImExRequestSerialize, aProxyPort_meansTheProxyOnThisMachine) {
  configureInvoices();
  host.settings.proxy = "8080";

  request.Serialize();

  EXPECT_TRUE(transport.wasCalled("SetProxy localhost 8080"));
  EXPECT_FALSE(transport.wasCalled("NoProxy"));
}

TEST_F(ImExRequestSerialize, noProxyPort_meansADirectConnection) {
  configureInvoices();

  request.Serialize();

  EXPECT_FALSE(transport.wasCalled("SetProxy"));
  EXPECT_TRUE(transport.wasCalled("NoProxy"));
}

TEST_F(ImExRequestSerialize, anyOtherProxyText_isTakenForAPort) {
  configureInvoices();
  host.settings.proxy = " ";

  request.Serialize();

  EXPECT_TRUE(transport.wasCalled("SetProxy localhost  "));
}

TEST_F(ImExRequestSerialize, theHostsTimeOut_isTheTransports) {
  configureInvoices();
  host.settings.milliseconds = 0;

  request.Serialize();

  EXPECT_TRUE(transport.wasCalled("Timeout 0"));
}

TEST_F(ImExRequestSerialize, theAnswer_isDeserialized) {
  configureInvoices();
  transport.result = answer("1 line", {{true, "A|B|C|D|", "1"}});

  request.Serialize();

  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  EXPECT_EQ(replies.at(0)->reply(), "1 line");
  EXPECT_TRUE(isPageWritten());
}

TEST_F(ImExRequestSerialize, theFileIsClosed_whenTheTextIsPosted) {
  bool isClosed = false;
  transport.before = [&](std::string_view call) {
    if (call.starts_with("send "))
      isClosed = isEverythingClosed();
  };
  configureInvoices();

  request.Serialize();

  EXPECT_TRUE(isClosed);
}

TEST_F(ImExRequestSerialize, theSteps_areTraced) {
  configureInvoices();

  request.Serialize();

  const std::string probe = "ImExModule checkFileExists(fileName = " + importPath() + ")";
  EXPECT_EQ(steps(), (Texts{"> ImExRequest Serialize()",
                            "> ImExRequest selectInstantMethod()",
                            "< ImExRequest selectInstantMethod()",
                            "> ImExRequest buildRequestInformation()",
                            "< ImExRequest buildRequestInformation()",
                            "> ImExRequest addImportLines()",
                            "> " + probe,
                            "< " + probe,
                            "> ImExRequest simpleClientValidation()",
                            "> ImExModule Parse()",
                            "< ImExModule Parse()",
                            "< ImExRequest simpleClientValidation()",
                            "< ImExRequest addImportLines()",
                            "> ImExRequest Deserialize()",
                            "> ImExReply processReply()",
                            "< ImExReply processReply()",
                            "> ImExRequest mergeLineResults()",
                            "> ImExRequest writeResultsReport()",
                            "< ImExRequest writeResultsReport()",
                            "< ImExRequest mergeLineResults()",
                            "< ImExRequest Deserialize()",
                            "< ImExRequest Serialize()"}));
}

// --- Types that have no instant method ------------------------------------------------------------------------------

TEST_F(ImExRequestSerialize, withoutAnInstantMethod_nothingIsSent) {
  for (const auto& [dataType, dataOrigin] :
       std::vector<std::pair<std::string, std::string>>{{"PRODUCT", "HALVIK"},
                                                        {"INVOICE", "HALVIK"},
                                                        {"COMMISSION", "HALVIK"},
                                                        {"BALLASTS", "AGENT"},
                                                        {"PROJECTLINEITEM", "AGENT"},
                                                        {"customer", "AGENT"},
                                                        {"CUSTOMER", "agent"},
                                                        {"", ""}}) {
    transport.calls.clear();
    events.clear();
    configure(dataType, dataOrigin);

    request.Serialize();

    EXPECT_EQ(events, Texts{kSendingEvent}) << dataType << dataOrigin;
    EXPECT_EQ(transport.calls, (Texts{"createTransport", "createEnvelope",
                                      "setEncodingStyle http://xml.apache.org/xml-soap/literalxml"}));
    EXPECT_EQ(traceOf("Serialize()"), (Texts{"> ImExRequest Serialize()"})) << "it is left in the middle";
  }
  expectedErrors = host.trace->errors(); // of the formats that do not exist
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST_F(ImExRequestSerialize, anErrorUpToTheFirstParameters_isAnEnvironmentError) {
  configureInvoices();
  for (const std::string call :
       {"createTransport", "createEnvelope", "setEncodingStyle", "create userID", "create PARAM_ELEMENT",
        "create IMPORTEXPORTWRAPPER", "create LINES", "create REQUESTINFORMATION"}) {
    events.clear();
    transport.failAt(call, RuntimeError(1234, "Soap", "broken"));

    request.Serialize();

    EXPECT_EQ(events, Texts{kEnvironmentEvent}) << call;
    EXPECT_TRUE(isNothingSent()) << call;
    expectedErrors.emplace_back("! ImExRequest Serialize 1234 Soap: broken");
  }
}

TEST_F(ImExRequestSerialize, withoutATransportFactory_thereIsAnEnvironmentError) {
  host.services.transportFactory = nullptr;
  host.install();
  configureInvoices();

  request.Serialize();

  EXPECT_EQ(events, Texts{kEnvironmentEvent});
  expectedErrors = {"! ImExRequest Serialize 429 ImEx: Component can't create object"};
}

TEST_F(ImExRequestSerialize, withoutAUser_thereIsAnEnvironmentError) {
  host.services.currentUser = nullptr;
  host.install();
  configureInvoices();

  request.Serialize();

  EXPECT_EQ(events, Texts{kEnvironmentEvent});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest Serialize 429 ImEx: Component can't create object"};
}

TEST_F(ImExRequestSerialize, anErrorWhileChoosingTheMethod_isRecordedThereToo) {
  configureInvoices();
  transport.failAt("setMethod", RuntimeError(1234, "Soap", "broken"));

  request.Serialize();

  EXPECT_EQ(events, Texts{kEnvironmentEvent});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest selectInstantMethod 1234 Soap: broken", "! ImExRequest Serialize 1234 Soap: broken"};
}

TEST_F(ImExRequestSerialize, anErrorInTheRequestInformation_isOneEvent) {
  configureInvoices();
  for (const std::string call :
       {"create IMPORTEXPORT", "create DATATYPE", "create SCHEDULE", "create DATAORIGIN", "create DELIMITER",
        "create USERNAME", "create ALLOWWARNINGS", "create ALLOWTRUNCATION"}) {
    events.clear();
    transport.failAt(call, RuntimeError(1008, "Soap", "not a character of XML"));

    request.Serialize();

    EXPECT_EQ(events, Texts{"SerializationFailed: Unable to create a request to process."}) << call;
    EXPECT_TRUE(isNothingSent()) << call;
    EXPECT_FALSE(transport.wasCalled("create LINE")) << call;
    expectedErrors.emplace_back("! ImExRequest buildRequestInformation 1008 Soap: not a character of XML");
  }
}

TEST_F(ImExRequestSerialize, anErrorOfTheUserName_isOneEvent) {
  configureInvoices();
  host.user.onName = [] { throw RuntimeError(1234, "User", "nobody"); };

  request.Serialize();

  EXPECT_EQ(events, Texts{"SerializationFailed: Unable to create a request to process."});
  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(traceOf("Serialize()"), (Texts{"> ImExRequest Serialize()"})) << "it is left in the middle";
  expectedErrors = {"! ImExRequest buildRequestInformation 1234 User: nobody"};
}

TEST_F(ImExRequestSerialize, anErrorThatTheRequestInformationLetsOut_isASendingError) {
  configureInvoices();
  transport.failAt("create SCHEDULE", RuntimeError(70000, "Soap", "odd")); // too great to be recorded there

  request.Serialize();

  EXPECT_EQ(events, Texts{kSendingEvent});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest Serialize 6 ImEx: Overflow"};
}

TEST_F(ImExRequestSerialize, anErrorInTheExchange_namesTypeAndReason) {
  configureInvoices();
  for (const std::string call :
       {"NoProxy", "Timeout", "SOAPAction", "serialise", "send", "Receive", "parse", "parameter"}) {
    events.clear();
    transport.failAt(call, RuntimeError(1001, "Http", "No connection to http://service.example/secured"));

    request.Serialize();

    EXPECT_EQ(events, Texts{"SerializationFailed: Exception while attempting to import INVOICE. \r\n"
                            "No connection to http://service.example/secured. \r\n"})
        << call;
    expectedErrors.emplace_back("! ImExRequest Serialize() 1001 Http: No connection to http://service.example/secured");
  }
  EXPECT_FALSE(isPageWritten());
}

TEST_F(ImExRequestSerialize, anErrorOfTheProxy_namesTypeAndReason) {
  configure("BALLASTS", "HALVIK");
  importFile("a|b\r\n");
  host.settings.proxy = "x";
  transport.failAt("SetProxy", RuntimeError(1001, "Http", "no such port"));

  request.Serialize();

  EXPECT_EQ(events, Texts{exceptionEvent("BALLASTS", "no such port")});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest Serialize() 1001 Http: no such port"};
}

TEST_F(ImExRequestSerialize, withoutSettings_theReasonIsTheMissingObject) {
  host.services.settings = nullptr;
  host.install();
  configureInvoices();

  request.Serialize();

  EXPECT_EQ(events, Texts{exceptionEvent("INVOICE", "Component can't create object")});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest Serialize() 429 ImEx: Component can't create object"};
}

TEST_F(ImExRequestSerialize, anAnswerWithoutAParameter_namesTypeAndReason) {
  configureInvoices();
  transport.result = nullptr;

  request.Serialize();

  EXPECT_EQ(events, Texts{exceptionEvent("INVOICE", "Subscript out of range")});
  expectedErrors = {"! ImExRequest Serialize() 9 ImEx: Subscript out of range"};
}

TEST_F(ImExRequestSerialize, anErrorInTheAnswer_isRecordedAtEveryStep) {
  configureInvoices();
  transport.result = answer("", {{true, "a", "none"}});

  request.Serialize();

  EXPECT_EQ(events, Texts{exceptionEvent("INVOICE", "Type mismatch")});
  const Texts errors = host.trace->errors();
  ASSERT_EQ(errors.size(), 3u);
  EXPECT_TRUE(errors[0].starts_with("! ImExReply processReply 13 ")) << errors[0];
  EXPECT_TRUE(errors[1].starts_with("! ImExRequest Deserialize 13 ")) << errors[1];
  EXPECT_TRUE(errors[2].starts_with("! ImExRequest Serialize() 13 ")) << errors[2];
  expectedErrors = errors;
}

TEST_F(ImExRequestSerialize, anErrorOfAHandler_namesTypeAndReason) {
  request.MessageReceived.connect([](auto&&) { throw RuntimeError(1234, "Panel", "no panel"); });
  configureInvoices();

  request.Serialize();

  EXPECT_EQ(events, (Texts{"MessageReceived", exceptionEvent("INVOICE", "no panel")}));
  EXPECT_FALSE(isPageWritten());
  expectedErrors = {"! ImExRequest Deserialize 1234 Panel: no panel", "! ImExRequest Serialize() 1234 Panel: no panel"};
}

TEST_F(ImExRequestSerialize, anErrorNumberPastSixteenBits_leavesAsOverflow) {
  configureInvoices();
  transport.failAt("send", RuntimeError(70000, "Http", "odd"));

  EXPECT_EQ(raisedNumber([&] { request.Serialize(); }), 6);

  EXPECT_EQ(events, (Texts{}));
}

TEST_F(ImExRequestSerialize, anyOtherException_isAnInternalError) {
  configureInvoices();
  transport.before = [](std::string_view call) {
    if (call.starts_with("send "))
      throw std::logic_error("odd");
  };

  request.Serialize();

  ASSERT_EQ(events.size(), 1u);
  EXPECT_TRUE(events[0].starts_with("SerializationFailed: Exception while attempting to import INVOICE. \r\n"
                                    "Internal error"))
      << events[0];
  EXPECT_NE(events[0].find("odd"), std::string::npos);
  expectedErrors = host.trace->errors();
  ASSERT_EQ(expectedErrors.size(), 1u);
  EXPECT_TRUE(expectedErrors[0].starts_with("! ImExRequest Serialize() 51 "));
}

TEST_F(ImExRequestSerialize, aLineThatXmlCannotCarry_isAnUnreadableFile) {
  configureInvoices();
  transport.failAt("create LINE", RuntimeError(1008, "Soap", "not a character of XML"));

  request.Serialize();

  EXPECT_EQ(events, Texts{kUnreadableEvent});
  EXPECT_TRUE(isNothingSent());
  expectedErrors = {"! ImExRequest addImportLines 1008 Soap: not a character of XML"};
}

TEST_F(ImExRequestSerialize, aFailure_hasNoExitLine) {
  configureInvoices();
  transport.failAt("send", RuntimeError(1001, "Http", "no connection"));

  request.Serialize();

  EXPECT_EQ(traceOf("Serialize()"), (Texts{"> ImExRequest Serialize()"}));
  expectedErrors = {"! ImExRequest Serialize() 1001 Http: no connection"};
}

TEST_F(ImExRequestSerialize, settingsOutliveAFailure) {
  configureInvoices();
  transport.failAt("send", RuntimeError(1001, "Http", "no connection"));
  request.Serialize();
  events.clear();
  transport.before = [](auto) {};

  request.Serialize();

  EXPECT_EQ(posted(), postedText("<LINE>A|B|C|D|</LINE>", "INVOICE", "AGENT"));
  EXPECT_EQ(events, (Texts{"MessageReceived", "showErrors"}));
  expectedErrors = {"! ImExRequest Serialize() 1001 Http: no connection"};
}

// --- Files that are not sent ----------------------------------------------------------------------------------------

TEST_F(ImExRequestSerialize, aMissingFile_isABoxAndNothingElse) {
  configure("INVOICE", "AGENT");

  request.Serialize();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {{std::string(kUnreadable), 64, "Corvana Maintenance"}};
}

TEST_F(ImExRequestSerialize, aFileThatBreaksOffInTheMiddle_isNotSent) {
  configure("BALLASTS", "HALVIK");
  importFile(repeated("a|" + std::string(100, 'b'), 20000));
  failReading(2, 3, RuntimeError(ErrorNumber::deviceIoError, "Disk"));

  request.Serialize();

  EXPECT_TRUE(transport.wasCalled("create LINE"));
  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, Texts{kUnreadableEvent});
  expectedErrors = {"! ImExRequest addImportLines 57 Disk: Device I/O error"};
}

TEST_F(ImExRequestSerialize, oneLineMoreThanSixteenBitsCount_isNotSent) {
  configure("BALLASTS", "HALVIK");
  importFile(repeated("a|b", 32768));

  request.Serialize();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, Texts{kUnreadableEvent});
  expectedErrors = {"! ImExRequest addImportLines 6 ImEx: Overflow"};
}

TEST_F(ImExRequestSerialize, aFailingLine_isAskedAboutAndNothingIsSent) {
  configure("CUSTOMER", "HALVIK");
  importFile("a|b|c|d|e\r\na|b\r\n");

  request.Serialize();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{}));
  expectedBoxes = {questionBox(delimiterFinding(kHalvikCustomerColumns))};
}

TEST_F(ImExRequestSerialize, yes_opensTheFileInTheEditor) {
  host.messageBox.answer = host::Answer::yes;
  configure("CUSTOMER", "HALVIK");
  importFile("a|b\r\n\r\n");

  request.Serialize();

  EXPECT_TRUE(isNothingSent());
  EXPECT_EQ(events, (Texts{"editImportFile"}));
  ASSERT_EQ(edits.size(), 1u);
  EXPECT_EQ(edits[0].message, "File format incorrect.");
  EXPECT_EQ(edits[0].rows, 2);
  EXPECT_EQ(edits[0].columns, kHalvikCustomerColumns);
  EXPECT_EQ(edits[0].fileName, importPath());
  EXPECT_EQ(edits[0].headers, ImExModule::getFormatColumns("CUSTOMERHALVIK"));
  EXPECT_EQ(edits[0].delimiterAscii, 124);
  expectedBoxes = {questionBox(delimiterFinding(kHalvikCustomerColumns))};
}

TEST_F(ImExRequestSerialize, anErrorOfTheEditor_namesTypeAndReason) {
  host.messageBox.answer = host::Answer::yes;
  request.editImportFile.connect([](auto&&...) { throw RuntimeError(1234, "Editor", "no editor"); });
  configureInvoices("a|b\r\n");

  request.Serialize();

  EXPECT_EQ(events, (Texts{"editImportFile", exceptionEvent("INVOICE", "no editor")}));
  expectedErrors = {"! ImExRequest Serialize() 1234 Editor: no editor"};
  expectedBoxes = {questionBox(delimiterFinding(kInvoiceColumns))};
}

} // namespace
} // namespace imex::test
