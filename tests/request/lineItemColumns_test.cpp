#include "LineItemTest.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imex::test {
namespace {

const std::string kThirtyDigits = "123456789012345678901234567890";

std::string mustBeNumeric(const std::string& label, const std::string& value) {
  return "Field " + label + " with value " + value + " must be numeric.";
}

std::string mustBeWhole(const std::string& label, const std::string& value) {
  return "Field " + label + " with value " + value + " must be an integer whose value is non-negative.";
}

std::string exceeds(const std::string& label, const std::string& value, const std::string& maximum) {
  return "The amount of field " + label + " with value " + value + " exceeds the maximum amount " + maximum + " .";
}

std::string cannotBeVerified(const std::string& label, const std::string& value) {
  return "The max amount of field " + label + " with value " + value + " cannot be verified.";
}

std::string tooLong(const std::string& label, const std::string& value, const std::string& maximum) {
  return "The maximum length of " + label + " with value " + value + " has been exceeded.  The maximum length is " +
         maximum + ".";
}

std::string repeat(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result += text;
  return result;
}

/// Texts that are no number, in any column.
const Texts kNoNumbers = {" ",     "     ", "\t",    "-",     "+",   "+-5",    "--5",   "-5-",  "5 5",   "- -5",
                          ".",     "-.",    ",",     ",5",    "5,",  "1,,000", "1.2.3", "1.,5", "1.5,0", "e5",
                          "1e",    "1e+",   "1e2.5", "1e2e3", "$",   "$$5",    "5%",    "(5)",  "0x10",  "&H10",
                          "abc",   "5a",    "a5",    "1/2",   "NaN", "inf",    "five",  "٣",    "５",    "é",
                          "\"5\"", "'5",    "1e--2", "5;",    "=5",  "−5"};

class ImExRequestLineItemColumns : public RequestTest {
 protected:
  /// Expects that a row whose field at `column`, counted from 1, is `value` is accepted in every kind of file that has
  /// the column, and that the record keeps the text.
  void expectAccepted(std::size_t column, const std::string& value) { expectJudged(column, value, {}); }

  /// Expects that the row gives this message and no other.
  void expectMessage(std::size_t column, const std::string& value, const std::string& message) {
    expectJudged(column, value, {"1: " + message});
  }

  void expectNoNumbersRefused(std::size_t column, const std::string& label) {
    for (const std::string& value : kNoNumbers)
      expectMessage(column, value, mustBeNumeric(label, value));
  }

 private:
  void expectJudged(std::size_t column, const std::string& value, const Texts& messages) {
    for (const LineItemKind& kind : lineItemKinds()) {
      if (column > kind.columns)
        continue;
      SCOPED_TRACE(kind.name + ", column " + std::to_string(column) + ": [" + value + "]");
      configure(kind.dataType, "AGENT");
      Texts fields = goodFields(kind);
      fields[column - 1] = value;
      importFile(row(fields));
      shown.clear();
      const Items items = kind.serialise(request);
      EXPECT_EQ(shown.empty() ? Texts() : shown[0].messages, messages);
      EXPECT_EQ(items, messages.empty() ? recordsOf({fields}) : recordsOf({}));
    }
  }
};

TEST_F(ImExRequestLineItemColumns, everyColumn_mayBeEmpty) {
  for (std::size_t column = 1; column <= 10; ++column)
    expectAccepted(column, "");
}

TEST_F(ImExRequestLineItemColumns, quantity_isAWholeNumberFrom0To99999) {
  for (const std::string value :
       {"0",  "1",  "99999", "0000099999", "99999.0", "99,999", "9,9,9,9,9", "+5", "5+", " 5", "5 ", "\t5\t",
        "$5", "5$", "-$0",   "$ 0 -",      "1e2",     "1E+2",   "100e-2",    ".0", "5.", "-0", "0.0"})
    expectAccepted(1, value);
}

TEST_F(ImExRequestLineItemColumns, quantityThatIsNoNumber_isRefused) {
  expectNoNumbersRefused(1, "Quantity");
}

TEST_F(ImExRequestLineItemColumns, quantityBelowZero_isRefusedWithoutItsValue) {
  for (const std::string value : {"-1", "1-", "- 1", "-0.6", "-1.5", "-99999", "-2147483648", "-$1", "-1e3"})
    expectMessage(1, value, "Field Quantity cannot be negative.");
}

TEST_F(ImExRequestLineItemColumns, quantityThatIsNotWhole_isRefused) {
  for (const std::string value : {"2.5", "-0.4", "-0.5", "0.5", "99999.5", "1e-1", "0.0001"})
    expectMessage(1, value, mustBeWhole("Quantity", value));
}

TEST_F(ImExRequestLineItemColumns, quantityAbove99999_isRefused) {
  for (const std::string value : {"100000", "100,000", "1e5", "999999999", "2147483647"})
    expectMessage(1, value, exceeds("Quantity", value, "99999"));
}

TEST_F(ImExRequestLineItemColumns, quantityPast32Bits_isToldToBeWhole) {
  for (const std::string& value :
       Texts{"2147483648", "-2147483649", "12345678901", kThirtyDigits, "-" + kThirtyDigits, "1e10", "1e400"})
    expectMessage(1, value, mustBeWhole("Quantity", value));
}

TEST_F(ImExRequestLineItemColumns, quantityOf11Characters_exceedsWhateverItsValue) {
  expectAccepted(1, "0000000001");
  for (const std::string value : {"00000000001", "          1", "1.000000000"})
    expectMessage(1, value, exceeds("Quantity", value, "99999"));
}

TEST_F(ImExRequestLineItemColumns, typeAndBrand_haveAtMost10Characters) {
  const std::vector<std::pair<std::size_t, std::string>> columns = {{2, "Type"}, {3, "Brand"}};
  for (const auto& [column, label] : columns) {
    for (const std::string_view character : {"A", " ", "é", "ß", "€", "中", "😀", "'", "\""}) {
      expectAccepted(column, repeat(character, 10));
      expectMessage(column, repeat(character, 11), tooLong(label, repeat(character, 11), "10"));
    }
    expectAccepted(column, "-");
    expectMessage(column, kThirtyDigits, tooLong(label, kThirtyDigits, "10"));
  }
}

TEST_F(ImExRequestLineItemColumns, catalogNumber_hasAtMost50Characters) {
  for (const std::string_view character : {"A", " ", "é", "ß", "€", "中", "😀", "'", "\""}) {
    expectAccepted(4, repeat(character, 50));
    expectMessage(4, repeat(character, 51), tooLong("Catalog Number", repeat(character, 51), "50"));
  }
  expectAccepted(4, "-");
  expectAccepted(4, kThirtyDigits);
}

TEST_F(ImExRequestLineItemColumns, anAccentOfItsOwn_isACharacter) {
  const std::string accented = "e\u0301";
  expectAccepted(2, repeat(accented, 5));
  expectMessage(2, repeat(accented, 5) + "e", tooLong("Type", repeat(accented, 5) + "e", "10"));
}

struct Labelled {
  std::size_t column;
  std::string label;
};

const std::vector<Labelled> kPrices = {{5, "Column 1 price"}, {7, "Column 2 price"}, {9, "Column 3 price"}};
const std::vector<Labelled> kCommissions = {
    {6, "Column 1 commission"}, {8, "Column 2 commission"}, {10, "Column 3 commission"}};

TEST_F(ImExRequestLineItemColumns, prices_areNumbersUpTo999999) {
  for (const auto& [column, label] : kPrices) {
    for (const std::string value : {"0",       "999999",     "999999.0000", "999999.00005",
                                    "999,999", "-1000000",   "1000000-",    "-922337203685477.5808",
                                    "+12.5",   ".5",         "5.",          "$12.50",
                                    "-$12.50", "$-12.50",    "12.50 $",     " 1 ",
                                    "1e5",     "9.99999E+5", "1e-400",      "00000000000000000000000000000001"})
      expectAccepted(column, value);
  }
}

TEST_F(ImExRequestLineItemColumns, aPriceThatIsNoNumber_isRefusedUnderItsOwnLabel) {
  for (const auto& [column, label] : kPrices)
    expectNoNumbersRefused(column, label);
}

TEST_F(ImExRequestLineItemColumns, anExcessivePrice_isRefusedUnderTheLabelOfTheQuantity) {
  for (const auto& [column, label] : kPrices) {
    for (const std::string value :
         {"1000000", "1,000,000", "999999.0001", "999999.00006", "1e6", "1234567890", "922337203685477.5807"})
      expectMessage(column, value, exceeds("Quantity", value, "999999"));
  }
}

TEST_F(ImExRequestLineItemColumns, aPricePast64Bits_cannotBeVerifiedUnderTheLabelOfTheQuantity) {
  for (const auto& [column, label] : kPrices) {
    for (const std::string& value : Texts{"922337203685477.5808", "-922337203685477.5809", kThirtyDigits, "1e400"})
      expectMessage(column, value, cannotBeVerified("Quantity", value));
  }
}

TEST_F(ImExRequestLineItemColumns, commissions_areNumbersUpTo1) {
  for (const auto& [column, label] : kCommissions) {
    for (const std::string value : {"0", "1", "0.5", ".5", "1.0000", "1.00004", "1.00005", "01", "-7", "7-", "$1",
                                    "1e0", "1e-5", "-922337203685477.5808", "0.123456789012345678901234567890"})
      expectAccepted(column, value);
  }
}

TEST_F(ImExRequestLineItemColumns, aCommissionThatIsNoNumber_isRefused) {
  for (const auto& [column, label] : kCommissions)
    expectNoNumbersRefused(column, label);
}

TEST_F(ImExRequestLineItemColumns, aCommissionAbove1_isRefused) {
  for (const auto& [column, label] : kCommissions) {
    for (const std::string value : {"1.0001", "1.00006", "1.000050001", "1.00015", "2", "1e1", "100", "1234567890",
                                    "12345678901", "922337203685477.5807"})
      expectMessage(column, value, exceeds(label, value, "1"));
  }
}

TEST_F(ImExRequestLineItemColumns, aCommissionPast64Bits_cannotBeVerified) {
  for (const auto& [column, label] : kCommissions) {
    for (const std::string& value : Texts{"922337203685477.5808", kThirtyDigits, "1e400"})
      expectMessage(column, value, cannotBeVerified(label, value));
  }
}

/// Fields that the checks accept, as people write them.
class AcceptedFields {
 public:
  explicit AcceptedFields(unsigned seed) : m_random(seed) {}

  Texts fields(std::size_t count) {
    Texts result = {quantity(), text(10), text(10), text(50)};
    while (result.size() < count)
      result.push_back(result.size() % 2 == 0 ? price() : commission());
    result.resize(count);
    return result;
  }

  unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

 private:
  std::string oneOf(const Texts& choices) { return choices[below(static_cast<unsigned>(choices.size()))]; }

  std::string quantity() {
    if (below(8) == 0)
      return "";
    return oneOf({"", " ", "+", "$"}) + std::to_string(below(100000)) + oneOf({"", " ", ".", ".0", "e0"});
  }

  std::string text(unsigned maximum) {
    std::string result;
    for (unsigned i = below(maximum + 1); i > 0; --i)
      result += oneOf({"A", "z", "7", " ", "-", "\"", "'", ",", "\t", "\n", "\r", "é", "ß", "€", "中", "😀"});
    return result;
  }

  std::string price() {
    if (below(8) == 0)
      return "";
    return oneOf({"", " ", "-", "$", "-$"}) + std::to_string(below(999999)) +
           oneOf({"", ".", ".5", ".99999", " ", "e0"});
  }

  std::string commission() {
    if (below(8) == 0)
      return "";
    return oneOf({"0.", ".", "-12.", "00."}) + std::to_string(below(1000000)) + oneOf({"", " ", "\t", "e-1"});
  }

  std::mt19937 m_random;
};

/// Whether the file would end this line elsewhere than at its end.
bool isCut(const std::string& line) {
  return line.find("\r\n") != std::string::npos || line.ends_with('\r');
}

TEST_F(ImExRequestLineItemColumns, anAcceptedFile_givesBackItsTextsFieldByField) {
  AcceptedFields accepted(20240703);
  for (int file = 0; file < 60; ++file) {
    const LineItemKind& kind = lineItemKinds()[accepted.below(3)];
    configure(kind.dataType, "AGENT");
    std::string bytes;
    std::vector<Texts> expected;
    for (unsigned i = accepted.below(40); i > 0; --i) {
      const Texts fields = accepted.fields(kind.columns);
      const std::string line = join(fields, "|");
      if (isCut(line))
        continue;
      bytes += textLines({line});
      if (length(line) > kind.columns)
        expected.push_back(fields);
    }
    importFile(bytes);

    EXPECT_EQ(kind.serialise(request), recordsOf(expected)) << kind.name << ", file " << file;
    EXPECT_TRUE(shown.empty()) << shown.back().messages.front();
  }
}

} // namespace
} // namespace imex::test
