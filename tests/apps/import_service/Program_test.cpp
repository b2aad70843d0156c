#include "apps/import_service/Program.h"
#include "apps/import_service/requests.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <csignal>
#include <utility>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;

TEST(ImportServiceProgram, aStart_isAnnouncedAndASignalEndsIt) {
  const TemporaryFolder folder;
  for (const int signal : {SIGTERM, SIGINT}) {
    const std::string store = "sqlite://" + (folder / "rows.db");
    Program program({"--app-dir", kShare, "--store", store, "--user", "ann", "--user", "bob"});
    const std::string url = behind(program.line(), "import-service: listening on ");
    EXPECT_EQ(program.line(), "import-service: secured address " + url + "/secured (users: ann, bob)");
    EXPECT_EQ(program.line(), "import-service: unsecured address " + url + "/unsecured");
    EXPECT_EQ(program.line(), "import-service: store " + store);
    const httplib::Result health = httplib::Client(url).Get("/health");
    ASSERT_TRUE(health);
    EXPECT_EQ(health->status, 200);
    program.stop(signal);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
  }
}

TEST(ImportServiceProgram, whatItWasGiven_isSpelledOutOnItsLines) {
  const TemporaryFolder folder;
  const std::string odd = "\x1B[31m\n\xE2\x80\xAE";
  const std::string shown = "\\u{1B}[31m\\u{A}\\u{202E}";
  Program program({"--app-dir", kShare, "--store", "sqlite://" + (folder / odd), "--user", odd, "--user", "bob"});
  const std::string url = behind(program.line(), "import-service: listening on ");
  EXPECT_EQ(program.line(), "import-service: secured address " + url + "/secured (users: " + shown + ", bob)");
  EXPECT_EQ(program.line(), "import-service: unsecured address " + url + "/unsecured");
  EXPECT_EQ(program.line(), "import-service: store sqlite://" + (folder / shown));
  EXPECT_EQ(failure({"--app-dir", folder / odd}),
            std::make_pair(66, "import-service: " + (folder / shown) +
                                   "/docs/columns.json: Path not found (the application directory is the folder that "
                                   "holds docs)\n"));
}

TEST(ImportServiceProgram, eachRequest_isReportedOnStandardError) {
  Program program({"--app-dir", kShare, "--store", "sqlite://:memory:"});
  const std::string url = behind(program.line(), "import-service: listening on ");
  RequestParts parts;
  parts.lines = {"C1"};
  ASSERT_TRUE(httplib::Client(url).Post("/secured", requestXml(parts), "text/xml"));
  program.stop(SIGTERM);
  EXPECT_EQ(program.wait(), 0);
  EXPECT_EQ(program.errors(), "import-service: /secured: importCustomersInstant CUSTOMERAGENT, 1 line from \"agent1\": "
                              "Nothing was imported: 1 of 1 line has errors.\n");
}

TEST(ImportServiceProgram, helpAndVersion_goToStandardOutput) {
  Program help({"--help"});
  EXPECT_EQ(help.line(),
            "Takes import files over SOAP, judges their lines and stores them. For development and tests.");
  EXPECT_EQ(help.wait(), 0);
  Program version({"--version"});
  EXPECT_EQ(version.line().find("import-service "), 0U);
  EXPECT_EQ(version.wait(), 0);
}

TEST(ImportServiceProgram, aStartThatFails_hasItsExitCodeAndItsReason) {
  const TemporaryFolder folder;
  using Failure = std::pair<int, std::string>;
  EXPECT_EQ(failure({"--port", "x"}).first, 64);
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", "rows.db"}),
            Failure(64, "import-service: The store \"rows.db\" is of no database system that this program knows; give "
                        "sqlite://PATH, sqlite://:memory: or postgresql://USER@HOST/DATABASE.\n"));
  EXPECT_EQ(failure({"--app-dir", folder.path().string()}),
            Failure(66, "import-service: " + (folder / "docs/columns.json") +
                            ": Path not found (the application directory is the folder that holds docs)\n"));
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", "sqlite://:memory:", "--host", "192.0.2.1", "--port", "80"}),
            Failure(69, "import-service: Cannot listen at http://192.0.2.1:80: the address is in use or not of this "
                        "machine.\n"));
  const std::string store = "sqlite://" + (folder / "missing/rows.db");
  EXPECT_EQ(failure({"--app-dir", kShare, "--store", store}),
            Failure(74, "import-service: The store " + store +
                            " cannot be opened: Cannot establish connection to the database. unable to open database "
                            "file.\n"));
}

} // namespace imex::import_service::test
