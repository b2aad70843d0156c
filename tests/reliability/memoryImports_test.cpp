#include "Import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <ostream>
#include <string>
#include <tuple>

namespace imex::test {
namespace {

/// How memory fails, and whether the procedures are traced.
struct Shortage {
  std::string name;
  bool failsOn;
  bool isTraced;
};

std::ostream& operator<<(std::ostream& stream, const Shortage& shortage) {
  return stream << shortage.name;
}

const std::vector<Shortage> kShortages = {
    {"once", false, false}, {"onceTraced", false, true}, {"fromThereOn", true, false}};

constexpr long kFewest = 40; ///< allocations of an import, whatever the build

const std::string kQuestion =
    "box 36 Corvana Maintenance: The file you are attempting to import is not properly delimited. It should contain 13 "
    "of your chosen delimiter in each row of the file.\r\nOpening the file within the editor and saving will correct "
    "the error.\r\n\r\n Would you like to correct the file?";

const std::string kBadAlloc = "raised bad_alloc";
const std::string kPassedOn = "raised 7 Out of memory"; // by Deserialize(), which is in the middle of send()

Texts operator+(Texts a, const Texts& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

/// Imports of which one allocation after the other fails.
class MemoryFaultsOfImports : public testing::TestWithParam<std::tuple<Way, Shortage>> {
 protected:
  static bool isTold(const std::string& text) {
    return text.starts_with("box ") || text.starts_with("SerializationFailed ") || text.starts_with("raised ");
  }

  static std::string sentOf(const Texts& result) {
    for (const std::string& text : result) {
      if (text.starts_with("sent "))
        return text;
    }
    return {};
  }

  /// A line that could not be judged, which a box says, goes to the service with all the others.
  static bool isLeftToTheService(const Texts& result) {
    const std::string sent = sentOf(result);
    return result.front().ends_with("Unable to validate the format of the file being imported.") &&
           sent.starts_with("sent C1|") && sent.ends_with("\nONLY|TWO|");
  }

  /// A check that could not be made finds fault with its field.
  static bool isJudgedInDoubt(const Texts& result) {
    return result.front().starts_with("showErrors 3 11 10 124\n") &&
           result.front().ends_with(
               "\n3: Field Quantity with value -1 must be an integer whose value is non-negative.");
  }

  /// Whatever failed: never a part of the file, and never silence about what is not as it should be.
  void expectHonest(const Import& trial, const Texts& result, const Texts& golden) {
    const std::string sent = sentOf(result);
    EXPECT_TRUE(sent.empty() || sent == sentOf(golden) || isLeftToTheService(result)) << "not the whole file: " << sent;
    const bool isRecorded = std::any_of(trial.errors.begin(), trial.errors.end(),
                                        [](const std::string& error) { return error.starts_with("7 "); });
    const bool isShown = std::any_of(result.begin(), result.end(), isTold);
    EXPECT_TRUE(result == golden || isRecorded || isShown || isJudgedInDoubt(result))
        << "silence: " << testing::PrintToString(result);
    for (const std::string& error : trial.errors)
      EXPECT_EQ("7 ImEx: Out of memory", error);
    hear(result);
  }

  /// Notes that each of the words was heard. Fails the test for others.
  void hear(const Texts& result) {
    for (const std::string& text : result) {
      if (!isTold(text))
        continue;
      const auto found = wasHeard.find(text);
      ASSERT_NE(wasHeard.end(), found) << text;
      found->second = true;
    }
  }

  /// All that the user hears, and that the caller is raised, where one allocation fails. send() lets its own errors
  /// out, so its caller gets the bad_alloc itself.
  Texts wordsOnce() const {
    const std::string box = "box 48 Error Number: 7 - Out of memory: ";
    if (way.call == Way::Call::projectItems)
      return {unreadableBox(48), box + "The requested operation could not be completed."};
    Texts words = {unreadableBox(64), kUnreadableEvent};
    if (shortage.isTraced || way.name == "correction") // each line is looked at closely then
      words.push_back(box + "Unable to validate the format of the file being imported.");
    if (way.name == "correction")
      return words + Texts{kQuestion, unreadableBox(48), kBadAlloc};
    words.push_back(kPageFailed);
    if (way.call == Way::Call::send)
      return words + Texts{kPassedOn, kBadAlloc};
    return words + Texts{"SerializationFailed An environment error has been detected.",
                         "SerializationFailed Unable to create a request to process.",
                         "SerializationFailed Exception while attempting to import CUSTOMER. \r\nOut of memory. \r\n"};
  }

  /// The same where all that follow fail as well. Nobody can be told: the bad_alloc of the telling reaches the caller
  /// of each procedure.
  Texts wordsFromThereOn() const {
    if (way.call == Way::Call::projectItems)
      return {unreadableBox(48), kBadAlloc};
    if (way.name == "correction")
      return {unreadableBox(64), kQuestion, unreadableBox(48), kBadAlloc};
    if (way.call == Way::Call::send)
      return {unreadableBox(64), kPassedOn, kBadAlloc};
    return {unreadableBox(64), kBadAlloc};
  }

  /// Lets the request keep a reply, as it does after any answer, so that one more makes no block more.
  void giveAReply(Import& trial) const {
    if (way.name != "correction")
      return;
    trial.host.folder.write("import.txt", shortWays().front().file);
    trial.run();
    trial.host.folder.write("import.txt", way.file);
  }

  /// Imports with one failing allocation and then without one. False where the first import had none so far.
  bool hasFailedAt(long allocation, Import& trial, const Texts& golden) {
    SCOPED_TRACE("allocation " + std::to_string(allocation));
    Texts result;
    bool hasFailed = false;
    {
      const FailingAllocation failing(allocation, shortage.failsOn);
      result = trial.run();
      hasFailed = allocations.hasFailed;
    }
    if (hasFailed)
      expectHonest(trial, result, golden);
    EXPECT_TRUE(hasFailed || result == golden);
    EXPECT_TRUE(trial.isTidy());
    absorbed += hasFailed && result == golden ? 1 : 0;
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
    return hasFailed;
  }

  long number = 0;   ///< of the allocation that fails
  long absorbed = 0; ///< the failures that changed nothing
  const Way way = std::get<0>(GetParam());
  const Shortage shortage = std::get<1>(GetParam());
  std::map<std::string, bool> wasHeard; ///< by the words that the texts promise
};

TEST_P(MemoryFaultsOfImports, eachAllocationFailed_endsHonestly_andTheNextImportIsRight) {
  for (const std::string& words : shortage.failsOn ? wordsFromThereOn() : wordsOnce())
    wasHeard[words] = false;
  Import trial(way);
  if (!shortage.isTraced)
    trial.stopTracing();
  giveAReply(trial);
  const Texts golden = trial.run();
  ASSERT_EQ(Texts{}, trial.errors);
  hasFailedAt(0, trial, golden); // what is made once, for the life of the process
  const long blocks = allocations.liveBlocks;
  while (hasFailedAt(++number, trial, golden) && !HasFailure()) {
    ASSERT_EQ(blocks, allocations.liveBlocks) << "blocks were not given back after allocation " << number;
  }
  for (const auto& [words, isHeard] : wasHeard)
    EXPECT_TRUE(isHeard) << "never heard: " << words;
  EXPECT_GT(number, kFewest);
  std::cout << "allocations failed: " << number - 1 << ", of which " << absorbed << " changed nothing\n";
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaultsOfImports,
                         testing::Combine(testing::ValuesIn(shortWays()), testing::ValuesIn(kShortages)),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + "_" + std::get<1>(test.param).name;
                         });

} // namespace
} // namespace imex::test
