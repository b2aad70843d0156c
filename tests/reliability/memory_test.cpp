#include "Import.h"
#include "module/ImExModule.h"
#include "module/state.h"
#include "module/validators.h"
#include "platform/files/DiskFiles.h"
#include "runtime/TextFile.h"
#include "runtime/numbers.h"
#include "support/memoryFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <new>
#include <tuple>

namespace imex::test {
namespace {

enum class Outcome { fine, outOfMemory, badAlloc };

/// Runs `action`; any error but one of memory fails the test.
Outcome outcomeOf(const std::function<void()>& action) {
  try {
    action();
    return Outcome::fine;
  } catch (const RuntimeError& error) {
    EXPECT_TRUE(error.is(ErrorNumber::outOfMemory)) << error.description();
    return Outcome::outOfMemory;
  } catch (const std::bad_alloc&) {
    return Outcome::badAlloc;
  }
}

/// Runs `action` with each of its allocations failed in turn and `check` after each; the last run has none that fails.
/// Returns how many there were.
long failEachAllocation(bool failOn, const std::function<void()>& action, const std::function<void(Outcome)>& check) {
  action(); // what is made once, for the life of the process
  for (long number = 1;; ++number) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    const long blocks = allocations.liveBlocks;
    Outcome outcome = Outcome::fine;
    bool hasFailed = false;
    {
      const FailingAllocation failing(number, failOn);
      outcome = outcomeOf(action);
      hasFailed = allocations.hasFailed;
    }
    EXPECT_EQ(blocks, allocations.liveBlocks) << "blocks that were not given back";
    check(outcome);
    if (!hasFailed) {
      EXPECT_EQ(Outcome::fine, outcome);
      return number - 1;
    }
    if (testing::Test::HasFailure())
      return number;
  }
}

// --- Values and files ------------------------------------------------------------------------------------------------

struct Piece {
  std::string name;
  std::function<void()> action;
};
std::ostream& operator<<(std::ostream& stream, const Piece& piece) {
  return stream << piece.name;
}

/// Actions that own all that they make. Each raises where it has no memory.
std::vector<Piece> pieces() {
  static const std::string kText = "caf\xE9\r\n" + std::string(70000, 'x') + "\r\nlast\x80";
  static const std::string kUtf8 = "Caf\xC3\xA9 " + std::string(3000, 'y');
  return {
      {"Collection",
       [] {
         Strings list;
         list.add("an item longer than what fits into a string itself");
         list.add("another item longer than what fits into a string", "a key longer than what fits into a string");
         if (list.item("A KEY longer than what fits into a STRING").empty())
           throw std::logic_error("lost");
       }},
      {"textReading",
       [] {
         TextReader reader(std::make_unique<MemorySource>(kText, 5000));
         std::string_view line;
         while (reader.readLine(line)) {
         }
       }},
      {"textWriting",
       [] {
         MemorySink::Record record;
         TextWriter writer(std::make_unique<MemorySink>(record), Encoding::windows1252);
         for (int i = 0; i < 50; ++i)
           writer.writeLine(kUtf8);
         writer.close();
       }},
      {"upperCase", [] { (void)upperCase(kUtf8); }},
      {"numbers",
       [] {
         (void)toDouble("$ 1,234,567,890,123,456,789,012,345.5");
         (void)toCurrency("000,000,000,000,000,000,000,000,000,001.5");
       }},
      {"Parse", [] { (void)ImExModule::Parse("a field that is long enough|another one that is|" + kUtf8, 124); }},
  };
}

class MemoryFaults : public testing::TestWithParam<std::tuple<Piece, bool>> {};

TEST_P(MemoryFaults, eachAllocationFailed_isAnErrorOfMemory_andNothingIsLost) {
  const auto& [piece, failOn] = GetParam();
  bool wasFine = false;
  const long count = failEachAllocation(failOn, piece.action, [&](Outcome outcome) {
    EXPECT_FALSE(wasFine); // only the run without a fault is fine
    wasFine = outcome == Outcome::fine;
  });
  EXPECT_GT(count, 0);
  std::cout << "allocations failed: " << count << '\n';
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaults, testing::Combine(testing::ValuesIn(pieces()), testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + (std::get<1>(test.param) ? "_fromThereOn" : "_once");
                         });

// --- Validators: an error inside a check is a message of its own
// -------------------------------------------------------

TEST(MemoryFaultsOfValidators, eachAllocationFailed_isAVerdictOrAnErrorOfMemory) {
  const std::string value = "12345678901234567890123456789012345678901234567890";
  std::string verdict;
  const auto judge = [&] {
    std::string text = ImExModule::checkNonNegativeInteger("Quantity of it", value, false) +
                       ImExModule::checkMaxAmount("Quantity of it", "Currency", value, "999999", false) +
                       ImExModule::checkMaxLength("Quantity of it", value, 10, false);
    const AllocationPause pause;
    verdict = std::move(text);
  };
  judge();
  const std::string golden = verdict;
  verdict.clear();
  verdict.shrink_to_fit();
  const long count = failEachAllocation(
      false,
      [&] {
        judge();
        verdict = {};
      },
      [&](Outcome outcome) { EXPECT_NE(Outcome::outOfMemory, outcome); });
  judge();
  EXPECT_EQ(golden, verdict);
  std::cout << "allocations failed: " << count << '\n';
}

// --- The catalogue
// -------------------------------------------------------------------------------------------------------

TEST(MemoryFaultsOfTheCatalogue, eachAllocationFailed_isTheBoxOfTheCatalogueOrALoadedOne) {
  TestHost host;
  long count = 0;
  for (long number = 1;; ++number) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    ImExModule::state() = {};
    host.messageBox.boxes.clear();
    host.trace->lines.clear();
    {
      const FailingAllocation failing(number);
      EXPECT_EQ(Outcome::fine, outcomeOf(ImExModule::initialize));
      count = number;
      if (!allocations.hasFailed)
        break;
    }
    EXPECT_EQ(1, ImExModule::openFiles().freeNumber());
    EXPECT_EQ(0, openStreamCount());
    if (host.messageBox.boxes.empty()) { // absorbed: the working directory and the trace lines may fail
      EXPECT_EQ(kBallastColumns, ImExModule::getFormatColumnCount("BALLASTSHALVIK"));
    } else {
      EXPECT_EQ("Error Number: 7 - Out of memory", host.messageBox.boxes.front().title);
      EXPECT_THAT(host.trace->errors(), testing::SizeIs(1));
    }
    if (testing::Test::HasFailure())
      return;
  }
  EXPECT_TRUE(host.messageBox.boxes.empty());
  std::cout << "allocations failed: " << count - 1 << '\n';
}

// --- Folders ---------------------------------------------------------------------------------------------------------

/// The standard library's directory iterator would end the process here.
TEST(MemoryFaultsOfFolders, eachAllocationFailed_isAnErrorOfMemoryOrANewFile) {
  const TemporaryFolder folder;
  const std::string path = folder / "a new file with a name that is longer than what fits into a string itself.txt";
  folder.write("another file that is in the folder already and has a long name.txt", "");
  platform::DiskFiles files;
  const long count = failEachAllocation(
      false,
      [&] {
        std::filesystem::remove(path);
        files.openForOutput(path)->close();
      },
      [](Outcome) {});
  EXPECT_GT(count, 0);
}

} // namespace
} // namespace imex::test
