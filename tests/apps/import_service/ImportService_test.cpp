#include "import_service/ImportService.h"

#include "apps/import_service/Sqlite.h"
#include "apps/import_service/requests.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;
using Rows = std::vector<std::vector<std::string>>;
using Texts = std::vector<std::string>;

class ImportServiceTest : public testing::Test {
 protected:
  std::string send(const RequestParts& parts, const Endpoint& endpoint = kSecured, int status = 200) {
    const Answer answer = service.answer(endpoint, requestXml(parts));
    EXPECT_EQ(answer.status, status) << answer.body;
    return answer.body;
  }

  Rows rows() { return Sqlite(path).run("SELECT format_key, row_key, fields, imported_by FROM imported_row"); }

  static RequestParts customers(Texts lines) {
    RequestParts parts;
    parts.lines = std::move(lines);
    return parts;
  }

  TemporaryFolder folder;
  std::string path = folder / "rows.db";
  Store store{StoreUrl::parse("sqlite://" + path)};
  Texts log;
  ImportService service{smallFormats(), {"agent1"}, store, [this](const std::string& line) { log.push_back(line); }};
};

TEST_F(ImportServiceTest, goodLines_areStoredAndReportedAsSuccessful) {
  const std::string answer = send(customers({"C1|ACME|", "C2|B|5"}));
  EXPECT_EQ(element(answer, "reply"), "2 lines imported.");
  EXPECT_EQ(elements(answer, "isIuccessful"), (Texts{"true", "true"}));
  EXPECT_EQ(elements(answer, "line"), (Texts{"C1|ACME|", "C2|B|5"}));
  EXPECT_EQ(elements(answer, "lineNumber"), (Texts{"1", "2"}));
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", R"(["C1"])", R"(["C1","ACME",""])", "agent1"},
                          {"CUSTOMERAGENT", R"(["C2"])", R"(["C2","B","5"])", "agent1"}}));
  EXPECT_EQ(log, Texts{"/secured: importCustomersInstant CUSTOMERAGENT, 2 lines from \"agent1\": 2 lines imported."});
}

TEST_F(ImportServiceTest, theTime_isStoredInUtc) {
  send(customers({"C1|ACME|"}));
  const Rows times = Sqlite(path).run("SELECT imported_at FROM imported_row");
  ASSERT_EQ(times.size(), 1U);
  EXPECT_THAT(times[0][0], testing::MatchesRegex("20[0-9]{2}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
}

TEST_F(ImportServiceTest, oneBadLine_keepsTheWholeFileOut) {
  const std::string answer = send(customers({"C1|ACME|", "C2||", "C3|C|"}));
  EXPECT_EQ(element(answer, "reply"), "Nothing was imported: 1 of 3 lines has errors.");
  EXPECT_EQ(element(answer, "hasErrors"), "true");
  EXPECT_EQ(elements(answer, "isIuccessful"), (Texts{"false", "false", "false"}));
  EXPECT_EQ(elements(answer, "errors"), (Texts{"", "<item>Name is required but is empty.</item>", ""}));
  EXPECT_EQ(rows(), Rows{});
}

TEST_F(ImportServiceTest, aRowThatIsStored_isUpdatedOnlyWhereWarningsAreAllowed) {
  send(customers({"C1|ACME|"}));
  RequestParts again = customers({"C1|NEW|", "C2|B|"});
  const std::string warning = "<item>The record with Code \"C1\" is already stored and will be updated.</item>";
  const std::string refused = send(again);
  EXPECT_EQ(element(refused, "reply"),
            "Nothing was imported: 1 of 2 lines has warnings, which this import does not allow.");
  EXPECT_EQ(elements(refused, "warnings"), (Texts{warning, ""}));
  EXPECT_EQ(elements(refused, "isIuccessful"), (Texts{"false", "false"}));
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", R"(["C1"])", R"(["C1","ACME",""])", "agent1"}}));

  again.allowWarnings = "TRUE";
  const std::string accepted = send(again);
  EXPECT_EQ(element(accepted, "reply"), "2 lines imported, 1 of them with warnings.");
  EXPECT_EQ(element(accepted, "hasWarnings"), "true");
  EXPECT_EQ(elements(accepted, "warnings"), (Texts{warning, ""}));
  EXPECT_EQ(elements(accepted, "isIuccessful"), (Texts{"true", "true"}));
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", R"(["C1"])", R"(["C1","NEW",""])", "agent1"},
                          {"CUSTOMERAGENT", R"(["C2"])", R"(["C2","B",""])", "agent1"}}));
}

TEST_F(ImportServiceTest, aValueThatIsCut_isStoredCutAndReportedWhole) {
  RequestParts parts = customers({"C1|A NAME TOO LONG|"});
  parts.allowTruncation = "TRUE";
  parts.allowWarnings = "TRUE";
  const std::string answer = send(parts);
  EXPECT_EQ(element(answer, "line"), "C1|A NAME TOO LONG|");
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", R"(["C1"])", R"(["C1","A NAME TOO",""])", "agent1"}}));
}

TEST_F(ImportServiceTest, importData_takesTheSameLines) {
  RequestParts parts = customers({"C1\tACME\t"});
  parts.method = "importData";
  parts.delimiter = "TAB";
  parts.allowWarnings = "false";
  parts.allowTruncation = "false";
  const std::string answer = send(parts);
  EXPECT_NE(answer.find("<ns1:importDataResponse xmlns:ns1=\"urn:ImportExportService\"><return>"), std::string::npos);
  EXPECT_EQ(element(answer, "reply"), "1 line imported.");
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", R"(["C1"])", R"(["C1","ACME",""])", "agent1"}}));
}

TEST_F(ImportServiceTest, ballasts_areTakenFromAnybodyAtTheUnsecuredAddress) {
  RequestParts parts;
  parts.method = "importBallastsInstant";
  parts.space = "urn:UnsecuredImportExportService";
  parts.dataType = "BALLASTS";
  parts.dataOrigin = "HALVIK";
  parts.userId = "";
  parts.lines = {"B1"};
  EXPECT_EQ(element(send(parts, kUnsecured), "reply"), "1 line imported.");
  parts.method = "importData";
  parts.userId = "somebody";
  parts.lines = {"B2"};
  EXPECT_EQ(element(send(parts, kUnsecured), "reply"), "1 line imported.");
  EXPECT_EQ(rows(), (Rows{{"BALLASTSHALVIK", R"(["B1"])", R"(["B1"])", "ANN AGENT"},
                          {"BALLASTSHALVIK", R"(["B2"])", R"(["B2"])", "somebody"}}));
}

TEST_F(ImportServiceTest, noLines_areAnsweredAndStoreNothing) {
  const std::string answer = send(customers({}));
  EXPECT_EQ(element(answer, "reply"), "Nothing was imported: no lines were sent.");
  EXPECT_EQ(element(answer, "hasErrors"), "false");
  EXPECT_EQ(element(answer, "importExportResultBean"), "");
}

TEST_F(ImportServiceTest, aRequestThatIsWrong_isAClientFault) {
  RequestParts parts = customers({"C1|ACME|"});
  parts.userId = "stranger";
  const std::string answer = send(parts, kSecured, 500);
  EXPECT_EQ(element(answer, "faultcode"), "SOAP-ENV:Client");
  EXPECT_EQ(element(answer, "faultstring"), "The user \"stranger\" is not known.");
  EXPECT_EQ(log, Texts{"/secured: refused: The user \"stranger\" is not known."});
  EXPECT_EQ(rows(), Rows{});
}

TEST_F(ImportServiceTest, controlCharactersOfARequest_areSpelledOutInTheLog) {
  RequestParts parts = customers({"C1|ACME|"});
  parts.userId = "a\n/secured: \x7F\xE2\x80\xAE\tb";
  send(parts, kSecured, 500);
  EXPECT_EQ(log, Texts{R"(/secured: refused: The user "a\u{A}/secured: \u{7F}\u{202E}\u{9}b" is not known.)"});
}

TEST_F(ImportServiceTest, aLongNameInARequest_isShownInPartOnly) {
  const std::string name(100'000, 'n');
  const std::string xml = replaced(requestXml(customers({"C1|ACME|"})), "<LINES>", "<LINES><" + name + "/>");
  const std::string shown = "LINES holds the element " + std::string(40, 'n') + "... where only LINE is expected.";
  EXPECT_EQ(element(service.answer(kSecured, xml).body, "faultstring"), shown);
  EXPECT_EQ(log, Texts{"/secured: refused: " + shown});
}

TEST_F(ImportServiceTest, moreVerdictsThanCanBeReported_areAFault) {
  const RequestParts parts = customers({"||", "||"});
  constexpr std::size_t kTexts = 4 * std::string_view("Code is required but is empty.").size();
  for (const std::size_t limit : {kTexts - 1, kTexts, kTexts + 1}) {
    ImportService limited(
        smallFormats(), {"agent1"}, store, [](const std::string&) {}, limit);
    const Answer answer = limited.answer(kSecured, requestXml(parts));
    EXPECT_EQ(answer.status, limit < kTexts ? 500 : 200) << limit;
    if (limit < kTexts) {
      EXPECT_EQ(element(answer.body, "faultstring"),
                "The file has more errors and warnings than can be reported, and nothing was imported.");
    }
  }
}

TEST_F(ImportServiceTest, aFormatThatDoesNotExist_isAClientFault) {
  RequestParts parts = customers({"C1|ACME|"});
  parts.dataOrigin = "HALVIK";
  EXPECT_EQ(element(send(parts, kSecured, 500), "faultstring"),
            "There is no format for the data type \"CUSTOMER\" and the data origin \"HALVIK\".");
  parts.method = "importData";
  parts.dataType = "customer";
  parts.dataOrigin = "AGENT";
  EXPECT_EQ(element(send(parts, kSecured, 500), "faultstring"),
            "There is no format for the data type \"customer\" and the data origin \"AGENT\".");
}

TEST_F(ImportServiceTest, whatIsNoXml_isAClientFault) {
  const Answer answer = service.answer(kSecured, "hello");
  EXPECT_EQ(answer.status, 500);
  EXPECT_EQ(element(answer.body, "faultcode"), "SOAP-ENV:Client");
}

TEST_F(ImportServiceTest, aStoreThatFails_isAServerFaultAndStoresNothing) {
  Sqlite(path).run("CREATE TRIGGER full BEFORE INSERT ON imported_row WHEN NEW.row_key = '[\"C2\"]'"
                   " BEGIN SELECT RAISE(ABORT, 'no room'); END");
  const std::string answer = send(customers({"C1|ACME|", "C2|B|"}), kSecured, 500);
  EXPECT_EQ(element(answer, "faultcode"), "SOAP-ENV:Server");
  EXPECT_EQ(element(answer, "faultstring"), "Nothing was imported: the store failed (no room).");
  EXPECT_EQ(log, Texts{"/secured: refused: Nothing was imported: the store failed (no room)."});
  EXPECT_EQ(rows(), Rows{});
  EXPECT_EQ(element(send(customers({"C1|ACME|"})), "reply"), "1 line imported.");
}

TEST_F(ImportServiceTest, health_countsTheRows) {
  EXPECT_EQ(service.health().body, "{\"rows\":{},\"status\":\"ok\"}\n");
  send(customers({"C1|ACME|", "C2|B|"}));
  const Answer answer = service.health();
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "{\"rows\":{\"CUSTOMERAGENT\":2},\"status\":\"ok\"}\n");
}

TEST_F(ImportServiceTest, health_failsWithTheStore) {
  Sqlite(path).run("DROP TABLE imported_row");
  const Answer answer = service.health();
  EXPECT_EQ(answer.status, 503);
  EXPECT_NE(answer.body.find("no such table: imported_row"), std::string::npos) << answer.body;
  EXPECT_NE(answer.body.find("\"status\":\"failed\""), std::string::npos) << answer.body;
}

TEST_F(ImportServiceTest, asManyLinesAsTheEditorTakes_areStored) {
  RequestParts parts;
  for (int i = 0; i < 32'767; ++i) {
    std::string code(4, '0');
    for (int digit = 3, rest = i; digit >= 0; --digit, rest /= 36)
      code[static_cast<std::size_t>(digit)] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[rest % 36];
    parts.lines.push_back(code + "|ACME|" + std::to_string(i));
  }
  const std::string answer = send(parts);
  EXPECT_EQ(element(answer, "reply"), "32767 lines imported.");
  EXPECT_EQ(elements(answer, "lineNumber").back(), "32767");
  EXPECT_EQ(store.rowCounts().at("CUSTOMERAGENT"), 32'767);
}

} // namespace imex::import_service::test
