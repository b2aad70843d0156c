#include "module/validators.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <locale>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// While set, the next allocation of this thread fails, once.
thread_local bool nextAllocationFails = false;

} // namespace

// The functions that replace the library's stay out of line: inlined into a caller, one half of a pair of them looks to
// the compiler like a mismatch with the other.

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (nextAllocationFails) {
    nextAllocationFails = false;
    throw std::bad_alloc();
  }
  if (void* memory = std::malloc(size == 0 ? 1 : size))
    return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace imex::ImExModule {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr bool kOptional = false;
constexpr bool kRequired = true;

struct Case {
  std::string value;
  std::string expected;
};

/// Runs a check over a table of values and whole messages.
template <class Check>
void expectMessages(Check check, const std::vector<Case>& cases) {
  for (const auto& [value, expected] : cases)
    EXPECT_EQ(check(value), expected) << "value \"" << value << '"';
}

std::string lengthOf(std::string_view value) {
  return checkMaxLength("Brand", value, 10, kOptional);
}

std::string numeric(std::string_view value) {
  return checkNumeric("Column 1 price", value, kOptional);
}

std::string quantity(std::string_view value) {
  return checkNonNegativeInteger("Quantity", value, kOptional);
}

std::string quantityAmount(std::string_view value) {
  return checkMaxAmount("Quantity", "Long", value, "99999", kOptional);
}

std::string price(std::string_view value) {
  return checkMaxAmount("Quantity", "Currency", value, "999999", kOptional);
}

std::string commission(std::string_view value) {
  return checkMaxAmount("Column 1 commission", "Currency", value, "1", kOptional);
}

/// `text` the given number of times.
std::string repeated(std::string_view text, int count) {
  std::string result;
  for (; count > 0; --count)
    result += text;
  return result;
}

std::string mustBeNumeric(const std::string& value) {
  return "Field Column 1 price with value " + value + " must be numeric.";
}

std::string mustBeNonNegativeInteger(const std::string& value) {
  return "Field Quantity with value " + value + " must be an integer whose value is non-negative.";
}

std::string quantityExceeds(const std::string& value) {
  return "The amount of field Quantity with value " + value + " exceeds the maximum amount 99999 .";
}

std::string commissionExceeds(const std::string& value) {
  return "The amount of field Column 1 commission with value " + value + " exceeds the maximum amount 1 .";
}

std::string quantityCannotBeVerified(const std::string& value) {
  return "The max amount of field Quantity with value " + value + " cannot be verified.";
}

/// Texts that are no number, of fewer than 11 characters.
const std::vector<std::string> kNoNumbers{
    "abc", " ",     "   ", "\t", "-",    "+",    " - ",   "--5",  "+-5", "5--", "-5-",  "+5+",   "$",    "$$5",  ".",
    "..",  "1.2.3", ",5",  "5,", "1,,2", "1.,5", "1.5,0", "1 2",  "e5",  "1e",  "1e+",  "1e5e5", "0x10", "&H10", "inf",
    "nan", "(5)",   "5%",  "é",  "٣",    "５",   "5\xC2", "5\0"s, "\0"s, "€5",  "１２", "1/2",   "5\r",  "True"};

// --- Empty values ---------------------------------------------------------------------------------------------------

TEST(validators, emptyOptionalValue_passesEveryCheck) {
  EXPECT_EQ(checkMaxLength("Brand", "", 10, kOptional), "");
  EXPECT_EQ(checkNumeric("Column 1 price", "", kOptional), "");
  EXPECT_EQ(checkNonNegativeInteger("Quantity", "", kOptional), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "", "99999", kOptional), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Currency", "", "99999", kOptional), "");
}

TEST(validators, emptyRequiredValue_hasTwoWordings) {
  EXPECT_EQ(checkMaxLength("Brand", "", 10, kRequired), "Brand is a required field.");
  EXPECT_EQ(checkNumeric("Column 1 price", "", kRequired), "Field Column 1 price is a required field.");
  EXPECT_EQ(checkNonNegativeInteger("Quantity", "", kRequired), "Field Quantity is a required field.");
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "", "99999", kRequired), "Quantity is a required field.");
  EXPECT_EQ(checkMaxAmount("Quantity", "Currency", "", "99999", kRequired), "Quantity is a required field.");
}

TEST(validators, emptyValue_isJudgedBeforeAnythingElse) {
  EXPECT_EQ(checkMaxLength("Brand", "", -1, kOptional), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Single", "", "none", kOptional), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Single", "", "none", kRequired), "Quantity is a required field.");
}

TEST(validators, valueThatIsThere_isJudgedAlikeWhenRequired) {
  EXPECT_EQ(checkMaxLength("Brand", "0123456789", 10, kRequired), "");
  EXPECT_EQ(checkNumeric("Column 1 price", "1.5", kRequired), "");
  EXPECT_EQ(checkNonNegativeInteger("Quantity", "2", kRequired), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "99999", "99999", kRequired), "");
  EXPECT_EQ(checkNumeric("Column 1 price", " ", kRequired), mustBeNumeric(" "));
  EXPECT_EQ(checkNonNegativeInteger("Quantity", "2.5", kRequired), mustBeNonNegativeInteger("2.5"));
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "100000", "99999", kRequired), quantityExceeds("100000"));
}

// --- Length ---------------------------------------------------------------------------------------------------------

TEST(validators, valueOfTheGreatestLength_passes) {
  expectMessages(lengthOf, {{"1", ""}, {"123456789", ""}, {"1234567890", ""}, {"          ", ""}});
  EXPECT_EQ(checkMaxLength("Catalog Number", std::string(49, 'x'), 50, kOptional), "");
  EXPECT_EQ(checkMaxLength("Catalog Number", std::string(50, 'x'), 50, kOptional), "");
}

TEST(validators, valueLongerThanTheGreatestLength_isNamedWithIt) {
  EXPECT_EQ(lengthOf("12345678901"),
            "The maximum length of Brand with value 12345678901 has been exceeded.  The maximum "
            "length is 10.");
  EXPECT_EQ(lengthOf("           "),
            "The maximum length of Brand with value             has been exceeded.  The maximum "
            "length is 10.");
  EXPECT_EQ(
      checkMaxLength("Catalog Number", std::string(51, 'x'), 50, kOptional),
      "The maximum length of Catalog Number with value xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx has been "
      "exceeded.  The maximum length is 50.");
}

TEST(validators, length_countsCharactersAndNotBytes) {
  for (const std::string_view character : {"é"sv, "€"sv, "\U0001F600"sv}) {
    const std::string longest = repeated(character, 10);
    const std::string tooLong = repeated(character, 11);
    EXPECT_EQ(lengthOf(longest), "");
    EXPECT_EQ(lengthOf(tooLong),
              "The maximum length of Brand with value " + tooLong + " has been exceeded.  The maximum length is 10.");
  }
}

TEST(validators, brokenUtf8_countsByBytes) {
  EXPECT_EQ(lengthOf(std::string(10, '\xFF')), "");
  EXPECT_EQ(lengthOf(std::string(11, '\xFF')), "The maximum length of Brand with value " + std::string(11, '\xFF') +
                                                   " has been exceeded.  The maximum length is 10.");
}

TEST(validators, greatestLength_mayBeAnyInteger) {
  EXPECT_EQ(checkMaxLength("Type", "x", 1, kOptional), "");
  EXPECT_EQ(checkMaxLength("Type", "x", 0, kOptional),
            "The maximum length of Type with value x has been exceeded.  The maximum length is 0.");
  EXPECT_EQ(checkMaxLength("Type", "x", -1, kOptional),
            "The maximum length of Type with value x has been exceeded.  The maximum length is -1.");
  EXPECT_EQ(checkMaxLength("Type", std::string(32767, 'x'), 32767, kOptional), "");
  EXPECT_EQ(checkMaxLength("Type", std::string(32768, 'x'), 32767, kOptional),
            "The maximum length of Type with value " + std::string(32768, 'x') +
                " has been exceeded.  The maximum length is 32767.");
}

// --- Numeric --------------------------------------------------------------------------------------------------------

TEST(validators, numbersOfEveryForm_areNumeric) {
  for (const std::string value : {"0",
                                  "1",
                                  "-1",
                                  "5-",
                                  "+5",
                                  " 5 ",
                                  "1.5",
                                  ".5",
                                  "5.",
                                  "1,234.50",
                                  "$5",
                                  "-$5",
                                  "5$",
                                  "1e5",
                                  "1E-5",
                                  "1e400",
                                  "1234567890",
                                  "12345678901",
                                  "123456789012345678901234567890",
                                  "0.00000000000000000000000000001"})
    EXPECT_EQ(numeric(value), "") << value;
}

TEST(validators, anythingElse_mustBeNumeric) {
  EXPECT_EQ(numeric("abc"), "Field Column 1 price with value abc must be numeric.");
  for (const std::string& value : kNoNumbers)
    EXPECT_EQ(numeric(value), mustBeNumeric(value));
}

// --- Whole numbers from 0 -------------------------------------------------------------------------------------------

TEST(validators, wholeNumbersFromZero_pass) {
  expectMessages(quantity, {{"0", ""},
                            {"-0", ""},
                            {"1", ""},
                            {"007", ""},
                            {" 12 ", ""},
                            {"1,234", ""},
                            {"$5", ""},
                            {"5.", ""},
                            {"5.000", ""},
                            {"1e3", ""},
                            {"1.5e1", ""},
                            {"2147483646", ""},
                            {"2147483647", ""}});
}

TEST(validators, textAsQuantity_mustBeNumeric) {
  EXPECT_EQ(quantity("abc"), "Field Quantity with value abc must be numeric.");
  for (const std::string& value : kNoNumbers)
    EXPECT_EQ(quantity(value), "Field Quantity with value " + value + " must be numeric.");
}

TEST(validators, numberBelowZeroWhenRounded_cannotBeNegative) {
  const std::string negative = "Field Quantity cannot be negative.";
  expectMessages(quantity, {{"-1", negative},
                            {"1-", negative},
                            {"-$1", negative},
                            {"-2.5", negative},
                            {"-1.5", negative},
                            {"-0.6", negative},
                            {"-0.50000001", negative},
                            {"-2147483648", negative}});
}

TEST(validators, fraction_mustBeAnInteger) {
  EXPECT_EQ(quantity("2.5"), "Field Quantity with value 2.5 must be an integer whose value is non-negative.");
  for (const std::string value : {"0.5", "1.5", "0.4", "2.4", "1e-1", "0.0001", "1.00005", "2147483646.5", ".5"})
    EXPECT_EQ(quantity(value), mustBeNonNegativeInteger(value));
}

TEST(validators, negativeFractionThatRoundsToZero_mustBeAnInteger) {
  for (const std::string value : {"-0.4", "-0.5", "-0.0001", "0.4-"})
    EXPECT_EQ(quantity(value), mustBeNonNegativeInteger(value));
}

TEST(validators, numberPast32Bits_mustBeAnInteger) {
  for (const std::string value : {"2147483648", "3000000000", "-2147483649", "-3000000000", "2147483647.5",
                                  "9999999999", "12345678901", "123456789012345678901234567890", "1e400", "-1e400"})
    EXPECT_EQ(quantity(value), mustBeNonNegativeInteger(value));
}

TEST(validators, fractionThatADoubleCannotHold_countsAsWhole) {
  EXPECT_EQ(quantity("1.00000000000000000000000000001"), "");
  EXPECT_EQ(quantity("1e-400"), "");
}

// --- Amounts of kind Long -------------------------------------------------------------------------------------------

TEST(validators, longAmountUpToTheMaximum_passes) {
  expectMessages(quantityAmount, {{"0", ""},
                                  {"1", ""},
                                  {"99998", ""},
                                  {"99999", ""},
                                  {"0000099999", ""},
                                  {"  99,999  ", ""},
                                  {"$99,999.00", ""},
                                  {"9.9999e4", ""},
                                  {"-100000", ""},
                                  {"-999999999", ""}});
}

TEST(validators, longAmountAboveTheMaximum_exceedsIt) {
  EXPECT_EQ(quantityAmount("100000"),
            "The amount of field Quantity with value 100000 exceeds the maximum amount 99999 .");
  for (const std::string value : {"100,000", "1e5", "1000000000", "2147483647"})
    EXPECT_EQ(quantityAmount(value), quantityExceeds(value));
}

TEST(validators, longAmount_isComparedRoundedHalfToEven) {
  expectMessages(quantityAmount, {{"99998.5", ""}, {"99999.4", ""}, {"99999.5", quantityExceeds("99999.5")}});
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "2.5", "2", kOptional), "");
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "2", "1.5", kOptional), "");
}

TEST(validators, longAmountOfElevenCharacters_exceedsWithoutConversion) {
  for (const std::string value : {"00000000001", "          1", "-2147483648", "-0000000001", "12345678901",
                                  "abcdefghijk", "           ", "123456789012345678901234567890", "éééééééééée"})
    EXPECT_EQ(quantityAmount(value), quantityExceeds(value));
  EXPECT_EQ(checkMaxAmount("Quantity", "Long", "00000000001", "none", kOptional),
            "The amount of field Quantity with value 00000000001 exceeds the maximum amount none .");
}

TEST(validators, longAmountOfTenCharacters_isConverted) {
  expectMessages(quantityAmount, {{"0000000001", ""},
                                  {"         1", ""},
                                  {"abcdefghij", quantityCannotBeVerified("abcdefghij")},
                                  {"éééééééééé", quantityCannotBeVerified("éééééééééé")},
                                  {"3000000000", quantityCannotBeVerified("3000000000")},
                                  {"2147483648", quantityCannotBeVerified("2147483648")}});
}

TEST(validators, longAmountCharacters_areCodePoints) {
  // Ten characters, of which the two no-break blanks take two bytes each.
  EXPECT_EQ(quantityAmount("\u00A000000001\u00A0"), "");
  EXPECT_EQ(quantityAmount("\u00A0000000001\u00A0"), quantityExceeds("\u00A0000000001\u00A0"));
}

TEST(validators, longAmountThatDoesNotConvert_cannotBeVerified) {
  EXPECT_EQ(quantityAmount("abc"), "The max amount of field Quantity with value abc cannot be verified.");
  for (const std::string& value : kNoNumbers)
    EXPECT_EQ(quantityAmount(value), quantityCannotBeVerified(value));
  EXPECT_EQ(quantityAmount("1e10"), quantityCannotBeVerified("1e10"));
}

// --- Amounts of kind Currency ---------------------------------------------------------------------------------------

TEST(validators, priceUpToTheMaximum_passes) {
  expectMessages(price, {{"0", ""},
                         {"0.5", ""},
                         {"999998", ""},
                         {"999998.9999", ""},
                         {"999999", ""},
                         {"$999,999.00", ""},
                         {"000000000000000000000000999999", ""},
                         {"-922337203685477.5808", ""}});
}

TEST(validators, priceAboveTheMaximum_exceedsIt) {
  EXPECT_EQ(price("1000000"), "The amount of field Quantity with value 1000000 exceeds the maximum amount 999999 .");
  for (const std::string value : {"999999.0001", "1e6", "1234567890", "12345678901", "922337203685477.5807"})
    EXPECT_EQ(price(value),
              "The amount of field Quantity with value " + value + " exceeds the maximum amount 999999 .");
}

TEST(validators, commissionUpToOne_passes) {
  expectMessages(commission, {{"1", ""}, {"0.5", ""}, {"0.9999", ""}, {"1.0000", ""}, {"-1", ""}, {"1e0", ""}});
}

TEST(validators, commissionAboveOne_exceedsIt) {
  EXPECT_EQ(commission("1.0001"),
            "The amount of field Column 1 commission with value 1.0001 exceeds the maximum amount 1 .");
  for (const std::string value : {"1.1", "2", "1e1", "1234567890", "12345678901"})
    EXPECT_EQ(commission(value), commissionExceeds(value));
}

TEST(validators, currencyAmount_isComparedInFourPlacesRoundedHalfToEven) {
  expectMessages(commission, {{"1.00004", ""},
                              {"1.00005", ""},
                              {"1.000050000000000000000001", commissionExceeds("1.000050000000000000000001")},
                              {"1.00006", commissionExceeds("1.00006")},
                              {"1.00015", commissionExceeds("1.00015")}});
  EXPECT_EQ(checkMaxAmount("Price", "Currency", "1.0002", "1.00015", kOptional), "");
}

TEST(validators, currencyAmountThatDoesNotConvert_cannotBeVerified) {
  EXPECT_EQ(commission("abc"), "The max amount of field Column 1 commission with value abc cannot be verified.");
  for (const std::string& value : kNoNumbers)
    EXPECT_EQ(price(value), quantityCannotBeVerified(value));
}

TEST(validators, currencyAmountPast64Bits_cannotBeVerified) {
  for (const std::string value : {"922337203685477.5808", "-922337203685477.5809", "123456789012345678901234567890",
                                  "1e400", "-1e400", "1e999999999999"})
    EXPECT_EQ(price(value), quantityCannotBeVerified(value));
}

// --- Kinds and maxima -----------------------------------------------------------------------------------------------

TEST(validators, otherKind_cannotBeVerified) {
  for (const std::string_view kind :
       {"", "long", "LONG", "currency", "CURRENCY", "Long ", " Long", "Single", "Integer"})
    EXPECT_EQ(checkMaxAmount("Quantity", kind, "1", "99999", kOptional), quantityCannotBeVerified("1")) << kind;
}

TEST(validators, maximumThatDoesNotConvert_cannotBeVerified) {
  for (const std::string_view kind : {"Long", "Currency"})
    for (const std::string_view maximum : {"", " ", "none", "1e400"})
      EXPECT_EQ(checkMaxAmount("Quantity", kind, "1", maximum, kOptional), quantityCannotBeVerified("1"))
          << kind << ' ' << maximum;
}

TEST(validators, maximum_isShownAsItIsGiven) {
  EXPECT_EQ(checkMaxAmount("Price", "Currency", "$1,000.01", " 1,000.00 ", kOptional),
            "The amount of field Price with value $1,000.01 exceeds the maximum amount  1,000.00  .");
}

// --- Locale and failures --------------------------------------------------------------------------------------------

class DecimalComma : public std::numpunct<wchar_t> {
 protected:
  wchar_t do_thousands_sep() const override { return L'.'; }
  wchar_t do_decimal_point() const override { return L','; }
};

TEST(validators, locale_isTheSameForAllChecks) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
  const std::vector<std::string> found{numeric("1.234,5"),       numeric("1,234.5"), quantity("1.000"), quantity("2,5"),
                                       quantityAmount("99.999"), commission("0,5"),  commission("1.5")};
  std::locale::global(before);
  EXPECT_EQ(found, (std::vector<std::string>{"", mustBeNumeric("1,234.5"), "", mustBeNonNegativeInteger("2,5"), "", "",
                                             commissionExceeds("1.5")}));
}

/// What `check` gives when its first allocation fails.
template <class Check>
std::string withoutMemory(Check check) {
  nextAllocationFails = true;
  std::string result = check();
  EXPECT_FALSE(nextAllocationFails) << "nothing was allocated";
  nextAllocationFails = false;
  return result;
}

TEST(validators, failureInsideACheck_becomesItsMessage) {
  EXPECT_EQ(withoutMemory([] { return lengthOf("12345678901"); }),
            "The maximum length of Brand with value 12345678901 cannot be verified.  The maximum length is 10.");
  EXPECT_EQ(withoutMemory([] { return checkNumeric("Column 1 price", "", kRequired); }),
            "Field Column 1 price with value  must be numeric.");
  EXPECT_EQ(withoutMemory([] { return quantity("-1"); }),
            "Field Quantity with value -1 must be an integer whose value is non-negative.");
  EXPECT_EQ(withoutMemory([] { return quantityAmount("100000"); }),
            "The max amount of field Quantity with value 100000 cannot be verified.");
}

} // namespace

} // namespace imex::ImExModule
