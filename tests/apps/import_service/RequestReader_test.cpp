#include "import_service/RequestReader.h"

#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::import_service::test {

RequestParts twoCustomers() {
  RequestParts parts;
  parts.lines = {"C1|ACME|", "C2|B & B|100"};
  return parts;
}

RequestParts importDataOfTwoCustomers() {
  RequestParts parts = twoCustomers();
  parts.method = "importData";
  return parts;
}

TEST(RequestReader, anInstantRequest_isReadWhole) {
  RequestParts parts = twoCustomers();
  parts.allowWarnings = "TRUE";
  const ImportRequest request = readRequest(requestXml(parts));
  EXPECT_EQ(request.methodName, "importCustomersInstant");
  EXPECT_EQ(request.space, "urn:ImportExportService");
  EXPECT_EQ(request.userId, "agent1");
  EXPECT_EQ(request.dataType, "CUSTOMER");
  EXPECT_EQ(request.dataOrigin, "AGENT");
  EXPECT_EQ(request.formatKey(), "CUSTOMERAGENT");
  EXPECT_EQ(request.delimiter, '|');
  EXPECT_EQ(request.userName, "ANN AGENT");
  EXPECT_TRUE(request.allowWarnings);
  EXPECT_FALSE(request.allowTruncation);
  EXPECT_EQ(request.lines, (std::vector<std::string>{"C1|ACME|", "C2|B & B|100"}));
}

TEST(RequestReader, anImportDataRequest_isReadWhole) {
  RequestParts parts = importDataOfTwoCustomers();
  parts.allowWarnings = "false";
  parts.allowTruncation = "true";
  const ImportRequest request = readRequest(requestXml(parts));
  EXPECT_EQ(request.methodName, "importData");
  EXPECT_EQ(request.userId, "agent1");
  EXPECT_EQ(request.formatKey(), "CUSTOMERAGENT");
  EXPECT_FALSE(request.allowWarnings);
  EXPECT_TRUE(request.allowTruncation);
  EXPECT_EQ(request.lines, (std::vector<std::string>{"C1|ACME|", "C2|B & B|100"}));
}

TEST(RequestReader, onlyOneDelimiter_isTakenOffALine) {
  RequestParts parts;
  parts.delimiter = "TAB";
  parts.lines = {"\t\t", "", " C1 \t\xC3\x89\r\t|"};
  const ImportRequest request = readRequest(requestXml(parts));
  EXPECT_EQ(request.delimiter, '\t');
  EXPECT_EQ(request.lines, parts.lines);
}

TEST(RequestReader, flags_areTakenInAnyCase) {
  RequestParts parts;
  parts.allowWarnings = "True";
  parts.allowTruncation = "tRUE";
  const ImportRequest request = readRequest(requestXml(parts));
  EXPECT_TRUE(request.allowWarnings);
  EXPECT_TRUE(request.allowTruncation);
}

TEST(RequestReader, noHeaderAndNoLines_areAllowed) {
  std::string xml = requestXml({});
  xml = replaced(xml, "<S:Header><userID>agent1</userID></S:Header>", "");
  const ImportRequest request = readRequest(xml);
  EXPECT_EQ(request.userId, "");
  EXPECT_TRUE(request.lines.empty());
}

TEST(RequestReader, otherPrefixesWhiteSpaceAndComments_makeNoDifference) {
  const ImportRequest request = readRequest(R"(<?xml version="1.0" encoding="utf-8"?>
<Envelope xmlns="http://schemas.xmlsoap.org/soap/envelope/">
  <Header><x:userID xmlns:x="urn:x"><!-- who -->ann</x:userID></Header>
  <Body>
    <importData xmlns="urn:ImportExportService">
      <HXImportBean>
        <LINES> <LINE>A<![CDATA[<&]]> <!-- x -->|</LINE> </LINES>
        <REQUESTINFORMATION>
          <ALLOWTRUNCATION>false</ALLOWTRUNCATION><ALLOWWARNINGS>false</ALLOWWARNINGS><USERNAME/>
          <DELIMITER>PIPE</DELIMITER><DATAORIGIN>AGENT</DATAORIGIN><SCHEDULE>INSTANT</SCHEDULE>
          <DATATYPE>PRODUCT</DATATYPE><IMPORTEXPORT>IMPORT</IMPORTEXPORT>
        </REQUESTINFORMATION>
      </HXImportBean>
    </importData>
  </Body>
</Envelope>
)");
  EXPECT_EQ(request.userId, "ann");
  EXPECT_EQ(request.space, "urn:ImportExportService");
  EXPECT_EQ(request.formatKey(), "PRODUCTAGENT");
  EXPECT_EQ(request.userName, "");
  EXPECT_EQ(request.lines, (std::vector<std::string>{"A<& "}));
}

/// A good request with one thing changed, and the fault that follows.
struct Change {
  std::string from;
  std::string to;
  std::string fault;
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.from << " becomes " << change.to;
}

class RequestReaderRefuses : public testing::TestWithParam<Change> {};

TEST_P(RequestReaderRefuses, withTheReason) {
  const std::string xml = replaced(requestXml(twoCustomers()), GetParam().from, GetParam().to);
  const std::optional<Fault> fault = faultOf([&xml] { readRequest(xml); });
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->what(), GetParam().fault);
  EXPECT_EQ(fault->code(), FaultCode::client);
}

INSTANTIATE_TEST_SUITE_P(
    RequestReader, RequestReaderRefuses,
    testing::Values(
        Change{"encoding=\"UTF-8\"", "encoding=\"ISO-8859-1\"", "The request must be in UTF-8, not in \"ISO-8859-1\"."},
        Change{"<S:Body>", "<S:Body><b/>", "Body has more than one element."},
        Change{"<S:Header>", "<S:Header/><S:Header>", "Envelope has more than one Header."},
        Change{"</userID>", "</userID><userID/>", "Header has more than one userID."},
        Change{"<userID>", "<userID><b/>", "userID holds the element b where only text is expected."},
        Change{"<LINES>", "<LINES/><LINES>", "IMPORTEXPORTWRAPPER has more than one LINES."},
        Change{"<LINES>", "<LINES><LINE/>", "LINE 1 does not end with the delimiter PIPE."},
        Change{"<LINES>", "<LINES><ROW/>", "LINES holds the element ROW where only LINE is expected."},
        Change{"|</LINE>", "<b/>|</LINE>", "LINE holds the element b where only text is expected."},
        Change{"100|</LINE>", "100</LINE>", "LINE 2 does not end with the delimiter PIPE."},
        Change{">PIPE<", ">TAB<", "LINE 1 does not end with the delimiter TAB."},
        Change{">PIPE<", ">pipe<", "DELIMITER must be TAB or PIPE, not \"pipe\"."},
        Change{">IMPORT<", ">EXPORT<", "IMPORTEXPORT must be IMPORT, not \"EXPORT\"."},
        Change{">INSTANT<", "><", "SCHEDULE must be INSTANT, not \"\"."},
        Change{"<ALLOWWARNINGS>FALSE", "<ALLOWWARNINGS>0", "ALLOWWARNINGS must be true or false, not \"0\"."},
        Change{"<ALLOWTRUNCATION>FALSE", "<ALLOWTRUNCATION>", "ALLOWTRUNCATION must be true or false, not \"\"."},
        Change{"<DATATYPE>CUSTOMER</DATATYPE>", "", "REQUESTINFORMATION has no DATATYPE."},
        Change{"<IMPORTEXPORT>IMPORT</IMPORTEXPORT>", "", "REQUESTINFORMATION has no IMPORTEXPORT."},
        Change{"<SCHEDULE>INSTANT</SCHEDULE>", "", "REQUESTINFORMATION has no SCHEDULE."},
        Change{"<DATAORIGIN>AGENT</DATAORIGIN>", "", "REQUESTINFORMATION has no DATAORIGIN."},
        Change{"<DELIMITER>PIPE</DELIMITER>", "", "REQUESTINFORMATION has no DELIMITER."},
        Change{"<USERNAME>ANN AGENT</USERNAME>", "", "REQUESTINFORMATION has no USERNAME."},
        Change{"<ALLOWWARNINGS>FALSE</ALLOWWARNINGS>", "", "REQUESTINFORMATION has no ALLOWWARNINGS."},
        Change{"<ALLOWTRUNCATION>FALSE</ALLOWTRUNCATION>", "", "REQUESTINFORMATION has no ALLOWTRUNCATION."}));

std::string withBody(const std::string& body) {
  return "<S:Envelope xmlns:S=\"http://schemas.xmlsoap.org/soap/envelope/\"><S:Body>" + body + "</S:Body></S:Envelope>";
}

TEST(RequestReader, whatIsMissingOrMisplaced_isNamed) {
  const auto fault = [](const std::string& xml) { return faultText([&xml] { readRequest(xml); }); };
  EXPECT_EQ(fault("<a><b></a></b>"), "The request is not well-formed XML: Start-end tags mismatch at byte 8.");
  EXPECT_EQ(fault("<html/>"), "The request is not a SOAP envelope but the element \"html\".");
  EXPECT_EQ(fault("<S:Envelope xmlns:S=\"http://schemas.xmlsoap.org/soap/envelope/\"/>"), "Envelope has no Body.");
  EXPECT_EQ(fault(withBody("")), "Body has no element.");
  EXPECT_EQ(fault(withBody("<exportData/>")), "The service has no method \"exportData\".");
  EXPECT_EQ(fault(withBody("<importData/>")), "importData has no HXImportBean.");
  EXPECT_EQ(fault(withBody("<importData><HXImportBean/></importData>")), "HXImportBean has no REQUESTINFORMATION.");
  EXPECT_EQ(fault(withBody("<importBallastsInstant/>")), "importBallastsInstant has no PARAM_ELEMENT.");
  EXPECT_EQ(fault(withBody("<importBallastsInstant><PARAM_ELEMENT/></importBallastsInstant>")),
            "PARAM_ELEMENT has no IMPORTEXPORTWRAPPER.");
  const std::string xml = requestXml(importDataOfTwoCustomers());
  EXPECT_EQ(fault(replaced(replaced(xml, "<LINES>", "<OTHER>"), "</LINES>", "</OTHER>")), "HXImportBean has no LINES.");
}

TEST(RequestReader, anEnvelopeOfAnotherVersion_isAVersionMismatch) {
  const std::string xml =
      replaced(requestXml({}), "http://schemas.xmlsoap.org/soap/envelope/", "http://www.w3.org/2003/05/soap-envelope");
  const std::optional<Fault> fault = faultOf([&xml] { readRequest(xml); });
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), FaultCode::versionMismatch);
  EXPECT_STREQ(fault->what(), "The envelope is not of SOAP 1.1, the namespace "
                              "http://schemas.xmlsoap.org/soap/envelope/, but of "
                              "\"http://www.w3.org/2003/05/soap-envelope\".");
}

TEST(RequestReader, everyTruncation_isAClientFault) {
  for (const RequestParts& parts : {twoCustomers(), importDataOfTwoCustomers()}) {
    const std::string xml = requestXml(parts);
    for (std::size_t size = 0; size < xml.size(); ++size) {
      const std::optional<Fault> fault = faultOf([&] { readRequest(xml.substr(0, size)); });
      ASSERT_TRUE(fault) << "the first " << size << " bytes";
      ASSERT_EQ(fault->code(), FaultCode::client);
    }
  }
}

TEST(RequestReader, everyByteReplaced_isReadOrRefused) {
  const std::string xml = requestXml(twoCustomers());
  for (std::size_t at = 0; at < xml.size(); ++at)
    for (const char c : {'<', '>', '&', '"', '\0', '\xFF', 'x'}) {
      std::string broken = xml;
      broken[at] = c;
      EXPECT_NO_THROW(faultOf([&broken] { readRequest(broken); })) << "byte " << at;
    }
}

} // namespace imex::import_service::test
