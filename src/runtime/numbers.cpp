#include "runtime/numbers.h"

#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <locale>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace imex {

namespace {

constexpr std::array<std::string_view, 3> kSpaces{" ", "\xC2\xA0", "\xE2\x80\xAF"};
constexpr std::string_view kTab = "\t";

/// Far past the length of any text, so that no number of digits makes up for an exponent that is cut off here.
constexpr std::int64_t kLargestExponent = 100'000'000'000'000'000;

/// An integer of this many digits fits 64 bits without sign.
constexpr std::int64_t kMostIntegerDigits = 19;

/// The exact value of a number: the digits, read as an integer, times ten to the exponent.
struct Decimal {
  bool isNegative = false;
  std::string digits; ///< without leading zeros, so empty for zero
  std::int64_t exponent = 0;

  /// How many digits stand before the decimal point when the value is written out, less the zeros behind the point
  /// that a value below one tenth starts with.
  std::int64_t wholeDigits() const { return static_cast<std::int64_t>(digits.size()) + exponent; }
};

/// What the user's locale puts between and around digits, as UTF-8.
struct Notation {
  std::string thousands; ///< empty where the locale has no character left for it
  std::string decimal;
  std::string currency;
};

/// Each wide character becomes one code point, also where wchar_t has 16 bits: separators and currency signs lie in
/// the basic plane.
std::string toUtf8(std::wstring_view text) {
  std::string result;
  for (const wchar_t c : text)
    appendUtf8(result, static_cast<char32_t>(c));
  return result;
}

std::string separator(wchar_t ofLocale, std::string_view otherwise) {
  return ofLocale == L'\0' ? std::string(otherwise) : toUtf8({&ofLocale, 1});
}

Notation currentNotation() {
  const std::locale locale;
  const auto& numeric = std::use_facet<std::numpunct<wchar_t>>(locale);
  const auto& monetary = std::use_facet<std::moneypunct<wchar_t, false>>(locale);
  Notation notation{separator(numeric.thousands_sep(), ","), separator(numeric.decimal_point(), "."),
                    toUtf8(monetary.curr_symbol())};
  if (notation.thousands == notation.decimal)
    notation.thousands.clear();
  if (notation.currency.empty())
    notation.currency = "$";
  return notation;
}

/// Reads one text from its front to its back. The take functions consume what they are named after and say whether it
/// was there; where it was not, they leave the text as it is.
class Scanner {
 public:
  Scanner(std::string_view text, const Notation& notation)
      : m_rest(text), m_notation(notation), m_spacesSeparate(isSpace(notation.thousands)) {}

  /// The number that the whole text is, or none.
  std::optional<Decimal> scan();

 private:
  static bool isSpace(std::string_view text) {
    return std::find(kSpaces.begin(), kSpaces.end(), text) != kSpaces.end();
  }
  static bool startsWithDigit(std::string_view text) { return !text.empty() && text[0] >= '0' && text[0] <= '9'; }

  bool take(std::string_view token);
  bool takeSpace();
  bool takeSign();
  bool takeCurrency();
  bool takeDigit();
  bool takeThousands();
  void readAffixes();
  void readDigits();
  void readExponent();
  std::int64_t readExponentDigits();

  std::string_view m_rest;
  const Notation& m_notation;
  bool m_spacesSeparate;
  bool m_hasSign = false;
  bool m_hasCurrency = false;
  bool m_hasDigit = false;
  Decimal m_result;
};

bool Scanner::take(std::string_view token) {
  if (token.empty() || !m_rest.starts_with(token))
    return false;
  m_rest.remove_prefix(token.size());
  return true;
}

bool Scanner::takeSpace() {
  return std::any_of(kSpaces.begin(), kSpaces.end(), [this](std::string_view space) { return take(space); });
}

bool Scanner::takeSign() {
  if (m_hasSign)
    return false;
  m_result.isNegative = take("-");
  m_hasSign = m_result.isNegative || take("+");
  return m_hasSign;
}

bool Scanner::takeCurrency() {
  if (m_hasCurrency)
    return false;
  m_hasCurrency = take(m_notation.currency);
  return m_hasCurrency;
}

bool Scanner::takeDigit() {
  if (!startsWithDigit(m_rest))
    return false;
  m_hasDigit = true;
  if (m_rest[0] != '0' || !m_result.digits.empty())
    m_result.digits.push_back(m_rest[0]);
  m_rest.remove_prefix(1);
  return true;
}

/// Called behind a digit: a separator without a digit behind it is not one, so a blank there stays a blank.
bool Scanner::takeThousands() {
  const std::string_view start = m_rest;
  if ((take(m_notation.thousands) || (m_spacesSeparate && takeSpace())) && startsWithDigit(m_rest))
    return true;
  m_rest = start;
  return false;
}

/// A second sign stays unread here, and an unread rest is what makes a text no number.
void Scanner::readAffixes() {
  while (takeSpace() || take(kTab) || takeSign() || takeCurrency()) {
  }
}

void Scanner::readDigits() {
  while (takeDigit())
    takeThousands();
  if (!take(m_notation.decimal))
    return;
  while (takeDigit())
    --m_result.exponent;
}

void Scanner::readExponent() {
  const std::string_view start = m_rest;
  if (!take("e") && !take("E"))
    return;
  const bool isNegative = take("-");
  if (!isNegative)
    take("+");
  if (!startsWithDigit(m_rest)) {
    m_rest = start;
    return;
  }
  const std::int64_t exponent = readExponentDigits();
  m_result.exponent += isNegative ? -exponent : exponent;
}

std::int64_t Scanner::readExponentDigits() {
  std::int64_t value = 0;
  for (; startsWithDigit(m_rest); m_rest.remove_prefix(1))
    value = std::min(kLargestExponent, value * 10 + (m_rest[0] - '0'));
  return value;
}

std::optional<Decimal> Scanner::scan() {
  readAffixes();
  readDigits();
  if (!m_hasDigit)
    return std::nullopt;
  readExponent();
  readAffixes();
  if (!m_rest.empty())
    return std::nullopt;
  return m_result;
}

std::optional<Decimal> scan(std::string_view text) {
  const Notation notation = currentNotation();
  return Scanner(text, notation).scan();
}

Decimal decimalOf(std::string_view text) {
  std::optional<Decimal> value = scan(text);
  if (!value)
    throw RuntimeError(ErrorNumber::typeMismatch);
  return *std::move(value);
}

/// The integer of the first `count` digits, with zeros where there are fewer. `count` is at most kMostIntegerDigits.
std::uint64_t leadingInteger(std::string_view digits, std::size_t count) {
  std::uint64_t result = 0;
  for (std::size_t i = 0; i < count; ++i)
    result = result * 10 + (i < digits.size() ? static_cast<std::uint64_t>(digits[i] - '0') : 0);
  return result;
}

/// Whether cutting off `rest`, the digits behind the point, leaves `whole` one too small.
bool roundsUp(std::uint64_t whole, std::string_view rest) {
  if (rest.empty() || rest[0] != '5')
    return !rest.empty() && rest[0] > '5';
  const bool isHalf = rest.find_first_not_of('0', 1) == std::string_view::npos;
  return !isHalf || whole % 2 != 0;
}

std::uint64_t roundedMagnitude(const Decimal& value, int places) {
  const std::int64_t wholeDigits = value.wholeDigits() + places;
  if (value.digits.empty() || wholeDigits < 0)
    return 0;
  if (wholeDigits > kMostIntegerDigits)
    throw RuntimeError(ErrorNumber::overflow);
  const auto count = static_cast<std::size_t>(wholeDigits);
  const std::string_view digits = value.digits;
  const std::uint64_t whole = leadingInteger(digits, count);
  return roundsUp(whole, digits.substr(std::min(count, digits.size()))) ? whole + 1 : whole;
}

/// The number times ten to `places`, rounded. Error 6 past 64 bits.
std::int64_t toFixedPoint(const Decimal& value, int places) {
  const std::uint64_t magnitude = roundedMagnitude(value, places);
  constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  if (magnitude > largest + (value.isNegative ? 1 : 0))
    throw RuntimeError(ErrorNumber::overflow);
  return static_cast<std::int64_t>(value.isNegative ? 0 - magnitude : magnitude);
}

} // namespace

bool isNumeric(std::string_view text) {
  return scan(text).has_value();
}

double toDouble(std::string_view text) {
  const Decimal value = decimalOf(text);
  if (value.digits.empty())
    return 0;
  const std::string plain = (value.isNegative ? "-" : "") + value.digits + "e" + std::to_string(value.exponent);
  double result = 0;
  const std::errc error = std::from_chars(plain.data(), plain.data() + plain.size(), result).ec;
  // Too great and too small come back as one and the same error, with the result as it was: 0.
  if (error == std::errc::result_out_of_range && value.wholeDigits() > 0)
    throw RuntimeError(ErrorNumber::overflow);
  return result;
}

std::int32_t toLong(std::string_view text) {
  const std::int64_t value = toFixedPoint(decimalOf(text), 0);
  if (!std::in_range<std::int32_t>(value))
    throw RuntimeError(ErrorNumber::overflow);
  return static_cast<std::int32_t>(value);
}

Integer toInteger(std::string_view text) {
  return toLong(text);
}

Currency toCurrency(std::string_view text) {
  constexpr int kPlaces = 4;
  return Currency::ofTenThousandths(toFixedPoint(decimalOf(text), kPlaces));
}

} // namespace imex
