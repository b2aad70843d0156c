#include "platform/trace/FileTraceLog.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"
#include "support/raised.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace imex::test {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class FileTraceLog : public testing::Test {
 protected:
  /// Runs `write` with a log on the file and waits until everything is written.
  template <class Write>
  void log(Write&& write) const {
    platform::FileTraceLog log(path);
    write(log);
  }

  /// The lines of a trace file without their times.
  Lines lines(std::string_view name = "trace.log") const {
    static const std::regex kTime(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\t)");
    Lines result;
    std::istringstream stream(folder.read(name));
    for (std::string line; std::getline(stream, line);) {
      std::smatch time;
      if (std::regex_search(line, time, kTime, std::regex_constants::match_continuous))
        result.push_back(time.suffix());
      else
        result.push_back("(no time) " + line);
    }
    return result;
  }

  TemporaryFolder folder;
  std::string path = folder / "trace.log";
};

} // namespace

TEST_F(FileTraceLog, entryAndExit_areALineEach) {
  log([](host::TraceLog& log) {
    log.Trace("ImExModule", "initialize()", "Entering Method...", 0);
    log.Trace("ImExModule", "initialize()", "Exiting Method...", 0);
  });
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\tinitialize()\tEntering Method...",
                            "trace\tImExModule\tinitialize()\tExiting Method..."}));
  EXPECT_EQ(folder.read("trace.log").back(), '\n');
}

TEST_F(FileTraceLog, anError_isALine) {
  log([](host::TraceLog& log) {
    log.LogError("ImExRequest", "send", RuntimeError(ErrorNumber::fileNotFound, "DiskFiles"), 0);
  });
  EXPECT_EQ(lines(), (Lines{"error\tImExRequest\tsend\tError 53 (DiskFiles): File not found"}));
}

TEST_F(FileTraceLog, anError_isInTheFileWhileTheProgramRuns) {
  using Clock = std::chrono::steady_clock;
  platform::FileTraceLog log(path);
  log.Trace("ImExRequest", "send()", "Entering Method...", 0);
  log.LogError("ImExRequest", "send", RuntimeError(ErrorNumber::fileNotFound, "DiskFiles"), 0);
  const auto deadline = Clock::now() + std::chrono::seconds(60);
  while (lines().size() < 2 && Clock::now() < deadline)
    std::this_thread::yield();
  EXPECT_EQ(lines(), (Lines{"trace\tImExRequest\tsend()\tEntering Method...",
                            "error\tImExRequest\tsend\tError 53 (DiskFiles): File not found"}));
}

TEST_F(FileTraceLog, anErrorAfterWhichTheProcedureGoesOn_isAWarning) {
  log([](host::TraceLog& log) {
    log.LogResumedError("ImExActionCtrl", "UserControl_Resize()", RuntimeError(-32768, "Host", "too small"), 0);
  });
  EXPECT_EQ(lines(), (Lines{"warning\tImExActionCtrl\tUserControl_Resize()\tError -32768 (Host): too small"}));
}

TEST_F(FileTraceLog, aFailingLine_isNamed) {
  log([](host::TraceLog& log) {
    log.LogError("ImExRequest", "send", RuntimeError(ErrorNumber::overflow, "ImEx"), 120);
    log.LogResumedError("ImExRequest", "send", RuntimeError(ErrorNumber::overflow, "ImEx"), 130);
  });
  EXPECT_EQ(lines(), (Lines{"error\tImExRequest\tsend\tError 6 (ImEx): Overflow at line 120",
                            "warning\tImExRequest\tsend\tError 6 (ImEx): Overflow at line 130"}));
}

TEST_F(FileTraceLog, controlCharacters_leaveACallOnOneLine) {
  log([](host::TraceLog& log) {
    log.Trace("a\tb", "checkFileExists(fileName = a\r\nb)", std::string("\0\x01\x1F\x7F", 4), 0);
    log.LogError("source\n", "name\r", RuntimeError(1006, "a\tb", "fault\nof the service"), 0);
  });
  EXPECT_EQ(lines(), (Lines{"trace\ta\\tb\tcheckFileExists(fileName = a\\r\\nb)\t\\x00\\x01\\x1f\\x7f",
                            "error\tsource\\n\tname\\r\tError 1006 (a\\tb): fault\\nof the service"}));
}

TEST_F(FileTraceLog, otherCharacters_areWrittenAsTheyAre) {
  log([](host::TraceLog& log) {
    log.Trace("{}", "{0} %v %n \\", "caf\u00E9 \u20AC \U0001F600 \xE9 \"quoted\"", 0);
    log.Trace("", "", "", 0);
  });
  EXPECT_EQ(lines(), (Lines{"trace\t{}\t{0} %v %n \\\tcaf\u00E9 \u20AC \U0001F600 \xE9 \"quoted\"", "trace\t\t\t"}));
}

TEST_F(FileTraceLog, aLongText_isWrittenWhole) {
  const std::string text(500'000, 'x');
  log([&](host::TraceLog& log) { log.Trace("ImExModule", text, "Entering Method...", 0); });
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\t" + text + "\tEntering Method..."}));
}

TEST_F(FileTraceLog, calls_areWrittenInTheirOrder) {
  constexpr int kCalls = 30000;
  log([](host::TraceLog& log) {
    for (int i = 0; i < kCalls; ++i)
      log.Trace("ImExModule", std::to_string(i), "Entering Method...", 0);
  });
  const Lines written = lines();
  ASSERT_EQ(written.size(), static_cast<std::size_t>(kCalls));
  for (int i = 0; i < kCalls; ++i)
    ASSERT_EQ(written[static_cast<std::size_t>(i)], "trace\tImExModule\t" + std::to_string(i) + "\tEntering Method...");
}

TEST_F(FileTraceLog, anExistingFile_isAppendedTo) {
  log([](host::TraceLog& log) { log.Trace("ImExModule", "first()", "Entering Method...", 0); });
  log([](host::TraceLog& log) { log.Trace("ImExModule", "second()", "Entering Method...", 0); });
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\tfirst()\tEntering Method...",
                            "trace\tImExModule\tsecond()\tEntering Method..."}));
}

TEST_F(FileTraceLog, aFullFile_isNumberedAndThreeOldOnesAreKept) {
  constexpr std::uintmax_t kFull = std::uintmax_t{64} * 1024 * 1024;
  folder.write("trace.log", "");
  fs::resize_file(path, kFull);
  folder.write("trace.1.log", "one");
  folder.write("trace.2.log", "two");
  folder.write("trace.3.log", "three");
  log([](host::TraceLog& log) { log.Trace("ImExModule", "Parse()", "Entering Method...", 0); });
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\tParse()\tEntering Method..."}));
  EXPECT_EQ(fs::file_size(folder / "trace.1.log"), kFull);
  EXPECT_EQ(folder.read("trace.2.log"), "one");
  EXPECT_EQ(folder.read("trace.3.log"), "two");
  EXPECT_FALSE(fs::exists(folder / "trace.4.log"));
}

TEST_F(FileTraceLog, aNewFile_isForItsOwnerAloneAndAnOldOneKeepsItsPermissions) {
  constexpr fs::perms kOwner = fs::perms::owner_read | fs::perms::owner_write;
  const auto write = [](host::TraceLog& log) { log.Trace("ImExModule", "Parse()", "Entering Method...", 0); };
  const auto permissions = [this](const char* name) { return fs::status(folder / name).permissions(); };
  log(write);
  EXPECT_EQ(permissions("trace.log"), kOwner);

  fs::permissions(path, fs::perms::group_read, fs::perm_options::add);
  log(write);
  EXPECT_EQ(permissions("trace.log"), kOwner | fs::perms::group_read);

  fs::resize_file(path, std::uintmax_t{64} * 1024 * 1024);
  log(write);
  EXPECT_EQ(permissions("trace.log"), kOwner) << "the one that follows a full one";
  EXPECT_EQ(permissions("trace.1.log"), kOwner | fs::perms::group_read);
}

TEST_F(FileTraceLog, twoLogs_writeTheirOwnFiles) {
  {
    platform::FileTraceLog first(path);
    platform::FileTraceLog second(folder / "other.log");
    first.Trace("ImExModule", "first()", "Entering Method...", 0);
    second.Trace("ImExModule", "second()", "Entering Method...", 0);
  }
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\tfirst()\tEntering Method..."}));
  EXPECT_EQ(lines("other.log"), (Lines{"trace\tImExModule\tsecond()\tEntering Method..."}));
}

TEST_F(FileTraceLog, aFileThatCannotBeOpened_isError57ThatNamesIt) {
  fs::create_directory(path);
  const std::optional<RuntimeError> error = raised([&] { platform::FileTraceLog log(path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 57);
  EXPECT_THAT(error->description(), testing::HasSubstr(path));
}

TEST_F(FileTraceLog, missingFolder_isNotMade) {
  const std::string file = folder / "none/trace.log";
  const std::optional<RuntimeError> error = raised([&] { platform::FileTraceLog log(file); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 57);
  EXPECT_EQ(error->description(), "The trace file " + file + " cannot be opened: its folder does not exist");
  EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(FileTraceLog, aPipe_isRefusedWithoutWaiting) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const std::optional<RuntimeError> error = raised([&] { platform::FileTraceLog log(path); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), "The trace file " + path + " cannot be opened: it is no regular file");
}

TEST_F(FileTraceLog, aLinkToAFile_isTheFile) {
  folder.write("real.log", "");
  path = folder.link("trace.log", "real.log");
  log([](host::TraceLog& log) { log.Trace("ImExModule", "first()", "Entering Method...", 0); });
  EXPECT_EQ(lines("real.log"), (Lines{"trace\tImExModule\tfirst()\tEntering Method..."}));
}

TEST_F(FileTraceLog, aNameAlone_isAFileOfTheCurrentDirectory) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  path = "trace.log";
  log([](host::TraceLog& log) { log.Trace("ImExModule", "first()", "Entering Method...", 0); });
  fs::current_path(before);
  EXPECT_EQ(lines(), (Lines{"trace\tImExModule\tfirst()\tEntering Method..."}));
}

TEST_F(FileTraceLog, files_areAllThatItTouches) {
  EXPECT_EQ(platform::FileTraceLog::files("/a.b/trace.log"),
            (Lines{"/a.b/trace.log", "/a.b/trace.1.log", "/a.b/trace.2.log", "/a.b/trace.3.log"}));
}

TEST_F(FileTraceLog, finished_hasEverythingAndTakesNoMore) {
  platform::FileTraceLog log(path);
  log.Trace("ImExModule", "first()", "Entering Method...", 0);
  EXPECT_EQ(log.finish(), "");
  const Lines one = {"trace\tImExModule\tfirst()\tEntering Method..."};
  EXPECT_EQ(lines(), one);
  log.Trace("ImExModule", "second()", "Entering Method...", 0);
  log.LogError("ImExRequest", "send", RuntimeError(ErrorNumber::overflow), 0);
  log.LogResumedError("ImExRequest", "send", RuntimeError(ErrorNumber::overflow), 0);
  EXPECT_EQ(log.finish(), "");
  EXPECT_EQ(lines(), one);
}

TEST_F(FileTraceLog, fullDisk_isSaidOnceAndAtTheEnd) {
  testing::internal::CaptureStderr();
  std::string failure;
  {
    platform::FileTraceLog log(path);
    const FileSizeLimit limit(4096);
    for (int i = 0; i < 1000; ++i)
      log.LogError("ImExRequest", "send", RuntimeError(ErrorNumber::overflow), 0);
    failure = log.finish();
    EXPECT_EQ(failure, log.finish());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(failure, testing::MatchesRegex("The trace file is not complete: [^\n]*" + path + ": File too large"));
}

} // namespace imex::test
