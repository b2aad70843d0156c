#include "ProgramTest.h"

#include <filesystem>

#include <unistd.h>

namespace imex::test {
namespace {

using testing::HasSubstr;

constexpr const char* kCannotOpen = "Corvana Maintenance: Unable to open the file selected. Please try again.\n";
constexpr const char* kWrongDelimiter =
    "The file you are attempting to import is not properly delimited. It should contain 20 of your chosen delimiter "
    "in each row of the file.";
constexpr const char* kOpenInEditor = "Opening the file within the editor and saving will correct the error.";

/// A bad import file, on either road: what is said, the status, what is sent, and that the file stays as it was.
class BadFile : public RoadTest {
 protected:
  BadFile() : m_server(FaultyServer::ok(soapAnswer(acceptedLine()))) { use(m_server); }

  Ended import(std::string_view bytes, std::vector<std::string> more = {}) {
    const std::string file = folder.write("customers.txt", bytes);
    const Ended ended = importOnRoad(file, std::move(more));
    EXPECT_EQ(bytes, folder.read("customers.txt"));
    return ended;
  }

  /// The lines that arrived at the service, as XML.
  std::vector<std::string> sentLines() const {
    std::vector<std::string> lines;
    for (const FaultyServer::Request& request : m_server.requests()) {
      for (std::size_t at = request.body.find("<LINE>"); at != std::string::npos;
           at = request.body.find("<LINE>", at + 1))
        lines.push_back(request.body.substr(at + 6, request.body.find("</LINE>", at) - at - 6));
    }
    return lines;
  }

  /// As importOnRoad(), by a user who is not the superuser, to whom no file is closed. What that user needs to reach is
  /// copied into the test's folder.
  Ended importWithoutPrivileges(const std::string& file) {
    if (::geteuid() != 0)
      return importOnRoad(file);
    std::filesystem::create_directories(folder / "app");
    std::filesystem::copy(IMEX_SOURCE_DIR "/share/docs", folder / "app/docs", std::filesystem::copy_options::recursive);
    std::filesystem::copy(IMEX_PROGRAM, folder / "imex");
    // A program that counts what runs writes its counters there; the folders of the build are not that user's.
    std::filesystem::create_directories(folder / "counters");
    std::filesystem::permissions(folder / "counters", std::filesystem::perms(0777));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    return run("/usr/bin/setpriv",
               {"--reuid=65534", "--regid=65534", "--clear-groups", folder / "imex", "--app-dir", folder / "app",
                "--secured", secured, "import", file, "--type", "CUSTOMER", "--origin", "AGENT", "--road", GetParam()},
               {"GCOV_PREFIX=" + (folder / "counters")});
  }

  bool isAnythingSent() const { return !m_server.requests().empty(); }

 private:
  FaultyServer m_server;
};

TEST_P(BadFile, missing_isNamed) {
  const std::string file = folder / "none.txt";
  const Ended ended = importOnRoad(file);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + ("imex: " + file) + ": File not found (error 53)\n", ended.err);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, folder_isNamed) {
  const std::string file = folder / "a.folder";
  std::filesystem::create_directory(file);
  const Ended ended = importOnRoad(file);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + ("imex: " + file) + ": Path/File access error (error 75)\n", ended.err);
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, missingFolder_isNamed) {
  const std::string file = folder / "none/none.txt";
  const Ended ended = importOnRoad(file);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + ("imex: " + file) + ": Path not found (error 76)\n", ended.err);
}

TEST_P(BadFile, withoutAccess_isNamed) {
  const std::string file = folder.write("secret.txt", customer("C1"));
  std::filesystem::permissions(file, std::filesystem::perms::none);
  const Ended ended = importWithoutPrivileges(file);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + ("imex: " + file) + ": Permission denied (error 70)\n", ended.err);
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, empty_sendsNoLines) {
  EXPECT_EQ(0, import("").status);
  EXPECT_TRUE(isAnythingSent());
  EXPECT_EQ(std::vector<std::string>{}, sentLines());
}

TEST_P(BadFile, longestFile_isSent) {
  std::string bytes;
  for (int i = 1; i <= 32767; ++i)
    bytes += customer("C" + std::to_string(i)) + "\r\n";
  EXPECT_EQ(0, import(bytes).status);
  EXPECT_EQ(32767U, sentLines().size());
}

TEST_P(BadFile, oneLineTooMany_isRefused) {
  std::string bytes;
  for (int i = 1; i <= 32768; ++i)
    bytes += customer("C" + std::to_string(i)) + "\r\n";
  const Ended ended = import(bytes);
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Corvana Maintenance: The file you are attempting to edit exceeds the maximum size of lines (32,767). "
            "Please edit the file and try again.\n",
            ended.err);
  EXPECT_EQ("Outcome: refused\n", ended.out);
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, lineTooLongToSplit_isShownAndLeftToTheService) {
  const std::string line = customer("C1", std::string(40000, 'n'));
  const Ended ended = import(line + "\r\n");
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("Error Number: 6 - Overflow: Unable to validate the format of the file being imported.\n", ended.err);
  EXPECT_EQ(1U, sentLines().size());
}

TEST_P(BadFile, wrongDelimiter_isAQuestion) {
  const Ended ended = import(customer("C1", "Firm", "|") + "\r\n");
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ(std::string("Corvana Maintenance: ") + kWrongDelimiter + "\r\n" + kOpenInEditor +
                "\r\n\r\n Would you like to correct the file? No\n",
            ended.err);
  EXPECT_EQ(std::string("Line 1: failed\n  Error:     ") + kWrongDelimiter + "\n             " + kOpenInEditor +
                "\nOutcome: refused\n",
            ended.out);
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, pipe_isTakenWhenAskedFor) {
  EXPECT_EQ(0, import(customer("C1", "Firm", "|") + "\r\n", {"--delimiter", "Pipe"}).status);
  EXPECT_EQ((std::vector<std::string>{"C1|FIRM|12 MAIN STREET|||COLUMBUS|OH|43004|||614-555-0100||A||||||||"}),
            sentLines());
}

TEST_P(BadFile, lineFeedsAlone_makeOneLineOfTheFile) {
  const Ended ended = import(customer("C1") + "\n" + customer("C2") + "\n");
  EXPECT_EQ(2, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(kWrongDelimiter));
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, windows1252_arrivesAsUtf8) {
  EXPECT_EQ(0, import(customer("C1", "Caf\xE9 \x80") + "\r\n").status);
  const auto lines = sentLines();
  ASSERT_EQ(1U, lines.size());
  EXPECT_THAT(lines[0], HasSubstr("CAFÉ €"));
}

TEST_P(BadFile, utf8Mark_isNoPartOfTheFirstField) {
  EXPECT_EQ(0, import("\xEF\xBB\xBF" + customer("C1", "Café") + "\r\n").status);
  const auto lines = sentLines();
  ASSERT_EQ(1U, lines.size());
  EXPECT_TRUE(lines[0].starts_with("C1"));
  EXPECT_THAT(lines[0], HasSubstr("CAFÉ"));
}

TEST_P(BadFile, controlCharacterThatXmlCannotCarry_isSaidAndNothingSent) {
  const Ended ended = import(customer("C1") + "\r\n" + customer("C2", "Fi\x01rm") + "\r\n");
  EXPECT_EQ(GetParam() == "send" ? 3 : 66, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("U+0001"));
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, underTheNameOfTheResultsPage_isNotReplaced) {
  const std::string bytes = customer("C1") + "\r\n";
  const std::string file = folder.write("validationresults.html", bytes);
  const Ended ended = importOnRoad(file);
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("imex: The server responded, but the results could not be displayed.\nimex: " + file +
                ": Path/File access error (error 75)\n",
            ended.err);
  EXPECT_EQ(bytes, folder.read("validationresults.html"));
}

TEST_P(BadFile, besideALinkUnderTheNameOfTheResultsPage_leavesWhatItLeadsTo) {
  folder.write("precious.txt", "text");
  const std::string page = folder.link("validationresults.html", "precious.txt");
  const Ended ended = importOnRoad(folder.write("import.txt", customer("C1") + "\r\n"));
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("imex: The server responded, but the results could not be displayed.\nimex: " + page +
                ": Path/File access error (error 75)\n",
            ended.err);
  EXPECT_EQ("text", folder.read("precious.txt"));
}

TEST_P(BadFile, behindALink_isTheFileThatTheSystemMeans) {
  folder.write("there/inner/x", "");
  folder.write("there/file.txt", customer("C1") + "\r\n");
  folder.write("file.txt", "too few\r\n");
  std::filesystem::create_directory_symlink(folder / "there/inner", folder / "link");
  EXPECT_EQ(0, importOnRoad(folder / "link/../file.txt").status);
}

TEST_P(BadFile, answeredYes_isStillNotSent) {
  const Ended ended = import("too few\r\n", {"--yes"});
  EXPECT_EQ(2, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("Would you like to correct the file? Yes\n"));
  EXPECT_FALSE(isAnythingSent());
}

TEST_P(BadFile, relativePath_isThatOfTheCaller) {
  folder.write("customers.txt", customer("C1") + "\r\n");
  std::filesystem::current_path(folder.path());
  std::filesystem::create_directories(folder / "cache/corvana/temp");
  const Ended ended = importOnRoad("customers.txt");
  EXPECT_EQ(0, ended.status) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("Report:  " + (folder / "validationresults.html")));
}

TEST_P(BadFile, namedInAnotherCase_hasTheReportThatIsOnTheDisk) {
  folder.write("Inner/customers.txt", customer("C1") + "\r\n");
  for (const char* name : {"INNER/Customers.TXT", "inner\\customers.txt"}) {
    const Ended ended = importOnRoad(folder / name);
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("Report:  " + (folder / "Inner/validationresults.html") + "\n")) << name;
  }
  EXPECT_TRUE(std::filesystem::exists(folder / "Inner/validationresults.html"));
}

INSTANTIATE_TEST_SUITE_P(imex, BadFile, testing::Values("send", "instant"),
                         [](const auto& road) { return road.param; });

/// A name may hold what a terminal obeys.
TEST_F(ProgramTest, controlCharactersInAFileNameAreSpeltOut) {
  const Ended ended = imex({"check", folder / "a\x1b[2J\u009b.txt", "--type", "CUSTOMER", "--origin", "AGENT"});
  EXPECT_EQ(66, ended.status);
  EXPECT_THAT(ended.err, HasSubstr((folder / "a\\x1b[2J\\x9b.txt") + ": File not found"));
  EXPECT_THAT(ended.err + ended.out, testing::Not(testing::AnyOf(HasSubstr("\x1b"), HasSubstr("\u009b"))));
}

TEST_F(ProgramTest, whatIsNoTextInAFileNameIsSpeltOut) {
  const Ended ended = imex({"check", folder / "a\xff\u202e\xe2\x80", "--type", "CUSTOMER", "--origin", "AGENT"});
  EXPECT_EQ(66, ended.status);
  EXPECT_THAT(ended.err, HasSubstr((folder / "a\\xff\\u202e\\xe2\\x80") + ": File not found"));
}

} // namespace
} // namespace imex::test
