#include "Import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <ostream>
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
  void expectHonest(const Import& trial, const Texts& result, const Texts& golden) const {
    const std::string sent = sentOf(result);
    EXPECT_TRUE(sent.empty() || sent == sentOf(golden) || isLeftToTheService(result)) << "not the whole file: " << sent;
    const bool isRecorded = std::any_of(trial.errors.begin(), trial.errors.end(),
                                        [](const std::string& error) { return error.starts_with("7 "); });
    const bool isShown = std::any_of(result.begin(), result.end(), isTold);
    EXPECT_TRUE(result == golden || isRecorded || isShown || isJudgedInDoubt(result))
        << "silence: " << testing::PrintToString(result);
    for (const std::string& error : trial.errors)
      EXPECT_TRUE(error.starts_with("7 ")) << error;
    for (const std::string& text : result) {
      if (!text.starts_with("raised "))
        continue;
      EXPECT_TRUE(text == "raised 7 Out of memory" || text == "raised bad_alloc") << text;
      EXPECT_TRUE(shortage.failsOn || way.call == Way::Call::send) << "the others let no error out";
    }
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
    hasNewReply = hasFailed && isLeftToTheService(result);
    absorbed += hasFailed && result == golden ? 1 : 0;
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
    return hasFailed;
  }

  long number = 0;          ///< of the allocation that fails
  bool hasNewReply = false; ///< whether the request keeps an answer that it did not have before
  long absorbed = 0;        ///< the failures that changed nothing
  const Way way = std::get<0>(GetParam());
  const Shortage shortage = std::get<1>(GetParam());
};

TEST_P(MemoryFaultsOfImports, eachAllocationFailed_endsHonestly_andTheNextImportIsRight) {
  Import trial(way);
  if (!shortage.isTraced)
    trial.stopTracing();
  const Texts golden = trial.run();
  ASSERT_EQ(Texts{}, trial.errors);
  hasFailedAt(0, trial, golden); // what is made once, for the life of the process
  long blocks = allocations.liveBlocks;
  while (hasFailedAt(++number, trial, golden) && !HasFailure()) {
    if (hasNewReply)
      blocks = allocations.liveBlocks;
    ASSERT_EQ(blocks, allocations.liveBlocks) << "blocks were not given back after allocation " << number;
  }
  std::cout << "allocations failed: " << number - 1 << ", of which " << absorbed << " changed nothing\n";
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaultsOfImports,
                         testing::Combine(testing::ValuesIn(shortWays()), testing::ValuesIn(kShortages)),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + "_" + std::get<1>(test.param).name;
                         });

} // namespace
} // namespace imex::test
