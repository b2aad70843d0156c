#include "Import.h"
#include "module/ImExModule.h"
#include "module/state.h"
#include "module/validators.h"
#include "platform/files/DiskFiles.h"
#include "runtime/TextFile.h"
#include "runtime/numbers.h"
#include "support/memoryFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <new>
#include <set>
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

/// Runs `action` with each of its allocations failed in turn, `check` after each, and then without a failure. The last
/// run has none that fails. Returns how many there were.
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
    if (!hasFailed) {
      EXPECT_EQ(Outcome::fine, outcome);
      return number - 1;
    }
    check(outcome);
    EXPECT_EQ(Outcome::fine, outcomeOf(action));
    if (testing::Test::HasFailure())
      return number;
  }
}

// --- Values and files ------------------------------------------------------------------------------------------------

struct Piece {
  std::string name;
  std::function<void()> action;
  Outcome starved =
      Outcome::badAlloc; ///< where there is no memory; a procedure that passes errors on makes error 7 of it
};
std::ostream& operator<<(std::ostream& stream, const Piece& piece) {
  return stream << piece.name;
}

/// Actions that own all that they make. Each raises where it has no memory.
std::vector<Piece> pieces() {
  static const std::string kText = "caf\xE9\r\n" + std::string(70000, 'x') + "\r\nlast\x80";
  static const std::string kUtf8 = "Caf\xC3\xA9 " + std::string(3000, 'y');
  static const std::string kFields = "a field that is long enough|another one that is|" + kUtf8;
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
      {"Parse", [] { (void)ImExModule::Parse(kFields, 124); }, Outcome::outOfMemory},
  };
}

class MemoryFaults : public testing::TestWithParam<std::tuple<Piece, bool>> {};

TEST_P(MemoryFaults, eachAllocationFailed_isAnErrorOfMemory_andNothingIsLost) {
  const auto& [piece, failOn] = GetParam();
  const long count =
      failEachAllocation(failOn, piece.action, [&](Outcome outcome) { EXPECT_EQ(piece.starved, outcome); });
  EXPECT_GT(count, 0);
  std::cout << "allocations failed: " << count << '\n';
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaults, testing::Combine(testing::ValuesIn(pieces()), testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + (std::get<1>(test.param) ? "_fromThereOn" : "_once");
                         });

// --- Validators: an error inside a check is a message of its own ----------------------------------------------------

/// A check of one value, and what it says where it cannot be made.
struct Check {
  std::string name;
  std::function<std::string()> judge;
  std::string golden; ///< the verdict; empty for a good value
  std::string starved;
};
std::ostream& operator<<(std::ostream& stream, const Check& check) {
  return stream << check.name;
}

/// Values of more digits than a string itself has room for.
std::vector<Check> checks() {
  using namespace ImExModule;
  static const std::string kField = "Quantity of it";
  static const std::string kZeros(40, '0');
  static const std::string kWhole = "25." + kZeros;
  static const std::string kHalf = "2.5" + kZeros;
  static const std::string kWord = "twenty-five" + kZeros;
  const auto of = [](const std::string& value) { return "Field " + kField + " with value " + value; };
  const auto amountOf = [](const std::string& value) { return "amount of field " + kField + " with value " + value; };
  const std::string length = "The maximum length of " + kField + " with value " + kHalf;
  return {
      {"longText", [] { return checkMaxLength(kField, kHalf, 10, false); },
       length + " has been exceeded.  The maximum length is 10.",
       length + " cannot be verified.  The maximum length is 10."},
      {"number", [] { return checkNumeric(kField, kHalf, false); }, "", of(kHalf) + " must be numeric."},
      {"word", [] { return checkNumeric(kField, kWord, false); }, of(kWord) + " must be numeric.",
       of(kWord) + " must be numeric."},
      {"wholeNumber", [] { return checkNonNegativeInteger(kField, kWhole, false); }, "",
       of(kWhole) + " must be an integer whose value is non-negative."},
      {"half", [] { return checkNonNegativeInteger(kField, kHalf, false); },
       of(kHalf) + " must be an integer whose value is non-negative.",
       of(kHalf) + " must be an integer whose value is non-negative."},
      {"noWholeNumber", [] { return checkNonNegativeInteger(kField, kWord, false); }, of(kWord) + " must be numeric.",
       of(kWord) + " must be an integer whose value is non-negative."},
      {"amount", [] { return checkMaxAmount(kField, "Currency", kHalf, "999999", false); }, "",
       "The max " + amountOf(kHalf) + " cannot be verified."},
      {"greatAmount", [] { return checkMaxAmount(kField, "Currency", kWhole, "1", false); },
       "The " + amountOf(kWhole) + " exceeds the maximum amount 1 .",
       "The max " + amountOf(kWhole) + " cannot be verified."},
      {"longAmount", [] { return checkMaxAmount(kField, "Long", "100000", "99999", false); },
       "The " + amountOf("100000") + " exceeds the maximum amount 99999 .",
       "The max " + amountOf("100000") + " cannot be verified."},
  };
}

class MemoryFaultsOfValidators : public testing::TestWithParam<std::tuple<Check, bool>> {};

TEST_P(MemoryFaultsOfValidators, eachAllocationFailed_findsFaultWithTheField) {
  const auto& [check, failOn] = GetParam();
  ASSERT_EQ(check.golden, check.judge());
  bool isStarved = false;
  const auto judge = [&, &test = check] {
    isStarved = false;
    const std::string verdict = test.judge();
    isStarved = verdict == test.starved;
  };
  const long count = failEachAllocation(failOn, judge, [&, failsOn = failOn](Outcome outcome) {
    // With no memory for the message either, nothing is said, and so nothing is accepted.
    EXPECT_EQ(failsOn ? Outcome::badAlloc : Outcome::fine, outcome);
    EXPECT_EQ(!failsOn, isStarved);
  });
  EXPECT_EQ(check.golden, check.judge());
  EXPECT_GT(count, 0);
  std::cout << "allocations failed: " << count << '\n';
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaultsOfValidators, testing::Combine(testing::ValuesIn(checks()), testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + (std::get<1>(test.param) ? "_fromThereOn" : "_once");
                         });

// --- The catalogue --------------------------------------------------------------------------------------------------

/// Every box that the loading may show: of no file yet, of a file whose folder could not be asked for, and of a file.
std::set<std::string> boxesOfTheCatalogue(const TestHost& host) {
  const auto box = [](const std::string& path) {
    return "box 48 Error Number: 7 - Out of memory: An error was encountered while attempting read dat file (" + path +
           ").\r\nSome file types will not be editable. Please contact production support to have this corrected.";
  };
  std::set<std::string> boxes = {box("")};
  for (const std::string name : {"agentcustomer", "halvikcustomer", "agentproduct", "agentproject", "agentquote",
                                 "agentorder", "agentinvoice", "agentcommission", "halvikballasts"}) {
    const std::string path = "\\docs\\format" + name + ".dat";
    boxes.insert(box(path));
    boxes.insert(box(host.application.directory + path));
  }
  return boxes;
}

TEST(MemoryFaultsOfTheCatalogue, eachAllocationFailed_isTheBoxOfTheCatalogueOrALoadedOne_andTheNextImportIsRight) {
  Import trial(shortWays().front());
  const Texts golden = trial.run();
  const std::set<std::string> expected = boxesOfTheCatalogue(trial.host);
  long number = 1;
  for (bool hasFailed = true; hasFailed && !testing::Test::HasFailure(); ++number) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    const long blocks = allocations.liveBlocks;
    Texts boxes;
    {
      const FailingAllocation failing(number);
      EXPECT_EQ(Outcome::fine, outcomeOf([&] { boxes = trial.restart(); }));
      hasFailed = allocations.hasFailed;
    }
    EXPECT_TRUE(trial.isTidy());
    if (boxes.empty()) { // also where the working directory or a trace line failed, which is absorbed
      EXPECT_EQ(kBallastColumns, ImExModule::getFormatColumnCount("BALLASTSHALVIK"));
      EXPECT_EQ(golden, trial.run());
    } else {
      EXPECT_TRUE(hasFailed);
      EXPECT_EQ(1u, boxes.size());
      EXPECT_TRUE(expected.contains(boxes.front())) << boxes.front();
      EXPECT_EQ(Texts{"7 ImEx: Out of memory"}, trial.errors);
    }
    boxes = Texts();
    EXPECT_EQ(Texts{}, trial.restart()); // another process
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
    EXPECT_EQ(blocks, allocations.liveBlocks) << "blocks that were not given back";
  }
  EXPECT_GT(number, 300);
  std::cout << "allocations failed: " << number - 2 << '\n';
}

// --- Folders ---------------------------------------------------------------------------------------------------------

/// The standard library's directory iterator would end the process here.
TEST(MemoryFaultsOfFolders, eachAllocationFailed_isAnErrorOfMemory_andTheNextFileIsMade) {
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
      [](Outcome outcome) { EXPECT_EQ(Outcome::badAlloc, outcome); });
  EXPECT_GT(count, 0);
  std::cout << "allocations failed: " << count << '\n';
}

} // namespace
} // namespace imex::test
