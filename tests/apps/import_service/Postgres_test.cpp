#include "apps/import_service/Program.h"
#include "apps/import_service/TestStore.h"
#include "apps/import_service/requests.h"
#include "import_service/ImportService.h"
#include "support/PostgresCluster.h"
#include "support/PostgresDatabase.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include <optional>
#include <sstream>
#include <thread>

namespace imex::import_service::test {

using imex::test::PostgresCluster;
using imex::test::PostgresDatabase;
using imex::test::sharedPostgres;
using Rows = std::vector<std::vector<std::string>>;

const ImportOrigin kOrigin{"CUSTOMERAGENT", "agent1", "2024-11-21T04:15:00Z"};
const std::string kInsert = "INSERT INTO imported_row VALUES ('CUSTOMERAGENT', '[\"C1\"]', '[]', 'other', 'now')";

RequestParts customer(const std::string& code) {
  RequestParts parts;
  parts.lines = {code + "|ACME|"};
  return parts;
}

/// What is shown of a URL.
std::string shown(std::string url) {
  return replaced(std::move(url), "imex:o%70en", "***");
}

/// A service on a database of the shared server.
class PostgresTest : public testing::Test {
 protected:
  std::string send(const std::string& code, int status = 200) {
    const Answer answer = service.answer(kSecured, requestXml(customer(code)));
    EXPECT_EQ(answer.status, status) << answer.body;
    return element(answer.body, status == 200 ? "reply" : "faultstring");
  }

  std::string rowCount() { return database.run("SELECT count(*) FROM imported_row")[0][0]; }

  void waitUntilSomebodyWaits() {
    while (database.run("SELECT count(*) FROM pg_locks JOIN pg_stat_activity USING (pid)"
                        " WHERE NOT granted AND datname = current_database()")[0][0] == "0")
      std::this_thread::yield();
  }

  PostgresDatabase database{sharedPostgres()};
  Store store{StoreUrl::parse(database.url())};
  ImportService service{smallFormats(), {"agent1"}, store, [](const std::string&) {}};
};

TEST_F(PostgresTest, aRowThatChangedSinceTheImportBegan_isAConflict) {
  Store::Import first = store.begin(kOrigin);
  Store::Import second = store.begin(kOrigin);
  EXPECT_TRUE(first.storedAmong({"[\"C1\"]"}).empty());
  EXPECT_TRUE(second.storedAmong({"[\"C1\"]"}).empty());
  first.put({{"[\"C1\"]", "[1]"}});
  first.commit();
  EXPECT_TRUE(second.storedAmong({"[\"C1\"]"}).empty());
  EXPECT_THROW(second.put({{"[\"C1\"]", "[2]"}}), StoreConflict);
  EXPECT_EQ(database.run("SELECT fields FROM imported_row"), (Rows{{"[1]"}}));
}

TEST_F(PostgresTest, importsThatWaitForOneAnother_areNotStuck) {
  Store::Import first = store.begin(kOrigin);
  Store::Import second = store.begin(kOrigin);
  first.put({{"[\"C1\"]", "[1]"}});
  second.put({{"[\"C2\"]", "[2]"}});
  int conflicts = 0;
  const auto finish = [](std::optional<Store::Import> import, const std::string& key) {
    try {
      import->put({{ key, "[]" }});
      import->commit();
      return 0;
    } catch (const StoreConflict& conflict) {
      EXPECT_STREQ(conflict.what(), "deadlock detected");
      return 1;
    }
  };
  int other = 0;
  std::thread thread([&, import = std::make_shared<Store::Import>(std::move(first))]() mutable {
    other = finish(std::move(*import), "[\"C2\"]");
  });
  conflicts = finish(std::move(second), "[\"C1\"]");
  thread.join();
  EXPECT_EQ(conflicts + other, 1);
  EXPECT_EQ(rowCount(), "2");
}

TEST_F(PostgresTest, anImportThatMeetsAnother_isJudgedAnewBehindIt) {
  database.run("BEGIN");
  database.run(kInsert);
  std::string answer;
  std::thread agent([&] { answer = service.answer(kSecured, requestXml(customer("C1"))).body; });
  waitUntilSomebodyWaits();
  database.run("COMMIT");
  agent.join();
  EXPECT_EQ(element(answer, "warnings"),
            "<item>The record with Code \"C1\" is already stored and will be updated.</item>");
  EXPECT_EQ(element(answer, "reply"), "Nothing was imported: 1 of 1 line has warnings, which this import does not "
                                      "allow.");
}

TEST_F(PostgresTest, anImportThatMeetsOneThatIsGivenUp_isStored) {
  database.run("BEGIN");
  database.run(kInsert);
  std::string reply;
  std::thread agent([&] { reply = send("C1"); });
  waitUntilSomebodyWaits();
  database.run("ROLLBACK");
  agent.join();
  EXPECT_EQ(reply, "1 line imported.");
}

TEST_F(PostgresTest, anImportThatIsAlone_waitsForTheOthersAndMeetsNobody) {
  database.run("BEGIN");
  database.run(kInsert);
  std::thread agent([&] {
    Store::Import import = store.begin(kOrigin, Store::Company::alone);
    EXPECT_EQ(import.storedAmong({"[\"C1\"]"}).size(), 1U);
    EXPECT_NO_THROW(import.put({{"[\"C1\"]", "[2]"}}));
    import.commit();
  });
  waitUntilSomebodyWaits();
  database.run("COMMIT");
  agent.join();
  EXPECT_EQ(database.run("SELECT fields FROM imported_row"), (Rows{{"[2]"}}));
}

TEST_F(PostgresTest, conflictsWithoutEnd_areReportedAfterTenAttempts) {
  database.run("CREATE SEQUENCE attempts");
  database.run("CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN PERFORM nextval('attempts');"
               " RAISE 'try again' USING ERRCODE = '40001'; END $$");
  database.run("CREATE TRIGGER busy BEFORE INSERT ON imported_row FOR EACH ROW EXECUTE FUNCTION refuse()");
  EXPECT_EQ(send("C1", 500),
            "Nothing was imported: other imports were changing the same records. Send the file again.");
  EXPECT_EQ(database.run("SELECT last_value FROM attempts"), (Rows{{"10"}}));
  EXPECT_EQ(rowCount(), "0");
}

TEST_F(PostgresTest, aConnectionLostDuringACommit_isAnOutcomeThatIsNotKnown) {
  database.run("CREATE FUNCTION leave() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
               " PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NULL; END $$");
  database.run("CREATE CONSTRAINT TRIGGER leaving AFTER INSERT ON imported_row DEFERRABLE INITIALLY DEFERRED"
               " FOR EACH ROW EXECUTE FUNCTION leave()");
  const std::string fault = send("C1", 500);
  EXPECT_THAT(fault, testing::StartsWith("It is not known whether the file was imported: the store " +
                                         shown(database.url()) + " cannot be reached any more ("));
  EXPECT_THAT(fault, testing::EndsWith("). Send it again; lines that are stored are then reported as such."));
  database.run("DROP TRIGGER leaving ON imported_row");
  EXPECT_EQ(send("C1"), "1 line imported.");
}

TEST_F(PostgresTest, connectionsThatEndedWhileTheyWereKept_areReplaced) {
  {
    const Store::Import one = store.begin(kOrigin);
    const Store::Import two = store.begin(kOrigin);
  }
  database.run("SELECT pg_terminate_backend(pid, 10000) FROM pg_stat_activity WHERE pid <> pg_backend_pid()"
               " AND datname = current_database()");
  EXPECT_EQ(send("C1"), "1 line imported.");
  EXPECT_EQ(store.rowCounts().at("CUSTOMERAGENT"), 1);
}

TEST_F(PostgresTest, sixteenImports_areOpenAtOnce) {
  Store impatient(StoreUrl::parse(database.url()), std::chrono::milliseconds(1));
  std::vector<Store::Import> open;
  for (int i = 0; i < 16; ++i)
    open.push_back(impatient.begin(kOrigin));
  EXPECT_THROW(impatient.begin(kOrigin), StoreError);
  open.pop_back();
  EXPECT_NO_THROW(impatient.begin(kOrigin));
}

TEST_F(PostgresTest, textsThatWouldBeStatements_areStoredAsTheyAre) {
  const std::string text = "'); DROP TABLE imported_row; -- \\ $1 :a";
  Store::Import import = store.begin({text, text, text});
  import.put({{ text, text }});
  import.commit();
  EXPECT_EQ(database.run("SELECT * FROM imported_row"), (Rows{{text, text, text, text, text}}));
}

TEST(PostgresThatFails, isReportedAndThenUsedAgain) {
  PostgresCluster cluster;
  PostgresDatabase database(cluster);
  Store store(StoreUrl::parse(database.url()));
  ImportService service(smallFormats(), {"agent1"}, store, [](const std::string&) {});
  const auto send = [&](const std::string& code) { return service.answer(kSecured, requestXml(customer(code))); };
  EXPECT_EQ(send("C1").status, 200);

  cluster.stop();
  const Answer answer = send("C2");
  EXPECT_EQ(answer.status, 500);
  EXPECT_EQ(element(answer.body, "faultcode"), "SOAP-ENV:Server");
  EXPECT_THAT(element(answer.body, "faultstring"),
              testing::StartsWith("Nothing was imported: the store " + shown(database.url()) +
                                  " cannot be reached (connection to server at \"127.0.0.1\", port " +
                                  std::to_string(cluster.port()) + " failed: Connection refused"));
  EXPECT_EQ(service.health().status, 503);

  cluster.start();
  EXPECT_EQ(element(send("C2").body, "reply"), "1 line imported.");
  EXPECT_EQ(service.health().body, "{\"rows\":{\"CUSTOMERAGENT\":2},\"status\":\"ok\"}\n");
}

TEST(PostgresThatFails, inTheMiddleOfAnImport_storesNothing) {
  PostgresCluster cluster;
  PostgresDatabase database(cluster);
  Store store(StoreUrl::parse(database.url()));
  {
    Store::Import import = store.begin(kOrigin);
    import.put({{ "[\"C1\"]", "[]" }});
    cluster.stop();
    EXPECT_THROW(import.put({{"[\"C2\"]", "[]"}}), StoreUnreachable);
  }
  cluster.start();
  EXPECT_TRUE(store.rowCounts().empty());
}

RequestParts sampleBallasts() {
  RequestParts parts;
  parts.method = "importBallastsInstant";
  parts.space = "urn:UnsecuredImportExportService";
  parts.dataType = "BALLASTS";
  parts.dataOrigin = "HALVIK";
  parts.delimiter = "TAB";
  std::istringstream file(imex::test::readFile(kShare + "/samples/ballasts-halvik.txt"));
  for (std::string line; std::getline(file, line, '\r'); file.ignore(1))
    parts.lines.push_back(line);
  return parts;
}

TEST(PostgresProgram, severalProcesses_serveOneStore) {
  const PostgresDatabase database(sharedPostgres());
  Program first({"--app-dir", kShare, "--store", database.url()});
  Program second({"--app-dir", kShare, "--store", database.url()});
  std::vector<std::string> urls;
  for (Program* program : {&first, &second}) {
    urls.push_back(behind(program->line(), "import-service: listening on "));
    program->line();
    program->line();
    EXPECT_EQ(program->line(), "import-service: store " + shown(database.url()));
  }
  const RequestParts ballasts = sampleBallasts();
  const std::string lines = std::to_string(ballasts.lines.size());
  const auto replyOf = [&](const std::string& url) {
    const httplib::Result answer = httplib::Client(url).Post("/unsecured", requestXml(ballasts), "text/xml");
    return answer ? element(answer->body, "reply") : "no answer";
  };
  EXPECT_EQ(replyOf(urls[0]), lines + " lines imported.");
  EXPECT_EQ(replyOf(urls[1]), "Nothing was imported: " + lines + " of " + lines +
                                  " lines have warnings, which this import does not allow.");
  for (Program* program : {&first, &second}) {
    program->stop(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
  }
}

TEST(PostgresProgram, aStoreThatCannotBeUsed_endsTheStart) {
  const std::string url = sharedPostgres().url("missing");
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", url}),
            std::make_pair(74, "import-service: The store " + shown(url) +
                                   " cannot be reached (connection to server at \"127.0.0.1\", port " +
                                   std::to_string(sharedPostgres().port()) +
                                   " failed: FATAL: database \"missing\" does not exist).\n"));
  const std::string stranger = replaced(url, "o%70en", "%73ecret");
  const auto [code, text] = failure({"--app-dir", kShare, "--store", stranger});
  EXPECT_EQ(code, 74);
  EXPECT_THAT(text, testing::HasSubstr("password authentication failed for user \"imex\""));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("ecret")));
}

} // namespace imex::import_service::test
