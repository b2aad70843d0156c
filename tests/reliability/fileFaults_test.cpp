#include "Import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <tuple>

namespace imex::test {
namespace {

struct Call {
  std::string name;
  std::string path;
};

/// Counts the calls that an import makes of the file system, and fails one of them, once.
class FailingCall {
 public:
  /// Fails the call `number`, counted from 1; 0 for none.
  FailingCall(FaultyFiles& files, std::size_t number, ErrorNumber error) : m_files(files) {
    m_files.before = [this, number, error](std::string_view name, std::string_view path) {
      calls.push_back({std::string(name), std::string(path)});
      if (calls.size() == number)
        throw RuntimeError(error, "DiskFiles");
    };
  }
  ~FailingCall() {
    m_files.before = [](auto, auto) {};
  }
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

  std::vector<Call> calls;

 private:
  FaultyFiles& m_files;
};

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

/// Every file call of every way, failed once with every fault.
class FileFaults : public testing::TestWithParam<std::tuple<Way, Fault>> {
 protected:
  /// Which opening of the import file the last of these calls belongs to, counted from 1; 0 for the results page.
  static std::ptrdiff_t openingOf(const std::vector<Call>& calls, const Import& trial) {
    if (calls.back().path != trial.path())
      return 0;
    return std::count_if(calls.begin(), calls.end(),
                         [&](const Call& call) { return call.name == "openForInput" && call.path == trial.path(); });
  }

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
    return "box 48 Error Number: " + std::to_string(static_cast<int>(fault.error)) + " - " +
           std::string(describe(fault.error)) + ": The requested operation could not be completed.";
  }

  const Way way = std::get<0>(GetParam());
  const Fault fault = std::get<1>(GetParam());
};

TEST_P(FileFaults, eachCallFailedOnce_endsAsTheTextsSay_andTheNextImportIsRight) {
  Import trial(way);
  const Texts golden = trial.run();
  ASSERT_EQ(Texts{}, trial.errors);
  const std::string page = trial.page();
  std::size_t number = 1;
  for (;; ++number) {
    Texts result;
    std::vector<Call> calls;
    {
      FailingCall failing(trial.host.files, number, fault.error);
      result = trial.run();
      calls = failing.calls;
    }
    if (calls.size() < number) {
      EXPECT_EQ(golden, result);
      break;
    }
    calls.resize(number); // what came behind the fault does not tell where it was
    SCOPED_TRACE("call " + std::to_string(number) + " of " + calls.back().name + ' ' + calls.back().path);
    EXPECT_EQ(promised(openingOf(calls, trial), golden), withoutPage(result));
    EXPECT_TRUE(page.starts_with(trial.page()));
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }
  EXPECT_GE(number, 4u);
  std::cout << "fault points: " << number - 1 << '\n';
}

INSTANTIATE_TEST_SUITE_P(, FileFaults, testing::Combine(testing::ValuesIn(ways()), testing::ValuesIn(kFaults)),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + "_" + std::get<1>(test.param).name;
                         });

/// The import file changes its length under the hands of its reader.
class LengthFaults : public testing::TestWithParam<Way> {
 protected:
  /// What was sent or returned is all, nothing, or a beginning of it: never something else.
  static void expectBeginning(const Texts& result, const Texts& golden) {
    for (const std::string& text : result) {
      if (!text.starts_with("sent ") && !text.starts_with("returned "))
        continue;
      const auto whole = std::find_if(golden.begin(), golden.end(), [&](const std::string& other) {
        return other.substr(0, other.find(' ')) == text.substr(0, text.find(' '));
      });
      ASSERT_NE(golden.end(), whole);
      const std::string lines = text.substr(std::min(text.size(), text.find('\n')));
      EXPECT_TRUE(whole->find(lines) != std::string::npos || text == "returned nothing") << text;
    }
  }
};

TEST_P(LengthFaults, fileCutAtEachCall_isReadUpToThereOrRefused_andTheNextImportIsRight) {
  Import trial(GetParam());
  const Texts golden = trial.run();
  const auto size = std::filesystem::file_size(trial.path());
  std::size_t number = 1;
  for (bool isReached = true; isReached; ++number) {
    std::size_t calls = 0;
    trial.host.files.before = [&](auto, auto) {
      if (++calls == number)
        std::filesystem::resize_file(trial.path(), size / 2);
    };
    const Texts result = trial.run();
    isReached = calls >= number;
    trial.host.files.before = [](auto, auto) {};
    SCOPED_TRACE(number);
    if (GetParam().call == Way::Call::send && isReached)
      expectBeginning(result, golden);
    trial.host.folder.write("import.txt", GetParam().file);
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(golden, trial.run());
  }
  std::cout << "fault points: " << number - 2 << '\n';
}

INSTANTIATE_TEST_SUITE_P(, LengthFaults, testing::ValuesIn(ways()), [](const auto& test) { return test.param.name; });

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
