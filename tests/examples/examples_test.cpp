#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace imex::test {

namespace {

const std::string kShare = IMEX_SOURCE_DIR "/share";

/// The program's verdict on a copy of a sample file.
class OwnServices : public testing::Test {
 protected:
  Ended judge(const std::string& bytes) { return run(OWN_SERVICES, {kShare, folder.write("customers.txt", bytes)}); }

  const std::string sample = readFile(kShare + "/samples/customers-agent.txt");
  TemporaryFolder folder;
};

TEST_F(OwnServices, goodFile_isAccepted) {
  const Ended ended = judge(sample);
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("10 lines judged.\n", ended.out);
  EXPECT_EQ("", ended.err);
  EXPECT_THAT(folder.read("validationresults.html"), testing::HasSubstr("Import successful for this line."));
}

TEST_F(OwnServices, lineWithoutAContact_isTurnedAway) {
  std::string bytes = sample;
  bytes.erase(bytes.find("Carol Janssen"), 13);
  const Ended ended = judge(bytes);
  EXPECT_EQ(1, ended.status);
  EXPECT_EQ("10 lines judged.\nLine 1: The contact is missing.\n", ended.out);
}

TEST_F(OwnServices, missingFile_isToldInTheOwnBox) {
  const Ended ended = run(OWN_SERVICES, {kShare, folder / "missing.txt"});
  EXPECT_EQ(1, ended.status);
  EXPECT_EQ("Corvana Maintenance: Unable to open the file selected. Please try again.\n", ended.err);
}

TEST_F(OwnServices, missingFormats_areToldInTheOwnTraceLog) {
  const Ended ended = run(OWN_SERVICES, {folder.path().string(), folder.write("customers.txt", sample)});
  EXPECT_THAT(ended.err, testing::StartsWith("ImExModule.initialize: error 76, Path not found\n"));
}

TEST(MinimalHost, wrongUse_isExplained) {
  const Ended ended = run(MINIMAL_HOST, {"only one"}, {"QT_QPA_PLATFORM=offscreen"});
  EXPECT_EQ(64, ended.status);
  EXPECT_THAT(ended.err,
              testing::EndsWith("usage: minimal_host APPLICATION-DIRECTORY SECURED-ADDRESS UNSECURED-ADDRESS "
                                "USER-ID\n"));
}

} // namespace

} // namespace imex::test
