#include "module/validators.h"

#include "runtime/numbers.h"
#include "runtime/text.h"

#include <cmath>
#include <initializer_list>
#include <utility>

namespace imex::ImExModule {

namespace {

/// A "Long" amount of this many characters or more fails without being converted, even where it would fit 32 bits.
constexpr std::size_t kTooLongForLong = 11;

std::string join(std::initializer_list<std::string_view> parts) {
  std::string result;
  for (const std::string_view part : parts)
    result += part;
  return result;
}

std::string isRequired(std::string_view fieldName) {
  return join({fieldName, " is a required field."});
}

std::string fieldIsRequired(std::string_view fieldName) {
  return join({"Field ", fieldName, " is a required field."});
}

std::string mustBeNumeric(std::string_view fieldName, std::string_view value) {
  return join({"Field ", fieldName, " with value ", value, " must be numeric."});
}

std::string mustBeNonNegativeInteger(std::string_view fieldName, std::string_view value) {
  return join({"Field ", fieldName, " with value ", value, " must be an integer whose value is non-negative."});
}

/// Both messages about a length; they differ in the verdict.
std::string maxLength(std::string_view fieldName, std::string_view value, std::string_view verdict, Integer maximum) {
  return join({"The maximum length of ", fieldName, " with value ", value, verdict, "  The maximum length is ",
               toText(maximum), "."});
}

std::string amountCannotBeVerified(std::string_view fieldName, std::string_view value) {
  return join({"The max amount of field ", fieldName, " with value ", value, " cannot be verified."});
}

std::string amountExceeds(std::string_view fieldName, std::string_view value, std::string_view maximum) {
  return join(
      {"The amount of field ", fieldName, " with value ", value, " exceeds the maximum amount ", maximum, " ."});
}

std::string judgeNonNegativeInteger(std::string_view fieldName, std::string_view value) {
  if (!isNumeric(value))
    return mustBeNumeric(fieldName, value);
  if (toLong(value) < 0)
    return join({"Field ", fieldName, " cannot be negative."});
  const double number = toDouble(value);
  return std::nearbyint(number) == number ? std::string() : mustBeNonNegativeInteger(fieldName, value);
}

bool isLongWithin(std::string_view value, std::string_view maximum) {
  return length(value) < kTooLongForLong && toLong(value) <= toLong(maximum);
}

std::string judgeAmount(std::string_view fieldName, std::string_view kind, std::string_view value,
                        std::string_view maximum) {
  const bool isLong = kind == "Long";
  if (!isLong && kind != "Currency")
    return amountCannotBeVerified(fieldName, value);
  const bool isWithin = isLong ? isLongWithin(value, maximum) : toCurrency(value) <= toCurrency(maximum);
  return isWithin ? std::string() : amountExceeds(fieldName, value, maximum);
}

} // namespace

std::string checkMaxLength(std::string_view fieldName, std::string_view value, Integer maximum, Boolean required) {
  try {
    if (value.empty())
      return required ? isRequired(fieldName) : std::string();
    if (std::cmp_less_equal(length(value), int{maximum}))
      return {};
    return maxLength(fieldName, value, " has been exceeded.", maximum);
  } catch (...) {
    return maxLength(fieldName, value, " cannot be verified.", maximum);
  }
}

std::string checkNumeric(std::string_view fieldName, std::string_view value, Boolean required) {
  try {
    if (value.empty())
      return required ? fieldIsRequired(fieldName) : std::string();
    return isNumeric(value) ? std::string() : mustBeNumeric(fieldName, value);
  } catch (...) {
    return mustBeNumeric(fieldName, value);
  }
}

std::string checkNonNegativeInteger(std::string_view fieldName, std::string_view value, Boolean required) {
  try {
    if (value.empty())
      return required ? fieldIsRequired(fieldName) : std::string();
    return judgeNonNegativeInteger(fieldName, value);
  } catch (...) {
    return mustBeNonNegativeInteger(fieldName, value);
  }
}

std::string checkMaxAmount(std::string_view fieldName, std::string_view kind, std::string_view value,
                           std::string_view maximum, Boolean required) {
  try {
    if (value.empty())
      return required ? isRequired(fieldName) : std::string();
    return judgeAmount(fieldName, kind, value, maximum);
  } catch (...) {
    return amountCannotBeVerified(fieldName, value);
  }
}

} // namespace imex::ImExModule
