#include "import_service/Judge.h"

#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::import_service::test {

using Texts = std::vector<std::string>;

class JudgeTest : public testing::Test {
 protected:
  Judge judge(bool allowTruncation = false, const std::string& formatKey = "CUSTOMERAGENT") {
    return {formats.at(formatKey), {'|', allowTruncation}};
  }

  Formats formats = smallFormats();
};

/// One line of the customers' format, and what is said about it.
struct Line {
  std::string line;
  Texts errors;
  Texts warnings = {};
};

void PrintTo(const Line& line, std::ostream* out) {
  *out << line.line;
}

class Judges : public testing::TestWithParam<Line> {};
class JudgesWithTruncation : public testing::TestWithParam<Line> {};

void expectVerdict(const Line& expected, bool allowTruncation) {
  const Formats formats = smallFormats();
  Judge judge(formats.at("CUSTOMERAGENT"), {'|', allowTruncation});
  const Verdict verdict = judge.judge(expected.line);
  EXPECT_EQ(verdict.errors, expected.errors);
  EXPECT_EQ(verdict.warnings, expected.warnings);
}

TEST_P(Judges, aLine) {
  expectVerdict(GetParam(), false);
}

TEST_P(JudgesWithTruncation, aLine) {
  expectVerdict(GetParam(), true);
}

const std::string kFourAccents = "\xC3\x89\xC3\x89\xC3\x89\xC3\x89";

INSTANTIATE_TEST_SUITE_P(
    Judge, Judges,
    testing::Values(
        Line{"C1|ACME|100", {}}, Line{"C1|ACME|", {}}, Line{"C1|ACME| ", {}}, Line{"C1|ACME|1E3", {}},
        Line{"C1|ACME|-1.5", {}},
        // The number of fields: one too few, one too many, and nothing else is said.
        Line{"C1|TOO LONG A NAME", {"The line has 2 fields where 3 are expected."}},
        Line{"C1|ACME|100|", {"The line has 4 fields where 3 are expected."}},
        Line{"", {"The line has 1 field where 3 are expected."}},
        // The length: one below, at, and one above the greatest.
        Line{"C12|ACME|", {}}, Line{"C123|ACME|", {}},
        Line{"C1234|ACME|", {"Code is too long, 5 characters where 4 are allowed: \"C1234\"."}},
        Line{"C1|123456789|", {}}, Line{"C1|1234567890|", {}},
        Line{"C1|12345678901|", {"Name is too long, 11 characters where 10 are allowed: \"12345678901\"."}},
        Line{kFourAccents + "|ACME|", {}},
        Line{kFourAccents + "\xC3\x89|ACME|",
             {"Code is too long, 5 characters where 4 are allowed: \"" + kFourAccents + "\xC3\x89\"."}},
        // Required fields.
        Line{"|ACME|", {"Code is required but is empty."}}, Line{"C1||", {"Name is required but is empty."}},
        Line{"C1| \t|", {"Name is required but is empty."}},
        Line{"||", {"Code is required but is empty.", "Name is required but is empty."}},
        Line{"C1|           |",
             {"Name is too long, 11 characters where 10 are allowed: \"           \".", "Name is required but is "
                                                                                        "empty."}},
        // Numbers.
        Line{"C1|ACME|ABC", {"Credit Limit must be a number, not \"ABC\"."}},
        Line{"C1|ACME|1E", {"Credit Limit must be a number, not \"1E\"."}}, Line{"C1|ACME|123456", {}},
        Line{"C1|ACME|1234567", {"Credit Limit is too long, 7 characters where 6 are allowed: \"1234567\"."}},
        Line{"C1|ACME|UNKNOWN",
             {"Credit Limit is too long, 7 characters where 6 are allowed: \"UNKNOWN\".",
              "Credit Limit must be a number, not \"UNKNOWN\"."}}));

INSTANTIATE_TEST_SUITE_P(Judge, JudgesWithTruncation,
                         testing::Values(Line{"C123|1234567890|123456", {}},
                                         Line{"C1234|ACME|", {}, {"Code is cut from 5 to 4 characters: \"C1234\"."}},
                                         Line{"C1|12345678901|1234567",
                                              {},
                                              {"Name is cut from 11 to 10 characters: \"12345678901\".",
                                               "Credit Limit is cut from 7 to 6 characters: \"1234567\"."}},
                                         Line{"C1|ACME|12345X7",
                                              {"Credit Limit must be a number, not \"12345X\"."},
                                              {"Credit Limit is cut from 7 to 6 characters: \"12345X7\"."}},
                                         Line{"C1|           |",
                                              {"Name is required but is empty."},
                                              {"Name is cut from 11 to 10 characters: \"           \"."}},
                                         Line{"C1|ACME|100|", {"The line has 4 fields where 3 are expected."}}));

TEST_F(JudgeTest, aTruncatedField_isCutAtACharacter) {
  const std::string line = kFourAccents + "\xC3\x89|ACME|";
  const Verdict verdict = judge(true).judge(line);
  EXPECT_EQ(verdict.fields, (std::vector<std::string_view>{kFourAccents, "ACME", ""}));
  EXPECT_EQ(verdict.key, "[\"" + kFourAccents + "\"]");
}

TEST_F(JudgeTest, aKeyThatAnEarlierLineHas_isAnErrorOnTheLaterLine) {
  Judge customers = judge();
  EXPECT_FALSE(customers.judge("C1|ACME|").hasErrors());
  EXPECT_FALSE(customers.judge("C2|ACME|").hasErrors());
  EXPECT_EQ(customers.judge("C1|OTHER|").errors, Texts{"The record with Code \"C1\" is already on line 1."});
  EXPECT_EQ(customers.judge("C1|THIRD|").errors, Texts{"The record with Code \"C1\" is already on line 1."});
}

TEST_F(JudgeTest, aKeyOnALineWithErrors_counts) {
  Judge customers = judge();
  EXPECT_EQ(customers.judge("C1||").errors, Texts{"Name is required but is empty."});
  EXPECT_EQ(customers.judge("C1|ACME|").errors, Texts{"The record with Code \"C1\" is already on line 1."});
}

TEST_F(JudgeTest, keysThatAreTheSameOnlyAfterTheCut_areTheSame) {
  Judge customers = judge(true);
  EXPECT_FALSE(customers.judge("C123|ACME|").hasErrors());
  EXPECT_EQ(customers.judge("C1234|ACME|").errors, Texts{"The record with Code \"C123\" is already on line 1."});
}

TEST_F(JudgeTest, anEmptyKey_isNoKey) {
  Judge customers = judge();
  customers.judge("|ACME|");
  const Verdict second = customers.judge("|ACME|");
  EXPECT_EQ(second.errors, Texts{"Code is required but is empty."});
  EXPECT_EQ(second.key, "");
}

TEST_F(JudgeTest, aKeyOfTwoColumns_isComparedAsAWhole) {
  Judge invoices = judge(false, "INVOICEAGENT");
  EXPECT_FALSE(invoices.judge("I1|1|").hasErrors());
  EXPECT_FALSE(invoices.judge("I1|2|").hasErrors());
  EXPECT_FALSE(invoices.judge("I2|1|").hasErrors());
  const Verdict again = invoices.judge("I1|2|5");
  EXPECT_EQ(again.key, R"(["I1","2"])");
  EXPECT_EQ(again.errors, Texts{"The record with Number \"I1\", Line \"2\" is already on line 2."});
}

TEST_F(JudgeTest, aStoredRow_isAWarningBehindTheOthers) {
  Judge customers = judge(true);
  Verdict verdict = customers.judge("C2345|ACME|");
  customers.warnOfStoredRow(verdict);
  EXPECT_FALSE(verdict.hasErrors());
  EXPECT_EQ(verdict.warnings, (Texts{"Code is cut from 5 to 4 characters: \"C2345\".",
                                     "The record with Code \"C234\" is already stored and will be updated."}));
}

TEST_F(JudgeTest, aLineOfDelimiters_isCountedWhole) {
  const std::string line(1'000'000, '|');
  const Verdict verdict = judge().judge(line);
  EXPECT_EQ(verdict.errors, Texts{"The line has 1000001 fields where 3 are expected."});
  EXPECT_TRUE(verdict.fields.empty());
}

TEST_F(JudgeTest, theDelimiter_isTheRequests) {
  Judge customers(formats.at("CUSTOMERAGENT"), {'\t', false});
  const Verdict verdict = customers.judge("C1\tA|B\t5");
  EXPECT_FALSE(verdict.hasErrors());
  EXPECT_EQ(verdict.fields, (std::vector<std::string_view>{"C1", "A|B", "5"}));
}

} // namespace imex::import_service::test
