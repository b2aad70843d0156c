#include "Held.h"
#include "Import.h"

#include <gtest/gtest.h>

#include <iostream>

namespace imex::test {
namespace {

/// The ways among fakes, where no network slows them down.
class SoakOfWays : public testing::TestWithParam<Way> {};

TEST_P(SoakOfWays, manyImports_leaveNothingBehind) {
  Import trial(GetParam());
  trial.stopTracing();
  const Texts golden = trial.run();
  trial.run();
  const Held before;
  for (int i = 0; i < kImports; ++i)
    ASSERT_EQ(golden, trial.run());
  const Held after;
  EXPECT_EQ(before.blocks, after.blocks);
  EXPECT_LE(after.bytes - before.bytes, kBytesOfAnImport * kImports);
  EXPECT_LE(after.resident - before.resident, kMostGrowth);
  EXPECT_EQ(before.descriptors, after.descriptors);
  EXPECT_TRUE(trial.isTidy());
  std::cout << "imports: " << kImports << ", bytes: " << before.bytes << " to " << after.bytes
            << ", resident: " << before.resident << " to " << after.resident << '\n';
}

INSTANTIATE_TEST_SUITE_P(, SoakOfWays, testing::ValuesIn(shortWays()),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace imex::test
