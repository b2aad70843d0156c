#include "changes.h"
#include "harness/importing.h"
#include "plainFile.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace imex::test {
namespace {

const std::string kCustomers = "c1|Firm|1 Main|||Town|GA|30012|||555||Dist\r\n"
                               "c2|F\xC3\xA9|2 Main|||Town|GA|30012|||555||D\r\n";

// The checks of a customer once more, the plain way.

bool isGood(const std::string& line) {
  const std::vector<std::string> fields = splitAt(line, "|");
  const auto isFilled = [&](std::size_t field) { return !fields[field - 1].empty(); };
  return fields.size() == 13 && isFilled(2) && isFilled(3) && isFilled(6) && isFilled(7) && isFilled(8) &&
         isFilled(11) && isFilled(13);
}

/// Whether XML has a character for each of the text's.
bool isXml(const std::string& text) {
  return std::none_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
}

struct Expected {
  std::vector<std::string> lines; ///< that are sent
  bool isRefused = false;         ///< by the client, which asks
};

Expected expectedOf(const std::string& bytes) {
  Expected expected;
  for (const std::string& line : filledLines(bytes)) {
    if (!isGood(line)) {
      expected.isRefused = true;
      expected.lines.clear();
      return expected;
    }
    expected.lines.push_back(upperCase(line) + "|");
  }
  return expected;
}

class ChangedImports : public testing::TestWithParam<fuzz::Way> {
 protected:
  void expectRight(const std::string& bytes) {
    const Expected expected = expectedOf(bytes);
    const fuzz::Outcome outcome = fuzz::run({"CUSTOMER", "AGENT", "PIPE", false}, GetParam(), bytes, false);
    ++inputs;
    ASSERT_EQ(expected.isRefused, !outcome.boxes.empty()) << bytes;
    if (expected.isRefused) {
      ASSERT_FALSE(outcome.isSent);
      ++refused;
    } else if (isXml(decoded(bytes))) {
      ASSERT_TRUE(outcome.isSent) << bytes;
      ASSERT_EQ(expected.lines, outcome.lines);
      ++sent;
    } else {
      ASSERT_FALSE(outcome.isSent) << bytes;
    }
  }

  void TearDown() override {
    std::cout << "inputs: " << inputs << ", sent whole: " << sent << ", refused by the client: " << refused << '\n';
  }

  int inputs = 0;
  int sent = 0;
  int refused = 0;
};

TEST_P(ChangedImports, everyTruncation_isSentWholeOrRefused) {
  expectRight(kCustomers);
  EXPECT_EQ(1, sent);
  forEachTruncation(kCustomers, [&](const std::string& bytes) { expectRight(bytes); });
  EXPECT_EQ(10, sent);
  EXPECT_EQ(75, refused);
}

TEST_P(ChangedImports, everySingleByteChange_isSentWholeOrRefused) {
  forEachChangedByte(kCustomers, [&](const std::string& bytes) { expectRight(bytes); });
  EXPECT_EQ(13050, sent);
  EXPECT_EQ(6688, refused);
}

INSTANTIATE_TEST_SUITE_P(, ChangedImports, testing::Values(fuzz::Way::send, fuzz::Way::instant),
                         [](const auto& test) { return test.param == fuzz::Way::send ? "send" : "instant"; });

} // namespace
} // namespace imex::test
