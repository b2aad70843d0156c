#include "ConsoleHost.h"
#include "ProgramTest.h"
#include "host/Services.h"
#include "host/TraceLog.h"
#include "support/FileSizeLimit.h"

#include <filesystem>

#include <sys/stat.h>

namespace imex::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// What the caller of the program may have broken before it runs: the current directory, the standard streams, the
/// place of the trace file.
class Surroundings : public ProgramTest {
 protected:
  /// In a folder that is gone.
  Ended inGoneFolder(const std::vector<std::string>& arguments) const {
    return imexInShell("mkdir '" + (folder / "gone") + "' && cd '" + (folder / "gone") + "' && rmdir '" +
                           (folder / "gone") + "' && exec \"$@\"",
                       arguments);
  }

  Ended checkCustomers(const std::string& file, std::vector<std::string> more = {}) const {
    return imex(checking(file, std::move(more)));
  }

  static std::vector<std::string> checking(const std::string& file, std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"check", file, "--type", "CUSTOMER", "--origin", "AGENT"});
    return more;
  }

  std::string m_trace = folder / "trace.log";
};

TEST_F(Surroundings, goneDirectory_isSaidWithTheRelativePath) {
  const struct {
    std::vector<std::string> arguments;
    std::string path;
  } cases[] = {{checking("f.txt"), "f.txt"},
               {{"formats", "--app-dir", "share"}, "share"},
               {{"formats", "--trace", "t.log"}, "t.log"}};
  for (const auto& [arguments, path] : cases) {
    const Ended ended = inGoneFolder(arguments);
    EXPECT_EQ(66, ended.status) << path;
    EXPECT_EQ("imex: " + path + ": the current directory cannot be found: No such file or directory\n", ended.err);
    EXPECT_EQ("", ended.out);
  }
}

TEST_F(Surroundings, goneDirectory_isNoMatterForPathsInFull) {
  const Ended ended = inGoneFolder(checking(folder.write("f.txt", customer("C1"))));
  EXPECT_EQ(0, ended.status) << ended.err;
  EXPECT_EQ("Outcome: accepted\n", ended.out);
}

/// What the trace may not be written to, as `--trace` names it.
TEST_F(Surroundings, traceInThePlaceOfAnotherFile_isRefused) {
  const std::string bytes = customer("C1") + "\r\n";
  const std::string file = folder.write("f.txt", bytes);
  const std::string ini = folder.write("imex.ini", "[user]\nname = Ann\n");
  std::filesystem::create_hard_link(file, folder / "hard.txt");
  const struct {
    std::string trace;
    std::string at; ///< which of the trace's files stands in the other's place
    std::string what;
  } cases[] = {{file, file, "import file"},
               {folder.link("link.txt", "f.txt"), folder / "link.txt", "import file"},
               {folder / "hard.txt", folder / "hard.txt", "import file"},
               {folder / "validationresults.html", folder / "validationresults.html", "results page"},
               {folder / "ValidationResults.HTML", folder / "ValidationResults.HTML", "results page"},
               {ini, ini, "INI file"}};
  for (const auto& [trace, at, what] : cases) {
    const Ended ended = checkCustomers(file, {"--config", ini, "--trace", trace});
    EXPECT_EQ(64, ended.status) << trace;
    EXPECT_EQ("imex: the trace cannot be written to the " + what + ": " + at + "\nTry \"imex --help\".\n", ended.err);
    EXPECT_EQ("", ended.out);
  }
  EXPECT_EQ(bytes, folder.read("f.txt"));
  EXPECT_EQ("[user]\nname = Ann\n", folder.read("imex.ini"));
  EXPECT_FALSE(std::filesystem::exists(folder / "validationresults.html"));
}

TEST_F(Surroundings, importFileUnderTheNameOfAnOldTrace_isNotReplaced) {
  const std::string file = folder.write("trace.3.log", customer("C1"));
  const Ended ended = checkCustomers(file, {"--trace", m_trace});
  EXPECT_EQ(64, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("the trace cannot be written to the import file: " + file));
  EXPECT_FALSE(std::filesystem::exists(m_trace));
}

TEST_F(Surroundings, traceBesideTheImportFile_isTaken) {
  EXPECT_EQ(0, checkCustomers(folder.write("f.txt", customer("C1")), {"--trace", m_trace}).status);
  EXPECT_THAT(folder.read("trace.log"), HasSubstr("checkFileForEdit"));
}

TEST_F(Surroundings, closedOutput_getsNoResultsIntoTheTrace) {
  const std::string file = folder.write("f.txt", customer("C1", ""));
  const Ended ended = imexInShell("exec \"$@\" >&-", checking(file, {"--trace", m_trace}));
  EXPECT_EQ(74, ended.status);
  EXPECT_EQ("imex: the results cannot be written to standard output\n", ended.err);
  EXPECT_THAT(folder.read("trace.log"), Not(HasSubstr("Outcome")));
}

TEST_F(Surroundings, closedErrors_getNoMessageIntoTheTrace) {
  const Ended ended = imexInShell("exec \"$@\" <&- 2>&-", checking(folder / "none.txt", {"--trace", m_trace}));
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
  EXPECT_THAT(folder.read("trace.log"), Not(HasSubstr("imex: ")));
}

TEST_F(Surroundings, missingFolderOfTheTrace_isNotMade) {
  const std::string trace = folder / "none/trace.log";
  const Ended ended = imex({"formats", "--trace", trace});
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("imex: The trace file " + trace + " cannot be opened: its folder does not exist\n", ended.err);
  EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST_F(Surroundings, pipeInPlaceOfTheTrace_isRefused) {
  ASSERT_EQ(0, ::mkfifo(m_trace.c_str(), 0600));
  const Ended ended = imex({"formats", "--trace", m_trace});
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("imex: The trace file " + m_trace + " cannot be opened: it is no regular file\n", ended.err);
}

TEST_F(Surroundings, fullDiskOfTheTrace_isOneLine) {
  testing::internal::CaptureStderr();
  {
    cli::Options options;
    options.traceFile = m_trace;
    const FileSizeLimit limit(4096);
    const cli::ConsoleHost host(options);
    for (int i = 0; i < 1000; ++i)
      host::traceLog()->Trace("Test", "fill()", "Entering Method...", 0);
  }
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::MatchesRegex("imex: The trace file is not complete: [^\n]*" + m_trace + ": File too large\n"));
}

} // namespace
} // namespace imex::test
