#include "module/validators.h"
#include "harness/fuzz.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

#include <cstdlib>
#include <string>

// Every text is judged, by each check, and the verdicts agree with what the text is as a number. A number written out
// and read again is the same number.

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view value = fuzz::text(data, size);
  checkConversions(value);
  checkVerdicts(value);
  checkLength(value);
  return 0;
}
