#include "runtime/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imex {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

/// What `convert` gives as text, "error" and the number where it raises.
template <class Convert>
std::string outcome(Convert convert) {
  try {
    return std::to_string(convert());
  } catch (const RuntimeError& error) {
    return "error " + std::to_string(error.number());
  }
}

std::string longOf(std::string_view text) {
  return outcome([&] { return toLong(text); });
}

std::string integerOf(std::string_view text) {
  return outcome([&] { return int{toInteger(text)}; });
}

/// In ten-thousandths.
std::string currencyOf(std::string_view text) {
  return outcome([&] { return toCurrency(text).tenThousandths(); });
}

std::string doubleOf(std::string_view text) {
  return outcome([&] { return toDouble(text); });
}

struct Conversion {
  std::string_view text;
  std::string_view expected;
};

template <class Convert>
void expectConversions(Convert convert, const std::vector<Conversion>& cases) {
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(convert(text), expected) << '"' << text << '"';
}

/// isNumeric and every conversion have to agree on what is no number.
void expectNoNumbers(const std::vector<std::string_view>& texts) {
  for (const std::string_view text : texts) {
    EXPECT_FALSE(isNumeric(text)) << '"' << text << '"';
    EXPECT_EQ(longOf(text), "error 13") << '"' << text << '"';
    EXPECT_EQ(integerOf(text), "error 13") << '"' << text << '"';
    EXPECT_EQ(currencyOf(text), "error 13") << '"' << text << '"';
    EXPECT_EQ(doubleOf(text), "error 13") << '"' << text << '"';
  }
}

class Separators : public std::numpunct<wchar_t> {
 public:
  Separators(wchar_t thousands, wchar_t decimal) : m_thousands(thousands), m_decimal(decimal) {}

 protected:
  wchar_t do_thousands_sep() const override { return m_thousands; }
  wchar_t do_decimal_point() const override { return m_decimal; }

 private:
  wchar_t m_thousands;
  wchar_t m_decimal;
};

class CurrencySign : public std::moneypunct<wchar_t, false> {
 public:
  explicit CurrencySign(std::wstring text) : m_text(std::move(text)) {}

 protected:
  string_type do_curr_symbol() const override { return m_text; }

 private:
  std::wstring m_text;
};

/// Makes a locale of these separators and this currency sign the global one as long as it lives.
class WithLocale {
 public:
  WithLocale(wchar_t thousands, wchar_t decimal, std::wstring sign)
      : m_before(
            std::locale::global(std::locale(std::locale(std::locale::classic(), new Separators(thousands, decimal)),
                                            new CurrencySign(std::move(sign))))) {}
  ~WithLocale() { std::locale::global(m_before); }
  WithLocale(const WithLocale&) = delete;
  WithLocale& operator=(const WithLocale&) = delete;

 private:
  std::locale m_before;
};

// --- What a number is -----------------------------------------------------------------------------------------------

TEST(numbers, digits_areANumber) {
  for (const std::string_view text : {"0", "7", "0123456789", "000", "00012", "123456789012345678901234567890"})
    EXPECT_TRUE(isNumeric(text)) << text;
}

TEST(numbers, emptyText_isNoNumber) {
  expectNoNumbers({"", std::string_view()});
}

TEST(numbers, blanksOnly_areNoNumber) {
  expectNoNumbers({" ", "   ", "\t", " \t ", "\u00A0", "\u202F"});
}

TEST(numbers, blanksAround_areSkipped) {
  expectConversions(longOf, {{" 12", "12"},
                             {"12 ", "12"},
                             {" \t 12 \t ", "12"},
                             {"\u00A012\u00A0", "12"},
                             {"\u202F12\u202F", "12"},
                             {" - 12", "-12"},
                             {"12 - ", "-12"},
                             {"$ 12", "12"},
                             {"12 $", "12"}});
}

TEST(numbers, otherWhiteSpace_isNoBlank) {
  expectNoNumbers({"\r12", "12\n", "12\r\n", "\v12", "12\f", "\u200312", "\u300012", "\uFEFF12"});
}

TEST(numbers, blanksAmongDigits_areNoNumber) {
  expectNoNumbers({"1 2", "1\t2", "1 .5", "1. 5", "1 e5", "1e 5", "1e- 5", "1\u00A02"});
}

TEST(numbers, oneSign_mayStandInFrontOrBehind) {
  expectConversions(longOf, {{"+5", "5"}, {"-5", "-5"}, {"5+", "5"}, {"5-", "-5"}, {"-0", "0"}, {"0-", "0"}});
}

TEST(numbers, signAlone_isNoNumber) {
  expectNoNumbers({"+", "-", " - ", "-.", "-$", "-e5"});
}

TEST(numbers, twoSigns_areNoNumber) {
  expectNoNumbers({"--5", "++5", "+-5", "-+5", "- -5", "5--", "5+-", "5- -", "-5-", "+5+", "-5+", "-$-5", "-5$-"});
}

TEST(numbers, otherFormsOfNegation_areNoNumber) {
  expectNoNumbers({"(5)", "\u22125", "\u20135", "5CR", "~5"});
}

TEST(numbers, oneCurrencySign_mayStandOnEitherSideOfTheSign) {
  expectConversions(currencyOf, {{"$5", "50000"},
                                 {"5$", "50000"},
                                 {"-$5", "-50000"},
                                 {"$-5", "-50000"},
                                 {"5-$", "-50000"},
                                 {"5$-", "-50000"},
                                 {"$5-", "-50000"},
                                 {"-5$", "-50000"},
                                 {" - $ 5 ", "-50000"},
                                 {"$1,234.50", "12345000"},
                                 {"$1e3", "10000000"}});
}

TEST(numbers, currencySignAloneOrTwice_isNoNumber) {
  expectNoNumbers({"$", "$$5", "5$$", "$5$", "-$", "$.", "1$2", "1.$5", "1e$5"});
}

TEST(numbers, foreignCurrencySign_isNoNumber) {
  expectNoNumbers({"€5", "5€", "£5", "USD5", "5 kr"});
}

TEST(numbers, thousandsSeparators_standBetweenDigitsInAnyGroups) {
  expectConversions(
      longOf, {{"1,234", "1234"}, {"1,234,567", "1234567"}, {"1,2", "12"}, {"0,5", "5"}, {"12,34,567", "1234567"}});
  expectConversions(currencyOf, {{"1,234.5", "12345000"}, {"0,001.5", "15000"}});
}

TEST(numbers, thousandsSeparatorInAWrongPlace_isNoNumber) {
  expectNoNumbers({",", ",5", "5,", "1,,2", "1,.5", "1.,5", "1.5,", "1.5,000", "1,e5", "1e1,0", "-,5", "$,5", "5,-"});
}

TEST(numbers, decimalSeparator_needsDigitsOnOneSide) {
  expectConversions(currencyOf,
                    {{"1.5", "15000"}, {".5", "5000"}, {"5.", "50000"}, {"-.5", "-5000"}, {"5.-", "-50000"}});
  expectNoNumbers({".", "..", " . ", ".e5", "1..5", "1.2.3", ".5.", "..5"});
}

TEST(numbers, exponent_shiftsTheDecimalPoint) {
  expectConversions(longOf, {{"1e3", "1000"},
                             {"1E3", "1000"},
                             {"1e+3", "1000"},
                             {"1.5e3", "1500"},
                             {"1500e-2", "15"},
                             {".5e1", "5"},
                             {"5.e1", "50"},
                             {"1e0003", "1000"},
                             {"1,234e1", "12340"},
                             {"0e5", "0"}});
}

TEST(numbers, signBehindAnExponent_isThatOfTheNumber) {
  expectConversions(longOf, {{"1e3-", "-1000"}, {"1e+3-", "-1000"}, {"-1e3", "-1000"}, {"100e-2-", "-1"}});
  expectNoNumbers({"-1e3-", "1e--3", "1e+-3"});
}

TEST(numbers, exponentWithoutDigits_isNoNumber) {
  expectNoNumbers({"1e", "1E", "1e+", "1e-", "e5", "E", "1e5e5", "1e5.0", "1e.5", "1ee5", "1e5 5"});
}

TEST(numbers, otherLettersAndBases_areNoNumber) {
  expectNoNumbers({"abc",   "12a",   "a12",      "0x10", "&H10", "&O7",    "10h",   "1d5", "1D5",
                   "1_000", "1'000", "5%",       "#5",   "1/2",  "/5",     "1:2",   "5:",  "inf",
                   "-inf",  "INF",   "infinity", "nan",  "NaN",  "nan(1)", "1#INF", "True"});
}

TEST(numbers, charactersBeyondAscii_areNoDigits) {
  expectNoNumbers({"é", "5é", "٣", "\uFF15", "²", "½", "1٫5", "１２"});
}

TEST(numbers, brokenUtf8_isNoNumber) {
  expectNoNumbers({"\xA0"
                   "5",
                   "5\xA0", "5\xC2",
                   "\xC2"
                   "5",
                   "5\xE2\x80", "\xFF", "5\xFF"});
}

TEST(numbers, embeddedNul_isNoNumber) {
  expectNoNumbers({"\0"sv, "5\0"sv,
                   "\0"
                   "5"sv,
                   "5\0"
                   "5"sv,
                   "1e\0"
                   "5"sv});
}

TEST(numbers, sizeDoesNotDecideWhatIsANumber) {
  const std::string longest(100'000, '9');
  for (const std::string& text : {"1e400"s, "-1e400"s, "1e-400"s, "1e999999999999"s, "1e-999999999999"s,
                                  "1e99999999999999999999999999"s, longest, "0." + longest})
    EXPECT_TRUE(isNumeric(text)) << text.substr(0, 40);
}

// --- 32 and 16 bits -------------------------------------------------------------------------------------------------

TEST(numbers, aHalf_roundsToEvenLong) {
  expectConversions(longOf, {{"0.5", "0"},
                             {"1.5", "2"},
                             {"2.5", "2"},
                             {"3.5", "4"},
                             {"-0.5", "0"},
                             {"-1.5", "-2"},
                             {"-2.5", "-2"},
                             {"5e-1", "0"},
                             {"15e-1", "2"},
                             {"0.50", "0"},
                             {"2.5000000000000000000000000000000", "2"}});
}

TEST(numbers, besideAHalf_roundsToTheNearestLong) {
  expectConversions(longOf, {{"0.4", "0"},
                             {"-0.4", "0"},
                             {"0.6", "1"},
                             {"-0.6", "-1"},
                             {"0.49999999999999999999999", "0"},
                             {"0.50000000000000000000001", "1"},
                             {"2.50000000000000000000001", "3"},
                             {"1.49999999999999999999999", "1"},
                             {"0.05", "0"},
                             {"0.09", "0"},
                             {"9.5", "10"},
                             {"99.5", "100"},
                             {"0.95", "1"}});
}

TEST(numbers, long_endsAtItsLimits) {
  expectConversions(longOf, {{"2147483646", "2147483646"},
                             {"2147483647", "2147483647"},
                             {"2147483648", "error 6"},
                             {"-2147483647", "-2147483647"},
                             {"-2147483648", "-2147483648"},
                             {"-2147483649", "error 6"}});
}

TEST(numbers, longLimits_areThoseOfTheRoundedNumber) {
  expectConversions(longOf, {{"2147483647.4999999999", "2147483647"},
                             {"2147483647.5", "error 6"},
                             {"-2147483648.5", "-2147483648"},
                             {"-2147483648.50000000001", "error 6"}});
}

TEST(numbers, integer_endsAtItsLimits) {
  expectConversions(integerOf, {{"32766", "32766"},
                                {"32767", "32767"},
                                {"32768", "error 6"},
                                {"32767.5", "error 6"},
                                {"32766.5", "32766"},
                                {"-32768", "-32768"},
                                {"-32768.5", "-32768"},
                                {"-32769", "error 6"},
                                {"3000000000", "error 6"}});
}

TEST(numbers, leadingZeros_doNotCount) {
  const std::string zeros(1000, '0');
  EXPECT_EQ(longOf(zeros + "42"), "42");
  EXPECT_EQ(longOf("-" + zeros + "1.5"), "-2");
  EXPECT_EQ(longOf(zeros), "0");
  EXPECT_EQ(currencyOf(zeros + ".5"), "5000");
}

TEST(numbers, manyDigits_areTakenExactly) {
  const std::string zeros(1000, '0');
  EXPECT_EQ(longOf("1" + zeros + "e-1000"), "1");
  EXPECT_EQ(longOf("0." + zeros + "7e1001"), "7");
  EXPECT_EQ(longOf("2.5" + zeros + "1"), "3");
  EXPECT_EQ(longOf("2.5" + zeros), "2");
}

TEST(numbers, greatNumbers_overflowEveryFixedSize) {
  for (const std::string_view text :
       {"3000000000e9"sv, "99999999999999999999"sv, "123456789012345678901234567890"sv, "-1e30"sv, "1e400"sv,
        "1e999999999999"sv, "-1e99999999999999999999999999"sv, "0.001e999999999999"sv}) {
    EXPECT_EQ(longOf(text), "error 6") << text;
    EXPECT_EQ(integerOf(text), "error 6") << text;
    EXPECT_EQ(currencyOf(text), "error 6") << text;
  }
}

TEST(numbers, smallNumbers_roundToZero) {
  for (const std::string_view text :
       {"1e-5"sv, "-1e-5"sv, "1e-400"sv, "9e-999999999999"sv, "-9e-99999999999999999999999999"sv}) {
    EXPECT_EQ(longOf(text), "0") << text;
    EXPECT_EQ(currencyOf(text), "0") << text;
  }
}

TEST(numbers, zero_isZeroUnderEveryExponent) {
  for (const std::string_view text : {"0"sv, "-0"sv, "0.000"sv, "0e999999999999"sv, "-0.0e-999999999999"sv}) {
    EXPECT_EQ(longOf(text), "0") << text;
    EXPECT_EQ(currencyOf(text), "0") << text;
    EXPECT_EQ(doubleOf(text), "0.000000") << text;
  }
}

// --- Currency -------------------------------------------------------------------------------------------------------

TEST(numbers, currency_hasFourPlaces) {
  expectConversions(currencyOf, {{"1", "10000"},
                                 {"0.0001", "1"},
                                 {"-0.0001", "-1"},
                                 {"1.0001", "10001"},
                                 {"1,234,567.8901", "12345678901"},
                                 {"1e-4", "1"},
                                 {"12e2", "12000000"}});
}

TEST(numbers, aHalfBehindTheFourthPlace_roundsToEven) {
  expectConversions(currencyOf, {{"1.00005", "10000"},
                                 {"1.00015", "10002"},
                                 {"1.00025", "10002"},
                                 {"-1.00005", "-10000"},
                                 {"-1.00015", "-10002"},
                                 {"0.00005", "0"},
                                 {"1.000050000", "10000"}});
}

TEST(numbers, besideAHalfBehindTheFourthPlace_roundsToTheNearest) {
  expectConversions(currencyOf, {{"1.00004", "10000"},
                                 {"1.00006", "10001"},
                                 {"1.0000499999999999999999", "10000"},
                                 {"1.0000500000000000000001", "10001"},
                                 {"0.00001", "0"},
                                 {"0.00009", "1"},
                                 {"-0.00009", "-1"}});
}

TEST(numbers, currency_endsAtItsLimits) {
  expectConversions(currencyOf, {{"922337203685477.5806", "9223372036854775806"},
                                 {"922337203685477.5807", "9223372036854775807"},
                                 {"922337203685477.5808", "error 6"},
                                 {"-922337203685477.5807", "-9223372036854775807"},
                                 {"-922337203685477.5808", "-9223372036854775808"},
                                 {"-922337203685477.5809", "error 6"}});
}

TEST(numbers, currencyLimits_areThoseOfTheRoundedNumber) {
  expectConversions(currencyOf, {{"922337203685477.58074999", "9223372036854775807"},
                                 {"922337203685477.58075", "error 6"},
                                 {"-922337203685477.58085", "-9223372036854775808"},
                                 {"-922337203685477.580850001", "error 6"},
                                 {"999999999999999.99995", "error 6"},
                                 {"9999999999999999", "error 6"}});
}

TEST(numbers, currency_keepsDigitsThatADoubleLoses) {
  EXPECT_EQ(currencyOf("900000000000000.0001"), "9000000000000000001");
  EXPECT_EQ(currencyOf("123456789012345.6789"), "1234567890123456789");
}

TEST(numbers, amounts_compareByValue) {
  EXPECT_EQ(toCurrency("1"), toCurrency("1.0000"));
  EXPECT_LT(toCurrency("-1"), toCurrency("0.0001"));
  EXPECT_GT(toCurrency("1.0001"), toCurrency("1"));
  EXPECT_EQ(Currency(), toCurrency("0"));
}

// --- Double ---------------------------------------------------------------------------------------------------------

TEST(numbers, double_isTheNearest) {
  EXPECT_EQ(toDouble("0.1"), 0.1);
  EXPECT_EQ(toDouble("-1,234.5"), -1234.5);
  EXPECT_EQ(toDouble("$1.5e3-"), -1500.0);
  EXPECT_EQ(toDouble("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(toDouble("9007199254740993.0000000000000000000001"), 9007199254740994.0);
  EXPECT_EQ(toDouble("123456789012345678901234567890"), 123456789012345678901234567890.0);
}

TEST(numbers, double_overflowsPastTheGreatest) {
  EXPECT_EQ(toDouble("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(toDouble("-1.7976931348623157e308"), std::numeric_limits<double>::lowest());
  expectConversions(doubleOf, {{"1.7976931348623159e308", "error 6"},
                               {"1.8e308", "error 6"},
                               {"-1e309", "error 6"},
                               {"1e400", "error 6"},
                               {"-1e400", "error 6"},
                               {"1e999999999999", "error 6"},
                               {"1e99999999999999999999999999", "error 6"}});
  EXPECT_EQ(doubleOf(std::string(400, '9')), "error 6");
}

TEST(numbers, double_goesToZeroBelowTheSmallest) {
  EXPECT_EQ(toDouble("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(toDouble("2.2250738585072014e-308"), std::numeric_limits<double>::min());
  for (const std::string_view text : {"1e-400"sv, "-1e-400"sv, "1e-999999999999"sv, "1e-99999999999999999999"sv})
    EXPECT_EQ(toDouble(text), 0.0) << text;
}

// --- Locale ---------------------------------------------------------------------------------------------------------

TEST(numbers, locale_decidesSeparatorsAndCurrencySign) {
  const WithLocale german(L'.', L',', L"€");
  expectConversions(currencyOf, {{"1.234,5", "12345000"},
                                 {"0,5", "5000"},
                                 {"1.5", "150000"},
                                 {"1.234.567,89", "12345678900"},
                                 {"-1,5 €", "-15000"},
                                 {"€1,5", "15000"},
                                 {"1,5e1", "150000"}});
  expectNoNumbers({"1,234.5", "$5", "5 $", "1,2,3", "1.,5", "5.", "€€5"});
}

TEST(numbers, separatorOfSeveralBytes_isOneSeparator) {
  const WithLocale french(L'\u202F', L',', L"€");
  expectConversions(currencyOf, {{"1\u202F234,5\u202F€", "12345000"},
                                 {"-1\u202F234\u202F567", "-12345670000"},
                                 {"1\u202F234\u00A0€", "12340000"}});
  expectNoNumbers({"1\u202F\u202F2", "1,2\u202F3", "1,\u202F5", "1\u202F,5",
                   "1\xE2\x80"
                   "2"});
}

TEST(numbers, spaceAsThousandsSeparator_mayBeAnySpace) {
  for (const wchar_t space : {L' ', L'\u00A0', L'\u202F'}) {
    const WithLocale french(space, L',', L"€");
    expectConversions(
        longOf, {{"1 234", "1234"}, {"1\u00A0234", "1234"}, {"1\u202F234", "1234"}, {" 1 234 567 € ", "1234567"}});
    expectNoNumbers({"1  234", "1\t234", "1,2 3", "1 234 -5"});
  }
}

TEST(numbers, separatorsBeyondAscii_areRead) {
  const WithLocale arabic(L'\u066C', L'\u066B', L"د.إ.");
  expectConversions(currencyOf, {{"1٬234٫5", "12345000"}, {"د.إ.٫5", "5000"}, {"5 د.إ.", "50000"}});
  expectNoNumbers({"1.5", "1,5", "5 د.إ"});
}

TEST(numbers, currencySignOfLetters_isTakenWhole) {
  const WithLocale estonian(L'.', L',', L"eek");
  expectConversions(longOf, {{"5eek", "5"}, {"eek5", "5"}, {"5e2eek", "500"}, {"5 eek-", "-5"}});
  expectNoNumbers({"5ee", "5e", "5EEK", "eek"});
}

TEST(numbers, localeWithoutSigns_hasTheDefaultOnes) {
  const WithLocale empty(L'\0', L'\0', L"");
  expectConversions(currencyOf, {{"$1,234.5", "12345000"}, {"-$.5", "-5000"}});
  expectNoNumbers({"1\0"
                   "2"sv,
                   "5€"});
}

TEST(numbers, oneCharacterForBothSeparators_isTheDecimalOne) {
  for (const wchar_t thousands : {L',', L'\0'}) {
    const WithLocale portuguese(thousands, L',', L"€");
    expectConversions(currencyOf, {{"1,5", "15000"}, {"1234,56", "12345600"}});
    expectNoNumbers({"1,234,5", "1.5"});
  }
}

TEST(numbers, narrowFacets_doNotCount) {
  class Narrow : public std::numpunct<char> {
   protected:
    char do_decimal_point() const override { return ';'; }
  };
  const WithLocale restores(L',', L'.', L"$");
  std::locale::global(std::locale(std::locale(), new Narrow));
  EXPECT_EQ(currencyOf("1.5"), "15000");
  expectNoNumbers({"1;5"});
}

// --- Against a calculation of another kind --------------------------------------------------------------------------

__extension__ typedef __int128 Wide;

constexpr int kProbes = 20'000;

/// A number and the text for it: `significand` times ten to the `exponent`.
struct Probe {
  std::int64_t significand = 0;
  int exponent = 0;
  std::string text;
};

class Probes {
 public:
  Probe next() {
    Probe probe;
    probe.significand = significand();
    const int places = between(0, 12);
    const int written = between(-15, 15);
    probe.exponent = written - places;
    probe.text = decorate(probe.significand < 0, withPoint(magnitude(probe.significand), places), written);
    return probe;
  }

 private:
  int between(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }

  /// Up to 18 digits, with many a 5 or 0 at the end so that halves are common.
  std::int64_t significand() {
    std::int64_t value = 0;
    for (int digits = between(1, 18); digits > 0; --digits)
      value = value * 10 + (between(0, 1) == 0 ? between(0, 9) : 5 * between(0, 1));
    return between(0, 1) == 0 ? value : -value;
  }

  static std::string magnitude(std::int64_t value) { return std::to_string(value < 0 ? -value : value); }

  std::string withPoint(std::string digits, int places) {
    const auto least = static_cast<std::size_t>(places + between(0, 3));
    if (digits.size() < least)
      digits.insert(0, least - digits.size(), '0');
    const std::size_t whole = digits.size() - static_cast<std::size_t>(places);
    std::string result = grouped(digits.substr(0, whole));
    return places > 0 ? result + "." + digits.substr(whole) : result.empty() ? "0" : result;
  }

  std::string grouped(std::string digits) {
    for (std::size_t i = digits.size(); i > 3; i -= 3)
      if (between(0, 2) == 0)
        digits.insert(i - 3, ",");
    return digits;
  }

  std::string decorate(bool isNegative, std::string number, int exponent) {
    if (exponent != 0 || between(0, 1) == 0)
      number += (between(0, 1) == 0 ? "e" : "E") + std::to_string(exponent);
    const std::string sign = isNegative ? "-" : between(0, 1) == 0 ? "+" : "";
    number = between(0, 1) == 0 ? sign + number : number + sign;
    const std::string blank(static_cast<std::size_t>(between(0, 2)), ' ');
    return blank + (between(0, 3) == 0 ? "$" + number : number) + blank;
  }

  std::mt19937 m_random{20'040'229};
};

Wide powerOfTen(int exponent) {
  Wide result = 1;
  while (exponent-- > 0)
    result *= 10;
  return result;
}

/// `value` times ten to the `exponent`, rounded half to even by a division with remainder. An exponent of up to 19.
Wide scaled(std::int64_t value, int exponent) {
  if (exponent >= 0)
    return value * powerOfTen(exponent);
  const Wide divisor = powerOfTen(-exponent);
  const Wide magnitude = value < 0 ? -Wide{value} : Wide{value};
  const Wide quotient = magnitude / divisor;
  const Wide twice = magnitude % divisor * 2;
  const Wide rounded = twice > divisor || (twice == divisor && quotient % 2 == 1) ? quotient + 1 : quotient;
  return value < 0 ? -rounded : rounded;
}

/// Whether `value` times ten to the `exponent` lies half way between two whole numbers.
bool isHalf(std::int64_t value, int exponent) {
  if (exponent >= 0)
    return false;
  const Wide divisor = powerOfTen(-exponent);
  const Wide twice = 2 * Wide{value};
  return twice % divisor == 0 && twice / divisor % 2 != 0;
}

template <class Fitting>
std::string fitted(Wide value) {
  if (value < std::numeric_limits<Fitting>::min() || value > std::numeric_limits<Fitting>::max())
    return "error 6";
  return std::to_string(static_cast<Fitting>(value));
}

TEST(numbers, generatedNumbers_convertAsIntegerDivisionDoes) {
  Probes probes;
  int overflows = 0;
  int halves = 0;
  for (int i = 0; i < kProbes; ++i) {
    const Probe probe = probes.next();
    const std::string expectedLong = fitted<std::int32_t>(scaled(probe.significand, probe.exponent));
    ASSERT_TRUE(isNumeric(probe.text)) << probe.text;
    ASSERT_EQ(longOf(probe.text), expectedLong) << probe.text;
    ASSERT_EQ(currencyOf(probe.text), fitted<std::int64_t>(scaled(probe.significand, probe.exponent + 4)))
        << probe.text;
    overflows += expectedLong == "error 6" ? 1 : 0;
    halves += isHalf(probe.significand, probe.exponent) ? 1 : 0;
  }
  // The comparison is only worth something where many numbers are too great and some lie half way.
  EXPECT_GT(overflows, kProbes / 20);
  EXPECT_LT(overflows, kProbes / 2);
  EXPECT_GT(halves, 20);
}

TEST(numbers, generatedNumbers_convertToTheDoubleThatTheCLibraryReads) {
  Probes probes;
  for (int i = 0; i < kProbes; ++i) {
    const Probe probe = probes.next();
    const std::string plain = std::to_string(probe.significand) + "e" + std::to_string(probe.exponent);
    ASSERT_EQ(toDouble(probe.text), std::strtod(plain.c_str(), nullptr)) << probe.text;
  }
}

TEST(numbers, anyShortText_isNumericExactlyWhereItConverts) {
  constexpr std::string_view kAlphabet = "059+-.,eE$ x";
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> pick(0, kAlphabet.size() - 1);
  std::uniform_int_distribution<std::size_t> size(0, 7);
  int numbers = 0;
  for (int i = 0; i < kProbes; ++i) {
    std::string text(size(random), ' ');
    std::generate(text.begin(), text.end(), [&] { return kAlphabet[pick(random)]; });
    const bool numeric = isNumeric(text);
    numbers += numeric ? 1 : 0;
    ASSERT_EQ(doubleOf(text) != "error 13", numeric) << '"' << text << '"';
    ASSERT_EQ(longOf(text) != "error 13", numeric) << '"' << text << '"';
    ASSERT_EQ(currencyOf(text) != "error 13", numeric) << '"' << text << '"';
  }
  EXPECT_GT(numbers, kProbes / 20);
  EXPECT_LT(numbers, kProbes / 2);
}

} // namespace

} // namespace imex
