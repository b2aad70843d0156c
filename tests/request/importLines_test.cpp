#include "request/importLines.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imex::test {
namespace {

constexpr int kPipe = 124;
constexpr int kTab = 9;

const std::vector<std::string> kTypes = {"CUSTOMER",        "PRODUCT",       "INVOICE",       "COMMISSION", "BALLASTS",
                                         "PROJECTLINEITEM", "QUOTELINEITEM", "ORDERLINEITEM", "customer",   ""};
const std::vector<std::string> kOrigins = {"AGENT", "HALVIK", "agent", ""};

/// All combinations whose lines are sent, as "type origin".
std::vector<std::string> sentOn(Road road) {
  std::vector<std::string> result;
  for (const std::string& type : kTypes) {
    for (const std::string& origin : kOrigins) {
      if (areLinesSent(type, origin, road)) {
        std::string both = type;
        result.push_back(both.append(" ").append(origin));
      }
    }
  }
  return result;
}

/// A line of a file as it is sent.
std::string lineAsSent(std::string_view line, std::string_view dataType, std::string_view dataOrigin,
                       Integer delimiterAscii) {
  return std::string(SentLines(dataType, dataOrigin, delimiterAscii).asSent(line));
}

TEST(importLines, theSendRoad_leavesOutTheManufacturersCustomers) {
  EXPECT_EQ(sentOn(Road::send), (std::vector<std::string>{"CUSTOMER AGENT", "PRODUCT AGENT", "INVOICE AGENT",
                                                          "COMMISSION AGENT", "BALLASTS HALVIK"}));
}

TEST(importLines, theInstantRoad_sendsTheManufacturersCustomersToo) {
  EXPECT_EQ(sentOn(Road::instant), (std::vector<std::string>{"CUSTOMER AGENT", "CUSTOMER HALVIK", "PRODUCT AGENT",
                                                             "INVOICE AGENT", "COMMISSION AGENT", "BALLASTS HALVIK"}));
}

TEST(importLines, aMethodTakesThem_whereLinesAreSentOnTheInstantRoad) {
  for (const std::string& type : kTypes) {
    for (const std::string& origin : kOrigins)
      EXPECT_EQ(!instantMethod(type, origin).empty(), areLinesSent(type, origin, Road::instant)) << type << origin;
  }
  EXPECT_EQ(instantMethod("COMMISSION", "AGENT"), "importCommissionsInstant");
}

TEST(importLines, aLine_isSentInCapitalsWithADelimiterBehind) {
  EXPECT_EQ(lineAsSent("abc|Def|1a", "INVOICE", "AGENT", kPipe), "ABC|DEF|1A|");
  EXPECT_EQ(lineAsSent("abc\tDef", "BALLASTS", "HALVIK", kTab), "ABC\tDEF\t");
}

TEST(importLines, lettersBeyondAscii_becomeCapitalsOneByOne) {
  EXPECT_EQ(lineAsSent("é ü ñ œ ÿ ж ω ß ı", "INVOICE", "AGENT", kPipe), "É Ü Ñ Œ Ÿ Ж Ω ß I|");
}

TEST(importLines, aTrailingDelimiter_isFollowedByAnother) {
  EXPECT_EQ(lineAsSent("a|b|", "COMMISSION", "AGENT", kPipe), "A|B||");
}

TEST(importLines, blanks_areKept) {
  EXPECT_EQ(lineAsSent("  a | b  ", "CUSTOMER", "AGENT", kPipe), "  A | B  |");
}

TEST(importLines, agentProducts_loseEveryQuoteCharacter) {
  EXPECT_EQ(lineAsSent("6\" x 4' \"lamp\"|''|\"", "PRODUCT", "AGENT", kPipe), "6 X 4 LAMP|||");
}

TEST(importLines, onlyStraightQuotes_areQuoteCharacters) {
  EXPECT_EQ(lineAsSent("`a´ “b” ‘c’ «d»", "PRODUCT", "AGENT", kPipe), "`A´ “B” ‘C’ «D»|");
}

TEST(importLines, otherTypesAndLayouts_keepTheirQuotes) {
  for (const auto& [type, origin] : std::vector<std::pair<std::string, std::string>>{{"CUSTOMER", "AGENT"},
                                                                                     {"CUSTOMER", "HALVIK"},
                                                                                     {"INVOICE", "AGENT"},
                                                                                     {"COMMISSION", "AGENT"},
                                                                                     {"BALLASTS", "HALVIK"}})
    EXPECT_EQ(lineAsSent("6\" x 4'", type, origin, kPipe), "6\" X 4'|") << type << origin;
}

} // namespace
} // namespace imex::test
