#include "module/validators.h"
#include "harness/fuzz.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <cstdlib>
#include <limits>
#include <string>

// Every text is judged, by each check, and the verdicts agree with what the text is as a number. A number written out
// and read again is the same number, and passes a check exactly where it is within the limits.

namespace {

using namespace imex;
using namespace imex::ImExModule;

/// An amount in full: "-12.3400".
std::string written(Currency amount) {
  const std::int64_t value = amount.tenThousandths();
  const std::uint64_t size = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
  const std::string places = std::to_string(10000 + size % 10000).substr(1);
  return (value < 0 ? "-" : "") + std::to_string(size / 10000) + "." + places;
}

void checkConversions(std::string_view value) {
  const auto whole = fuzz::unless({6, 13}, [&] { return toLong(value); });
  const auto amount = fuzz::unless({6, 13}, [&] { return toCurrency(value); });
  const auto number = fuzz::unless({6, 13}, [&] { return toDouble(value); });
  if (!isNumeric(value))
    fuzz::require(!whole && !amount && !number, "what is no number does not convert");
  if (whole)
    fuzz::require(toLong(std::to_string(*whole)) == *whole, "a whole number comes back");
  if (amount)
    fuzz::require(toCurrency(written(*amount)) == *amount, "an amount comes back");
}

void checkVerdicts(std::string_view value) {
  const bool isNumber = value.empty() || isNumeric(value);
  fuzz::require(checkNumeric("F", value, false).empty() == isNumber, "a number is a number");
  if (checkNonNegativeInteger("F", value, false).empty() && !value.empty())
    fuzz::require(isNumber && toLong(value) >= 0, "a whole number that passed is one");
  for (const std::string_view kind : {"Long", "Currency"}) {
    if (checkMaxAmount("F", kind, value, "999999", false).empty() && !value.empty())
      fuzz::require(isNumber && toCurrency(value) < toCurrency("1000000"), "an amount that passed is within it");
  }
  fuzz::require(checkNumeric("F", value, true).empty() == (isNumber && !value.empty()), "a required field is filled");
}

void checkLength(std::string_view value) {
  const std::size_t characters = length(value);
  if (value.empty() || characters > Integer::kMax)
    return;
  fuzz::require(checkMaxLength("F", value, characters, false).empty(), "a text is as long as it is");
  fuzz::require(!checkMaxLength("F", value, characters - 1, false).empty(), "a text is not shorter than it is");
}

/// A whole number in plain digits passes exactly where it is within the limits.
void checkWhole(std::int64_t number) {
  const std::string value = std::to_string(number);
  const bool isLong =
      number >= std::numeric_limits<std::int32_t>::min() && number <= std::numeric_limits<std::int32_t>::max();
  fuzz::require(checkNumeric("F", value, true).empty(), "digits are a number");
  fuzz::require(checkNonNegativeInteger("F", value, true).empty() == (isLong && number >= 0), "not negative, 32 bits");
  const bool isWithin = isLong && value.size() < 11 && number <= 99999;
  fuzz::require(checkMaxAmount("F", "Long", value, "99999", true).empty() == isWithin, "at most 99999");
}

/// So does an amount of four places, which is no whole number where one of them is not 0.
void checkAmount(std::int64_t tenThousandths) {
  const std::string value = written(Currency::ofTenThousandths(tenThousandths));
  fuzz::require(checkNumeric("F", value, true).empty(), "an amount is a number");
  fuzz::require(checkMaxAmount("F", "Currency", value, "999999", true).empty() == (tenThousandths <= 9999990000),
                "at most 999999");
  if (tenThousandths % 10000 != 0)
    fuzz::require(!checkNonNegativeInteger("F", value, true).empty(), "an amount with places is not whole");
}

/// The number that the first bytes stand for, in one of several sizes, so that each limit comes near.
std::int64_t numberOf(std::string_view bytes) {
  std::uint64_t number = 0;
  for (const char byte : bytes.substr(0, sizeof number))
    number = number << 8U | static_cast<unsigned char>(byte);
  const auto value = static_cast<std::int64_t>(number);
  switch (bytes.size() % 4) {
  case 0:
    return value;
  case 1:
    return value % 4'000'000'000;
  case 2:
    return value % 20'000'000'000;
  default:
    return value % 200'000;
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view value = fuzz::text(data, size);
  checkConversions(value);
  checkVerdicts(value);
  checkLength(value);
  checkWhole(numberOf(value));
  checkAmount(numberOf(value));
  return 0;
}
