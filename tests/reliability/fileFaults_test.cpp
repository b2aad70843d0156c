#include "FailingCall.h"
#include "Import.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <tuple>

namespace imex::test {
namespace {

struct Fault {
  std::string name;
  ErrorNumber error;
};
std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
  return stream << fault.name;
}

const std::vector<Fault> kFaults = {{"noAccess", ErrorNumber::permissionDenied},
                                    {"diskFull", ErrorNumber::diskFull},
                                    {"interrupted", ErrorNumber::deviceIoError},
                                    {"gone", ErrorNumber::fileNotFound}};

/// How many calls each way makes of the file system.
const std::map<std::string, std::size_t> kFileCalls = {
    {"send", 21}, {"instant", 21}, {"lineItems", 8}, {"badLineItems", 8}, {"correction", 15}};

/// Every file call of every way, failed once with every fault.
class FileFaults : public testing::TestWithParam<std::tuple<Way, Fault>> {
 protected:
  using Calls = std::vector<FailingCall::Call>;

  /// What the texts promise for a fault there. `golden` is what comes of the import without one.
  Texts promised(std::ptrdiff_t opening, const Texts& golden) const {
    if (opening == 0) { // the page: the verdict is shown all the same
      Texts result = withoutPage(golden);
      result.insert(result.begin() + 1, kPageFailed);
      return result;
    }
    if (way.call == Way::Call::projectItems)
      return {opening == 1 ? unreadableBox(48) : failureBox(), "returned nothing"};
    if (opening > 2) // the editor's check, behind the question
      return {golden.front(), unreadableBox(48)};
    return {opening == 1 ? unreadableBox(64) : kUnreadableEvent};
  }

  std::string failureBox() const {
    return "box 48 " + errorTitle(fault.error) + ": The requested operation could not be completed.";
  }

  /// What stands in the page's place where the last of these calls failed: the page of the import before, untouched, or
  /// as much of the new one as was written.
  static std::string promisedPage(const Calls& calls, const Import& trial, const std::string& page) {
    constexpr std::size_t kPiece = 64UL * 1024; // that is written at once
    const auto count = [&](std::string_view name) {
      return std::count_if(calls.begin(), calls.end(), [&](const auto& call) { return call.name == name; });
    };
    if (calls.back().path != trial.pagePath() || calls.back().name == "isSameFile" ||
        calls.back().name == "openForOutput")
      return trial.oldPage;
    const auto written = static_cast<std::size_t>(count("write") - (calls.back().name == "write" ? 1 : 0));
    return calls.back().name == "close" ? page : page.substr(0, written * kPiece);
  }

  const Way way = std::get<0>(GetParam());
  const Fault fault = std::get<1>(GetParam());
};

TEST_P(FileFaults, eachCallFailedOnce_endsAsTheTextsSay_andTheNextImportIsRight) {
  Import trial(way);
  const Texts golden = trial.run();
  ASSERT_EQ(Texts{}, trial.errors);
  const std::string page = trial.page();
  trial.oldPage = page + page + "of the import before"; // which would show behind a new one that is not cut at its end
  std::size_t number = 1;
  for (bool isReached = true; isReached; ++number) {
    Texts result;
    Calls calls;
    {
      const FailingCall failing(trial.host.files, number, fault.error);
      result = trial.run();
      isReached = failing.wasReached();
      calls = failing.calls();
    }
    SCOPED_TRACE("call " + std::to_string(number) + " of " + calls.back().name + ' ' + calls.back().path);
    EXPECT_EQ(isReached ? promised(openingOf(calls, trial.path()), golden) : withoutPage(golden), withoutPage(result));
    if (isReached) {
      const std::string left = readFile(trial.pagePath());
      EXPECT_TRUE(promisedPage(calls, trial, page) == left) << left.size() << " bytes are left of the page";
    }
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }
  EXPECT_EQ(kFileCalls.at(way.name), number - 2);
  std::cout << "fault points: " << number - 2 << '\n';
}

INSTANTIATE_TEST_SUITE_P(, FileFaults, testing::Combine(testing::ValuesIn(ways()), testing::ValuesIn(kFaults)),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + "_" + std::get<1>(test.param).name;
                         });

/// Every file call of the start, failed once with every fault.
class StartFaults : public testing::TestWithParam<Fault> {
 protected:
  /// The working directory may be missing; anything else is told, with the file that was being read.
  Texts promised(const FailingCall::Call& failed) const {
    if (failed.name == "changeDirectory" || failed.name == "makeDirectory")
      return {};
    return {"box 48 " + errorTitle(GetParam().error) + ": An error was encountered while attempting read dat file (" +
            failed.path +
            ").\r\nSome file types will not be editable. Please contact production support to have this " +
            "corrected."};
  }
};

TEST_P(StartFaults, eachCallFailedOnce_endsAsTheTextsSay_andTheNextStartIsRight) {
  constexpr std::size_t kCalls = 2 + 9 * 5; // the working directory, and the nine formats
  Import trial(shortWays().front());
  const Texts golden = trial.run();
  std::size_t number = 1;
  for (bool isReached = true; isReached; ++number) {
    Texts boxes;
    FailingCall::Call last;
    {
      const FailingCall failing(trial.host.files, number, GetParam().error);
      boxes = trial.restart();
      isReached = failing.wasReached();
      last = failing.calls().back();
    }
    SCOPED_TRACE("call " + std::to_string(number) + " of " + last.name + ' ' + last.path);
    EXPECT_EQ(isReached ? promised(last) : Texts{}, boxes);
    EXPECT_EQ(boxes.size(), trial.errors.size());
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(Texts{}, trial.restart());
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }
  EXPECT_EQ(kCalls, number - 2);
  std::cout << "fault points: " << number - 2 << '\n';
}

INSTANTIATE_TEST_SUITE_P(, StartFaults, testing::ValuesIn(kFaults), [](const auto& test) { return test.param.name; });

/// The import file becomes shorter under the hands of its reader: inside a line, or by whole lines.
class LengthFaults : public testing::TestWithParam<std::tuple<Way, bool>> {
 protected:
  static constexpr std::string_view kAfterLine = "</LINE>";

  static std::string beginningOf(const Way& way, bool isInsideALine) {
    constexpr std::size_t kMissing = 20; // characters of the line, several fields
    const std::size_t end = way.file.rfind("\r\n", way.file.size() / 2);
    const std::size_t behindALine = (end == std::string::npos ? way.file.find("\r\n") : end) + 2;
    return way.file.substr(0, isInsideALine ? behindALine - kMissing : behindALine);
  }

  /// How many lines there are, a begun one too.
  static std::size_t linesIn(const std::string& bytes) {
    std::size_t count = bytes.ends_with("\r\n") ? 0 : 1;
    for (std::size_t at = bytes.find("\r\n"); at != std::string::npos; at = bytes.find("\r\n", at + 2))
      ++count;
    return count;
  }

  /// Nothing was sent, and the user is asked about the line that has not all of its fields.
  Texts refused() const {
    return {"box 36 Corvana Maintenance: The file you are attempting to import is not properly delimited. It should "
            "contain 13 of your chosen delimiter in each row of the file.\r\nOpening the file within the editor and "
            "saving will correct the error.\r\n\r\n Would you like to correct the file?",
            "editImportFile File format incorrect. " + std::to_string(linesIn(shorter.file)) + " 13 13 124"};
  }

  /// Nothing was returned, and the user hears why.
  static Texts halted() {
    return {"box 48 Corvana Maintenance:  The import file is not properly delimited.\r\n The import has been halted.",
            "returned nothing"};
  }

  /// The lines of the shorter file as they are sent.
  std::string sentLines() const {
    std::string text;
    for (std::size_t at = 0; at < shorter.file.size();) {
      const std::size_t end = shorter.file.find("\r\n", at);
      text += (at == 0 ? "" : "\n") + upperCase(shorter.file.substr(at, end - at)) + '|';
      at = end + 2;
    }
    return text;
  }

  /// `sent` with the lines of the shorter file alone.
  std::string withFewerLines(const std::string& sent) const {
    if (way.call == Way::Call::send)
      return "sent " + sentLines();
    std::size_t end = 0;
    for (std::size_t i = 0; i < linesIn(shorter.file); ++i)
      end = sent.find(kAfterLine, end) + kAfterLine.size();
    return sent.substr(0, end) + sent.substr(sent.rfind(kAfterLine) + kAfterLine.size());
  }

  /// What comes of the shorter file, where `golden` comes of the whole one.
  Texts ofShorter(const Texts& golden) const {
    const bool isLineItems = way.call == Way::Call::projectItems;
    if (isInsideALine)
      return isLineItems ? halted() : refused();
    if (isLineItems) {
      std::string returned = "returned " + std::to_string(linesIn(shorter.file));
      for (std::size_t i = 0; i < linesIn(shorter.file); ++i)
        returned += "\n24 NV-1X4 0.04";
      return {returned};
    }
    if (way.name == "correction") // what is left is a good file
      return {"MessageReceived Import refused. 0", "showErrors 0 14 13 124", "sent " + sentLines()};
    Texts result = golden;
    for (std::string& text : result) {
      if (text.starts_with("sent "))
        text = withFewerLines(text);
    }
    return withoutPage(result);
  }

  /// Which of the ways to end it was. Fails the test where it was none: a part of a line was sent, say, or nothing
  /// told.
  std::string nameOf(const Texts& result, const Texts& golden) const {
    if (result == golden)
      return "whole";
    if (withoutPage(result) == ofShorter(golden))
      return "shorter";
    // A part of the longer file was in memory already, and what comes next is the end.
    EXPECT_TRUE(way.call != Way::Call::projectItems && result == refused()) << testing::PrintToString(result);
    return "refused";
  }

  const Way way = std::get<0>(GetParam());
  const bool isInsideALine = std::get<1>(GetParam());
  const Way shorter = [&] {
    Way result = way;
    result.file = beginningOf(way, isInsideALine);
    return result;
  }();
};

TEST_P(LengthFaults, fileCutAtEachCall_isTheWholeOneTheShorterOneOrRefused_andTheNextImportIsRight) {
  Import trial(way);
  const Texts golden = trial.run();
  Texts outcomes;
  std::size_t number = 1;
  for (bool isReached = true; isReached; ++number) {
    std::size_t calls = 0;
    trial.host.files.before = [&](auto, auto) {
      if (++calls == number)
        std::filesystem::resize_file(trial.path(), shorter.file.size());
    };
    const Texts result = trial.run();
    isReached = calls >= number;
    trial.host.files.before = [](auto, auto) {};
    SCOPED_TRACE(number);
    outcomes.push_back(nameOf(result, golden));
    trial.host.folder.write("import.txt", way.file);
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }
  EXPECT_EQ("shorter", outcomes.front());
  EXPECT_EQ("whole", outcomes.back());
  EXPECT_EQ(kFileCalls.at(way.name), number - 2);
  std::cout << "fault points: " << number - 2;
  for (const std::string outcome : {"whole", "shorter", "refused"})
    std::cout << ", " << outcome << ' ' << std::count(outcomes.begin(), outcomes.end() - 1, outcome);
  std::cout << '\n';
}

INSTANTIATE_TEST_SUITE_P(, LengthFaults, testing::Combine(testing::ValuesIn(ways()), testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).name +
                                  (std::get<1>(test.param) ? "_insideALine" : "_behindALine");
                         });

/// Reads one byte at a time.
class SlowSource : public ByteSource {
 public:
  explicit SlowSource(std::unique_ptr<ByteSource> real) : m_real(std::move(real)) {}
  std::size_t read(char* buffer, std::size_t size) override { return m_real->read(buffer, size > 0 ? 1 : 0); }
  void rewind() override { m_real->rewind(); }

 private:
  std::unique_ptr<ByteSource> m_real;
};

class SlowFiles : public FaultyFiles {
 public:
  std::unique_ptr<ByteSource> openForInput(std::string_view path) override {
    return std::make_unique<SlowSource>(FaultyFiles::openForInput(path));
  }
};

class SlowDisk : public testing::TestWithParam<Way> {};

TEST_P(SlowDisk, aByteAtATime_isTheSameImport) {
  Import trial(GetParam());
  const Texts golden = trial.run();
  SlowFiles slow;
  trial.host.services.files = &slow;
  trial.host.install();
  EXPECT_EQ(golden, trial.run());
  EXPECT_EQ(Texts{}, trial.errors);
  EXPECT_TRUE(trial.isTidy());
}

INSTANTIATE_TEST_SUITE_P(, SlowDisk, testing::ValuesIn(ways()), [](const auto& test) { return test.param.name; });

} // namespace
} // namespace imex::test
