#include "import_service/AnswerWriter.h"

#include <gtest/gtest.h>

namespace imex::import_service::test {

TEST(AnswerWriter, anAcceptedFile_isWrittenToTheByte) {
  ImportRequest request;
  request.methodName = "importData";
  request.space = "urn:ImportExportService";
  request.lines = {"C1\tACME\t", "C2\tB\t5"};
  ImportResult result;
  result.isAccepted = true;
  result.hasWarnings = true;
  result.reply = "2 lines imported, 1 of them with warnings.";
  result.verdicts.resize(2);
  result.verdicts[1].warnings = {"first", "second"};
  EXPECT_EQ(writeAnswer(request, result),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body>"
            "<ns1:importDataResponse xmlns:ns1=\"urn:ImportExportService\"><return>"
            "<reply>2 lines imported, 1 of them with warnings.</reply>"
            "<hasErrors>false</hasErrors><hasWarnings>true</hasWarnings><importExportResultBean>"
            "<item><isIuccessful>true</isIuccessful><line>C1\tACME\t</line><lineNumber>1</lineNumber>"
            "<errors></errors><warnings></warnings></item>"
            "<item><isIuccessful>true</isIuccessful><line>C2\tB\t5</line><lineNumber>2</lineNumber>"
            "<errors></errors><warnings><item>first</item><item>second</item></warnings></item>"
            "</importExportResultBean></return></ns1:importDataResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>\n");
}

TEST(AnswerWriter, aRefusedFileOfBallasts_isWrittenToTheByte) {
  ImportRequest request;
  request.methodName = "importBallastsInstant";
  request.space = "urn:UnsecuredImportExportService";
  request.lines = {" A & B <C> ]]>\r\n\"É' "};
  ImportResult result;
  result.hasErrors = true;
  result.reply = "R & D";
  result.verdicts.resize(1);
  result.verdicts[0].errors = {"<not> \"a\" & b\r"};
  EXPECT_EQ(writeAnswer(request, result),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body>"
            "<ns1:importBallastsInstantResponse xmlns:ns1=\"urn:UnsecuredImportExportService\"><return>"
            "<reply>R &amp; D</reply><hasErrors>true</hasErrors><hasWarnings>false</hasWarnings>"
            "<importExportResultBean><item><isIuccessful>false</isIuccessful>"
            "<line> A &amp; B &lt;C&gt; ]]&gt;&#13;\n\"É' </line><lineNumber>1</lineNumber>"
            "<errors><item>&lt;not&gt; \"a\" &amp; b&#13;</item></errors><warnings></warnings></item>"
            "</importExportResultBean></return></ns1:importBallastsInstantResponse></SOAP-ENV:Body>"
            "</SOAP-ENV:Envelope>\n");
}

TEST(AnswerWriter, aFault_hasItsCodeAndItsText) {
  const auto fault = [](const std::string& code) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"><SOAP-ENV:Body>"
           "<SOAP-ENV:Fault><faultcode>SOAP-ENV:" +
           code +
           "</faultcode><faultstring>A &lt; B.</faultstring></SOAP-ENV:Fault>"
           "</SOAP-ENV:Body></SOAP-ENV:Envelope>\n";
  };
  EXPECT_EQ(writeFault(ClientFault("A < B.")), fault("Client"));
  EXPECT_EQ(writeFault(Fault(FaultCode::server, "A < B.")), fault("Server"));
  EXPECT_EQ(writeFault(Fault(FaultCode::versionMismatch, "A < B.")), fault("VersionMismatch"));
}

} // namespace imex::import_service::test
